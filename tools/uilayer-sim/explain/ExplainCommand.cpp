// uilayer-sim explain: replays the scenario with its trace recorded and says
// why a capability is or is not set.
#include <HostConfigValues.h>

#include <cstdio>
#include <exception>

#include "core/Commands.h"
#include "core/ScenarioReader.h"
#include "core/TraceRecorder.h"
#include "explain/Explain.h"
#include "replay/Replay.h"

namespace UilayerSim {

int RunExplainCommand(const CommandLine& line) {
    _ExplainQuery query;
    query.capability = line.operands[1];
    query.session = line.Value("--session", "");
    query.camera = line.Value("--camera", "logical");
    if (line.Has("--frame")) {
        const std::string frame = line.Value("--frame", "");
        if (HostPlatform::ParseUInt32(frame, &query.frame) != HostPlatform::NumberStatus::Ok) {
            throw UsageError("--frame takes a frame number, not '" + frame + "'");
        }
        query.hasFrame = true;
    }
    try {
        ParseCapability(query.capability);
    } catch (const ExplainError& error) {
        throw UsageError(error.what());
    }
    Scenario scenario;
    if (!LoadScenario(line.operands.front(), &scenario)) {
        return kExitUsage;
    }
    LintBeforeReplay(line, scenario);
    ReplayOptions options = CommandReplayOptions(true);
    options.logSteps = false;  // the explanation shows the configuration's log alone
    _Explanation explanation;
    try {
        TraceRecorder recorder;
        if (query.hasFrame) {
            recorder.RecordOnlyFrame(query.frame);
        }
        options.recorder = &recorder;
        const ReportNode report = Replay(scenario, options);
        explanation = Explain(scenario, recorder, query);
        const ReportNode* sessions = report.Find("sessions");
        const ReportNode* aborted =
            sessions != nullptr && explanation.sessionIndex < sessions->Items().size()
                ? sessions->Items()[explanation.sessionIndex].Find("aborted")
                : nullptr;
        if (aborted != nullptr) {
            fprintf(stderr, "uilayer-sim: session \"%s\": %s; it has no caps to explain\n",
                    explanation.session.c_str(), aborted->Scalar().c_str());
            return kExitAborted;
        }
        AddFacts(report, &explanation);
        ExplainByExperiment(scenario, explanation.sessionIndex, options.siblingRoot, &explanation);
    } catch (const ExplainError& error) {
        throw UsageError(error.what());
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return kExitUsage;
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer-sim: %s\n", error.what());
        return kExitSetup;
    }
    WriteOut(line.Has("--json") ? RenderExplanationJson(explanation)
                                : RenderExplanationText(explanation));
    return explanation.set ? kExitDone : kExitFindings;
}

}  // namespace UilayerSim
