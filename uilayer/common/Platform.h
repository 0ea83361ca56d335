// Access to the platform outside the configuration store: the vendor tag
// lookup, device files and the sibling camera layer.
#ifndef LUMORA_PLATFORM_H
#define LUMORA_PLATFORM_H

#include <cstddef>
#include <cstdint>

namespace Lumora {

// Tag id of a vendor tag index through GetVendorTagId; 0 (a tag no metadata
// holds) when the sibling layer could not be loaded.
uint32_t VendorTagId(uint32_t index);

// Failures of readFile: the file cannot be opened, or nothing could be read.
constexpr int kReadFileNotOpened = -2;
constexpr int kReadFileNothingRead = -1;

// Reads up to `size` bytes of `path` with one read call. 0 on success (at least
// one byte read; the buffer is not terminated), else one of the failures above.
int readFile(const char* path, char* buffer, int size);

// The path under which an absolute device path is opened. Device builds use the
// path as it stands; host builds prefix the device root (UILAYER_DEVICE_ROOT, or
// the build tree's root when unset). Returns `out`, or `path` when the result
// would not fit.
const char* DevicePath(const char* path, char* out, size_t outSize);

// Loads the sibling camera layer; null when it cannot be opened.
void* OpenSiblingLibrary();

}  // namespace Lumora

#endif  // LUMORA_PLATFORM_H
