// The scenario reader's number parsing and YAML loading.
#include "core/ScenarioFields.h"

namespace UilayerSim {

bool ParseIntegerText(const std::string& text, int64_t* value) {
    bool negative = false;
    uint64_t magnitude = 0;
    if (HostPlatform::ParseIntegerMagnitude(text, &negative, &magnitude) !=
            HostPlatform::NumberStatus::Ok ||
        magnitude > (negative ? uint64_t{1} << 63 : (uint64_t{1} << 63) - 1)) {
        return false;
    }
    *value = negative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
    return true;
}

bool IsIntegerSyntax(const std::string& text) {
    bool negative = false;
    uint64_t magnitude = 0;
    return HostPlatform::ParseIntegerMagnitude(text, &negative, &magnitude) !=
           HostPlatform::NumberStatus::NotANumber;
}

ScenarioError YamlError(const std::string& path, const YAML::Exception& error,
                        const std::string& prefix) {
    return ScenarioError(path, error.mark.line >= 0 ? error.mark.line + 1 : 0, "",
                         prefix + error.msg);
}

YAML::Node LoadYaml(const std::string& text, const std::string& path) {
    try {
        return YAML::Load(text);
    } catch (const YAML::Exception& error) {
        throw YamlError(path, error, "not valid YAML: ");
    }
}

}  // namespace UilayerSim
