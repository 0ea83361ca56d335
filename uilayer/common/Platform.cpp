#include "common/Platform.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "IuiLayer.h"
#include "common/Log.h"
#include "common/Status.h"

uint32_t (*GetVendorTagId)(uint32_t index) = nullptr;

namespace Lumora {

namespace {
constexpr const char* kSiblingLibraryPath = "/odm/lib64/hw/camera.lumora.v2.so";
constexpr size_t kMaxPath = 512;
}  // namespace

uint32_t VendorTagId(uint32_t index) {
    return GetVendorTagId != nullptr ? GetVendorTagId(index) : 0;
}

const char* DevicePath(const char* path, char* out, size_t outSize) {
#if defined(UILAYER_HOST_BUILD)
    const char* root = getenv("UILAYER_DEVICE_ROOT");
    if (root == nullptr) {
        root = UILAYER_DEFAULT_DEVICE_ROOT;
    }
    const int written = snprintf(out, outSize, "%s%s", root, path);
    if (written < 0 || static_cast<size_t>(written) >= outSize) {
        return path;
    }
    return out;
#else
    (void)out;
    (void)outSize;
    return path;
#endif
}

int readFile(const char* path, char* buffer, int size) {
    char mapped[kMaxPath];
    const int fd = open(DevicePath(path, mapped, sizeof(mapped)), O_RDONLY);
    if (fd < 0) {
        UI_LOGE("Unable to open %s for read error=%s", path, strerror(errno));
        return kReadFileNotOpened;
    }
    const ssize_t got = size > 0 ? read(fd, buffer, static_cast<size_t>(size)) : 0;
    if (got < 1) {
        UI_LOGE("Unable to read all data from %s error=%s", path, strerror(errno));
        close(fd);
        return kReadFileNothingRead;
    }
    close(fd);
    return kStatusOk;
}

void* OpenSiblingLibrary() {
    char mapped[kMaxPath];
    return dlopen(DevicePath(kSiblingLibraryPath, mapped, sizeof(mapped)), RTLD_NOW);
}

}  // namespace Lumora
