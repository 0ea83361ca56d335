// What the fault sweep checks in a replay report.
#ifndef UILAYER_FAULTS_REPORT_CHECKS_H
#define UILAYER_FAULTS_REPORT_CHECKS_H

#include <string>

#include "core/Report.h"

namespace UilayerFaults {

// The report without its "log" entries: the decisions alone.
UilayerSim::ReportNode Decisions(const UilayerSim::ReportNode& report);

// The first return code in the report that the library does not document for
// the call that gave it ("" when all are documented), as "where: code".
std::string UndocumentedReturnCode(const UilayerSim::ReportNode& report);

}  // namespace UilayerFaults

#endif  // UILAYER_FAULTS_REPORT_CHECKS_H
