#include "lint/LintTable.h"

#include <cstring>
#include <vector>

namespace UilayerSim {

const KeyRule* KeyRules(size_t* count) {
    static const std::vector<KeyRule> rules = [] {
        std::vector<KeyRule> out;
        for (const Lumora::_ConfigKey& key : Lumora::kConfigKeys) {
            std::string types;  // the letters and '*', brackets and '=' left out
            for (const char* c = key.shape; *c != '\0' && *c != '='; ++c) {
                if (*c != '[' && *c != ']') {
                    types += *c;
                }
            }
            const bool repeats = types.find('*') != std::string::npos;
            out.push_back(KeyRule{key.group, key.key, key.form, types, Lumora::MinValues(key.shape),
                                  repeats ? 0 : static_cast<uint32_t>(types.size()),
                                  strchr(key.shape, '=') != nullptr});
        }
        return out;
    }();
    *count = rules.size();
    return rules.data();
}

char TypeAt(const std::string& pattern, size_t position, size_t count) {
    const size_t star = pattern.find('*');
    const size_t length = pattern.size();
    if (star == std::string::npos) {
        return position < length ? pattern[position] : pattern[length - 1];
    }
    const size_t tail = length - star - 1;  // the letters after the '*'
    if (count > tail && position >= count - tail && position < count) {
        return pattern[star + 1 + (position - (count - tail))];
    }
    if (position < star) {
        return pattern[position];
    }
    return pattern[star - 1];
}

}  // namespace UilayerSim
