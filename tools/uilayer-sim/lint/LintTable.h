// What the library reads from the hardware configuration: every group and key,
// the form of the key, the type of each value and how many values a key needs.
#ifndef UILAYER_SIM_LINT_TABLE_H
#define UILAYER_SIM_LINT_TABLE_H

#include <cstddef>
#include <cstdint>

namespace UilayerSim {

enum class KeyForm {
    // The key itself ("isSupportLowLatency").
    Single,
    // Rows "<key>[0]" .. "<key>[K-1]", K being the number of keys of the group.
    Rows,
    // Rows "<name>[0]" .. "<name>[n-1]" under any name (a client package),
    // n being the number of keys of that name.
    NamedRows,
    // Like NamedRows, with exactly one entry "<name>[0]" per name.
    NamedSingleRow,
    // "<key>[<sensor name>]".
    NamedByKey,
    // Any key (a sensor name).
    AnyKey,
    // "<sensor>[0x<mask>][0x<operation mode>]" or "<sensor>[0x<mask>][-1]".
    SensorModeKey,
};

// Value types: 'b' boolean, 'i' 32-bit integer, 'u' unsigned 32-bit integer,
// 'l' 64-bit integer, 'f' float, 's' text, 'x' hexadecimal text as "%x"
// reads it. A '*' repeats the character before it over the middle of the
// list; the characters after the '*' are the last values.
struct KeyRule {
    const char* group;
    const char* key;  // the key, or the row name; "" for the forms that take any name
    KeyForm form;
    const char* types;
    uint32_t minValues;
    uint32_t maxValues;   // 0: no upper bound
    bool sizedByRowZero;  // the library reads every row with the value count of row 0
};

const KeyRule* KeyRules(size_t* count);

// Type letter of value `position` of a list of `count` values.
char TypeAt(const char* pattern, size_t position, size_t count);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_LINT_TABLE_H
