// Small helpers around the hardware configuration store for the recurring
// shapes of the configuration: whole lists, booleans with a default, indexed
// rows with their -1 wildcard, and the prefix rule of client names.
#ifndef LUMORA_CONFIG_HELPERS_H
#define LUMORA_CONFIG_HELPERS_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "common/ConfigKeys.h"

namespace Lumora {

// Status 0 of the store means success; 6 is "not configured".
constexpr int kConfigOk = 0;
constexpr int kConfigNotFound = 6;

// Reads every value of an unsigned list into `out` (resized to the value
// count). Returns the store's status; a key with no values gives 0 and an empty
// list.
int ReadUIntList(const char* group, const char* key, std::vector<uint32_t>& out);

// Reads every string of a list; 0 on success with `out` holding the strings
// (pointers into the configuration store), else the store's status or 6 for
// a list without values.
int ReadStringList(const char* group, const char* key, std::vector<char*>& out);

// A boolean of the store; `defaultValue` when it is not configured or does not
// read.
bool ReadConfigBool(const char* group, const char* key, bool defaultValue);

// True when the unsigned list group/key reads successfully and holds `value`.
bool UIntListContains(const char* group, const char* key, uint32_t value);

// The wildcard of configured table rows: -1 matches any actual value.
constexpr int32_t kConfigAnyValue = -1;
constexpr bool RowValueMatches(int32_t rowValue, int32_t actual) {
    return rowValue == kConfigAnyValue || rowValue == actual;
}

// Prefix rule of the package, activity and property comparisons: an empty
// prefix matches every text.
inline bool StartsWith(const char* text, const char* prefix) {
    return strncmp(text, prefix, strlen(prefix)) == 0;
}

// Decimal text of a row index, the index of the store's indexed ("Locale")
// reads.
struct RowIndex {
    explicit RowIndex(uint32_t row) { snprintf(text, sizeof(text), "%u", row); }
    char text[16];
};

// The same reads of a key of the table.
inline int ReadUIntList(EConfigKey key, std::vector<uint32_t>& out) {
    return ReadUIntList(Key(key).group, Key(key).key, out);
}
inline int ReadStringList(EConfigKey key, std::vector<char*>& out) {
    return ReadStringList(Key(key).group, Key(key).key, out);
}
inline bool ReadConfigBool(EConfigKey key, bool defaultValue = false) {
    return ReadConfigBool(Key(key).group, Key(key).key, defaultValue);
}
inline bool UIntListContains(EConfigKey key, uint32_t value) {
    return UIntListContains(Key(key).group, Key(key).key, value);
}

// The rows "Mode[0]", "Mode[1]", ... of the rows key `rows`: returns the key
// count of its group and sets `firstRowValues` to the value count of
// "Mode[0]". A group without rows, or whose first row does not hold the
// table's row length, is logged as an error of the configuration step `func`.
uint32_t ReadModeRows(const char* func, EConfigKey rows, uint32_t* firstRowValues);

// Formats "name[index]" into `out`; false when it does not fit.
bool FormatIndexedKey(char* out, size_t outSize, const char* name, uint32_t index);

}  // namespace Lumora

#endif  // LUMORA_CONFIG_HELPERS_H
