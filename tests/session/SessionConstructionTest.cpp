// Session object construction, the camera table and the session queries.
#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class SessionConstructionTest : public SessionTest {
protected:
    void ConfigurePreview(uint32_t mode = 0) {
        StreamConfig config(mode);
        config.SessionParams().Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, {30, 60});
        config.Add(PreviewStream());
        Configure(config);
    }
};

TEST_F(SessionConstructionTest, WithoutItsRecordNoCameraIsSupported) {
    m_device.AddWithoutRecord();
    m_device.Add(SingleCamera("imx766", 1, 16));  // logical id out of range
    m_device.Init();
    for (unsigned int id : {0u, 1u}) {
        m_parser = IuiLayer::Get(id);
        EXPECT_TRUE(LoggedContaining("E m_pCameraInfoMap is NULL for fwkCameraId " +
                                     std::to_string(id) + ", cannot initialize support caps"));
        EXPECT_EQ(-1, m_parser->GetFwkCameraIdByCameraIndex(0));
        ConfigurePreview(0x8001);
        for (uint32_t type : {0u, 1u, 16u, 255u}) {
            _CapsBitset mask;
            m_parser->GetStaticCapsMask(static_cast<QueryCapsType>(type), mask);
            EXPECT_TRUE(mask == _CapsBitset()) << type;
            EXPECT_FALSE(
                m_parser->IsSessionSupportCaps(CapsNotBokeh, static_cast<QueryCapsType>(type)));
        }
    }
    EXPECT_TRUE(LoggedExactly("E pCamInfoMap is null"));
}

TEST_F(SessionConstructionTest, CameraTableAndSensorNames) {
    m_device.Add(SingleCamera("s5k3p9", 0, 0));
    CameraSetup four = MultiCamera(4, 2, 1);
    for (uint32_t k = 0; k < 4; ++k) {
        four.physicalCameras[k].frameworkId = static_cast<int32_t>(10 + k);
    }
    m_device.Add(four);
    m_device.Add(MultiCamera(3, 5, 2));
    m_device.Add(MultiCamera(2, 6, 3));
    m_device.Init();
    m_parser = IuiLayer::Get(2);
    EXPECT_EQ(10, m_parser->GetFwkCameraIdByCameraIndex(0));
    EXPECT_EQ(13, m_parser->GetFwkCameraIdByCameraIndex(3));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByCameraIndex(4));

    ConfigurePreview();
    // Every camera's record names its sensor, whichever camera the session is.
    EXPECT_TRUE(LoggedExactly("I logicalCameraId 0, m_sensorNameList s5k3p9"));
    EXPECT_TRUE(LoggedExactly("I logicalCameraId 1, m_sensorNameList 4SatR"));
    EXPECT_TRUE(LoggedExactly("I logicalCameraId 2, m_sensorNameList 3SatR"));
    EXPECT_TRUE(LoggedExactly("I logicalCameraId 3, m_sensorNameList "));
    EXPECT_EQ(3u, m_parser->GetSensorDimension()[3].physicalCamId);
}

TEST_F(SessionConstructionTest, CameraCountIsKeptInEightBits) {
    // 257 cameras are walked as one, 256 as none.
    for (uint32_t withoutRecord : {255u, 254u}) {
        m_device.Clear();
        m_device.Add(SingleCamera("imx766", 0, 0));
        m_device.Add(SingleCamera("imx586", 1, 1));
        for (uint32_t k = 0; k < withoutRecord; ++k) {
            m_device.AddWithoutRecord();
        }
        m_device.Init();
        CameraLog();
        const bool oneWalked = m_device.Count() == 257;
        m_parser = IuiLayer::Get(0);
        EXPECT_EQ(oneWalked ? 0 : -1, m_parser->GetFwkCameraIdByCameraIndex(0));
        m_parser = IuiLayer::Get(1);
        EXPECT_EQ(-1, m_parser->GetFwkCameraIdByCameraIndex(0));
        EXPECT_TRUE(LoggedExactly(
            "E m_pCameraInfoMap is NULL for fwkCameraId 1, cannot initialize support caps"));
        EXPECT_FALSE(LoggedContaining("pCamInfoMap is null"));
    }
}

TEST_F(SessionConstructionTest, PhysicalCameraCountIsClampedToEight) {
    Open(MultiCamera(9, 0, 0));
    EXPECT_EQ(7, m_parser->GetFwkCameraIdByCameraIndex(7));
    EXPECT_EQ(-1, m_parser->GetFwkCameraIdByCameraIndex(8));
}

TEST_F(SessionConstructionTest, FlagWordFollowsTheRecordType) {
    for (uint32_t type : {0u, 2u, 3u, 4u}) {
        m_device.Clear();
        CameraSetup camera = SingleCamera("imx766");
        camera.type = type;
        m_device.Add(camera);
        m_device.Add(SingleCamera("imx586", 1, 1));
        m_device.Init();
        m_device.Record(0)->supportFlag = 7;
        m_device.Record(1)->supportFlag = 7;
        m_parser = IuiLayer::Get(0);
        EXPECT_EQ(type == 2 || type == 4 ? 1u : 0u, m_device.Record(0)->supportFlag) << type;
        EXPECT_EQ(7u, m_device.Record(1)->supportFlag);  // only the own camera's record
    }
}

TEST_F(SessionConstructionTest, SessionQueries) {
    OpenMulti(2);
    EXPECT_EQ(4, m_parser->ParseStaticCapabilities(nullptr));
    ConfigurePreview(0x8001);
    EXPECT_EQ(4, m_parser->ParseStaticCapabilities(nullptr));
    EXPECT_TRUE(Has(CapsSatFusion));  // the refused configuration changed nothing

    // The logical group adds only its own supported bits to what the mask held.
    _CapsBitset mask;
    mask.set(3);
    m_parser->GetStaticCapsMask(TypeLogicalCamera, mask);
    EXPECT_TRUE(mask == _CapsBitset().set(3).set(CapsFps60)) << mask.to_string();
    // A camera type that no entry has supports nothing.
    EXPECT_FALSE(m_parser->IsSessionSupportCaps(CapsSatFusion, static_cast<QueryCapsType>(5)));
    // Camera types are compared on their low 8 bits: 0x107 is the logical camera.
    EXPECT_EQ(m_parser->IsSessionSupportCaps(CapsFps60, TypeLogicalCamera),
              m_parser->IsSessionSupportCaps(CapsFps60, static_cast<QueryCapsType>(0x107)));
    _CapsBitset wide;
    m_parser->GetStaticCapsMask(static_cast<QueryCapsType>(0x107), wide);
    _CapsBitset logical;
    m_parser->GetStaticCapsMask(TypeLogicalCamera, logical);
    EXPECT_TRUE(wide == logical) << wide.to_string();
    EXPECT_THROW(
        m_parser->IsSessionSupportCaps(static_cast<DesiredSupportCaps>(100), TypeLogicalCamera),
        std::out_of_range);
}

}  // namespace
}  // namespace LumoraTest
