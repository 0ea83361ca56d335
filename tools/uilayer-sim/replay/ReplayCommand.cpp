// uilayer-sim replay: replays the scenario and writes its report.
#include <cstdio>
#include <exception>

#include "core/AbortHandler.h"
#include "core/ScenarioReader.h"
#include "core/Commands.h"
#include "core/Signals.h"
#include "replay/Replay.h"

namespace UilayerSim {

ReplayOptions CommandReplayOptions(bool log) {
    ReplayOptions options;
    options.log = log;
    options.siblingRoot = SiblingRoot();
    InstallAbortHandler();
    InstallAbortLogWriter();
    InstallInterruptHandlers();
    return options;
}

int RunReplayCommand(const CommandLine& line) {
    Scenario scenario;
    if (!LoadScenario(line.operands.front(), &scenario)) {
        return kExitUsage;
    }
    LintBeforeReplay(line, scenario);
    const ReplayOptions options = CommandReplayOptions(line.Has("--log"));
    std::string output;
    try {
        const ReportNode report = Replay(scenario, options);
        output = line.Has("--json") ? RenderJson(report) : RenderText(report);
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return kExitUsage;
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer-sim: %s\n", error.what());
        return kExitSetup;
    }
    WriteOut(output);
    return kExitDone;
}

}  // namespace UilayerSim
