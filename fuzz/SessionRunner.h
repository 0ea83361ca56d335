// Plays a decoded fuzz input against the library through its public interface:
// builds the camera table, the configuration, the streams and the session
// parameters, configures a parser and runs the steps.
#ifndef UILAYER_FUZZ_SESSION_RUNNER_H
#define UILAYER_FUZZ_SESSION_RUNNER_H

#include <hardware/camera3.h>
#include <hardware/camera_common.h>
#include <system/camera_metadata.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "IuiLayer.h"
#include "SessionModel.h"

namespace UilayerFuzz {

// An owned metadata buffer; entries the store refuses are left out.
class Metadata {
public:
    Metadata();
    ~Metadata();
    Metadata(const Metadata&) = delete;
    Metadata& operator=(const Metadata&) = delete;

    camera_metadata_t* Get() const { return m_metadata; }
    void Add(uint32_t tagId, const void* data, size_t count);
    void Add(const TagEntry& entry);

private:
    camera_metadata_t* m_metadata;
};

// A temporary device root with a link to the host sibling camera layer; the
// library finds its device files there (UILAYER_DEVICE_ROOT). Removed at exit.
class DeviceRoot {
public:
    static DeviceRoot& Instance();
    // Replaces the wireless state and warm start files by those of `in`.
    void WriteFiles(const SessionInput& in);

private:
    DeviceRoot();
    void Write(const std::string& relative, const std::string& text);
    std::string m_path;
    std::vector<std::string> m_written;
};

// The HAL's camera table with the sibling's records in the characteristics.
class Device {
public:
    explicit Device(const std::vector<CameraInput>& cameras);
    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    // IuiLayer::Init with this table.
    void Init();

private:
    std::vector<camera_info> m_table;
    std::vector<std::unique_ptr<Metadata>> m_characteristics;
    std::deque<std::string> m_sensorNames;
};

// A stream configuration built from the input: streams, their physical camera
// id strings and the session parameters.
class Configuration {
public:
    Configuration(const SessionInput& in);
    camera3_stream_configuration_t* Get();
    // The configured stream records, null entries included.
    const std::vector<camera3_stream_t*>& Streams() const { return m_pointers; }
    // A stream record the session never saw, with an odd physical camera id.
    camera3_stream_t* Stranger() { return &m_stranger; }

private:
    void KeepBokehSessionsRunnable(const SessionInput& in);

    std::deque<camera3_stream_t> m_streams;
    std::deque<std::string> m_physicalIds;
    std::vector<camera3_stream_t*> m_pointers;
    Metadata m_sessionParams;
    bool m_nullSessionParams;
    bool m_nullStreamArray;
    uint32_t m_operationMode;
    camera3_stream_configuration_t m_config = {};
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
