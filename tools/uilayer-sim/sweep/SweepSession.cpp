#include "sweep/SweepSession.h"

#include <stdexcept>
#include <utility>

#include "replay/Replay.h"

namespace UilayerSim {

namespace {

// The replay report entries the sweep reads.
const ReportNode& Entry(const ReportNode& node, const char* key) {
    const ReportNode* value = node.Find(key);
    if (value == nullptr) {
        throw std::runtime_error(std::string("the replay report has no \"") + key + "\"");
    }
    return *value;
}

int64_t Number(const ReportNode& node, const char* key) {
    return std::stoll(Entry(node, key).Scalar());
}

bool InSomeRoleList(const ReportNode& roles, const std::string& name) {
    for (const auto& role : roles.Entries()) {
        for (const ReportNode& listed : role.second.Items()) {
            if (listed.Scalar() == name) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

CombinationOutcome ConfigureCombination(const Scenario& device, SessionSetup session,
                                        const std::string& siblingRoot) {
    Step sensorMode;
    sensorMode.kind = StepKind::SensorMode;
    sensorMode.camera = kLogicalCamera;
    sensorMode.capsSource = CapsSource::Session;
    session.steps = {sensorMode};
    Scenario scenario = device;
    scenario.sessions = {std::move(session)};

    ReplayOptions options;
    options.log = true;
    options.siblingRoot = siblingRoot;
    const ReportNode report = Replay(scenario, options);

    const ReportNode& replayed = Entry(report, "sessions").Items().at(0);
    CombinationOutcome outcome;
    const ReportNode& configure = Entry(replayed, "configure");
    outcome.staticCode = Number(configure, "ParseStaticCapabilities");
    outcome.streamCode = Number(configure, "ParseStreamCapabilities");
    const ReportNode& roles = Entry(replayed, "roles");
    for (const auto& stream : Entry(replayed, "streams").Entries()) {
        StreamOutcome entry;
        entry.role = Entry(stream.second, "role").Scalar();
        entry.cameraIndex = Number(stream.second, "camera index");
        entry.listed = InSomeRoleList(roles, stream.first);
        outcome.streams.push_back(entry);
    }
    for (const ReportNode& cap : Entry(replayed, "logical caps").Items()) {
        outcome.logicalCaps.push_back(cap.Scalar());
    }
    const ReportNode& pipeline = Entry(replayed, "pipeline");
    outcome.hasPipeline = pipeline.GetKind() != ReportNode::Kind::Null;
    outcome.pipeline = pipeline.Scalar();
    const ReportNode& query = Entry(replayed, "steps").Items().at(0);
    outcome.sensorModeCode = Number(query, "return code");
    outcome.sensorModeIndex = Number(query, "index");
    return outcome;
}

}  // namespace UilayerSim
