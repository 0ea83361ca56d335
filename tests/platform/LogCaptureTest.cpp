// Host log channels: what is recorded, in which order, and the switches.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <HostPlatform.h>
#include <HostPlatformExtras.h>
#include <OLog.h>
#include <log/log.h>

namespace {

class LogCaptureTest : public ::testing::Test {
protected:
    void SetUp() override {
        HostPlatform::TakeAndroidLog();
        HostPlatform::TakeCameraLog();
        HostPlatform::TakeSwitchLogEnableCalls();
    }
    void TearDown() override { HostPlatform::SetLogSwitches(true, true, true, true, true); }
};

using Lines = std::vector<std::string>;

TEST_F(LogCaptureTest, AndroidLogKeepsTextsOldestFirstAndForgetsThem) {
    __android_log_write(ANDROID_LOG_ERROR, "CamL", "first");
    __android_log_write(ANDROID_LOG_INFO, "CamL", "[ INFO][LUMORA] f.cpp:1 g() second\n");
    __android_log_write(ANDROID_LOG_INFO, "CamL", nullptr);
    EXPECT_EQ((Lines{"first", "[ INFO][LUMORA] f.cpp:1 g() second\n"}),
              HostPlatform::TakeAndroidLog());
    EXPECT_TRUE(HostPlatform::TakeAndroidLog().empty());
}

TEST_F(LogCaptureTest, CameraLogRecordsLevelAndFormattedMessage) {
    OLog::LogSystem("[ INFO]", "I", "[LUMORA]", "uiparser.cpp", "Init", 10,
                    "Sat fusion is supported!");
    OLog::LogSystem("[ERROR]", "E", "[LUMORA]", "rdc.h", "Get", 20,
                    "Failed to get RDC for frame %u", 12u);
    const std::string longText(2000, 'z');
    OLog::LogSystem("[ VERB]", "V", "[LUMORA]", "a.cpp", "f", 30, "%s|%d", longText.c_str(), 5);
    EXPECT_EQ((Lines{"I Sat fusion is supported!", "E Failed to get RDC for frame 12",
                     "V " + longText + "|5"}),
              HostPlatform::TakeCameraLog());
    // The camera log is its own channel.
    EXPECT_TRUE(HostPlatform::TakeAndroidLog().empty());
}

TEST_F(LogCaptureTest, SwitchLogEnableOnlyRecordsItsArgument) {
    HostPlatform::SetLogSwitches(true, true, true, true, true);
    OLog::SwitchLogEnable(0);
    OLog::SwitchLogEnable(1);
    EXPECT_EQ(1, HostPlatform::LastSwitchLogEnable());
    EXPECT_EQ((std::vector<int>{0, 1}), HostPlatform::TakeSwitchLogEnableCalls());
    EXPECT_EQ(1, g_enableLogVerbose);
    EXPECT_EQ(1, g_enableSystemLog);
}

}  // namespace
