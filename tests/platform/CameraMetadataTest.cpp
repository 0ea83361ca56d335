// Host camera metadata: entries in one buffer, capacity limits, alignment,
// updates that change an entry's size, and records read in place.
#include <gtest/gtest.h>

#include <errno.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include <system/camera_metadata.h>

namespace {

// Vendor tag ids of the host sibling layer: 0x80000000 + index.
constexpr uint32_t VendorTag(uint32_t index) {
    return 0x80000000u + index;
}

struct MetadataDeleter {
    void operator()(camera_metadata_t* m) const { free_camera_metadata(m); }
};
using Metadata = std::unique_ptr<camera_metadata_t, MetadataDeleter>;

Metadata Allocate(size_t entries, size_t data) {
    return Metadata(allocate_camera_metadata(entries, data));
}

bool Aligned(const void* p) {
    return reinterpret_cast<uintptr_t>(p) % 8 == 0;
}

const uint32_t kVendorBytes = VendorTag(5);

TEST(CameraMetadataTest, RecordsWithPointersAreReadInPlace) {
    struct Record {
        uint32_t id;
        const char* name;
    };
    static const char kName[] = "sensor";
    const Record record{7, kName};
    const uint8_t pad = 0;
    Metadata m = Allocate(2, 64);
    ASSERT_EQ(0, add_camera_metadata_entry(m.get(), ANDROID_CONTROL_AE_MODE, &pad, 1));
    ASSERT_EQ(0, add_camera_metadata_entry(m.get(), kVendorBytes, &record, sizeof(record)));
    camera_metadata_ro_entry_t e{};
    ASSERT_EQ(0, find_camera_metadata_ro_entry(m.get(), kVendorBytes, &e));
    const Record* inPlace = reinterpret_cast<const Record*>(e.data.u8);
    EXPECT_EQ(7u, inPlace->id);
    EXPECT_EQ(kName, inPlace->name);
}

// Random adds, updates and deletes against a plain model: contents, order,
// alignment and the packed data count must match after every step, and an
// operation refused for lack of room must leave everything as it was.
TEST(CameraMetadataTest, RandomEditsMatchAModel) {
    struct ModelEntry {
        uint32_t tag;
        std::vector<uint8_t> bytes;
    };
    constexpr size_t kEntries = 12;
    constexpr size_t kData = 200;
    Metadata m = Allocate(kEntries, kData);
    std::vector<ModelEntry> model;
    uint32_t seed = 12345;
    auto next = [&seed](uint32_t bound) {
        seed = seed * 1103515245u + 12345u;
        return (seed >> 16) % bound;
    };
    auto packedEnd = [](const std::vector<ModelEntry>& entries) {
        size_t end = 0;
        for (const ModelEntry& e : entries) {
            if (!e.bytes.empty()) {
                end = (end + 7) / 8 * 8 + e.bytes.size();
            }
        }
        return end;
    };
    auto randomBytes = [&next](size_t n) {
        std::vector<uint8_t> bytes(n);
        for (uint8_t& b : bytes) {
            b = static_cast<uint8_t>(next(256));
        }
        return bytes;
    };
    for (int step = 0; step < 3000; ++step) {
        const uint32_t op = next(3);
        if (op == 0 || model.empty()) {
            const uint32_t tag = VendorTag(250 + next(50));  // byte-typed vendor tags
            ModelEntry entry{tag, randomBytes(next(40))};
            std::vector<ModelEntry> grown = model;
            grown.push_back(entry);
            const bool fits = grown.size() <= kEntries && packedEnd(grown) <= kData;
            const int rc =
                add_camera_metadata_entry(m.get(), tag, entry.bytes.data(), entry.bytes.size());
            ASSERT_EQ(fits ? 0 : 1, rc) << "step " << step;
            if (fits) {
                model = grown;
            }
        } else if (op == 1) {
            const size_t index = next(static_cast<uint32_t>(model.size()));
            std::vector<ModelEntry> changed = model;
            changed[index].bytes = randomBytes(next(60));
            const bool fits = packedEnd(changed) <= kData;
            const int rc = update_camera_metadata_entry(m.get(), index, changed[index].bytes.data(),
                                                        changed[index].bytes.size(), nullptr);
            ASSERT_EQ(fits ? 0 : 1, rc) << "step " << step;
            if (fits) {
                model = changed;
            }
        } else {
            const size_t index = next(static_cast<uint32_t>(model.size()));
            ASSERT_EQ(0, delete_camera_metadata_entry(m.get(), index));
            model.erase(model.begin() + static_cast<std::ptrdiff_t>(index));
        }
        ASSERT_EQ(model.size(), get_camera_metadata_entry_count(m.get()));
        ASSERT_EQ(packedEnd(model), get_camera_metadata_data_count(m.get())) << "step " << step;
        for (size_t i = 0; i < model.size(); ++i) {
            camera_metadata_ro_entry_t e{};
            ASSERT_EQ(0, get_camera_metadata_ro_entry(m.get(), i, &e));
            ASSERT_EQ(model[i].tag, e.tag);
            ASSERT_EQ(model[i].bytes.size(), e.count);
            if (e.count > 0) {
                ASSERT_TRUE(Aligned(e.data.u8));
                ASSERT_EQ(model[i].bytes, std::vector<uint8_t>(e.data.u8, e.data.u8 + e.count))
                    << "step " << step << " entry " << i;
            } else {
                ASSERT_EQ(nullptr, e.data.u8);
            }
        }
    }
}

}  // namespace
