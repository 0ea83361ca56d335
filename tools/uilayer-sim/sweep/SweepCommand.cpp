#include "sweep/SweepCommand.h"

#include <HostConfigText.h>
#include <hardware/camera3.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>

#include "core/ScenarioReader.h"
#include "sweep/Sweep.h"

namespace UilayerSim {

const char* const kSweepUsage =
    "uilayer-sim sweep DEVICE [--config FILE] [--camera ID] [--operation-mode M] "
    "[--level legacy|limited|full|3] [--raw] [--ten-bit] [--use-cases] [--json]";

namespace {

constexpr int kUsageError = 2;
constexpr int kSetupError = 3;

struct SweepCommandLine {
    std::string device;
    std::string config;
    bool json = false;
    SweepOptions options;
};

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

// A number, or a stream configuration mode of the platform by name, with or
// without "CAMERA3_STREAM_CONFIGURATION_" and "_MODE".
bool ParseOperationMode(std::string text, uint32_t* mode) {
    if (ParseNumber(text, mode)) {
        return true;
    }
    const std::string prefix = "CAMERA3_STREAM_CONFIGURATION_";
    const std::string suffix = "_MODE";
    if (text.compare(0, prefix.size(), prefix) == 0) {
        text = text.substr(prefix.size());
    }
    if (text.size() > suffix.size() &&
        text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0) {
        text = text.substr(0, text.size() - suffix.size());
    }
    if (text == "NORMAL") {
        *mode = CAMERA3_STREAM_CONFIGURATION_NORMAL_MODE;
    } else if (text == "CONSTRAINED_HIGH_SPEED") {
        *mode = CAMERA3_STREAM_CONFIGURATION_CONSTRAINED_HIGH_SPEED_MODE;
    } else {
        return false;
    }
    return true;
}

bool ParseLevel(const std::string& text, HardwareLevel* level) {
    if (text == "legacy") {
        *level = HardwareLevel::Legacy;
    } else if (text == "limited") {
        *level = HardwareLevel::Limited;
    } else if (text == "full") {
        *level = HardwareLevel::Full;
    } else if (text == "3") {
        *level = HardwareLevel::Level3;
    } else {
        return false;
    }
    return true;
}

// False (after a message) when the command line is wrong.
bool ParseCommandLine(const std::vector<std::string>& args, SweepCommandLine* line) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        const bool hasValue = i + 1 < args.size();
        const std::string value = hasValue ? args[i + 1] : std::string();
        bool valid = true;
        if (arg == "--json") {
            line->json = true;
        } else if (arg == "--raw") {
            line->options.selection.raw = true;
        } else if (arg == "--ten-bit") {
            line->options.selection.tenBit = true;
        } else if (arg == "--use-cases") {
            line->options.selection.useCases = true;
        } else if (arg == "--config") {
            valid = hasValue && !value.empty();
            line->config = value;
            ++i;
        } else if (arg == "--camera") {
            valid = hasValue && ParseNumber(value, &line->options.camera);
            line->options.hasCamera = true;
            ++i;
        } else if (arg == "--operation-mode") {
            valid = hasValue && ParseOperationMode(value, &line->options.operationMode);
            ++i;
        } else if (arg == "--level") {
            valid = hasValue && ParseLevel(value, &line->options.selection.level);
            ++i;
        } else if (!arg.empty() && arg[0] != '-' && line->device.empty()) {
            line->device = arg;
        } else {
            fprintf(stderr, "uilayer-sim sweep: unexpected argument \"%s\"\n", arg.c_str());
            return false;
        }
        if (!valid) {
            fprintf(stderr, "uilayer-sim sweep: %s needs %s\n", arg.c_str(),
                    hasValue ? ("a valid value, not \"" + value + "\"").c_str() : "a value");
            return false;
        }
    }
    if (line->device.empty()) {
        fprintf(stderr, "uilayer-sim sweep: no DEVICE given\n");
        return false;
    }
    return true;
}

std::string BaseNameOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Replaces the device's configuration with the file at `path`; false (after
// a message) when it cannot be read or the configuration store would refuse it.
bool OverrideConfiguration(const std::string& path, Scenario* device) {
    std::string text;
    if (!ReadWholeFile(path, &text)) {
        fprintf(stderr, "uilayer-sim sweep: cannot read %s\n", path.c_str());
        return false;
    }
    const HostPlatform::ConfigText parsed = HostPlatform::ReadConfigText(text);
    if (const HostPlatform::ConfigProblem* problem = parsed.FirstMalformed()) {
        fprintf(stderr, "%s:%d: %s: the configuration store refuses the whole file\n", path.c_str(),
                problem->line, HostPlatform::DescribeConfigProblem(*problem).c_str());
        return false;
    }
    device->configText = text;
    device->configName = BaseNameOf(path);
    return true;
}

}  // namespace

int RunSweepCommand(const std::vector<std::string>& args, const std::string& siblingRoot) {
    SweepCommandLine line;
    if (!ParseCommandLine(args, &line)) {
        fprintf(stderr, "usage: %s\n", kSweepUsage);
        return kUsageError;
    }
    line.options.siblingRoot = siblingRoot;
    Scenario device;
    try {
        device = ReadDeviceOrScenarioFile(line.device);
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return kUsageError;
    }
    if (!line.config.empty() && !OverrideConfiguration(line.config, &device)) {
        return kUsageError;
    }
    std::string output;
    try {
        const ReportNode report = SweepReport(RunSweep(device, line.options));
        output = line.json ? RenderSweepJson(report) : RenderText(report);
    } catch (const SweepInputError& error) {
        fprintf(stderr, "uilayer-sim sweep: %s\n", error.what());
        return kUsageError;
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer-sim sweep: %s\n", error.what());
        return kSetupError;
    }
    fwrite(output.data(), 1, output.size(), stdout);
    return 0;
}

}  // namespace UilayerSim
