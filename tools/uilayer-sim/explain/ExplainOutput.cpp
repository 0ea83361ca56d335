// The explanation as text for a reader, or as one JSON object with the same
// content (docs/simulator.md describes its keys).
#include "explain/Explain.h"

namespace UilayerSim {

namespace {

const char* VerdictText(InputVerdict verdict) {
    switch (verdict) {
        case InputVerdict::Met:
            return "met";
        case InputVerdict::Failed:
            return "failed";
        case InputVerdict::Unknown:
            break;
    }
    return "unknown";
}

std::string Subject(const _Explanation& e) {
    const std::string camera =
        e.camera < 0 ? "the logical camera" : "physical camera " + std::to_string(e.camera);
    return camera + (e.hasFrame ? " in frame " + std::to_string(e.frame) : "") + " of session \"" +
           e.session + "\" (camera " + std::to_string(e.sessionCamera) + ")";
}

std::string InputLine(const _ExplainInput& input) {
    return input.what + ": " + input.value + (input.where.empty() ? "" : " (" + input.where + ")");
}

void AddLog(std::string* out, const std::string& heading, const std::string& step,
            const std::vector<std::string>& log) {
    *out += heading + " " + step + (log.empty() ? "" : ", which logged:") + "\n";
    for (const std::string& line : log) {
        *out += "  " + line + "\n";
    }
}

ReportNode InputNode(const _ExplainInput& input) {
    ReportNode node = ReportNode::Map();
    node.Add("input", ReportNode::Text(input.what));
    node.Add("value", ReportNode::Text(input.value));
    node.Add("where", input.where.empty() ? ReportNode() : ReportNode::Text(input.where));
    node.Add("verdict", ReportNode::Text(VerdictText(input.verdict)));
    if (!input.reason.empty()) {
        node.Add("reason", ReportNode::Text(input.reason));
    }
    return node;
}

ReportNode StepNode(const std::string& step, const std::vector<std::string>& log) {
    if (step.empty()) {
        return ReportNode();
    }
    ReportNode node = ReportNode::Map();
    node.Add("step", ReportNode::Text(step));
    node.Add("log", ReportNode::Texts(log, false));
    return node;
}

}  // namespace

std::string RenderExplanationText(const _Explanation& e) {
    std::string out = e.name + " (bit " + std::to_string(e.bit) + ") is " +
                      (e.set ? "set" : "not set") + " on " + Subject(e) + "\n";
    std::string setOn;
    for (const std::string& where : e.setOn) {
        setOn += (setOn.empty() ? "" : ", ") + where;
    }
    out += "set on: " + (setOn.empty() ? std::string("no camera of the session") : setOn) + "\n";
    if (!e.hasFrame) {
        if (!e.setBy.empty() && (e.set || e.clearedBy.empty())) {
            AddLog(&out, "set by step", e.setBy, e.setByLog);
        }
        if (!e.clearedBy.empty()) {
            AddLog(&out, e.set ? "cleared before by step" : "cleared last by step", e.clearedBy,
                   e.clearedByLog);
            if (!e.set && !e.setBy.empty()) {
                out += "(set before by step " + e.setBy + ")\n";
            }
        }
    } else if (!e.contributions.empty()) {
        out += "contributions that changed it:\n";
        for (const _ExplainContribution& c : e.contributions) {
            out += std::string("  ") + (c.added ? "added by " : "removed by ") + c.text + "\n";
        }
    } else {
        out += "no contribution of the request touched it\n";
    }
    out += e.set ? "rules that set it:\n" : "rules that could set it:\n";
    if (e.rules.empty()) {
        out += "  none for this camera\n";
    }
    for (const _ExplainRule& rule : e.rules) {
        out += std::string("  ") + rule.rule->step + ": " +
               (rule.rule->effect == Lumora::kEffectClears ? "clears it when " : "") +
               rule.rule->condition + "\n";
        if (const _ExplainInput* failed = rule.Failed()) {
            out += "    failed: " + failed->reason + "\n";
        }
        for (const _ExplainInput& input : rule.inputs) {
            out += "    " + InputLine(input) + "\n";
        }
    }
    out += std::string(e.set ? "changes that clear it" : "changes that set it") + " (of " +
           std::to_string(e.tried) + " reruns, each verified):\n";
    for (const _ExplainChange& change : e.changes) {
        out += "  " + change.text + "\n";
    }
    if (e.changes.empty()) {
        out += std::string("  none found") +
               (e.pairsStopped ? " (the search of pairs stopped at its bound)" : "") + "\n";
    }
    out += "session facts:\n";
    for (const _ExplainInput& fact : e.facts) {
        out += "  " + InputLine(fact) + "\n";
    }
    return out;
}

std::string RenderExplanationJson(const _Explanation& e) {
    ReportNode root = ReportNode::Map();
    root.Add("bit", ReportNode::Integer(e.bit));
    root.Add("name", ReportNode::Text(e.name));
    root.Add("session", ReportNode::Text(e.session));
    root.Add("session camera", ReportNode::Integer(e.sessionCamera));
    root.Add("camera", e.camera < 0 ? ReportNode::Text("logical") : ReportNode::Integer(e.camera));
    root.Add("frame", e.hasFrame ? ReportNode::Integer(e.frame) : ReportNode());
    root.Add("set", ReportNode::Boolean(e.set));
    root.Add("set on", ReportNode::Texts(e.setOn, false));
    if (!e.hasFrame) {
        root.Add("set by", StepNode(e.setBy, e.setByLog));
        root.Add("cleared by", StepNode(e.clearedBy, e.clearedByLog));
    } else {
        ReportNode& list = root.Add("contributions", ReportNode::List());
        for (const _ExplainContribution& c : e.contributions) {
            ReportNode& item = list.Push(ReportNode::Map());
            item.Add("what", ReportNode::Text(c.text));
            item.Add("added", ReportNode::Boolean(c.added));
        }
    }
    ReportNode& rules = root.Add("rules", ReportNode::List());
    for (const _ExplainRule& rule : e.rules) {
        ReportNode& item = rules.Push(ReportNode::Map());
        item.Add("step", ReportNode::Text(rule.rule->step));
        item.Add("effect",
                 ReportNode::Text(rule.rule->effect == Lumora::kEffectSets ? "sets" : "clears"));
        item.Add("condition", ReportNode::Text(rule.rule->condition));
        const _ExplainInput* failed = rule.Failed();
        item.Add("failed", failed != nullptr ? ReportNode::Text(failed->reason) : ReportNode());
        ReportNode& inputs = item.Add("inputs", ReportNode::List());
        for (const _ExplainInput& input : rule.inputs) {
            inputs.Push(InputNode(input));
        }
    }
    ReportNode& changes = root.Add("changes", ReportNode::List());
    for (const _ExplainChange& change : e.changes) {
        for (const _Change& each : change.changes) {
            ReportNode& item = changes.Push(ReportNode::Map());
            item.Add("kind", ReportNode::Text(ChangeKindName(each.kind)));
            item.Add("target", ReportNode::Text(each.target));
            item.Add("value", ReportNode::Text(ChangeValue(each)));
            item.Add("effect", ReportNode::Text(e.set ? "clears" : "sets"));
            item.Add("verified", ReportNode::Boolean(true));
            item.Add("text", ReportNode::Text(change.text));
            if (change.changes.size() > 1) {
                item.Add("together", ReportNode::Boolean(true));
            }
        }
    }
    root.Add("changes tried", ReportNode::Integer(static_cast<int64_t>(e.tried)));
    ReportNode& facts = root.Add("facts", ReportNode::List());
    for (const _ExplainInput& fact : e.facts) {
        facts.Push(InputNode(fact));
    }
    return RenderJson(root);
}

}  // namespace UilayerSim
