// uilayer-sim lint: checks configuration files; also the lint a replay runs first.
#include <cstdio>
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
