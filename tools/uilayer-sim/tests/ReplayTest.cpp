#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>
#include <string>

#include "Replay.h"
#include "ScenarioReader.h"
#include "ScopedTempDir.h"

namespace UilayerSim {
namespace {

const char* const kScenario = R"(device:
  cameras:
    - framework_id: 5
      logical_id: 5
      physical:
        - {physical_id: 0, primary: true}
        - {physical_id: 3, framework_id: 3}
config_text: |
  [SHDRTypeMatching]
  Mode[0] = 5, 0x8009, 0x9, 1, 1, 60
files:
  /data/vendor/camera/aecWarmStartCamera_0.txt: "1 2 3 4 5 6 7 8 9\n"
sessions:
  - name: video
    camera: 5
    package: com.lumora.camera
    operation_mode: 0x8009
    streams:
      - {name: preview, width: 1920, height: 1080, format: IMPLEMENTATION_DEFINED, usage: HW_TEXTURE}
      - {name: video, width: 3840, height: 2160, format: IMPLEMENTATION_DEFINED,
         usage: HW_VIDEO_ENCODER, physical_camera_id: "3"}
    steps:
      - request: {frame: 1, buffers: [preview, video], sensor_modes: [-1, -1, -1, 8]}
      - result: {frame: 1, aec: [{camera: 0, exp_count: 2}], mlft: 1}
      - repeat: {count: 300, request: {buffers: [preview]}, result: {}}
      - request_caps: {frame: 301, camera: 3}
      - streams: {role: Preview, frame: 9999}
)";

ReplayOptions Options(bool log) {
    ReplayOptions options;
    options.log = log;
    options.siblingRoot = UILAYER_SIM_SIBLING_ROOT;
    return options;
}

TEST(ReplayTest, ReportsEveryStepAndSummarisesRepeats) {
    const Scenario scenario = ReadScenarioText(kScenario, "replay.yaml");
    const ReportNode report = Replay(scenario, Options(false));
    const ReportNode* sessions = report.Find("sessions");
    ASSERT_NE(nullptr, sessions);
    ASSERT_EQ(1u, sessions->Items().size());
    const ReportNode& session = sessions->Items()[0];
    EXPECT_EQ("0x8009", session.Find("operation mode")->Scalar());
    const ReportNode* physical = session.Find("physical caps");
    ASSERT_NE(nullptr, physical);
    ASSERT_EQ(2u, physical->Entries().size());
    EXPECT_EQ("camera 0", physical->Entries()[0].first);
    EXPECT_EQ("camera 3", physical->Entries()[1].first);
    EXPECT_NE(nullptr, session.Find("streams")->Find("video"));

    const std::vector<ReportNode>& steps = session.Find("steps")->Items();
    ASSERT_EQ(5u, steps.size());
    EXPECT_EQ("1", steps[0].Find("request")->Scalar());
    EXPECT_NE(nullptr, steps[0].Find("camera caps")->Find("camera 3"));
    EXPECT_EQ("1", steps[1].Find("aec records")->Scalar());
    const ReportNode& repeat = steps[2];
    EXPECT_EQ("300", repeat.Find("repeat")->Scalar());
    EXPECT_EQ("2..301", repeat.Find("frames")->Scalar());
    EXPECT_EQ("300", repeat.Find("results")->Scalar());
    uint64_t counted = 0;
    for (const auto& code : repeat.Find("return codes")->Entries()) {
        counted += std::stoull(code.second.Scalar());
    }
    EXPECT_EQ(300u, counted);
    uint64_t variants = 0;
    for (const ReportNode& variant : repeat.Find("primary caps")->Items()) {
        variants += std::stoull(variant.Find("requests")->Scalar());
    }
    EXPECT_EQ(300u, variants);
    EXPECT_EQ("no record for the frame", steps[4].Find("streams")->Scalar());
    // Without --log no step carries log lines.
    for (const ReportNode& step : steps) {
        EXPECT_EQ(nullptr, step.Find("log"));
    }
}

TEST(ReplayTest, IsDeterministicAndCleansUpItsDeviceRoot) {
    ScopedTempDir tmp;
    const Scenario scenario = ReadScenarioText(kScenario, "replay.yaml");
    const std::string first = RenderText(Replay(scenario, Options(true)));
    const std::string second = RenderText(Replay(scenario, Options(true)));
    EXPECT_EQ(first, second);
    EXPECT_EQ(std::string::npos, first.find("uilayer-sim."));
    EXPECT_EQ(std::vector<std::string>{}, tmp.Entries());
    EXPECT_EQ(nullptr, getenv("UILAYER_DEVICE_ROOT"));
}

TEST(ReplayTest, ReportsConfigurationsWithoutSessionParametersOrCameraRecords) {
    const Scenario scenario = ReadScenarioText(R"(device:
  cameras:
    - {framework_id: 0, logical_id: 0, sensor: lmw50}
    - {framework_id: 1, no_record: true}
sessions:
  - camera: 1
    no_session_params: true
    streams: [{name: p, width: 640, height: 480, format: BLOB}]
    steps:
      - request: {frame: 1, buffers: [p], no_settings: true}
)",
                                               "replay.yaml");
    const ReportNode report = Replay(scenario, Options(false));
    const ReportNode& cameras = *report.Find("device")->Find("cameras");
    ASSERT_EQ(2u, cameras.Items().size());
    EXPECT_EQ("none", cameras.Items()[1].Find("record")->Scalar());
    const ReportNode& session = report.Find("sessions")->Items().at(0);
    EXPECT_EQ("no session parameters",
              session.Find("session parameters written")->Find("IsGenericCam")->Scalar());
    // A camera without a record has no physical cameras to report.
    EXPECT_TRUE(session.Find("physical caps")->Empty());
    const ReportNode& request = session.Find("steps")->Items().at(0);
    EXPECT_TRUE(request.Find("camera caps")->Empty());
}

TEST(ReplayTest, MasksAddressesButKeepsCapsAndUsageNumbers) {
    EXPECT_EQ("pStream <addr>, format 22, usage 0x40000000, caps 0x0044 -> 0x0004",
              MaskAddresses("pStream 0x55d0c8a1b2c0, format 22, usage 0x40000000, caps 0x0044 "
                            "-> 0x0004"));
    EXPECT_EQ("stream (nil)", MaskAddresses("stream (nil)"));
}

}  // namespace
}  // namespace UilayerSim
