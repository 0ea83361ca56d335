#include "sweep/SweepSession.h"

#include <algorithm>
#include <utility>

#include "replay/Replay.h"

namespace UilayerSim {

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
    const _SessionRecord replayed = RecordReplay(scenario, options).sessions.at(0);
    CombinationOutcome outcome;
    outcome.staticCode = replayed.staticCode;
    outcome.streamCode = replayed.streamCode;
    for (const _StreamRecord& stream : replayed.streams) {
        StreamOutcome entry;
        entry.role = StreamRoleName(stream.role);
        entry.cameraIndex = stream.cameraIndex;
        for (const auto& role : replayed.roles) {
            entry.listed = entry.listed || std::find(role.second.begin(), role.second.end(),
                                                     stream.name) != role.second.end();
        }
        outcome.streams.push_back(entry);
    }
    for (uint32_t bit = 0; bit < Lumora::_CapsBitset::kBitCount; ++bit) {
        if (replayed.logicalCaps.test(bit)) {
            outcome.logicalCaps.push_back(CapabilityName(bit));
        }
    }
    outcome.hasPipeline = replayed.pipeline.has_value();
    outcome.pipeline = replayed.pipeline.value_or("");
    const _StepRecord& query = replayed.steps.at(0);
    outcome.sensorModeCode = query.returnCode;
    outcome.sensorModeIndex = query.sensorModeIndex;
    return outcome;
}

}  // namespace UilayerSim
