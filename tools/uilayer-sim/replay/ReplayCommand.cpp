// uilayer-sim replay: replays the scenario and writes its report.
#include <unistd.h>

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
    const bool loaded = LoadScenario(line.operands.front(), &scenario);
    if (!loaded) {
        return kExitUsage;
    }
    LintBeforeReplay(line, scenario);
    ReplayOptions options = CommandReplayOptions(line.Has("--log"));
    options.progress = isatty(STDERR_FILENO) != 0;
    std::string output;
    bool aborted = false;
    try {
        const _ReplayRecord record = RecordReplay(scenario, options);
        for (size_t i = 0; i < record.sessions.size(); ++i) {
            if (!record.sessions[i].aborted.empty()) {
                aborted = true;
                fprintf(stderr,
                        "uilayer-sim: session \"%s\": the library aborted the process during %s\n",
                        record.sessions[i].name.c_str(), record.sessions[i].aborted.c_str());
            }
            const std::vector<_StreamRecord>& streams = record.sessions[i].streams;
            for (size_t k = 0; k < streams.size(); ++k) {
                if (!streams[k].listed) {
                    fprintf(stderr,
                            "warning: %s:%d: sessions[%zu].streams[%zu]: stream \"%s\" gets no "
                            "role: the library places it in no role list\n",
                            scenario.path.c_str(), scenario.sessions[i].streams[k].line, i, k,
                            streams[k].name.c_str());
                }
            }
        }
        const ReportNode report = ReplayReport(record);
        output = line.Has("--json") ? RenderJson(report) : RenderText(report);
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return kExitUsage;
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer-sim: %s\n", error.what());
        return kExitSetup;
    }
    WriteOut(output);
    return aborted ? kExitAborted : kExitDone;
}

}  // namespace UilayerSim
