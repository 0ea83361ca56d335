// Lookups over the capability reference table.
#include "CapabilityReference.h"

#include <algorithm>
#include <iterator>

namespace Lumora {

namespace {

// The text of each CapabilityInputKind, in its order.
constexpr const char* kInputKindTexts[] = {
    "config",          "property",   "session-tag",    "session-param", "request-tag",
    "request-setting", "result-tag", "operation-mode", "camera-mode",   "client",
    "stream",          "request",    "caps",           "session",       "file",
};
static_assert(sizeof(kInputKindTexts) / sizeof(kInputKindTexts[0]) == kInputFile + 1,
              "one text per input kind");

}  // namespace

std::string ConfigKeyText(EConfigKey id) {
    const _ConfigKey& key = Key(id);
    switch (key.form) {
        case EConfigKeyForm::Single:
            return key.key;
        case EConfigKeyForm::Rows:
            return std::string(key.key) + "[i]";
        case EConfigKeyForm::NamedByKey:
            return std::string(key.key) + "[sensor]";
        case EConfigKeyForm::AnyKey:
            return "<sensor name>";
        case EConfigKeyForm::NamedRows:
        case EConfigKeyForm::NamedSingleRow:
            return "<package>[i]";
        case EConfigKeyForm::SensorModeKey:
            break;
    }
    return "<sensor>[mask][mode]";
}

std::string ConfigKeyPath(EConfigKey key) {
    return std::string(Key(key).group) + "/" + ConfigKeyText(key);
}

int FindCapability(const std::string& name) {
    for (uint32_t bit = 0; bit < kCapabilityCount; ++bit) {
        const _Capability& capability = Capabilities()[bit];
        if ((capability.name != nullptr && name == capability.name) ||
            (capability.otherName != nullptr && name == capability.otherName)) {
            return static_cast<int>(bit);
        }
    }
    return -1;
}

std::vector<const _CapabilityRule*> RulesOf(uint32_t bit) {
    std::vector<const _CapabilityRule*> rules;
    for (size_t i = 0; i < CapabilityRuleCount(); ++i) {
        if (CapabilityRules()[i].bit == bit) {
            rules.push_back(&CapabilityRules()[i]);
        }
    }
    return rules;
}

uint8_t ScopesOf(uint32_t bit) {
    uint8_t scopes = 0;
    for (const _CapabilityRule* rule : RulesOf(bit)) {
        scopes = static_cast<uint8_t>(scopes | rule->scope);
    }
    return scopes;
}

std::vector<_CapabilityInput> ParseInputs(const _CapabilityRule& rule) {
    std::vector<_CapabilityInput> inputs;
    const std::string text = rule.inputs != nullptr ? rule.inputs : "";
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find("; ", start);
        if (end == std::string::npos) {
            end = text.size();
        }
        const std::string item = text.substr(start, end - start);
        start = end + 2;
        const size_t colon = item.find(':');
        if (colon == std::string::npos) {
            continue;
        }
        const auto* const none = std::end(kInputKindTexts);
        const auto* known = std::find(std::begin(kInputKindTexts), none, item.substr(0, colon));
        if (known == none) {
            continue;
        }
        _CapabilityInput input;
        input.kind = static_cast<CapabilityInputKind>(known - std::begin(kInputKindTexts));
        input.value = item.substr(colon + 1);
        if (input.kind == kInputConfig) {
            const size_t id =
                std::find(kConfigKeyIds, kConfigKeyIds + kConfigKeyCount, input.value) -
                kConfigKeyIds;
            if (id == kConfigKeyCount) {
                continue;
            }
            input.configKey = static_cast<EConfigKey>(id);
            input.group = kConfigKeys[id].group;
            input.key = ConfigKeyText(input.configKey);
            input.value = ConfigKeyPath(input.configKey);
        }
        inputs.push_back(input);
    }
    return inputs;
}

const char* ScopeText(CapabilityScope scope) {
    switch (scope) {
        case kScopeSessionLogical:
            return "session logical";
        case kScopeSessionPhysical:
            return "session physical";
        case kScopeRequestLogical:
            return "request logical";
        case kScopeRequestPhysical:
            return "request physical";
    }
    return "";
}

const char* InputKindText(CapabilityInputKind kind) {
    return kInputKindTexts[kind];
}

}  // namespace Lumora
