// SHDR entries and DCG/VS sensors matched against the operation mode, frame
// rate and RAW12 snapshot decision of the session parameters.
#include <algorithm>
#include <string>
#include <vector>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using BitList = std::vector<uint32_t>;

constexpr uint32_t kLogical = Lumora::TypeLogicalCamera;

class ShdrStreamingIntegrationTest : public SessionTest {
protected:
    // Logical camera 3 of physical ids 0, 1, 33 and 16; single cameras 0 and 1
    // give the sensor names of physical ids 0 and 1.
    void SetUp() override {
        SessionTest::SetUp();
        m_device.Add(SingleCamera("imx766", 0, 0));
        m_device.Add(SingleCamera("ov50", 1, 1));
        CameraSetup setup;
        setup.logicalCamId = 3;
        setup.frameworkId = 3;
        for (uint32_t id : {0u, 1u, 33u, 16u}) {
            setup.physicalCameras.push_back({3, static_cast<int32_t>(id), id, id == 0});
        }
        m_device.Add(setup);
        m_device.Init();
    }

    void ConfigureMode(uint32_t operationMode, int32_t fps, bool raw12Snapshot = false,
                       unsigned int cameraId = 3) {
        CameraLog();
        StreamConfig config(operationMode);
        config.Add(PreviewStream());
        if (raw12Snapshot) {
            config.Add(RawStream(0x26, 4000, 3000));
        }
        if (fps > 0) {
            config.SessionParams().Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, {fps, fps});
        }
        Configure(config, cameraId);
    }
    // Lines of the camera log since the last call that begin with `text`.
    size_t LogLines(const std::string& text) {
        size_t count = 0;
        for (const std::string& line : CameraLog()) {
            count += line.rfind(text, 0) == 0 ? 1 : 0;
        }
        return count;
    }

    // The SHDR and DCG/VS bits of a camera (7: the logical camera).
    BitList CameraBits(uint32_t type) {
        BitList bits;
        for (uint32_t bit : {15, 16, 17, 18, 22, 23, 30}) {
            if (Has(static_cast<Lumora::DesiredSupportCaps>(bit), type)) {
                bits.push_back(bit);
            }
        }
        return bits;
    }
};

TEST_F(ShdrStreamingIntegrationTest, EntryAppliesInsideTheMask) {
    // Mask bits wrap at 32: physical id 33 is bit 1.
    LoadConfig(
        "[SHDRTypeMatching]\n"
        "Mode[0] = 3, 0x8005, 0x2, 1, 1, 30\n"
        "Mode[1] = 0, 0x8001, 0x2, 1, 1, -1\n"
        "Mode[2] = 3, 0x8001, 0x2, 1, 1, 30\n");
    ConfigureMode(0x8001, 30);
    // One line per physical camera of the applying entry; only the warm start
    // step misses its group.
    const std::vector<std::string> log = CameraLog();
    EXPECT_EQ(4, std::count_if(log.begin(), log.end(), [](const std::string& line) {
                  return line.rfind("I physical ", 0) == 0;
              }));
    EXPECT_EQ(1, std::count(log.begin(), log.end(), "E Check CameraHWConfiguration.config"));
    EXPECT_EQ(BitList({15, 16, 18, 22}), CameraBits(kLogical));
    EXPECT_EQ(BitList({17}), CameraBits(0));
    EXPECT_EQ(BitList({15, 16, 18, 22}), CameraBits(1));
    EXPECT_EQ(BitList({15, 16, 18, 22}), CameraBits(33));
    EXPECT_EQ(BitList({17}), CameraBits(16));

    // Another frame rate, mode or camera: no entry applies.
    ConfigureMode(0x8001, 60);
    EXPECT_EQ(BitList(), CameraBits(kLogical));
    EXPECT_EQ(BitList(), CameraBits(0));
    ConfigureMode(0x8002, 30);
    EXPECT_EQ(BitList(), CameraBits(kLogical));
}

TEST_F(ShdrStreamingIntegrationTest, TypeTwoAndTwoApplyingEntries) {
    LoadConfig(
        "[SHDRTypeMatching]\n"
        "Mode[0] = 3, 0x8001, 0x1, 0, 1, -1\n"
        "Mode[1] = 3, 0x8001, 0x2, 1, 2, -1\n");
    // Type 2 takes the alternative path only with a RAW12 snapshot.
    ConfigureMode(0x8001, 30, false);
    EXPECT_EQ(BitList({15, 16, 18, 22}), CameraBits(kLogical));
    EXPECT_EQ(BitList({15, 17, 18, 22}), CameraBits(0));
    EXPECT_EQ(BitList({15, 16, 17, 18}), CameraBits(1));

    // Bits add up; only the path bit is taken back by type 2.
    ConfigureMode(0x8001, 30, true);
    EXPECT_EQ(BitList({15, 16, 17, 22, 23}), CameraBits(kLogical));
    EXPECT_EQ(BitList({15, 17, 18, 22}), CameraBits(0));
    EXPECT_EQ(BitList({15, 16, 17, 23}), CameraBits(1));
    EXPECT_EQ(BitList({17}), CameraBits(16));
}

TEST_F(ShdrStreamingIntegrationTest, ShortEntriesAreSkipped) {
    // Without a frame rate the session's maximum is 0; missing values taken
    // as zeros would match it.
    LoadConfig(
        "[SHDRTypeMatching]\nMode[0] = 3, 0x8001, 0x1, 0, 1, -1\nMode[1] = 3, 0x8001, 0x2\n");
    ConfigureMode(0x8001, 0);
    EXPECT_EQ(BitList({15, 18, 22}), CameraBits(0));
    EXPECT_EQ(BitList({17}), CameraBits(1));

    LoadConfig("[SHDRTypeMatching]\nMode[0] = 3, 0x8001\n");
    ConfigureMode(0x8001, 0);
    EXPECT_EQ(2u, LogLines("E Check CameraHWConfiguration.config"));
    EXPECT_EQ(BitList(), CameraBits(kLogical));
    EXPECT_EQ(BitList(), CameraBits(0));
}

TEST_F(ShdrStreamingIntegrationTest, DcgVsStreamingBySensorName) {
    LoadConfig("[EnableSensorDCGVS]\nimx766 = 0x8001, 0x8005\nov50 = 0x8005\n");
    ConfigureMode(0x8001, 30);
    EXPECT_EQ(BitList({30}), CameraBits(0));
    EXPECT_EQ(BitList(), CameraBits(1));
    EXPECT_EQ(BitList(), CameraBits(kLogical));
    EXPECT_EQ(1u, LogLines("I sensor imx766 cameraid 0 opmode 0x8001 support3DolStreaming"));
    ConfigureMode(0x8001, 30, false, 0);  // a single camera
    EXPECT_EQ(BitList({30}), CameraBits(0));

    // Ids above 15 have no sensor name and never stream DCG/VS.
    ConfigureMode(0x8005, 30);
    EXPECT_EQ(BitList({30}), CameraBits(0));
    EXPECT_EQ(BitList({30}), CameraBits(1));
    EXPECT_EQ(BitList(), CameraBits(33));
    EXPECT_EQ(BitList(), CameraBits(16));
}

}  // namespace
}  // namespace LumoraTest
