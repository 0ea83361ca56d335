#include "Commands.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "AbortHandler.h"
#include "Lint.h"
#include "LintOutput.h"
#include "Names.h"
#include "Replay.h"
#include "ScenarioReader.h"
#include "Signals.h"
#include "Suggest.h"
#include "SweepCommand.h"

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

int RunReplayCommand(const CommandLine& line) {
    const std::string& path = line.operands.front();
    std::string text;
    std::string reason;
    if (!ReadWholeFile(path, &text, &reason)) {
        ReportUnreadable(path, reason);
        return kExitUsage;
    }
    Scenario scenario;
    try {
        scenario = ReadScenarioText(text, path);
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return kExitUsage;
    }
    ReplayOptions options;
    options.log = line.Has("--log");
    options.siblingRoot = SiblingRoot();
    InstallAbortHandler();
    InstallAbortLogWriter();
    InstallInterruptHandlers();
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
