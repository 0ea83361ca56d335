// Reads the steps of a session: requests, results, repeats and the queries.
#include "core/ScenarioSections.h"

#include <system/camera_metadata.h>

#include "common/VendorTags.h"

namespace UilayerSim {

namespace {

constexpr size_t kMaxAecRecords = 8;
constexpr int64_t kMaxRepeat = 10000000;

}  // namespace

RequestSetup SectionReader::ReadRequest(const YAML::Node& node, const std::string& field,
                                        const SessionState& state, bool needFrame) {
    CheckFields(node, field,
                {"frame", "buffers", "sensor_modes", "zoom_ratio", "settings", "no_settings"},
                needFrame ? 0 : 1);
    RequestSetup request;
    if (needFrame) {
        request.frame = Unsigned32(Required(node, "frame", field), Path(field, "frame"));
    }
    if (node["buffers"].IsDefined()) {
        const std::string name = Path(field, "buffers");
        const YAML::Node buffers = Sequence(node["buffers"], name);
        for (size_t i = 0; i < buffers.size(); ++i) {
            const std::string stream = Text(buffers[i], Index(name, i));
            const auto it = std::find(state.streamNames.begin(), state.streamNames.end(), stream);
            if (it == state.streamNames.end()) {
                Fail(buffers[i], Index(name, i),
                     "no stream named \"" + stream + "\" in this session");
            }
            request.buffers.push_back(static_cast<size_t>(it - state.streamNames.begin()));
        }
    }
    if (Without(node, field, "no_settings", {"sensor_modes", "zoom_ratio", "settings"},
                "a request without settings carries no sensor_modes, zoom_ratio or settings")) {
        request.hasSettings = false;
        return request;
    }
    if (node["sensor_modes"].IsDefined()) {
        const std::string name = Path(field, "sensor_modes");
        const YAML::Node modes = Sequence(node["sensor_modes"], name);
        request.hasSensorModes = true;
        for (size_t i = 0; i < modes.size(); ++i) {
            request.sensorModes.push_back(Signed32(modes[i], Index(name, i)));
        }
    }
    request.hasZoomRatio =
        Optional(node, field, "zoom_ratio", &request.zoomRatio, &SectionReader::Number);
    if (node["settings"].IsDefined()) {
        request.settings = ReadTags(node["settings"], Path(field, "settings"));
        for (const TagValue& tag : request.settings) {
            const bool modes = tag.vendor && tag.tag == Lumora::kTagSensorModeList;
            const bool zoom = !tag.vendor && tag.tag == ANDROID_CONTROL_ZOOM_RATIO;
            if ((modes && request.hasSensorModes) || (zoom && request.hasZoomRatio)) {
                throw ScenarioError(m_file, tag.line, Path(field, "settings"),
                                    modes ? "the sensor mode list is already given by sensor_modes"
                                          : "the zoom ratio is already given by zoom_ratio");
            }
        }
    }
    return request;
}

ResultSetup SectionReader::ReadResult(const YAML::Node& node, const std::string& field,
                                      const SessionState& state, bool needFrame) {
    CheckFields(node, field, {"frame", "aec", "mlft", "no_metadata"}, needFrame ? 0 : 1);
    ResultSetup result;
    if (needFrame) {
        result.frame = Unsigned32(Required(node, "frame", field), Path(field, "frame"));
    }
    if (Without(node, field, "no_metadata", {"aec", "mlft"},
                "a result without metadata carries no aec or mlft")) {
        result.hasMetadata = false;
        return result;
    }
    if (node["aec"].IsDefined()) {
        const std::string name = Path(field, "aec");
        const YAML::Node list = Sequence(node["aec"], name);
        if (list.size() > kMaxAecRecords) {
            Fail(list, name, "the exposure count list holds at most 8 records");
        }
        result.hasAec = true;
        for (size_t i = 0; i < list.size(); ++i) {
            const std::string entryName = Index(name, i);
            const YAML::Node entry = list[i];
            CheckFields(entry, entryName, {"camera", "exp_count", "values", "extra"});
            AecSetup aec = {};
            const YAML::Node camera = Required(entry, "camera", entryName);
            aec.cameraId = Signed32(camera, Path(entryName, "camera"));
            if (aec.cameraId < 0 || state.cameraIds.count(aec.cameraId) == 0) {
                Fail(camera, Path(entryName, "camera"),
                     "no camera " + std::to_string(aec.cameraId) + " in the device");
            }
            aec.expCount =
                Signed32(Required(entry, "exp_count", entryName), Path(entryName, "exp_count"));
            if (entry["values"].IsDefined()) {
                const std::string valuesName = Path(entryName, "values");
                const YAML::Node values = Sequence(entry["values"], valuesName);
                if (values.size() != 2) {
                    Fail(values, valuesName, "expected two AEC values");
                }
                aec.aecValue1 = Number(values[0], Index(valuesName, 0));
                aec.aecValue2 = Number(values[1], Index(valuesName, 1));
            }
            Optional(entry, entryName, "extra", &aec.extra, &SectionReader::Unsigned32);
            result.aec.push_back(aec);
        }
    }
    result.hasMlft = Optional(node, field, "mlft", &result.mlft, &SectionReader::Unsigned32);
    return result;
}

Step SectionReader::ReadStep(const YAML::Node& node, const std::string& field,
                             SessionState* state) {
    Step step;
    step.line = LineOf(node);
    std::string kind;
    YAML::Node body;
    if (node.IsScalar()) {
        kind = node.Scalar();
    } else if (node.IsMap() && node.size() == 1) {
        kind = Text(node.begin()->first, field);
        body = node.begin()->second;
    } else {
        Fail(node, field,
             "a step is one of request, result, repeat or a query, as a map of one key");
    }
    const std::string bodyName = Path(field, kind);
    const bool hasBody = body.IsDefined() && !body.IsNull();
    static const std::set<std::string> kNeedBody = {
        "request",     "result",      "repeat",     "session_caps",     "streams",
        "sensor_mode", "tuning_mode", "warm_start", "remap_zoom_ratio", "request_caps"};
    if (!hasBody && kNeedBody.count(kind) != 0) {
        Fail(node, bodyName, "needs its fields");
    }

    if (kind == "request") {
        step.kind = StepKind::Request;
        step.request = ReadRequest(body, bodyName, *state, true);
        state->nextFrame = std::max(state->nextFrame, step.request.frame + 1);
    } else if (kind == "result") {
        step.kind = StepKind::Result;
        step.result = ReadResult(body, bodyName, *state, true);
    } else if (kind == "repeat") {
        step.kind = StepKind::Repeat;
        CheckFields(body, bodyName, {"count", "first_frame", "request", "result"});
        step.count = static_cast<uint32_t>(
            Integer(Required(body, "count", bodyName), Path(bodyName, "count"), 1, kMaxRepeat));
        step.request = ReadRequest(Required(body, "request", bodyName), Path(bodyName, "request"),
                                   *state, false);
        step.request.frame = state->nextFrame;
        Optional(body, bodyName, "first_frame", &step.request.frame, &SectionReader::Unsigned32);
        if (uint64_t{step.request.frame} + step.count - 1 > UINT32_MAX) {
            Fail(body, bodyName, "the frame numbers would pass 4294967295");
        }
        if (body["result"].IsDefined()) {
            step.repeatResult = true;
            step.result = ReadResult(body["result"], Path(bodyName, "result"), *state, false);
        }
        state->nextFrame = std::max(state->nextFrame, step.request.frame + step.count);
    } else if (kind == "session_caps") {
        step.kind = StepKind::SessionCaps;
        CheckFields(body, bodyName, {"camera", "caps"});
        step.camera = QueryCamera(body, bodyName, 255, *state);
        step.caps = Capabilities(Required(body, "caps", bodyName), Path(bodyName, "caps"));
    } else if (kind == "caps_mask") {
        step.kind = StepKind::CapsMask;
        if (hasBody) {
            CheckFields(body, bodyName, {"camera"});
            step.camera = QueryCamera(body, bodyName, 255, *state);
        }
    } else if (kind == "streams") {
        step.kind = StepKind::Streams;
        CheckFields(body, bodyName, {"role", "frame"});
        step.role =
            static_cast<int32_t>(Named(Required(body, "role", bodyName), Path(bodyName, "role"),
                                       NameTable::StreamRoles, "stream role", 0, 15));
        step.hasFrame = Optional(body, bodyName, "frame", &step.frame, &SectionReader::Unsigned32);
    } else if (kind == "sensor_mode") {
        step.kind = StepKind::SensorMode;
        CheckFields(body, bodyName, {"camera", "caps", "request", "session"});
        step.camera = QueryCamera(body, bodyName, 255, *state);
        const int sources = (body["caps"].IsDefined() ? 1 : 0) +
                            (body["request"].IsDefined() ? 1 : 0) +
                            (body["session"].IsDefined() ? 1 : 0);
        if (sources != 1) {
            Fail(body, bodyName,
                 "give exactly one of caps (a list), request (a frame) or session: true");
        }
        if (body["caps"].IsDefined()) {
            step.capsSource = CapsSource::List;
            step.caps = Capabilities(body["caps"], Path(bodyName, "caps"));
        } else if (body["request"].IsDefined()) {
            step.capsSource = CapsSource::Request;
            step.hasFrame = true;
            step.frame = Unsigned32(body["request"], Path(bodyName, "request"));
            if (step.camera != kLogicalCamera && step.camera > 7) {
                Fail(body["camera"], Path(bodyName, "camera"),
                     "a request holds caps for physical ids 0..7 only");
            }
        } else {
            if (!Boolean(body["session"], Path(bodyName, "session"))) {
                Fail(body["session"], Path(bodyName, "session"),
                     "only session: true is meaningful");
            }
            step.capsSource = CapsSource::Session;
        }
    } else if (kind == "tuning_mode") {
        step.kind = StepKind::TuningMode;
        CheckFields(body, bodyName, {"frame", "table"});
        step.hasFrame = true;
        step.frame = Unsigned32(Required(body, "frame", bodyName), Path(bodyName, "frame"));
        // The library's two request tuning tables, by name or number.
        const YAML::Node table = Required(body, "table", bodyName);
        const std::string tableName = Path(bodyName, "table");
        const std::string text = Text(table, tableName);
        int64_t number = 0;
        if (text == "feature1" || text == "feature2") {
            step.tuningType = text == "feature1" ? 1 : 2;
        } else if (ParseIntegerText(text, &number)) {
            step.tuningType = static_cast<uint32_t>(Integer(table, tableName, 0, UINT32_MAX));
        } else {
            Fail(table, tableName, "unknown tuning table \"" + text + "\"");
        }
    } else if (kind == "pipeline" || kind == "sat" || kind == "star_mode_ae") {
        if (hasBody) {
            Fail(body, bodyName, "takes no fields");
        }
        step.kind = kind == "pipeline" ? StepKind::Pipeline
                                       : (kind == "sat" ? StepKind::Sat : StepKind::StarModeAe);
    } else if (kind == "warm_start") {
        step.kind = StepKind::WarmStart;
        CheckFields(body, bodyName, {"camera"});
        step.camera = Unsigned32(Required(body, "camera", bodyName), Path(bodyName, "camera"));
        CheckCameraId(body["camera"], Path(bodyName, "camera"), step.camera, *state);
    } else if (kind == "remap_zoom_ratio") {
        step.kind = StepKind::RemapZoomRatio;
        CheckFields(body, bodyName, {"sensor", "skip"});
        step.sensor = Text(Required(body, "sensor", bodyName), Path(bodyName, "sensor"));
        Optional(body, bodyName, "skip", &step.skip, &SectionReader::Signed32);
    } else if (kind == "request_caps") {
        step.kind = StepKind::RequestCaps;
        CheckFields(body, bodyName, {"frame", "camera", "caps"});
        step.hasFrame = true;
        step.frame = Unsigned32(Required(body, "frame", bodyName), Path(bodyName, "frame"));
        step.camera = QueryCamera(body, bodyName, 7, *state);
        Optional(body, bodyName, "caps", &step.caps, &SectionReader::Capabilities);
    } else {
        Fail(node, field,
             "unknown step \"" + kind +
                 "\"; expected request, result, repeat, session_caps, caps_mask, streams, "
                 "sensor_mode, tuning_mode, pipeline, sat, warm_start, star_mode_ae, "
                 "remap_zoom_ratio or request_caps");
    }
    return step;
}

}  // namespace UilayerSim
