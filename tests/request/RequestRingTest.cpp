// The request ring and the request settings, through the parser interface.
#include <regex>

#include "support/TestDevice.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class RequestRingTest : public UiLayerTest {
protected:
    void SetUp() override {
        UiLayerTest::SetUp();
        m_device.Add(SingleCamera("wide"));
        m_device.Init();
        m_parser = IuiLayer::Get(0);
    }
    void Configure() {
        ASSERT_EQ(0, m_parser->ParseStaticCapabilities(m_config.Get()));
        ASSERT_EQ(0, m_parser->ParseStreamCapabilities(m_config.Get()));
        CameraLog();
    }
    CameraTable m_device;
    std::shared_ptr<IuiLayer> m_parser;
    StreamConfig m_config;
};

TEST_F(RequestRingTest, FramesAreFoundUntilTheirSlotIsReused) {
    Configure();
    EXPECT_FALSE(m_parser->IsRequestSupportCaps(65535, CapsStreamPreview, TypeLogicalCamera));
    EXPECT_TRUE(
        LoggedExactly("E GetRDC return NULL. index:255 frameNum:65535 GetFrameworkFramenum:65535"));

    Request frame5(5);
    EXPECT_EQ(4, m_parser->UpdatePerRequestCaps(frame5.Get()));
    CameraLog();
    EXPECT_FALSE(m_parser->IsRequestSupportCaps(5, CapsStreamPreview, TypeLogicalCamera));
    ASSERT_NE(nullptr, m_parser->GetStreamByStreamType(5, EStreamTypePreview));
    EXPECT_TRUE(m_parser->GetStreamByStreamType(5, static_cast<StreamType>(40))->empty());
    EXPECT_EQ(
        std::vector<std::string>{"I frame number 5 bSupport 0 query supportCaps 0 cameraType 7"},
        CameraLog());

    HostPlatform::TakeAndroidLog();
    EXPECT_FALSE(m_parser->IsRequestSupportCaps(261, CapsStreamPreview, TypeLogicalCamera));
    // The ring queries write from the ring's header.
    const std::string from = R"(\[ERROR\]\[LUMORA\] RDCMap\.h:\d+ )";
    const auto android = HostPlatform::TakeAndroidLog();
    ASSERT_EQ(2u, android.size());
    EXPECT_TRUE(std::regex_match(
        android[0],
        std::regex(from + R"(GetRDC\(\) GetRDC return NULL\. index:5 frameNum:261 .*\n)")))
        << android[0];
    EXPECT_TRUE(std::regex_match(
        android[1],
        std::regex(from + R"(IsRequestSupportCaps\(\) Failed to get RDC for frame 261\n)")))
        << android[1];
    EXPECT_EQ((std::vector<std::string>{
                  "E GetRDC return NULL. index:5 frameNum:261 GetFrameworkFramenum:5",
                  "E Failed to get RDC for frame 261"}),
              CameraLog());
    EXPECT_EQ(_CapsBitset(), m_parser->GetRequestSupportCaps(261, TypeLogicalCamera));
    EXPECT_EQ(0xFFFFFFFFu, m_parser->GetOriginalRequestTuningMode(261, TypeFeature1Snapshot));
    EXPECT_EQ(nullptr, m_parser->GetStreamByStreamType(261, EStreamTypePreview));

    Request frame261(261);
    frame261.SensorModes({1});
    EXPECT_EQ(0, m_parser->UpdatePerRequestCaps(frame261.Get()));
    EXPECT_EQ(_CapsBitset(), m_parser->GetRequestSupportCaps(5, TypeLogicalCamera));
    EXPECT_TRUE(LoggedExactly("E GetRDC return NULL. index:5 frameNum:5 GetFrameworkFramenum:261"));
    EXPECT_TRUE(m_parser->IsRequestSupportCaps(261, CapsSensorModeFlag19, TypeLogicalCamera));
    EXPECT_TRUE(LoggedExactly("I frame number 261 bSupport 1 query supportCaps 19 cameraType 7"));

    Result bare(261, false);
    EXPECT_EQ(0, m_parser->UpdateResultAppliedCaps(bare.Get()));
}

TEST_F(RequestRingTest, SettingsCarryOverInTheSlotAndDriveTheMoonLayout) {
    LoadConfig("[OEMFeature2ModeMatch]\nMode[0] = 7, -1, -1, 3, -1, -1, -1\n");
    Configure();
    Request first(1);
    first.Settings().VendorInt32(kTagBracketMode, {3}).VendorInt32(kTagAsdSceneValue, {29});
    m_parser->UpdatePerRequestCaps(first.Get());
    EXPECT_EQ(7u, m_parser->GetOriginalRequestTuningMode(1, TypeFeature2Snapshot));

    // Frame 257 reuses the slot: bracket mode and scene stay as frame 1 left them.
    Request reuse(257);
    reuse.Settings().VendorInt32(kTagPipSensor, {1});
    CameraLog();
    m_parser->UpdatePerRequestCaps(reuse.Get());
    EXPECT_EQ(7u, m_parser->GetOriginalRequestTuningMode(257, TypeFeature2Snapshot));
    EXPECT_TRUE(m_parser->IsRequestSupportCaps(257, CapsMoonLayout, TypeLogicalCamera));
    EXPECT_FALSE(LoggedContaining("bracketMode"));
    EXPECT_TRUE(LoggedExactly("I moon layout condition met"));

    const struct {
        int32_t scene;
        int32_t pip;
        bool moon;
    } cases[] = {{30, 1, true}, {29, 0, false}, {31, 1, false}, {28, 1, false}};
    for (const auto& c : cases) {
        Request request(2);
        request.Settings()
            .VendorInt32(kTagAsdSceneValue, {c.scene})
            .VendorInt32(kTagPipSensor, {c.pip});
        m_parser->UpdatePerRequestCaps(request.Get());
        EXPECT_EQ(c.moon, m_parser->IsRequestSupportCaps(2, CapsMoonLayout, TypeLogicalCamera));
        EXPECT_TRUE(
            LoggedExactly(c.moon ? "I moon layout condition met" : "I moon layout NOT trigger"));
    }
    Request noFlag(2);
    noFlag.Settings().VendorInt32(kTagAsdSceneValue, {29});
    CameraLog();
    m_parser->UpdatePerRequestCaps(noFlag.Get());
    EXPECT_FALSE(LoggedContaining("moon layout"));
    EXPECT_EQ(0xFFFFFFFFu, m_parser->GetOriginalRequestTuningMode(2, TypeFeature2Snapshot));
}

}  // namespace
}  // namespace LumoraTest
