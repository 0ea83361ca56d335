// Sensor mode index: the forced index of the debug property and the table of
// clients other than the system camera.
#include <cutils/properties.h>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class SensorModeSelectionTest : public SessionTest {
protected:
    void StartWithForcedIndices(const char* list, const char* debugEnable = "1") {
        property_set("vendor.debug.camera.policy.debugEnable", debugEnable);
        property_set("vendor.debug.camera.policy.sensormode", list);
        OpenSingle();
        StreamConfig config;
        config.Add(PreviewStream());
        Configure(config);
    }
    // The index for a camera type, or 99 when the query forced nothing.
    int Forced(uint32_t type) {
        CameraLog();
        signed char index = 0;
        EXPECT_EQ(0, m_parser->GetSensorModeIndexByCaps(_CapsBitset(), QueryCapsType(type), index));
        return LoggedContaining("E Force Sensor Mode Index") ? index : 99;
    }
};

TEST_F(SensorModeSelectionTest, ForcedIndexPerCameraType) {
    StartWithForcedIndices("3,255,7");
    EXPECT_EQ(3, Forced(0));
    EXPECT_EQ(99, Forced(1));
    EXPECT_EQ(7, Forced(2));
    EXPECT_EQ(99, Forced(5));
    // Blanks around a number are no part of it.
    property_set("vendor.debug.camera.policy.sensormode", "5 , 6\t,\t 8 ");
    EXPECT_EQ(5, Forced(0));
    EXPECT_EQ(6, Forced(1));
    EXPECT_EQ(8, Forced(2));
}

TEST_F(SensorModeSelectionTest, ForcedIndexKeepsTheLowEightBits) {
    StartWithForcedIndices("-1,4");
    EXPECT_EQ(99, Forced(0));
    EXPECT_EQ(4, Forced(1));
    property_set("vendor.debug.camera.policy.sensormode", "300,1000000000000000000007,-2");
    EXPECT_EQ(44, Forced(0));
    EXPECT_EQ(7, Forced(1));
    EXPECT_EQ(-2, Forced(2));
}

TEST_F(SensorModeSelectionTest, MalformedPieceEndsTheList) {
    StartWithForcedIndices("3,x,7");
    EXPECT_EQ(3, Forced(0));
    EXPECT_EQ(99, Forced(1));
    EXPECT_EQ(99, Forced(2));
    for (const char* junk : {"abc", ",", "1-2", "0x3", "+", "5,,6"}) {
        SCOPED_TRACE(junk);
        property_set("vendor.debug.camera.policy.sensormode", junk);
        EXPECT_EQ(99, Forced(2));
    }
}

TEST_F(SensorModeSelectionTest, PropertyIgnoredWithoutDebug) {
    StartWithForcedIndices("3", "0");
    EXPECT_EQ(99, Forced(0));
}

TEST_F(SensorModeSelectionTest, OrdinaryClientWithoutRowsGetsNoMode) {
    OpenSingle();
    StreamConfig config;
    config.Add(PreviewStream(1920, 1080));
    Configure(config);
    CameraLog();
    signed char index = 5;
    EXPECT_EQ(0, m_parser->GetSensorModeIndexByCaps(_CapsBitset(), TypeLogicalCamera, index));
    EXPECT_EQ(-1, index);
    EXPECT_TRUE(LoggedExactly(
        "I The keyCount of OtherCamSensorSettingMap: 0, package name: , activity name: "));
    EXPECT_TRUE(LoggedExactly("I width : 1920, height: 1080,fps :0"));
}

}  // namespace
}  // namespace LumoraTest
