// VIULL with the client identity of the client package policy: the system
// camera's own rule, camera unit clients and the per-package precedence.
#include <string>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

const std::string kClients =
    "[PackageName Group]\nSystemCamera = com.sys.camera\nEngineerMode = com.eng.mode\n";
const std::string kEnable = kClients + "[3rdAppEnableVIULL]\nisEnable3rdAppVIULL[0] = 1, 0x3\n";
const std::string kDisable = kEnable + "[3rdAppDisableVIULLMap]\ncom.third.app[0] = 0x2\n";
// Masks in hexadecimal, with or without 0x.
const std::string kActivityRows =
    "[3rdAppEnableVIULLMapLumora]\ncom.third.app[0] = 0x1, com.third.app.Night\n"
    "com.third.app[1] = 2, com.third.app.Video\n";

class AinrIntegrationTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        m_device.Add(SingleCamera("imx766", 0, 0));
        m_device.Add(SingleCamera("ov50", 1, 1));
        m_device.Init();
    }

    // The written AINR type (-1: not written), which always agrees with bit 89.
    int32_t ConfigureClient(const std::string& package, const std::string& activity,
                            unsigned int cameraId, bool cameraUnit = false, int64_t profile = 1) {
        StreamConfig config;
        StreamSetup video = VideoStream();
        video.dynamicRangeProfile = profile;
        config.Add(video);
        SetClient(config, package, activity, cameraUnit);
        ConfigureFresh(config, cameraId);
        const int32_t type =
            config.SessionParams().FirstInt32(GetVendorTagId(Lumora::kTagSupportedAINRType));
        EXPECT_EQ(type == 2, Has(Lumora::CapsVIULL));
        return type;
    }
};

TEST_F(AinrIntegrationTest, SystemCameraRuleAndCameraUnitClients) {
    LoadConfig(kEnable);
    EXPECT_EQ(-1, ConfigureClient("com.sys.camera", "", 0));
    EXPECT_EQ(-1, ConfigureClient("com.eng.mode", "", 0));
    EXPECT_EQ(2, ConfigureClient("com.sys.camera", "", 0, true));
}

TEST_F(AinrIntegrationTest, PrecedenceChain) {
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
        EXPECT_EQ(c.type, ConfigureClient(c.package, c.activity, c.cameraId, false, c.profile));
    }
    EXPECT_TRUE(LoggedExactly(
        "I VIULL m_clientPackageName: com.third.app, logicalCameraId: 1, keyCount: 1, "
        "valueCount: 1"));
}

}  // namespace
}  // namespace LumoraTest
