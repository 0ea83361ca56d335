// uilayer-sim: replays a camera session against the library, or checks a
// hardware configuration file against what the library reads.
//
//   uilayer-sim SCENARIO [--json] [--log]
//   uilayer-sim lint CONFIG
//   uilayer-sim sweep DEVICE [options]
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "DeviceRoot.h"
#include "Lint.h"
#include "Replay.h"
#include "ScenarioReader.h"
#include "SweepCommand.h"

namespace {

constexpr int kUsageError = 2;
constexpr int kScenarioError = 2;
constexpr int kSetupError = 3;

int Usage() {
    fprintf(stderr,
            "usage: uilayer-sim SCENARIO [--json] [--log]\n"
            "       uilayer-sim lint CONFIG\n"
            "       %s\n",
            UilayerSim::kSweepUsage);
    return kUsageError;
}

int Lint(const std::string& path) {
    std::string text;
    if (!UilayerSim::ReadWholeFile(path, &text)) {
        fprintf(stderr, "uilayer-sim: cannot read %s\n", path.c_str());
        return kUsageError;
    }
    const size_t slash = path.rfind('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const std::vector<UilayerSim::LintFinding> findings = UilayerSim::LintConfiguration(text, name);
    for (const UilayerSim::LintFinding& finding : findings) {
        printf("%s\n", UilayerSim::FormatFinding(finding).c_str());
    }
    return findings.empty() ? 0 : 1;
}

std::string SiblingRoot() {
    const char* root = getenv("UILAYER_SIM_SIBLING_ROOT");
    return root != nullptr && *root != '\0' ? root : UILAYER_SIM_SIBLING_ROOT;
}

int Replay(const std::string& path, bool json, bool log) {
    UilayerSim::Scenario scenario;
    try {
        scenario = UilayerSim::ReadScenarioFile(path);
    } catch (const UilayerSim::ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return kScenarioError;
    }
    UilayerSim::ReplayOptions options;
    options.log = log;
    options.siblingRoot = SiblingRoot();
    UilayerSim::InstallAbortHandler();
    std::string output;
    try {
        const UilayerSim::ReportNode report = UilayerSim::Replay(scenario, options);
        output = json ? UilayerSim::RenderJson(report) : UilayerSim::RenderText(report);
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer-sim: %s\n", error.what());
        return kSetupError;
    }
    fwrite(output.data(), 1, output.size(), stdout);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.size() == 2 && args[0] == "lint") {
        return Lint(args[1]);
    }
    if (!args.empty() && args[0] == "sweep") {
        return UilayerSim::RunSweepCommand({args.begin() + 1, args.end()}, SiblingRoot());
    }
    std::string scenario;
    bool json = false;
    bool log = false;
    for (const std::string& arg : args) {
        if (arg == "--json") {
            json = true;
        } else if (arg == "--log") {
            log = true;
        } else if (!arg.empty() && arg[0] == '-') {
            return Usage();
        } else if (scenario.empty()) {
            scenario = arg;
        } else {
            return Usage();
        }
    }
    if (scenario.empty()) {
        return Usage();
    }
    return Replay(scenario, json, log);
}
