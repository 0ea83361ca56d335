// What a replay saw the library decide, as plain data: per session the
// answers after its configuration, per step what the call returned and what
// the library answered after it. The replay fills it; ReplayReport writes it.
#ifndef UILAYER_SIM_REPLAY_RECORD_H
#define UILAYER_SIM_REPLAY_RECORD_H

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "IuiLayer.h"
#include "core/Scenario.h"

namespace UilayerSim {

struct _RecordedSession;

// Caps by physical camera id, in the session's camera order.
using CameraCaps = std::vector<std::pair<uint32_t, Lumora::_CapsBitset>>;
// The streams of each role whose list is not empty, by stream name, in role order.
using RoleStreams = std::vector<std::pair<int32_t, std::vector<std::string>>>;

// The warm start state of one camera; an output the library left alone is unset.
struct _WarmStartRecord {
    uint32_t camera = 0;
    int returnCode = 0;
    std::optional<unsigned int> enable;
    std::optional<int> dolState;
};

struct _StepRecord {
    Step step;
    int returnCode = 0;
    // A request's primary caps, a caps mask, the caps a sensor mode is asked
    // for, a request's caps asked by query.
    Lumora::_CapsBitset caps;
    CameraCaps cameraCaps;  // a request's caps of each physical camera (ids 0..7)
    RoleStreams roles;      // a request's streams by role
    // A repeat: requests by return code, and the distinct primary caps with
    // the number of requests that had them.
    std::map<int, uint32_t> returnCodes;
    std::vector<std::pair<Lumora::_CapsBitset, uint32_t>> variants;
    std::vector<bool> answers;  // one per asked capability
    // Whether the library holds the record of the frame a query names.
    bool held = true;
    std::vector<std::string> streams;  // a streams query
    signed char sensorModeIndex = -1;
    unsigned int tuningMode = 0;
    std::optional<std::string> pipeline;
    std::optional<Lumora::_SatStaticCaps> sat;
    _WarmStartRecord warmStart;
    std::optional<Lumora::StarModeAEInfo> starMode;
    float zoomRatio = 0;
    std::vector<std::string> log;  // kept when the replay logs
};

struct _StreamRecord {
    std::string name;
    int32_t role = 0;
    int cameraIndex = 0;
    uint32_t extFlags = 0;
    // In the list of some role; a stream in none gets no role at all.
    bool listed = false;
    // The fields the roles are decided by, as the library was handed them.
    int format = 0;
    uint32_t usage = 0;
    int32_t dataSpace = 0;
    int64_t useCase = 0;
};

struct _SessionRecord {
    std::string name;
    uint32_t camera = 0;
    // The call during which the library aborted the process, when it did:
    // the session's report ends there.
    std::string aborted;
    int staticCode = 0;
    int streamCode = 0;
    std::vector<std::string> configureLog;
    uint32_t operationMode = 0;            // as the scenario asks
    uint32_t configuredOperationMode = 0;  // as the configuration holds it afterwards
    std::optional<std::string> package;
    std::optional<std::string> activity;
    std::optional<std::string> cameraMode;
    std::optional<std::string> pipeline;
    // The trace of the configuration with the facts read after it; none when
    // no configuration step was recorded.
    std::shared_ptr<const _RecordedSession> facts;
    Lumora::_CapsBitset logicalCaps;
    CameraCaps physicalCaps;
    std::vector<_StreamRecord> streams;
    RoleStreams roles;
    // The vendor tags the library writes into the session parameters, when
    // there are session parameters; unset when absent.
    bool hasSessionParams = false;
    std::optional<int> isGenericCam;
    std::optional<int> supportedAinrType;
    std::optional<Lumora::_SatStaticCaps> sat;
    std::vector<_WarmStartRecord> warmStart;
    std::vector<Lumora::_SensorDimension> sensorDimensions;
    std::optional<Lumora::StarModeAEInfo> starMode;
    unsigned int videoStabMode = 0;
    bool disableAePrecapture = false;
    std::vector<_StepRecord> steps;
};

struct _ReplayRecord {
    std::string scenario;
    std::string configuration;
    std::vector<CameraSetup> cameras;
    std::vector<std::string> deviceLog;
    std::vector<_SessionRecord> sessions;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_REPLAY_RECORD_H
