// Video stabilisation and in-sensor zoom with the operation mode and camera
// mode of the session parameters.
#include <string>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

class VideoFeaturesIntegrationTest : public SessionTest {
protected:
    void ConfigureMode(unsigned int cameraId, uint32_t operationMode, const std::string& cameraMode,
                       int stabilization = -1) {
        StreamConfig config(operationMode);
        config.Add(VideoStream());
        config.SessionParams().VendorString(Lumora::kTagCameraMode, cameraMode);
        if (stabilization >= 0) {
            config.SessionParams().Byte(ANDROID_CONTROL_VIDEO_STABILIZATION_MODE,
                                        static_cast<uint8_t>(stabilization));
        }
        ConfigureFresh(config, cameraId);
    }
};

TEST_F(VideoFeaturesIntegrationTest, EisBySensorNameThenClearedInProVideo) {
    LoadConfig(
        "[EISTypeMatching]\nMode[0] = 0x8002, imx766\nMode[1] = 0x8001, ov50, imx76\n"
        "Mode[2] = 0x8001, ov50, imx766\nMode[3] = 0x8001\nMode[4] = 0x8005, 3SatR\n");
    m_device.Add(SingleCamera("imx766", 0, 0));
    m_device.Add(SingleCamera("imx76", 1, 1));
    m_device.Add(MultiCamera(3, 2, 2));
    m_device.Add(SingleCamera("imx766", 3, 16));  // a logical id without a sensor name
    m_device.Init();
    const struct {
        unsigned int cameraId;
        uint32_t operationMode;
        const char* cameraMode;
        int stabilization;
        bool videoEis;
    } cases[] = {
        {0, 0x8001, "video_mode", -1, true},
        {0, 0x8002, "video_mode", -1, true},
        {0, 0x8005, "video_mode", -1, false},
        {1, 0x8001, "video_mode", -1, true},  // names are compared whole
        {1, 0x8002, "video_mode", -1, false},
        {2, 0x8005, "video_mode", -1, true},
        // The pro video mode keeps it off unless the application asks.
        {0, 0x8001, "pro_video_mode", 0, false},
        {0, 0x8001, "pro_video_mode", 1, true},
        {0, 0x8001, "pro_video_mode_x", 0, true},
        {3, 0x8002, "video_mode", -1, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.cameraId << " " << std::hex << c.operationMode << " " << c.cameraMode);
        ConfigureMode(c.cameraId, c.operationMode, c.cameraMode, c.stabilization);
        EXPECT_EQ(c.videoEis, Has(Lumora::CapsVideoEIS));
    }
    EXPECT_TRUE(LoggedExactly("I [OP_EXT] : operationmode:0x8005, cameraName:3SatR, VideoEisMode"));
}

TEST_F(VideoFeaturesIntegrationTest, ProVideoInSensorZoomByCameraMask) {
    CameraSetup setup = MultiCamera(3, 0, 0);
    setup.physicalCameras[2].physicalCamId = 34;  // mask bit 2
    m_device.Add(setup);
    m_device.Init();
    const struct {
        const char* config;
        const char* cameraMode;
        bool disabled[3];
    } cases[] = {
        {"", "pro_video_mode", {true, true, true}},
        {"[InsensorZoom]\nsupportProVideoIZoomCamIdMask = 0x5\n",
         "pro_video_log_mode",
         {false, true, false}},
        {"[InsensorZoom]\nsupportProVideoIZoomCamIdMask = 0x0\n",
         "video_mode",
         {false, false, false}},
    };
    const uint32_t ids[3] = {0, 1, 34};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.config) + c.cameraMode);
        LoadConfig(c.config);
        ConfigureMode(0, 0x8001, c.cameraMode);
        for (int k = 0; k < 3; ++k) {
            EXPECT_EQ(c.disabled[k], Has(Lumora::CapsDisableProVideoIZoom, ids[k])) << ids[k];
        }
    }
    EXPECT_TRUE(LoggedExactly("I physical 34 DisableProVideoIZoom 0"));
}

}  // namespace
}  // namespace LumoraTest
