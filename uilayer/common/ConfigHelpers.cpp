#include "common/ConfigHelpers.h"

#include <CameraHWConfiguration.h>

#include <algorithm>
#include <cstdio>

#include "common/Log.h"

namespace Lumora {

int ReadUIntList(const char* group, const char* key, std::vector<uint32_t>& out) {
    const uint32_t count = GetValuesCount(group, key);
    out.assign(count, 0);
    uint32_t unused = 0;
    // A read of zero values still tells a key without values from a missing key.
    const int status =
        GetUIntegerListConfiguration(group, key, count > 0 ? out.data() : &unused, count);
    if (status != kConfigOk) {
        out.clear();
    }
    return status;
}

int ReadStringList(const char* group, const char* key, std::vector<char*>& out) {
    const uint32_t count = GetValuesCount(group, key);
    out.assign(count, nullptr);
    if (count == 0) {
        return kConfigNotFound;
    }
    const int status = GetStringListConfiguration(group, key, out.data(), count);
    if (status != kConfigOk) {
        out.clear();
    }
    return status;
}

bool ReadConfigBool(const char* group, const char* key, bool defaultValue) {
    bool value = defaultValue;
    if (GetBooleanConfiguration(group, key, &value) != kConfigOk) {
        return defaultValue;
    }
    return value;
}

bool UIntListContains(const char* group, const char* key, uint32_t value) {
    std::vector<uint32_t> values;
    if (ReadUIntList(group, key, values) != kConfigOk) {
        return false;
    }
    return std::find(values.begin(), values.end(), value) != values.end();
}

bool FormatIndexedKey(char* out, size_t outSize, const char* name, uint32_t index) {
    const int written = snprintf(out, outSize, "%s[%u]", name, index);
    return written > 0 && static_cast<size_t>(written) < outSize;
}

uint32_t ReadModeRows(const char* func, EConfigKey rows, uint32_t* firstRowValues) {
    const _ConfigKey& key = Key(rows);
    const uint32_t keyCount = GetKeyCount(key.group);
    *firstRowValues = GetValuesCount(key.group, key.firstRow);
    if (*firstRowValues != MinValues(key.shape) || keyCount == 0) {
        UI_LOGE_IN(func, "Check CameraHWConfiguration.config");
    }
    return keyCount;
}

}  // namespace Lumora
