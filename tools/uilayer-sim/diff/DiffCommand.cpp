// uilayer-sim diff: replays scenarios with an old and a new configuration (or
// an old and a new scenario), lists every decision that changed and, for each,
// the fewest configuration differences that bring it about on their own.
#include <HostConfigText.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <numeric>
#include <optional>

#include "core/Commands.h"
#include "experiment/Decisions.h"
#include "experiment/Experiments.h"

namespace UilayerSim {

namespace {

// A search for the causes of one decision stops after this many replays.
constexpr size_t kSearchReplays = 48;

// A key the two configurations do not agree on; `change` turns OLD's into NEW's.
struct _ConfigDifference {
    _Change change;
    int oldLine = 0;  // 0 when OLD lacks the key
    int newLine = 0;  // 0 when NEW lacks it
    std::vector<std::string> oldValues;
};

using Subset = std::vector<size_t>;  // indexes of differences, ascending

const char* DifferenceKind(const _ConfigDifference& difference) {
    return difference.oldLine == 0 ? "added" : difference.newLine == 0 ? "removed" : "changed";
}

std::vector<_ConfigDifference> ConfigDifferences(const HostPlatform::ConfigText& before,
                                                 const HostPlatform::ConfigText& after) {
    std::vector<_ConfigDifference> out;
    for (const HostPlatform::ConfigGroup& group : before.groups) {
        const HostPlatform::ConfigGroup* other = after.Find(group.name);
        for (const HostPlatform::ConfigKey& key : group.keys) {
            const HostPlatform::ConfigKey* now = other != nullptr ? other->Find(key.name) : nullptr;
            if (now == nullptr || now->values != key.values) {
                const std::vector<std::string> values =
                    now != nullptr ? now->values : std::vector<std::string>();
                out.push_back({ConfigChange(group.name, key.name, values, now == nullptr), key.line,
                               now != nullptr ? now->line : 0, key.values});
            }
        }
    }
    for (const HostPlatform::ConfigGroup& group : after.groups) {
        const HostPlatform::ConfigGroup* other = before.Find(group.name);
        for (const HostPlatform::ConfigKey& key : group.keys) {
            if (other == nullptr || other->Find(key.name) == nullptr) {
                out.push_back({ConfigChange(group.name, key.name, key.values), 0, key.line, {}});
            }
        }
    }
    return out;
}

// The replays of a scenario with subsets of the differences applied to its
// OLD configuration, each subset replayed once; a failed replay has no
// decisions.
class SubsetReplays {
public:
    SubsetReplays(const Scenario& old, const std::vector<_ConfigDifference>& differences)
        : m_old(old), m_differences(differences) {}

    // Replays the (distinct) subsets not replayed yet, in one batch of child processes.
    void Run(const std::vector<Subset>& subsets) {
        std::vector<Subset> missing;
        std::copy_if(subsets.begin(), subsets.end(), std::back_inserter(missing),
                     [&](const Subset& subset) { return m_done.count(subset) == 0; });
        const std::vector<std::string> results = RunIsolated(missing.size(), [&](size_t i) {
            std::vector<_Change> changes;
            for (size_t index : missing[i]) {
                changes.push_back(m_differences[index].change);
            }
            return PackDecisions(
                DecisionsOf(ReplayWith(m_old, changes, SIZE_MAX, false, 0, SiblingRoot())));
        });
        for (size_t i = 0; i < missing.size(); ++i) {
            auto& decisions = m_done[missing[i]];
            if (RunFailure(results[i]).empty()) {
                const Decisions unpacked = UnpackDecisions(results[i]);
                decisions.emplace(unpacked.begin(), unpacked.end());
            }
        }
    }
    // Whether the replay of `subset` makes `change`'s decision as NEW makes it.
    bool Reproduces(const Subset& subset, const _DecisionChange& change) {
        Run({subset});
        const auto& decisions = m_done[subset];
        if (!decisions) {
            return false;
        }
        const auto found = decisions->find(change.path);
        return (found != decisions->end() ? found->second : "") == change.after;
    }
    bool Replayed(const Subset& subset) const { return m_done.count(subset) != 0; }
    size_t Count() const { return m_done.size(); }

private:
    const Scenario& m_old;
    const std::vector<_ConfigDifference>& m_differences;
    std::map<Subset, std::optional<std::map<std::string, std::string>>> m_done;
};

struct _Causes {
    Subset differences;
    const char* search = "found";  // or "stopped" (not minimal), "not reproduced"
};

// The differences behind `change`: the first one that reproduces it alone,
// or else a 1-minimal subset found by delta debugging from all of them.
_Causes FindCauses(SubsetReplays& replays, size_t count, const _DecisionChange& change) {
    for (size_t i = 0; i < count; ++i) {
        if (replays.Reproduces({i}, change)) {
            return {{i}};
        }
    }
    _Causes causes;
    causes.differences.resize(count);
    std::iota(causes.differences.begin(), causes.differences.end(), 0);
    const size_t limit = replays.Count() + kSearchReplays;
    const auto test = [&](const Subset& subset) {
        if (!replays.Replayed(subset) && replays.Count() >= limit) {
            causes.search = "stopped";
            return false;
        }
        return replays.Reproduces(subset, change);
    };
    if (count == 0 || !test(causes.differences)) {
        return {{}, "not reproduced"};
    }
    Subset& current = causes.differences;
    for (size_t parts = 2; current.size() >= 2 && std::string(causes.search) == "found";) {
        std::vector<Subset> chunks(parts);
        std::vector<Subset> rests(parts);
        for (size_t i = 0; i < current.size(); ++i) {
            for (size_t part = 0; part < parts; ++part) {
                (i * parts / current.size() == part ? chunks : rests)[part].push_back(current[i]);
            }
        }
        const auto chunk = std::find_if(chunks.begin(), chunks.end(), test);
        const auto rest = chunk != chunks.end() || parts == 2
                              ? rests.end()
                              : std::find_if(rests.begin(), rests.end(), test);
        if (chunk != chunks.end() || rest != rests.end()) {
            current = chunk != chunks.end() ? *chunk : *rest;
            parts = chunk != chunks.end() ? 2 : std::max<size_t>(parts - 1, 2);
        } else if (parts >= current.size()) {
            break;
        } else {
            parts = std::min(current.size(), parts * 2);
        }
    }
    return causes;
}

std::string DifferenceText(const _ConfigDifference& difference, const std::string& oldName,
                           const std::string& newName) {
    const std::string before = ChangeValue(ConfigChange("", "", difference.oldValues)) + " (" +
                               oldName + ":" + std::to_string(difference.oldLine) + ")";
    const std::string after = difference.change.remove
                                  ? ""
                                  : ChangeValue(difference.change) + " (" + newName + ":" +
                                        std::to_string(difference.newLine) + ")";
    return std::string(DifferenceKind(difference)) + " " + difference.change.target +
           (difference.newLine == 0   ? " = " + before
            : difference.oldLine == 0 ? " = " + after
                                      : ": " + before + " -> " + after);
}

ReportNode Line(int line) {
    return line == 0 ? ReportNode() : ReportNode::Integer(line);
}

// The differences as JSON items in `list` and as numbered text lines.
std::string ListDifferences(const std::vector<_ConfigDifference>& differences,
                            const std::string& oldName, const std::string& newName,
                            ReportNode* list) {
    std::string text = std::string("differences:") + (differences.empty() ? " none\n" : "\n");
    for (size_t i = 0; i < differences.size(); ++i) {
        const _ConfigDifference& difference = differences[i];
        ReportNode& item = list->Push(ReportNode::Map());
        item.Add("kind", ReportNode::Text(DifferenceKind(difference)));
        item.Add("group", ReportNode::Text(difference.change.group));
        item.Add("key", ReportNode::Text(difference.change.key));
        item.Add("old_line", Line(difference.oldLine));
        item.Add("new_line", Line(difference.newLine));
        item.Add("old_values", ReportNode::Texts(difference.oldValues, true));
        item.Add("new_values", ReportNode::Texts(difference.change.values, true));
        text += "  #" + std::to_string(i + 1) + " " + DifferenceText(difference, oldName, newName) +
                "\n";
    }
    return text;
}

// Replays `before` and `after`, and adds each decision that changed with its
// causes to `reports` and `text`. Returns the number of changes, or -1 (after
// saying which of the two replays, as `labels` name them, failed).
int DiffScenario(const Scenario& before, const Scenario& after,
                 const std::vector<_ConfigDifference>& differences,
                 const std::vector<std::string>& labels, ReportNode* reports, std::string* text) {
    const std::vector<std::string> results = RunIsolated(2, [&](size_t i) {
        return PackDecisions(DecisionsOf(
            ReplayWith(i == 0 ? before : after, {}, SIZE_MAX, false, 0, SiblingRoot())));
    });
    for (size_t i = 0; i < 2; ++i) {
        if (!RunFailure(results[i]).empty()) {
            fprintf(stderr, "uilayer-sim: the replay of %s%s%s\n", labels[i].c_str(),
                    results[i] == kAborted ? " " : ": ", RunFailure(results[i]).c_str());
            return -1;
        }
    }
    const std::vector<_DecisionChange> changes =
        CompareDecisions(UnpackDecisions(results[0]), UnpackDecisions(results[1]));
    ReportNode& report = reports->Push(ReportNode::Map());
    report.Add("scenario", ReportNode::Text(before.name));
    ReportNode& list = report.Add("changes", ReportNode::List());
    *text +=
        "\nscenario " + before.name + ": " +
        (changes.empty() ? "no decision changed\n"
                         : std::to_string(changes.size()) +
                               (changes.size() == 1 ? " decision" : " decisions") + " changed\n");
    SubsetReplays replays(before, differences);
    std::vector<Subset> singles;
    for (size_t i = 0; i < differences.size() && !changes.empty(); ++i) {
        singles.push_back({i});
    }
    replays.Run(singles);
    std::string session;
    for (const _DecisionChange& change : changes) {
        const _Causes causes = FindCauses(replays, differences.size(), change);
        ReportNode& item = ReportDecisionChange(change, &list, text, &session);
        ReportNode& indexes = item.Add("causes", ReportNode::InlineList());
        std::string named;
        for (size_t index : causes.differences) {
            indexes.Push(ReportNode::Integer(static_cast<int64_t>(index)));
            named += (named.empty() ? "#" : ", #") + std::to_string(index + 1) + " " +
                     differences[index].change.target;
        }
        item.Add("search", ReportNode::Text(causes.search));
        *text += "    causes: " +
                 (named.empty() ? "none: the configuration differences alone do not reproduce it"
                                : named) +
                 (std::string(causes.search) == "stopped"
                      ? " (the search stopped: maybe not all are needed)"
                      : "") +
                 "\n";
    }
    return static_cast<int>(changes.size());
}

}  // namespace

int RunDiffCommand(const CommandLine& line) {
    const std::vector<std::string>& operands = line.operands;
    const bool configs = operands.size() > 2;
    const auto conf = [](const std::string& path) {
        return path.size() >= 5 && path.compare(path.size() - 5, 5, ".conf") == 0;
    };
    if (!configs && (conf(operands[0]) || conf(operands[1]))) {
        throw UsageError("no SCENARIO given after the two configurations");
    }
    std::vector<Scenario> scenarios(configs ? operands.size() - 2 : 2);
    for (size_t i = 0; i < scenarios.size(); ++i) {
        if (!LoadScenario(operands[configs ? i + 2 : i], &scenarios[i])) {
            return kExitUsage;
        }
    }
    Scenario old = scenarios[0];
    Scenario now = configs ? scenarios[0] : scenarios[1];
    if (configs &&
        !(LoadConfiguration(operands[0], &old) && LoadConfiguration(operands[1], &now))) {
        return kExitUsage;
    }
    const std::string oldName = configs ? operands[0] : old.configName;
    const std::string newName = configs ? operands[1] : now.configName;
    const HostPlatform::ConfigText oldConfig = HostPlatform::ReadConfigText(old.configText);
    const HostPlatform::ConfigText newConfig = HostPlatform::ReadConfigText(now.configText);
    const std::vector<_ConfigDifference> differences = ConfigDifferences(oldConfig, newConfig);
    CommandReplayOptions(false);

    ReportNode root = ReportNode::Map();
    root.Add("old", ReportNode::Text(operands[0]));
    root.Add("new", ReportNode::Text(operands[1]));
    std::string text = "old: " + operands[0] + "\nnew: " + operands[1] + "\n" +
                       ListDifferences(differences, oldName, newName,
                                       &root.Add("differences", ReportNode::List()));
    ReportNode& reports = root.Add("scenarios", ReportNode::List());
    bool changed = false;
    for (size_t s = 0; s < (configs ? scenarios.size() : 1); ++s) {
        Scenario before = scenarios[s];
        Scenario after = configs ? scenarios[s] : scenarios[1];
        before.configText = old.configText;
        after.configText = now.configText;
        const std::vector<std::string> labels =
            configs ? std::vector<std::string>{before.name + " with " + oldName,
                                               before.name + " with " + newName}
                    : std::vector<std::string>{operands[0], operands[1]};
        const int changes = DiffScenario(before, after, differences, labels, &reports, &text);
        if (changes < 0) {
            return kExitSetup;
        }
        changed = changed || changes > 0;
    }
    if (line.Has("--json")) {
        WriteOut(RenderJson(root));
    } else {
        WriteOut(text);
    }
    return changed ? kExitFindings : kExitDone;
}

}  // namespace UilayerSim
