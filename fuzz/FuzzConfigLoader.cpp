// The host configuration store on arbitrary text: a load, then typed reads of
// the groups and keys the text names. Besides the sanitizers, the reads check
// what the store promises: a refused text changes nothing, and a list read
// writes at most the values asked for and available.
#include <CameraHWConfiguration.h>
#include <HostConfigText.h>
#include <HostPlatform.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace {

constexpr size_t kMaxNames = 48;
constexpr uint32_t kCanary = 0xA5A5A5A5u;

void Check(bool condition, const char* what) {
    if (!condition) {
        fprintf(stderr, "configuration store: %s\n", what);
        abort();
    }
}

// A list read into an array with room past `count`: nothing past
// min(count, available) may change.
template <typename T, typename Read>
void CheckListRead(uint32_t count, uint32_t available, Read read) {
    std::vector<T> values(count + 2);
    memset(values.data(), 0xA5, values.size() * sizeof(T));
    const int status = read(values.data(), count);
    const uint32_t written = status == 0 ? (count < available ? count : available) : 0;
    for (size_t i = written; i < values.size(); ++i) {
        uint32_t bits = 0;
        memcpy(&bits, &values[i], sizeof(bits) < sizeof(T) ? sizeof(bits) : sizeof(T));
        Check(bits == kCanary, "a list read wrote past the values it returned");
    }
    if constexpr (std::is_same<T, char*>::value) {
        for (uint32_t i = 0; i < written; ++i) {
            Check(values[i] != nullptr, "a string list read returned a null string");
            (void)strlen(values[i]);
        }
    }
}

void ReadKey(const char* group, const char* key) {
    bool b = false;
    int32_t i = 0;
    uint32_t u = 0;
    int64_t l = 0;
    char* s = nullptr;
    GetBooleanConfiguration(group, key, &b);
    GetIntegerConfiguration(group, key, &i);
    GetUIntegerConfiguration(group, key, &u);
    GetInt64Configuration(group, key, &l);
    if (GetStringConfiguration(group, key, &s) == 0) {
        Check(s != nullptr, "a string read returned a null string");
        (void)strlen(s);
    }
    const uint32_t available = GetValuesCount(group, key);
    for (uint32_t count : {available, available + 1, available > 0 ? available - 1 : 0u}) {
        CheckListRead<uint32_t>(count, available, [&](uint32_t* out, uint32_t n) {
            return GetUIntegerListConfiguration(group, key, out, n);
        });
        CheckListRead<float>(count, available, [&](float* out, uint32_t n) {
            return GetFloatListConfiguration(group, key, out, n);
        });
        CheckListRead<char*>(count, available, [&](char** out, uint32_t n) {
            return GetStringListConfiguration(group, key, out, n);
        });
    }

    // An indexed key name[index] is also read through the indexed forms.
    const std::string text(key);
    const size_t open = text.find('[');
    if (open == std::string::npos || text.back() != ']') {
        return;
    }
    const std::string name = text.substr(0, open);
    const std::string index = text.substr(open + 1, text.size() - open - 2);
    (void)GetLocaleKeyCount(group, name.c_str());
    const uint32_t indexed = GetLocaleKeyValuesCount(group, name.c_str(), index.c_str());
    Check(indexed == available, "the indexed and the plain form disagree on a value count");
    if (GetLocaleStringConfiguration(group, name.c_str(), index.c_str(), &s) == 0) {
        (void)strlen(s);
    }
    CheckListRead<int32_t>(indexed, indexed, [&](int32_t* out, uint32_t n) {
        return GetLocaleIntegerListConfiguration(group, name.c_str(), index.c_str(), out, n);
    });
    CheckListRead<uint32_t>(indexed + 1, indexed, [&](uint32_t* out, uint32_t n) {
        return GetLocaleUIntegerListConfiguration(group, name.c_str(), index.c_str(), out, n);
    });
    CheckListRead<char*>(indexed, indexed, [&](char** out, uint32_t n) {
        return GetLocaleStringListConfiguration(group, name.c_str(), index.c_str(), out, n);
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The loader takes a C string: the text ends at the first NUL.
    const std::string text(reinterpret_cast<const char*>(data),
                           strnlen(reinterpret_cast<const char*>(data), size));
    Check(HostPlatform::LoadConfiguration("") == 0, "an empty text was refused");
    const int line = HostPlatform::LoadConfiguration(text.c_str());
    // The groups and keys the text names, as the host tools read it.
    const HostPlatform::ConfigText names = HostPlatform::ReadConfigText(text);
    if (line != 0) {
        Check(line > 0, "a refusal without a line number");
        for (const HostPlatform::ConfigGroup& group : names.groups) {
            Check(HasGroupConfiguration(group.name.c_str()) == 0, "a refused text left a group");
        }
        return 0;
    }
    size_t keys = 0;
    for (const HostPlatform::ConfigGroup& group : names.groups) {
        Check(HasGroupConfiguration(group.name.c_str()) > 0,
              "a group of an accepted text is missing");
        (void)GetKeyCount(group.name.c_str());
        for (size_t i = 0; i < group.keys.size() && keys < kMaxNames; ++i, ++keys) {
            ReadKey(group.name.c_str(), group.keys[i].name.c_str());
        }
    }
    return 0;
}
