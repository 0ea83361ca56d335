#include "Replay.h"

#include <HostPlatform.h>
#include <cutils/properties.h>
#include <hardware/camera3.h>

#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Device.h"
#include "DeviceRoot.h"
#include "IuiLayer.h"

namespace UilayerSim {

namespace {

using Lumora::_CapsBitset;
using Lumora::IuiLayer;

constexpr uint32_t kPackageTag = 34;
constexpr uint32_t kActivityTag = 105;
constexpr uint32_t kSensorModeListTag = 49;
constexpr uint32_t kIsGenericCamTag = 72;
constexpr uint32_t kSupportedAinrTypeTag = 212;
constexpr uint32_t kExposureCountListTag = 156;
constexpr uint32_t kMlftParametersTag = 175;
constexpr size_t kMlftBlockSize = 1804;
constexpr size_t kMlftSwitchOffset = 1800;
constexpr size_t kAecRecordCount = 8;
constexpr uint32_t kCapabilityCount = 100;
constexpr int32_t kFirstRole = 1;
constexpr int32_t kLastRole = 15;
// Physical ids a request keeps caps for.
constexpr uint32_t kRequestCameraCount = 8;

// The exposure count record of a result, as the AEC stage writes it.
struct AecRecord {
    int32_t cameraId;
    float aecValue1;
    float aecValue2;
    int32_t expCount;
    uint32_t extra;
};
static_assert(sizeof(AecRecord) == 20, "AEC records are 20 bytes");

// The capability's name; in JSON {"bit": 49, "name": "CapsVideoEIS"}.
ReportNode CapabilityNode(uint32_t bit) {
    ReportNode json = ReportNode::Map();
    json.Add("bit", ReportNode::Integer(bit));
    json.Add("name", ReportNode::Text(CapabilityName(bit)));
    ReportNode node = ReportNode::Text(CapabilityName(bit));
    node.WithJson(json);
    return node;
}

// The JSON shape of answers by capability: a list of {"bit", "name",
// "supported"}.
ReportNode AnswersJson(const std::vector<uint32_t>& bits, const ReportNode& answers) {
    ReportNode list = ReportNode::List();
    for (size_t i = 0; i < bits.size() && i < answers.Entries().size(); ++i) {
        ReportNode& item = list.Push(ReportNode::Map());
        item.Add("bit", ReportNode::Integer(bits[i]));
        item.Add("name", ReportNode::Text(CapabilityName(bits[i])));
        item.Add("supported", answers.Entries()[i].second);
    }
    return list;
}

// A text for the user; null in JSON.
ReportNode NoteOrNull(const char* text) {
    ReportNode node = ReportNode::Text(text);
    node.WithJson(ReportNode());
    return node;
}

// What a query on a frame the library holds no record of answers, for every
// kind of query.
constexpr const char* kNoRecord = "no record for the frame";

ReportNode CameraJson(const CameraSetup& camera) {
    ReportNode node = ReportNode::Map();
    node.Add("camera_id", ReportNode::Integer(camera.frameworkId));
    node.Add("record", ReportNode::Boolean(camera.hasRecord));
    if (!camera.hasRecord) {
        return node;
    }
    node.Add("logical_id", ReportNode::Integer(camera.logicalId));
    node.Add("sensor", ReportNode::Text(camera.sensor));
    ReportNode& physical = node.Add("physical_cameras", ReportNode::List());
    for (const PhysicalCameraSetup& entry : camera.physical) {
        ReportNode& item = physical.Push(ReportNode::Map());
        item.Add("physical_id", ReportNode::Integer(entry.physicalId));
        item.Add("framework_id", ReportNode::Integer(entry.frameworkId));
        item.Add("logical_id", ReportNode::Integer(entry.logicalId));
        item.Add("primary", ReportNode::Boolean(entry.primary));
    }
    return node;
}

ReportNode CapsNode(const _CapsBitset& caps) {
    ReportNode list = ReportNode::InlineList();
    for (uint32_t bit = 0; bit < kCapabilityCount; ++bit) {
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
    ReportNode node = ReportNode::Text(std::to_string(queryType));
    node.WithJson(ReportNode::Integer(queryType));
    return node;
}

// The query's name; in JSON the name of its step ("request_caps").
ReportNode QueryName(const std::string& name) {
    ReportNode node = ReportNode::Text(name);
    node.WithJson(ReportNode::Text(JsonKey(name)));
    return node;
}

ReportNode TextOrNone(const char* text) {
    return text != nullptr ? ReportNode::Text(text) : ReportNode();
}

struct PreparedRequest {
    MetadataBuffer settings;
    std::vector<camera3_stream_buffer_t> buffers;
    camera3_capture_request_t request = {};
};

struct PreparedResult {
    MetadataBuffer metadata;
    camera3_capture_result_t result = {};
};

struct PreparedStep {
    const Step* step = nullptr;
    std::unique_ptr<PreparedRequest> request;
    std::unique_ptr<PreparedResult> result;
};

struct PreparedSession {
    const SessionSetup* setup = nullptr;
    std::deque<camera3_stream_t> streams;
    std::deque<std::string> physicalIds;
    std::vector<camera3_stream_t*> pointers;
    MetadataBuffer params;
    camera3_stream_configuration_t config = {};
    std::vector<PreparedStep> steps;
};

class Replayer {
public:
    Replayer(const Scenario& scenario, const ReplayOptions& options)
        : m_scenario(scenario), m_options(options) {}
    ~Replayer() {
        // Parsers go before the camera table they point into.
        m_parsers.clear();
        IuiLayer::Init(0, nullptr);
        HostPlatform::TakeCameraLog();
        HostPlatform::TakeAndroidLog();
    }

    ReportNode Run();

private:
    void SetLogging(bool on) const { HostPlatform::SetLogSwitches(on, on, on, on, false); }
    // The camera log since the last call, addresses masked.
    std::vector<std::string> TakeLog() const;
    // Adds the log lines as "log" when logging is on and there are any.
    void AttachLog(ReportNode* node, std::vector<std::string> lines) const;

    std::unique_ptr<PreparedRequest> PrepareRequest(const RequestSetup& setup,
                                                    PreparedSession* session) const;
    std::unique_ptr<PreparedResult> PrepareResult(const ResultSetup& setup) const;
    std::unique_ptr<PreparedSession> PrepareSession(const SessionSetup& setup) const;

    ReportNode RunSession(PreparedSession* session);
    ReportNode SessionReport(PreparedSession* session, IuiLayer* parser);
    ReportNode RunStep(PreparedStep* prepared, PreparedSession* session, IuiLayer* parser);
    ReportNode RequestReport(uint32_t frame, const SessionSetup& setup, PreparedSession* session,
                             IuiLayer* parser) const;
    ReportNode RunRepeat(PreparedStep* prepared, IuiLayer* parser);
    ReportNode RunQuery(const Step& step, PreparedSession* session, IuiLayer* parser);

    ReportNode SessionCaps(uint32_t queryType, IuiLayer* parser) const;
    // Whether the library holds the record of request `frame`; asked with the
    // log switches off.
    bool HasRecord(uint32_t frame, IuiLayer* parser) const;
    ReportNode StreamNames(const std::vector<Lumora::_UIStreamInfo>* list,
                           const PreparedSession& session) const;
    ReportNode SatReport(IuiLayer* parser) const;
    ReportNode WarmStartReport(uint32_t physicalId, IuiLayer* parser) const;
    ReportNode StarModeReport(IuiLayer* parser) const;
    std::vector<uint32_t> PhysicalIds(const SessionSetup& setup) const;

    const Scenario& m_scenario;
    const ReplayOptions& m_options;
    std::unique_ptr<DeviceRoot> m_root;
    std::unique_ptr<SimDevice> m_device;
    std::map<uint32_t, std::shared_ptr<IuiLayer>> m_parsers;
};

std::vector<std::string> Replayer::TakeLog() const {
    std::vector<std::string> lines = HostPlatform::TakeCameraLog();
    HostPlatform::TakeAndroidLog();
    for (std::string& line : lines) {
        line = MaskAddresses(line);
    }
    return lines;
}

void Replayer::AttachLog(ReportNode* node, std::vector<std::string> lines) const {
    if (!m_options.log || lines.empty()) {
        return;
    }
    ReportNode& log = node->Add("log", ReportNode::List());
    for (std::string& line : lines) {
        log.Push(ReportNode::Text(std::move(line)));
    }
}

std::vector<uint32_t> Replayer::PhysicalIds(const SessionSetup& setup) const {
    std::vector<uint32_t> ids;
    const CameraSetup* camera = m_scenario.Camera(setup.camera);
    if (camera != nullptr && camera->hasRecord) {
        for (const PhysicalCameraSetup& physical : camera->physical) {
            ids.push_back(physical.physicalId);
        }
    }
    return ids;
}

std::unique_ptr<PreparedRequest> Replayer::PrepareRequest(const RequestSetup& setup,
                                                          PreparedSession* session) const {
    auto prepared = std::make_unique<PreparedRequest>();
    if (setup.hasSettings) {
        prepared->settings =
            MetadataBuffer::WithTags(setup.settings, 2, 64 + setup.sensorModes.size() * 4);
        if (setup.hasSensorModes) {
            prepared->settings.Add(VendorTag(kSensorModeListTag), setup.sensorModes.data(),
                                   setup.sensorModes.size(), "the sensor mode list");
        }
        if (setup.hasZoomRatio) {
            prepared->settings.Add(ANDROID_CONTROL_ZOOM_RATIO, &setup.zoomRatio, 1,
                                   "the zoom ratio");
        }
    }
    for (size_t index : setup.buffers) {
        camera3_stream_buffer_t buffer = {};
        buffer.stream = session->pointers[index];
        prepared->buffers.push_back(buffer);
    }
    prepared->request.frame_number = setup.frame;
    prepared->request.settings = prepared->settings.Get();
    prepared->request.num_output_buffers = static_cast<uint32_t>(prepared->buffers.size());
    prepared->request.output_buffers =
        prepared->buffers.empty() ? nullptr : prepared->buffers.data();
    return prepared;
}

std::unique_ptr<PreparedResult> Replayer::PrepareResult(const ResultSetup& setup) const {
    auto prepared = std::make_unique<PreparedResult>();
    if (setup.hasMetadata) {
        prepared->metadata = MetadataBuffer(4, 2 * kMlftBlockSize + 512);
        if (setup.hasAec) {
            // The list always holds eight records; unused ones belong to no camera.
            std::vector<AecRecord> records(kAecRecordCount, AecRecord{-1, 0.0f, 0.0f, 0, 0});
            for (size_t i = 0; i < setup.aec.size(); ++i) {
                const AecSetup& aec = setup.aec[i];
                records[i] = AecRecord{aec.camera, aec.value1, aec.value2, aec.expCount, aec.extra};
            }
            prepared->metadata.Add(VendorTag(kExposureCountListTag), records.data(),
                                   records.size() * sizeof(AecRecord), "the exposure count list");
        }
        if (setup.hasMlft) {
            std::vector<uint8_t> block(kMlftBlockSize, 0);
            memcpy(block.data() + kMlftSwitchOffset, &setup.mlft, sizeof(setup.mlft));
            prepared->metadata.Add(VendorTag(kMlftParametersTag), block.data(), block.size(),
                                   "the MLFT parameter block");
        }
    }
    prepared->result.frame_number = setup.frame;
    prepared->result.result = prepared->metadata.Get();
    return prepared;
}

std::unique_ptr<PreparedSession> Replayer::PrepareSession(const SessionSetup& setup) const {
    auto session = std::make_unique<PreparedSession>();
    session->setup = &setup;
    for (const StreamSetup& streamSetup : setup.streams) {
        camera3_stream_t stream = {};
        stream.stream_type = streamSetup.streamType;
        stream.width = streamSetup.width;
        stream.height = streamSetup.height;
        stream.format = streamSetup.format;
        stream.usage = streamSetup.usage;
        stream.data_space = static_cast<android_dataspace_t>(streamSetup.dataSpace);
        session->physicalIds.push_back(streamSetup.physicalId);
        stream.physical_camera_id =
            streamSetup.hasPhysicalId ? session->physicalIds.back().c_str() : nullptr;
        stream.stream_use_case = streamSetup.useCase;
        stream.ext_stream_mode = streamSetup.extMode;
        stream.dynamic_range_profile = streamSetup.dynamicRangeProfile;
        session->streams.push_back(stream);
        session->pointers.push_back(&session->streams.back());
    }
    if (setup.hasSessionParams) {
        // Room for the client names and for the two tags the library writes.
        session->params = MetadataBuffer::WithTags(
            setup.params, 4, setup.package.size() + setup.activity.size() + 256);
        if (setup.hasPackage) {
            session->params.Add(VendorTag(kPackageTag), setup.package.data(), setup.package.size(),
                                "the package name");
        }
        if (setup.hasActivity) {
            session->params.Add(VendorTag(kActivityTag), setup.activity.data(),
                                setup.activity.size(), "the activity name");
        }
    }
    for (const Step& step : setup.steps) {
        PreparedStep prepared;
        prepared.step = &step;
        if (step.kind == StepKind::Request || step.kind == StepKind::Repeat) {
            prepared.request = PrepareRequest(step.request, session.get());
        }
        if (step.kind == StepKind::Result || (step.kind == StepKind::Repeat && step.repeatResult)) {
            prepared.result = PrepareResult(step.result);
        }
        session->steps.push_back(std::move(prepared));
    }
    return session;
}

ReportNode Replayer::Run() {
    m_root = std::make_unique<DeviceRoot>(m_options.siblingRoot);
    for (const auto& file : m_scenario.files) {
        m_root->WriteFile(file.first, file.second);
    }
    m_root->Activate();
    HostPlatform::ResetProperties();
    for (const auto& property : m_scenario.properties) {
        property_set(property.first.c_str(), property.second.c_str());
    }
    const int refused = HostPlatform::LoadConfiguration(m_scenario.configText.c_str());
    if (refused != 0) {
        throw std::runtime_error("the configuration store refuses line " + std::to_string(refused) +
                                 " of " + m_scenario.configName);
    }
    SetLogging(m_options.log);
    HostPlatform::TakeCameraLog();
    HostPlatform::TakeAndroidLog();

    ReportNode report = ReportNode::Map();
    report.Add("scenario", ReportNode::Text(m_scenario.name));
    report.Add("configuration", ReportNode::Text(m_scenario.configName));

    SetCurrentStep("IuiLayer::Init");
    m_device = std::make_unique<SimDevice>(m_scenario.cameras);
    ReportNode& device = report.Add("device", ReportNode::Map());
    ReportNode& cameras = device.Add("cameras", ReportNode::List());
    for (const CameraSetup& camera : m_scenario.cameras) {
        ReportNode& node = cameras.Push(ReportNode::Map());
        node.WithJson(CameraJson(camera));
        node.Add("camera", ReportNode::Integer(camera.frameworkId));
        if (!camera.hasRecord) {
            node.Add("record", ReportNode::Text("none"));
            continue;
        }
        node.Add("logical id", ReportNode::Integer(camera.logicalId));
        node.Add("sensor", ReportNode::Text(camera.sensor));
        ReportNode& physical = node.Add("physical cameras", ReportNode::InlineList());
        for (const PhysicalCameraSetup& entry : camera.physical) {
            physical.Push(ReportNode::Text(std::to_string(entry.physicalId) + " (framework " +
                                           std::to_string(entry.frameworkId) + ", logical " +
                                           std::to_string(entry.logicalId) +
                                           (entry.primary ? ", primary)" : ")")));
        }
    }
    AttachLog(&device, TakeLog());

    // Everything is prepared before the first session reaches the library.
    std::vector<std::unique_ptr<PreparedSession>> sessions;
    for (const SessionSetup& setup : m_scenario.sessions) {
        sessions.push_back(PrepareSession(setup));
    }
    ReportNode& sessionList = report.Add("sessions", ReportNode::List());
    for (auto& session : sessions) {
        sessionList.Push(RunSession(session.get()));
    }
    return report;
}

ReportNode Replayer::RunSession(PreparedSession* session) {
    const SessionSetup& setup = *session->setup;
    for (const auto& file : setup.files) {
        m_root->WriteFile(file.first, file.second);
    }
    for (const auto& property : setup.properties) {
        property_set(property.first.c_str(), property.second.c_str());
    }
    std::shared_ptr<IuiLayer>& parser = m_parsers[setup.camera];
    if (!parser) {
        parser = IuiLayer::Get(setup.camera);
    }
    session->config.num_streams = static_cast<uint32_t>(session->pointers.size());
    session->config.streams = session->pointers.data();
    session->config.operation_mode = setup.operationMode;
    session->config.session_parameters = session->params.Get();

    ReportNode report = ReportNode::Map();
    report.Add("session", ReportNode::Text(setup.name));
    report.Add("camera", ReportNode::Integer(setup.camera));
    ReportNode& configure = report.Add("configure", ReportNode::Map());
    SetCurrentStep("ParseStaticCapabilities of session \"" + setup.name + "\"");
    configure.Add("ParseStaticCapabilities",
                  ReportNode::Integer(parser->ParseStaticCapabilities(&session->config)));
    SetCurrentStep("ParseStreamCapabilities of session \"" + setup.name + "\"");
    configure.Add("ParseStreamCapabilities",
                  ReportNode::Integer(parser->ParseStreamCapabilities(&session->config)));
    AttachLog(&configure, TakeLog());

    ReportNode details = SessionReport(session, parser.get());
    for (const auto& entry : details.Entries()) {
        report.Add(entry.first, entry.second);
    }
    ReportNode& steps = report.Add("steps", ReportNode::List());
    for (PreparedStep& step : session->steps) {
        steps.Push(RunStep(&step, session, parser.get()));
    }
    return report;
}

bool Replayer::HasRecord(uint32_t frame, IuiLayer* parser) const {
    SetLogging(false);
    // Every role has a list, maybe empty, in a record the library holds.
    const bool held = parser->GetStreamByStreamType(
                          frame, static_cast<Lumora::StreamType>(kFirstRole)) != nullptr;
    SetLogging(m_options.log);
    return held;
}

ReportNode Replayer::SessionCaps(uint32_t queryType, IuiLayer* parser) const {
    _CapsBitset caps;
    for (uint32_t bit = 0; bit < kCapabilityCount; ++bit) {
        if (parser->IsSessionSupportCaps(static_cast<Lumora::DesiredSupportCaps>(bit),
                                         static_cast<Lumora::QueryCapsType>(queryType))) {
            caps.set(bit);
        }
    }
    return CapsNode(caps);
}

ReportNode Replayer::StreamNames(const std::vector<Lumora::_UIStreamInfo>* list,
                                 const PreparedSession& session) const {
    ReportNode names = ReportNode::InlineList();
    if (list == nullptr) {
        return names;
    }
    for (const Lumora::_UIStreamInfo& info : *list) {
        std::string name = "?";
        for (size_t i = 0; i < session.pointers.size(); ++i) {
            if (session.pointers[i] == info.pStream) {
                name = session.setup->streams[i].name;
            }
        }
        names.Push(ReportNode::Text(name));
    }
    return names;
}

ReportNode Replayer::SatReport(IuiLayer* parser) const {
    ReportNode node = ReportNode::Map();
    const Lumora::_SatStaticCaps* sat = parser->GetSatStaticCaps();
    if (sat == nullptr) {
        return ReportNode();
    }
    node.Add("fallbackUsecase", ReportNode::Integer(sat->fallbackUsecase));
    node.Add("fallbackDebug", ReportNode::Integer(sat->fallbackDebug));
    node.Add("isTripartiteFallbackWhitelist",
             ReportNode::Integer(sat->isTripartiteFallbackWhitelist));
    node.Add("forceFallback", ReportNode::Integer(sat->forceFallback));
    node.Add("supportZoomDivision", ReportNode::Integer(sat->supportZoomDivision));
    node.Add("supportBokehIzoomSeamless", ReportNode::Integer(sat->supportBokehIzoomSeamless));
    node.Add("enableSmoothZoom", ReportNode::Integer(sat->enableSmoothZoom));
    node.Add("isBokehMode", ReportNode::Integer(sat->isBokehMode));
    node.Add("videoMaxRtCount", ReportNode::Integer(sat->videoMaxRtCount));
    node.Add("useAIDLInput", ReportNode::Integer(sat->useAIDLInput));
    node.Add("zoomDivisionCurveCfgPrefix", ReportNode::Text(sat->zoomDivisionCurveCfgPrefix));
    node.Add("isEnableSkipMiddleSensor", ReportNode::Integer(sat->isEnableSkipMiddleSensor));
    node.Add("is3rdCamZoomDivisionApp", ReportNode::Integer(sat->is3rdCamZoomDivisionApp));
    node.Add("useVideoStrategy", ReportNode::Integer(sat->useVideoStrategy));
    return node;
}

ReportNode Replayer::WarmStartReport(uint32_t physicalId, IuiLayer* parser) const {
    // The library leaves both outputs alone for a camera it does not know.
    constexpr unsigned int kUntouchedEnable = 0xFFFFFFFFu;
    constexpr int kUntouchedState = INT32_MIN;
    unsigned int enable = kUntouchedEnable;
    int dolState = kUntouchedState;
    ReportNode node = ReportNode::Map();
    node.Add("return code",
             ReportNode::Integer(parser->GetWarmStartStateByCaps(physicalId, enable, dolState)));
    node.Add("enable",
             enable == kUntouchedEnable ? NoteOrNull("(not set)") : ReportNode::Integer(enable));
    node.Add("dol state",
             dolState == kUntouchedState ? NoteOrNull("(not set)") : ReportNode::Integer(dolState));
    return node;
}

ReportNode Replayer::StarModeReport(IuiLayer* parser) const {
    const Lumora::StarModeAEInfo* info = parser->GetStarModeAEInfo();
    if (info == nullptr) {
        return ReportNode();
    }
    ReportNode node = ReportNode::Map();
    node.Add("aeMode", ReportNode::Integer(info->aeMode));
    node.Add("sensitivity", ReportNode::Integer(info->sensitivity));
    node.Add("expTime", ReportNode::Integer(info->expTime));
    return node;
}

ReportNode Replayer::SessionReport(PreparedSession* session, IuiLayer* parser) {
    const SessionSetup& setup = *session->setup;
    // The report's own questions are asked with the log switches off.
    SetLogging(false);
    ReportNode report = ReportNode::Map();
    report.Add("operation mode", ReportNode::Hex(setup.operationMode));
    if (session->config.operation_mode != setup.operationMode) {
        report.Add("rewritten operation mode", ReportNode::Hex(session->config.operation_mode));
    }
    report.Add("package", TextOrNone(parser->GetPackageName()));
    report.Add("activity", TextOrNone(parser->GetActivityName()));
    report.Add("camera mode", TextOrNone(parser->GetCameraMode()));
    report.Add("pipeline", TextOrNone(parser->GetPipelineName()));
    report.Add("logical caps", SessionCaps(kLogicalCamera, parser));
    const std::vector<uint32_t> physicalIds = PhysicalIds(setup);
    ReportNode& physical = report.Add("physical caps", ReportNode::Map());
    for (uint32_t id : physicalIds) {
        physical.Add("camera " + std::to_string(id), SessionCaps(id, parser));
    }
    physical.WithJson(LabelledList(physical, "camera_id", true, "caps"));

    ReportNode& streams = report.Add("streams", ReportNode::Map());
    for (size_t i = 0; i < session->pointers.size(); ++i) {
        camera3_stream_t* stream = session->pointers[i];
        ReportNode& node = streams.Add(setup.streams[i].name, ReportNode::Map());
        node.Add("role", ReportNode::Text(StreamRoleName(parser->GetStreamTypeByStream(stream))));
        node.Add("camera index", ReportNode::Integer(parser->GetCameraIndexByStream(stream)));
        if (stream->ext_stream_flags != 0) {
            node.Add("ext_stream_flags", ReportNode::Integer(stream->ext_stream_flags));
        }
    }
    streams.WithJson(LabelledList(streams, "name", false, "role"));
    ReportNode& roles = report.Add("roles", ReportNode::Map());
    for (int32_t role = kFirstRole; role <= kLastRole; ++role) {
        const auto* list = parser->GetStreamByStreamType(static_cast<Lumora::StreamType>(role));
        if (list != nullptr && !list->empty()) {
            roles.Add(StreamRoleName(role), StreamNames(list, *session));
        }
    }
    roles.WithJson(LabelledList(roles, "role", false, "streams"));

    ReportNode& written = report.Add("session parameters written", ReportNode::Map());
    camera_metadata_ro_entry_t entry = {};
    const camera_metadata_t* params = session->config.session_parameters;
    if (params == nullptr) {
        written.Add("IsGenericCam", NoteOrNull("no session parameters"));
    } else {
        const bool generic =
            find_camera_metadata_ro_entry(params, VendorTag(kIsGenericCamTag), &entry) == 0 &&
            entry.count > 0;
        written.Add("IsGenericCam",
                    generic ? ReportNode::Integer(entry.data.u8[0]) : NoteOrNull("absent"));
        const bool ainr =
            find_camera_metadata_ro_entry(params, VendorTag(kSupportedAinrTypeTag), &entry) == 0 &&
            entry.count > 0;
        written.Add("SupportedAINRType",
                    ainr ? ReportNode::Integer(entry.data.i32[0]) : NoteOrNull("absent"));
    }

    report.Add("SAT", SatReport(parser));
    ReportNode& warmStart = report.Add("warm start", ReportNode::Map());
    for (uint32_t id : physicalIds) {
        ReportNode state = WarmStartReport(id, parser);
        ReportNode compact = ReportNode::Map();
        compact.Add("enable", *state.Find("enable"));
        compact.Add("dol state", *state.Find("dol state"));
        warmStart.Add("camera " + std::to_string(id), compact);
    }
    warmStart.WithJson(LabelledList(warmStart, "camera_id", true, "state"));
    const Lumora::_SensorDimension* dimensions = parser->GetSensorDimension();
    ReportNode& sizes = report.Add("sensor dimensions", ReportNode::Map());
    ReportNode sizeRows = ReportNode::List();
    for (size_t i = 0; dimensions != nullptr && i < physicalIds.size(); ++i) {
        sizes.Add("row " + std::to_string(i),
                  ReportNode::Text("camera " + std::to_string(dimensions[i].physicalCamId) + ", " +
                                   std::to_string(dimensions[i].width) + "x" +
                                   std::to_string(dimensions[i].height)));
        ReportNode& row = sizeRows.Push(ReportNode::Map());
        row.Add("row", ReportNode::Integer(static_cast<int64_t>(i)));
        row.Add("camera_id", ReportNode::Integer(dimensions[i].physicalCamId));
        row.Add("width", ReportNode::Integer(dimensions[i].width));
        row.Add("height", ReportNode::Integer(dimensions[i].height));
    }
    sizes.WithJson(sizeRows);
    report.Add("star mode AE", StarModeReport(parser));
    report.Add("video stabilization mode", ReportNode::Integer(parser->GetVideoStabMode()));
    report.Add("disable AE precapture",
               ReportNode::Boolean(parser->IsDisableAePrecaptureTriggerForSnapshot()));
    SetLogging(m_options.log);
    return report;
}

ReportNode Replayer::RequestReport(uint32_t frame, const SessionSetup& setup,
                                   PreparedSession* session, IuiLayer* parser) const {
    ReportNode report = ReportNode::Map();
    report.Add("primary caps", CapsNode(parser->GetRequestSupportCaps(
                                   frame, static_cast<Lumora::QueryCapsType>(kLogicalCamera))));
    ReportNode& cameras = report.Add("camera caps", ReportNode::Map());
    for (uint32_t id : PhysicalIds(setup)) {
        if (id < kRequestCameraCount) {
            cameras.Add("camera " + std::to_string(id),
                        CapsNode(parser->GetRequestSupportCaps(
                            frame, static_cast<Lumora::QueryCapsType>(id))));
        }
    }
    cameras.WithJson(LabelledList(cameras, "camera_id", true, "caps"));
    ReportNode& streams = report.Add("streams", ReportNode::Map());
    for (int32_t role = kFirstRole; role <= kLastRole; ++role) {
        const auto* list =
            parser->GetStreamByStreamType(frame, static_cast<Lumora::StreamType>(role));
        if (list != nullptr && !list->empty()) {
            streams.Add(StreamRoleName(role), StreamNames(list, *session));
        }
    }
    streams.WithJson(LabelledList(streams, "role", false, "streams"));
    return report;
}

ReportNode Replayer::RunStep(PreparedStep* prepared, PreparedSession* session, IuiLayer* parser) {
    const Step& step = *prepared->step;
    const SessionSetup& setup = *session->setup;
    SetCurrentStep("the step on line " + std::to_string(step.line) + " of " + m_scenario.name);
    ReportNode report = ReportNode::Map();
    if (step.kind == StepKind::Request) {
        const uint32_t frame = step.request.frame;
        report.Add("request", ReportNode::Integer(frame));
        const int status = parser->UpdatePerRequestCaps(&prepared->request->request);
        std::vector<std::string> log = TakeLog();
        report.Add("return code", ReportNode::Integer(status));
        SetLogging(false);
        ReportNode details = RequestReport(frame, setup, session, parser);
        SetLogging(m_options.log);
        for (const auto& entry : details.Entries()) {
            report.Add(entry.first, entry.second);
        }
        AttachLog(&report, std::move(log));
        return report;
    }
    if (step.kind == StepKind::Result) {
        report.Add("result", ReportNode::Integer(step.result.frame));
        report.Add("return code",
                   ReportNode::Integer(parser->UpdateResultAppliedCaps(&prepared->result->result)));
        report.Add("aec records",
                   ReportNode::Integer(static_cast<int64_t>(step.result.aec.size())));
        if (step.result.hasMlft) {
            report.Add("mlft", ReportNode::Integer(step.result.mlft));
        }
        AttachLog(&report, TakeLog());
        return report;
    }
    if (step.kind == StepKind::Repeat) {
        return RunRepeat(prepared, parser);
    }
    return RunQuery(step, session, parser);
}

ReportNode Replayer::RunRepeat(PreparedStep* prepared, IuiLayer* parser) {
    const Step& step = *prepared->step;
    camera3_capture_request_t& request = prepared->request->request;
    camera3_capture_result_t* result = prepared->result ? &prepared->result->result : nullptr;
    std::map<int, uint32_t> statuses;
    std::vector<std::pair<_CapsBitset, uint32_t>> variants;
    std::vector<std::string> firstLog;
    size_t laterLogLines = 0;
    const auto logical = static_cast<Lumora::QueryCapsType>(kLogicalCamera);
    for (uint32_t i = 0; i < step.count; ++i) {
        const uint32_t frame = step.request.frame + i;
        request.frame_number = frame;
        ++statuses[parser->UpdatePerRequestCaps(&request)];
        const _CapsBitset caps = parser->GetRequestSupportCaps(frame, logical);
        bool known = false;
        for (auto& variant : variants) {
            if (variant.first == caps) {
                ++variant.second;
                known = true;
                break;
            }
        }
        if (!known) {
            variants.emplace_back(caps, 1);
        }
        if (result != nullptr) {
            result->frame_number = frame;
            parser->UpdateResultAppliedCaps(result);
        }
        if (m_options.log) {
            std::vector<std::string> lines = TakeLog();
            if (i == 0) {
                firstLog = std::move(lines);
            } else {
                laterLogLines += lines.size();
            }
        }
    }
    ReportNode report = ReportNode::Map();
    report.Add("repeat", ReportNode::Integer(step.count));
    ReportNode& frames =
        report.Add("frames", ReportNode::Text(std::to_string(step.request.frame) + ".." +
                                              std::to_string(step.request.frame + step.count - 1)));
    ReportNode range = ReportNode::Map();
    range.Add("first", ReportNode::Integer(step.request.frame));
    range.Add("last", ReportNode::Integer(int64_t{step.request.frame} + step.count - 1));
    frames.WithJson(range);
    if (result != nullptr) {
        report.Add("results", ReportNode::Integer(step.count));
    }
    ReportNode& codes = report.Add("return codes", ReportNode::Map());
    for (const auto& status : statuses) {
        codes.Add(std::to_string(status.first), ReportNode::Integer(status.second));
    }
    codes.WithJson(LabelledList(codes, "return_code", true, "requests"));
    ReportNode& primary = report.Add("primary caps", ReportNode::List());
    for (const auto& variant : variants) {
        ReportNode& node = primary.Push(ReportNode::Map());
        node.Add("requests", ReportNode::Integer(variant.second));
        node.Add("caps", CapsNode(variant.first));
    }
    if (m_options.log && laterLogLines > 0) {
        firstLog.push_back("(" + std::to_string(laterLogLines) +
                           " log lines of the later requests not shown)");
    }
    AttachLog(&report, std::move(firstLog));
    return report;
}

ReportNode Replayer::RunQuery(const Step& step, PreparedSession* session, IuiLayer* parser) {
    ReportNode report = ReportNode::Map();
    const auto queryType = static_cast<Lumora::QueryCapsType>(step.camera);
    switch (step.kind) {
        case StepKind::SessionCaps: {
            report.Add("query", QueryName("session caps"));
            report.Add("camera", CameraLabel(step.camera));
            ReportNode& answers = report.Add("answers", ReportNode::Map());
            for (uint32_t bit : step.caps) {
                answers.Add(CapabilityName(bit),
                            ReportNode::Boolean(parser->IsSessionSupportCaps(
                                static_cast<Lumora::DesiredSupportCaps>(bit), queryType)));
            }
            answers.WithJson(AnswersJson(step.caps, answers));
            break;
        }
        case StepKind::CapsMask: {
            report.Add("query", QueryName("caps mask"));
            report.Add("camera", CameraLabel(step.camera));
            _CapsBitset mask;
            report.Add("return code",
                       ReportNode::Integer(parser->GetStaticCapsMask(queryType, mask)));
            report.Add("caps", CapsNode(mask));
            break;
        }
        case StepKind::Streams: {
            report.Add("query", QueryName("streams"));
            report.Add("role", ReportNode::Text(StreamRoleName(step.role)));
            const auto role = static_cast<Lumora::StreamType>(step.role);
            if (step.hasFrame) {
                report.Add("frame", ReportNode::Integer(step.frame));
                const auto* list = parser->GetStreamByStreamType(step.frame, role);
                report.Add("streams", list != nullptr ? StreamNames(list, *session)
                                                      : ReportNode::Text(kNoRecord));
            } else {
                report.Add("streams", StreamNames(parser->GetStreamByStreamType(role), *session));
            }
            break;
        }
        case StepKind::SensorMode: {
            report.Add("query", QueryName("sensor mode"));
            report.Add("camera", CameraLabel(step.camera));
            _CapsBitset caps;
            if (step.capsSource == CapsSource::List) {
                for (uint32_t bit : step.caps) {
                    caps.set(bit);
                }
            } else if (step.capsSource == CapsSource::Request) {
                report.Add("from request", ReportNode::Integer(step.frame));
                caps = parser->GetRequestSupportCaps(step.frame, queryType);
            } else {
                report.Add("from session", ReportNode::Boolean(true));
                parser->GetStaticCapsMask(queryType, caps);
            }
            const bool noRecord =
                step.capsSource == CapsSource::Request && !HasRecord(step.frame, parser);
            report.Add("caps", noRecord ? ReportNode::Text(kNoRecord) : CapsNode(caps));
            signed char index = -1;
            report.Add("return code", ReportNode::Integer(parser->GetSensorModeIndexByCaps(
                                          caps, queryType, index)));
            report.Add("index", ReportNode::Integer(index));
            break;
        }
        case StepKind::TuningMode: {
            report.Add("query", QueryName("tuning mode"));
            report.Add("frame", ReportNode::Integer(step.frame));
            report.Add("table", ReportNode::Integer(step.tuningType));
            const unsigned int mode = parser->GetOriginalRequestTuningMode(
                step.frame, static_cast<Lumora::QueryTuningType>(step.tuningType));
            report.Add("tuning mode", HasRecord(step.frame, parser)
                                          ? ReportNode::Integer(static_cast<int32_t>(mode))
                                          : ReportNode::Text(kNoRecord));
            break;
        }
        case StepKind::Pipeline:
            report.Add("query", QueryName("pipeline"));
            report.Add("pipeline", TextOrNone(parser->GetPipelineName()));
            break;
        case StepKind::Sat:
            report.Add("query", QueryName("SAT"));
            report.Add("SAT", SatReport(parser));
            break;
        case StepKind::WarmStart: {
            report.Add("query", QueryName("warm start"));
            report.Add("camera", ReportNode::Integer(step.camera));
            ReportNode state = WarmStartReport(step.camera, parser);
            for (const auto& entry : state.Entries()) {
                report.Add(entry.first, entry.second);
            }
            break;
        }
        case StepKind::StarModeAe:
            report.Add("query", QueryName("star mode AE"));
            report.Add("star mode AE", StarModeReport(parser));
            break;
        case StepKind::RemapZoomRatio: {
            report.Add("query", QueryName("remap zoom ratio"));
            report.Add("sensor", ReportNode::Text(step.sensor));
            std::vector<char> name(step.sensor.begin(), step.sensor.end());
            name.push_back('\0');
            report.Add("base zoom ratio",
                       ReportNode::Real(parser->ProcessRemapZoomRatio(name.data(), step.skip)));
            break;
        }
        case StepKind::RequestCaps: {
            report.Add("query", QueryName("request caps"));
            report.Add("frame", ReportNode::Integer(step.frame));
            report.Add("camera", CameraLabel(step.camera));
            const _CapsBitset caps = parser->GetRequestSupportCaps(step.frame, queryType);
            report.Add("caps", HasRecord(step.frame, parser) ? CapsNode(caps)
                                                             : ReportNode::Text(kNoRecord));
            if (!step.caps.empty()) {
                ReportNode& answers = report.Add("answers", ReportNode::Map());
                for (uint32_t bit : step.caps) {
                    answers.Add(
                        CapabilityName(bit),
                        ReportNode::Boolean(parser->IsRequestSupportCaps(
                            step.frame, static_cast<Lumora::DesiredSupportCaps>(bit), queryType)));
                }
                answers.WithJson(AnswersJson(step.caps, answers));
            }
            break;
        }
        default:
            break;
    }
    AttachLog(&report, TakeLog());
    return report;
}

}  // namespace

std::string MaskAddresses(const std::string& line) {
    std::string out;
    size_t i = 0;
    while (i < line.size()) {
        if (line.compare(i, 2, "0x") == 0) {
            size_t end = i + 2;
            while (end < line.size() && ((line[end] >= '0' && line[end] <= '9') ||
                                         (line[end] >= 'a' && line[end] <= 'f'))) {
                ++end;
            }
            if (end - i - 2 >= 9) {
                out += "<addr>";
                i = end;
                continue;
            }
        }
        out += line[i];
        ++i;
    }
    return out;
}

ReportNode Replay(const Scenario& scenario, const ReplayOptions& options) {
    Replayer replayer(scenario, options);
    return replayer.Run();
}

}  // namespace UilayerSim
