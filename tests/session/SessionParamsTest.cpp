// Session parameters: from the session metadata and the configuration to the
// session caps, the operation mode and the values the session answers with.
#include <cutils/properties.h>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class SessionParamsTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        OpenMulti(3);
    }

    // One preview stream (and a video stream of `videoWidth` when not 0);
    // returns the operation mode as the configuration holds it afterwards.
    uint32_t ConfigureMode(uint32_t mode, const std::string& cameraMode = "",
                           std::vector<int32_t> fps = {}, uint32_t videoWidth = 0) {
        StreamConfig config(mode);
        config.Add(PreviewStream(1280, 720));
        if (videoWidth != 0) {
            config.Add(VideoStream(videoWidth, 1080));
        }
        if (!cameraMode.empty()) {
            config.SessionParams().VendorString(kTagCameraMode, cameraMode);
        }
        if (!fps.empty()) {
            config.SessionParams().Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, fps);
        }
        CameraLog();
        Configure(config);
        return config.Get()->operation_mode;
    }

    std::string Bits(std::initializer_list<DesiredSupportCaps> caps) {
        std::string bits;
        for (DesiredSupportCaps c : caps) {
            bits += Has(c) ? '1' : '0';
        }
        return bits;
    }
};

TEST_F(SessionParamsTest, ThirdAppOverrideFirstMatchingRowWins) {
    LoadConfig(
        "[ThirdAppOperationModeOverride]\nscene[0] = com.game, Main, 8001, 8019\n"
        "scene[1] = -1, -1, zz, 8009\nscene[2] = -1, -1\nscene[3] = -1, -1, 8001, 8002\n"
        "scene[4] = -1, -1, 8101, 0x80b4\n");
    StreamConfig game(0x8001);
    SetClient(game, "com.game", "Main");
    Configure(game);
    EXPECT_EQ(0x8019u, game.Get()->operation_mode);
    EXPECT_TRUE(LoggedExactly(
        "I Override third app operation mode in staticcaps: packageName com.game, activityName "
        "Main, 0x8001 -> 0x8019"));

    // Names compare exactly; malformed rows are skipped; "-1" matches anyone.
    StreamConfig other(0x8001);
    SetClient(other, "com.game.x", "Main");
    Configure(other);
    EXPECT_EQ(0x8002u, other.Get()->operation_mode);
    EXPECT_FALSE(Has(CapsSatFusion));
    // The from-mode is the unmasked mode; the session runs on the new mode.
    EXPECT_EQ(0x80B4u, ConfigureMode(0x8101));
    EXPECT_TRUE(Has(CapsEquivalentFocallengthOverride));
    EXPECT_EQ(0x8003u, ConfigureMode(0x8003));
}

TEST_F(SessionParamsTest, ThirdAppOverrideGroupOffWhenFirstRowIsMalformed) {
    for (const char* first : {"-1, -1, 8001", "-1, -1, 8001, 8002, 1"}) {
        LoadConfig(std::string("[ThirdAppOperationModeOverride]\nscene[0] = ") + first +
                   "\nscene[1] = -1, -1, 8001, 8009\n");
        EXPECT_EQ(0x8001u, ConfigureMode(0x8001)) << first;
    }
}

TEST_F(SessionParamsTest, OperationModeBits) {
    const std::initializer_list<DesiredSupportCaps> bits = {
        CapsEquivalentFocallengthOverride, CapsViewFinderUseAsdFullFovPath, CapsOpMode80BE8009,
        CapsProVideoFamily, CapsSatFusion};
    EXPECT_EQ(0x81B4u, ConfigureMode(0x81B4));
    EXPECT_EQ("11000", Bits(bits));
    ConfigureMode(0x8F09);
    EXPECT_EQ("00111", Bits(bits));
    EXPECT_TRUE(LoggedExactly("I Sat fusion is supported!"));
    ConfigureMode(0x80BE);
    EXPECT_EQ("00110", Bits(bits));
    ConfigureMode(0x8019);
    EXPECT_EQ("00001", Bits(bits));

    OpenSingle();
    ConfigureMode(0x8001);
    EXPECT_FALSE(Has(CapsSatFusion));
    EXPECT_FALSE(Has(CapsVideoMLFT));
}

TEST_F(SessionParamsTest, FrameRateAndCameraModeBits) {
    struct Case {
        const char* cameraMode;
        int32_t maxFps;
        const char* bits;  // 25 26 27 28 32 49 46 37 66 70
    };
    for (const Case& c :
         {Case{"video_mode", 60, "1000001000"}, Case{"video_mode", 120, "0100111000"},
          Case{"", 240, "0010000000"}, Case{"", 480, "0001000000"}, Case{"", 30, "0000000000"},
          Case{"telephoto_video_mode", 120, "0100001000"},
          Case{"super_text_mode_v2", 30, "0000000100"},
          Case{"super_text_mode_v3", 30, "0000000000"}, Case{"fine_food_mode", 30, "0000000010"},
          Case{"gr_mode", 30, "0000000001"}}) {
        ConfigureMode(0, c.cameraMode, {30, c.maxFps});
        EXPECT_EQ(c.bits, Bits({CapsFps60, CapsFps120, CapsFps240, CapsFps480, CapsVideo120Fps,
                                CapsVideoEIS, CapsVideoCameraMode, CapsSuperText, CapsFineFood,
                                CapsGrMode}))
            << c.cameraMode << " " << c.maxFps;
    }
    // A range with one value is no range; an overlong mode is cut and terminated.
    ConfigureMode(0, std::string(300, 'm'), {60});
    EXPECT_FALSE(Has(CapsFps60));
    EXPECT_FALSE(LoggedContaining("fps:"));
    EXPECT_EQ(std::string(128, 'm'), m_parser->GetCameraMode());
    EXPECT_TRUE(LoggedExactly("I cameraMode " + std::string(128, 'm')));
}

TEST_F(SessionParamsTest, ProVideoModes) {
    const std::initializer_list<DesiredSupportCaps> bits = {
        CapsProVideo,    CapsProVideoLog,           CapsProVideoFamily,     Caps3DLut,
        CapsVideo120Fps, CapsCameraModeProVideoLog, CapsCameraModeProVideo, CapsVideoMLFT};
    LoadConfig("[OemCommonCapbility]\nEnable3DLut = true\n");
    ConfigureMode(0, "pro_video_mode", {30, 120});
    EXPECT_TRUE(LoggedExactly("I Enable3DLut 1"));
    EXPECT_EQ("10111011", Bits(bits));
    EXPECT_STREQ("pro_video_mode", m_parser->GetCameraMode());

    // The property overrides the configuration either way; the log mode never
    // runs the MLFT node.
    property_set("persist.vendor.camera.3dlut.enable", "0");
    ConfigureMode(0, "pro_video_log_mode", {30, 60});
    EXPECT_EQ("11100100", Bits(bits));
    LoadConfig("");
    property_set("persist.vendor.camera.3dlut.enable", "1");
    ConfigureMode(0, "pro_video_mode");
    EXPECT_TRUE(Has(Caps3DLut));
    // -1 leaves the configuration in force.
    LoadConfig("[OemCommonCapbility]\nEnable3DLut = false\n");
    property_set("persist.vendor.camera.3dlut.enable", "-1");
    ConfigureMode(0, "pro_video_mode");
    EXPECT_FALSE(Has(Caps3DLut));
}

TEST_F(SessionParamsTest, SnapshotRawFormat) {
    struct Case {
        bool raw12Stream;
        const char* format;  // null: no tag
        bool expected;
    };
    for (const Case& c : {Case{true, nullptr, true}, Case{true, "RAW10", false},
                          Case{true, "fmt_RAW12_packed", true}, Case{false, "RAW12", false}}) {
        StreamConfig config;
        config.Add(RawStream(c.raw12Stream ? 38 : 32, 4000, 3000));
        if (c.format != nullptr) {
            config.SessionParams().VendorString(kTagSnapshotRawFormat, c.format);
        }
        Configure(config);
        EXPECT_EQ(c.expected, Has(CapsSnapshotRaw12))
            << c.raw12Stream << (c.format ? c.format : "");
    }
}

TEST_F(SessionParamsTest, MlftNodeRule) {
    ConfigureMode(0x8001);  // no group: the node runs
    EXPECT_EQ("10", Bits({CapsVideoMLFT, CapsMLFTNodeExcluded}));
    LoadConfig("[VideoMLFTNode]\nopertionMode = 0x8001, 0x8009\n");
    ConfigureMode(0x8101);  // masked: 0x8001
    EXPECT_EQ("10", Bits({CapsVideoMLFT, CapsMLFTNodeExcluded}));
    ConfigureMode(0x8019);
    EXPECT_EQ("01", Bits({CapsVideoMLFT, CapsMLFTNodeExcluded}));
    for (const char* group : {"[VideoMLFTNode]\nopertionMode =\n", "[VideoMLFTNode]\nother = 1\n",
                              "[VideoMLFTNode]\nopertionMode = 0x8001, junk\n"}) {
        LoadConfig(group);
        ConfigureMode(0x8001);
        EXPECT_EQ("01", Bits({CapsVideoMLFT, CapsMLFTNodeExcluded})) << group;
    }
}

TEST_F(SessionParamsTest, OperationModeListsUseTheRawMode) {
    LoadConfig(
        "[OemCamSupportType]\nEnableSkipRawStream = 0x8101\n"
        "EnableReturnPrivateChiPhyMetaEarly = 0x8101\n");
    for (uint32_t mode : {0x8101u, 0x8001u}) {
        StreamConfig fromMenu(mode);
        fromMenu.SessionParams().VendorByte(kTagCameraFromMainMenu, 1);
        Configure(fromMenu);
        const std::string expected = mode == 0x8101 ? "11" : "00";
        EXPECT_EQ(expected, Bits({CapsSkipRawStream, CapsReturnPrivateChiPhyMetaEarly}));
    }
    // Not opened from the main menu this time: the earlier flag does not stay.
    ConfigureMode(0x8101);
    EXPECT_EQ("01", Bits({CapsSkipRawStream, CapsReturnPrivateChiPhyMetaEarly}));
    EXPECT_TRUE(LoggedExactly("I operation mode: 0x8101  enableSkipRawStream 1"));
}

TEST_F(SessionParamsTest, DisableAePrecaptureNeedsExactNames) {
    LoadConfig(
        "[DisableAePrecapture]\nscene[0] = -1, -1\nscene[1] = com.bank\n"
        "scene[2] = com.bank, Scan, extra\n");
    auto disabled = [this](const std::string& package, const std::string& activity) {
        StreamConfig config;
        SetClient(config, package, activity);
        Configure(config);
        return m_parser->IsDisableAePrecaptureTriggerForSnapshot();
    };
    EXPECT_TRUE(disabled("com.bank", "Scan"));
    EXPECT_FALSE(disabled("com.bank.app", "Scan"));
    EXPECT_FALSE(disabled("com.bank", "Scanner"));
    EXPECT_FALSE(disabled("com.other", "Main"));  // no wildcard
}

TEST_F(SessionParamsTest, VideoStreamsAndTheSystemCamera) {
    LoadConfig("[PackageName Group]\nSystemCamera = com.lumo.camera\n");
    const std::initializer_list<DesiredSupportCaps> bits = {CapsMultiSpectral, CapsSystemCamera,
                                                            CapsSystemCameraApp, CapsVideoStream};
    StreamConfig photo;
    SetClient(photo, "com.lumo.camera");
    photo.Add(PreviewStream());
    Configure(photo);
    EXPECT_EQ("1110", Bits(bits));

    StreamConfig video;
    SetClient(video, "com.lumo.camera");
    video.Add(VideoStream());
    Configure(video);
    EXPECT_EQ("0111", Bits(bits));
    EXPECT_TRUE(LoggedExactly("I Video Stream Existed, Can Not Register MultiSpectral Sensor"));

    // An encoder stream of HEIF images is no video stream.
    StreamConfig heif;
    SetClient(heif, "com.example.app");
    StreamSetup image = VideoStream();
    image.dataSpace = 4100;
    heif.Add(image);
    Configure(heif);
    EXPECT_EQ("0000", Bits(bits));
}

TEST_F(SessionParamsTest, GenericCamFlagWrittenToSessionParameters) {
    LoadConfig("[PackageName Group]\nSystemCamera = com.lumo\nEngineerMode = com.eng\n");
    auto generic = [&](const std::string& package, bool preset, bool cameraUnit = false) {
        StreamConfig config;
        SetClient(config, package);
        if (preset) {
            config.SessionParams().VendorByte(kTagIsGenericCam, 7);
        }
        if (cameraUnit) {
            config.SessionParams().VendorByte(kTagCameraUnitPackage, 1);
        }
        CameraLog();
        Configure(config);
        EXPECT_EQ(!preset, LoggedExactly("E Can't find vendor tag IsGenericCam")) << package;
        return config.SessionParams().FirstByte(GetVendorTagId(kTagIsGenericCam));
    };
    EXPECT_EQ(1, generic("com.example.app", false));
    EXPECT_EQ(1, generic("com.example.app", true));
    EXPECT_EQ(0, generic("com.lumo", true));
    EXPECT_EQ(0, generic("com.eng", false));
    EXPECT_EQ(1, generic("com.example.app", false, true));
    // The debug property decides when it is set, and only then.
    property_set("vendor.debug.camera.policy.genericCam", "1");
    EXPECT_EQ(1, generic("com.lumo", false));
    property_set("vendor.debug.camera.policy.genericCam", "false");
    EXPECT_EQ(0, generic("com.example.app", true));
    property_set("vendor.debug.camera.policy.genericCam", "");
    EXPECT_EQ(1, generic("com.example.app", true));
}

TEST_F(SessionParamsTest, EngineerCameraAlwaysOnAndLockMaster) {
    LoadConfig(
        "[PackageName Group]\nEngineerMode = com.eng\n[EngineercameraConfig]\n"
        "isNeedTwoCameraAlwaysOn = true\n[OemCamSettings]\nSupportSnaphotLockMaster = 1\n");
    StreamConfig engineer;
    SetClient(engineer, "com.eng");
    Configure(engineer);
    EXPECT_EQ("11", Bits({CapsTwoCameraAlwaysOn, CapsSnapshotLockMaster}));
    EXPECT_TRUE(LoggedExactly("I engineer camera always on"));
    StreamConfig app;
    SetClient(app, "com.example.app");
    Configure(app);
    EXPECT_EQ("01", Bits({CapsTwoCameraAlwaysOn, CapsSnapshotLockMaster}));
}

TEST_F(SessionParamsTest, VideoFrameInsertion) {
    LoadConfig(
        "[VideoFrameInsertSupport]\nMode[0] = 0x8005, 3840\nMode[1] = 0x8105, 1920, 9\n"
        "Mode[2] = 0x8105\n");
    auto frameInsert = [this](uint32_t mode, uint32_t width, const std::string& cameraMode) {
        ConfigureMode(mode, cameraMode, {}, width);
        return Has(CapsVideoFrameInsert);
    };
    EXPECT_TRUE(frameInsert(0x8105, 1920, "video_mode"));
    EXPECT_TRUE(LoggedExactly("I VideoFrameInsertSupport 1"));
    EXPECT_TRUE(frameInsert(0x8005, 3840, ""));
    // The unmasked mode and the width of a video stream must both match.
    EXPECT_FALSE(frameInsert(0x8005, 1920, ""));
    EXPECT_FALSE(frameInsert(0x8105, 3840, ""));
    EXPECT_FALSE(frameInsert(0x8105, 1920, "pro_video_mode"));
    EXPECT_FALSE(frameInsert(0x8005, 0, ""));
    LoadConfig("[VideoFrameInsertSupport]\nMode[0] = 0x8005\nMode[1] = 0x8005, 3840\n");
    EXPECT_FALSE(frameInsert(0x8005, 3840, ""));
    EXPECT_TRUE(LoggedExactly("I VideoFrameInsertSupport 0"));
    // A group of one row; the video stream first in the configuration.
    LoadConfig("[VideoFrameInsertSupport]\nMode[0] = 0x8005, 3840\n");
    StreamConfig config(0x8005);
    config.Add(VideoStream(3840, 2160));
    Configure(config);
    EXPECT_TRUE(Has(CapsVideoFrameInsert));
}

TEST_F(SessionParamsTest, MissingSessionParameters) {
    LoadConfig("[OemCamSupportType]\nEnableReturnPrivateChiPhyMetaEarly = 0x8009\n");
    StreamConfig config(0x8009);
    config.Add(VideoStream());
    config.WithoutSessionParams();
    EXPECT_EQ(0, Configure(config));
    EXPECT_TRUE(LoggedExactly("E Invalid Args"));
    // The mode is not taken from such a configuration, but the later steps run.
    EXPECT_EQ("00111", Bits({CapsOpMode80BE8009, CapsSatFusion, CapsReturnPrivateChiPhyMetaEarly,
                             CapsThirdPartyClient, CapsVideoStream}));
}

TEST_F(SessionParamsTest, NothingOfTheFirstSessionSurvives) {
    LoadConfig(
        "[PackageName Group]\nSystemCamera = com.lumo\n[DisableAePrecapture]\n"
        "scene[0] = com.lumo, Main\n[OemCamSupportType]\nEnableSkipRawStream = 0x80b4\n");
    StreamConfig first(0x80B4);
    SetClient(first, "com.lumo", "Main");
    first.SessionParams()
        .VendorString(kTagCameraMode, "pro_video_mode")
        .Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, {30, 120})
        .VendorByte(kTagCameraFromMainMenu, 1)
        .VendorFloat(kTagWarmStartLux, 250.0f);
    StreamSetup extended = VideoStream();
    extended.extMode = 2;
    first.Add(extended);
    first.Add(RawStream(38, 4000, 3000));
    Configure(first);
    EXPECT_TRUE(LoggedExactly("I warmStartLux: 250.000000"));
    ASSERT_TRUE(m_parser->IsDisableAePrecaptureTriggerForSnapshot());
    ASSERT_EQ("11", Bits({CapsSkipRawStream, CapsExtModeStream}));

    StreamConfig second(0x8003);
    SetClient(second, "com.example.app", "Other");
    second.Add(PreviewStream());
    CameraLog();
    Configure(second);
    EXPECT_STREQ("", m_parser->GetCameraMode());
    EXPECT_FALSE(m_parser->IsDisableAePrecaptureTriggerForSnapshot());
    EXPECT_TRUE(LoggedExactly("I warmStartLux: -1.000000"));
    // Of the bits these steps decide, only the new client's remain.
    for (DesiredSupportCaps bit :
         {CapsFps120, CapsVideo120Fps, CapsMultiSpectral, CapsOpMode80BE8009, CapsSystemCamera,
          CapsVideoCameraMode, CapsSystemCameraApp, CapsProVideo, CapsVideoStream,
          CapsSystemCameraClient, CapsSkipRawStream, CapsExtModeStream, CapsProVideoFamily,
          CapsSatFusion, CapsSnapshotRaw12, CapsCameraModeProVideo,
          CapsEquivalentFocallengthOverride, CapsViewFinderUseAsdFullFovPath}) {
        EXPECT_FALSE(Has(bit)) << bit;
    }
    EXPECT_EQ("111", Bits({CapsThirdPartyClient, CapsNotBokeh, CapsVideoMLFT}));

    // Client names are replaced only by names: a configuration without them
    // keeps the client of the one before.
    StreamConfig third;
    Configure(third);
    EXPECT_STREQ("com.example.app", m_parser->GetPackageName());
    EXPECT_STREQ("Other", m_parser->GetActivityName());
}

}  // namespace
}  // namespace LumoraTest
