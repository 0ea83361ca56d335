#include <gtest/gtest.h>
#include <hardware/gralloc.h>
#include <system/camera_metadata.h>
#include <system/graphics.h>

#include <string>
#include <vector>

#include "core/ScenarioReader.h"

namespace UilayerSim {
namespace {

// A scenario prefix with one camera; sessions are appended by each test.
const char* const kDevice = R"(device:
  cameras:
    - framework_id: 0
      logical_id: 0
      sensor: lmw50
)";

const char* const kSession = R"(sessions:
  - name: s
    camera: 0
    streams:
      - {name: preview, width: 1920, height: 1080, format: IMPLEMENTATION_DEFINED}
      - {name: jpeg, width: 4000, height: 3000, format: BLOB}
)";

TEST(ScenarioReaderTest, ReadsEveryStreamFieldByNameOrNumber) {
    const Scenario scenario = ReadScenarioText(std::string(kDevice) + R"(sessions:
  - camera: 0
    operation_mode: 0x8010
    streams:
      - name: a
        stream_type: CAMERA3_STREAM_INPUT
        width: 640
        height: 480
        format: HAL_PIXEL_FORMAT_RAW16
        usage: [HW_TEXTURE, GRALLOC_USAGE_HW_COMPOSER, 0x40]
        data_space: DEPTH
        physical_camera_id: "0"
        stream_use_case: RawShort
        ext_stream_mode: 2
        dynamic_range_profile: HDR10
      - {name: b, width: 1, height: 2, format: 0x23, usage: 65536, data_space: -1,
         physical_camera_id: null, stream_use_case: 0x0800000000080000}
  - camera: 0
    operation_mode: CONSTRAINED_HIGH_SPEED
    streams:
      - {name: c, width: 1, height: 1, format: ycbcr_420_888, data_space: JPEG_R,
         stream_use_case: VIDEO_CALL, rotation: 3}
      - {name: d, width: 1, height: 1, format: BLOB, data_space: bt2020_pq}
      - {name: e, width: 1, height: 1, format: BLOB, data_space: HAL_DATASPACE_DISPLAY_P3}
)",
                                               "test.yaml");
    ASSERT_EQ(2u, scenario.sessions.size());
    // Names as stream configurations in logs print them.
    const SessionSetup& logged = scenario.sessions[1];
    EXPECT_EQ(1u, logged.operationMode);
    EXPECT_EQ(HAL_PIXEL_FORMAT_YCbCr_420_888, logged.streams[0].format);
    EXPECT_EQ(0x1005, logged.streams[0].dataSpace);
    EXPECT_EQ(5, logged.streams[0].useCase);
    EXPECT_EQ(HAL_DATASPACE_BT2020_PQ, logged.streams[1].dataSpace);
    EXPECT_EQ(HAL_DATASPACE_DISPLAY_P3, logged.streams[2].dataSpace);
    const SessionSetup& session = scenario.sessions[0];
    EXPECT_EQ(0x8010u, session.operationMode);
    EXPECT_EQ("sessions[0]", session.name);
    ASSERT_EQ(2u, session.streams.size());
    const StreamSetup& a = session.streams[0];
    EXPECT_EQ(1, a.streamType);
    EXPECT_EQ(640u, a.width);
    EXPECT_EQ(HAL_PIXEL_FORMAT_RAW16, a.format);
    EXPECT_EQ(GRALLOC_USAGE_HW_TEXTURE | GRALLOC_USAGE_HW_COMPOSER | 0x40u, a.usage);
    EXPECT_EQ(HAL_DATASPACE_DEPTH, a.dataSpace);
    EXPECT_TRUE(a.hasPhysicalId);
    EXPECT_EQ("0", a.physicalId);
    EXPECT_EQ(0x0800000000010000LL, a.useCase);
    EXPECT_EQ(2u, a.extMode);
    EXPECT_EQ(4, a.dynamicRangeProfile);
    const StreamSetup& b = session.streams[1];
    EXPECT_EQ(0, b.streamType);
    EXPECT_EQ(HAL_PIXEL_FORMAT_YCbCr_420_888, b.format);
    EXPECT_EQ(GRALLOC_USAGE_HW_VIDEO_ENCODER, b.usage);
    EXPECT_EQ(-1, b.dataSpace);
    EXPECT_FALSE(b.hasPhysicalId);
    EXPECT_EQ(0x0800000000080000LL, b.useCase);
    EXPECT_EQ(1, b.dynamicRangeProfile);
}

TEST(ScenarioReaderTest, FillsDefaultsOfCamerasRequestsAndRepeats) {
    const Scenario scenario = ReadScenarioText(std::string(kDevice) + kSession + R"(    steps:
      - request: {frame: 7, buffers: [jpeg, preview]}
      - request: {frame: 3, no_settings: true}
      - repeat: {count: 5, request: {buffers: [preview]}}
      - repeat: {count: 2, request: {}, result: {aec: [{camera: 0, exp_count: 2}]}}
      - pipeline
      - caps_mask
)",
                                               "test.yaml");
    ASSERT_EQ(1u, scenario.cameras.size());
    const CameraSetup& camera = scenario.cameras[0];
    ASSERT_EQ(1u, camera.physicalCameras.size());
    EXPECT_EQ(0u, camera.physicalCameras[0].physicalCamId);
    EXPECT_EQ(0, camera.physicalCameras[0].frameworkId);
    EXPECT_EQ(1, camera.physicalCameras[0].isPrimary);
    EXPECT_EQ("none", scenario.configName);

    const std::vector<Step>& steps = scenario.sessions[0].steps;
    ASSERT_EQ(6u, steps.size());
    EXPECT_EQ((std::vector<size_t>{1, 0}), steps[0].request.buffers);
    EXPECT_TRUE(steps[0].request.hasSettings);
    EXPECT_FALSE(steps[0].request.hasSensorModes);
    EXPECT_FALSE(steps[1].request.hasSettings);
    // A repeat starts after the highest frame seen so far, the next one after it.
    EXPECT_EQ(StepKind::Repeat, steps[2].kind);
    EXPECT_EQ(8u, steps[2].request.frame);
    EXPECT_EQ(13u, steps[3].request.frame);
    EXPECT_TRUE(steps[3].repeatResult);
    ASSERT_EQ(1u, steps[3].result.aec.size());
    EXPECT_EQ(2, steps[3].result.aec[0].expCount);
    EXPECT_EQ(StepKind::Pipeline, steps[4].kind);
    EXPECT_EQ(kLogicalCamera, steps[5].camera);
}

TEST(ScenarioReaderTest, TypesTagValuesByTheirTag) {
    const Scenario scenario = ReadScenarioText(std::string(kDevice) + R"(sessions:
  - camera: 0
    package: com.a
    params:
      - {tag: ANDROID_CONTROL_AE_TARGET_FPS_RANGE, int32: [30, 60]}
      - {tag: ANDROID_CONTROL_VIDEO_STABILIZATION_MODE, bytes: 1}
      - {vendor: 160, string: video_mode}
      - {vendor: 85, float: 120.5}
      - {tag: 0xE0000, int64: 33000000}
    streams:
      - {name: p, width: 1, height: 1, format: BLOB}
    steps:
      - request: {frame: 1, sensor_modes: [-1, 4], zoom_ratio: 2, settings: [{vendor: 38, int32: 29}]}
)",
                                               "test.yaml");
    const SessionSetup& session = scenario.sessions[0];
    ASSERT_EQ(5u, session.params.size());
    EXPECT_EQ(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, session.params[0].tag);
    EXPECT_EQ(ElementType::Int32, session.params[0].type);
    EXPECT_EQ((std::vector<int32_t>{30, 60}), session.params[0].int32s);
    EXPECT_EQ(1u, session.params[1].Count());
    EXPECT_TRUE(session.params[2].vendor);
    EXPECT_EQ(std::string("video_mode"),
              std::string(session.params[2].bytes.begin(), session.params[2].bytes.end()));
    EXPECT_FLOAT_EQ(120.5f, session.params[3].floats.at(0));
    EXPECT_EQ(33000000, session.params[4].int64s.at(0));
    const RequestSetup& request = session.steps[0].request;
    EXPECT_EQ((std::vector<int32_t>{-1, 4}), request.sensorModes);
    EXPECT_FLOAT_EQ(2.0f, request.zoomRatio);
    EXPECT_EQ(38u, request.settings.at(0).tag);
}

// Each kind of mistake, with the file, line and field it is named by, is
// checked in mistakes/ by golden_test.py.

}  // namespace
}  // namespace UilayerSim
