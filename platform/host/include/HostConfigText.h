// The host configuration text as read, line numbers and problems included:
// what the configuration store loads, and what the host tools check.
//
//   # comment            (also ; as the first non-blank character)
//   [Group Name]
//   Key = value, 0x10, "quoted, kept as one value"
#ifndef HOST_CONFIG_TEXT_H
#define HOST_CONFIG_TEXT_H

#include <string>
#include <string_view>
#include <vector>

namespace HostPlatform {

struct ConfigKey {
    std::string name;
    std::vector<std::string> values;
    int line = 0;  // 1-based line of the definition in force
};

struct ConfigGroup {
    std::string name;
    int line = 0;                 // line of its first header
    std::vector<ConfigKey> keys;  // file order; a repeated key stays in its first place

    const ConfigKey* Find(std::string_view key) const;
};

enum class ConfigProblemKind {
    // Malformed lines: the store refuses the whole text for any of these.
    UnclosedGroup,
    TextOutsideGroup,
    NoEquals,
    EmptyKey,
    // A key that replaces an earlier one of its group.
    RepeatedKey,
};

struct ConfigProblem {
    int line = 0;
    ConfigProblemKind kind = ConfigProblemKind::NoEquals;
    std::string group;    // the open group; empty outside any
    std::string key;      // for a repeated key
    int earlierLine = 0;  // for a repeated key: the line it replaces

    bool IsMalformed() const { return kind != ConfigProblemKind::RepeatedKey; }
};

struct ConfigText {
    std::vector<ConfigGroup> groups;      // order of first header
    std::vector<ConfigProblem> problems;  // line order

    const ConfigGroup* Find(std::string_view group) const;
    // The first malformed line, or null when the store takes the text.
    const ConfigProblem* FirstMalformed() const;
};

// Reads the whole text. A malformed line is recorded and skipped; the rest is
// read as if it were not there.
ConfigText ReadConfigText(std::string_view text);

// "text outside a group", "repeats the key of line 3, whose values are dropped"...
std::string DescribeConfigProblem(const ConfigProblem& problem);

}  // namespace HostPlatform

#endif  // HOST_CONFIG_TEXT_H
