// Host hardware configuration store: the C interface over the parsed text.
//
// Status codes: 0 success, 6 when the group or key is not configured (or an
// argument is null), 22 when a value does not convert. Outputs are written only
// on success. Strings handed out point into the store and stay valid until the
// next successful load replaces it.
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include <CameraHWConfiguration.h>
#include <HostPlatform.h>

#include "ConfigurationData.h"

namespace {

using HostPlatform::Internal::ConfigurationData;
using HostPlatform::Internal::ConfigurationGroup;
using HostPlatform::Internal::ConfigurationKey;

constexpr int kOk = 0;
constexpr int kNotConfigured = 6;
constexpr int kInvalid = 22;

struct Store {
    std::mutex mutex;
    std::unique_ptr<ConfigurationData> data = std::make_unique<ConfigurationData>();
};

Store& TheStore() {
    // Never destroyed: the library may read its configuration from static
    // destructors of its own.
    static Store* store = new Store();
    return *store;
}

int Load(std::string_view text) {
    auto data = std::make_unique<ConfigurationData>();
    const int line = HostPlatform::Internal::ParseConfiguration(text, data.get());
    if (line != 0) {
        return line;
    }
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    store.data.swap(data);
    return 0;
}

// ---- Value conversions. Each one takes the whole text or fails. ----

bool IsHexDigit(char c, unsigned* digit) {
    if (c >= '0' && c <= '9') {
        *digit = static_cast<unsigned>(c - '0');
    } else if (c >= 'a' && c <= 'f') {
        *digit = static_cast<unsigned>(c - 'a' + 10);
    } else if (c >= 'A' && c <= 'F') {
        *digit = static_cast<unsigned>(c - 'A' + 10);
    } else {
        return false;
    }
    return true;
}

// Optional sign, then decimal digits or 0x/0X and hex digits. Gives the
// magnitude (at most UINT64_MAX) and the sign.
bool ParseInteger(const std::string& text, bool* negative, uint64_t* magnitude) {
    size_t i = 0;
    *negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        *negative = text[i] == '-';
        ++i;
    }
    unsigned base = 10;
    if (i + 1 < text.size() && text[i] == '0' && (text[i + 1] == 'x' || text[i + 1] == 'X')) {
        base = 16;
        i += 2;
    }
    if (i >= text.size()) {
        return false;
    }
    uint64_t value = 0;
    for (; i < text.size(); ++i) {
        unsigned digit = 0;
        if (!IsHexDigit(text[i], &digit) || digit >= base) {
            return false;
        }
        if (value > (UINT64_MAX - digit) / base) {
            return false;
        }
        value = value * base + digit;
    }
    *magnitude = value;
    return true;
}

// -2147483648 .. 4294967295, wrapped to 32 bits.
bool ToUInt32(const std::string& text, uint32_t* out) {
    bool negative = false;
    uint64_t magnitude = 0;
    if (!ParseInteger(text, &negative, &magnitude)) {
        return false;
    }
    if (negative) {
        if (magnitude > 0x80000000ull) {
            return false;
        }
        *out = static_cast<uint32_t>(0u - static_cast<uint32_t>(magnitude));
    } else {
        if (magnitude > 0xFFFFFFFFull) {
            return false;
        }
        *out = static_cast<uint32_t>(magnitude);
    }
    return true;
}

bool ToInt32(const std::string& text, int32_t* out) {
    uint32_t bits = 0;
    if (!ToUInt32(text, &bits)) {
        return false;
    }
    *out = static_cast<int32_t>(bits);
    return true;
}

// INT64_MIN .. UINT64_MAX, wrapped to 64 bits.
bool ToInt64(const std::string& text, int64_t* out) {
    bool negative = false;
    uint64_t magnitude = 0;
    if (!ParseInteger(text, &negative, &magnitude)) {
        return false;
    }
    if (negative && magnitude > 0x8000000000000000ull) {
        return false;
    }
    const uint64_t bits = negative ? 0u - magnitude : magnitude;
    *out = static_cast<int64_t>(bits);
    return true;
}

bool EqualsIgnoringCase(const std::string& text, const char* word) {
    return strcasecmp(text.c_str(), word) == 0 && text.size() == strlen(word);
}

bool ToBool(const std::string& text, bool* out) {
    if (EqualsIgnoringCase(text, "true") || text == "1") {
        *out = true;
        return true;
    }
    if (EqualsIgnoringCase(text, "false") || text == "0") {
        *out = false;
        return true;
    }
    return false;
}

bool ToFloat(const std::string& text, float* out) {
    if (text.empty()) {
        return false;
    }
    char* end = nullptr;
    const int savedErrno = errno;
    const float value = strtof(text.c_str(), &end);
    errno = savedErrno;
    if (end != text.c_str() + text.size()) {
        return false;
    }
    *out = value;
    return true;
}

bool ToString(std::string& text, char** out) {
    *out = &text[0];
    return true;
}

// ---- Lookups, under the store's lock. ----

ConfigurationKey* FindKey(ConfigurationData& data, const char* group, std::string_view key) {
    if (group == nullptr) {
        return nullptr;
    }
    ConfigurationGroup* found = data.Find(group);
    return found != nullptr ? found->Find(key) : nullptr;
}

std::string LocaleKey(const char* name, const char* index) {
    std::string key(name);
    key += '[';
    key += index;
    key += ']';
    return key;
}

// The first value of a key, converted.
template <typename T, typename Convert>
int ReadSingle(const char* group, std::string_view key, T* out, Convert convert) {
    if (out == nullptr) {
        return kNotConfigured;
    }
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    ConfigurationKey* found = FindKey(*store.data, group, key);
    if (found == nullptr || found->values.empty()) {
        return kNotConfigured;
    }
    T value{};
    if (!convert(found->values[0], &value)) {
        return kInvalid;
    }
    *out = value;
    return kOk;
}

// The first min(count, available) values of a key, converted; nothing is
// written unless all of them convert.
template <typename T, typename Convert>
int ReadList(const char* group, std::string_view key, T* out, uint32_t count, Convert convert) {
    if (out == nullptr && count > 0) {
        return kNotConfigured;
    }
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    ConfigurationKey* found = FindKey(*store.data, group, key);
    if (found == nullptr) {
        return kNotConfigured;
    }
    const size_t n = found->values.size() < count ? found->values.size() : count;
    std::vector<T> values(n);
    for (size_t i = 0; i < n; ++i) {
        if (!convert(found->values[i], &values[i])) {
            return kInvalid;
        }
    }
    for (size_t i = 0; i < n; ++i) {
        out[i] = values[i];
    }
    return kOk;
}

uint32_t ValuesCount(const char* group, std::string_view key) {
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    const ConfigurationKey* found = FindKey(*store.data, group, key);
    return found != nullptr ? static_cast<uint32_t>(found->values.size()) : 0;
}

}  // namespace

namespace HostPlatform {

int LoadConfiguration(const char* text) {
    if (text == nullptr) {
        return -1;
    }
    return Load(text);
}

int LoadConfigurationFile(const char* path) {
    if (path == nullptr) {
        return -1;
    }
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return -1;
    }
    std::string text;
    char buffer[4096];
    for (;;) {
        const ssize_t n = read(fd, buffer, sizeof(buffer));
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0) {
            close(fd);
            return -1;
        }
        if (n == 0) {
            break;
        }
        text.append(buffer, static_cast<size_t>(n));
    }
    close(fd);
    return Load(text);
}

}  // namespace HostPlatform

extern "C" {

int HasGroupConfiguration(const char* group) {
    if (group == nullptr) {
        return 0;
    }
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    return store.data->Find(group) != nullptr ? 1 : 0;
}

uint32_t GetKeyCount(const char* group) {
    if (group == nullptr) {
        return 0;
    }
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    const ConfigurationGroup* found = store.data->Find(group);
    return found != nullptr ? static_cast<uint32_t>(found->Keys().size()) : 0;
}

uint32_t GetValuesCount(const char* group, const char* key) {
    if (key == nullptr) {
        return 0;
    }
    return ValuesCount(group, key);
}

int GetBooleanConfiguration(const char* group, const char* key, bool* out) {
    if (key == nullptr) {
        return kNotConfigured;
    }
    return ReadSingle(group, key, out, ToBool);
}

int GetIntegerConfiguration(const char* group, const char* key, int32_t* out) {
    if (key == nullptr) {
        return kNotConfigured;
    }
    return ReadSingle(group, key, out, ToInt32);
}

int GetUIntegerConfiguration(const char* group, const char* key, uint32_t* out) {
    if (key == nullptr) {
        return kNotConfigured;
    }
    return ReadSingle(group, key, out, ToUInt32);
}

int GetInt64Configuration(const char* group, const char* key, int64_t* out) {
    if (key == nullptr) {
        return kNotConfigured;
    }
    return ReadSingle(group, key, out, ToInt64);
}

int GetStringConfiguration(const char* group, const char* key, char** out) {
    if (key == nullptr) {
        return kNotConfigured;
    }
    return ReadSingle(group, key, out, ToString);
}

int GetUIntegerListConfiguration(const char* group, const char* key, uint32_t* out,
                                 uint32_t count) {
    if (key == nullptr) {
        return kNotConfigured;
    }
    return ReadList(group, key, out, count, ToUInt32);
}

int GetFloatListConfiguration(const char* group, const char* key, float* out, uint32_t count) {
    if (key == nullptr) {
        return kNotConfigured;
    }
    return ReadList(group, key, out, count, ToFloat);
}

int GetStringListConfiguration(const char* group, const char* key, char** out, uint32_t count) {
    if (key == nullptr) {
        return kNotConfigured;
    }
    return ReadList(group, key, out, count, ToString);
}

uint32_t GetLocaleKeyCount(const char* group, const char* name) {
    if (group == nullptr || name == nullptr) {
        return 0;
    }
    const std::string_view prefix(name);
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    const ConfigurationGroup* found = store.data->Find(group);
    if (found == nullptr) {
        return 0;
    }
    uint32_t count = 0;
    for (const ConfigurationKey& key : found->Keys()) {
        const std::string& k = key.name;
        if (k.size() >= prefix.size() + 2 && k.compare(0, prefix.size(), prefix) == 0 &&
            k[prefix.size()] == '[' && k.back() == ']') {
            ++count;
        }
    }
    return count;
}

uint32_t GetLocaleKeyValuesCount(const char* group, const char* name, const char* index) {
    if (name == nullptr || index == nullptr) {
        return 0;
    }
    return ValuesCount(group, LocaleKey(name, index));
}

int GetLocaleStringConfiguration(const char* group, const char* name, const char* index,
                                 char** out) {
    if (name == nullptr || index == nullptr) {
        return kNotConfigured;
    }
    return ReadSingle(group, LocaleKey(name, index), out, ToString);
}

int GetLocaleIntegerListConfiguration(const char* group, const char* name, const char* index,
                                      int32_t* out, uint32_t count) {
    if (name == nullptr || index == nullptr) {
        return kNotConfigured;
    }
    return ReadList(group, LocaleKey(name, index), out, count, ToInt32);
}

int GetLocaleUIntegerListConfiguration(const char* group, const char* name, const char* index,
                                       uint32_t* out, uint32_t count) {
    if (name == nullptr || index == nullptr) {
        return kNotConfigured;
    }
    return ReadList(group, LocaleKey(name, index), out, count, ToUInt32);
}

int GetLocaleStringListConfiguration(const char* group, const char* name, const char* index,
                                     char** out, uint32_t count) {
    if (name == nullptr || index == nullptr) {
        return kNotConfigured;
    }
    return ReadList(group, LocaleKey(name, index), out, count, ToString);
}

}  // extern "C"
