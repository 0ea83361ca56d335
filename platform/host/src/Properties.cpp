// Host system properties: an in-process map guarded by a mutex.
//
// A property set to "" reads as unset, as on the platform. A null key reads as
// unset too; property_get with a null output buffer copies nothing and returns
// -1.
#include <errno.h>
#include <inttypes.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include <cutils/properties.h>
#include <HostPlatform.h>

#include "ConfigurationReads.h"

namespace {

struct PropertyStore {
    std::mutex mutex;
    std::map<std::string, std::string> values;
};

PropertyStore& Store() {
    // Never destroyed: properties may still be read from other libraries'
    // static destructors.
    static PropertyStore* store = new PropertyStore();
    return *store;
}

// Copies at most PROPERTY_VALUE_MAX - 1 characters of `text` and a NUL into
// `value`; returns the number of characters copied.
int CopyValue(char* value, const char* text) {
    const size_t length = text != nullptr ? strnlen(text, PROPERTY_VALUE_MAX - 1) : 0;
    std::copy_n(text, length, value);
    value[length] = '\0';
    return static_cast<int>(length);
}

// The value of `key` into `value` (PROPERTY_VALUE_MAX bytes); its length, 0
// when it is unset or empty.
int Lookup(const char* key, char* value) {
    if (key != nullptr) {
        PropertyStore& store = Store();
        std::lock_guard<std::mutex> lock(store.mutex);
        const auto it = store.values.find(key);
        if (it != store.values.end() && !it->second.empty()) {
            return CopyValue(value, it->second.c_str());
        }
    }
    return CopyValue(value, "");
}

// Host tools learn which properties a run reads, with the default passed.
void NoteRead(const char* key, const std::string& defaultText) {
    HostPlatform::Internal::NoteConfigurationRead(HostPlatform::ConfigReadKind::Property, key,
                                                  defaultText);
}

intmax_t GetInteger(const char* key, intmax_t lower, intmax_t upper, intmax_t defaultValue) {
    NoteRead(key, std::to_string(defaultValue));
    char buffer[PROPERTY_VALUE_MAX] = {};
    if (Lookup(key, buffer) <= 0) {
        return defaultValue;
    }
    const int savedErrno = errno;
    errno = 0;
    char* end = nullptr;
    intmax_t result = strtoimax(buffer, &end, 0);
    if (((result == INTMAX_MIN || result == INTMAX_MAX) && errno == ERANGE) || end == buffer ||
        result < lower || result > upper) {
        result = defaultValue;
    }
    errno = savedErrno;
    return result;
}

}  // namespace

extern "C" {

int property_get(const char* key, char* value, const char* default_value) {
    if (value == nullptr) {
        return -1;
    }
    NoteRead(key, default_value != nullptr ? default_value : "");
    const int length = Lookup(key, value);
    return length > 0 ? length : CopyValue(value, default_value);
}

int8_t property_get_bool(const char* key, int8_t default_value) {
    NoteRead(key, std::to_string(default_value));
    char buffer[PROPERTY_VALUE_MAX] = {};
    if (Lookup(key, buffer) <= 0) {
        return default_value;
    }
    static constexpr std::pair<const char*, int8_t> kWords[] = {
        {"1", 1}, {"y", 1}, {"yes", 1}, {"on", 1},  {"true", 1},
        {"0", 0}, {"n", 0}, {"no", 0},  {"off", 0}, {"false", 0}};
    for (const auto& word : kWords) {
        if (strcmp(buffer, word.first) == 0) {
            return word.second;
        }
    }
    return default_value;
}

int64_t property_get_int64(const char* key, int64_t default_value) {
    return static_cast<int64_t>(GetInteger(key, INT64_MIN, INT64_MAX, default_value));
}

int32_t property_get_int32(const char* key, int32_t default_value) {
    return static_cast<int32_t>(GetInteger(key, INT32_MIN, INT32_MAX, default_value));
}

int property_set(const char* key, const char* value) {
    if (key == nullptr || value == nullptr || strlen(value) >= PROPERTY_VALUE_MAX) {
        return -1;
    }
    PropertyStore& store = Store();
    std::lock_guard<std::mutex> lock(store.mutex);
    store.values[key] = value;
    return 0;
}

}  // extern "C"

namespace HostPlatform {

void ResetProperties() {
    PropertyStore& store = Store();
    std::lock_guard<std::mutex> lock(store.mutex);
    store.values.clear();
}

}  // namespace HostPlatform
