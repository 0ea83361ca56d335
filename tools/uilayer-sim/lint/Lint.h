// Checks a hardware configuration text against what the library reads: the
// library switches a whole rule off without a word when a row has the wrong
// shape, so every such shape is reported with its line.
#ifndef UILAYER_SIM_LINT_H
#define UILAYER_SIM_LINT_H

#include <string>
#include <vector>

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

}  // namespace UilayerSim

#endif  // UILAYER_SIM_LINT_H
