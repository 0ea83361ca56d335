// uilayer-sim lint: checks configuration files; also the lint a replay runs first.
#include <algorithm>
#include <cstdio>
#include <map>
#include <sstream>
#include <vector>

#include "core/Commands.h"
#include "core/Report.h"
#include "core/ScenarioReader.h"
#include "lint/Lint.h"

namespace UilayerSim {

namespace {

// The message with every quoted text and every number replaced, so that
// findings that differ only in those fall together.
std::string Shape(const LintFinding& finding) {
    std::string shape = finding.file + '\n' + finding.rule + '\n';
    bool quoted = false;
    for (const char c : finding.reason) {
        if (c == '"') {
            quoted = !quoted;
            shape += c;
        } else if (quoted) {
            continue;
        } else if (c >= '0' && c <= '9') {
            if (shape.back() != '#') {
                shape += '#';
            }
        } else {
            shape += c;
        }
    }
    return shape;
}

std::string OrNull(const std::string& text) {
    return text.empty() ? "null" : JsonQuote(text);
}

// The findings of one configuration, with those against `device` when given,
// in line order.
std::vector<LintFinding> LintWith(const std::string& text, const std::string& file,
                                  const Scenario* device) {
    std::vector<LintFinding> findings = LintConfiguration(text, file);
    if (device != nullptr) {
        const std::vector<LintFinding> more = LintAgainstDevice(text, file, *device);
        findings.insert(findings.end(), more.begin(), more.end());
        std::stable_sort(
            findings.begin(), findings.end(),
            [](const LintFinding& a, const LintFinding& b) { return a.line < b.line; });
    }
    return findings;
}

}  // namespace

std::string RenderLintText(const std::vector<LintFinding>& findings) {
    std::map<std::string, size_t> total;
    for (const LintFinding& finding : findings) {
        ++total[Shape(finding)];
    }
    std::map<std::string, size_t> seen;
    std::string out;
    for (const LintFinding& finding : findings) {
        const std::string shape = Shape(finding);
        const size_t index = seen[shape]++;
        const size_t count = total[shape];
        if (count <= kLintShownPerShape + 1 || index < kLintShownPerShape) {
            out += FormatFinding(finding) + "\n";
        } else if (index == kLintShownPerShape) {
            out += finding.file + ":" + std::to_string(finding.line) + ": ... and " +
                   std::to_string(count - kLintShownPerShape) + " more like it\n";
        }
    }
    return out;
}

std::string RenderLintJson(const std::vector<LintFinding>& findings) {
    if (findings.empty()) {
        return "[]\n";
    }
    std::string out = "[\n";
    for (size_t i = 0; i < findings.size(); ++i) {
        const LintFinding& finding = findings[i];
        out += "  {\"file\": " + JsonQuote(finding.file) +
               ", \"line\": " + std::to_string(finding.line) +
               ", \"group\": " + OrNull(finding.group) + ", \"key\": " + OrNull(finding.key) +
               ", \"rule\": " + JsonQuote(finding.rule) +
               ", \"message\": " + JsonQuote(finding.reason) + "}";
        out += i + 1 < findings.size() ? ",\n" : "\n";
    }
    return out + "]\n";
}

void LintBeforeReplay(const CommandLine& line, const Scenario& scenario) {
    if (line.Has("--no-lint")) {
        return;
    }
    // A scenario's device often holds only the cameras it replays while the
    // configuration is the whole phone's: a name close to one of the device's
    // (a typo) is shown, the other device findings are counted.
    std::vector<LintFinding> findings = LintConfiguration(scenario.configText, scenario.configName);
    size_t counted = 0;
    for (const LintFinding& finding :
         LintAgainstDevice(scenario.configText, scenario.configName, scenario)) {
        if (finding.reason.find("did you mean") != std::string::npos) {
            findings.push_back(finding);
        } else {
            ++counted;
        }
    }
    std::stable_sort(findings.begin(), findings.end(),
                     [](const LintFinding& a, const LintFinding& b) { return a.line < b.line; });
    std::istringstream lines(RenderLintText(findings));
    for (std::string line; std::getline(lines, line);) {
        fprintf(stderr, "warning: %s\n", line.c_str());
    }
    if (counted > 0) {
        // The configuration as a path from here, when it is a file.
        const size_t slash = scenario.path.rfind('/');
        const std::string config = scenario.configName == "inline" ||
                                           scenario.configName.front() == '/' ||
                                           slash == std::string::npos
                                       ? scenario.configName
                                       : scenario.path.substr(0, slash + 1) + scenario.configName;
        fprintf(stderr,
                "warning: %s: %zu values name cameras or sensors the scenario's device does not "
                "have (uilayer-sim lint %s --device %s lists them)\n",
                scenario.configName.c_str(), counted, config.c_str(), scenario.path.c_str());
    }
}

int RunLintCommand(const CommandLine& line) {
    const std::string format = line.Has("--json") ? "json" : line.Value("--format", "text");
    if (format != "text" && format != "json") {
        throw UsageError("--format is text or json, not '" + format + "'");
    }
    Scenario device;
    if (line.Has("--device")) {
        try {
            device = ReadDeviceOrScenarioFile(line.Value("--device", ""));
        } catch (const ScenarioError& error) {
            fprintf(stderr, "%s\n", error.what());
            return kExitUsage;
        }
    }
    std::vector<LintFinding> findings;
    bool unreadable = false;
    for (const std::string& path : line.operands) {
        std::string text;
        std::string reason;
        if (!ReadWholeFile(path, &text, &reason)) {
            ReportUnreadable(path, reason);
            unreadable = true;
            // Scripts read only the JSON: the file they asked for is a finding there.
            if (format == "json") {
                findings.push_back({path, 0, "", "", "unreadable", "cannot read: " + reason});
            }
            continue;
        }
        const std::vector<LintFinding> found =
            LintWith(text, path, line.Has("--device") ? &device : nullptr);
        findings.insert(findings.end(), found.begin(), found.end());
    }
    WriteOut(format == "json" ? RenderLintJson(findings) : RenderLintText(findings));
    return unreadable ? kExitUsage : findings.empty() ? kExitDone : kExitFindings;
}

}  // namespace UilayerSim
