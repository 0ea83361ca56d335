// The decisions of a replay as a flat list, each a path in the report and its
// value, so that two replays compare line by line: `whatif`, `diff` and the
// experiments of `explain` all compare this way.
#ifndef UILAYER_SIM_DECISIONS_H
#define UILAYER_SIM_DECISIONS_H

#include <string>
#include <utility>
#include <vector>

#include "core/Report.h"
#include "replay/ReplayRecord.h"

namespace UilayerSim {

// (path, value): "session \"photo\" / logical caps" and the caps as the
// report writes them. The scenario and configuration names and the device are
// not decisions.
using Decisions = std::vector<std::pair<std::string, std::string>>;

struct _DecisionChange {
    std::string path;
    std::string before;  // "" when the decision was not made before
    std::string after;   // "" when it is not made after
};

Decisions DecisionsOf(const _ReplayRecord& record);
// The decisions of `after` that differ from `before`, in `after`'s order
// (those only `before` has last).
std::vector<_DecisionChange> CompareDecisions(const Decisions& before, const Decisions& after);
// The decisions in one text of lines "path\tvalue", and back.
std::string PackDecisions(const Decisions& decisions);
Decisions UnpackDecisions(const std::string& text);

// "before -> after", or for two lists of names "+Added, -Removed".
std::string ChangeSummary(const _DecisionChange& change);
// Adds `change` to `list` as {session, decision, before, after} and to `text`
// as "  decision: summary", after a "session:" line when its session is not
// `*session` (which it then becomes); returns the item added.
ReportNode& ReportDecisionChange(const _DecisionChange& change, ReportNode* list, std::string* text,
                                 std::string* session);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_DECISIONS_H
