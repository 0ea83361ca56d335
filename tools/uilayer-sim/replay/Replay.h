// Replays a scenario against the library and reports every decision by name:
// the replay records the decisions, a writer turns the record into the report.
#ifndef UILAYER_SIM_REPLAY_H
#define UILAYER_SIM_REPLAY_H

#include <cstdint>
#include <string>
#include <vector>

#include "core/Report.h"
#include "core/Scenario.h"
#include "replay/ReplayRecord.h"

namespace HostKit {
class DeviceRoot;
}

namespace UilayerSim {

class TraceRecorder;

struct ReplayOptions {
    // Interleave the library's own log lines; otherwise every log switch is off.
    bool log = false;
    // With `log`: the log of the steps too, not only of the configurations.
    bool logSteps = true;
    // Device root of the build tree that holds the host sibling camera layer.
    std::string siblingRoot;
    // Keeps the trace of the replay when set (requests too, if it asks);
    // otherwise the replay keeps its own, for the session facts.
    TraceRecorder* recorder = nullptr;
    // A device root to run in instead of a new one (experiments rerun many
    // times a second): the replay starts by removing the files an earlier
    // replay left there that this scenario does not write alike.
    HostKit::DeviceRoot* root = nullptr;
    // A progress line on standard error once the replay has run a second.
    bool progress = false;
};

// Builds the device in memory, loads the configuration, sets the properties,
// writes the device files under a temporary device root, then runs every
// session and step in order and records what the library decided. Throws
// std::runtime_error when the device cannot be set up; nothing of the scenario
// reaches the library before all of it is prepared.
_ReplayRecord RecordReplay(const Scenario& scenario, const ReplayOptions& options);
// The report of a replay record, for RenderText or RenderJson.
ReportNode ReplayReport(const _ReplayRecord& record);
// RecordReplay, then ReplayReport.
ReportNode Replay(const Scenario& scenario, const ReplayOptions& options);

// The physical camera ids of the session's camera record, in record order.
std::vector<uint32_t> PhysicalCameraIds(const Scenario& scenario, const SessionSetup& setup);

// Replaces the addresses that log lines print ("0x" and nine or more lower
// case hexadecimal digits) with "<addr>", so that reports stay comparable.
std::string MaskAddresses(const std::string& line);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_REPLAY_H
