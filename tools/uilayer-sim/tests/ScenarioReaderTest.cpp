#include <gtest/gtest.h>
#include <hardware/gralloc.h>
#include <system/camera_metadata.h>
#include <system/graphics.h>

#include <dirent.h>

#include <string>
#include <vector>

#include "ScenarioReader.h"

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

ScenarioError ErrorOf(const std::string& text, const std::string& path = "test.yaml") {
    try {
        ReadScenarioText(text, path);
    } catch (const ScenarioError& error) {
        return error;
    }
    ADD_FAILURE() << "no error for:\n" << text;
    return ScenarioError("", 0, "", "");
}

void ExpectError(const std::string& text, int line, const std::string& field,
                 const std::string& reasonPart) {
    const ScenarioError error = ErrorOf(text);
    EXPECT_EQ("test.yaml", error.File()) << error.what();
    EXPECT_EQ(line, error.Line()) << error.what();
    EXPECT_EQ(field, error.Field()) << error.what();
    EXPECT_NE(std::string::npos, error.Reason().find(reasonPart)) << error.what();
}

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
        physical_camera_id: "2"
        stream_use_case: RawShort
        ext_stream_mode: 2
        dynamic_range_profile: HDR10
      - {name: b, width: 1, height: 2, format: 0x23, usage: 65536, data_space: -1,
         physical_camera_id: null, stream_use_case: 0x0800000000080000}
)",
                                               "test.yaml");
    ASSERT_EQ(1u, scenario.sessions.size());
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
    EXPECT_EQ("2", a.physicalId);
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

TEST(ScenarioReaderTest, NamesFileLineAndFieldOfStreamMistakes) {
    const std::string head = std::string(kDevice) + "sessions:\n  - camera: 0\n    streams:\n";
    // Line 9 holds the stream.
    ExpectError(head + "      - {name: p, width: 1, height: 1, format: YUV}\n", 9,
                "sessions[0].streams[0].format", "unknown pixel format \"YUV\"");
    ExpectError(head + "      - {name: p, width: 1, height: 1, format: BLOB, colour: red}\n", 9,
                "sessions[0].streams[0].colour", "unknown field");
    ExpectError(head + "      - {name: p, width: -1, height: 1, format: BLOB}\n", 9,
                "sessions[0].streams[0].width", "out of range");
    ExpectError(head + "      - {name: p, width: 1, width: 2, height: 1, format: BLOB}\n", 9,
                "sessions[0].streams[0].width", "given twice");
    ExpectError(head + "      - {name: p, height: 1, format: BLOB}\n", 9,
                "sessions[0].streams[0].width", "missing");
    ExpectError(head + "      - {name: p, width: 1, height: 1, format: BLOB, usage: [HW_TEXTUR]}\n",
                9, "sessions[0].streams[0].usage[0]", "unknown usage bit");
    ExpectError(head +
                    "      - {name: p, width: 1, height: 1, format: BLOB}\n"
                    "      - {name: p, width: 2, height: 2, format: BLOB}\n",
                10, "sessions[0].streams[1].name", "used twice");
}

TEST(ScenarioReaderTest, NamesFileLineAndFieldOfStepMistakes) {
    const std::string head = std::string(kDevice) + kSession + "    steps:\n";
    // Line 13 holds the first step.
    ExpectError(head + "      - request: {frame: 1, buffers: [preview, video]}\n", 13,
                "sessions[0].steps[0].request.buffers[1]", "no stream named \"video\"");
    ExpectError(head + "      - request: {buffers: [preview]}\n", 13,
                "sessions[0].steps[0].request.frame", "missing");
    ExpectError(head + "      - session_caps: {caps: [CapsSHDR, 100]}\n", 13,
                "sessions[0].steps[0].session_caps.caps[1]", "outside 0..99");
    ExpectError(head + "      - session_caps: {caps: CapsSHRD}\n", 13,
                "sessions[0].steps[0].session_caps.caps", "unknown capability");
    ExpectError(head + "      - request_caps: {frame: 1, camera: 9}\n", 13,
                "sessions[0].steps[0].request_caps.camera", "no camera 9 in the device");
    ExpectError(head + "      - sensor_mode: {caps: [CapsSHDR], session: true}\n", 13,
                "sessions[0].steps[0].sensor_mode", "exactly one of");
    ExpectError(head + "      - zoom\n", 13, "sessions[0].steps[0]", "unknown step \"zoom\"");
    ExpectError(head + "      - repeat: {count: 0, request: {}}\n", 13,
                "sessions[0].steps[0].repeat.count", "out of range");
    ExpectError(head +
                    "      - request: {frame: 1, sensor_modes: [1], settings: [{vendor: 49, "
                    "int32: [2]}]}\n",
                13, "sessions[0].steps[0].request.settings", "already given by sensor_modes");
    ExpectError(head + "      - result: {frame: 1, no_metadata: true, mlft: 1}\n", 13,
                "sessions[0].steps[0].result.no_metadata", "carries no aec or mlft");
}

TEST(ScenarioReaderTest, RefusesTagValuesOfAnotherTypeThanTheTag) {
    const std::string head = std::string(kDevice) + "sessions:\n  - camera: 0\n    params:\n";
    const std::string tail = "    streams: [{name: p, width: 1, height: 1, format: BLOB}]\n";
    ExpectError(head + "      - {vendor: 85, int32: 120}\n" + tail, 9,
                "sessions[0].params[0].int32", "vendor tag 85 holds float values, not int32");
    ExpectError(head + "      - {tag: ANDROID_CONTROL_ZOOM_RATIO, string: x}\n" + tail, 9,
                "sessions[0].params[0].string", "holds float values, not bytes");
    ExpectError(head + "      - {tag: ANDROID_NOT_A_TAG, int32: 1}\n" + tail, 9,
                "sessions[0].params[0].tag", "unknown standard tag");
    ExpectError(head + "      - {vendor: 160}\n" + tail, 9, "sessions[0].params[0]",
                "exactly one value");
    ExpectError(
        head + "      - {vendor: 160, string: a}\n      - {vendor: 160, string: b}\n" + tail, 10,
        "sessions[0].params[1]", "already given on line 9");
    const ScenarioError error = ErrorOf(std::string(kDevice) + R"(sessions:
  - camera: 0
    package: com.a
    params: [{vendor: 34, string: com.b}]
    streams: [{name: p, width: 1, height: 1, format: BLOB}]
)");
    EXPECT_EQ(9, error.Line());
    EXPECT_NE(std::string::npos, error.Reason().find("already given by package")) << error.what();
}

TEST(ScenarioReaderTest, NamesFileLineAndFieldOfDeviceMistakes) {
    ExpectError("device: {cameras: [{framework_id: 0, logical_id: 16}]}\nsessions: []\n", 1,
                "device.cameras[0].logical_id", "out of range");
    ExpectError(R"(device:
  cameras:
    - framework_id: 5
      logical_id: 5
      physical:
        - {physical_id: 0, primary: true}
        - {physical_id: 7}
sessions: []
)",
                7, "device.cameras[0].physical[1].physical_id", "logical camera query type");
    ExpectError(R"(device:
  cameras:
    - {framework_id: 1, logical_id: 1}
    - {framework_id: 1, logical_id: 2}
)",
                4, "device.cameras[1].framework_id", "used twice");
    ExpectError(std::string(kDevice) + R"(sessions:
  - camera: 3
    streams: [{name: p, width: 1, height: 1, format: BLOB}]
)",
                7, "sessions[0].camera", "not in device.cameras");
    ExpectError(std::string(kDevice) + "files:\n  /data/../etc/x: a\n" + kSession, 7,
                "files./data/../etc/x", "'.', '..' or empty parts");
    ExpectError(
        std::string(kDevice) + "files:\n  /odm/lib64/hw/camera.lumora.v2.so: a\n" + kSession, 7,
        "files./odm/lib64/hw/camera.lumora.v2.so", "provided by the simulator");
    ExpectError(
        std::string(kDevice) + "properties:\n  a.b: " + std::string(92, 'x') + "\n" + kSession, 7,
        "properties.a.b", "at most 91 characters");
}

TEST(ScenarioReaderTest, ReportsYamlAndConfigurationSyntaxByLine) {
    const ScenarioError yaml = ErrorOf("device:\n  cameras: [\nsessions: x\n");
    EXPECT_EQ("test.yaml", yaml.File());
    EXPECT_GT(yaml.Line(), 1);
    EXPECT_NE(std::string::npos, yaml.Reason().find("not valid YAML"));

    // Inline configuration text: the malformed line is counted from the key.
    const ScenarioError inlineConfig = ErrorOf(
        std::string(kDevice) + "config_text: |\n  [SHDRTypeMatching]\n  Mode[0]\n" + kSession);
    EXPECT_EQ("test.yaml", inlineConfig.File());
    EXPECT_EQ(8, inlineConfig.Line());
    EXPECT_EQ("config_text", inlineConfig.Field());
    EXPECT_NE(std::string::npos, inlineConfig.Reason().find("refuses the whole file"));

    const ScenarioError missing =
        ErrorOf(std::string(kDevice) + "config: no-such.conf\n" + kSession, "/tmp/x/test.yaml");
    EXPECT_EQ(6, missing.Line());
    EXPECT_EQ("config", missing.Field());
    EXPECT_NE(std::string::npos, missing.Reason().find("/tmp/x/no-such.conf"));

    const ScenarioError device =
        ErrorOf("device: no-such.yaml\n" + std::string(kSession), "/tmp/x/test.yaml");
    EXPECT_EQ(1, device.Line());
    EXPECT_EQ("device", device.Field());
}

TEST(ScenarioReaderTest, ReadsTheBundledExamples) {
    const std::string directory = UILAYER_SIM_EXAMPLES_DIR;
    DIR* dir = opendir(directory.c_str());
    ASSERT_NE(nullptr, dir);
    size_t count = 0;
    while (dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name.size() > 5 && name.compare(name.size() - 5, 5, ".yaml") == 0) {
            ++count;
            EXPECT_NO_THROW(ReadScenarioFile(directory + "/" + name)) << name;
        }
    }
    closedir(dir);
    EXPECT_GE(count, 5u);
    const Scenario speed = ReadScenarioFile(directory + "/speed.yaml");
    ASSERT_FALSE(speed.sessions[0].steps.empty());
    EXPECT_EQ(10000u, speed.sessions[0].steps[0].count);
}

}  // namespace
}  // namespace UilayerSim
