// uilayer-sim lint: checks configuration files; also the lint a replay runs first.
#include <cstdio>
#include <sstream>
#include <vector>

#include "core/Commands.h"
#include "core/ScenarioReader.h"
#include "lint/Lint.h"
#include "lint/LintOutput.h"

namespace UilayerSim {

void LintBeforeReplay(const CommandLine& line, const Scenario& scenario) {
    if (line.Has("--no-lint")) {
        return;
    }
    std::istringstream lines(
        RenderLintText(LintConfiguration(scenario.configText, scenario.configName)));
    for (std::string line; std::getline(lines, line);) {
        fprintf(stderr, "warning: %s\n", line.c_str());
    }
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

}  // namespace UilayerSim
