// AEC warm start records from the configuration and the saved exposure files.
#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

// Rows: operation mode, camera, enable, lux threshold 10, maxLux, max B 50,
// min A 5, DOL types 2 and 3, fps.
constexpr const char* kRows =
    "[WarmDolState]\n"
    "Mode[0] = 0x8001, 0, 1, 10, 2000, 50, 5, 2, 3, -1\n"
    "Mode[1] = 0x8001, 9, 1, 10, 500, 50, 5, 4, 5, 30\n"
    "Mode[2] = 0x8001, 9, 0, 10, 500, 50, 5, 6, 7, 60\n"
    "Mode[3] = 0x8002, 0, 1, 10, 500, 50, 5, 8, 9, -1\n";

class WarmStartTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        Build(MultiCamera(2, 0, 0));
        m_root.Activate();
        m_peer->SetOperationMode(0x8001);
        m_peer->SetMaxFps(60);
    }
    void SaveState(uint32_t cam, const std::string& line) {
        m_root.WriteFile("/data/vendor/camera/aecWarmStartCamera_" + std::to_string(cam) + ".txt",
                         line);
    }
    // Saved values A, B and lux in the file's fourth, fifth and eighth places.
    void Save(uint32_t cam, float a, float b, float lux) {
        SaveState(cam, "1 2 3 " + std::to_string(a) + " " + std::to_string(b) + " 6 7 " +
                           std::to_string(lux) + " 9\n");
    }
    DeviceRoot m_root;
};

TEST_F(WarmStartTest, RowsApplyByModeAndFrameRate) {
    LoadConfig(kRows);
    m_peer->ConfigWarmStart();
    // Row 1 (30 fps) is skipped; row 2 fills record 9 & 7 = 1; row 3 is another mode.
    EXPECT_EQ(1u, m_peer->WarmStart(0).warmStartEnable);
    EXPECT_EQ(2, m_peer->WarmStart(0).dolState);
    EXPECT_EQ(0u, m_peer->WarmStart(1).warmStartEnable);
    EXPECT_EQ(6, m_peer->WarmStart(1).dolState);
    EXPECT_TRUE(LoggedExactly(
        "I warm start config: operation_mode:0x8001 cfgPhyCameraId 1, warmStartEnable 0, "
        "aecDolType1:6, aecDolType2:7"));
    EXPECT_TRUE(LoggedExactly("E Get WarmStartFile failed"));
    EXPECT_TRUE(
        LoggedExactly("I warm start physicalCamId 0 warmStartEnable 1 warmStartDolState 2"));

    unsigned int enable = 77;
    int dolState = 77;
    m_session->GetWarmStartStateByCaps(1, enable, dolState);
    EXPECT_EQ(0u, enable);
    EXPECT_EQ(6, dolState);
    m_session->GetWarmStartStateByCaps(5, enable, dolState);  // no such camera: untouched
    EXPECT_EQ(6, dolState);
}

TEST_F(WarmStartTest, SavedStateChoosesTheDolTypeWithExactBounds) {
    LoadConfig(kRows);
    const struct {
        float a, b, savedLux, currentLux;
        int32_t dolState;
    } cases[] = {
        {5, 50, 100, 105, 3},     // close, A and B on their bounds
        {5, 50.5f, 100, 105, 2},  // B above its bound
        {4.9f, 10, 100, 105, 2},  // A below its bound
        {5, 50, 100, 110, 3},     // difference equal to the threshold: far, dim enough
        {5, 50, 2000, 2010, 2},   // difference equal to the threshold: far, too bright
        {5, 50, 10, 1000, 3},     // far, lux under maxLux 2000
        {5, 50, 10, 2000, 3},     // far, lux on maxLux
        {5, 50, 10, 2001, 2},     // far, too bright
    };
    for (const auto& c : cases) {
        Save(0, c.a, c.b, c.savedLux);
        m_peer->SetWarmStartLux(c.currentLux);
        m_peer->ConfigWarmStart();
        EXPECT_EQ(c.dolState, m_peer->WarmStart(0).dolState)
            << c.a << " " << c.b << " " << c.savedLux << " " << c.currentLux;
    }
    // Disabled warm start keeps the configured type whatever the file says.
    Save(1, 5, 50, 100);
    m_peer->SetWarmStartLux(100);
    m_peer->ConfigWarmStart();
    EXPECT_EQ(6, m_peer->WarmStart(1).dolState);
}

TEST_F(WarmStartTest, OnlyTheSessionsCamerasReadTheirSavedState) {
    m_device.Clear();
    CameraSetup camera;
    camera.physicalCameras = {{0, 1, 1, true}, {0, 2, 2, false}};
    Build(camera);
    m_peer->SetOperationMode(0x8001);
    m_peer->SetMaxFps(60);
    LoadConfig(kRows);
    Save(0, 5, 50, 100);
    m_peer->SetWarmStartLux(105);
    m_peer->ConfigWarmStart();
    EXPECT_EQ(2, m_peer->WarmStart(0).dolState);  // the row of camera 0; its file is not read
}

TEST_F(WarmStartTest, MalformedFilesAndConfigurationsKeepTheConfiguredState) {
    LoadConfig(kRows);
    for (const char* junk : {"", "1 2 3 oops\n", "1 2 3 4 5 6 7 8\n"}) {
        SaveState(0, junk);
        m_peer->WarmStart(0).dolState = 42;  // what an earlier step left
        m_peer->ConfigWarmStart();
        EXPECT_EQ(2, m_peer->WarmStart(0).dolState) << junk;
    }
    EXPECT_TRUE(LoggedExactly("W Failed to read warm start file, expected 9 items but got -1"));
    EXPECT_TRUE(LoggedExactly("W Failed to read warm start file, expected 9 items but got 3"));
    EXPECT_TRUE(LoggedExactly("W Failed to read warm start file, expected 9 items but got 8"));

    m_peer->WarmStart(0) = {};
    LoadConfig("[WarmDolState]\nMode[0] = 0x8001, 0, 1, 10, 2000, 50, 5, 2, 3\n");
    m_peer->ConfigWarmStart();
    EXPECT_TRUE(LoggedExactly("E Check CameraHWConfiguration.config"));
    EXPECT_EQ(0u, m_peer->WarmStart(0).warmStartEnable);
}

}  // namespace
}  // namespace LumoraTest
