// The library's configuration keys (common/ConfigKeys.h) as the checks read
// them: the shape text of each key taken apart into value types and counts.
#ifndef UILAYER_SIM_LINT_TABLE_H
#define UILAYER_SIM_LINT_TABLE_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "common/ConfigKeys.h"

namespace UilayerSim {

using KeyForm = Lumora::EConfigKeyForm;

struct KeyRule {
    const char* group;
    const char* key;  // the key, or the row name; "" for the forms that take any name
    KeyForm form;
    std::string types;  // the value letters of the shape, '*' included
    uint32_t minValues;
    uint32_t maxValues;   // 0: no upper bound
    bool sizedByRowZero;  // the library reads every row with the value count of row 0
};

// One rule per key of the library's table, in its order.
const KeyRule* KeyRules(size_t* count);

// Type letter of value `position` of a list of `count` values.
char TypeAt(const std::string& pattern, size_t position, size_t count);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_LINT_TABLE_H
