// Stream roles and stream caps. These cases hold for any operation mode
// outside the vendor lists and an ordinary (third-party) client.
#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

constexpr int64_t kUseCaseMultiSpectral = 0x0080000000010000;
constexpr int64_t kUseCaseRawFull = 0x0400000000010000;
constexpr int64_t kUseCaseRawShort = 0x0800000000010000;
constexpr int64_t kUseCaseRawMiddle = 0x0800000000080000;

class StreamClassificationTest : public SessionTest {};

TEST_F(StreamClassificationTest, ResolutionClassesAtTheirBoundaries) {
    OpenSingle();
    const auto classes = [this] {
        return std::string() + (Has(CapsResolution4K) ? "4K " : "") +
               (Has(CapsResolution1080P) ? "1080 " : "") + (Has(CapsResolution720P) ? "720 " : "") +
               (Has(CapsVideoBelow4K) ? "below4K" : "");
    };
    const std::pair<uint32_t, std::string> cases[] = {
        {719, ""}, {720, "720 "}, {1079, "720 "}, {1080, "1080 "}, {2159, "1080 "}, {2160, "4K "}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.first);
        EXPECT_EQ(EStreamTypePreview, ClassifyAlone(PreviewStream(1920, c.first)));
        EXPECT_EQ(c.second, classes());
        EXPECT_EQ(EStreamTypeVideo, ClassifyAlone(VideoStream(1920, c.first)));
        const bool below4K = c.first >= 720 && c.first < 2160;
        EXPECT_EQ(c.second + (below4K ? "below4K" : ""), classes());
    }
}

TEST_F(StreamClassificationTest, DepthPassesTheVideoRulesButNotThePreviewRules) {
    OpenSingle();
    StreamSetup preview = PreviewStream();
    preview.dataSpace = 0x1000;
    // Depth data is no preview; the YUV stream falls to the snapshot rule.
    EXPECT_EQ(EStreamTypeSnapshotYUV, ClassifyAlone(preview));
    EXPECT_FALSE(Has(CapsResolution1080P));
    preview.dataSpace = 0x1004;
    EXPECT_EQ(EStreamTypeNone, ClassifyAlone(preview));

    StreamSetup video = VideoStream();
    video.dataSpace = 0x1000;
    EXPECT_EQ(EStreamTypeVideo, ClassifyAlone(video));
    EXPECT_TRUE(Has(CapsVideoBelow4K));
    video.dataSpace = 0x1004;
    EXPECT_NE(EStreamTypeVideo, ClassifyAlone(video));
    EXPECT_FALSE(Has(CapsVideoBelow4K));
    // The vendor video flag counts as video usage, also on an input stream.
    video = VideoStream();
    video.usage = 0x80;
    video.streamType = 1;
    EXPECT_EQ(EStreamTypeVideo, ClassifyAlone(video));
}

TEST_F(StreamClassificationTest, SmallPreviewOutsideTheMultiCameraModesIsPreview) {
    OpenSingle();
    EXPECT_EQ(EStreamTypePreview, ClassifyAlone(PreviewStream(320, 240)));
    // An ordinary client's YUV preview wants preview OIS.
    EXPECT_TRUE(Has(CapsPreviewOis));
    EXPECT_TRUE(Has(CapsThirdAppStream));
    EXPECT_TRUE(Has(CapsThirdAppTuning));
}

TEST_F(StreamClassificationTest, JpegAndHeifSnapshots) {
    OpenSingle();
    StreamSetup blob = JpegStream();
    EXPECT_EQ(EStreamTypeSnapshotJPEG, ClassifyAlone(blob));
    EXPECT_TRUE(Has(CapsStreamSnapshotJPEG));
    blob.dataSpace = 0x101;
    EXPECT_EQ(EStreamTypeSnapshotJPEG, ClassifyAlone(blob));
    blob.dataSpace = 0x1004;
    EXPECT_EQ(EStreamTypeNone, ClassifyAlone(blob));
    EXPECT_FALSE(Has(CapsStreamSnapshotJPEG));
    blob.usage |= 0x40;
    EXPECT_EQ(EStreamTypeMetadata, ClassifyAlone(blob));
    EXPECT_TRUE(Has(CapsStreamMetadata));
}

TEST_F(StreamClassificationTest, YuvSnapshotIsLiveShotWheneverAVideoStreamIsConfigured) {
    OpenSingle();
    EXPECT_EQ(EStreamTypeSnapshotYUV, ClassifyAlone(YuvSnapshotStream()));
    EXPECT_TRUE(Has(CapsStreamSnapshotYUV));
    EXPECT_FALSE(Has(CapsRawStream));
    EXPECT_EQ(EStreamTypeSnapshotRAWFullYUV, ClassifyAlone(YuvSnapshotStream(6560, 100)));
    EXPECT_TRUE(Has(CapsStreamSnapshotYUV));
    EXPECT_EQ(EStreamTypeSnapshotRAWFullYUV, ClassifyAlone(YuvSnapshotStream(100, 4928)));
    StreamSetup opaque = YuvSnapshotStream(6560, 4928);
    opaque.format = 0x22;
    EXPECT_EQ(EStreamTypeSnapshotYUV, ClassifyAlone(opaque));
    opaque.usage |= 0x40000000;
    EXPECT_EQ(EStreamTypeSnapshotRAWFullYUV, ClassifyAlone(opaque));

    // The video stream may come after the snapshot: the whole configuration counts.
    StreamConfig config;
    camera3_stream_t* snapshot = config.Add(YuvSnapshotStream());
    camera3_stream_t* video = config.Add(VideoStream());
    Configure(config);
    EXPECT_EQ(EStreamTypeVideoLiveShot, m_parser->GetStreamTypeByStream(snapshot));
    EXPECT_EQ(EStreamTypeVideo, m_parser->GetStreamTypeByStream(video));
    EXPECT_TRUE(Has(CapsStreamVideoLiveShot));
    EXPECT_FALSE(Has(CapsStreamSnapshotYUV));
}

TEST_F(StreamClassificationTest, RawKinds) {
    OpenSingle();
    struct Case {
        StreamSetup setup;
        StreamType type;
        DesiredSupportCaps bit;
        bool raw;
    };
    StreamSetup raw16Metadata = RawStream(0x20, 4000, 3000);
    raw16Metadata.usage |= 0x40;
    StreamSetup raw10Metadata = RawStream(0x25, 4000, 3000);
    raw10Metadata.usage |= 0x40;
    StreamSetup blobFull = JpegStream();
    blobFull.dataSpace = 0x1004;
    blobFull.useCase = kUseCaseRawFull;
    const Case cases[] = {
        {RawStream(0x20, 4000, 3000), EStreamTypeSnapshotRAW, CapsStreamSnapshotRAW, true},
        {RawStream(0x26, 4000, 3000), EStreamTypeSnapshotRAW, CapsStreamSnapshotRAW, true},
        {raw10Metadata, EStreamTypeSnapshotRAW, CapsStreamSnapshotRAW, true},
        {raw16Metadata, EStreamTypeMetadata, CapsStreamMetadata, false},
        {RawStream(0x20, 4000, 3000, "", kUseCaseRawShort), EStreamTypeSnapshotRAWShort,
         CapsStreamSnapshotRAWShort, true},
        {RawStream(0x25, 4000, 3000, "", kUseCaseRawMiddle), EStreamTypeSnapshotRAWMiddle,
         CapsStreamSnapshotRAWMiddle, true},
        {RawStream(0x20, 4000, 3000, "", kUseCaseMultiSpectral), EStreamTypeMultiSpectralRaw,
         CapsStreamMultiSpectralRaw, false},
        // The full raw use case makes any stream a full-size raw.
        {blobFull, EStreamTypeSnapshotRAWFull, CapsStreamSnapshotRAWFull, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type);
        EXPECT_EQ(c.type, ClassifyAlone(c.setup));
        EXPECT_TRUE(Has(c.bit));
        EXPECT_EQ(c.raw, Has(CapsRawStream));
    }
    // Opaque raw without a QCFA sensor has no role.
    EXPECT_EQ(EStreamTypeNone, ClassifyAlone(RawStream(0x24, 4000, 3000)));
    EXPECT_FALSE(Has(CapsRawStream));
}

TEST_F(StreamClassificationTest, FullRawUseCaseMarksItsPhysicalCamera) {
    m_device.Add(MultiCamera(3, 5, 3));
    Start(5);
    EXPECT_EQ(EStreamTypeSnapshotRAWFull,
              ClassifyAlone(RawStream(0x20, 4000, 3000, "2", kUseCaseRawFull)));
    EXPECT_TRUE(Has(CapsStreamSnapshotRAWFull, 2));
    EXPECT_TRUE(Has(CapsPhysicalRawStream, 2));
    EXPECT_FALSE(Has(CapsPhysicalRawStream, 1));
}

class QcfaClassificationTest : public SessionTest {
protected:
    void StartQcfa(uint16_t modeFlag, int32_t physicalFrameworkId = 0) {
        CameraSetup setup = SingleCamera("qcfa50");
        setup.physicalCameras[0].frameworkId = physicalFrameworkId;
        setup.fullArrayWidth = 8000;
        setup.fullArrayHeight = 6000;
        setup.sensorModeFlags = {0x1, modeFlag};
        m_device.Add(setup);
        Start();
        LoadConfig("[OemRemosaicConfig]\nEnable2x2XCFA = true\n2x2XCFASensorNameList = qcfa50\n");
    }
};

TEST_F(QcfaClassificationTest, RawBetweenHalfAndFullArrayWidthIsQcfa2x2) {
    StartQcfa(0x800);
    EXPECT_EQ(EStreamTypeSnapshotRAWQcfa2x2, ClassifyAlone(RawStream(0x20, 4000, 3000, "0")));
    EXPECT_TRUE(Has(CapsStreamSnapshotRAWQcfa2x2));
    EXPECT_TRUE(Has(CapsStreamSnapshotRAWQcfa2x2, 0));
    EXPECT_TRUE(Has(CapsPhysicalRawStream, 0));
    EXPECT_TRUE(LoggedExactly("I 2x2QCFA pStream->width 4000 frameworkId 0"));
    // Opaque raw is a QCFA candidate too.
    EXPECT_EQ(EStreamTypeSnapshotRAWQcfa2x2, ClassifyAlone(RawStream(0x24, 7999, 3000, "0")));

    EXPECT_EQ(EStreamTypeSnapshotRAW, ClassifyAlone(RawStream(0x20, 3999, 3000, "0")));
    EXPECT_EQ(EStreamTypeSnapshotRAW, ClassifyAlone(RawStream(0x20, 0, 0, "0")));
    EXPECT_FALSE(Has(CapsPhysicalRawStream, 0));
    EXPECT_EQ(EStreamTypeSnapshotRAWFull, ClassifyAlone(RawStream(0x20, 8000, 6000, "0")));
    EXPECT_EQ(EStreamTypeSnapshotRAWFull, ClassifyAlone(RawStream(0x20, 0xFFFFFFFF, 1, "0")));
    EXPECT_TRUE(Has(CapsStreamSnapshotRAWFull, 0));
    EXPECT_TRUE(Has(CapsPhysicalRawStream, 0));

    // Without a physical camera id the session still has a QCFA camera, but no
    // camera gets the per-camera bits.
    EXPECT_EQ(EStreamTypeSnapshotRAWQcfa2x2, ClassifyAlone(RawStream(0x20, 4000, 3000)));
    EXPECT_FALSE(Has(CapsPhysicalRawStream, 0));
    // A camera id that is not a number reads as camera 0.
    EXPECT_EQ(EStreamTypeSnapshotRAWQcfa2x2, ClassifyAlone(RawStream(0x20, 4000, 3000, "x")));
    EXPECT_EQ(EStreamTypeSnapshotRAW, ClassifyAlone(RawStream(0x20, 4000, 3000, "9")));
}

// A stream names its camera by framework id, not by physical id.
TEST_F(QcfaClassificationTest, StreamsNameTheCameraByFrameworkId) {
    StartQcfa(0x800, 5);
    EXPECT_EQ(EStreamTypeSnapshotRAWQcfa2x2, ClassifyAlone(RawStream(0x20, 4000, 3000, "5")));
    EXPECT_EQ(EStreamTypeSnapshotRAW, ClassifyAlone(RawStream(0x20, 4000, 3000, "0")));
}

TEST_F(QcfaClassificationTest, NoQcfaRolesWithoutTheRemosaicSensorMode) {
    StartQcfa(0x400);
    EXPECT_EQ(EStreamTypeSnapshotRAW, ClassifyAlone(RawStream(0x20, 4000, 3000, "0")));
    EXPECT_EQ(EStreamTypeSnapshotRAW, ClassifyAlone(RawStream(0x20, 8000, 6000, "0")));
    EXPECT_EQ(EStreamTypeNone, ClassifyAlone(RawStream(0x24, 8000, 6000, "0")));
}

class StreamQueryTest : public SessionTest {};

TEST_F(StreamQueryTest, ListsFollowTheCurrentConfigurationOnly) {
    m_device.Add(MultiCamera(3, 5, 3));
    Start(5);
    StreamConfig config;
    camera3_stream_t* preview = config.Add(PreviewStream(1920, 1080, "1"));
    camera3_stream_t* jpeg = config.Add(JpegStream(4000, 3000, "2"));
    config.Add(YuvSnapshotStream(640, 480, "0"));
    Configure(config);
    const std::vector<_UIStreamInfo>* list =
        m_parser->GetStreamByStreamType(EStreamTypeSnapshotJPEG);
    ASSERT_EQ(1u, list->size());
    EXPECT_EQ(1u, (*list)[0].streamIndex);
    EXPECT_EQ(2, (*list)[0].phyCameraId);
    EXPECT_EQ(jpeg, (*list)[0].pStream);
    EXPECT_EQ(1, m_parser->GetCameraIndexByStream(preview));
    // The survey records each stream's size for its physical camera.
    EXPECT_EQ(1920u, m_parser->GetSensorDimension()[1].width);
    EXPECT_EQ(3000u, m_parser->GetSensorDimension()[2].height);
    EXPECT_EQ(640u, m_parser->GetSensorDimension()[0].width);

    StreamConfig next;
    next.Add(VideoStream());
    Configure(next);
    EXPECT_TRUE(m_parser->GetStreamByStreamType(EStreamTypeSnapshotJPEG)->empty());
    EXPECT_EQ(EStreamTypeNone, m_parser->GetStreamTypeByStream(jpeg));
}

TEST_F(StreamQueryTest, OddInputGetsNoAnswerOutsideTheLists) {
    m_device.Add(MultiCamera(3, 5, 3));
    Start(5);
    StreamConfig config;
    StreamSetup nullId = PreviewStream();
    nullId.hasPhysicalId = false;
    camera3_stream_t* streams[] = {config.Add(PreviewStream(1920, 1080, "")), nullptr,
                                   config.Add(nullId), config.Add(PreviewStream(64, 64, "8")),
                                   config.Add(VideoStream())};
    ASSERT_EQ(0, m_parser->ParseStaticCapabilities(config.Get()));
    // A null entry in the stream array gets no role; the others are classified.
    camera3_stream_configuration_t withNull = *config.Get();
    withNull.streams = streams;
    withNull.num_streams = 5;
    ASSERT_EQ(0, m_parser->ParseStreamCapabilities(&withNull));
    EXPECT_TRUE(LoggedContaining("E num_streams 1/5 pStream is null"));
    EXPECT_EQ(3u, m_parser->GetStreamByStreamType(EStreamTypePreview)->size());
    EXPECT_EQ(4u, m_parser->GetStreamByStreamType(EStreamTypeVideo)->front().streamIndex);

    for (camera3_stream_t* stream : {streams[0], streams[2], streams[3], streams[1]}) {
        EXPECT_EQ(-1, m_parser->GetCameraIndexByStream(stream));
    }
    EXPECT_EQ(EStreamTypeNone, m_parser->GetStreamTypeByStream(nullptr));
    for (int type : {-1, 16, 1000}) {
        EXPECT_TRUE(m_parser->GetStreamByStreamType(StreamType(type))->empty());
    }
}

TEST_F(StreamQueryTest, StreamWithoutPhysicalIdBelongsToAnEntryOfFrameworkIdMinusOne) {
    CameraSetup camera = MultiCamera(3, 5, 3);
    camera.physicalCameras[2].frameworkId = -1;
    m_device.Add(camera);
    Start(5);
    StreamConfig config;
    camera3_stream_t* plain = config.Add(PreviewStream(1280, 720));
    camera3_stream_t* physical = config.Add(PreviewStream(640, 480, "1"));
    Configure(config);
    EXPECT_EQ(2, m_parser->GetCameraIndexByStream(plain));
    EXPECT_EQ(1, m_parser->GetCameraIndexByStream(physical));
    EXPECT_EQ(1280u, m_parser->GetSensorDimension()[2].width);
    EXPECT_EQ(720u, m_parser->GetSensorDimension()[2].height);
    EXPECT_EQ(480u, m_parser->GetSensorDimension()[1].height);
}

TEST_F(StreamQueryTest, ListsAreLoggedInTheCameraLayersOrder) {
    OpenSingle();
    StreamConfig config;
    camera3_stream_t* video = config.Add(VideoStream(3840, 2160));
    config.Add(PreviewStream(1280, 720));
    config.Add(RawStream(0x20, 4000, 3000, "", kUseCaseMultiSpectral));
    CameraLog();
    Configure(config);
    char videoLine[256];
    snprintf(videoLine, sizeof(videoLine),
             "I [EStreamTypeVideo] size 1 streamIndex 0 phyCameraId -1 pStream %p, format 22, "
             "width 3840, height 2160",
             static_cast<const void*>(video));
    const std::vector<std::string> log = CameraLog();
    const auto startsWith = [&](const std::string& text) {
        return std::find_if(log.begin(), log.end(),
                            [&](const std::string& line) { return line.rfind(text, 0) == 0; });
    };
    const auto previewAt = startsWith("I [EStreamTypePreview] size 1 streamIndex 1 ");
    ASSERT_NE(log.end(), previewAt);
    const auto videoAt = std::find(log.begin(), log.end(), std::string(videoLine));
    ASSERT_NE(log.end(), videoAt);
    EXPECT_LT(previewAt, videoAt);
    const auto spectralAt = startsWith("I [EStreamTypeMultiSpectralRaw] size 1 streamIndex 2 ");
    ASSERT_NE(log.end(), spectralAt);
    EXPECT_NE(std::string::npos, spectralAt->find(", stream_use_case:80000000010000"));
}

}  // namespace
}  // namespace LumoraTest
