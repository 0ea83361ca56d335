// The replay's driver of the library: it sets up the device (Replay.cpp),
// runs each session's configuration and records the library's answers
// (ReplaySession.cpp), then runs the requests, results and queries of its
// steps (ReplaySteps.cpp), into a _ReplayRecord.
#ifndef UILAYER_SIM_REPLAYER_H
#define UILAYER_SIM_REPLAYER_H

#include <HostKit/Capture.h>
#include <HostKit/DeviceRoot.h>
#include <HostKit/StreamConfig.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "replay/Progress.h"
#include "replay/Replay.h"
#include "replay/ReplayRecord.h"

namespace UilayerSim {

constexpr int32_t kFirstRole = 1;
constexpr int32_t kLastRole = 15;

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

class Replayer {
public:
    Replayer(const Scenario& scenario, const ReplayOptions& options);
    ~Replayer();

    _ReplayRecord Run();

private:
    void SetLogging(bool on) const;
    // The camera log since the last call, addresses masked; empty when the
    // replay does not log.
    std::vector<std::string> TakeLog() const;

    std::unique_ptr<HostKit::Request> PrepareRequest(const RequestSetup& setup,
                                                     PreparedSession* session) const;
    std::unique_ptr<PreparedSession> PrepareSession(const SessionSetup& setup) const;
    void WriteFiles(const std::vector<std::pair<std::string, std::string>>& files);

    _SessionRecord RunSession(PreparedSession* session);
    void RecordSession(PreparedSession* session, Lumora::IuiLayer* parser,
                       _SessionRecord* record) const;
    _StepRecord RunStep(PreparedStep* prepared, PreparedSession* session, Lumora::IuiLayer* parser);
    void RunRepeat(PreparedStep* prepared, Lumora::IuiLayer* parser, _StepRecord* record);
    void RunQuery(PreparedSession* session, Lumora::IuiLayer* parser, _StepRecord* record);

    // Whether the library holds the record of request `frame`; asked with the
    // log switches off.
    bool HasRecord(uint32_t frame, Lumora::IuiLayer* parser) const;
    // The names of the listed streams ("?" for one not in the session).
    std::vector<std::string> StreamNames(const std::vector<Lumora::_UIStreamInfo>* list,
                                         const PreparedSession& session) const;
    // The streams of each role with a list that is not empty: the session's
    // (`frame` null) or a request's.
    RoleStreams Roles(const uint32_t* frame, const PreparedSession& session,
                      Lumora::IuiLayer* parser) const;
    _WarmStartRecord WarmStart(uint32_t physicalId, Lumora::IuiLayer* parser) const;

    const Scenario& m_scenario;
    const ReplayOptions& m_options;
    Progress m_progress;
    size_t m_sessionIndex = 0;  // of the session running, for the progress line
    std::unique_ptr<HostKit::DeviceRoot> m_ownRoot;
    HostKit::DeviceRoot* m_root = nullptr;  // m_ownRoot or the options' root
    std::unique_ptr<HostKit::CameraTable> m_device;
    std::map<uint32_t, std::shared_ptr<Lumora::IuiLayer>> m_parsers;
    std::unique_ptr<TraceRecorder> m_ownRecorder;
    TraceRecorder* m_recorder = nullptr;
    std::map<std::string, std::string> m_files;  // device files written so far
    // The configuration's switch of the wireless charging rule, as written.
    std::string m_wirelessSwitch;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_REPLAYER_H
