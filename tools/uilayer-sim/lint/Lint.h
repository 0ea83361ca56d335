// Checks a hardware configuration text against what the library reads: the
// library switches a whole rule off without a word when a row has the wrong
// shape, so every such shape is reported with its line.
#ifndef UILAYER_SIM_LINT_H
#define UILAYER_SIM_LINT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "common/ConfigKeys.h"
#include "core/Scenario.h"

namespace UilayerSim {

struct LintFinding {
    std::string file;
    int line = 0;
    std::string group;  // empty for a line outside any group
    std::string key;    // empty for a finding about the group
    std::string rule;   // stable identifier of the check ("unknown-key", "out-of-range", ...)
    std::string reason;
};

// "device.conf:42: [SHDRTypeMatching] Mode[1]: 5 values, rows of 6 expected"
std::string FormatFinding(const LintFinding& finding);

// Every finding of `text`, in line order; `file` names it in the findings.
std::vector<LintFinding> LintConfiguration(const std::string& text, const std::string& file);

// The two forms of lint output: text lines for people, JSON for scripts.
// Findings of one shape (file, rule, message but for its quoted texts and
// numbers) shown before "FILE:LINE: ... and N more like it" stands for the rest.
constexpr size_t kLintShownPerShape = 3;

// One line per finding (FormatFinding), long runs of one shape collapsed.
std::string RenderLintText(const std::vector<LintFinding>& findings);

// A JSON array, an object a line: file, line, group, key (null when none),
// rule, message.
std::string RenderLintJson(const std::vector<LintFinding>& findings);

// The library's configuration keys (common/ConfigKeys.h) as the checks read
// them: the shape text of each key taken apart into value types and counts.
using KeyForm = Lumora::EConfigKeyForm;

struct KeyRule {
    const char* group;
    const char* key;  // the key, or the row name; "" for the forms that take any name
    KeyForm form;
    std::string types;  // the value letters of the shape, '*' included
    uint32_t minValues;
    uint32_t maxValues;   // 0: no upper bound
    bool sizedByRowZero;  // the library reads every row with the value count of row 0
    // What the values name on the device, one letter per value as `types`
    // ('*' included; values past the letters are '.'): 'n' a sensor name, 'N'
    // a sensor or set name, 'p' a physical camera id, 'c' a framework camera
    // id, 'l' a logical camera id (255: any), 'm' a mask of physical camera
    // ids, 'L' a mask of logical camera ids ('x' values in hexadecimal), '.'
    // nothing of the device.
    std::string meanings;
    char keyMeaning;  // the same for the key's own name ("Size[<sensor>]"), '.' for none
};

// One rule per key of the library's table, in its order.
const KeyRule* KeyRules(size_t* count);

// Whether `key` of `group` is one the rule's key stands for ("Mode[3]" for rows
// named Mode, any key for the forms that take any name).
bool KeyRuleMatches(const KeyRule& rule, const std::string& group, const std::string& key);

// Type letter of value `position` of a list of `count` values.
char TypeAt(const std::string& pattern, size_t position, size_t count);

// Findings of what `text` names on the device: sensor names, camera ids and
// camera masks (KeyRule::meanings) that no camera of `device` has.
std::vector<LintFinding> LintAgainstDevice(const std::string& text, const std::string& file,
                                           const Scenario& device);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_LINT_H
