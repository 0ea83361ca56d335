// Test support: a host camera device (camera table with the sibling's records),
// metadata, stream configurations, requests and results, built in a few lines.
#ifndef LUMORA_TEST_DEVICE_H
#define LUMORA_TEST_DEVICE_H

#include <CameraHWConfiguration.h>
#include <HostPlatform.h>
#include <LumoraCameraInfo.h>
#include <hardware/camera3.h>
#include <system/camera_metadata.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "IuiLayer.h"

namespace LumoraTest {

// Owned camera metadata buffer with typed setters; a setter replaces the entry
// when it exists.
class Metadata {
public:
    explicit Metadata(size_t entryCapacity = 64, size_t dataCapacity = 16384);
    ~Metadata();
    Metadata(const Metadata&) = delete;
    Metadata& operator=(const Metadata&) = delete;

    camera_metadata_t* Get() { return m_metadata; }

    // Vendor tags by their index (through GetVendorTagId, so after Init).
    Metadata& VendorString(uint32_t index, const std::string& text);  // bytes, no terminator
    Metadata& VendorByte(uint32_t index, uint8_t value);
    Metadata& VendorBytes(uint32_t index, const void* data, size_t size);
    Metadata& VendorInt32(uint32_t index, const std::vector<int32_t>& values);
    Metadata& VendorFloat(uint32_t index, float value);
    // Standard tags.
    Metadata& Byte(uint32_t tag, uint8_t value);
    Metadata& Int32(uint32_t tag, const std::vector<int32_t>& values);
    Metadata& Float(uint32_t tag, float value);
    Metadata& Raw(uint32_t tag, const void* data, size_t count);

    bool Has(uint32_t tag) const;
    // First element of an entry, or -1 when absent.
    int32_t FirstInt32(uint32_t tag) const;
    int32_t FirstByte(uint32_t tag) const;

private:
    camera_metadata_t* m_metadata;
};

// One physical camera of a logical camera's record.
struct PhysicalCamera {
    int32_t logicalCamId;
    int32_t frameworkId;
    uint32_t physicalCamId;
    bool isPrimary;
};

struct CameraSetup {
    uint32_t logicalCamId = 0;
    uint32_t frameworkId = 0;
    std::vector<PhysicalCamera> physicalCameras;
    std::string sensorName;  // used by a single-camera record
    uint32_t type = 0;
    uint32_t fullArrayWidth = 0;
    uint32_t fullArrayHeight = 0;
    std::vector<uint16_t> sensorModeFlags;
};

// A device: the HAL's camera table whose static characteristics carry the
// sibling's records. Init() hands it to IuiLayer::Init.
class TestDevice {
public:
    TestDevice() = default;
    ~TestDevice();
    TestDevice(const TestDevice&) = delete;
    TestDevice& operator=(const TestDevice&) = delete;

    // Adds a camera (its camera index is the order of addition).
    void AddCamera(const CameraSetup& setup);
    // Adds a camera whose characteristics carry no record.
    void AddCameraWithoutRecord();
    void Init();

    camera_info* Table() { return m_table.data(); }
    size_t CameraCount() const { return m_table.size(); }
    // The record as stored in camera `index`'s characteristics (null if none).
    LumoraCameraInfo* Record(size_t index);

    // Presets.
    // Camera 0: one physical camera (physical id 0, framework id 0).
    static CameraSetup SingleCamera(const std::string& sensorName, uint32_t frameworkId = 0,
                                    uint32_t logicalCamId = 0);
    // Logical camera `frameworkId` made of physical ids 0..count-1 with
    // framework ids 0..count-1, the first one primary.
    static CameraSetup MultiCamera(uint32_t count, uint32_t frameworkId, uint32_t logicalCamId);

private:
    std::vector<CameraSetup> m_setups;
    std::vector<bool> m_hasRecord;
    std::vector<camera_info> m_table;
    std::vector<camera_metadata_t*> m_characteristics;
    std::deque<std::string> m_names;
};

// Output stream description; physicalId "" means no physical camera id string,
// and nullPhysicalId a null pointer.
struct StreamSetup {
    uint32_t width = 1920;
    uint32_t height = 1080;
    int format = 0x23;
    uint32_t usage = 0x100;
    int32_t dataSpace = 0;
    int streamType = 0;
    std::string physicalId;
    bool nullPhysicalId = false;
    int64_t useCase = 0;
    uint32_t extMode = 0;
    int64_t dynamicRangeProfile = 1;
};

// Common streams.
StreamSetup PreviewStream(uint32_t width = 1920, uint32_t height = 1080,
                          const std::string& physicalId = "");
StreamSetup VideoStream(uint32_t width = 1920, uint32_t height = 1080,
                        const std::string& physicalId = "");
StreamSetup JpegStream(uint32_t width = 4000, uint32_t height = 3000,
                       const std::string& physicalId = "");
StreamSetup YuvSnapshotStream(uint32_t width = 4000, uint32_t height = 3000,
                              const std::string& physicalId = "");
StreamSetup RawStream(int format, uint32_t width, uint32_t height,
                      const std::string& physicalId = "", int64_t useCase = 0);

// A stream configuration with its own streams and session parameters.
class StreamConfig {
public:
    explicit StreamConfig(uint32_t operationMode = 0);
    camera3_stream_t* Add(const StreamSetup& setup);
    camera3_stream_t* Stream(size_t index) { return m_pointers.at(index); }
    Metadata& SessionParams() { return m_sessionParams; }
    // The configuration as the HAL passes it (valid while this object lives).
    camera3_stream_configuration_t* Get();
    void SetOperationMode(uint32_t mode) { m_config.operation_mode = mode; }
    // Drops the session parameters (a configuration without them).
    void WithoutSessionParams() { m_noSessionParams = true; }

private:
    std::deque<camera3_stream_t> m_streams;
    std::deque<std::string> m_physicalIds;
    std::vector<camera3_stream_t*> m_pointers;
    Metadata m_sessionParams;
    camera3_stream_configuration_t m_config = {};
    bool m_noSessionParams = false;
};

// A capture request with optional settings and output buffers.
class Request {
public:
    explicit Request(uint32_t frameNumber);
    Metadata& Settings();
    Request& Buffer(camera3_stream_t* stream);
    // Sensor mode list (vendor tag 49) and zoom ratio.
    Request& SensorModes(const std::vector<int32_t>& modes);
    Request& ZoomRatio(float ratio);
    const camera3_capture_request_t* Get();

private:
    camera3_capture_request_t m_request = {};
    std::unique_ptr<Metadata> m_settings;
    std::vector<camera3_stream_buffer_t> m_buffers;
};

// A capture result carrying AEC records and the MLFT block.
class Result {
public:
    explicit Result(uint32_t frameNumber, bool withMetadata = true);
    // One AEC record per call, in order (at most 8).
    Result& Aec(int32_t cameraId, int32_t expCount, float value1 = 1.0f, float value2 = 2.0f);
    Result& Mlft(uint32_t enable);
    const camera3_capture_result_t* Get();

private:
    struct AecRecord {
        int32_t cameraId;
        float aecValue1;
        float aecValue2;
        int32_t expCount;
        uint32_t extra;
    };
    camera3_capture_result_t m_result = {};
    std::unique_ptr<Metadata> m_metadata;
    std::vector<AecRecord> m_aec;
    bool m_hasMlft = false;
    uint32_t m_mlft = 0;
};

// Vendor tag indices of the session parameters these tests set or read.
constexpr uint32_t kTagPackageName = 34;
constexpr uint32_t kTagCameraUnit = 71;
constexpr uint32_t kTagActivityName = 105;
constexpr uint32_t kTagVideoWatermark = 147;
constexpr uint32_t kTagCameraMode = 160;
constexpr uint32_t kTagAICompositionEnable = 165;
constexpr uint32_t kTagSupportedAINRType = 212;

inline void SetClient(StreamConfig& config, const std::string& package,
                      const std::string& activity = "", bool cameraUnit = false) {
    config.SessionParams().VendorString(kTagPackageName, package);
    if (!activity.empty()) {
        config.SessionParams().VendorString(kTagActivityName, activity);
    }
    if (cameraUnit) {
        config.SessionParams().VendorByte(kTagCameraUnit, 1);
    }
}

// Base fixture: a clean platform (empty configuration, no properties, every log
// switch on, logs drained) and helpers to look at the logs.
class UiLayerTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Loads a configuration text; fails the test when it is refused.
    void LoadConfig(const std::string& text);
    // The camera log since the last call ("I message" lines).
    std::vector<std::string> CameraLog();
    // True when some camera log line since the last call equals `line`.
    bool LoggedExactly(const std::string& line);
    // True when some camera log line since the last call contains `text`.
    bool LoggedContaining(const std::string& text);

private:
    std::vector<std::string> m_pendingLog;
    void Drain();
};

}  // namespace LumoraTest

#endif  // LUMORA_TEST_DEVICE_H
