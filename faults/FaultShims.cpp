// Fault shims: the fault sweep's copy of the library calls these instead of the
// platform (redirect.syms); each fails its call as the platform does when the
// fault plan says so.
#include <CameraHWConfiguration.h>
#include <HostFaults.h>
#include <cutils/properties.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <system/camera_metadata.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <vector>

using HostPlatform::FaultKind;
using HostPlatform::ShouldFail;

namespace {

// Statuses of the configuration store.
constexpr int kNotConfigured = 6;
constexpr int kBadValue = 22;
// Status of a metadata call that cannot be carried out.
constexpr int kMetadataError = 1;

// A read of the store; only typed reads can meet a value that does not convert.
template <typename Read, typename... Args>
int ConfigRead(bool typed, Read read, Args... args) {
    if (ShouldFail(FaultKind::ConfigNotConfigured)) {
        return kNotConfigured;
    }
    if (typed && ShouldFail(FaultKind::ConfigBadValue)) {
        return kBadValue;
    }
    return read(args...);
}

template <typename Count, typename... Args>
uint32_t ConfigCount(Count count, Args... args) {
    return ShouldFail(FaultKind::ConfigCount) ? 0 : count(args...);
}

// The first half of what `stream` holds, as a stream of its own.
FILE* TruncatedCopy(FILE* stream) {
    std::vector<char> content;
    char chunk[256];
    size_t got = 0;
    while ((got = fread(chunk, 1, sizeof(chunk), stream)) > 0) {
        content.insert(content.end(), chunk, chunk + got);
    }
    fclose(stream);
    FILE* copy = tmpfile();
    if (copy != nullptr) {
        fwrite(content.data(), 1, content.size() / 2, copy);
        rewind(copy);
    }
    return copy;
}

}  // namespace

extern "C" {

int uilayer_fault_HasGroupConfiguration(const char* group) {
    return ShouldFail(FaultKind::ConfigCount) ? 0 : HasGroupConfiguration(group);
}

uint32_t uilayer_fault_GetKeyCount(const char* group) {
    return ConfigCount(GetKeyCount, group);
}

uint32_t uilayer_fault_GetValuesCount(const char* group, const char* key) {
    return ConfigCount(GetValuesCount, group, key);
}

uint32_t uilayer_fault_GetLocaleKeyCount(const char* group, const char* name) {
    return ConfigCount(GetLocaleKeyCount, group, name);
}

uint32_t uilayer_fault_GetLocaleKeyValuesCount(const char* group, const char* name,
                                               const char* index) {
    return ConfigCount(GetLocaleKeyValuesCount, group, name, index);
}

int uilayer_fault_GetBooleanConfiguration(const char* group, const char* key, bool* out) {
    return ConfigRead(true, GetBooleanConfiguration, group, key, out);
}

int uilayer_fault_GetIntegerConfiguration(const char* group, const char* key, int32_t* out) {
    return ConfigRead(true, GetIntegerConfiguration, group, key, out);
}

int uilayer_fault_GetUIntegerConfiguration(const char* group, const char* key, uint32_t* out) {
    return ConfigRead(true, GetUIntegerConfiguration, group, key, out);
}

int uilayer_fault_GetInt64Configuration(const char* group, const char* key, int64_t* out) {
    return ConfigRead(true, GetInt64Configuration, group, key, out);
}

int uilayer_fault_GetStringConfiguration(const char* group, const char* key, char** out) {
    return ConfigRead(false, GetStringConfiguration, group, key, out);
}

int uilayer_fault_GetUIntegerListConfiguration(const char* group, const char* key, uint32_t* out,
                                               uint32_t count) {
    return ConfigRead(true, GetUIntegerListConfiguration, group, key, out, count);
}

int uilayer_fault_GetFloatListConfiguration(const char* group, const char* key, float* out,
                                            uint32_t count) {
    return ConfigRead(true, GetFloatListConfiguration, group, key, out, count);
}

int uilayer_fault_GetStringListConfiguration(const char* group, const char* key, char** out,
                                             uint32_t count) {
    return ConfigRead(false, GetStringListConfiguration, group, key, out, count);
}

int uilayer_fault_GetLocaleStringConfiguration(const char* group, const char* name,
                                               const char* index, char** out) {
    return ConfigRead(false, GetLocaleStringConfiguration, group, name, index, out);
}

int uilayer_fault_GetLocaleIntegerListConfiguration(const char* group, const char* name,
                                                    const char* index, int32_t* out,
                                                    uint32_t count) {
    return ConfigRead(true, GetLocaleIntegerListConfiguration, group, name, index, out, count);
}

int uilayer_fault_GetLocaleUIntegerListConfiguration(const char* group, const char* name,
                                                     const char* index, uint32_t* out,
                                                     uint32_t count) {
    return ConfigRead(true, GetLocaleUIntegerListConfiguration, group, name, index, out, count);
}

int uilayer_fault_GetLocaleStringListConfiguration(const char* group, const char* name,
                                                   const char* index, char** out, uint32_t count) {
    return ConfigRead(false, GetLocaleStringListConfiguration, group, name, index, out, count);
}

int uilayer_fault_property_get(const char* key, char* value, const char* default_value) {
    return property_get(ShouldFail(FaultKind::PropertyRead) ? "" : key, value, default_value);
}

bool uilayer_fault_property_get_bool(const char* key, bool default_value) {
    return ShouldFail(FaultKind::PropertyRead) ? default_value
                                               : property_get_bool(key, default_value);
}

int32_t uilayer_fault_property_get_int32(const char* key, int32_t default_value) {
    return ShouldFail(FaultKind::PropertyRead) ? default_value
                                               : property_get_int32(key, default_value);
}

int uilayer_fault_open(const char* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list args;
        va_start(args, flags);
        mode = static_cast<mode_t>(va_arg(args, int));
        va_end(args);
    }
    if (ShouldFail(FaultKind::FileOpen)) {
        errno = ENOENT;
        return -1;
    }
    return open(path, flags, mode);
}

ssize_t uilayer_fault_read(int fd, void* buffer, size_t count) {
    if (ShouldFail(FaultKind::FileRead)) {
        errno = EIO;
        return -1;
    }
    if (!ShouldFail(FaultKind::FileShortRead)) {
        return read(fd, buffer, count);
    }
    // Only the first half of what the file holds arrives; the rest of the
    // caller's buffer stays as it was.
    std::vector<char> whole(count);
    const ssize_t got = read(fd, whole.data(), count);
    const ssize_t kept = got > 1 ? got / 2 : got;
    if (kept > 0) {
        memcpy(buffer, whole.data(), static_cast<size_t>(kept));
    }
    return kept;
}

FILE* uilayer_fault_fopen(const char* path, const char* mode) {
    if (ShouldFail(FaultKind::FileOpen)) {
        errno = ENOENT;
        return nullptr;
    }
    FILE* stream = fopen(path, mode);
    if (stream != nullptr && ShouldFail(FaultKind::FileShortRead)) {
        return TruncatedCopy(stream);
    }
    return stream;
}

int uilayer_fault_fscanf(FILE* stream, const char* format, ...) {
    if (ShouldFail(FaultKind::FileRead)) {
        errno = EIO;
        return EOF;
    }
    va_list args;
    va_start(args, format);
    const int items = vfscanf(stream, format, args);
    va_end(args);
    return items;
}

void* uilayer_fault_dlopen(const char* path, int flags) {
    return ShouldFail(FaultKind::LibraryOpen) ? nullptr : dlopen(path, flags);
}

void* uilayer_fault_dlsym(void* handle, const char* name) {
    return ShouldFail(FaultKind::SymbolLookup) ? nullptr : dlsym(handle, name);
}

int uilayer_fault_find_camera_metadata_entry(camera_metadata_t* src, uint32_t tag,
                                             camera_metadata_entry_t* entry) {
    return ShouldFail(FaultKind::MetadataFind) ? -ENOENT
                                               : find_camera_metadata_entry(src, tag, entry);
}

int uilayer_fault_find_camera_metadata_ro_entry(const camera_metadata_t* src, uint32_t tag,
                                                camera_metadata_ro_entry_t* entry) {
    return ShouldFail(FaultKind::MetadataFind) ? -ENOENT
                                               : find_camera_metadata_ro_entry(src, tag, entry);
}

int uilayer_fault_update_camera_metadata_entry(camera_metadata_t* dst, size_t index,
                                               const void* data, size_t data_count,
                                               camera_metadata_entry_t* updated_entry) {
    return ShouldFail(FaultKind::MetadataUpdate)
               ? kMetadataError
               : update_camera_metadata_entry(dst, index, data, data_count, updated_entry);
}

int uilayer_fault_add_camera_metadata_entry(camera_metadata_t* dst, uint32_t tag, const void* data,
                                            size_t data_count) {
    return ShouldFail(FaultKind::MetadataAdd)
               ? kMetadataError
               : add_camera_metadata_entry(dst, tag, data, data_count);
}

}  // extern "C"
