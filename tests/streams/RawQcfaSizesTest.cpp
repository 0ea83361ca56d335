// Remosaic capabilities of the physical cameras, by sensor name.
#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class RawQcfaSizesTest : public SessionTest {
protected:
    // Physical cameras 0..2 with their own sensors, and logical camera 3 made
    // of them.
    void StartTripleCamera() {
        m_device.Add(SingleCamera("wide", 0, 0));
        m_device.Add(SingleCamera("ultra", 1, 1));
        m_device.Add(SingleCamera("tele", 2, 2));
        m_device.Add(MultiCamera(3, 3, 3));
        Start(3);
    }
    void ConfigurePreview() {
        StreamConfig config;
        config.Add(PreviewStream());
        Configure(config);
    }
};

TEST_F(RawQcfaSizesTest, XcfaCapsFollowEachPhysicalCamerasSensor) {
    StartTripleCamera();
    LoadConfig(
        "[OemRemosaicConfig]\n4x4IZOOMPSensorNameList = wide, tele\nEnable2x2XCFA = true\n"
        "2x2XCFASensorNameList = tele, ultra\n4x4XCFADisableMultiFrame = true\n");
    ConfigurePreview();
    EXPECT_TRUE(Has(Caps4x4Izoom, 0));
    EXPECT_FALSE(Has(Caps2x2XCFA, 0));
    EXPECT_FALSE(Has(Caps4x4XCFADisableMultiFrame, 0));
    EXPECT_FALSE(Has(Caps4x4Izoom, 1));
    EXPECT_TRUE(Has(Caps2x2XCFA, 1));
    EXPECT_TRUE(Has(Caps4x4XCFADisableMultiFrame, 1));
    EXPECT_TRUE(Has(Caps4x4Izoom, 2));
    EXPECT_TRUE(Has(Caps2x2XCFA, 2));
    EXPECT_FALSE(Has(Caps2x2XCFA));
    EXPECT_TRUE(
        LoggedExactly("I 4x4IZOOMPSensorNameList: Enable4x4Izoom phyIndex 2 logicalCamId 2 "
                      "sensor tele"));

    // The master switch turns off 2x2 XCFA, not the 4x4 in-sensor zoom.
    LoadConfig(
        "[OemRemosaicConfig]\n4x4IZOOMPSensorNameList = wide\nEnable2x2XCFA = false\n"
        "2x2XCFASensorNameList = tele, ultra\n4x4XCFADisableMultiFrame = true\n");
    ConfigurePreview();
    EXPECT_TRUE(Has(Caps4x4Izoom, 0));
    EXPECT_FALSE(Has(Caps2x2XCFA, 1));
    EXPECT_FALSE(Has(Caps4x4XCFADisableMultiFrame, 1));
}

TEST_F(RawQcfaSizesTest, PhysicalIdsWithoutANameSlotMatchNoSensor) {
    CameraSetup setup = MultiCamera(2, 3, 3);
    setup.physicalCameras[1].physicalCamId = 200;
    m_device.Add(SingleCamera("wide", 0, 0));
    m_device.Add(setup);
    Start(3);
    LoadConfig("[OemRemosaicConfig]\nEnable2x2XCFA = true\n2x2XCFASensorNameList = wide, \n");
    ConfigurePreview();
    EXPECT_TRUE(Has(Caps2x2XCFA, 0));
    EXPECT_FALSE(Has(Caps2x2XCFA, 200));
}

}  // namespace
}  // namespace LumoraTest
