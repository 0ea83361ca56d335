// Session parameters: from the session metadata and the configuration to the
// session caps, the operation mode and the values the session answers with.
#include <cutils/properties.h>

#include <cstring>

#include "session/SessionFixture.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class SessionParamsTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        OpenMulti(3);
    }

    // A configuration of one preview stream plus `streams`.
    uint32_t ConfigureMode(uint32_t mode, const std::string& cameraMode = "",
                           std::vector<int32_t> fps = {}) {
        StreamConfig config(mode);
        config.Add(PreviewStream());
        if (!cameraMode.empty()) {
            config.SessionParams().VendorString(kTagCameraMode, cameraMode);
        }
        if (!fps.empty()) {
            config.SessionParams().Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, fps);
        }
        Configure(config);
        return config.Get()->operation_mode;
    }
};

constexpr const char* kOverrideRows = R"(
[ThirdAppOperationModeOverride]
scene[0] = com.game, Main, 8001, 8019
scene[1] = -1, -1, 8001, 8002
scene[2] = -1, -1, 8101, 0x80b4
)";

TEST_F(SessionParamsTest, ThirdAppOverrideFirstMatchingRowWins) {
    LoadConfig(kOverrideRows);
    StreamConfig game(0x8001);
    Client(game, "com.game", "Main");
    Configure(game);
    EXPECT_EQ(0x8019u, game.Get()->operation_mode);
    EXPECT_TRUE(LoggedExactly(
        "I Override third app operation mode in staticcaps: packageName com.game, activityName "
        "Main, 0x8001 -> 0x8019"));

    // Names compare exactly, not by prefix: the wildcard row applies.
    StreamConfig other(0x8001);
    Client(other, "com.game.x", "Main");
    Configure(other);
    EXPECT_EQ(0x8002u, other.Get()->operation_mode);
    EXPECT_FALSE(Has(CapsSatFusion));

    // The from-mode compares the unmasked mode; the new mode is what the session uses.
    StreamConfig raw(0x8101);
    Configure(raw);
    EXPECT_EQ(0x80B4u, raw.Get()->operation_mode);
    EXPECT_TRUE(Has(CapsEquivalentFocallengthOverride));

    StreamConfig unlisted(0x8003);
    Configure(unlisted);
    EXPECT_EQ(0x8003u, unlisted.Get()->operation_mode);
}

TEST_F(SessionParamsTest, ThirdAppOverrideGroupOffWhenFirstRowIsMalformed) {
    for (const char* first : {"-1, -1, 8001", "-1, -1, 8001, 8002, 1"}) {
        LoadConfig(std::string("[ThirdAppOperationModeOverride]\nscene[0] = ") + first +
                   "\nscene[1] = -1, -1, 8001, 8009\n");
        EXPECT_EQ(0x8001u, ConfigureMode(0x8001)) << first;
    }
    // A malformed later row is skipped; the rows after it still apply.
    LoadConfig(
        "[ThirdAppOperationModeOverride]\nscene[0] = a, b, 1, 2\nscene[1] = -1, -1, zz, 8009\n"
        "scene[2] = -1, -1\nscene[3] = -1, -1, 8001, 8009\n");
    EXPECT_EQ(0x8009u, ConfigureMode(0x8001));
    EXPECT_TRUE(Has(CapsOpMode80BE8009));
}

TEST_F(SessionParamsTest, OperationModeMaskAndModeBits) {
    EXPECT_EQ(0x81B4u, ConfigureMode(0x81B4));
    EXPECT_TRUE(Has(CapsEquivalentFocallengthOverride));
    EXPECT_TRUE(Has(CapsViewFinderUseAsdFullFovPath));

    ConfigureMode(0x8F09);
    EXPECT_FALSE(Has(CapsEquivalentFocallengthOverride));
    EXPECT_FALSE(Has(CapsViewFinderUseAsdFullFovPath));
    EXPECT_TRUE(Has(CapsOpMode80BE8009));
    EXPECT_TRUE(Has(CapsProVideoFamily));
    EXPECT_TRUE(Has(CapsSatFusion));
    EXPECT_TRUE(LoggedExactly("I Sat fusion is supported!"));

    ConfigureMode(0x8019);
    EXPECT_FALSE(Has(CapsOpMode80BE8009));
    EXPECT_FALSE(Has(CapsProVideoFamily));
    EXPECT_TRUE(Has(CapsSatFusion));
    ConfigureMode(0x8002);
    EXPECT_FALSE(Has(CapsSatFusion));
}

TEST_F(SessionParamsTest, SingleCameraHasNoFusionAndNoMlft) {
    OpenSingle();
    ConfigureMode(0x8001);
    EXPECT_FALSE(Has(CapsSatFusion));
    EXPECT_FALSE(Has(CapsVideoMLFT));
}

TEST_F(SessionParamsTest, FrameRateBits) {
    ConfigureMode(0, "video_mode", {30, 60});
    EXPECT_TRUE(Has(CapsFps60));
    EXPECT_FALSE(Has(CapsFps120));
    EXPECT_FALSE(Has(CapsVideo120Fps));
    EXPECT_FALSE(Has(CapsVideoEIS));
    EXPECT_TRUE(Has(CapsVideoCameraMode));

    ConfigureMode(0, "video_mode", {120, 120});
    EXPECT_FALSE(Has(CapsFps60));
    EXPECT_TRUE(Has(CapsFps120));
    EXPECT_TRUE(Has(CapsVideo120Fps));
    EXPECT_TRUE(Has(CapsVideoEIS));
    EXPECT_TRUE(LoggedExactly("I fps: 120 120"));

    ConfigureMode(0, "", {30, 240});
    EXPECT_TRUE(Has(CapsFps240));
    ConfigureMode(0, "", {30, 480});
    EXPECT_TRUE(Has(CapsFps480));
    EXPECT_FALSE(Has(CapsVideo120Fps));

    // A range with one value is no range.
    CameraLog();
    ConfigureMode(0, "", {60});
    EXPECT_FALSE(Has(CapsFps60));
    EXPECT_FALSE(LoggedContaining("fps:"));
}

TEST_F(SessionParamsTest, ProVideoModes) {
    LoadConfig("[OemCommonCapbility]\nEnable3DLut = true\n");
    ConfigureMode(0, "pro_video_mode", {30, 120});
    EXPECT_TRUE(LoggedExactly("I Enable3DLut 1"));
    for (DesiredSupportCaps caps : {CapsProVideo, CapsProVideoFamily, Caps3DLut, CapsVideo120Fps,
                                    CapsCameraModeProVideo, CapsVideoCameraMode, CapsVideoMLFT}) {
        EXPECT_TRUE(Has(caps)) << caps;
    }
    EXPECT_FALSE(Has(CapsProVideoLog));
    EXPECT_FALSE(Has(CapsCameraModeProVideoLog));
    EXPECT_STREQ("pro_video_mode", m_parser->GetCameraMode());

    // The property overrides the configuration either way.
    property_set("persist.vendor.camera.3dlut.enable", "0");
    ConfigureMode(0, "pro_video_log_mode", {30, 60});
    for (DesiredSupportCaps caps :
         {CapsProVideo, CapsProVideoLog, CapsProVideoFamily, CapsCameraModeProVideoLog}) {
        EXPECT_TRUE(Has(caps)) << caps;
    }
    EXPECT_FALSE(Has(Caps3DLut));
    EXPECT_FALSE(Has(CapsVideo120Fps));
    EXPECT_FALSE(Has(CapsCameraModeProVideo));
    // The log mode never runs the MLFT node.
    EXPECT_FALSE(Has(CapsVideoMLFT));

    LoadConfig("");
    property_set("persist.vendor.camera.3dlut.enable", "1");
    ConfigureMode(0, "pro_video_mode");
    EXPECT_TRUE(Has(Caps3DLut));
}

TEST_F(SessionParamsTest, CameraModeNamesMatchExactly) {
    ConfigureMode(0, "super_text_mode_v2");
    EXPECT_TRUE(Has(CapsSuperText));
    ConfigureMode(0, "super_text_mode_v3");
    EXPECT_FALSE(Has(CapsSuperText));
    ConfigureMode(0, "fine_food_mode");
    EXPECT_TRUE(Has(CapsFineFood));
    ConfigureMode(0, "gr_mode");
    EXPECT_TRUE(Has(CapsGrMode));
    EXPECT_FALSE(Has(CapsVideoCameraMode));
    ConfigureMode(0, "telephoto_video_mode");
    EXPECT_TRUE(Has(CapsVideoCameraMode));
    ConfigureMode(0, "pro_video_mode_x");
    EXPECT_FALSE(Has(CapsProVideo));
}

TEST_F(SessionParamsTest, OverlongCameraModeStaysTerminated) {
    ConfigureMode(0, std::string(300, 'm'));
    EXPECT_EQ(std::string(127, 'm'), m_parser->GetCameraMode());
}

TEST_F(SessionParamsTest, SnapshotRawFormat) {
    struct Case {
        bool raw12Stream;
        const char* format;  // null: no tag
        bool expected;
    };
    for (const Case& c : {Case{true, nullptr, true}, Case{true, "RAW10", false},
                          Case{true, "fmt_RAW12_packed", true}, Case{false, "RAW12", false},
                          Case{false, nullptr, false}}) {
        StreamConfig config;
        config.Add(PreviewStream());
        config.Add(RawStream(c.raw12Stream ? 38 : 32, 4000, 3000));
        if (c.format != nullptr) {
            config.SessionParams().VendorString(kTagSnapshotRawFormat, c.format);
        }
        Configure(config);
        EXPECT_EQ(c.expected, Has(CapsSnapshotRaw12))
            << c.raw12Stream << " " << (c.format ? c.format : "-");
    }
}

TEST_F(SessionParamsTest, MlftNodeRule) {
    // No group: the node runs.
    ConfigureMode(0x8001);
    EXPECT_TRUE(Has(CapsVideoMLFT));
    EXPECT_FALSE(Has(CapsMLFTNodeExcluded));

    LoadConfig("[VideoMLFTNode]\nopertionMode = 0x8001, 0x8009\n");
    ConfigureMode(0x8101);  // masked: 0x8001
    EXPECT_TRUE(Has(CapsVideoMLFT));
    EXPECT_FALSE(Has(CapsMLFTNodeExcluded));
    ConfigureMode(0x8019);
    EXPECT_FALSE(Has(CapsVideoMLFT));
    EXPECT_TRUE(Has(CapsMLFTNodeExcluded));

    for (const char* group :
         {"[VideoMLFTNode]\nopertionMode =\n", "[VideoMLFTNode]\nother = 0x8001\n",
          "[VideoMLFTNode]\nopertionMode = 0x8001, junk\n"}) {
        LoadConfig(group);
        ConfigureMode(0x8001);
        EXPECT_FALSE(Has(CapsVideoMLFT)) << group;
        EXPECT_TRUE(Has(CapsMLFTNodeExcluded)) << group;
    }
}

TEST_F(SessionParamsTest, OperationModeListsUseTheRawMode) {
    LoadConfig(
        "[OemCamSupportType]\nEnableSkipRawStream = 0x8101\n"
        "EnableReturnPrivateChiPhyMetaEarly = 0x8101\n");
    StreamConfig fromMenu(0x8101);
    fromMenu.SessionParams().VendorByte(kTagFromMainMenu, 1);
    Configure(fromMenu);
    EXPECT_TRUE(Has(CapsSkipRawStream));
    EXPECT_TRUE(Has(CapsReturnPrivateChiPhyMetaEarly));
    EXPECT_TRUE(LoggedExactly("I operation mode: 0x8101  enableSkipRawStream 1"));

    // Not opened from the main menu this time: the earlier flag does not stay.
    ConfigureMode(0x8101);
    EXPECT_FALSE(Has(CapsSkipRawStream));
    EXPECT_TRUE(Has(CapsReturnPrivateChiPhyMetaEarly));

    StreamConfig masked(0x8001);
    masked.SessionParams().VendorByte(kTagFromMainMenu, 1);
    Configure(masked);
    EXPECT_FALSE(Has(CapsSkipRawStream));
    EXPECT_FALSE(Has(CapsReturnPrivateChiPhyMetaEarly));
}

TEST_F(SessionParamsTest, DisableAePrecaptureNeedsExactNames) {
    LoadConfig(
        "[DisableAePrecapture]\nscene[0] = -1, -1\nscene[1] = com.bank\n"
        "scene[2] = com.bank, Scan, extra\n");
    auto disabled = [this](const std::string& package, const std::string& activity) {
        StreamConfig config;
        Client(config, package, activity);
        Configure(config);
        return m_parser->IsDisableAePrecaptureTriggerForSnapshot();
    };
    EXPECT_TRUE(disabled("com.bank", "Scan"));
    EXPECT_FALSE(disabled("com.bank.app", "Scan"));
    EXPECT_FALSE(disabled("com.bank", "Scanner"));
    EXPECT_FALSE(disabled("com.other", "Main"));  // no wildcard
    EXPECT_TRUE(disabled("com.bank", "Scan"));
}

TEST_F(SessionParamsTest, VideoStreamsAndTheSystemCamera) {
    LoadConfig("[PackageName Group]\nSystemCamera = com.lumo.camera\n");
    StreamConfig photo;
    Client(photo, "com.lumo.camera");
    photo.Add(PreviewStream());
    Configure(photo);
    EXPECT_TRUE(Has(CapsMultiSpectral));
    EXPECT_TRUE(Has(CapsSystemCamera));
    EXPECT_TRUE(Has(CapsSystemCameraApp));
    EXPECT_FALSE(Has(CapsVideoStream));

    StreamConfig video;
    Client(video, "com.lumo.camera");
    video.Add(PreviewStream());
    video.Add(VideoStream());
    Configure(video);
    EXPECT_FALSE(Has(CapsMultiSpectral));
    EXPECT_TRUE(Has(CapsSystemCamera));
    EXPECT_TRUE(Has(CapsVideoStream));
    EXPECT_TRUE(LoggedExactly("I Video Stream Existed, Can Not Register MultiSpectral Sensor"));

    // An encoder stream of HEIF images is no video stream.
    StreamConfig heif;
    Client(heif, "com.example.app");
    StreamSpec image = VideoStream();
    image.dataSpace = 4100;
    heif.Add(image);
    Configure(heif);
    EXPECT_FALSE(Has(CapsVideoStream));
    EXPECT_FALSE(Has(CapsSystemCamera));
    EXPECT_FALSE(Has(CapsMultiSpectral));
}

TEST_F(SessionParamsTest, GenericCamFlagWrittenToSessionParameters) {
    LoadConfig(
        "[PackageName Group]\nSystemCamera = com.lumo.camera\nEngineerMode = com.lumo.eng\n");
    const uint32_t tag = GetVendorTagId(kTagIsGenericCam);
    auto generic = [&](const std::string& package, bool preset, bool cameraUnit = false) {
        StreamConfig config;
        Client(config, package);
        if (preset) {
            config.SessionParams().VendorByte(kTagIsGenericCam, 7);
        }
        if (cameraUnit) {
            config.SessionParams().VendorByte(kTagCameraUnit, 1);
        }
        CameraLog();
        Configure(config);
        EXPECT_EQ(!preset, LoggedExactly("E Can't find vendor tag IsGenericCam")) << package;
        return config.SessionParams().FirstByte(tag);
    };
    EXPECT_EQ(1, generic("com.example.app", false));
    EXPECT_EQ(1, generic("com.example.app", true));
    EXPECT_EQ(0, generic("com.lumo.camera", true));
    EXPECT_EQ(0, generic("com.lumo.eng", false));
    EXPECT_EQ(1, generic("com.example.app", false, true));

    // The debug property decides when it is set, and only then.
    property_set("vendor.debug.camera.policy.genericCam", "1");
    EXPECT_EQ(1, generic("com.lumo.camera", false));
    property_set("vendor.debug.camera.policy.genericCam", "false");
    EXPECT_EQ(0, generic("com.example.app", true));
    property_set("vendor.debug.camera.policy.genericCam", "");
    EXPECT_EQ(1, generic("com.example.app", true));
}

TEST_F(SessionParamsTest, EngineerCameraAlwaysOnAndLockMaster) {
    LoadConfig(
        "[PackageName Group]\nEngineerMode = com.lumo.eng\n[EngineercameraConfig]\n"
        "isNeedTwoCameraAlwaysOn = true\n[OemCamSettings]\nSupportSnaphotLockMaster = 1\n");
    StreamConfig engineer;
    Client(engineer, "com.lumo.eng");
    Configure(engineer);
    EXPECT_TRUE(Has(CapsTwoCameraAlwaysOn));
    EXPECT_TRUE(Has(CapsSnapshotLockMaster));
    EXPECT_TRUE(LoggedExactly("I engineer camera always on"));
    EXPECT_TRUE(LoggedExactly("I SupportSnaphotLockMaster is enabled"));

    StreamConfig app;
    Client(app, "com.example.app");
    Configure(app);
    EXPECT_FALSE(Has(CapsTwoCameraAlwaysOn));
}

TEST_F(SessionParamsTest, VideoFrameInsertion) {
    LoadConfig(
        "[VideoFrameInsertSupport]\nMode[0] = 0x8005, 3840\nMode[1] = 0x8105, 1920, 9\n"
        "Mode[2] = 0x8105\n");
    auto frameInsert = [this](uint32_t mode, uint32_t videoWidth, const std::string& cameraMode) {
        StreamConfig config(mode);
        config.Add(PreviewStream(1280, 720));
        config.Add(VideoStream(videoWidth, 1080));
        if (!cameraMode.empty()) {
            config.SessionParams().VendorString(kTagCameraMode, cameraMode);
        }
        Configure(config);
        return Has(CapsVideoFrameInsert);
    };
    EXPECT_TRUE(frameInsert(0x8105, 1920, "video_mode"));
    EXPECT_TRUE(LoggedExactly("I VideoFrameInsertSupport 1"));
    EXPECT_TRUE(frameInsert(0x8005, 3840, ""));
    // The unmasked mode and the width of a video stream must both match.
    EXPECT_FALSE(frameInsert(0x8005, 1920, ""));
    EXPECT_FALSE(frameInsert(0x8105, 3840, ""));
    EXPECT_FALSE(frameInsert(0x8105, 1920, "pro_video_mode"));
    EXPECT_FALSE(frameInsert(0x8005, 1280, ""));  // the preview stream's width

    LoadConfig("[VideoFrameInsertSupport]\nMode[0] = 0x8005\nMode[1] = 0x8005, 3840\n");
    EXPECT_FALSE(frameInsert(0x8005, 3840, ""));
    EXPECT_TRUE(LoggedExactly("I VideoFrameInsertSupport 0"));
}

TEST_F(SessionParamsTest, MissingSessionParameters) {
    LoadConfig("[OemCamSupportType]\nEnableReturnPrivateChiPhyMetaEarly = 0x8009\n");
    StreamConfig config(0x8009);
    config.Add(PreviewStream());
    config.Add(VideoStream());
    config.WithoutSessionParams();
    EXPECT_EQ(0, Configure(config));
    EXPECT_TRUE(LoggedExactly("E Invalid Args"));
    // The mode is not taken from a configuration without session parameters...
    EXPECT_FALSE(Has(CapsOpMode80BE8009));
    EXPECT_FALSE(Has(CapsSatFusion));
    // ...but the later steps still run on the configuration.
    EXPECT_TRUE(Has(CapsReturnPrivateChiPhyMetaEarly));
    EXPECT_TRUE(Has(CapsThirdPartyClient));
    EXPECT_TRUE(Has(CapsVideoStream));
}

TEST_F(SessionParamsTest, NothingOfTheFirstSessionSurvives) {
    LoadConfig(
        "[PackageName Group]\nSystemCamera = com.lumo.camera\n[DisableAePrecapture]\n"
        "scene[0] = com.lumo.camera, Main\n[OemCamSupportType]\nEnableSkipRawStream = 0x80b4\n");
    StreamConfig first(0x80B4);
    Client(first, "com.lumo.camera", "Main");
    first.SessionParams()
        .VendorString(kTagCameraMode, "pro_video_mode")
        .Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, {30, 120})
        .VendorByte(kTagFromMainMenu, 1)
        .VendorFloat(kTagWarmStartLux, 250.0f);
    StreamSpec extended = VideoStream();
    extended.extMode = 2;
    first.Add(extended);
    first.Add(RawStream(38, 4000, 3000));
    Configure(first);
    ASSERT_TRUE(m_parser->IsDisableAePrecaptureTriggerForSnapshot());
    ASSERT_TRUE(Has(CapsSkipRawStream));
    ASSERT_TRUE(Has(CapsExtModeStream));
    CameraLog();

    StreamConfig second(0x8003);
    Client(second, "com.example.app", "Other");
    second.Add(PreviewStream());
    Configure(second);
    EXPECT_STREQ("", m_parser->GetCameraMode());
    EXPECT_FALSE(m_parser->IsDisableAePrecaptureTriggerForSnapshot());
    EXPECT_TRUE(LoggedExactly("I warmStartLux: -1.000000"));
    // The bits this session's parameters, client and bokeh steps decide.
    for (DesiredSupportCaps bit : {CapsFps60,
                                   CapsFps120,
                                   CapsFps240,
                                   CapsFps480,
                                   CapsVideo120Fps,
                                   CapsSuperText,
                                   CapsMultiSpectral,
                                   CapsOpMode80BE8009,
                                   CapsSystemCamera,
                                   CapsVideoCameraMode,
                                   CapsSystemCameraApp,
                                   CapsVideoEIS,
                                   CapsProVideo,
                                   CapsProVideoLog,
                                   CapsTwoCameraAlwaysOn,
                                   CapsVideoStream,
                                   CapsCameraUnitSdk,
                                   CapsSystemCameraClient,
                                   CapsScanMode,
                                   CapsEngineerMode,
                                   CapsSkipRawStream,
                                   CapsReturnPrivateChiPhyMetaEarly,
                                   CapsFineFood,
                                   CapsGrMode,
                                   CapsCtsVerifier,
                                   CapsExtModeStream,
                                   CapsProVideoFamily,
                                   CapsSatFusion,
                                   CapsMLFTNodeExcluded,
                                   CapsSnapshotRaw12,
                                   CapsVideoFrameInsert,
                                   CapsSnapshotLockMaster,
                                   CapsCameraModeProVideoLog,
                                   CapsCameraModeProVideo,
                                   Caps3DLut,
                                   CapsEquivalentFocallengthOverride,
                                   CapsViewFinderUseAsdFullFovPath,
                                   CapsBokeh,
                                   CapsBokehOperationMode,
                                   CapsBokehStartWithFallback,
                                   CapsBokehTriplePreview}) {
        EXPECT_FALSE(Has(bit)) << bit;
    }
    EXPECT_TRUE(Has(CapsThirdPartyClient));
    EXPECT_TRUE(Has(CapsNotBokeh));
    EXPECT_TRUE(Has(CapsVideoMLFT));

    // Client names are replaced only by names: a configuration without them
    // keeps the client of the one before.
    StreamConfig third;
    Configure(third);
    EXPECT_STREQ("com.example.app", m_parser->GetPackageName());
    EXPECT_STREQ("Other", m_parser->GetActivityName());
}

}  // namespace
}  // namespace LumoraTest
