// Multi-camera zoom record with the client identity, operation mode, camera
// mode and bokeh session provided by the session parameters and client policy.
#include <string>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

constexpr const char* kClients =
    "[PackageName Group]\nSystemCamera = com.sys.camera\nEngineerMode = com.sys.camera.eng\n";
constexpr const char* kSys = "com.sys.camera";
constexpr const char* kEng = "com.sys.camera.eng";

struct Session {
    uint32_t operationMode = 0;
    std::string package = {};
    std::string activity = {};
    std::string cameraMode = {};
    bool cameraUnit = false;
    bool aiComposition = false;
};

class MultiCameraZoomIntegrationTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        m_device.Add(MultiCamera(3, 0, 0));
        m_device.Init();
    }
    // Two physical preview streams, so that a bokeh mode makes a bokeh session.
    Lumora::_SatStaticCaps ConfigureSession(const Session& s) {
        StreamConfig config(s.operationMode);
        config.Add(PreviewStream(1920, 1080, "0"));
        config.Add(PreviewStream(1920, 1080, "1"));
        SetClient(config, s.package, s.activity, s.cameraUnit);
        if (!s.cameraMode.empty()) {
            config.SessionParams().VendorString(Lumora::kTagCameraMode, s.cameraMode);
        }
        if (s.aiComposition) {
            config.SessionParams().VendorByte(Lumora::kTagAICompositionEnable, 1);
        }
        ConfigureFresh(config);
        return *m_parser->GetSatStaticCaps();
    }
};

TEST_F(MultiCameraZoomIntegrationTest, FallbackUsecaseInPrecedenceOrder) {
    LoadConfig(kClients);
    const struct {
        Session session;
        uint32_t fallbackUsecase;
    } cases[] = {
        {{0x8009, "com.other.app"}, 8},
        {{0x8010, kSys, "", "pro_video_mode", true}, 8},
        {{0x8010, kSys, "", "pro_video_mode"}, 6},
        {{0x8009, kSys, "", "pro_video_log_mode"}, 10},
        {{0x800B, kSys}, 3},
        {{0x800C, kSys}, 3},
        {{0x8028, kSys}, 3},
        {{0x8009, kSys}, 5},
        {{0x8309, kSys}, 5},  // bits 8..11 of the mode do not count
        {{0x8019, kSys}, 2},
        {{0x8021, kSys}, 4},
        {{0x8029, kSys}, 1},
        {{0x8029, kEng}, 9},
        {{0x8001, kEng}, 1},
        {{0x8009, kSys, "", "", false, true}, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.session.operationMode << " "
                                        << c.session.package << " " << c.session.cameraMode);
        Lumora::_SatStaticCaps sat = ConfigureSession(c.session);
        EXPECT_EQ(c.fallbackUsecase, sat.fallbackUsecase);
        EXPECT_EQ(c.fallbackUsecase == 8 ? 1u : 0u, sat.forceFallback);
    }
    EXPECT_TRUE(LoggedExactly("I fallbackUsecase is 2 operationMode is 0x8019"));
}

TEST_F(MultiCameraZoomIntegrationTest, TripartiteWhitelistForms) {
    const char* names =
        "[TripartiteModeFallbackWhitelist]\nApp[0] = \"\"\nApp[1] = com.x\nApp[2] = Capture\n";
    const char* rows =
        "[TripartiteModeFallbackWhitelist]\nApp[0] = com.a.Video, com.a\n"
        "App[1] = com.b.Scan, -1\nApp[2] = com.c.Main\nApp[3] = \"\", -1\n";
    const struct {
        const char* config;
        const char* package;
        const char* activity;
        uint32_t listed;
    } cases[] = {
        // One name: a prefix of the package or of the activity; "" matches nothing.
        {names, "com.xyz", "Main", 1},
        {names, "org.app", "CaptureActivity", 1},
        {names, "com.", "Main", 0},
        // An activity and its package: prefixes both; "-1" or no package: any.
        {rows, "com.a.app", "com.a.VideoActivity", 1},
        {rows, "com.a.app", "com.a.Photo", 0},
        {rows, "org.a", "com.a.VideoActivity", 0},
        {rows, "org.any", "com.b.ScanActivity", 1},
        {rows, "org.any", "com.c.MainActivity", 1},
        {rows, "org.any", "org.any.Main", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.package) + " " + c.activity);
        LoadConfig(c.config);
        EXPECT_EQ(c.listed,
                  ConfigureSession({0x8001, c.package, c.activity}).isTripartiteFallbackWhitelist);
    }
    EXPECT_TRUE(
        LoggedExactly("I m_clientPackageName org.any, m_clientActivityName com.c.MainActivity, "
                      "whitelistPackageName -1"));
}

TEST_F(MultiCameraZoomIntegrationTest, ZoomDivisionAppsMatchExactly) {
    LoadConfig(std::string(kClients) +
               "[3rdCamIsSupportZoomdivisionConfig]\nAPP[0] = com.zoom.app\n"
               "APP[1] = com.other.ZoomActivity\n");
    const struct {
        const char* package;
        const char* activity;
        uint32_t listed, supported;
    } cases[] = {{"com.zoom.app", "x", 1, 1},
                 {"com.zoom.application", "x", 0, 0},
                 {"org.any", "com.other.ZoomActivity", 1, 1},
                 {"org.any", "com.other.ZoomActivity2", 0, 0},
                 {kSys, "x", 0, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.package);
        Lumora::_SatStaticCaps sat = ConfigureSession({0x8001, c.package, c.activity});
        EXPECT_EQ(c.listed, sat.is3rdCamZoomDivisionApp);
        EXPECT_EQ(c.supported, sat.supportZoomDivision);
    }
}

TEST_F(MultiCameraZoomIntegrationTest, SystemCameraSessionSwitches) {
    LoadConfig(std::string(kClients) +
               "[SatSmoothZoom]\nUseAIDLInput = true\n"
               "[MvgSatSettings]\nuseVideoStrategyMode = 0x8005, 0x8010\n"
               "[BokehSATConfig]\nsupportBokehIzoomSeamless = 0x8011\n");
    Lumora::_SatStaticCaps sat = ConfigureSession({0x8010, kSys});
    EXPECT_EQ(1u, sat.enableSmoothZoom);
    EXPECT_EQ(1u, sat.useAIDLInput);
    EXPECT_EQ(1u, sat.useVideoStrategy);
    EXPECT_EQ(1u, sat.isBokehMode);
    EXPECT_EQ(0u, sat.supportBokehIzoomSeamless);
    EXPECT_EQ(1u, ConfigureSession({0x8011, kSys}).supportBokehIzoomSeamless);

    // A camera unit client gets neither smooth zoom nor the video strategy.
    sat = ConfigureSession({0x8010, kSys, "", "", true});
    EXPECT_EQ(0u, sat.enableSmoothZoom + sat.useVideoStrategy);
    // Two physical cameras are enough for the AIDL input.
    m_device.Clear();
    m_device.Add(MultiCamera(2, 0, 0));
    EXPECT_EQ(1u, ConfigureSession({0x8001, kSys}).useAIDLInput);
}

}  // namespace
}  // namespace LumoraTest
