// Vendor tag numbering of the host sibling camera layer, shared by the sibling
// stand-in (which hands out the ids) and the metadata stand-in (which types
// the entries).
#ifndef HOST_VENDOR_TAGS_H
#define HOST_VENDOR_TAGS_H

#include <stdint.h>
#include <system/camera_metadata.h>

namespace HostVendorTags {

constexpr uint32_t kBase = 0x80000000u;
constexpr uint32_t kCount = 1024;

// Tag id of a vendor tag index; 0 for an index the sibling does not know.
inline uint32_t IdOf(uint32_t index) {
    return index < kCount ? kBase + index : 0;
}

// Element type of a vendor tag id, -1 when it is not a vendor tag of the table.
inline int TypeOf(uint32_t tag) {
    if (tag < kBase || tag >= kBase + kCount) {
        return -1;
    }
    switch (tag - kBase) {
        case 0:
        case 19:
        case 35:
        case 36:
        case 37:
        case 38:
        case 49:
        case 159:
        case 212:
        case 535:
            return TYPE_INT32;
        case 85:
        case 544:
            return TYPE_FLOAT;
        default:
            return TYPE_BYTE;
    }
}

}  // namespace HostVendorTags

#endif  // HOST_VENDOR_TAGS_H
