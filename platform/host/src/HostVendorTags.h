// Vendor tag numbering of the host sibling camera layer, shared by the sibling
// stand-in (which hands out the ids) and the metadata stand-in (which types
// the entries).
#ifndef HOST_VENDOR_TAGS_H
#define HOST_VENDOR_TAGS_H

#include <stdint.h>
#include <system/camera_metadata.h>

#include "common/VendorTags.h"

namespace HostVendorTags {

constexpr uint32_t kBase = 0x80000000u;
constexpr uint32_t kCount = 1024;

// Tag id of a vendor tag index; 0 for an index the sibling does not know.
inline uint32_t IdOf(uint32_t index) {
    return index < kCount ? kBase + index : 0;
}

// Element type of a vendor tag id, -1 when it is not a vendor tag of the table.
inline int TypeOf(uint32_t tag) {
    return tag >= kBase && tag < kBase + kCount ? Lumora::VendorTagType(tag - kBase) : -1;
}

}  // namespace HostVendorTags

#endif  // HOST_VENDOR_TAGS_H
