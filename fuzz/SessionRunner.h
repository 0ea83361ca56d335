// Plays a decoded fuzz input against the library through its public interface:
// builds the camera table, the configuration, the streams and the session
// parameters, configures a parser and runs the steps.
#ifndef UILAYER_FUZZ_SESSION_RUNNER_H
#define UILAYER_FUZZ_SESSION_RUNNER_H

#include <HostKit/CameraTable.h>
#include <HostKit/DeviceRoot.h>
#include <HostKit/StreamConfig.h>
#include <hardware/camera3.h>

#include <vector>

#include "IuiLayer.h"
#include "SessionModel.h"

namespace UilayerFuzz {

// The device root of the fuzz process, with the sibling camera layer; the
// library finds its device files there. Removed at exit (a crash leaves it
// for inspection).
HostKit::DeviceRoot& Root();
// Replaces the wireless state and warm start files by those of `in`.
void WriteFiles(const SessionInput& in);

// The camera table of the input's cameras.
std::vector<HostKit::CameraSetup> CamerasOf(const std::vector<CameraInput>& cameras);

// A stream configuration built from the input: streams, their physical camera
// id strings and the session parameters.
class Configuration {
public:
    explicit Configuration(const SessionInput& in);
    camera3_stream_configuration_t* Get() { return m_config.Get(); }
    // The configured stream records, null entries included.
    const std::vector<camera3_stream_t*>& Streams() const { return m_config.Streams(); }
    // A stream record the session never saw, with an odd physical camera id.
    camera3_stream_t* Stranger() { return &m_stranger; }

private:
    // Whether the streams were adjusted for a session that may be a bokeh one.
    bool KeepBokehSessionsRunnable(const SessionInput& in);

    HostKit::StreamConfig m_config;
    camera3_stream_t m_stranger = {};
};

// Sets the log switches and properties of the input, and drops the logs.
void PreparePlatform(const SessionInput& in);
void DrainLogs();

// Runs the steps on a configured parser. `config` is the configuration the
// parser was configured with (reconfiguration steps reuse it).
void RunSteps(Lumora::IuiLayer& parser, Configuration& config, const std::vector<Step>& steps);

// The whole session of a fuzz input.
void RunSession(const SessionInput& in);

}  // namespace UilayerFuzz

#endif  // UILAYER_FUZZ_SESSION_RUNNER_H
