// The lint of a configuration against a device: a sensor name, camera id or
// camera mask that no camera of the device has makes the library pass the
// row over without a word (a row for sensor "acw84" on a device whose sensor
// is "acw48" switches its feature off).
#include <HostConfigText.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <set>

#include "core/NumberText.h"
#include "core/Suggest.h"
#include "common/ConfigKeys.h"
#include "lint/Lint.h"

namespace UilayerSim {

namespace {

struct DeviceIds {
    std::set<int64_t> physical;
    std::set<int64_t> framework;
    std::set<int64_t> logical;
    std::vector<std::string> sensors;
    std::vector<std::string> setNames;
};

DeviceIds IdsOf(const Scenario& device) {
    DeviceIds ids;
    for (const CameraSetup& camera : device.cameras) {
        ids.framework.insert(camera.frameworkId);
        if (!camera.hasRecord) {
            continue;
        }
        ids.logical.insert(camera.logicalCamId);
        if (camera.hasSensorName && !camera.sensorName.empty()) {
            ids.sensors.push_back(camera.sensorName);
        }
        for (const PhysicalCameraSetup& physical : camera.physicalCameras) {
            ids.physical.insert(physical.physicalCamId);
        }
        // The name tables know a set of cameras by.
        const char* setName =
            Lumora::SetCameraName(static_cast<uint32_t>(camera.physicalCameras.size()));
        if (setName != nullptr) {
            ids.setNames.push_back(setName);
        }
    }
    return ids;
}

std::string List(const std::set<int64_t>& ids) {
    std::string text;
    for (const int64_t id : ids) {
        text += (text.empty() ? "" : ", ") + std::to_string(id);
    }
    return text.empty() ? "none" : text;
}

// The meaning letter of value `position` of `count` (KeyRule::meanings).
char MeaningAt(const std::string& meanings, size_t position, size_t count) {
    if (meanings.find('*') != std::string::npos) {
        return TypeAt(meanings, position, count);
    }
    return position < meanings.size() ? meanings[position] : '.';
}

class DeviceLinter {
public:
    DeviceLinter(const std::string& file, const Scenario& device)
        : m_file(file), m_ids(IdsOf(device)) {}

    // The finding for `value`, meaning `meaning`; "" when the device has it.
    // `type` is the value's type letter: 'x' values are hexadecimal without 0x.
    std::string Check(char meaning, char type, const std::string& value, const char** rule) const {
        if (meaning == '.') {
            return "";
        }
        if (meaning == 'n' || meaning == 'N') {
            *rule = "unknown-sensor";
            return CheckName(value, meaning == 'N');
        }
        int64_t number = 0;
        if (type == 'x') {
            number = static_cast<int64_t>(strtoull(value.c_str(), nullptr, 16));
        } else if (!ParseIntegerText(value, &number)) {
            return "";  // not a number: the value checks report it
        }
        *rule = meaning == 'm' || meaning == 'L' ? "unknown-camera-in-mask" : "unknown-camera";
        switch (meaning) {
            case 'p':
                return Known(m_ids.physical, number, "physical camera", "physical ids");
            case 'c':
                return Known(m_ids.framework, number, "camera", "framework ids");
            case 'l':
                return number == Lumora::kPipelineAnyLogicalCamera
                           ? ""
                           : Known(m_ids.logical, number, "logical camera", "logical ids");
            case 'm':
                return CheckMask(number, m_ids.physical, "physical");
            default:
                return CheckMask(number, m_ids.logical, "logical");
        }
    }

    std::vector<LintFinding> Run(const HostPlatform::ConfigText& text) const;

private:
    std::string CheckName(const std::string& name, bool setNames) const {
        std::vector<std::string> known = m_ids.sensors;
        if (setNames) {
            known.insert(known.end(), m_ids.setNames.begin(), m_ids.setNames.end());
        }
        if (std::find(known.begin(), known.end(), name) != known.end()) {
            return "";
        }
        const std::string closest = ClosestName(name, known);
        std::string sensors;
        for (const std::string& sensor : known) {
            sensors += (sensors.empty() ? "" : ", ") + sensor;
        }
        return "\"" + name + "\" is no sensor of the device" +
               (closest.empty() ? " (sensors: " + (sensors.empty() ? "none" : sensors) + ")"
                                : "; did you mean \"" + closest + "\"?");
    }

    static std::string Known(const std::set<int64_t>& ids, int64_t id, const char* what,
                             const char* listName) {
        return ids.count(id) != 0
                   ? ""
                   : std::string(what) + " " + std::to_string(id) + " is not in the device (" +
                         listName + " " + List(ids) + ")";
    }

    static std::string CheckMask(int64_t mask, const std::set<int64_t>& ids, const char* kind) {
        const uint64_t bits = static_cast<uint32_t>(mask);
        for (uint32_t bit = 0; bit < 32; ++bit) {
            if (((bits >> bit) & 1u) != 0 && ids.count(bit) == 0) {
                char text[32];
                snprintf(text, sizeof(text), "mask 0x%llX has bit %u",
                         static_cast<unsigned long long>(bits), bit);
                return std::string(text) + ", and no camera of the device has " + kind + " id " +
                       std::to_string(bit) + " (" + kind + " ids " + List(ids) + ")";
            }
        }
        return "";
    }

    std::string m_file;
    DeviceIds m_ids;
};

// The name a key holds: "Size[<name>]", "<name>[0x..][..]" or the key itself.
std::string NameInKey(const KeyRule& rule, const std::string& key) {
    if (rule.form == KeyForm::NamedByKey) {
        const size_t open = key.find('[');
        return key.substr(open + 1, key.size() - open - 2);
    }
    return rule.form == KeyForm::SensorModeKey ? key.substr(0, key.find('[')) : key;
}

std::vector<LintFinding> DeviceLinter::Run(const HostPlatform::ConfigText& text) const {
    size_t count = 0;
    const KeyRule* rules = KeyRules(&count);
    std::vector<LintFinding> findings;
    for (const HostPlatform::ConfigGroup& group : text.groups) {
        for (const HostPlatform::ConfigKey& key : group.keys) {
            for (size_t r = 0; r < count; ++r) {
                const KeyRule& rule = rules[r];
                if ((rule.meanings.empty() && rule.keyMeaning == '.') ||
                    !KeyRuleMatches(rule, group.name, key.name)) {
                    continue;
                }
                const char* id = "";
                std::string reason = rule.keyMeaning == '.' ? ""
                                                            : Check(rule.keyMeaning, 's',
                                                                    NameInKey(rule, key.name), &id);
                for (size_t i = 0; reason.empty() && i < key.values.size(); ++i) {
                    const char meaning = MeaningAt(rule.meanings, i, key.values.size());
                    const char type = TypeAt(rule.types, i, key.values.size());
                    reason = Check(meaning, type, key.values[i], &id);
                    if (!reason.empty()) {
                        reason = "value " + std::to_string(i + 1) + ": " + reason;
                    }
                }
                if (!reason.empty()) {
                    findings.push_back({m_file, key.line, group.name, key.name, id, reason});
                }
                break;
            }
        }
    }
    return findings;
}

}  // namespace

std::vector<LintFinding> LintAgainstDevice(const std::string& text, const std::string& file,
                                           const Scenario& device) {
    return DeviceLinter(file, device).Run(HostPlatform::ReadConfigText(text));
}

}  // namespace UilayerSim
