// Sets up the device of a replay (device root, camera table, configuration,
// properties, files) and prepares every session before the first reaches the
// library; the entry points of the replay.
#include "replay/Replay.h"

#include <HostConfigText.h>
#include <HostKit/CameraTable.h>
#include <HostKit/Metadata.h>
#include <HostPlatform.h>
#include <cutils/properties.h>

#include <stdexcept>

#include "common/VendorTags.h"
#include "core/AbortHandler.h"
#include "core/ScenarioReader.h"
#include "core/Signals.h"
#include "core/TraceRecorder.h"
#include "replay/Replayer.h"
#include "common/ConfigKeys.h"

namespace UilayerSim {

namespace {

// Sets a scenario tag value; throws naming the tag and its line when the
// metadata store refuses it. Only the loaded sibling knows its vendor tags: an
// index it does not have is a mistake of the scenario in `file`.
void SetTag(HostKit::Metadata* metadata, const TagValue& value, const std::string& file) {
    uint32_t id = value.tag;
    try {
        id = value.vendor ? HostKit::VendorTagId(value.tag) : id;
    } catch (const std::runtime_error& error) {
        throw ScenarioError(file, value.line, value.field, error.what());
    }
    if (!metadata->TrySet(id, value.Data(), value.Count())) {
        throw std::runtime_error("the metadata store refuses " +
                                 (value.vendor ? "vendor tag " + std::to_string(value.tag)
                                               : StandardTagName(value.tag)) +
                                 " (line " + std::to_string(value.line) + ")");
    }
}

std::unique_ptr<HostKit::Result> PrepareResult(const ResultSetup& setup) {
    auto result = std::make_unique<HostKit::Result>(setup.frame, setup.hasMetadata);
    if (setup.hasMetadata && setup.hasAec) {
        result->AecList(setup.aec);
    }
    if (setup.hasMetadata && setup.hasMlft) {
        result->Mlft(setup.mlft);
    }
    return result;
}

}  // namespace

Replayer::Replayer(const Scenario& scenario, const ReplayOptions& options)
    : m_scenario(scenario), m_options(options), m_progress(options.progress) {
    if (options.recorder == nullptr) {
        m_ownRecorder = std::make_unique<TraceRecorder>();
    }
    m_recorder = options.recorder != nullptr ? options.recorder : m_ownRecorder.get();
}

Replayer::~Replayer() {
    // Parsers go before the camera table they point into.
    m_parsers.clear();
    Lumora::IuiLayer::Init(0, nullptr);
    HostPlatform::TakeCameraLog();
    HostPlatform::TakeAndroidLog();
    // An own root goes with m_ownRoot; an interrupt from now on has nothing to remove.
    if (m_ownRoot != nullptr) {
        RegisterCleanupPath("");
    }
}

void Replayer::SetLogging(bool on) const {
    HostPlatform::SetLogSwitches(on, on, on, on, false);
}

std::vector<std::string> Replayer::TakeLog() const {
    HostPlatform::TakeAndroidLog();
    std::vector<std::string> lines = m_recorder->TakeCameraLog();
    return m_options.log ? lines : std::vector<std::string>();
}

void Replayer::WriteFiles(const std::vector<std::pair<std::string, std::string>>& files) {
    for (const auto& file : files) {
        m_root->WriteFile(file.first, file.second);
        m_files[file.first] = file.second;
    }
}

std::unique_ptr<HostKit::Request> Replayer::PrepareRequest(const RequestSetup& setup,
                                                           PreparedSession* session) const {
    auto request = std::make_unique<HostKit::Request>(setup.frame);
    if (setup.hasSettings) {
        HostKit::Metadata& settings = request->Settings();
        for (const TagValue& tag : setup.settings) {
            SetTag(&settings, tag, m_scenario.path);
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
            SetTag(&params, tag, m_scenario.path);
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

_ReplayRecord Replayer::Run() {
    if (m_options.root == nullptr) {
        m_ownRoot = std::make_unique<HostKit::DeviceRoot>(m_options.siblingRoot, "uilayer-sim");
        RegisterCleanupPath(m_ownRoot->Path());
    }
    m_root = m_ownRoot != nullptr ? m_ownRoot.get() : m_options.root;
    m_root->KeepOnly(m_scenario.files);
    WriteFiles(m_scenario.files);
    m_root->Activate();
    HostPlatform::ResetProperties();
    for (const auto& property : m_scenario.properties) {
        property_set(property.first.c_str(), property.second.c_str());
    }
    const int refused = HostPlatform::LoadConfiguration(m_scenario.configText.c_str());
    const Lumora::_ConfigKey& wireless = Lumora::Key(Lumora::EConfigKey::SatFallbackWireless);
    std::vector<std::string> values;
    if (HostPlatform::PeekConfiguration(wireless.group, wireless.key, &values)) {
        m_wirelessSwitch = values.empty() ? "" : values.front();
    }
    if (refused != 0) {
        throw std::runtime_error("the configuration store refuses line " + std::to_string(refused) +
                                 " of " + m_scenario.configName);
    }
    SetLogging(m_options.log);
    HostPlatform::TakeCameraLog();
    HostPlatform::TakeAndroidLog();

    _ReplayRecord record;
    record.scenario = m_scenario.name;
    record.configuration = m_scenario.configName;
    record.cameras = m_scenario.cameras;
    SetCurrentStep("IuiLayer::Init");
    m_device = std::make_unique<HostKit::CameraTable>(m_scenario.cameras);
    m_device->Init();
    record.deviceLog = TakeLog();

    // Everything is prepared before the first session reaches the library.
    std::vector<std::unique_ptr<PreparedSession>> sessions;
    for (const SessionSetup& setup : m_scenario.sessions) {
        sessions.push_back(PrepareSession(setup));
    }
    for (auto& session : sessions) {
        m_sessionIndex = record.sessions.size();
        record.sessions.push_back(RunSession(session.get()));
    }
    return record;
}

std::string MaskAddresses(const std::string& line) {
    if (line.find("0x") == std::string::npos) {
        return line;
    }
    std::string out;
    size_t i = 0;
    while (i < line.size()) {
        if (line[i] == '0' && i + 1 < line.size() && line[i + 1] == 'x') {
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

_ReplayRecord RecordReplay(const Scenario& scenario, const ReplayOptions& options) {
    return Replayer(scenario, options).Run();
}

ReportNode Replay(const Scenario& scenario, const ReplayOptions& options) {
    return ReplayReport(RecordReplay(scenario, options));
}

}  // namespace UilayerSim
