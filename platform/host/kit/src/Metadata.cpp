#include "HostKit/Metadata.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "IuiLayer.h"

namespace HostKit {

namespace {

// Entry data is 8-byte aligned in the store.
constexpr size_t kDataAlignment = 8;

int FindIndex(camera_metadata_t* metadata, uint32_t tag, size_t* index) {
    camera_metadata_entry_t entry = {};
    const int status = find_camera_metadata_entry(metadata, tag, &entry);
    *index = entry.index;
    return status;
}

}  // namespace

uint32_t VendorTagId(uint32_t index) {
    const uint32_t id = GetVendorTagId != nullptr ? GetVendorTagId(index) : 0;
    if (id == 0) {
        throw std::runtime_error("the sibling camera layer has no vendor tag with index " +
                                 std::to_string(index));
    }
    return id;
}

Metadata::Metadata(size_t entryCapacity, size_t dataCapacity)
    : m_metadata(allocate_camera_metadata(entryCapacity, dataCapacity)) {
    if (m_metadata == nullptr) {
        throw std::runtime_error("cannot allocate camera metadata");
    }
}

Metadata::~Metadata() {
    free_camera_metadata(m_metadata);
}

Metadata::Metadata(Metadata&& other) noexcept
    : m_metadata(std::exchange(other.m_metadata, nullptr)) {}

Metadata& Metadata::operator=(Metadata&& other) noexcept {
    if (this != &other) {
        free_camera_metadata(m_metadata);
        m_metadata = std::exchange(other.m_metadata, nullptr);
    }
    return *this;
}

bool Metadata::Grow(size_t bytes) {
    const size_t entries = get_camera_metadata_entry_count(m_metadata);
    const size_t data = get_camera_metadata_data_count(m_metadata);
    camera_metadata_t* grown = allocate_camera_metadata(
        std::max<size_t>(2 * entries, 8),
        2 * (data + bytes + kDataAlignment) + get_camera_metadata_data_capacity(m_metadata));
    if (grown == nullptr) {
        return false;
    }
    for (size_t i = 0; i < entries; ++i) {
        camera_metadata_ro_entry_t entry = {};
        get_camera_metadata_ro_entry(m_metadata, i, &entry);
        add_camera_metadata_entry(grown, entry.tag, entry.data.u8, entry.count);
    }
    free_camera_metadata(m_metadata);
    m_metadata = grown;
    return true;
}

bool Metadata::Append(uint32_t tagId, const void* data, size_t count) {
    const int type = get_camera_metadata_tag_type(tagId);
    if (type < 0) {
        return false;
    }
    if (add_camera_metadata_entry(m_metadata, tagId, data, count) == 0) {
        return true;
    }
    const size_t bytes =
        calculate_camera_metadata_entry_data_size(static_cast<uint8_t>(type), count);
    return Grow(bytes) && add_camera_metadata_entry(m_metadata, tagId, data, count) == 0;
}

bool Metadata::TrySet(uint32_t tagId, const void* data, size_t count) {
    size_t index = 0;
    if (FindIndex(m_metadata, tagId, &index) != 0) {
        return Append(tagId, data, count);
    }
    if (update_camera_metadata_entry(m_metadata, index, data, count, nullptr) == 0) {
        return true;
    }
    const int type = get_camera_metadata_tag_type(tagId);
    const size_t bytes =
        calculate_camera_metadata_entry_data_size(static_cast<uint8_t>(type), count);
    return Grow(bytes) && FindIndex(m_metadata, tagId, &index) == 0 &&
           update_camera_metadata_entry(m_metadata, index, data, count, nullptr) == 0;
}

Metadata& Metadata::Set(uint32_t tagId, const void* data, size_t count) {
    if (!TrySet(tagId, data, count)) {
        char text[16];
        snprintf(text, sizeof(text), "0x%X", tagId);
        throw std::runtime_error(std::string("the metadata store refuses tag ") + text);
    }
    return *this;
}

Metadata& Metadata::VendorString(uint32_t index, const std::string& text) {
    return Set(VendorTagId(index), text.data(), text.size());
}

Metadata& Metadata::VendorByte(uint32_t index, uint8_t value) {
    return Set(VendorTagId(index), &value, 1);
}

Metadata& Metadata::VendorBytes(uint32_t index, const void* data, size_t size) {
    return Set(VendorTagId(index), data, size);
}

Metadata& Metadata::VendorInt32(uint32_t index, const std::vector<int32_t>& values) {
    return Set(VendorTagId(index), values.data(), values.size());
}

Metadata& Metadata::VendorFloat(uint32_t index, float value) {
    return Set(VendorTagId(index), &value, 1);
}

Metadata& Metadata::Byte(uint32_t tag, uint8_t value) {
    return Set(tag, &value, 1);
}

Metadata& Metadata::Int32(uint32_t tag, const std::vector<int32_t>& values) {
    return Set(tag, values.data(), values.size());
}

Metadata& Metadata::Float(uint32_t tag, float value) {
    return Set(tag, &value, 1);
}

int32_t Metadata::FirstInt32(uint32_t tag) const {
    camera_metadata_ro_entry_t entry = {};
    if (find_camera_metadata_ro_entry(m_metadata, tag, &entry) != 0 || entry.count == 0) {
        return -1;
    }
    return entry.data.i32[0];
}

int32_t Metadata::FirstByte(uint32_t tag) const {
    camera_metadata_ro_entry_t entry = {};
    if (find_camera_metadata_ro_entry(m_metadata, tag, &entry) != 0 || entry.count == 0) {
        return -1;
    }
    return entry.data.u8[0];
}

}  // namespace HostKit
