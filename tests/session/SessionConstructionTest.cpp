// Session object construction, the camera table and the session queries.
#include "session/SessionFixture.h"

namespace LumoraTest {
namespace {

using Lumora::IuiLayer;
using Lumora::TypeLogicalCamera;

class SessionConstructionTest : public SessionTest {};

TEST_F(SessionConstructionTest, CameraWithoutRecordAnswersNotSupported) {
    m_device = std::make_unique<TestDevice>();
    m_device->AddCameraWithoutRecord();
    m_device->Init();
    m_parser = IuiLayer::Get(0);
    EXPECT_TRUE(LoggedExactly("E pCamInfoMap is null"));
    EXPECT_TRUE(LoggedExactly(
        "E m_pCameraInfoMap is NULL for fwkCameraId 0, cannot initialize support caps"));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByCameraIndex(0));

    StreamConfig config(0x8001);
    config.Add(PreviewStream());
    EXPECT_EQ(0, Configure(config));
    for (uint32_t type : {0u, 1u, 2u, 8u, 255u}) {
        Lumora::_CapsBitset mask;
        m_parser->GetStaticCapsMask(static_cast<Lumora::QueryCapsType>(type), mask);
        EXPECT_FALSE(mask != Lumora::_CapsBitset()) << type;
        EXPECT_FALSE(m_parser->IsSessionSupportCaps(Lumora::CapsNotBokeh,
                                                    static_cast<Lumora::QueryCapsType>(type)));
    }
}

TEST_F(SessionConstructionTest, EmptyCameraTable) {
    m_device = std::make_unique<TestDevice>();
    m_device->Init();
    m_parser = IuiLayer::Get(3);
    EXPECT_TRUE(LoggedExactly(
        "E m_pCameraInfoMap is NULL for fwkCameraId 3, cannot initialize support caps"));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByCameraIndex(0));
}

TEST_F(SessionConstructionTest, MultiCameraTableAndSensorNames) {
    m_device = std::make_unique<TestDevice>();
    m_device->AddCamera(TestDevice::SingleCamera("s5k3p9", 0, 0));
    CameraSpec four = TestDevice::MultiCamera(4, 2, 1);
    for (uint32_t k = 0; k < 4; ++k) {
        four.physicalCameras[k].frameworkId = static_cast<int32_t>(10 + k);
    }
    m_device->AddCamera(four);
    m_device->AddCamera(TestDevice::MultiCamera(3, 5, 2));
    m_device->AddCamera(TestDevice::MultiCamera(2, 6, 3));
    m_device->Init();
    m_parser = IuiLayer::Get(2);

    EXPECT_EQ(10, m_parser->GetFwkCameraIdByCameraIndex(0));
    EXPECT_EQ(13, m_parser->GetFwkCameraIdByCameraIndex(3));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByCameraIndex(4));

    StreamConfig config;
    config.Add(PreviewStream());
    Configure(config);
    // Every camera's record names its sensor, whichever camera the session is.
    EXPECT_TRUE(LoggedExactly("I logicalCameraId 0, m_sensorNameList s5k3p9"));
    EXPECT_TRUE(LoggedExactly("I logicalCameraId 1, m_sensorNameList 4SatR"));
    EXPECT_TRUE(LoggedExactly("I logicalCameraId 2, m_sensorNameList 3SatR"));
    EXPECT_TRUE(LoggedExactly("I logicalCameraId 3, m_sensorNameList "));
    EXPECT_TRUE(
        LoggedExactly("I m_supportCaps camera info cameraIndex 3, logicalCamId 3 frameworkId 13 "
                      "physicalCamId 3 isPrimary 0"));

    // The sensor dimension rows carry the entries' physical camera ids.
    Lumora::_SensorDimension* rows = m_parser->GetSensorDimension();
    EXPECT_EQ(3u, rows[3].physicalCamId);
}

TEST_F(SessionConstructionTest, FlagWordFollowsTheRecordType) {
    for (uint32_t type : {0u, 2u, 3u, 4u}) {
        CameraSpec spec = TestDevice::SingleCamera("imx766");
        spec.type = type;
        m_device = std::make_unique<TestDevice>();
        m_device->AddCamera(spec);
        m_device->AddCamera(TestDevice::SingleCamera("imx586", 1, 1));
        m_device->Init();
        m_device->Record(0)->supportFlag = 7;
        m_device->Record(1)->supportFlag = 7;
        m_parser = IuiLayer::Get(0);
        EXPECT_EQ(type == 2 || type == 4 ? 1u : 0u, m_device->Record(0)->supportFlag) << type;
        // Only the parser's own camera's record is written.
        EXPECT_EQ(7u, m_device->Record(1)->supportFlag);
    }
}

TEST_F(SessionConstructionTest, LogicalIdOutOfRangeSkipsTheRecord) {
    Open(TestDevice::SingleCamera("imx766", 0, 16));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByCameraIndex(0));
    EXPECT_TRUE(LoggedContaining("m_pCameraInfoMap is NULL for fwkCameraId 0"));
}

TEST_F(SessionConstructionTest, PhysicalCameraCountIsClampedToEight) {
    CameraSpec spec = TestDevice::MultiCamera(9, 0, 0);
    Open(spec);
    EXPECT_EQ(7, m_parser->GetFwkCameraIdByCameraIndex(7));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByCameraIndex(8));

    StreamConfig config;
    config.Add(PreviewStream());
    Configure(config);
    EXPECT_TRUE(LoggedContaining("cameraIndex 7, logicalCamId 7"));
    EXPECT_FALSE(LoggedContaining("cameraIndex 8,"));
}

TEST_F(SessionConstructionTest, FrameworkIdOfStream) {
    OpenSingle();
    StreamConfig config;
    camera3_stream_t* physical = config.Add(PreviewStream(1920, 1080, "2"));
    camera3_stream_t* logical = config.Add(PreviewStream());
    StreamSpec nullId = PreviewStream();
    nullId.nullPhysicalId = true;
    camera3_stream_t* none = config.Add(nullId);
    EXPECT_EQ(2, m_parser->GetFwkCameraIdByStream(physical));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByStream(logical));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByStream(none));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByStream(nullptr));
}

TEST_F(SessionConstructionTest, NullConfigurationIsRefusedAndChangesNothing) {
    OpenMulti(3);
    StreamConfig config(0x8010);
    config.Add(PreviewStream(1920, 1080, "1"));
    config.Add(PreviewStream(1920, 1080, "2"));
    Configure(config);
    ASSERT_TRUE(Has(Lumora::CapsBokeh));

    EXPECT_EQ(4, m_parser->ParseStaticCapabilities(nullptr));
    EXPECT_TRUE(LoggedExactly("E Invalid Args"));
    EXPECT_TRUE(Has(Lumora::CapsBokeh));
}

TEST_F(SessionConstructionTest, SessionQueriesByCameraType) {
    OpenMulti(2);
    StreamConfig config(0x8001);
    config.SessionParams().Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, {30, 60});
    config.Add(PreviewStream());
    Configure(config);

    // The logical camera's group reports only its own supported bits and keeps
    // what the mask held.
    Lumora::_CapsBitset mask;
    mask.set(3);
    m_parser->GetStaticCapsMask(TypeLogicalCamera, mask);
    Lumora::_CapsBitset expected;
    expected.set(3).set(Lumora::CapsFps60);
    EXPECT_TRUE(mask == expected) << mask.to_string();

    // A camera type no entry has: nothing, even bits the logical set holds.
    EXPECT_TRUE(Has(Lumora::CapsSatFusion));
    EXPECT_FALSE(m_parser->IsSessionSupportCaps(Lumora::CapsSatFusion,
                                                static_cast<Lumora::QueryCapsType>(5)));
    EXPECT_THROW(m_parser->IsSessionSupportCaps(static_cast<Lumora::DesiredSupportCaps>(100),
                                                TypeLogicalCamera),
                 std::out_of_range);
}

}  // namespace
}  // namespace LumoraTest
