#include "lint/LintTable.h"

#include <cstdlib>
#include <cstring>
#include <vector>

namespace UilayerSim {

namespace {

// The most values of a shape: "{n}" n, "{n,m}" m, "{n,}" none (0); without a
// count, the letters of a list without '*' and none for one with it.
uint32_t MaxValues(const std::string& types, const char* shape) {
    const char* count = strchr(shape, '{');
    if (count == nullptr) {
        return types.find('*') == std::string::npos ? static_cast<uint32_t>(types.size()) : 0;
    }
    const char* comma = strchr(count, ',');
    return static_cast<uint32_t>(strtoul(comma != nullptr ? comma + 1 : count + 1, nullptr, 10));
}

}  // namespace

const KeyRule* KeyRules(size_t* count) {
    static const std::vector<KeyRule> rules = [] {
        std::vector<KeyRule> out;
        for (const Lumora::_ConfigKey& key : Lumora::kConfigKeys) {
            const char* shape = key.shape;
            const std::string types(shape, strcspn(shape, "{="));
            out.push_back(KeyRule{key.group, key.key, key.form, types, Lumora::MinValues(shape),
                                  MaxValues(types, shape), strchr(shape, '=') != nullptr});
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
