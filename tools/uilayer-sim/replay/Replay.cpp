#include "replay/Replay.h"

#include <HostKit/CameraTable.h>
#include <HostKit/Capture.h>
#include <HostKit/DeviceRoot.h>
#include <HostKit/Metadata.h>
#include <HostKit/StreamConfig.h>
#include <HostConfigText.h>
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

#include "core/AbortHandler.h"
#include "IuiLayer.h"
#include "replay/SessionFacts.h"
#include "core/Signals.h"
#include "core/TraceRecorder.h"
#include "common/ConfigKeys.h"
#include "common/VendorTags.h"

namespace UilayerSim {

namespace {

using Lumora::_CapsBitset;
using Lumora::IuiLayer;

constexpr uint32_t kCapabilityCount = 100;
constexpr int32_t kFirstRole = 1;
constexpr int32_t kLastRole = 15;
// Physical ids a request keeps caps for.
constexpr uint32_t kRequestCameraCount = 8;

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

struct PreparedStep {
    const Step* step = nullptr;
    std::unique_ptr<HostKit::Request> request;
    std::unique_ptr<HostKit::Result> result;
};

struct PreparedSession {
    const SessionSetup* setup = nullptr;
    HostKit::StreamConfig config;
    std::vector<PreparedStep> steps;
};

// Sets a scenario tag value; throws naming the tag and its line when the
// metadata store refuses it.
void SetTag(HostKit::Metadata* metadata, const TagValue& value) {
    const uint32_t id = value.vendor ? HostKit::VendorTagId(value.tag) : value.tag;
    if (!metadata->TrySet(id, value.Data(), value.Count())) {
        throw std::runtime_error("the metadata store refuses " +
                                 (value.vendor ? "vendor tag " + std::to_string(value.tag)
                                               : StandardTagName(value.tag)) +
                                 " (line " + std::to_string(value.line) + ")");
    }
}

class Replayer {
public:
    Replayer(const Scenario& scenario, const ReplayOptions& options)
        : m_scenario(scenario), m_options(options) {
        if (options.recorder == nullptr) {
            m_ownRecorder = std::make_unique<TraceRecorder>();
        }
        m_recorder = options.recorder != nullptr ? options.recorder : m_ownRecorder.get();
    }
    ~Replayer() {
        // Parsers go before the camera table they point into.
        m_parsers.clear();
        IuiLayer::Init(0, nullptr);
        HostPlatform::TakeCameraLog();
        HostPlatform::TakeAndroidLog();
        // The root goes with m_root; an interrupt from now on has nothing to remove.
        RegisterCleanupPath("");
    }

    ReportNode Run();

private:
    void SetLogging(bool on) const { HostPlatform::SetLogSwitches(on, on, on, on, false); }
    // The camera log since the last call, addresses masked.
    std::vector<std::string> TakeLog() const;
    // Adds the log lines as "log" when logging is on and there are any.
    void AttachLog(ReportNode* node, std::vector<std::string> lines) const;

    std::unique_ptr<HostKit::Request> PrepareRequest(const RequestSetup& setup,
                                                     PreparedSession* session) const;
    std::unique_ptr<HostKit::Result> PrepareResult(const ResultSetup& setup) const;
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
    ReportNode FactsReport(PreparedSession* session) const;
    std::vector<uint32_t> PhysicalIds(const SessionSetup& setup) const {
        return PhysicalCameraIds(m_scenario, setup);
    }
    void WriteFiles(const std::vector<std::pair<std::string, std::string>>& files);

    const Scenario& m_scenario;
    const ReplayOptions& m_options;
    std::unique_ptr<HostKit::DeviceRoot> m_root;
    std::unique_ptr<HostKit::CameraTable> m_device;
    std::map<uint32_t, std::shared_ptr<IuiLayer>> m_parsers;
    std::unique_ptr<TraceRecorder> m_ownRecorder;
    TraceRecorder* m_recorder = nullptr;
    std::map<std::string, std::string> m_files;  // device files written so far
    // The configuration's switch of the wireless charging rule, as written.
    std::string m_wirelessSwitch;
};

std::vector<std::string> Replayer::TakeLog() const {
    HostPlatform::TakeAndroidLog();
    return m_recorder->TakeCameraLog();
}

void Replayer::WriteFiles(const std::vector<std::pair<std::string, std::string>>& files) {
    for (const auto& file : files) {
        m_root->WriteFile(file.first, file.second);
        m_files[file.first] = file.second;
    }
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

std::unique_ptr<HostKit::Request> Replayer::PrepareRequest(const RequestSetup& setup,
                                                           PreparedSession* session) const {
    auto request = std::make_unique<HostKit::Request>(setup.frame);
    if (setup.hasSettings) {
        HostKit::Metadata& settings = request->Settings();
        for (const TagValue& tag : setup.settings) {
            SetTag(&settings, tag);
        }
        if (setup.hasSensorModes) {
            request->SensorModes(setup.sensorModes);
        }
        if (setup.hasZoomRatio) {
            request->ZoomRatio(setup.zoomRatio);
        }
    }
    for (size_t index : setup.buffers) {
        request->Buffer(session->config.Stream(index));
    }
    return request;
}

std::unique_ptr<HostKit::Result> Replayer::PrepareResult(const ResultSetup& setup) const {
    auto result = std::make_unique<HostKit::Result>(setup.frame, setup.hasMetadata);
    if (setup.hasMetadata && setup.hasAec) {
        result->AecList(setup.aec);
    }
    if (setup.hasMetadata && setup.hasMlft) {
        result->Mlft(setup.mlft);
    }
    return result;
}

std::unique_ptr<PreparedSession> Replayer::PrepareSession(const SessionSetup& setup) const {
    auto session = std::make_unique<PreparedSession>();
    session->setup = &setup;
    for (const StreamSetup& stream : setup.streams) {
        session->config.Add(stream);
    }
    if (!setup.hasSessionParams) {
        session->config.WithoutSessionParams();
    } else {
        HostKit::Metadata& params = session->config.SessionParams();
        for (const TagValue& tag : setup.params) {
            SetTag(&params, tag);
        }
        if (setup.hasPackage) {
            params.VendorString(Lumora::kTagPackageName, setup.package);
        }
        if (setup.hasActivity) {
            params.VendorString(Lumora::kTagActivityName, setup.activity);
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
    m_root = std::make_unique<HostKit::DeviceRoot>(m_options.siblingRoot, "uilayer-sim");
    RegisterCleanupPath(m_root->Path());
    WriteFiles(m_scenario.files);
    m_root->Activate();
    HostPlatform::ResetProperties();
    for (const auto& property : m_scenario.properties) {
        property_set(property.first.c_str(), property.second.c_str());
    }
    const int refused = HostPlatform::LoadConfiguration(m_scenario.configText.c_str());
    const HostPlatform::ConfigText configText = HostPlatform::ReadConfigText(m_scenario.configText);
    const Lumora::_ConfigKey& wireless = Lumora::Key(Lumora::EConfigKey::SatFallbackWireless);
    if (const HostPlatform::ConfigGroup* group = configText.Find(wireless.group)) {
        const HostPlatform::ConfigKey* key = group->Find(wireless.key);
        m_wirelessSwitch = key != nullptr && !key->values.empty() ? key->values.front() : "";
    }
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
    m_device = std::make_unique<HostKit::CameraTable>(m_scenario.cameras);
    m_device->Init();
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
    WriteFiles(setup.files);
    for (const auto& property : setup.properties) {
        property_set(property.first.c_str(), property.second.c_str());
    }
    std::shared_ptr<IuiLayer>& parser = m_parsers[setup.camera];
    if (!parser) {
        parser = IuiLayer::Get(setup.camera);
    }
    session->config.SetOperationMode(setup.operationMode);

    ReportNode report = ReportNode::Map();
    report.Add("session", ReportNode::Text(setup.name));
    report.Add("camera", ReportNode::Integer(setup.camera));
    ReportNode& configure = report.Add("configure", ReportNode::Map());
    m_recorder->BeginSession(setup.name, setup.camera);
    SetCurrentStep("ParseStaticCapabilities of session \"" + setup.name + "\"");
    configure.Add("ParseStaticCapabilities",
                  ReportNode::Integer(parser->ParseStaticCapabilities(session->config.Get())));
    SetCurrentStep("ParseStreamCapabilities of session \"" + setup.name + "\"");
    configure.Add("ParseStreamCapabilities",
                  ReportNode::Integer(parser->ParseStreamCapabilities(session->config.Get())));
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
        for (size_t i = 0; i < session.config.Streams().size(); ++i) {
            if (session.config.Streams()[i] == info.pStream) {
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

ReportNode Replayer::FactsReport(PreparedSession* session) const {
    if (m_recorder->Sessions().empty()) {
        return ReportNode();
    }
    m_recorder->NoteSession(session->config.Get()->operation_mode, ReadGsiState(),
                            WirelessStateOf(m_files, m_wirelessSwitch));
    return FactsNode(m_recorder->Sessions().back(), session->setup->operationMode);
}

ReportNode Replayer::SessionReport(PreparedSession* session, IuiLayer* parser) {
    const SessionSetup& setup = *session->setup;
    // The report's own questions are asked with the log switches off.
    SetLogging(false);
    ReportNode report = ReportNode::Map();
    report.Add("operation mode", ReportNode::Hex(setup.operationMode));
    const camera3_stream_configuration_t* config = session->config.Get();
    if (config->operation_mode != setup.operationMode) {
        report.Add("rewritten operation mode", ReportNode::Hex(config->operation_mode));
    }
    report.Add("package", TextOrNone(parser->GetPackageName()));
    report.Add("activity", TextOrNone(parser->GetActivityName()));
    report.Add("camera mode", TextOrNone(parser->GetCameraMode()));
    report.Add("pipeline", TextOrNone(parser->GetPipelineName()));
    report.Add("facts", FactsReport(session));
    report.Add("logical caps", SessionCaps(kLogicalCamera, parser));
    const std::vector<uint32_t> physicalIds = PhysicalIds(setup);
    ReportNode& physical = report.Add("physical caps", ReportNode::Map());
    for (uint32_t id : physicalIds) {
        physical.Add("camera " + std::to_string(id), SessionCaps(id, parser));
    }
    physical.WithJson(LabelledList(physical, "camera_id", true, "caps"));

    ReportNode& streams = report.Add("streams", ReportNode::Map());
    for (size_t i = 0; i < config->num_streams; ++i) {
        camera3_stream_t* stream = config->streams[i];
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
    const camera_metadata_t* params = config->session_parameters;
    if (params == nullptr) {
        written.Add("IsGenericCam", NoteOrNull("no session parameters"));
    } else {
        const bool generic =
            find_camera_metadata_ro_entry(params, HostKit::VendorTagId(Lumora::kTagIsGenericCam),
                                          &entry) == 0 &&
            entry.count > 0;
        written.Add("IsGenericCam",
                    generic ? ReportNode::Integer(entry.data.u8[0]) : NoteOrNull("absent"));
        const bool ainr =
            find_camera_metadata_ro_entry(
                params, HostKit::VendorTagId(Lumora::kTagSupportedAINRType), &entry) == 0 &&
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
        const int status = parser->UpdatePerRequestCaps(prepared->request->Get());
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
                   ReportNode::Integer(parser->UpdateResultAppliedCaps(prepared->result->Get())));
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
    camera3_capture_request_t& request = *prepared->request->Get();
    camera3_capture_result_t* result = prepared->result ? prepared->result->Get() : nullptr;
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

std::vector<uint32_t> PhysicalCameraIds(const Scenario& scenario, const SessionSetup& setup) {
    std::vector<uint32_t> ids;
    const CameraSetup* camera = scenario.Camera(setup.camera);
    if (camera != nullptr && camera->hasRecord) {
        for (const PhysicalCameraSetup& physical : camera->physicalCameras) {
            ids.push_back(physical.physicalCamId);
        }
    }
    return ids;
}

ReportNode Replay(const Scenario& scenario, const ReplayOptions& options) {
    Replayer replayer(scenario, options);
    return replayer.Run();
}

}  // namespace UilayerSim
