#include "ReportChecks.h"

#include <algorithm>
#include <initializer_list>

#include "common/ConfigHelpers.h"
#include "common/Status.h"

namespace UilayerFaults {

namespace {

using UilayerSim::ReportNode;

// Status of the configuration store for a value that does not convert.
constexpr int kConfigBadValue = 22;

// What the operations return: their statuses; a sensor mode query also passes
// on the status of the configuration store when its key does not read.
constexpr std::initializer_list<int> kOperationCodes = {
    Lumora::kStatusOk, Lumora::kStatusUnsupported, Lumora::kStatusInvalidArgument};
constexpr std::initializer_list<int> kSensorModeCodes = {Lumora::kStatusOk, Lumora::kConfigNotFound,
                                                         kConfigBadValue};

bool IsCodeKey(const std::string& key) {
    return key == "return code" || key == "ParseStaticCapabilities" ||
           key == "ParseStreamCapabilities";
}

bool Documented(const std::string& code, std::initializer_list<int> codes) {
    return std::any_of(codes.begin(), codes.end(),
                       [&](int known) { return code == std::to_string(known); });
}

std::string FindUndocumented(const ReportNode& node, const std::string& where) {
    if (node.GetKind() == ReportNode::Kind::List) {
        for (size_t i = 0; i < node.Items().size(); ++i) {
            std::string found =
                FindUndocumented(node.Items()[i], where + "[" + std::to_string(i) + "]");
            if (!found.empty()) {
                return found;
            }
        }
        return "";
    }
    if (node.GetKind() != ReportNode::Kind::Map) {
        return "";
    }
    const ReportNode* query = node.Find("query");
    const bool sensorMode = query != nullptr && query->Scalar() == "sensor mode";
    const std::initializer_list<int> codes = sensorMode ? kSensorModeCodes : kOperationCodes;
    for (const auto& entry : node.Entries()) {
        const std::string path = where + "/" + entry.first;
        if (IsCodeKey(entry.first) && !Documented(entry.second.Scalar(), codes)) {
            return path + ": " + entry.second.Scalar();
        }
        if (entry.first == "return codes") {
            for (const auto& count : entry.second.Entries()) {
                if (!Documented(count.first, codes)) {
                    return path + ": " + count.first;
                }
            }
            continue;
        }
        std::string found = FindUndocumented(entry.second, path);
        if (!found.empty()) {
            return found;
        }
    }
    return "";
}

}  // namespace

ReportNode Decisions(const ReportNode& report) {
    if (report.GetKind() == ReportNode::Kind::List) {
        ReportNode list = report.IsInline() ? ReportNode::InlineList() : ReportNode::List();
        for (const ReportNode& item : report.Items()) {
            list.Push(Decisions(item));
        }
        return list;
    }
    if (report.GetKind() != ReportNode::Kind::Map) {
        return report;
    }
    ReportNode map = ReportNode::Map();
    for (const auto& entry : report.Entries()) {
        if (entry.first != "log") {
            map.Add(entry.first, Decisions(entry.second));
        }
    }
    return map;
}

std::string UndocumentedReturnCode(const ReportNode& report) {
    return FindUndocumented(report, "");
}

}  // namespace UilayerFaults
