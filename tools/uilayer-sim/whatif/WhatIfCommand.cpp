// uilayer-sim whatif: replays a scenario as it is and with some configuration
// keys or properties changed, and prints the decisions that differ.
#include <HostConfigReads.h>
#include <HostConfigText.h>

#include <algorithm>
#include <cstdio>
#include <set>

#include "core/Commands.h"
#include "core/Suggest.h"
#include "experiment/Decisions.h"
#include "experiment/Experiments.h"
#include "lint/Lint.h"

namespace UilayerSim {

namespace {

// Findings of these rules mean the store cannot read the value as the key's shape.
bool IsValueRule(const std::string& rule) {
    static const std::set<std::string> kRules = {
        "not-a-boolean", "not-a-float", "not-an-integer", "not-hexadecimal",
        "out-of-range",  "value-count", "bad-mask"};
    return kRules.count(rule) != 0;
}

// A --set or --unset of a configuration key: a key the library never reads
// is a warning; a value it cannot read is refused.
void CheckConfigChange(const _Change& change, const Scenario& scenario) {
    size_t count = 0;
    const KeyRule* rules = KeyRules(&count);
    std::vector<std::string> known;
    bool read = false;
    for (const KeyRule* rule = rules; rule != rules + count; ++rule) {
        read = read || KeyRuleMatches(*rule, change.group, change.key);
        if (*rule->key != '\0') {
            known.push_back(std::string(rule->group) + "/" + rule->key);
        }
    }
    if (!read) {
        fprintf(stderr, "uilayer-sim: warning: the library never reads %s%s\n",
                change.target.c_str(), DidYouMean(change.target, known).c_str());
    }
    Scenario changed = scenario;
    ApplyChanges({change}, SIZE_MAX, false, 0, &changed);
    const HostPlatform::ConfigText text = HostPlatform::ReadConfigText(changed.configText);
    const HostPlatform::ConfigGroup* group = text.Find(change.group);
    const HostPlatform::ConfigKey* key = group != nullptr ? group->Find(change.key) : nullptr;
    for (const LintFinding& finding : LintConfiguration(changed.configText, scenario.configName)) {
        if (key != nullptr && !change.remove && finding.line == key->line &&
            IsValueRule(finding.rule)) {
            throw UsageError(change.target + " = " + ChangeValue(change) + ": " + finding.reason);
        }
    }
}

_Change ParseChange(const std::string& text, bool remove) {
    const size_t equals = remove ? std::string::npos : text.find('=');
    if (!remove && equals == std::string::npos) {
        throw UsageError("--set takes Group/Key=VALUE or PROPERTY=VALUE, not '" + text + "'");
    }
    const std::string target = text.substr(0, equals);
    const std::string value = remove ? "" : text.substr(equals + 1);
    const size_t slash = target.rfind('/');
    if (slash != std::string::npos) {
        return ConfigChange(target.substr(0, slash), target.substr(slash + 1),
                            SplitConfigValues(value), remove);
    }
    if (target.empty()) {
        throw UsageError("--" + std::string(remove ? "unset" : "set") +
                         ": no key or property named");
    }
    _Change change;
    change.kind = ChangeKind::Property;
    change.target = target;
    change.remove = remove;
    change.values = {value};
    return change;
}

// The properties the library reads in the unchanged replay.
std::vector<std::string> PropertiesRead(const Scenario& scenario) {
    const std::vector<std::string> results = RunIsolated(1, [&](size_t) {
        HostPlatform::SetConfigurationReadRecording(true);
        ReplayWith(scenario, {}, 0, false, 0, SiblingRoot());
        std::string names;
        for (const HostPlatform::ConfigRead& read : HostPlatform::TakeConfigurationReads()) {
            names += read.kind == HostPlatform::ConfigReadKind::Property ? read.group + "\n" : "";
        }
        return names;
    });
    std::vector<std::string> names;
    const std::string& all = results[0];
    for (size_t begin = 0, end = 0; begin < all.size(); begin = end + 1) {
        end = std::min(all.find('\n', begin), all.size());
        names.push_back(all.substr(begin, end - begin));
    }
    return names;
}

}  // namespace

int RunWhatIfCommand(const CommandLine& line) {
    Scenario scenario;
    if (!LoadScenario(line.operands.front(), &scenario)) {
        return kExitUsage;
    }
    if (line.Has("--config") && !LoadConfiguration(line.Value("--config", ""), &scenario)) {
        return kExitUsage;
    }
    std::vector<_Change> changes;
    for (const auto& option : line.given) {
        if (option.first == "--set" || option.first == "--unset") {
            changes.push_back(ParseChange(option.second, option.first == "--unset"));
        }
    }
    if (changes.empty()) {
        throw UsageError("nothing to change: give --set or --unset");
    }
    CommandReplayOptions(false);
    std::vector<std::string> properties;
    for (const _Change& change : changes) {
        if (change.kind == ChangeKind::Config) {
            CheckConfigChange(change, scenario);
            continue;
        }
        if (properties.empty()) {
            properties = PropertiesRead(scenario);
        }
        if (std::find(properties.begin(), properties.end(), change.target) == properties.end()) {
            fprintf(stderr, "uilayer-sim: warning: the library does not read property %s%s\n",
                    change.target.c_str(), DidYouMean(change.target, properties).c_str());
        }
    }
    const std::vector<std::string> results = RunIsolated(2, [&](size_t i) {
        const std::vector<_Change> applied = i == 0 ? std::vector<_Change>() : changes;
        return PackDecisions(
            DecisionsOf(ReplayWith(scenario, applied, SIZE_MAX, false, 0, SiblingRoot())));
    });
    for (const std::string& result : results) {
        if (!RunFailure(result).empty()) {
            fprintf(stderr, "uilayer-sim: the %s replay %s\n",
                    &result == &results[0] ? "unchanged" : "changed", RunFailure(result).c_str());
            return kExitSetup;
        }
    }
    const std::vector<_DecisionChange> differences =
        CompareDecisions(UnpackDecisions(results[0]), UnpackDecisions(results[1]));
    ReportNode root = ReportNode::Map();
    root.Add("scenario", ReportNode::Text(scenario.name));
    ReportNode& list = root.Add("changes", ReportNode::List());
    for (const _Change& change : changes) {
        ReportNode& item = list.Push(ReportNode::Map());
        item.Add("kind", ReportNode::Text(ChangeKindName(change.kind)));
        item.Add("target", ReportNode::Text(change.target));
        item.Add("value", ReportNode::Text(ChangeValue(change)));
        item.Add("text", ReportNode::Text(ChangeText(change, scenario)));
    }
    ReportNode& found = root.Add("differences", ReportNode::List());
    std::string text;
    std::string session;
    for (const _DecisionChange& difference : differences) {
        ReportDecisionChange(difference, &found, &text, &session);
    }
    if (line.Has("--json")) {
        WriteOut(RenderJson(root));
    } else {
        std::string head;
        for (const _Change& change : changes) {
            head += "change: " + ChangeText(change, scenario) + "\n";
        }
        WriteOut(head + (differences.empty() ? "no decision differs\n" : text));
    }
    return differences.empty() ? kExitDone : kExitFindings;
}

}  // namespace UilayerSim
