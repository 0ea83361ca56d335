#include "core/TraceRecorder.h"

#include <HostPlatform.h>

#include "replay/Replay.h"

namespace UilayerSim {

using Lumora::_CapsBitset;
namespace Trace = Lumora::Trace;

const _CapsBitset* _RecordedStep::Caps(int64_t camera) const {
    if (camera < 0) {
        return &logical;
    }
    for (const auto& entry : cameras) {
        if (entry.first == camera) {
            return &entry.second;
        }
    }
    return nullptr;
}

_BitHistory HistoryOf(const _RecordedSession& session, uint32_t bit, int64_t camera) {
    _BitHistory history;
    bool before = false;  // the caps are reset as the configuration begins
    for (size_t i = 0; i < session.steps.size(); ++i) {
        const _CapsBitset* caps = session.steps[i].Caps(camera);
        const bool after = caps != nullptr && caps->test(bit);
        if (after && !before) {
            history.setBy = static_cast<int>(i);
        } else if (!after && before) {
            history.clearedBy = static_cast<int>(i);
        }
        before = after;
    }
    return history;
}

TraceRecorder::TraceRecorder() : m_previous(Trace::SetObserver(this)) {}

TraceRecorder::~TraceRecorder() {
    Trace::SetObserver(m_previous);
}

void TraceRecorder::BeginSession(const std::string& name, uint32_t camera) {
    m_request = nullptr;
    m_sessions.emplace_back();
    m_sessions.back().name = name;
    m_sessions.back().camera = camera;
}

void TraceRecorder::NoteSession(uint32_t configuredMode, const _GsiState& gsi,
                                const _WirelessState& wireless) {
    _RecordedSession* session = Current();
    session->configuredOperationMode = configuredMode;
    session->gsi = gsi;
    session->wireless = wireless;
}

_RecordedSession* TraceRecorder::Current() {
    if (m_sessions.empty()) {
        BeginSession("", 0);
    }
    return &m_sessions.back();
}

std::vector<std::string> TraceRecorder::TakeNewLines() {
    std::vector<std::string> lines = HostPlatform::TakeCameraLog();
    for (std::string& line : lines) {
        line = MaskAddresses(line);
    }
    return lines;
}

std::vector<std::string> TraceRecorder::TakeCameraLog() {
    std::vector<std::string> lines = std::move(m_carried);
    m_carried.clear();
    for (std::string& line : TakeNewLines()) {
        lines.push_back(std::move(line));
    }
    return lines;
}

void TraceRecorder::OnConfigurationBegin(const camera3_stream_configuration* config) {
    Current()->frameworkOperationMode = config != nullptr ? config->operation_mode : 0;
}

void TraceRecorder::OnStepBegin(const char* /*name*/, uint32_t /*index*/) {
    for (std::string& line : TakeNewLines()) {
        m_carried.push_back(std::move(line));
    }
}

void TraceRecorder::OnStepEnd(const Trace::_Step& step) {
    _RecordedStep recorded;
    recorded.name = step.name;
    recorded.logical = *step.logical;
    for (uint32_t k = 0; k < step.cameraCount && k < Trace::kCameraCapsSlots; ++k) {
        recorded.cameras.emplace_back(step.cameras[k].physicalCamId, step.cameraCaps[k]);
    }
    recorded.log = TakeNewLines();
    m_carried.insert(m_carried.end(), recorded.log.begin(), recorded.log.end());
    const Trace::_SessionFacts& facts = step.facts;
    recorded.facts.raw = facts;
    recorded.facts.cameraMode = facts.cameraMode != nullptr ? facts.cameraMode : "";
    recorded.facts.packageName = facts.packageName != nullptr ? facts.packageName : "";
    recorded.facts.activityName = facts.activityName != nullptr ? facts.activityName : "";
    recorded.facts.tableCameraName = facts.tableCameraName != nullptr ? facts.tableCameraName : "";
    recorded.facts.raw.cameraMode = nullptr;
    recorded.facts.raw.packageName = nullptr;
    recorded.facts.raw.activityName = nullptr;
    recorded.facts.raw.tableCameraName = nullptr;
    Current()->steps.push_back(std::move(recorded));
}

void TraceRecorder::OnRequestBegin(const camera3_capture_request* request) {
    m_request = nullptr;
    if (!m_recordRequests || request == nullptr ||
        (m_oneFrame && request->frame_number != m_onlyFrame)) {
        return;
    }
    _RecordedRequest& record = Current()->requests[request->frame_number];
    record = _RecordedRequest();
    record.frame = request->frame_number;
    m_request = &record;
}

void TraceRecorder::OnContribution(const Trace::_Contribution& contribution) {
    if (!m_recordRequests) {
        return;
    }
    // A result's contribution (AEC feedback) comes after its request ended.
    auto found = Current()->requests.find(contribution.frameNumber);
    if (found == Current()->requests.end()) {
        return;
    }
    _RecordedRequest& record = found->second;
    record.contributions.push_back(contribution);
    record.contributions.back().stream = nullptr;
    if (record.ended) {
        record.primary = contribution.primaryAfter;
        for (uint32_t i = 0; i < Trace::kCameraCapsSlots; ++i) {
            record.cameraCaps[i] = contribution.cameraAfter[i];
        }
    }
}

void TraceRecorder::OnRequestEnd(uint32_t /*frameNumber*/, const _CapsBitset& primary,
                                 const _CapsBitset* cameraCaps, int32_t status) {
    if (m_request == nullptr) {
        return;
    }
    m_request->ended = true;
    m_request->primary = primary;
    for (uint32_t i = 0; i < Trace::kCameraCapsSlots && cameraCaps != nullptr; ++i) {
        m_request->cameraCaps[i] = cameraCaps[i];
    }
    m_request->status = status;
    m_request = nullptr;
}

}  // namespace UilayerSim
