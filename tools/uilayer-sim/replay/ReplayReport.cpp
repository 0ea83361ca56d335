// Writes a replay record as the report tree, for text and JSON alike.
#include "replay/Replay.h"
#include "replay/SessionFacts.h"

namespace UilayerSim {

namespace {

using Lumora::_CapsBitset;

// The capability's name; in JSON {"bit": 49, "name": "CapsVideoEIS"}.
ReportNode CapabilityNode(uint32_t bit) {
    ReportNode json = ReportNode::Map();
    json.Add("bit", ReportNode::Integer(bit));
    json.Add("name", ReportNode::Text(CapabilityName(bit)));
    return ReportNode::Text(CapabilityName(bit)).WithJson(json);
}

// A text for the user; null in JSON.
ReportNode NoteOrNull(const char* text) {
    return ReportNode::Text(text).WithJson(ReportNode());
}

template <typename T>
ReportNode IntegerOr(const std::optional<T>& value, const char* note) {
    return value ? ReportNode::Integer(*value) : NoteOrNull(note);
}

ReportNode CameraJson(const CameraSetup& camera) {
    ReportNode node = ReportNode::Map();
    node.Add("camera_id", ReportNode::Integer(camera.frameworkId));
    node.Add("record", ReportNode::Boolean(camera.hasRecord));
    if (!camera.hasRecord) {
        return node;
    }
    node.Add("logical_id", ReportNode::Integer(camera.logicalCamId));
    node.Add("sensor", ReportNode::Text(camera.sensorName));
    ReportNode& physical = node.Add("physical_cameras", ReportNode::List());
    for (const PhysicalCameraSetup& entry : camera.physicalCameras) {
        ReportNode& item = physical.Push(ReportNode::Map());
        item.Add("physical_id", ReportNode::Integer(entry.physicalCamId));
        item.Add("framework_id", ReportNode::Integer(entry.frameworkId));
        item.Add("logical_id", ReportNode::Integer(entry.logicalCamId));
        item.Add("primary", ReportNode::Boolean(entry.isPrimary != 0));
    }
    return node;
}

ReportNode CapsNode(const _CapsBitset& caps) {
    ReportNode list = ReportNode::InlineList();
    for (uint32_t bit = 0; bit < Lumora::_CapsBitset::kBitCount; ++bit) {
        if (caps.test(bit)) {
            list.Push(CapabilityNode(bit));
        }
    }
    return list;
}

// "logical" or the physical id; a number in JSON.
ReportNode CameraLabel(uint32_t queryType) {
    if (queryType == kLogicalCamera) {
        return ReportNode::Text("logical");
    }
    return ReportNode::Text(std::to_string(queryType)).WithJson(ReportNode::Integer(queryType));
}

// The queries' names by StepKind, from SessionCaps on.
constexpr const char* kQueryNames[] = {
    "session caps", "caps mask",  "streams",      "sensor mode",      "tuning mode", "pipeline",
    "SAT",          "warm start", "star mode AE", "remap zoom ratio", "request caps"};
static_assert(sizeof(kQueryNames) / sizeof(kQueryNames[0]) ==
                  static_cast<size_t>(StepKind::RequestCaps) -
                      static_cast<size_t>(StepKind::SessionCaps) + 1,
              "one name per query");

// The log lines as "log" when there are any.
void AttachLog(ReportNode* node, const std::vector<std::string>& lines) {
    if (!lines.empty()) {
        node->Add("log", ReportNode::Texts(lines, false));
    }
}

ReportNode TextOrNone(const std::optional<std::string>& text) {
    return text ? ReportNode::Text(*text) : ReportNode();
}

// Caps by camera as "camera N: caps"; in JSON a list of {"camera_id", "caps"}.
ReportNode CameraCapsNode(const CameraCaps& cameras) {
    ReportNode node = ReportNode::Map();
    for (const auto& camera : cameras) {
        node.Add("camera " + std::to_string(camera.first), CapsNode(camera.second));
    }
    return node.WithJson(LabelledList(node, "camera_id", true, "caps"));
}

ReportNode RolesNode(const RoleStreams& roles) {
    ReportNode node = ReportNode::Map();
    for (const auto& role : roles) {
        node.Add(StreamRoleName(role.first), ReportNode::Texts(role.second, true));
    }
    return node.WithJson(LabelledList(node, "role", false, "streams"));
}

// The answers to the asked capabilities; in JSON a list of {"bit", "name",
// "supported"}.
ReportNode AnswersNode(const std::vector<uint32_t>& bits, const std::vector<bool>& answers) {
    ReportNode node = ReportNode::Map();
    ReportNode json = ReportNode::List();
    for (size_t i = 0; i < bits.size(); ++i) {
        node.Add(CapabilityName(bits[i]), ReportNode::Boolean(answers[i]));
        ReportNode& item = json.Push(ReportNode::Map());
        item.Add("bit", ReportNode::Integer(bits[i]));
        item.Add("name", ReportNode::Text(CapabilityName(bits[i])));
        item.Add("supported", ReportNode::Boolean(answers[i]));
    }
    return node.WithJson(json);
}

ReportNode SatNode(const std::optional<Lumora::_SatStaticCaps>& record) {
    if (!record) {
        return ReportNode();
    }
    ReportNode node = ReportNode::Map();
    node.Add("fallbackUsecase", ReportNode::Integer(record->fallbackUsecase));
    node.Add("fallbackDebug", ReportNode::Integer(record->fallbackDebug));
    node.Add("isTripartiteFallbackWhitelist",
             ReportNode::Integer(record->isTripartiteFallbackWhitelist));
    node.Add("forceFallback", ReportNode::Integer(record->forceFallback));
    node.Add("supportZoomDivision", ReportNode::Integer(record->supportZoomDivision));
    node.Add("supportBokehIzoomSeamless", ReportNode::Integer(record->supportBokehIzoomSeamless));
    node.Add("enableSmoothZoom", ReportNode::Integer(record->enableSmoothZoom));
    node.Add("isBokehMode", ReportNode::Integer(record->isBokehMode));
    node.Add("videoMaxRtCount", ReportNode::Integer(record->videoMaxRtCount));
    node.Add("useAIDLInput", ReportNode::Integer(record->useAIDLInput));
    node.Add("zoomDivisionCurveCfgPrefix", ReportNode::Text(record->zoomDivisionCurveCfgPrefix));
    node.Add("isEnableSkipMiddleSensor", ReportNode::Integer(record->isEnableSkipMiddleSensor));
    node.Add("is3rdCamZoomDivisionApp", ReportNode::Integer(record->is3rdCamZoomDivisionApp));
    node.Add("useVideoStrategy", ReportNode::Integer(record->useVideoStrategy));
    return node;
}

// Adds the warm start outputs to `node`; with the return code when `returnCode`.
void AddWarmStart(ReportNode* node, const _WarmStartRecord& record, bool returnCode) {
    if (returnCode) {
        node->Add("return code", ReportNode::Integer(record.returnCode));
    }
    node->Add("enable", IntegerOr(record.enable, "(not set)"));
    node->Add("dol state", IntegerOr(record.dolState, "(not set)"));
}

ReportNode StarModeNode(const std::optional<Lumora::StarModeAEInfo>& info) {
    if (!info) {
        return ReportNode();
    }
    ReportNode node = ReportNode::Map();
    node.Add("aeMode", ReportNode::Integer(info->aeMode));
    node.Add("sensitivity", ReportNode::Integer(info->sensitivity));
    node.Add("expTime", ReportNode::Integer(info->expTime));
    return node;
}

// "<value>", or the note that the library holds no record of the frame.
ReportNode HeldOr(bool held, ReportNode value) {
    return held ? value : ReportNode::Text("no record for the frame");
}

ReportNode DeviceNode(const _ReplayRecord& record) {
    ReportNode device = ReportNode::Map();
    ReportNode& cameras = device.Add("cameras", ReportNode::List());
    for (const CameraSetup& camera : record.cameras) {
        ReportNode& node = cameras.Push(ReportNode::Map());
        node.WithJson(CameraJson(camera));
        node.Add("camera", ReportNode::Integer(camera.frameworkId));
        if (!camera.hasRecord) {
            node.Add("record", ReportNode::Text("none"));
            continue;
        }
        node.Add("logical id", ReportNode::Integer(camera.logicalCamId));
        node.Add("sensor", ReportNode::Text(camera.sensorName));
        ReportNode& physical = node.Add("physical cameras", ReportNode::InlineList());
        for (const PhysicalCameraSetup& entry : camera.physicalCameras) {
            physical.Push(ReportNode::Text(std::to_string(entry.physicalCamId) + " (framework " +
                                           std::to_string(entry.frameworkId) + ", logical " +
                                           std::to_string(entry.logicalCamId) +
                                           (entry.isPrimary != 0 ? ", primary)" : ")")));
        }
    }
    AttachLog(&device, record.deviceLog);
    return device;
}

ReportNode RepeatNode(const _StepRecord& record) {
    const Step& step = record.step;
    ReportNode report = ReportNode::Map();
    report.Add("repeat", ReportNode::Integer(step.count));
    ReportNode& frames =
        report.Add("frames", ReportNode::Text(std::to_string(step.request.frame) + ".." +
                                              std::to_string(step.request.frame + step.count - 1)));
    ReportNode range = ReportNode::Map();
    range.Add("first", ReportNode::Integer(step.request.frame));
    range.Add("last", ReportNode::Integer(int64_t{step.request.frame} + step.count - 1));
    frames.WithJson(range);
    if (step.repeatResult) {
        report.Add("results", ReportNode::Integer(step.count));
    }
    ReportNode& codes = report.Add("return codes", ReportNode::Map());
    for (const auto& status : record.returnCodes) {
        codes.Add(std::to_string(status.first), ReportNode::Integer(status.second));
    }
    codes.WithJson(LabelledList(codes, "return_code", true, "requests"));
    ReportNode& primary = report.Add("primary caps", ReportNode::List());
    for (const auto& variant : record.variants) {
        ReportNode& node = primary.Push(ReportNode::Map());
        node.Add("requests", ReportNode::Integer(variant.second));
        node.Add("caps", CapsNode(variant.first));
    }
    AttachLog(&report, record.log);
    return report;
}

ReportNode StepNode(const _StepRecord& record) {
    const Step& step = record.step;
    ReportNode report = ReportNode::Map();
    if (step.kind >= StepKind::SessionCaps) {
        // In JSON the name of its step ("request_caps").
        const std::string name = kQueryNames[static_cast<size_t>(step.kind) -
                                             static_cast<size_t>(StepKind::SessionCaps)];
        report.Add("query", ReportNode::Text(name).WithJson(ReportNode::Text(JsonKey(name))));
    }
    switch (step.kind) {
        case StepKind::Request:
            report.Add("request", ReportNode::Integer(step.request.frame));
            report.Add("return code", ReportNode::Integer(record.returnCode));
            report.Add("primary caps", CapsNode(record.caps));
            report.Add("camera caps", CameraCapsNode(record.cameraCaps));
            report.Add("streams", RolesNode(record.roles));
            break;
        case StepKind::Result:
            report.Add("result", ReportNode::Integer(step.result.frame));
            report.Add("return code", ReportNode::Integer(record.returnCode));
            report.Add("aec records",
                       ReportNode::Integer(static_cast<int64_t>(step.result.aec.size())));
            if (step.result.hasMlft) {
                report.Add("mlft", ReportNode::Integer(step.result.mlft));
            }
            break;
        case StepKind::Repeat:
            return RepeatNode(record);
        case StepKind::SessionCaps:
            report.Add("camera", CameraLabel(step.camera));
            report.Add("answers", AnswersNode(step.caps, record.answers));
            break;
        case StepKind::CapsMask:
            report.Add("camera", CameraLabel(step.camera));
            report.Add("return code", ReportNode::Integer(record.returnCode));
            report.Add("caps", CapsNode(record.caps));
            break;
        case StepKind::Streams:
            report.Add("role", ReportNode::Text(StreamRoleName(step.role)));
            if (step.hasFrame) {
                report.Add("frame", ReportNode::Integer(step.frame));
            }
            report.Add("streams", HeldOr(record.held, ReportNode::Texts(record.streams, true)));
            break;
        case StepKind::SensorMode:
            report.Add("camera", CameraLabel(step.camera));
            if (step.capsSource == CapsSource::Request) {
                report.Add("from request", ReportNode::Integer(step.frame));
            } else if (step.capsSource == CapsSource::Session) {
                report.Add("from session", ReportNode::Boolean(true));
            }
            report.Add("caps", HeldOr(record.held, CapsNode(record.caps)));
            report.Add("return code", ReportNode::Integer(record.returnCode));
            report.Add("index", ReportNode::Integer(record.sensorModeIndex));
            break;
        case StepKind::TuningMode:
            report.Add("frame", ReportNode::Integer(step.frame));
            report.Add("table", ReportNode::Integer(step.tuningType));
            report.Add(
                "tuning mode",
                HeldOr(record.held, ReportNode::Integer(static_cast<int32_t>(record.tuningMode))));
            break;
        case StepKind::Pipeline:
            report.Add("pipeline", TextOrNone(record.pipeline));
            break;
        case StepKind::Sat:
            report.Add("SAT", SatNode(record.sat));
            break;
        case StepKind::WarmStart:
            report.Add("camera", ReportNode::Integer(step.camera));
            AddWarmStart(&report, record.warmStart, true);
            break;
        case StepKind::StarModeAe:
            report.Add("star mode AE", StarModeNode(record.starMode));
            break;
        case StepKind::RemapZoomRatio:
            report.Add("sensor", ReportNode::Text(step.sensor));
            report.Add("base zoom ratio", ReportNode::Real(record.zoomRatio));
            break;
        case StepKind::RequestCaps:
            report.Add("frame", ReportNode::Integer(step.frame));
            report.Add("camera", CameraLabel(step.camera));
            report.Add("caps", HeldOr(record.held, CapsNode(record.caps)));
            if (!step.caps.empty()) {
                report.Add("answers", AnswersNode(step.caps, record.answers));
            }
            break;
        default:
            break;
    }
    AttachLog(&report, record.log);
    return report;
}

ReportNode SessionNode(const _SessionRecord& session) {
    ReportNode report = ReportNode::Map();
    report.Add("session", ReportNode::Text(session.name));
    report.Add("camera", ReportNode::Integer(session.camera));
    if (!session.aborted.empty()) {
        report.Add("aborted",
                   ReportNode::Text("the library aborted the process during " + session.aborted));
        AttachLog(&report, session.configureLog);
        return report;
    }
    ReportNode& configure = report.Add("configure", ReportNode::Map());
    configure.Add("ParseStaticCapabilities", ReportNode::Integer(session.staticCode));
    configure.Add("ParseStreamCapabilities", ReportNode::Integer(session.streamCode));
    AttachLog(&configure, session.configureLog);
    report.Add("operation mode", ReportNode::Hex(session.operationMode));
    if (session.configuredOperationMode != session.operationMode) {
        report.Add("rewritten operation mode", ReportNode::Hex(session.configuredOperationMode));
    }
    report.Add("package", TextOrNone(session.package));
    report.Add("activity", TextOrNone(session.activity));
    report.Add("camera mode", TextOrNone(session.cameraMode));
    report.Add("pipeline", TextOrNone(session.pipeline));
    report.Add("facts",
               session.facts ? FactsNode(*session.facts, session.operationMode) : ReportNode());
    report.Add("logical caps", CapsNode(session.logicalCaps));
    report.Add("physical caps", CameraCapsNode(session.physicalCaps));
    ReportNode& streams = report.Add("streams", ReportNode::Map());
    for (const _StreamRecord& stream : session.streams) {
        ReportNode& node = streams.Add(stream.name, ReportNode::Map());
        node.Add("role", ReportNode::Text(StreamRoleName(stream.role)));
        node.Add("camera index", ReportNode::Integer(stream.cameraIndex));
        if (stream.extFlags != 0) {
            node.Add("ext_stream_flags", ReportNode::Integer(stream.extFlags));
        }
        node.Add("format", ReportNode::Text(NameOfNumber(NameTable::PixelFormats, stream.format)));
        node.Add("usage", ReportNode::Hex(stream.usage));
        node.Add("data space",
                 ReportNode::Text(NameOfNumber(NameTable::DataSpaces, stream.dataSpace)));
        node.Add("stream use case",
                 ReportNode::Text(NameOfNumber(NameTable::StreamUseCases, stream.useCase)));
    }
    streams.WithJson(LabelledList(streams, "name", false, "role"));
    report.Add("roles", RolesNode(session.roles));
    ReportNode& written = report.Add("session parameters written", ReportNode::Map());
    if (!session.hasSessionParams) {
        written.Add("IsGenericCam", NoteOrNull("no session parameters"));
    } else {
        written.Add("IsGenericCam", IntegerOr(session.isGenericCam, "absent"));
        written.Add("SupportedAINRType", IntegerOr(session.supportedAinrType, "absent"));
    }
    report.Add("SAT", SatNode(session.sat));
    ReportNode& warmStart = report.Add("warm start", ReportNode::Map());
    for (const _WarmStartRecord& state : session.warmStart) {
        AddWarmStart(&warmStart.Add("camera " + std::to_string(state.camera), ReportNode::Map()),
                     state, false);
    }
    warmStart.WithJson(LabelledList(warmStart, "camera_id", true, "state"));
    ReportNode& sizes = report.Add("sensor dimensions", ReportNode::Map());
    ReportNode sizeRows = ReportNode::List();
    for (size_t i = 0; i < session.sensorDimensions.size(); ++i) {
        const Lumora::_SensorDimension& row = session.sensorDimensions[i];
        sizes.Add("row " + std::to_string(i),
                  ReportNode::Text("camera " + std::to_string(row.physicalCamId) + ", " +
                                   std::to_string(row.width) + "x" + std::to_string(row.height)));
        ReportNode& json = sizeRows.Push(ReportNode::Map());
        json.Add("row", ReportNode::Integer(static_cast<int64_t>(i)));
        json.Add("camera_id", ReportNode::Integer(row.physicalCamId));
        json.Add("width", ReportNode::Integer(row.width));
        json.Add("height", ReportNode::Integer(row.height));
    }
    sizes.WithJson(sizeRows);
    report.Add("star mode AE", StarModeNode(session.starMode));
    report.Add("video stabilization mode", ReportNode::Integer(session.videoStabMode));
    report.Add("disable AE precapture", ReportNode::Boolean(session.disableAePrecapture));
    ReportNode& steps = report.Add("steps", ReportNode::List());
    for (const _StepRecord& step : session.steps) {
        steps.Push(StepNode(step));
    }
    return report;
}

}  // namespace

ReportNode ReplayReport(const _ReplayRecord& record) {
    ReportNode report = ReportNode::Map();
    report.Add("scenario", ReportNode::Text(record.scenario));
    report.Add("configuration", ReportNode::Text(record.configuration));
    report.Add("device", DeviceNode(record));
    ReportNode& sessions = report.Add("sessions", ReportNode::List());
    for (const _SessionRecord& session : record.sessions) {
        sessions.Push(SessionNode(session));
    }
    return report;
}

}  // namespace UilayerSim
