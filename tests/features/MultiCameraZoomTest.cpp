// Multi-camera zoom record for an ordinary (third-party) client, which is what
// a session without any package configuration sees.
#include <cutils/properties.h>

#include <string>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

class MultiCameraZoomTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        m_device.Add(SingleCamera("imx766", 0, 0));
        m_device.Add(MultiCamera(3, 1, 1));
        m_device.Init();
    }
    const Lumora::_SatStaticCaps& ConfigureWith(const StreamSetup& stream, unsigned int id = 0) {
        StreamConfig config;
        config.Add(stream);
        Configure(config, id);
        return *m_parser->GetSatStaticCaps();
    }
};

TEST_F(MultiCameraZoomTest, ThirdPartyClientDefaults) {
    // Outside a bokeh session bokeh seamless zoom is allowed whatever the list.
    LoadConfig(
        "[BokehSATConfig]\nsupportBokehIzoomSeamless = 0x8010\n"
        "[SatSmoothZoom]\nUseAIDLInput = true\n");
    const Lumora::_SatStaticCaps& sat = ConfigureWith(PreviewStream());
    EXPECT_TRUE(Has(Lumora::CapsBokehOrSingleCamera));
    EXPECT_EQ(8u, sat.fallbackUsecase);
    EXPECT_EQ(1u, sat.forceFallback);
    EXPECT_EQ(0u, sat.supportZoomDivision);
    EXPECT_EQ(1u, sat.supportBokehIzoomSeamless);
    EXPECT_EQ(0u, sat.enableSmoothZoom + sat.useAIDLInput);
    EXPECT_EQ("ZoomDivisionCurveCfg_Photo_", sat.zoomDivisionCurveCfgPrefix);
    EXPECT_TRUE(LoggedContaining("I fallbackUsecase is 8 operationMode is 0x"));

    ConfigureWith(PreviewStream(), 1);
    EXPECT_FALSE(Has(Lumora::CapsBokehOrSingleCamera));
}

TEST_F(MultiCameraZoomTest, FallbackProperties) {
    // Decimal numbers; anything else reads as 0. Forcing depends on the client.
    const struct {
        const char* detect;
        const char* debug;
        uint32_t fallbackUsecase, fallbackDebug;
    } cases[] = {{"", "", 8, 0},
                 {"0", "1", 0, 1},
                 {"on", "7", 0, 1},
                 {"2", "-3", 8, 0},
                 {"-1", "yes", 0, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.detect) + "/" + c.debug);
        property_set("persist.vendor.camera.sat.enable.fallbackdetect", c.detect);
        property_set("persist.vendor.camera.sat.enable.fallbackdebug", c.debug);
        const Lumora::_SatStaticCaps& sat = ConfigureWith(PreviewStream());
        EXPECT_EQ(c.fallbackUsecase, sat.fallbackUsecase);
        EXPECT_EQ(c.fallbackDebug, sat.fallbackDebug);
        EXPECT_EQ(1u, sat.forceFallback);
    }
}

TEST_F(MultiCameraZoomTest, WirelessChargingTurnsFallbackDetectionOff) {
    constexpr const char* kWirelessState = "/sys/class/power_supply/wireless/online";
    const struct {
        const char* content;  // null: no node
        bool switchOn;
        const char* line;
        uint32_t fallbackUsecase;
    } cases[] = {
        {"1\n", true, "read wireless_stat is 1 result 0 isEnablewireless 1", 0},
        {"1", true, "read wireless_stat is 1 result 0 isEnablewireless 1", 0},
        {"1\n", false, "read wireless_stat is 1 result 0 isEnablewireless 0", 8},
        {"0\n", true, "read wireless_stat is 0 result 0 isEnablewireless 1", 8},
        {nullptr, true, "read wireless_stat is 0 result -2 isEnablewireless 1", 8},
        {"", true, "read wireless_stat is 0 result -1 isEnablewireless 1", 8},
        {"on\n", true, "read wireless_stat is 0 result 0 isEnablewireless 1", 8},
        {"10000000001\n", true, "read wireless_stat is 1000 result 0 isEnablewireless 1", 8},
    };
    DeviceRoot root;
    root.Activate();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        root.RemoveFile(kWirelessState);
        if (c.content != nullptr) {
            root.WriteFile(kWirelessState, c.content);
        }
        LoadConfig(std::string("[SatFallback]\nisEnablewireless = ") +
                   (c.switchOn ? "1\n" : "0\n"));
        EXPECT_EQ(c.fallbackUsecase, ConfigureWith(PreviewStream()).fallbackUsecase);
        EXPECT_TRUE(LoggedExactly(std::string("I ") + c.line));
    }
}

TEST_F(MultiCameraZoomTest, VideoSessionSettings) {
    LoadConfig(
        "[4SatSmoothZoom]\nvideoMaxRtCount = 5\n[SatPointZoomSkip]\n"
        "isEnableSkipMiddleSensor = true\nEnablePointZoomskipForVideo = false\n");
    const Lumora::_SatStaticCaps& sat = ConfigureWith(VideoStream(), 1);
    EXPECT_EQ(5, sat.videoMaxRtCount);
    EXPECT_EQ(0u, sat.isEnableSkipMiddleSensor);
    EXPECT_EQ("ZoomDivisionCurveCfg_Video_", sat.zoomDivisionCurveCfgPrefix);

    // A HEIF stream with a video usage bit is a still.
    StreamSetup still = VideoStream();
    still.dataSpace = 0x1004;
    ConfigureWith(still, 1);
    EXPECT_EQ(0, sat.videoMaxRtCount);
    EXPECT_EQ(1u, sat.isEnableSkipMiddleSensor);
    EXPECT_EQ("ZoomDivisionCurveCfg_Photo_", sat.zoomDivisionCurveCfgPrefix);
}

}  // namespace
}  // namespace LumoraTest
