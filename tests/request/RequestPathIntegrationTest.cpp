// The request path on sessions configured through the real configuration path:
// operation mode, frame rate, lux and main-menu flag from the session
// parameters, streams classified by role.
#include "support/TestDevice.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class RequestPathIntegrationTest : public UiLayerTest {
protected:
    void SetUp() override {
        UiLayerTest::SetUp();
        m_device.Add(SingleCamera("wide"));
        m_device.Init();
        m_root.Activate();
        m_parser = IuiLayer::Get(0);
    }
    // A 60 fps session at lux 105 opened from the main menu, with one preview.
    camera3_stream_t* Configure(uint32_t operationMode) {
        m_config.SetOperationMode(operationMode);
        m_config.SessionParams()
            .Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, {30, 60})
            .VendorFloat(kTagWarmStartLux, 105.0f)
            .VendorByte(kTagCameraFromMainMenu, 1);
        camera3_stream_t* preview = m_config.Add(PreviewStream());
        EXPECT_EQ(0, m_parser->ParseStaticCapabilities(m_config.Get()));
        EXPECT_EQ(0, m_parser->ParseStreamCapabilities(m_config.Get()));
        return preview;
    }
    DeviceRoot m_root;
    CameraTable m_device;
    std::shared_ptr<IuiLayer> m_parser;
    StreamConfig m_config;
};

TEST_F(RequestPathIntegrationTest, WarmStartOfTheSessionDecidesRequestsWithoutSettings) {
    LoadConfig("[WarmDolState]\nMode[0] = 0x8001, 0, 1, 10, 2000, 50, 5, 3, 4, 60\n");
    m_root.WriteFile("/data/vendor/camera/aecWarmStartCamera_0.txt", "0 0 0 5 50 0 0 100 0\n");
    camera3_stream_t* preview = Configure(0x8001);
    unsigned int enable = 0;
    int dolState = 0;
    m_parser->GetWarmStartStateByCaps(0, enable, dolState);
    EXPECT_EQ(1u, enable);
    EXPECT_EQ(4, dolState);

    Request request(1);
    request.Buffer(preview);
    EXPECT_EQ(0, m_parser->UpdatePerRequestCaps(request.Get()));
    EXPECT_TRUE(
        m_parser->IsRequestSupportCaps(1, Caps3DolStreaming, static_cast<QueryCapsType>(0)));
    EXPECT_TRUE(m_parser->IsRequestSupportCaps(1, CapsStreamPreview, TypeLogicalCamera));
    EXPECT_EQ(1u, m_parser->GetStreamByStreamType(1, EStreamTypePreview)->size());
    // Query types count by their low 8 bits: 0x107 is the logical camera, 0x100 camera 0.
    EXPECT_TRUE(
        m_parser->IsRequestSupportCaps(1, CapsStreamPreview, static_cast<QueryCapsType>(0x107)));
    EXPECT_EQ(m_parser->GetRequestSupportCaps(1, TypeLogicalCamera),
              m_parser->GetRequestSupportCaps(1, static_cast<QueryCapsType>(0x107)));
    EXPECT_EQ(m_parser->GetRequestSupportCaps(1, static_cast<QueryCapsType>(0)),
              m_parser->GetRequestSupportCaps(1, static_cast<QueryCapsType>(0x100)));
}

}  // namespace
}  // namespace LumoraTest
