// Host stand-in of the sibling camera layer: only its vendor tag lookup.
#include <stdint.h>

#include "HostVendorTags.h"

extern "C" __attribute__((visibility("default"))) uint32_t LumoraGetVendorTagId(uint32_t index) {
    return HostVendorTags::IdOf(index);
}
