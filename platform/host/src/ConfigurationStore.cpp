// Host hardware configuration store: the C interface over the parsed text.
//
// Status codes: 0 success, 6 when the group or key is not configured (or an
// argument is null), 22 when a value does not convert. Outputs are written only
// on success. Strings handed out point into the store and stay valid until the
// next successful load replaces it.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CameraHWConfiguration.h>
#include <HostConfigText.h>
#include <HostConfigValues.h>
#include <HostFiles.h>
#include <HostPlatform.h>

#include "ConfigurationData.h"
#include "ConfigurationReads.h"

namespace {

using HostPlatform::ConfigGroup;
using HostPlatform::ConfigKey;
using HostPlatform::ConfigReadKind;
using HostPlatform::NumberStatus;
using HostPlatform::Internal::ConfigurationData;
using HostPlatform::Internal::NoteConfigurationRead;

constexpr int kOk = 0;
constexpr int kNotConfigured = 6;
constexpr int kInvalid = 22;

struct Store {
    std::mutex mutex;
    std::unique_ptr<ConfigurationData> data = std::make_unique<ConfigurationData>();
    std::string text;  // what `data` was read from
};

Store& TheStore() {
    // Never destroyed: the library may read its configuration from static
    // destructors of its own.
    static Store* store = new Store();
    return *store;
}

int Load(std::string_view text) {
    // Tools rerun one configuration many times; the library only reads it.
    {
        Store& store = TheStore();
        std::lock_guard<std::mutex> lock(store.mutex);
        if (!store.text.empty() && store.text == text) {
            return 0;
        }
    }
    HostPlatform::ConfigText parsed = HostPlatform::ReadConfigText(text);
    if (const HostPlatform::ConfigProblem* malformed = parsed.FirstMalformed()) {
        return malformed->line;
    }
    auto data = std::make_unique<ConfigurationData>(std::move(parsed));
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    store.data.swap(data);
    store.text = text;
    return 0;
}

// ---- Value conversions of the typed reads. ----

template <typename T, NumberStatus (*Parse)(const std::string&, T*)>
bool Convert(const std::string& text, T* out) {
    return Parse(text, out) == NumberStatus::Ok;
}
constexpr auto ToUInt32 = Convert<uint32_t, HostPlatform::ParseUInt32>;
constexpr auto ToInt32 = Convert<int32_t, HostPlatform::ParseInt32>;
constexpr auto ToInt64 = Convert<int64_t, HostPlatform::ParseInt64>;

bool ToString(std::string& text, char** out) {
    *out = &text[0];
    return true;
}

// ---- Lookups, under the store's lock. ----

ConfigKey* FindKey(ConfigurationData& data, const char* group, const char* key) {
    if (group == nullptr) {
        return nullptr;
    }
    NoteConfigurationRead(ConfigReadKind::Key, group, key);
    return data.FindKey(group, key);
}

// "name[index]", or null (nothing configured) when either is null.
class LocaleKey {
public:
    LocaleKey(const char* name, const char* index) {
        if (name != nullptr && index != nullptr) {
            m_key = std::string(name) + '[' + index + ']';
        }
    }
    operator const char*() const { return m_key ? m_key->c_str() : nullptr; }

private:
    std::optional<std::string> m_key;
};

// The first value of a key, converted.
template <typename T, typename Convert>
int ReadSingle(const char* group, const char* key, T* out, Convert convert) {
    if (key == nullptr || out == nullptr) {
        return kNotConfigured;
    }
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    ConfigKey* found = FindKey(*store.data, group, key);
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
int ReadList(const char* group, const char* key, T* out, uint32_t count, Convert convert) {
    if (key == nullptr || (out == nullptr && count > 0)) {
        return kNotConfigured;
    }
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    ConfigKey* found = FindKey(*store.data, group, key);
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

// The number of keys of a group, -1 when it is absent.
int64_t GroupKeyCount(const char* group) {
    NoteConfigurationRead(ConfigReadKind::Group, group, "");
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    const ConfigGroup* found = store.data->FindGroup(group);
    return found != nullptr ? static_cast<int64_t>(found->keys.size()) : -1;
}

}  // namespace

namespace HostPlatform {

int LoadConfiguration(const char* text) {
    if (text == nullptr) {
        return -1;
    }
    return Load(text);
}

bool PeekConfiguration(const std::string& group, const std::string& key,
                       std::vector<std::string>* values) {
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    const ConfigKey* found = store.data->FindKey(group, key);
    if (found != nullptr && values != nullptr) {
        *values = found->values;
    }
    return found != nullptr;
}

int LoadConfigurationFile(const char* path) {
    std::string text;
    if (path == nullptr || !ReadWholeFile(path, &text)) {
        return -1;
    }
    return Load(text);
}

}  // namespace HostPlatform

extern "C" {

int HasGroupConfiguration(const char* group) {
    return group != nullptr && GroupKeyCount(group) >= 0 ? 1 : 0;
}

uint32_t GetKeyCount(const char* group) {
    const int64_t count = group != nullptr ? GroupKeyCount(group) : 0;
    return count > 0 ? static_cast<uint32_t>(count) : 0;
}

uint32_t GetValuesCount(const char* group, const char* key) {
    if (key == nullptr) {
        return 0;
    }
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    const ConfigKey* found = FindKey(*store.data, group, key);
    return found != nullptr ? static_cast<uint32_t>(found->values.size()) : 0;
}

int GetBooleanConfiguration(const char* group, const char* key, bool* out) {
    return ReadSingle(group, key, out, HostPlatform::ParseBoolean);
}

int GetIntegerConfiguration(const char* group, const char* key, int32_t* out) {
    return ReadSingle(group, key, out, ToInt32);
}

int GetUIntegerConfiguration(const char* group, const char* key, uint32_t* out) {
    return ReadSingle(group, key, out, ToUInt32);
}

int GetInt64Configuration(const char* group, const char* key, int64_t* out) {
    return ReadSingle(group, key, out, ToInt64);
}

int GetStringConfiguration(const char* group, const char* key, char** out) {
    return ReadSingle(group, key, out, ToString);
}

int GetUIntegerListConfiguration(const char* group, const char* key, uint32_t* out,
                                 uint32_t count) {
    return ReadList(group, key, out, count, ToUInt32);
}

int GetFloatListConfiguration(const char* group, const char* key, float* out, uint32_t count) {
    return ReadList(group, key, out, count, HostPlatform::ParseFloat);
}

int GetStringListConfiguration(const char* group, const char* key, char** out, uint32_t count) {
    return ReadList(group, key, out, count, ToString);
}

uint32_t GetLocaleKeyCount(const char* group, const char* name) {
    if (group == nullptr || name == nullptr) {
        return 0;
    }
    const std::string_view prefix(name);
    NoteConfigurationRead(ConfigReadKind::IndexedKeys, group, prefix);
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.mutex);
    const ConfigGroup* found = store.data->FindGroup(group);
    if (found == nullptr) {
        return 0;
    }
    return static_cast<uint32_t>(
        std::count_if(found->keys.begin(), found->keys.end(), [&](const ConfigKey& key) {
            const std::string& k = key.name;
            return k.size() >= prefix.size() + 2 && k.compare(0, prefix.size(), prefix) == 0 &&
                   k[prefix.size()] == '[' && k.back() == ']';
        }));
}

uint32_t GetLocaleKeyValuesCount(const char* group, const char* name, const char* index) {
    return GetValuesCount(group, LocaleKey(name, index));
}

int GetLocaleStringConfiguration(const char* group, const char* name, const char* index,
                                 char** out) {
    return ReadSingle(group, LocaleKey(name, index), out, ToString);
}

int GetLocaleIntegerListConfiguration(const char* group, const char* name, const char* index,
                                      int32_t* out, uint32_t count) {
    return ReadList(group, LocaleKey(name, index), out, count, ToInt32);
}

int GetLocaleUIntegerListConfiguration(const char* group, const char* name, const char* index,
                                       uint32_t* out, uint32_t count) {
    return ReadList(group, LocaleKey(name, index), out, count, ToUInt32);
}

int GetLocaleStringListConfiguration(const char* group, const char* name, const char* index,
                                     char** out, uint32_t count) {
    return ReadList(group, LocaleKey(name, index), out, count, ToString);
}

}  // extern "C"
