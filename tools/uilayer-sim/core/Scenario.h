// A scenario as plain data: the device, its configuration, properties and
// files, and the sessions with their steps. The reader fills and checks all of
// it before anything reaches the library.
#ifndef UILAYER_SIM_SCENARIO_H
#define UILAYER_SIM_SCENARIO_H

#include <HostKit/CameraTable.h>
#include <HostKit/Capture.h>
#include <HostKit/StreamConfig.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "core/Names.h"

namespace UilayerSim {

// Query type of the logical camera (the whole session or request).
constexpr uint32_t kLogicalCamera = 7;

// One metadata entry: a vendor tag by index or a standard tag by id, with
// values of the tag's element type.
struct TagValue {
    bool vendor = false;
    uint32_t tag = 0;  // vendor tag index, or standard tag id
    ElementType type = ElementType::Byte;
    std::vector<uint8_t> bytes;
    std::vector<int32_t> int32s;
    std::vector<int64_t> int64s;
    std::vector<float> floats;
    int line = 0;
    std::string field;  // the vendor index's path, for an index the sibling does not have

    size_t Count() const;
    const void* Data() const;
};

// The cameras and streams of a scenario are the kit's descriptions.
using PhysicalCameraSetup = HostKit::PhysicalCamera;
using CameraSetup = HostKit::CameraSetup;

struct StreamSetup : HostKit::StreamSetup {
    std::string name;
    int line = 0;
};

struct RequestSetup {
    uint32_t frame = 0;
    std::vector<size_t> buffers;  // indices into the session's streams
    bool hasSettings = true;
    bool hasSensorModes = false;
    std::vector<int32_t> sensorModes;
    bool hasZoomRatio = false;
    float zoomRatio = 0.0f;
    std::vector<TagValue> settings;
};

using AecSetup = HostKit::AecRecord;

struct ResultSetup {
    uint32_t frame = 0;
    bool hasMetadata = true;
    bool hasAec = false;
    std::vector<AecSetup> aec;
    bool hasMlft = false;
    uint32_t mlft = 0;
};

enum class StepKind {
    Request,
    Result,
    Repeat,
    SessionCaps,
    CapsMask,
    Streams,
    SensorMode,
    TuningMode,
    Pipeline,
    Sat,
    WarmStart,
    StarModeAe,
    RemapZoomRatio,
    RequestCaps,
};

// Where a sensor mode query takes its caps from.
enum class CapsSource { List, Request, Session };

struct Step {
    StepKind kind = StepKind::Pipeline;
    int line = 0;
    RequestSetup request;  // Request, Repeat (frame = first frame)
    ResultSetup result;    // Result, Repeat
    uint32_t count = 0;    // Repeat
    bool repeatResult = false;
    uint32_t camera = kLogicalCamera;  // query type of the queries
    std::vector<uint32_t> caps;        // SessionCaps, SensorMode, RequestCaps
    CapsSource capsSource = CapsSource::List;
    bool hasFrame = false;
    uint32_t frame = 0;  // Streams, TuningMode, RequestCaps, SensorMode
    int32_t role = 0;    // Streams
    uint32_t tuningType = 0;
    std::string sensor;  // RemapZoomRatio
    int32_t skip = 0;
};

struct SessionSetup {
    std::string name;
    int line = 0;
    uint32_t camera = 0;
    bool hasPackage = false;
    std::string package;
    bool hasActivity = false;
    std::string activity;
    uint32_t operationMode = 0;
    bool hasSessionParams = true;
    std::vector<TagValue> params;
    std::vector<StreamSetup> streams;
    std::vector<std::pair<std::string, std::string>> properties;
    std::vector<std::pair<std::string, std::string>> files;
    std::vector<Step> steps;
};

struct Scenario {
    std::string path;
    std::string name;  // file name without directory
    std::vector<CameraSetup> cameras;
    std::string configName;  // as written in the scenario, or "inline"
    std::string configText;
    std::vector<std::pair<std::string, std::string>> properties;
    std::vector<std::pair<std::string, std::string>> files;
    std::vector<SessionSetup> sessions;
    // What the reader doubts but the replay can take ("FILE:LINE: FIELD: reason").
    std::vector<std::string> warnings;

    const CameraSetup* Camera(uint32_t frameworkId) const;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SCENARIO_H
