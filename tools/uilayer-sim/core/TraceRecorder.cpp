#include "core/TraceRecorder.h"

#include <HostPlatform.h>

#include <algorithm>

#include "replay/Replay.h"

namespace UilayerSim {

using Lumora::_CapsBitset;
namespace Trace = Lumora::Trace;

const _CapsBitset* _RecordedStep::Caps(int64_t camera) const {
    if (camera < 0) {
        return &logical;
    }
    const auto found = std::find_if(cameras.begin(), cameras.end(),
                                    [&](const auto& entry) { return entry.first == camera; });
    return found != cameras.end() ? &found->second : nullptr;
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
    std::vector<std::string> lines = std::exchange(m_carried, {});
    const std::vector<std::string> fresh = TakeNewLines();
    lines.insert(lines.end(), fresh.begin(), fresh.end());
    return lines;
}

void TraceRecorder::OnConfigurationBegin(const camera3_stream_configuration* config) {
    Current()->frameworkOperationMode = config != nullptr ? config->operation_mode : 0;
}

void TraceRecorder::OnStepBegin(const char* /*name*/, uint32_t /*index*/) {
    const std::vector<std::string> fresh = TakeNewLines();
    m_carried.insert(m_carried.end(), fresh.begin(), fresh.end());
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
    // The texts are copied out and their pointers into the library cleared.
    const auto copyOut = [](const char*& text) {
        const std::string copy = text != nullptr ? text : "";
        text = nullptr;
        return copy;
    };
    _RecordedFacts& facts = recorded.facts;
    facts.raw = step.facts;
    facts.cameraMode = copyOut(facts.raw.cameraMode);
    facts.packageName = copyOut(facts.raw.packageName);
    facts.activityName = copyOut(facts.raw.activityName);
    facts.tableCameraName = copyOut(facts.raw.tableCameraName);
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
        std::copy_n(contribution.cameraAfter, Trace::kCameraCapsSlots, record.cameraCaps.begin());
    }
}

void TraceRecorder::OnRequestEnd(uint32_t /*frameNumber*/, const _CapsBitset& primary,
                                 const _CapsBitset* cameraCaps, int32_t status) {
    if (m_request == nullptr) {
        return;
    }
    m_request->ended = true;
    m_request->primary = primary;
    if (cameraCaps != nullptr) {
        std::copy_n(cameraCaps, Trace::kCameraCapsSlots, m_request->cameraCaps.begin());
    }
    m_request->status = status;
    m_request = nullptr;
}

}  // namespace UilayerSim
