// Runs the configuration of a replayed session and records what the library
// decided for it: caps, stream roles, pipeline, multi-camera zoom record,
// warm start, session facts.
#include <HostKit/Metadata.h>
#include <cutils/properties.h>
#include <hardware/camera3.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "common/VendorTags.h"
#include "core/AbortHandler.h"
#include "core/TraceRecorder.h"
#include "replay/Replayer.h"
#include "replay/SessionFacts.h"

namespace UilayerSim {

namespace {

// The value of a vendor tag of the session parameters; unset when absent.
template <typename T>
std::optional<int> ParamOf(const camera_metadata_t* params, uint32_t index, T value) {
    camera_metadata_ro_entry_t entry = {};
    if (find_camera_metadata_ro_entry(params, HostKit::VendorTagId(index), &entry) == 0 &&
        entry.count > 0) {
        return value(entry);
    }
    return std::nullopt;
}

template <typename T>
std::optional<T> CopyOf(const T* value) {
    return value != nullptr ? std::optional<T>(*value) : std::nullopt;
}

std::optional<std::string> TextOf(const char* text) {
    return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

}  // namespace

_SessionRecord Replayer::RunSession(PreparedSession* session) {
    const SessionSetup& setup = *session->setup;
    WriteFiles(setup.files);
    for (const auto& property : setup.properties) {
        property_set(property.first.c_str(), property.second.c_str());
    }
    std::shared_ptr<Lumora::IuiLayer>& parser = m_parsers[setup.camera];
    if (!parser) {
        parser = Lumora::IuiLayer::Get(setup.camera);
    }
    session->config.SetOperationMode(setup.operationMode);

    _SessionRecord record;
    record.name = setup.name;
    record.camera = setup.camera;
    m_recorder->BeginSession(setup.name, setup.camera);
    SetLogging(m_options.log);
    std::string step;
    const bool configured = RunUnlessAborted([&] {
        step = "ParseStaticCapabilities of session \"" + setup.name + "\"";
        SetCurrentStep(step);
        record.staticCode = parser->ParseStaticCapabilities(session->config.Get());
        step = "ParseStreamCapabilities of session \"" + setup.name + "\"";
        SetCurrentStep(step);
        record.streamCode = parser->ParseStreamCapabilities(session->config.Get());
    });
    record.configureLog = TakeLog();
    if (!configured) {
        // The other sessions go on, as in a camera provider started again.
        record.aborted = step;
        m_parsers.erase(setup.camera);
        return record;
    }

    RecordSession(session, parser.get(), &record);
    for (PreparedStep& step : session->steps) {
        const Step& planned = *step.step;
        m_progress.Note(
            m_sessionIndex, m_scenario.sessions.size(),
            planned.kind == StepKind::Result ? planned.result.frame : planned.request.frame);
        record.steps.push_back(RunStep(&step, session, parser.get()));
    }
    return record;
}

void Replayer::RecordSession(PreparedSession* session, Lumora::IuiLayer* parser,
                             _SessionRecord* record) const {
    const SessionSetup& setup = *session->setup;
    // The report's own questions are asked with the log switches off.
    SetLogging(false);
    const camera3_stream_configuration_t* config = session->config.Get();
    record->operationMode = setup.operationMode;
    record->configuredOperationMode = config->operation_mode;
    record->package = TextOf(parser->GetPackageName());
    record->activity = TextOf(parser->GetActivityName());
    record->cameraMode = TextOf(parser->GetCameraMode());
    record->pipeline = TextOf(parser->GetPipelineName());
    if (!m_recorder->Sessions().empty()) {
        m_recorder->NoteSession(config->operation_mode, ReadGsiState(),
                                WirelessStateOf(m_files, m_wirelessSwitch));
        record->facts = std::make_shared<_RecordedSession>(m_recorder->Sessions().back());
    }
    const std::vector<uint32_t> physicalIds = PhysicalCameraIds(m_scenario, setup);
    const auto sessionCaps = [parser](uint32_t queryType) {
        Lumora::_CapsBitset caps;
        for (uint32_t bit = 0; bit < Lumora::_CapsBitset::kBitCount; ++bit) {
            if (parser->IsSessionSupportCaps(static_cast<Lumora::DesiredSupportCaps>(bit),
                                             static_cast<Lumora::QueryCapsType>(queryType))) {
                caps.set(bit);
            }
        }
        return caps;
    };
    record->logicalCaps = sessionCaps(kLogicalCamera);
    for (uint32_t id : physicalIds) {
        record->physicalCaps.emplace_back(id, sessionCaps(id));
    }

    record->roles = Roles(nullptr, *session, parser);
    for (size_t i = 0; i < config->num_streams; ++i) {
        camera3_stream_t* stream = config->streams[i];
        const std::string& name = setup.streams[i].name;
        const bool listed =
            std::any_of(record->roles.begin(), record->roles.end(), [&](const auto& role) {
                return std::find(role.second.begin(), role.second.end(), name) != role.second.end();
            });
        int32_t dataSpace = 0;
        memcpy(&dataSpace, &stream->data_space, sizeof(dataSpace));
        record->streams.push_back({name, parser->GetStreamTypeByStream(stream),
                                   parser->GetCameraIndexByStream(stream), stream->ext_stream_flags,
                                   listed, stream->format, stream->usage, dataSpace,
                                   stream->stream_use_case});
    }

    const camera_metadata_t* params = config->session_parameters;
    record->hasSessionParams = params != nullptr;
    if (params != nullptr) {
        record->isGenericCam =
            ParamOf(params, Lumora::kTagIsGenericCam,
                    [](const camera_metadata_ro_entry_t& entry) { return entry.data.u8[0]; });
        record->supportedAinrType =
            ParamOf(params, Lumora::kTagSupportedAINRType,
                    [](const camera_metadata_ro_entry_t& entry) { return entry.data.i32[0]; });
    }
    record->sat = CopyOf(parser->GetSatStaticCaps());
    for (uint32_t id : physicalIds) {
        record->warmStart.push_back(WarmStart(id, parser));
    }
    const Lumora::_SensorDimension* dimensions = parser->GetSensorDimension();
    for (size_t i = 0; dimensions != nullptr && i < physicalIds.size(); ++i) {
        record->sensorDimensions.push_back(dimensions[i]);
    }
    record->starMode = CopyOf(parser->GetStarModeAEInfo());
    record->videoStabMode = parser->GetVideoStabMode();
    record->disableAePrecapture = parser->IsDisableAePrecaptureTriggerForSnapshot();
    SetLogging(m_options.log && m_options.logSteps);
}

bool Replayer::HasRecord(uint32_t frame, Lumora::IuiLayer* parser) const {
    SetLogging(false);
    // Every role has a list, maybe empty, in a record the library holds.
    const bool held = parser->GetStreamByStreamType(
                          frame, static_cast<Lumora::StreamType>(kFirstRole)) != nullptr;
    SetLogging(m_options.log && m_options.logSteps);
    return held;
}

std::vector<std::string> Replayer::StreamNames(const std::vector<Lumora::_UIStreamInfo>* list,
                                               const PreparedSession& session) const {
    std::vector<std::string> names;
    for (size_t n = 0; list != nullptr && n < list->size(); ++n) {
        std::string name = "?";
        for (size_t i = 0; i < session.config.Streams().size(); ++i) {
            if (session.config.Streams()[i] == (*list)[n].pStream) {
                name = session.setup->streams[i].name;
            }
        }
        names.push_back(name);
    }
    return names;
}

RoleStreams Replayer::Roles(const uint32_t* frame, const PreparedSession& session,
                            Lumora::IuiLayer* parser) const {
    RoleStreams roles;
    for (int32_t role = kFirstRole; role <= kLastRole; ++role) {
        const auto type = static_cast<Lumora::StreamType>(role);
        const auto* list = frame != nullptr ? parser->GetStreamByStreamType(*frame, type)
                                            : parser->GetStreamByStreamType(type);
        if (list != nullptr && !list->empty()) {
            roles.emplace_back(role, StreamNames(list, session));
        }
    }
    return roles;
}

_WarmStartRecord Replayer::WarmStart(uint32_t physicalId, Lumora::IuiLayer* parser) const {
    // The library leaves both outputs alone for a camera it does not know.
    constexpr unsigned int kUntouchedEnable = 0xFFFFFFFFu;
    constexpr int kUntouchedState = INT32_MIN;
    unsigned int enable = kUntouchedEnable;
    int dolState = kUntouchedState;
    _WarmStartRecord record;
    record.camera = physicalId;
    record.returnCode = parser->GetWarmStartStateByCaps(physicalId, enable, dolState);
    if (enable != kUntouchedEnable) {
        record.enable = enable;
    }
    if (dolState != kUntouchedState) {
        record.dolState = dolState;
    }
    return record;
}

}  // namespace UilayerSim
