// Keeps what the library's trace reports during a replay: per configured
// session every configuration step with the caps after it, its own log lines
// and the session facts, and per request frame what contributed to its caps.
// Who set and who cleared a bit is derived from consecutive steps.
#ifndef UILAYER_SIM_TRACE_RECORDER_H
#define UILAYER_SIM_TRACE_RECORDER_H

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "replay/SessionFacts.h"
#include "common/Trace.h"

namespace UilayerSim {

// The session facts with their texts copied out of the library.
struct _RecordedFacts {
    Lumora::Trace::_SessionFacts raw = {};  // text pointers cleared
    std::string cameraMode;
    std::string packageName;
    std::string activityName;
    std::string tableCameraName;
};

struct _RecordedStep {
    std::string name;
    Lumora::_CapsBitset logical;
    // Physical camera id and its caps, in the session's camera order.
    std::vector<std::pair<uint32_t, Lumora::_CapsBitset>> cameras;
    std::vector<std::string> log;  // the step's own log lines, addresses masked
    _RecordedFacts facts;

    // The caps of `camera` (-1: logical); null for a camera not in the session.
    const Lumora::_CapsBitset* Caps(int64_t camera) const;
};

struct _RecordedRequest {
    uint32_t frame = 0;
    std::vector<Lumora::Trace::_Contribution> contributions;  // stream pointers cleared
    bool ended = false;
    Lumora::_CapsBitset primary;
    std::array<Lumora::_CapsBitset, Lumora::Trace::kCameraCapsSlots> cameraCaps = {};
    int32_t status = 0;
};

struct _RecordedSession {
    std::string name;
    uint32_t camera = 0;
    uint32_t frameworkOperationMode = 0;   // as the configuration arrived
    uint32_t configuredOperationMode = 0;  // after the library's rewrite, if any
    // Read by the simulator right after the configuration.
    _GsiState gsi;
    _WirelessState wireless;
    std::vector<_RecordedStep> steps;
    std::map<uint32_t, _RecordedRequest> requests;  // the last request of each frame
};

// The configuration steps behind one bit of one camera: the last that set it
// and the last that cleared it (indices into the session's steps, -1: none).
struct _BitHistory {
    int setBy = -1;
    int clearedBy = -1;
};

_BitHistory HistoryOf(const _RecordedSession& session, uint32_t bit, int64_t camera);

class TraceRecorder : public Lumora::Trace::Observer {
public:
    // Installs itself as the process's observer until destroyed.
    TraceRecorder();
    ~TraceRecorder() override;
    TraceRecorder(const TraceRecorder&) = delete;
    TraceRecorder& operator=(const TraceRecorder&) = delete;

    // Requests are kept only when asked: a long repeat would keep them all.
    void RecordRequests(bool on) { m_recordRequests = on; }
    // Only this frame's requests are kept (a question about one frame).
    void RecordOnlyFrame(uint32_t frame) {
        m_recordRequests = true;
        m_onlyFrame = frame;
        m_oneFrame = true;
    }
    // The configuration that follows belongs to this session.
    void BeginSession(const std::string& name, uint32_t camera);
    // What the simulator read right after the session's configuration.
    void NoteSession(uint32_t configuredMode, const _GsiState& gsi, const _WirelessState& wireless);
    // The camera log since the last call, the lines the recorder read for its
    // steps included, in order, addresses masked.
    std::vector<std::string> TakeCameraLog();

    const std::vector<_RecordedSession>& Sessions() const { return m_sessions; }

    void OnConfigurationBegin(const camera3_stream_configuration* config) override;
    void OnStepBegin(const char* name, uint32_t index) override;
    void OnStepEnd(const Lumora::Trace::_Step& step) override;
    void OnRequestBegin(const camera3_capture_request* request) override;
    void OnContribution(const Lumora::Trace::_Contribution& contribution) override;
    void OnRequestEnd(uint32_t frameNumber, const Lumora::_CapsBitset& primary,
                      const Lumora::_CapsBitset* cameraCaps, int32_t status) override;

private:
    std::vector<std::string> TakeNewLines();
    _RecordedSession* Current();

    Lumora::Trace::Observer* m_previous = nullptr;
    bool m_recordRequests = false;
    bool m_oneFrame = false;
    uint32_t m_onlyFrame = 0;
    std::vector<_RecordedSession> m_sessions;
    std::vector<std::string> m_carried;  // read for a step, not yet taken
    _RecordedRequest* m_request = nullptr;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_TRACE_RECORDER_H
