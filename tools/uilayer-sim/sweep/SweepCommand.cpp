// uilayer-sim sweep: configures every guaranteed stream combination against a
// device and writes the table.

#include <hardware/camera3.h>
#include <system/camera_metadata.h>

#include <HostConfigText.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "common/ConfigKeys.h"
#include "core/Commands.h"
#include "core/Names.h"
#include "core/Report.h"
#include "core/ScenarioReader.h"
#include "core/Suggest.h"
#include "sweep/Sweep.h"

namespace UilayerSim {

namespace {

// A whole unsigned 32-bit number, decimal or 0x hexadecimal.
bool ParseNumber(const std::string& text, uint32_t* value) {
    if (text.empty() || text[0] == '-' || text[0] == '+') {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    const unsigned long long number = strtoull(text.c_str(), &end, 0);
    if (errno != 0 || *end != '\0' || number > UINT32_MAX) {
        return false;
    }
    *value = static_cast<uint32_t>(number);
    return true;
}

// A number, or a stream configuration mode of the platform by name.
bool ParseOperationMode(const std::string& text, uint32_t* mode) {
    int64_t value = 0;
    if (NumberByName(NameTable::OperationModes, text, &value)) {
        *mode = static_cast<uint32_t>(value);
        return true;
    }
    return ParseNumber(text, mode);
}

// The results --fail-on may name: the outcome statuses other than
// configured (in OutcomeStatus order), and a stream left in no role list.
constexpr const char* kFailResults[] = {"failed", "aborted", "crashed", "unclassified"};
constexpr size_t kUnclassified = 3;

// The results of --fail-on as flags in kFailResults order.
std::vector<bool> ParseFailOn(const std::string& text) {
    std::vector<bool> on(std::size(kFailResults), false);
    const std::vector<std::string> known(std::begin(kFailResults), std::end(kFailResults));
    std::istringstream words(text);
    for (std::string word; std::getline(words, word, ',');) {
        const auto found = std::find(known.begin(), known.end(), word);
        if (found == known.end()) {
            const std::string closest = ClosestName(word, known);
            throw UsageError("--fail-on takes failed, aborted, crashed and unclassified, not '" +
                             word + "'" +
                             (closest.empty() ? "" : " (did you mean '" + closest + "'?)"));
        }
        on[static_cast<size_t>(found - known.begin())] = true;
    }
    return on;
}

bool Fails(const SweepResult& result, const std::vector<bool>& on) {
    for (const SweepRow& row : result.rows) {
        const OutcomeStatus status = row.outcome.status;
        if (status != OutcomeStatus::Configured && on[static_cast<size_t>(status) - 1]) {
            return true;
        }
        for (const StreamOutcome& stream : row.outcome.streams) {
            if (on[kUnclassified] && !stream.listed) {
                return true;
            }
        }
    }
    return false;
}

// One --param TAG=VALUE as a session's `params` entry: TAG a standard tag
// name or number, or vendor:INDEX; VALUE the values, comma separated, or a
// text for a tag of bytes.
TagValue ParamTag(const std::string& given) {
    const size_t equals = given.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw UsageError("--param is TAG=VALUE, not '" + given + "'");
    }
    const std::string tag = given.substr(0, equals);
    const std::string value = given.substr(equals + 1);
    const bool vendor = tag.compare(0, 7, "vendor:") == 0;
    uint32_t number = 0;
    ElementType type = ElementType::Unknown;
    if (vendor && ParseNumber(tag.substr(7), &number)) {
        type = VendorTagType(number);
    } else if (StandardTagByName(tag, &number) || ParseNumber(tag, &number)) {
        type = StandardTagType(number);
    }
    const bool numbers = !value.empty() && value.find_first_not_of(
                                               "0123456789xXabcdefABCDEF+-, ") == std::string::npos;
    std::string text = vendor ? "{vendor: " + tag.substr(7) : "{tag: " + tag;
    if (type == ElementType::Byte && !numbers) {
        text += ", string: " + JsonQuote(value) + "}";
    } else {
        const char* key = type == ElementType::Int32   ? "int32"
                          : type == ElementType::Int64 ? "int64"
                          : type == ElementType::Float ? "float"
                                                       : "bytes";
        text += std::string(", ") + key + ": [" + value + "]}";
    }
    return ReadTagText(text, "--param " + given);
}

// The client package the configuration names as the system camera.
std::string SystemCameraPackage(const Scenario& device) {
    const Lumora::_ConfigKey& key = Lumora::Key(Lumora::EConfigKey::SystemCameraPackage);
    const HostPlatform::ConfigText text = HostPlatform::ReadConfigText(device.configText);
    const HostPlatform::ConfigGroup* group = text.Find(key.group);
    const HostPlatform::ConfigKey* entry = group != nullptr ? group->Find(key.key) : nullptr;
    if (entry == nullptr || entry->values.size() != 1) {
        throw UsageError(
            std::string("--system-camera: the configuration names no system camera ([") +
            key.group + "] " + key.key + ")");
    }
    return entry->values[0];
}

bool ParseLevel(const std::string& text, HardwareLevel* level) {
    for (size_t i = 0; i < std::size(kLevelNames); ++i) {
        if (text == kLevelNames[i]) {
            *level = static_cast<HardwareLevel>(i);
            return true;
        }
    }
    return false;
}

}  // namespace

int RunSweepCommand(const CommandLine& line) {
    SweepOptions options;
    options.siblingRoot = SiblingRoot();
    options.selection.raw = line.Has("--raw");
    options.selection.tenBit = line.Has("--ten-bit");
    options.selection.useCases = line.Has("--use-cases");
    const auto check = [&](const char* name, bool valid) {
        if (line.Has(name) && !valid) {
            throw UsageError(std::string(name) + " needs a valid value, not \"" +
                             line.Value(name, "") + "\"");
        }
    };
    options.hasCamera = line.Has("--camera");
    check("--camera", ParseNumber(line.Value("--camera", ""), &options.camera));
    check("--operation-mode",
          ParseOperationMode(line.Value("--operation-mode", ""), &options.operationMode));
    check("--level", ParseLevel(line.Value("--level", "full"), &options.selection.level));
    options.selection.highSpeed =
        options.operationMode == CAMERA3_STREAM_CONFIGURATION_CONSTRAINED_HIGH_SPEED_MODE;
    const std::vector<bool> failOn = ParseFailOn(line.Value("--fail-on", ""));
    int32_t fps[2] = {120, 120};
    char rest = '\0';
    check("--fps",
          sscanf(line.Value("--fps", "").c_str(), "%d,%d%c", &fps[0], &fps[1], &rest) == 2 &&
              fps[0] > 0 && fps[0] <= fps[1] && (!options.selection.highSpeed || fps[1] >= 120));
    const std::string config = line.Value("--config", "");
    Scenario device;
    try {
        device = ReadDeviceOrScenarioFile(line.operands.front());
        // The fps range is one more session parameter, written as --param writes it.
        std::vector<std::string> params = line.Values("--param");
        if (line.Has("--fps") || options.selection.highSpeed) {
            params.insert(params.begin(), StandardTagName(ANDROID_CONTROL_AE_TARGET_FPS_RANGE) +
                                              "=" + std::to_string(fps[0]) + "," +
                                              std::to_string(fps[1]));
        }
        for (const std::string& param : params) {
            options.params.push_back(ParamTag(param));
            options.paramTexts.push_back(param);
        }
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return kExitUsage;
    }
    if (!config.empty() && !LoadConfiguration(config, &device)) {
        return kExitUsage;
    }
    options.hasPackage = line.Has("--package") || line.Has("--system-camera");
    options.package =
        line.Has("--system-camera") ? SystemCameraPackage(device) : line.Value("--package", "");
    std::string output;
    bool failed = false;
    try {
        const SweepResult result = RunSweep(device, options);
        const ReportNode report = SweepReport(result);
        output = line.Has("--json") ? RenderJson(report) : RenderText(report);
        failed = Fails(result, failOn);
    } catch (const SweepInputError& error) {
        fprintf(stderr, "uilayer-sim sweep: %s\n", error.what());
        return kExitUsage;
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer-sim sweep: %s\n", error.what());
        return kExitSetup;
    }
    WriteOut(output);
    return failed ? kExitFindings : kExitDone;
}

}  // namespace UilayerSim
