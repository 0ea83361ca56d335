// uilayer-sim sweep: configures every guaranteed stream combination against a
// device and writes the table.

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <stdexcept>

#include "core/Commands.h"
#include "core/Names.h"
#include "core/ScenarioReader.h"
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
    const std::string config = line.Value("--config", "");
    Scenario device;
    try {
        device = ReadDeviceOrScenarioFile(line.operands.front());
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return kExitUsage;
    }
    if (!config.empty() && !LoadConfiguration(config, &device)) {
        return kExitUsage;
    }
    std::string output;
    try {
        const ReportNode report = SweepReport(RunSweep(device, options));
        output = line.Has("--json") ? RenderJson(report) : RenderText(report);
    } catch (const SweepInputError& error) {
        fprintf(stderr, "uilayer-sim sweep: %s\n", error.what());
        return kExitUsage;
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer-sim sweep: %s\n", error.what());
        return kExitSetup;
    }
    WriteOut(output);
    return kExitDone;
}

}  // namespace UilayerSim
