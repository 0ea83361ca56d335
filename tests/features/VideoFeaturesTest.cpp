// Video features decided from the raw configuration, the session parameters
// and the hardware configuration alone.
#include <string>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using Lumora::CapsDisableProVideoIZoom;
using Lumora::CapsFlowControl;
using Lumora::CapsPhotoRealtimeEIS;
using Lumora::CapsVideoEIS;
using Lumora::CapsVideoHalWatermark;

class VideoFeaturesTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        m_device.Add(SingleCamera("imx766", 0, 0));
        m_device.Add(MultiCamera(2, 1, 1));
        m_device.Init();
    }
};

TEST_F(VideoFeaturesTest, StabilizationModeAndPhotoRealtimeEis) {
    // The photo list holds raw modes: 0x8105 is not 0x8005 here.
    LoadConfig("[PhotoRealtimeEIS]\noperationMode = 0x8105\n");
    const struct {
        unsigned int cameraId;
        uint32_t operationMode;
        int stabilization;  // -1: no session parameter
        bool videoEis, photoEis;
    } cases[] = {{0, 0, 2, true, false},
                 {0, 0, 0, false, false},
                 {1, 0x8105, -1, false, true},
                 {1, 0x8005, -1, false, false},
                 {0, 0x8105, -1, false, false}};  // needs a second camera
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.cameraId << " " << std::hex << c.operationMode);
        StreamConfig config(c.operationMode);
        config.Add(VideoStream());
        if (c.stabilization >= 0) {
            config.SessionParams().Byte(ANDROID_CONTROL_VIDEO_STABILIZATION_MODE,
                                        static_cast<uint8_t>(c.stabilization));
        }
        Configure(config, c.cameraId);
        EXPECT_EQ(c.videoEis, Has(CapsVideoEIS));
        EXPECT_EQ(c.photoEis, Has(CapsPhotoRealtimeEIS));
        if (c.stabilization >= 0) {
            EXPECT_EQ(static_cast<unsigned int>(c.stabilization), m_parser->GetVideoStabMode());
        }
    }
    EXPECT_TRUE(LoggedExactly("I videoStabilizationMode: 2"));
    EXPECT_TRUE(LoggedExactly("I operation mode: 0x8105  enablePhotoEIS 1"));
}

TEST_F(VideoFeaturesTest, FlowControlAndWatermark) {
    const std::string hal = "[TavroVideoWaterMarkParams]\nvideoHalWatermarkEnable = true\n";
    const struct {
        std::string config;
        int watermarkTag;  // -1: absent
        bool flowControl, watermark;
    } cases[] = {{"", 1, false, false},
                 {hal, -1, false, false},
                 {hal, 0, false, false},
                 {hal, 1, false, true},
                 {"[FlowControl]\nisEnableFlowControl = true\n", 1, true, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.config + std::to_string(c.watermarkTag));
        LoadConfig(c.config);
        StreamConfig config;
        config.Add(VideoStream());
        if (c.watermarkTag >= 0) {
            config.SessionParams().VendorByte(Lumora::kTagVideoWatermark,
                                              static_cast<uint8_t>(c.watermarkTag));
        }
        Configure(config);
        EXPECT_EQ(c.flowControl, Has(CapsFlowControl));
        EXPECT_EQ(c.watermark, Has(CapsVideoHalWatermark));
    }
    EXPECT_TRUE(LoggedExactly("I videoWatermarkEnable: 1, videoHalWatermarkEnable: 0"));
    EXPECT_TRUE(LoggedExactly("I EnableFlowControl"));
}

TEST_F(VideoFeaturesTest, InSensorZoomUntouchedOutsideProVideo) {
    StreamConfig config;
    config.Add(VideoStream());
    Configure(config, 1);
    EXPECT_FALSE(Has(CapsDisableProVideoIZoom, 0) || Has(CapsDisableProVideoIZoom, 1));
    EXPECT_TRUE(LoggedExactly("I sessionParams.cameraMode , numPhysicalCameras 2"));
}

}  // namespace
}  // namespace LumoraTest
