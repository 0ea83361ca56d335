// Bounded reads of session parameters, request settings and result metadata.
// An entry is read only as far as its data goes: a request or result value
// that does not fit in the entry's bytes is treated as absent, whatever the
// entry's declared type; a session parameter of another type than expected is
// absent too.
#ifndef LUMORA_METADATA_READ_H
#define LUMORA_METADATA_READ_H

#include <system/camera_metadata.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Lumora {

// Size in bytes of an entry's data; 0 for an unknown element type.
inline size_t EntryDataBytes(const camera_metadata_ro_entry_t& entry) {
    static constexpr size_t kElementSize[NUM_TYPES] = {1, 4, 4, 8, 8, 8};
    return entry.type < NUM_TYPES ? entry.count * kElementSize[entry.type] : 0;
}

// Finds `tag` in `metadata`; false when the tag id is 0 (a vendor tag the
// sibling layer does not know), the metadata is null or the entry is absent.
// A found entry without data counts as found with 0 bytes.
inline bool FindEntry(const camera_metadata_t* metadata, uint32_t tag,
                      camera_metadata_ro_entry_t& entry, size_t& bytes) {
    entry = camera_metadata_ro_entry_t{};
    bytes = 0;
    if (tag == 0 || metadata == nullptr ||
        find_camera_metadata_ro_entry(metadata, tag, &entry) != 0) {
        return false;
    }
    bytes = entry.data.u8 != nullptr ? EntryDataBytes(entry) : 0;
    return true;
}

// The `index`-th 32-bit element of the entry's data; false when the data ends
// before it. Copied byte-wise, so the data needs no particular alignment.
template <typename T>
inline bool ReadElement32(const camera_metadata_ro_entry_t& entry, size_t bytes, size_t index,
                          T& out) {
    static_assert(sizeof(T) == 4, "32-bit elements only");
    if (index >= bytes / sizeof(T)) {
        return false;
    }
    memcpy(&out, entry.data.u8 + index * sizeof(T), sizeof(T));
    return true;
}

// First 32-bit value of `tag`; false when the tag is absent or holds fewer than
// four bytes.
template <typename T>
inline bool ReadFirst32(const camera_metadata_t* metadata, uint32_t tag, T& out) {
    camera_metadata_ro_entry_t entry;
    size_t bytes = 0;
    return FindEntry(metadata, tag, entry, bytes) && ReadElement32(entry, bytes, 0, out);
}

// A session parameter of the expected element type with at least `minCount`
// elements; false for null metadata. An entry of another type or a shorter
// one counts as absent, so no read goes past an entry's data.
inline bool FindTypedEntry(const camera_metadata_t* metadata, uint32_t tag, uint8_t type,
                           size_t minCount, camera_metadata_ro_entry_t* entry) {
    return metadata != nullptr && find_camera_metadata_ro_entry(metadata, tag, entry) == 0 &&
           entry->type == type && entry->count >= minCount &&
           (entry->count == 0 || entry->data.u8 != nullptr);
}

// Copies the bytes of a text entry found by FindTypedEntry into `out` (`size`
// bytes, zeroed here), keeping the last byte for the terminator.
inline void CopyEntryText(const camera_metadata_ro_entry_t& entry, char* out, size_t size) {
    memset(out, 0, size);
    const size_t count = entry.count < size - 1 ? entry.count : size - 1;
    if (count > 0) {
        memcpy(out, entry.data.u8, count);
    }
}

}  // namespace Lumora

#endif  // LUMORA_METADATA_READ_H
