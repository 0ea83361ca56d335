// Host camera metadata: records the library reads in place.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

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

}  // namespace
