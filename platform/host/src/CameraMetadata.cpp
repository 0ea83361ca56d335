// Host camera metadata: one malloc'd buffer per metadata object.
//
// Layout of the buffer:
//
//   [ header | entry table (entry_capacity records) | data area (data_capacity bytes) ]
//
// The data of the entries lies in the data area in the order of the entry
// table, each entry's data starting on an 8-byte boundary. The padding in front
// of an entry's data counts against the data capacity, so a caller that adds
// several entries must size the data area with the padding included
// (calculate_camera_metadata_entry_data_size returns the raw size, rounded up
// to a multiple of 8 for every entry but the last is always enough). The data
// count is the end of the last entry's data, padding in front included.
//
// An entry with no elements takes no data and hands out a null data pointer.
// Updating an entry to a different size moves the data of the later entries, so
// the data area stays compact; deleting an entry does the same.
#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include <system/camera_metadata.h>

#include "ConfigurationReads.h"
#include "HostVendorTags.h"

namespace {

constexpr size_t kDataAlignment = 8;

struct MetadataEntry {
    uint32_t tag;
    uint8_t type;
    uint8_t reserved[3];
    size_t count;
    size_t offset;  // into the data area; meaningful only when count > 0
};

size_t AlignUp(size_t value, size_t alignment) {
    return (value + alignment - 1) / alignment * alignment;
}

// Byte size of `count` elements of `type`; false on an unknown type or overflow.
bool DataSize(uint8_t type, size_t count, size_t* size) {
    const size_t element = type < NUM_TYPES ? camera_metadata_type_size[type] : 0;
    if (element == 0 || count > SIZE_MAX / element) {
        return false;
    }
    *size = element * count;
    return true;
}

}  // namespace

struct camera_metadata {
    size_t size;  // whole buffer
    size_t entryCount;
    size_t entryCapacity;
    size_t dataCount;
    size_t dataCapacity;
    size_t entriesOffset;  // from the start of the buffer
    size_t dataOffset;     // from the start of the buffer, 8-byte aligned
};

namespace {

MetadataEntry* Entries(camera_metadata* metadata) {
    return reinterpret_cast<MetadataEntry*>(reinterpret_cast<uint8_t*>(metadata) +
                                            metadata->entriesOffset);
}

const MetadataEntry* Entries(const camera_metadata* metadata) {
    return reinterpret_cast<const MetadataEntry*>(reinterpret_cast<const uint8_t*>(metadata) +
                                                  metadata->entriesOffset);
}

uint8_t* DataArea(camera_metadata* metadata) {
    return reinterpret_cast<uint8_t*>(metadata) + metadata->dataOffset;
}

const uint8_t* DataArea(const camera_metadata* metadata) {
    return reinterpret_cast<const uint8_t*>(metadata) + metadata->dataOffset;
}

size_t EntryBytes(const MetadataEntry& entry) {
    size_t bytes = 0;
    DataSize(entry.type, entry.count, &bytes);  // checked when the entry was written
    return bytes;
}

// Where the data of an entry following data that ends at `end` starts.
size_t NextOffset(size_t end) {
    return AlignUp(end, kDataAlignment);
}

// End of the data of the entries before `index` (0 when there are none).
size_t EndBefore(const camera_metadata* metadata, size_t index) {
    const MetadataEntry* entries = Entries(metadata);
    for (size_t i = index; i > 0; --i) {
        const MetadataEntry& previous = entries[i - 1];
        if (previous.count > 0) {
            return previous.offset + EntryBytes(previous);
        }
    }
    return 0;
}

// Moves the data of the entries from `first` on so that they follow, compact,
// data that ends at `end`; returns the new data count. With `move` false only
// the count is computed; a caller that moves has checked that everything fits.
size_t Relayout(camera_metadata* metadata, size_t first, size_t end, bool move = true) {
    MetadataEntry* entries = Entries(metadata);
    uint8_t* data = DataArea(metadata);
    // Collect the new offsets first; a move towards the end must start with
    // the last entry, a move towards the start with the first one.
    std::vector<size_t> offsets(metadata->entryCount, 0);
    size_t position = end;
    for (size_t i = first; i < metadata->entryCount; ++i) {
        if (entries[i].count > 0) {
            offsets[i] = NextOffset(position);
            position = offsets[i] + EntryBytes(entries[i]);
        }
    }
    const auto place = [&](size_t i) {
        if (move && entries[i].count > 0 && offsets[i] != entries[i].offset) {
            memmove(data + offsets[i], data + entries[i].offset, EntryBytes(entries[i]));
            entries[i].offset = offsets[i];
        }
    };
    for (size_t i = first; i < metadata->entryCount; ++i) {
        if (offsets[i] < entries[i].offset) {
            place(i);
        }
    }
    for (size_t n = metadata->entryCount; n > first; --n) {
        place(n - 1);
    }
    return position;
}

template <typename Entry, typename Metadata>
void FillEntry(Metadata* metadata, size_t index, Entry* out) {
    const MetadataEntry& entry = Entries(metadata)[index];
    out->index = index;
    out->tag = entry.tag;
    out->type = entry.type;
    out->count = entry.count;
    out->data.u8 = entry.count > 0 ? DataArea(metadata) + entry.offset : nullptr;
}

// The entry at `index`: 0, or 1 on a null argument or an index out of range.
template <typename Entry, typename Metadata>
int GetEntry(Metadata* metadata, size_t index, Entry* out) {
    if (metadata == nullptr || out == nullptr || index >= metadata->entryCount) {
        return 1;
    }
    FillEntry(metadata, index, out);
    return 0;
}

// The first entry of `tag`: 0, 1 on a null argument, -ENOENT when there is none.
template <typename Entry, typename Metadata>
int FindEntry(Metadata* metadata, uint32_t tag, Entry* out) {
    if (metadata == nullptr || out == nullptr) {
        return 1;
    }
    const MetadataEntry* entries = Entries(metadata);
    for (size_t i = 0; i < metadata->entryCount; ++i) {
        if (entries[i].tag == tag) {
            FillEntry(metadata, i, out);
            return 0;
        }
    }
    return -ENOENT;
}

bool PointsInto(const camera_metadata* metadata, const void* pointer) {
    const uint8_t* begin = reinterpret_cast<const uint8_t*>(metadata);
    const uint8_t* p = static_cast<const uint8_t*>(pointer);
    return p >= begin && p < begin + metadata->size;
}

}  // namespace

extern "C" {

const size_t camera_metadata_type_size[NUM_TYPES] = {1, 4, 4, 8, 8, 8};

camera_metadata_t* allocate_camera_metadata(size_t entry_capacity, size_t data_capacity) {
    const size_t entriesOffset = AlignUp(sizeof(camera_metadata), alignof(MetadataEntry));
    if (entry_capacity > (SIZE_MAX - entriesOffset - kDataAlignment) / sizeof(MetadataEntry)) {
        return nullptr;
    }
    const size_t dataOffset =
        AlignUp(entriesOffset + entry_capacity * sizeof(MetadataEntry), kDataAlignment);
    if (data_capacity > SIZE_MAX - dataOffset) {
        return nullptr;
    }
    const size_t size = dataOffset + data_capacity;
    void* buffer = malloc(size);
    if (buffer == nullptr) {
        return nullptr;
    }
    memset(buffer, 0, size);  // no entries, no data
    camera_metadata* metadata = static_cast<camera_metadata*>(buffer);
    metadata->size = size;
    metadata->entryCapacity = entry_capacity;
    metadata->dataCapacity = data_capacity;
    metadata->entriesOffset = entriesOffset;
    metadata->dataOffset = dataOffset;
    return metadata;
}

void free_camera_metadata(camera_metadata_t* metadata) {
    free(metadata);
}

// Like the framework's clone, the copy is sized to what the source holds: it
// has no room for further entries or data.
camera_metadata_t* clone_camera_metadata(const camera_metadata_t* src) {
    if (src == nullptr) {
        return nullptr;
    }
    camera_metadata* copy = allocate_camera_metadata(src->entryCount, src->dataCount);
    if (copy == nullptr) {
        return nullptr;
    }
    memcpy(Entries(copy), Entries(src), src->entryCount * sizeof(MetadataEntry));
    memcpy(DataArea(copy), DataArea(src), src->dataCount);
    copy->entryCount = src->entryCount;
    copy->dataCount = src->dataCount;
    return copy;
}

size_t get_camera_metadata_entry_count(const camera_metadata_t* metadata) {
    return metadata != nullptr ? metadata->entryCount : 0;
}

size_t get_camera_metadata_entry_capacity(const camera_metadata_t* metadata) {
    return metadata != nullptr ? metadata->entryCapacity : 0;
}

size_t get_camera_metadata_data_count(const camera_metadata_t* metadata) {
    return metadata != nullptr ? metadata->dataCount : 0;
}

size_t get_camera_metadata_data_capacity(const camera_metadata_t* metadata) {
    return metadata != nullptr ? metadata->dataCapacity : 0;
}

size_t calculate_camera_metadata_entry_data_size(uint8_t type, size_t data_count) {
    size_t size = 0;
    return DataSize(type, data_count, &size) ? size : 0;
}

int get_camera_metadata_tag_type(uint32_t tag) {
    switch (tag) {
        case ANDROID_CONTROL_AE_ANTIBANDING_MODE:
        case ANDROID_CONTROL_AE_LOCK:
        case ANDROID_CONTROL_AE_MODE:
        case ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER:
        case ANDROID_CONTROL_AF_MODE:
        case ANDROID_CONTROL_AF_TRIGGER:
        case ANDROID_CONTROL_AWB_MODE:
        case ANDROID_CONTROL_CAPTURE_INTENT:
        case ANDROID_CONTROL_EFFECT_MODE:
        case ANDROID_CONTROL_MODE:
        case ANDROID_CONTROL_SCENE_MODE:
        case ANDROID_CONTROL_VIDEO_STABILIZATION_MODE:
            return TYPE_BYTE;
        case ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION:
        case ANDROID_CONTROL_AE_REGIONS:
        case ANDROID_CONTROL_AE_TARGET_FPS_RANGE:
        case ANDROID_SENSOR_SENSITIVITY:
            return TYPE_INT32;
        case ANDROID_CONTROL_ZOOM_RATIO:
            return TYPE_FLOAT;
        case ANDROID_SENSOR_EXPOSURE_TIME:
        case ANDROID_SENSOR_FRAME_DURATION:
            return TYPE_INT64;
        default:
            return HostVendorTags::TypeOf(tag);
    }
}

int add_camera_metadata_entry(camera_metadata_t* dst, uint32_t tag, const void* data,
                              size_t data_count) {
    if (dst == nullptr || (data == nullptr && data_count > 0)) {
        return 1;
    }
    const int type = get_camera_metadata_tag_type(tag);
    size_t bytes = 0;
    if (type < 0 || !DataSize(static_cast<uint8_t>(type), data_count, &bytes) ||
        dst->entryCount >= dst->entryCapacity) {
        return 1;
    }
    size_t offset = 0;
    if (data_count > 0) {
        offset = NextOffset(dst->dataCount);
        if (offset > dst->dataCapacity || bytes > dst->dataCapacity - offset) {
            return 1;
        }
        memmove(DataArea(dst) + offset, data, bytes);
        dst->dataCount = offset + bytes;
    }
    MetadataEntry& entry = Entries(dst)[dst->entryCount];
    entry = MetadataEntry{};
    entry.tag = tag;
    entry.type = static_cast<uint8_t>(type);
    entry.count = data_count;
    entry.offset = offset;
    ++dst->entryCount;
    return 0;
}

int get_camera_metadata_entry(camera_metadata_t* src, size_t index,
                              camera_metadata_entry_t* entry) {
    return GetEntry(src, index, entry);
}

int get_camera_metadata_ro_entry(const camera_metadata_t* src, size_t index,
                                 camera_metadata_ro_entry_t* entry) {
    return GetEntry(src, index, entry);
}

int find_camera_metadata_entry(camera_metadata_t* src, uint32_t tag,
                               camera_metadata_entry_t* entry) {
    HostPlatform::Internal::NoteConfigurationRead(HostPlatform::ConfigReadKind::Metadata, "", "",
                                                  src, tag);
    return FindEntry(src, tag, entry);
}

int find_camera_metadata_ro_entry(const camera_metadata_t* src, uint32_t tag,
                                  camera_metadata_ro_entry_t* entry) {
    HostPlatform::Internal::NoteConfigurationRead(HostPlatform::ConfigReadKind::Metadata, "", "",
                                                  src, tag);
    return FindEntry(src, tag, entry);
}

int update_camera_metadata_entry(camera_metadata_t* dst, size_t index, const void* data,
                                 size_t data_count, camera_metadata_entry_t* updated_entry) {
    if (dst == nullptr || index >= dst->entryCount || (data == nullptr && data_count > 0)) {
        return 1;
    }
    MetadataEntry& entry = Entries(dst)[index];
    size_t bytes = 0;
    if (!DataSize(entry.type, data_count, &bytes)) {
        return 1;
    }
    // The new data may come from this very buffer (an entry's own data handed
    // back); keep a copy so that moving entries around cannot clobber it.
    std::vector<uint8_t> copy;
    if (bytes > 0 && PointsInto(dst, data)) {
        const uint8_t* source = static_cast<const uint8_t*>(data);
        copy.assign(source, source + bytes);
        data = copy.data();
    }

    const size_t end = EndBefore(dst, index);
    const size_t offset = data_count > 0 ? NextOffset(end) : end;
    const size_t newEnd = data_count > 0 ? offset + bytes : end;
    if (data_count > 0 && (offset > dst->dataCapacity || bytes > dst->dataCapacity - offset)) {
        return 1;
    }
    if (Relayout(dst, index + 1, newEnd, false) > dst->dataCapacity) {
        return 1;
    }

    if (data_count > 0 && entry.count > 0 && bytes == EntryBytes(entry)) {
        // Same size: in place.
        memmove(DataArea(dst) + entry.offset, data, bytes);
        entry.count = data_count;
    } else {
        // Free the old data first, so the later entries can be moved into
        // their final places, then write the new data in front of them.
        entry.count = 0;
        const size_t afterEntries = Relayout(dst, index + 1, newEnd);
        if (data_count > 0) {
            memmove(DataArea(dst) + offset, data, bytes);
        }
        entry.count = data_count;
        entry.offset = data_count > 0 ? offset : 0;
        dst->dataCount = afterEntries;
    }
    if (updated_entry != nullptr) {
        FillEntry(dst, index, updated_entry);
    }
    return 0;
}

int delete_camera_metadata_entry(camera_metadata_t* dst, size_t index) {
    if (dst == nullptr || index >= dst->entryCount) {
        return 1;
    }
    MetadataEntry* entries = Entries(dst);
    const size_t end = EndBefore(dst, index);
    entries[index].count = 0;
    dst->dataCount = Relayout(dst, index + 1, end);
    memmove(entries + index, entries + index + 1,
            (dst->entryCount - index - 1) * sizeof(MetadataEntry));
    --dst->entryCount;
    return 0;
}

}  // extern "C"
