// The library's key table as the linter and the experiments read it: value
// types and counts of each key, and which keys of a file a table entry stands for.
#include <algorithm>
#include <cstring>

#include "lint/Lint.h"

namespace UilayerSim {

namespace {

using Lumora::EConfigKey;

// What the values (and names) of the keys that name cameras stand for, as
// KeyRule::meanings spells it; every other key names nothing of the device.
struct _KeyMeaning {
    EConfigKey key;
    char keyName;
    const char* values;
};
constexpr _KeyMeaning kMeanings[] = {
    {EConfigKey::OisCtsCloseOcs, '.', "p*"},
    {EConfigKey::PreviewPipelines, '.', ".l.*."},  // mode, camera, flag, name; or mode, name
    {EConfigKey::SensorNames, '.', "pn"},
    {EConfigKey::CustomRawFullSize, 'n', ""},
    {EConfigKey::Izoom4x4Sensors, '.', "n*"},
    {EConfigKey::Xcfa2x2Sensors, '.', "n*"},
    {EConfigKey::FocalLengthOverrideCameras, '.', "n*"},
    {EConfigKey::ShdrTypeMatching, '.', "c.m"},
    {EConfigKey::SensorDcgVs, 'n', ""},
    {EConfigKey::WarmDolState, '.', ".p"},
    {EConfigKey::EisTypeMatching, '.', ".N*"},
    {EConfigKey::ProVideoIzoomCamIdMask, '.', "m"},
    {EConfigKey::ViullEnable, '.', ".L"},
    {EConfigKey::ViullDisableMap, '.', "L"},
    {EConfigKey::ViullEnableMap, '.', "L."},
    {EConfigKey::AiafTouch2Track, '.', ".m"},
    {EConfigKey::SeamlessSensorModes, 'N', ""},
};

}  // namespace

const KeyRule* KeyRules(size_t* count) {
    static const std::vector<KeyRule> rules = [] {
        std::vector<KeyRule> out;
        for (const Lumora::_ConfigKey& key : Lumora::kConfigKeys) {
            // The letters and '*' before any '=', brackets left out.
            std::string types(key.shape, strcspn(key.shape, "="));
            types.erase(std::remove(types.begin(), types.end(), '['), types.end());
            types.erase(std::remove(types.begin(), types.end(), ']'), types.end());
            const bool repeats = types.find('*') != std::string::npos;
            out.push_back(KeyRule{key.group, key.key, key.form, types, Lumora::MinValues(key.shape),
                                  repeats ? 0 : static_cast<uint32_t>(types.size()),
                                  strchr(key.shape, '=') != nullptr, "", '.'});
        }
        for (const _KeyMeaning& meaning : kMeanings) {
            KeyRule& rule = out[static_cast<size_t>(meaning.key)];
            rule.meanings = meaning.values;
            rule.keyMeaning = meaning.keyName;
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

namespace {

// "<name>[<digits>]"; any name when `name` is empty.
bool IsRow(const std::string& key, const std::string& name) {
    const size_t open = key.rfind('[');
    if (open == std::string::npos || open == 0 || key.back() != ']' || open + 2 >= key.size() ||
        (!name.empty() && key.compare(0, open, name) != 0) ||
        (!name.empty() && open != name.size())) {
        return false;
    }
    return std::all_of(key.begin() + static_cast<long>(open) + 1, key.end() - 1,
                       [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

bool KeyRuleMatches(const KeyRule& rule, const std::string& group, const std::string& key) {
    if (group != rule.group || key.empty()) {
        return false;
    }
    switch (rule.form) {
        case KeyForm::Single:
            return key == rule.key;
        case KeyForm::Rows:
            return IsRow(key, rule.key);
        case KeyForm::NamedRows:
        case KeyForm::NamedSingleRow:
            return IsRow(key, "");
        case KeyForm::NamedByKey:
            return key.rfind(std::string(rule.key) + "[", 0) == 0 && key.back() == ']';
        case KeyForm::AnyKey:
            return true;
        case KeyForm::SensorModeKey:
            return key.back() == ']' && key.find("][") != std::string::npos;
    }
    return false;
}

}  // namespace UilayerSim
