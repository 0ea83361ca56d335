// Bokeh sessions and the sensor name table.
#include <csignal>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class BokehTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        OpenMulti(4);
    }

    // A bokeh configuration with preview streams on these physical cameras.
    void ConfigureBokeh(const std::vector<std::string>& previewIds, uint32_t mode = 0x8010) {
        StreamConfig config(mode);
        for (const std::string& id : previewIds) {
            config.Add(PreviewStream(1920, 1080, id));
        }
        Configure(config);
    }

    std::string BokehBits() {
        std::string bits;
        for (DesiredSupportCaps caps : {CapsNotBokeh, CapsBokeh, CapsBokehOperationMode,
                                        CapsBokehStartWithFallback, CapsBokehTriplePreview}) {
            bits += Has(caps) ? '1' : '0';
        }
        return bits;
    }
};

using BokehDeathTest = BokehTest;

TEST_F(BokehTest, OnlyBokehModesAreBokehSessions) {
    for (uint32_t mode : {0x8012u, 0x8001u, 0u}) {
        ConfigureBokeh({"1", "2"}, mode);
        EXPECT_EQ("10000", BokehBits()) << std::hex << mode;
    }
    for (uint32_t mode : {0x8010u, 0x8011u, 0x8030u, 0x8031u, 0x8035u, 0x8036u, 0x8F10u}) {
        ConfigureBokeh({"1", "2"}, mode);
        EXPECT_EQ("01100", BokehBits()) << std::hex << mode;
    }
}

TEST_F(BokehTest, PreviewCamerasCountOnceEach) {
    LoadConfig("[BokehSATConfig]\nsupportStartWithFallback = true\n");
    StreamConfig config(0x8010);
    config.Add(PreviewStream(1920, 1080, "1"));
    config.Add(PreviewStream(1280, 720, "1"));
    config.Add(PreviewStream(1920, 1080, "2"));
    config.Add(PreviewStream(1920, 1080));  // the logical camera
    config.Add(VideoStream(1920, 1080, "3"));
    StreamSetup depth = PreviewStream(640, 480, "3");
    depth.dataSpace = 0x1000;
    config.Add(depth);
    StreamSetup jpeg = JpegStream(4000, 3000, "3");
    jpeg.usage = 0x100;
    config.Add(jpeg);
    StreamSetup input = PreviewStream(1920, 1080, "3");
    input.streamType = 1;
    config.Add(input);
    Configure(config);
    EXPECT_EQ("01110", BokehBits());
    EXPECT_TRUE(LoggedExactly("I pStreamConfigsAPI->num_streams 8"));
    EXPECT_TRUE(LoggedExactly("I [1]   format:34 [1280x720]  fwkCamId:1 isPhysical:1,isPreview:1"));
    EXPECT_TRUE(LoggedExactly("I [3]   format:34 [1920x1080]  fwkCamId: isPhysical:0,isPreview:1"));
}

TEST_F(BokehTest, TwoOrThreePreviewCameras) {
    ConfigureBokeh({"0", "1"});
    EXPECT_EQ("01100", BokehBits());
    // Composer usage and the YUV formats count as preview as well.
    StreamConfig config(0x8036);
    StreamSetup composer = PreviewStream(1920, 1080, "0");
    composer.usage = 0x800;
    composer.format = 35;
    config.Add(composer);
    StreamSetup p010 = PreviewStream(1920, 1080, "1");
    p010.format = 54;
    config.Add(p010);
    config.Add(PreviewStream(1920, 1080, "2"));
    Configure(config);
    EXPECT_EQ("01111", BokehBits());
}

TEST_F(BokehDeathTest, UnsupportedPreviewCameraCountAborts) {
    EXPECT_EXIT(ConfigureBokeh({"1"}), ::testing::KilledBySignal(SIGABRT), "");
    EXPECT_DEATH(ConfigureBokeh({}), "");
    EXPECT_DEATH(ConfigureBokeh({"0", "1", "2", "3"}), "");
    // Outside the bokeh modes the same streams are fine.
    ConfigureBokeh({"1"}, 0x8001);
    EXPECT_EQ("10000", BokehBits());
}

class SensorNameMapTest : public SessionTest {
protected:
    std::vector<std::string> SensorNameLines() {
        OpenSingle();
        StreamConfig config;
        config.Add(PreviewStream());
        Configure(config);
        std::vector<std::string> lines;
        for (const std::string& line : CameraLog()) {
            if (line.rfind("I camid ", 0) == 0) {
                lines.push_back(line);
            }
        }
        return lines;
    }
};

TEST_F(SensorNameMapTest, RowsOfTwoOrMoreValues) {
    LoadConfig(
        "[SensorNameList]\nmode[0] = 0, imx766\nmode[1] = 2\nmode[2] = 5, s5k3p9, extra\n"
        "mode[3] = x, ov64b\n");
    EXPECT_EQ(
        (std::vector<std::string>{"I camid 0 sensorname imx766", "I camid 2 sensorname s5k3p9",
                                  "I camid 3 sensorname ov64b"}),
        SensorNameLines());
}

TEST_F(SensorNameMapTest, FirstRowOfAnotherLengthSwitchesTheTableOff) {
    for (const char* table : {"[SensorNameList]\nmode[0] = 0, imx766, x\nmode[1] = 1, imx586\n",
                              "[SensorNameList]\nmode[0] = 0\nmode[1] = 1, imx586\n",
                              "[SensorNameList]\nmode[1] = 1, imx586\n"}) {
        LoadConfig(table);
        EXPECT_TRUE(SensorNameLines().empty()) << table;
    }
}

}  // namespace
}  // namespace LumoraTest
