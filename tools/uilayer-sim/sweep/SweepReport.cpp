// The sweep's report tree: one model for the text and the JSON form.
#include <iterator>
#include <string>
#include <utility>

#include "sweep/Sweep.h"

namespace UilayerSim {

namespace {

constexpr const char* kStatusNames[] = {"configured", "failed", "aborted", "crashed"};

ReportNode SizeText(StreamSize size) {
    return ReportNode::Text(std::to_string(size.width) + "x" + std::to_string(size.height));
}

// The tables the rows come from, each once.
ReportNode TablesNode(const std::vector<SweepRow>& rows) {
    ReportNode tables = ReportNode::InlineList();
    const char* last = nullptr;
    for (const SweepRow& row : rows) {
        const char* name = TableName(row.combination.table);
        if (name != last) {
            tables.Push(ReportNode::Text(name));
            last = name;
        }
    }
    return tables;
}

ReportNode RowNode(const SweepRow& row, const SizeClasses& sizes) {
    const StreamCombination& combination = row.combination;
    const CombinationOutcome& outcome = row.outcome;
    ReportNode node = ReportNode::Map();
    node.Add("combination", ReportNode::Text(CombinationLabel(combination)));
    node.Add("table", ReportNode::Text(TableName(combination.table)));
    node.Add("result", ReportNode::Text(NameOf(kStatusNames, outcome.status)));
    if (outcome.status == OutcomeStatus::Aborted || outcome.status == OutcomeStatus::Crashed) {
        node.Add("message", ReportNode::Text(outcome.message));
        node.Add("log", ReportNode::Texts(outcome.log, false));
        return node;
    }
    ReportNode& codes = node.Add("return codes", ReportNode::Map());
    codes.Add("static capabilities", ReportNode::Integer(outcome.staticCode));
    codes.Add("stream capabilities", ReportNode::Integer(outcome.streamCode));
    ReportNode& streams = node.Add("streams", ReportNode::List());
    for (size_t i = 0; i < combination.streams.size(); ++i) {
        const StreamTarget& target = combination.streams[i];
        ReportNode& stream = streams.Push(ReportNode::Map());
        stream.Add("stream", ReportNode::Text(StreamLabel(target, combination.table)));
        stream.Add("size", SizeText(sizes.Of(target.size)));
        if (i < outcome.streams.size()) {
            stream.Add("role", ReportNode::Text(outcome.streams[i].role));
            stream.Add("camera index", ReportNode::Integer(outcome.streams[i].cameraIndex));
        }
    }
    node.Add("logical caps", ReportNode::Texts(outcome.logicalCaps, true));
    node.Add("sensor mode return code", ReportNode::Integer(outcome.sensorModeCode));
    node.Add("sensor mode index", ReportNode::Integer(outcome.sensorModeIndex));
    node.Add("pipeline", outcome.hasPipeline ? ReportNode::Text(outcome.pipeline) : ReportNode());
    return node;
}

ReportNode SummaryNode(const SweepResult& result) {
    // The combinations' labels by outcome status, in OutcomeStatus order.
    std::vector<std::string> labels[std::size(kStatusNames)];
    std::vector<std::string> unlisted;
    for (const SweepRow& row : result.rows) {
        const std::string label = CombinationLabel(row.combination);
        labels[static_cast<size_t>(row.outcome.status)].push_back(label);
        const auto& targets = row.combination.streams;
        for (size_t i = 0; i < row.outcome.streams.size() && i < targets.size(); ++i) {
            if (!row.outcome.streams[i].listed) {
                unlisted.push_back(label + ": " + StreamLabel(targets[i], row.combination.table));
            }
        }
    }
    ReportNode summary = ReportNode::Map();
    summary.Add("combinations", ReportNode::Integer(static_cast<int64_t>(result.rows.size())));
    for (size_t status = 0; status < std::size(kStatusNames); ++status) {
        summary.Add(kStatusNames[status],
                    ReportNode::Integer(static_cast<int64_t>(labels[status].size())));
    }
    for (size_t status = 1; status < std::size(kStatusNames); ++status) {
        summary.Add(kStatusNames[status] + std::string(" combinations"),
                    ReportNode::Texts(labels[status], true));
    }
    summary.Add("streams without a role", ReportNode::Texts(unlisted, true));
    return summary;
}

}  // namespace

ReportNode SweepReport(const SweepResult& result) {
    ReportNode report = ReportNode::Map();
    report.Add("sweep", ReportNode::Text(result.deviceName));
    report.Add("configuration", ReportNode::Text(result.configName));
    report.Add("camera", ReportNode::Integer(result.camera));
    report.Add("operation mode", ReportNode::Hex(result.operationMode));
    report.Add("level", ReportNode::Text(NameOf(kLevelNames, result.selection.level)));
    if (result.hasPackage) {
        report.Add("package", ReportNode::Text(result.package));
    }
    if (!result.params.empty()) {
        report.Add("session parameters", ReportNode::Texts(result.params, true));
    }
    report.Add("tables", TablesNode(result.rows));
    ReportNode& sizes = report.Add("sizes", ReportNode::Map());
    sizes.Add("preview", SizeText(result.sizes.preview));
    sizes.Add("record", SizeText(result.sizes.record));
    sizes.Add("max", SizeText(result.sizes.maximum));
    sizes.Add("vga", SizeText(result.sizes.vga));
    ReportNode& rows = report.Add("combinations", ReportNode::List());
    for (const SweepRow& row : result.rows) {
        rows.Push(RowNode(row, result.sizes));
    }
    report.Add("summary", SummaryNode(result));
    return report;
}

}  // namespace UilayerSim
