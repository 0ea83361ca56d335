// VIULL: the general enable, the HDR exclusion, the SupportedAINRType session
// parameter, and the client identity of the client package policy (the
// system camera's own rule, camera unit clients, the per-package precedence).
#include <string>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

constexpr const char* kEnableCamera0 = "[3rdAppEnableVIULL]\nisEnable3rdAppVIULL[0] = 1, 0x1\n";
const std::string kClients =
    "[PackageName Group]\nSystemCamera = com.sys.camera\nEngineerMode = com.eng.mode\n";
const std::string kEnable = kClients + "[3rdAppEnableVIULL]\nisEnable3rdAppVIULL[0] = 1, 0x3\n";
const std::string kDisable = kEnable + "[3rdAppDisableVIULLMap]\ncom.third.app[0] = 0x2\n";
// Masks in hexadecimal, with or without 0x.
const std::string kActivityRows =
    "[3rdAppEnableVIULLMapLumora]\ncom.third.app[0] = 0x1, com.third.app.Night\n"
    "com.third.app[1] = 2, com.third.app.Video\n";

class AinrTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        m_device.Add(SingleCamera("imx766", 0, 0));
        m_device.Add(SingleCamera("ov50", 1, 1));
        m_device.Add(SingleCamera("s5k", 2, 15));
        m_device.AddWithoutRecord();
        m_device.Init();
    }

    // The written AINR type (-1: not written), which always agrees with bit 89.
    int32_t ConfigureVideo(unsigned int cameraId, int64_t profile = 1, int32_t presetTag = -1,
                           const std::string& package = "", const std::string& activity = "",
                           bool cameraUnit = false) {
        StreamConfig config;
        StreamSetup video = VideoStream();
        video.dynamicRangeProfile = profile;
        config.Add(video);
        if (presetTag >= 0) {
            config.SessionParams().VendorInt32(Lumora::kTagSupportedAINRType,
                                               {presetTag, presetTag});
        }
        if (!package.empty()) {
            SetClient(config, package, activity, cameraUnit);
        }
        ConfigureFresh(config, cameraId);
        const int32_t type =
            config.SessionParams().FirstInt32(GetVendorTagId(Lumora::kTagSupportedAINRType));
        EXPECT_EQ(type == 2, Has(Lumora::CapsVIULL));
        return type;
    }
};

TEST_F(AinrTest, GeneralEnableByCameraMask) {
    const struct {
        const char* rows;
        unsigned int cameraId;
        int32_t type;
    } cases[] = {
        {"[1] = 1, 0x1", 0, 0},  // no row 0: the group is off
        {"[0] = 1, 0x1", 0, 2},
        {"[0] = 1, 0x1", 1, 0},
        {"[0] = 1, 0x8000", 2, 2},      // logical camera 15
        {"[0] = 1, 0x80000000", 3, 2},  // no record: logical id -1, bit 31
        // A disabled entry does not end the scan.
        {"[0] = 0, 0x3\nisEnable3rdAppVIULL[1] = 1, 0x2", 1, 2},
        {"[0] = 0, 0x3", 1, 0},
        // Rows of another length switch the group off; a later short row has
        // no camera.
        {"[0] = 1, 0x1, 0", 0, 0},
        {"[0] = 1", 0, 0},
        {"[0] = 0, 0x1\nisEnable3rdAppVIULL[1] = 1", 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.rows << " camera " << c.cameraId);
        LoadConfig(std::string("[3rdAppEnableVIULL]\nisEnable3rdAppVIULL") + c.rows + "\n");
        EXPECT_EQ(c.type, ConfigureVideo(c.cameraId));
    }
    EXPECT_TRUE(LoggedExactly("E Can't find vendor tag SupportedAINRType"));
    EXPECT_TRUE(LoggedExactly("I key: 0x8000, sensorMask: 0x8000"));
    EXPECT_TRUE(LoggedExactly("I key: 0x80000000, sensorMask: 0x80000000"));
}

TEST_F(AinrTest, HdrVideoStreamsExcludeVIULL) {
    const struct {
        const char* disableForHdr;
        int64_t profile;
        int32_t type;
    } cases[] = {{"true", 2, 0}, {"true", 4, 0},  {"true", 8, 0},
                 {"true", 1, 2}, {"true", 16, 2}, {"false", 4, 2}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.disableForHdr << " profile " << c.profile);
        LoadConfig(std::string(kEnableCamera0) +
                   "[OemCommonCapbility]\ndisableVIULLForSpecificHDR = " + c.disableForHdr + "\n");
        EXPECT_EQ(c.type, ConfigureVideo(0, c.profile));
    }
    EXPECT_TRUE(
        LoggedExactly("I supportedAinrType: 0, isEnableVIULL: 0, disableVIULLForSpecificHDR: 1"));
}

TEST_F(AinrTest, TagIsUpdatedWhenPresentAndSkippedWithoutSessionParameters) {
    LoadConfig(kEnableCamera0);
    EXPECT_EQ(2, ConfigureVideo(0, 1, 7));
    EXPECT_FALSE(LoggedContaining("Can't find vendor tag SupportedAINRType"));
    EXPECT_TRUE(LoggedExactly("I update_camera_metadata_entry supportedAinrType: 2"));

    StreamConfig config;
    config.Add(VideoStream());
    config.WithoutSessionParams();
    Configure(config);
    EXPECT_TRUE(Has(Lumora::CapsVIULL));
    EXPECT_TRUE(LoggedExactly("E sessionParams Invalid Args"));
}

TEST_F(AinrTest, SystemCameraRuleAndCameraUnitClients) {
    LoadConfig(kEnable);
    EXPECT_EQ(-1, ConfigureVideo(0, 1, -1, "com.sys.camera"));
    EXPECT_EQ(-1, ConfigureVideo(0, 1, -1, "com.eng.mode"));
    EXPECT_EQ(2, ConfigureVideo(0, 1, -1, "com.sys.camera", "", true));
}

TEST_F(AinrTest, PrecedenceChain) {
    const char* app = "com.third.app";
    const struct {
        std::string config;
        const char* package;
        const char* activity;
        unsigned int cameraId;
        int64_t profile;
        int32_t type;
    } cases[] = {
        {kEnable, app, "com.third.app.Video", 1, 1, 2},
        // The package disable overrides the general enable on its cameras.
        {kDisable, app, "com.third.app.Video", 1, 1, 0},
        {kDisable, app, "com.third.app.Video", 0, 1, 2},
        {kDisable, "com.third.app2", "com.third.app.Video", 1, 1, 2},  // whole package keys
        // A package and activity row overrides the disable for its activity.
        {kDisable + kActivityRows, app, "com.third.app.Video", 1, 1, 2},
        {kDisable + kActivityRows, app, "com.third.app.VideoPlus", 1, 1, 0},
        {kDisable + kActivityRows, app, "com.third.app.Night", 1, 1, 0},
        {kClients + kActivityRows, app, "com.third.app.Night", 0, 1, 2},
        // The HDR rule overrides everything.
        {kDisable + kActivityRows + "[OemCommonCapbility]\ndisableVIULLForSpecificHDR = 1\n", app,
         "com.third.app.Video", 1, 4, 0},
        // Two disable entries of the package, or rows of three values, switch
        // that group off.
        {kEnable + "[3rdAppDisableVIULLMap]\ncom.third.app[0] = 2\ncom.third.app[1] = 2\n", app,
         "com.third.app.Video", 1, 1, 2},
        {kClients + "[3rdAppEnableVIULLMapLumora]\ncom.third.app[0] = 1, com.third.app.Video, x\n",
         app, "com.third.app.Video", 0, 1, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.config << c.package << " " << c.activity << " camera " << c.cameraId);
        LoadConfig(c.config);
        EXPECT_EQ(c.type, ConfigureVideo(c.cameraId, c.profile, -1, c.package, c.activity));
    }
    EXPECT_TRUE(LoggedExactly(
        "I VIULL m_clientPackageName: com.third.app, logicalCameraId: 1, keyCount: 1, "
        "valueCount: 1"));
}

}  // namespace
}  // namespace LumoraTest
