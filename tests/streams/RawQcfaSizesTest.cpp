// Remosaic capabilities of the physical cameras, by sensor name.
#include "streams/SessionTestSupport.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class RawQcfaSizesTest : public SessionTest {
protected:
    // Physical cameras 0..2 with their own sensors, and logical camera 3 made
    // of them.
    void StartTripleCamera() {
        device.AddCamera(TestDevice::SingleCamera("wide", 0, 0));
        device.AddCamera(TestDevice::SingleCamera("ultra", 1, 1));
        device.AddCamera(TestDevice::SingleCamera("tele", 2, 2));
        device.AddCamera(TestDevice::MultiCamera(3, 3, 3));
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
    CameraSetup setup = TestDevice::MultiCamera(2, 3, 3);
    setup.physicalCameras[1].physicalCamId = 200;
    device.AddCamera(TestDevice::SingleCamera("wide", 0, 0));
    device.AddCamera(setup);
    Start(3);
    LoadConfig("[OemRemosaicConfig]\nEnable2x2XCFA = true\n2x2XCFASensorNameList = wide, \n");
    ConfigurePreview();
    EXPECT_TRUE(Has(Caps2x2XCFA, 0));
    EXPECT_FALSE(Has(Caps2x2XCFA, 200));
}

}  // namespace
}  // namespace LumoraTest
