#include "experiment/Decisions.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "replay/Replay.h"

namespace UilayerSim {

namespace {

// A list item's label: its first entry ("session \"photo\"", "request 2"),
// with its place for steps, whose labels repeat.
std::string ItemLabel(const ReportNode& item, size_t index, const std::string& list) {
    std::string label;
    if (item.GetKind() == ReportNode::Kind::Map && !item.Entries().empty()) {
        const auto& first = item.Entries().front();
        label = first.first + " " +
                (first.first == "session" ? "\"" + first.second.Scalar() + "\""
                                          : first.second.Scalar());
    }
    if (list == "steps" || label.empty()) {
        label = (list == "steps" ? "step " : "#") + std::to_string(index + 1) +
                (label.empty() ? "" : " (" + label + ")");
    }
    return label;
}

std::string ScalarText(const ReportNode& node) {
    std::string text;
    for (const ReportNode& item : node.Items()) {
        text += (text.empty() ? "" : ", ") + item.Scalar();
    }
    return node.IsInline() ? text : node.Scalar();
}

void Flatten(const ReportNode& node, const std::string& path, Decisions* out) {
    const auto child = [&](const std::string& name) {
        return path.empty() ? name : path + " / " + name;
    };
    switch (node.GetKind()) {
        case ReportNode::Kind::Map:
            for (size_t i = 0; i < node.Entries().size(); ++i) {
                const auto& entry = node.Entries()[i];
                if (path.find(" / ") == std::string::npos && !path.empty() && i == 0) {
                    continue;  // a session's name is its label
                }
                Flatten(entry.second, child(entry.first), out);
            }
            break;
        case ReportNode::Kind::List:
            if (!node.IsInline()) {
                const std::string list = path.substr(path.rfind(' ') + 1);
                for (size_t i = 0; i < node.Items().size(); ++i) {
                    Flatten(node.Items()[i], child(ItemLabel(node.Items()[i], i, list)), out);
                }
                break;
            }
            [[fallthrough]];
        default:
            out->emplace_back(path, ScalarText(node));
    }
}

std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> items;
    size_t begin = 0;
    while (!text.empty() && begin <= text.size()) {
        const size_t end = std::min(text.find(", ", begin), text.size());
        items.push_back(text.substr(begin, end - begin));
        begin = end + 2;
    }
    return items;
}

}  // namespace

Decisions DecisionsOf(const _ReplayRecord& record) {
    const ReportNode report = ReplayReport(record);
    Decisions out;
    if (const ReportNode* sessions = report.Find("sessions")) {
        for (size_t i = 0; i < sessions->Items().size(); ++i) {
            Flatten(sessions->Items()[i], ItemLabel(sessions->Items()[i], i, "sessions"), &out);
        }
    }
    return out;
}

std::vector<_DecisionChange> CompareDecisions(const Decisions& before, const Decisions& after) {
    std::map<std::string, std::string> old(before.begin(), before.end());
    std::vector<_DecisionChange> changes;
    for (const auto& decision : after) {
        const auto found = old.find(decision.first);
        if (found == old.end()) {
            changes.push_back({decision.first, "", decision.second});
            continue;
        }
        if (found->second != decision.second) {
            changes.push_back({decision.first, found->second, decision.second});
        }
        old.erase(found);
    }
    for (const auto& decision : before) {
        if (old.count(decision.first) != 0) {
            changes.push_back({decision.first, decision.second, ""});
        }
    }
    return changes;
}

std::string PackDecisions(const Decisions& decisions) {
    std::string text;
    for (const auto& decision : decisions) {
        text += decision.first + "\t" + decision.second + "\n";
    }
    return text;
}

Decisions UnpackDecisions(const std::string& text) {
    Decisions decisions;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        const size_t tab = line.find('\t');
        if (tab != std::string::npos) {
            decisions.emplace_back(line.substr(0, tab), line.substr(tab + 1));
        }
    }
    return decisions;
}

std::string ChangeSummary(const _DecisionChange& change) {
    const std::vector<std::string> before = Split(change.before);
    const std::vector<std::string> after = Split(change.after);
    if (before.size() + after.size() <= 2 || change.before.empty() || change.after.empty()) {
        return (change.before.empty() ? "(none)" : change.before) + " -> " +
               (change.after.empty() ? "(none)" : change.after);
    }
    std::string text;
    for (const std::string& item : after) {
        if (std::find(before.begin(), before.end(), item) == before.end()) {
            text += (text.empty() ? "+" : ", +") + item;
        }
    }
    for (const std::string& item : before) {
        if (std::find(after.begin(), after.end(), item) == after.end()) {
            text += (text.empty() ? "-" : ", -") + item;
        }
    }
    return text.empty() ? change.before + " -> " + change.after : text;
}

ReportNode& ReportDecisionChange(const _DecisionChange& change, ReportNode* list, std::string* text,
                                 std::string* session) {
    const size_t cut = change.path.find(" / ");
    const std::string where = change.path.substr(0, cut);
    const std::string what = cut == std::string::npos ? "" : change.path.substr(cut + 3);
    ReportNode& item = list->Push(ReportNode::Map());
    item.Add("session", ReportNode::Text(where));
    item.Add("decision", ReportNode::Text(what));
    item.Add("before", ReportNode::Text(change.before));
    item.Add("after", ReportNode::Text(change.after));
    *text += (where != *session ? where + ":\n" : "") + "  " + what + ": " + ChangeSummary(change) +
             "\n";
    *session = where;
    return item;
}

}  // namespace UilayerSim
