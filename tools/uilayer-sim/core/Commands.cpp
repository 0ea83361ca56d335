#include "core/Commands.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include <HostConfigValues.h>

#include "core/AbortHandler.h"
#include "explain/Explain.h"
#include "lint/Lint.h"
#include "lint/LintOutput.h"
#include "core/Names.h"
#include "replay/Replay.h"
#include "core/ScenarioReader.h"
#include "core/Signals.h"
#include "core/Suggest.h"
#include "sweep/SweepCommand.h"
#include "core/TraceRecorder.h"

namespace UilayerSim {

namespace {

// The root holding the host sibling camera layer: UILAYER_SIM_SIBLING_ROOT, or
// the build tree's.
std::string SiblingRoot() {
    const char* root = getenv("UILAYER_SIM_SIBLING_ROOT");
    return root != nullptr && *root != '\0' ? root : UILAYER_SIM_SIBLING_ROOT;
}

}  // namespace

namespace {

void WriteOut(const std::string& text) {
    fwrite(text.data(), 1, text.size(), stdout);
}

struct NameListing {
    const char* name;
    NameTable table;
    bool hex;  // values in hexadecimal (tags)
};

constexpr NameListing kListings[] = {
    {"caps", NameTable::Capabilities, false},
    {"tags", NameTable::StandardTags, true},
    {"formats", NameTable::PixelFormats, false},
    {"roles", NameTable::StreamRoles, false},
};

}  // namespace

namespace {

// Reads the scenario of the command line; false (after saying why on
// standard error) when it cannot be read or has a mistake.
bool LoadScenario(const std::string& path, Scenario* scenario) {
    std::string text;
    std::string reason;
    if (!ReadWholeFile(path, &text, &reason)) {
        ReportUnreadable(path, reason);
        return false;
    }
    try {
        *scenario = ReadScenarioText(text, path);
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return false;
    }
    return true;
}

// A misspelt group or key silently turns a rule off: the scenario's
// configuration is linted first and each finding is a warning on standard
// error; the replay, its output and its status do not change.
void LintBeforeReplay(const CommandLine& line, const Scenario& scenario) {
    if (line.Has("--no-lint")) {
        return;
    }
    const std::string text =
        RenderLintText(LintConfiguration(scenario.configText, scenario.configName));
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            end = text.size();
        }
        fprintf(stderr, "warning: %s\n", text.substr(start, end - start).c_str());
        start = end + 1;
    }
}

ReplayOptions OptionsOf(bool log) {
    ReplayOptions options;
    options.log = log;
    options.siblingRoot = SiblingRoot();
    InstallAbortHandler();
    InstallAbortLogWriter();
    InstallInterruptHandlers();
    return options;
}

}  // namespace

int RunReplayCommand(const CommandLine& line) {
    Scenario scenario;
    if (!LoadScenario(line.operands.front(), &scenario)) {
        return kExitUsage;
    }
    LintBeforeReplay(line, scenario);
    const ReplayOptions options = OptionsOf(line.Has("--log"));
    std::string output;
    try {
        const ReportNode report = Replay(scenario, options);
        output = line.Has("--json") ? RenderJson(report) : RenderText(report);
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer-sim: %s\n", error.what());
        return kExitSetup;
    }
    WriteOut(output);
    return kExitDone;
}

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
    ReplayOptions options = OptionsOf(true);
    _Explanation explanation;
    try {
        TraceRecorder recorder;
        if (query.hasFrame) {
            recorder.RecordOnlyFrame(query.frame);
        }
        options.recorder = &recorder;
        Replay(scenario, options);
        explanation = Explain(scenario, recorder, query);
    } catch (const ExplainError& error) {
        throw UsageError(error.what());
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer-sim: %s\n", error.what());
        return kExitSetup;
    }
    WriteOut(line.Has("--json") ? RenderExplanationJson(explanation)
                                : RenderExplanationText(explanation));
    return explanation.set ? kExitDone : kExitFindings;
}

int RunLintCommand(const CommandLine& line) {
    const std::string format = line.Value("--format", "text");
    if (format != "text" && format != "json") {
        throw UsageError("--format is text or json, not '" + format + "'");
    }
    std::vector<LintFinding> findings;
    bool unreadable = false;
    for (const std::string& path : line.operands) {
        std::string text;
        std::string reason;
        if (!ReadWholeFile(path, &text, &reason)) {
            ReportUnreadable(path, reason);
            unreadable = true;
            continue;
        }
        const std::vector<LintFinding> found = LintConfiguration(text, path);
        findings.insert(findings.end(), found.begin(), found.end());
    }
    WriteOut(format == "json" ? RenderLintJson(findings) : RenderLintText(findings));
    if (unreadable) {
        return kExitUsage;
    }
    return findings.empty() ? kExitDone : kExitFindings;
}

int RunNamesCommand(const CommandLine& line) {
    const std::string& which = line.operands.front();
    std::vector<std::string> known;
    for (const NameListing& listing : kListings) {
        known.push_back(listing.name);
        if (which != listing.name) {
            continue;
        }
        for (const NamedNumber& entry : ListNames(listing.table)) {
            if (listing.hex) {
                printf("0x%" PRIX64 "\t%s\n", static_cast<uint64_t>(entry.value),
                       entry.name.c_str());
            } else {
                printf("%" PRId64 "\t%s\n", entry.value, entry.name.c_str());
            }
        }
        return kExitDone;
    }
    const std::string closest = ClosestName(which, known);
    throw UsageError("no list named '" + which + "'" +
                     (closest.empty() ? "; the lists are caps, tags, formats and roles"
                                      : " (did you mean '" + closest + "'?)"));
}

int RunSweepTableCommand(const CommandLine& line) {
    // The sweep reads its own options; the table has checked their names.
    std::vector<std::string> args = line.operands;
    for (const auto& option : line.options) {
        args.push_back(option.first);
        if (!option.second.empty()) {
            args.push_back(option.second);
        }
    }
    return RunSweepCommand(args, SiblingRoot());
}

}  // namespace UilayerSim
