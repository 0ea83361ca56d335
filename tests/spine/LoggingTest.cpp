#include <gtest/gtest.h>

#include <HostPlatform.h>
#include <OLog.h>

#include <algorithm>
#include <regex>
#include <string>

#include "common/Log.h"
#include "support/SessionTest.h"

namespace {

class LoggingTest : public ::testing::Test {
protected:
    void SetUp() override { Drain(); }
    void TearDown() override {
        HostPlatform::SetLogSwitches(true, true, true, true, true);
        Drain();
    }
    static void Drain() {
        HostPlatform::TakeAndroidLog();
        HostPlatform::TakeCameraLog();
    }
};

void LogOneOfEach() {
    UI_LOGE("error %d", 1);
    UI_LOGW("warning %s", "two");
    UI_LOGI("info %u", 3u);
    UI_LOGV("verbose");
}

TEST_F(LoggingTest, AndroidLineCarriesPrefixTagFileLineAndFunction) {
    HostPlatform::SetLogSwitches(true, true, true, true, true);
    LogOneOfEach();
    const auto lines = HostPlatform::TakeAndroidLog();
    ASSERT_EQ(4u, lines.size());
    EXPECT_TRUE(std::regex_match(
        lines[0],
        std::regex(R"(\[ERROR\]\[LUMORA\] LoggingTest\.cpp:\d+ LogOneOfEach\(\) error 1\n)")))
        << lines[0];
    EXPECT_TRUE(std::regex_match(
        lines[1], std::regex(R"(\[ WARN\]\[LUMORA\] \S+ LogOneOfEach\(\) warning two\n)")))
        << lines[1];
    EXPECT_TRUE(std::regex_match(
        lines[2], std::regex(R"(\[ INFO\]\[LUMORA\] \S+ LogOneOfEach\(\) info 3\n)")))
        << lines[2];
    EXPECT_TRUE(std::regex_match(
        lines[3], std::regex(R"(\[ VERB\]\[LUMORA\] \S+ LogOneOfEach\(\) verbose\n)")))
        << lines[3];
    const auto camera = HostPlatform::TakeCameraLog();
    ASSERT_EQ(4u, camera.size());
    EXPECT_EQ("E error 1", camera[0]);
    EXPECT_EQ("W warning two", camera[1]);
    EXPECT_EQ("I info 3", camera[2]);
    EXPECT_EQ("V verbose", camera[3]);
}

TEST_F(LoggingTest, ErrorsReachTheAndroidLogWithoutTheSystemSwitch) {
    HostPlatform::SetLogSwitches(true, true, true, true, false);
    LogOneOfEach();
    const auto lines = HostPlatform::TakeAndroidLog();
    ASSERT_EQ(1u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find("error 1"));
    EXPECT_EQ(4u, HostPlatform::TakeCameraLog().size());
}

TEST_F(LoggingTest, EachLevelHasItsOwnSwitch) {
    HostPlatform::SetLogSwitches(false, true, false, true, true);
    LogOneOfEach();
    const auto camera = HostPlatform::TakeCameraLog();
    ASSERT_EQ(2u, camera.size());
    EXPECT_EQ("W warning two", camera[0]);
    EXPECT_EQ("V verbose", camera[1]);
    EXPECT_EQ(2u, HostPlatform::TakeAndroidLog().size());

    HostPlatform::SetLogSwitches(false, false, false, false, true);
    LogOneOfEach();
    EXPECT_TRUE(HostPlatform::TakeCameraLog().empty());
    EXPECT_TRUE(HostPlatform::TakeAndroidLog().empty());
}

TEST_F(LoggingTest, AndroidTextIsCutAt511Characters) {
    HostPlatform::SetLogSwitches(true, false, false, false, false);
    const std::string longText(600, 'x');
    UI_LOGE("%s", longText.c_str());
    const auto lines = HostPlatform::TakeAndroidLog();
    ASSERT_EQ(1u, lines.size());
    EXPECT_EQ(511u, lines[0].size());
    // The camera logger formats on its own and keeps the whole message.
    const auto camera = HostPlatform::TakeCameraLog();
    ASSERT_EQ(1u, camera.size());
    EXPECT_EQ("E " + longText, camera[0]);
}

class StepLogTest : public LumoraTest::SessionTest {
protected:
    // Whether an Android info line of the session's source file matches
    // "<function>() <message>" given as a regular expression.
    static bool HasInfoLine(const std::vector<std::string>& lines, const std::string& pattern) {
        const std::regex line(R"(\[ INFO\]\[LUMORA\] StaticSupportCapabilities\.cpp:\d+ )" +
                              pattern + R"(\n)");
        return std::any_of(lines.begin(), lines.end(), [&line](const std::string& text) {
            return std::regex_match(text, line);
        });
    }
};

// Lines that helpers write while a configuration step runs name that step, and
// every step names the session's source file.
TEST_F(StepLogTest, AndroidLinesNameTheConfigurationStep) {
    LoadConfig(
        "[TripartiteModeFallbackWhitelist]\nApp[0] = com.x\n"
        "[3rdAppEnableVIULL]\nisEnable3rdAppVIULL[0] = 1, 0x1\n"
        "[OEMFeature1ModeMatch]\nMode[0] = 3, -1, 0, 0, 0, 0, 0, 0\n"
        "[OEMFeature2ModeMatch]\nMode[0] = 4, -1, 0, 0, 0, -1, -1\n");
    m_device.Add(LumoraTest::SingleCamera("wide"));
    m_device.Init();
    LumoraTest::StreamConfig config;
    LumoraTest::SetClient(config, "com.xyz");
    config.Add(LumoraTest::PreviewStream());
    HostPlatform::TakeAndroidLog();
    Configure(config);
    const auto lines = HostPlatform::TakeAndroidLog();
    const auto logged = [&lines](const std::string& pattern) {
        return HasInfoLine(lines, pattern);
    };
    EXPECT_TRUE(logged(R"(ConfigSupportCapsSAT\(\) m_clientPackageName com\.xyz, .*)"));
    EXPECT_TRUE(logged(R"(ConfigSupportCapsAINR\(\) key: 0x1, sensorMask: 0x1)"));
    EXPECT_TRUE(logged(R"(ConfigStaticTuningPolicy\(\) static cfg feature1Mode 3 .*)"));
    EXPECT_TRUE(logged(R"(ConfigStaticTuningPolicy\(\) static cfg feature2Mode 4 .*)"));
}

TEST_F(StepLogTest, SessionParameterAndClassificationLinesNameTheirStep) {
    m_device.Add(LumoraTest::MultiCamera(2, 0, 0));
    m_device.Init();
    LumoraTest::StreamConfig config(0x8001);
    config.Add(LumoraTest::PreviewStream());
    HostPlatform::TakeAndroidLog();
    Configure(config);
    const auto lines = HostPlatform::TakeAndroidLog();
    const auto logged = [&lines](const std::string& pattern) {
        return HasInfoLine(lines, pattern);
    };
    EXPECT_TRUE(logged(R"(ParseSessionParams\(\) Sat fusion is supported!)"));
    EXPECT_TRUE(logged(R"(ParseStreamsInfo\(\) \[EStreamTypePreview\] size 1 streamIndex 0 .*)"));
}

TEST(LogFileNameTest, KeepsTheTextAfterTheLastSlash) {
    EXPECT_STREQ("uiparser.cpp", Lumora::LogFileName("a/b/uiparser.cpp"));
    EXPECT_STREQ("plain.cpp", Lumora::LogFileName("plain.cpp"));
    EXPECT_STREQ("", Lumora::LogFileName("dir/"));
}

TEST(LogFileNameTest, EachClassFamilyLogsUnderItsSourceFile) {
    using Lumora::LogSourceName;
    EXPECT_STREQ("StaticSupportCapabilities.cpp",
                 LogSourceName("/src/uilayer/staticsupportcaps/MultiCameraZoom.cpp"));
    EXPECT_STREQ("StaticSupportCapabilities.cpp", LogSourceName("uilayer/common/Platform.cpp"));
    EXPECT_STREQ("RequestDesiredCapabilities.cpp",
                 LogSourceName("uilayer/requestdesiredcaps/RequestSettings.cpp"));
    EXPECT_STREQ("ResultAppliedCapabilities.cpp",
                 LogSourceName("uilayer/resultappliedcaps/ResultAppliedCapabilities.cpp"));
    EXPECT_STREQ("UIParser.cpp", LogSourceName("uilayer/uiparser/UIParser.cpp"));
    // Headers and other folders keep their own names.
    EXPECT_STREQ("RDCMap.h", LogSourceName("uilayer/uiparser/RDCMap.h"));
    EXPECT_STREQ(".h", LogSourceName("uilayer/common/.h"));
    EXPECT_STREQ("LoggingTest.cpp", LogSourceName("tests/spine/LoggingTest.cpp"));
    EXPECT_STREQ("x.cpp", LogSourceName("mycommon/x.cpp"));
    EXPECT_STREQ("plain.cpp", LogSourceName("plain.cpp"));
}

}  // namespace
