// Reader of the hardware configuration text that keeps line numbers, with the
// same rules as the configuration store: "[group]" lines, "key = values"
// lines, '#' and ';' comments, values split at commas outside double quotes.
#ifndef UILAYER_SIM_CONFIG_TEXT_H
#define UILAYER_SIM_CONFIG_TEXT_H

#include <cstdint>
#include <string>
#include <vector>

namespace UilayerSim {

struct ConfigKey {
    std::string name;
    std::vector<std::string> values;
    int line = 0;
};

struct ConfigGroup {
    std::string name;
    int line = 0;  // line of its first header
    std::vector<ConfigKey> keys;

    const ConfigKey* Find(const std::string& key) const;
};

// A line the store would refuse, or a key that replaces an earlier one.
struct ConfigProblem {
    int line = 0;
    std::string group;
    std::string key;
    std::string reason;
};

struct ConfigText {
    std::vector<ConfigGroup> groups;
    std::vector<ConfigProblem> malformed;   // the store refuses the whole file
    std::vector<ConfigProblem> duplicates;  // the later key replaces the earlier

    const ConfigGroup* Find(const std::string& group) const;
};

// Reads the whole text; malformed lines are skipped and recorded.
ConfigText ParseConfigText(const std::string& text);

// An integer as the configuration store writes it: an optional sign, then
// decimal digits or 0x and hexadecimal digits, nothing else. Gives the sign and
// the magnitude; false when the text is not such a number or the magnitude does
// not fit 64 bits.
bool ParseIntegerMagnitude(const std::string& text, bool* negative, uint64_t* magnitude);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_CONFIG_TEXT_H
