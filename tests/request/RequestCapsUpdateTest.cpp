// Per-request caps computed on a session object driven directly.
#include <map>
#include <stdexcept>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class RequestCapsUpdateTest : public SessionTest {};

// Sensor mode list value -> bits, for the logical camera of a single-camera
// session and for each physical camera.
const std::map<int32_t, _CapsBitset> kModeTable = {
    {1, BitsOf({19})},     {3, BitsOf({18})},          {4, BitsOf({18, 19})}, {5, BitsOf({19, 20})},
    {6, BitsOf({20, 21})}, {7, BitsOf({18, 19, 20})},  {8, BitsOf({22})},     {9, BitsOf({30})},
    {10, BitsOf({30})},    {11, BitsOf({19, 20, 81})}, {12, BitsOf({23})}};

TEST_F(RequestCapsUpdateTest, ModeValuesOfASingleCameraGoToBothSets) {
    Build(SingleCamera("wide"));
    m_peer->SetCameraCaps(0, CapsSHDR);
    for (int32_t mode = -3; mode <= 14; ++mode) {
        Request request(100 + mode);
        request.SensorModes({mode});
        EXPECT_EQ(0, Update(request));
        const auto found = kModeTable.find(mode);
        const _CapsBitset want = found != kModeTable.end() ? found->second : _CapsBitset();
        EXPECT_EQ(want, Caps(TypeLogicalCamera)) << "mode " << mode;
        EXPECT_EQ(want, Caps(0)) << "mode " << mode;
    }
}

TEST_F(RequestCapsUpdateTest, ModeValuesOfSeveralCamerasStayPerCameraAndNeedShdrForBit18) {
    Build(MultiCamera(2, 0, 0));
    m_peer->SetCameraCaps(1, CapsSHDR);  // only camera 1 supports SHDR
    Request request(1);
    request.SensorModes({4, 7});
    EXPECT_EQ(0, Update(request));
    EXPECT_EQ(_CapsBitset(), Caps(TypeLogicalCamera));
    EXPECT_EQ(BitsOf({19}), Caps(0));
    EXPECT_EQ(BitsOf({18, 19, 20}), Caps(1));
}

TEST_F(RequestCapsUpdateTest, WarmStartRuleDecidesWhenNoModeWasChosen) {
    struct Case {
        uint32_t enable;
        int32_t dolState;
        uint8_t fromMainMenu;
        bool supports22;
        bool supports18;
        uint32_t operationMode;
        _CapsBitset want;
    };
    const Case cases[] = {
        {1, 2, 1, true, true, 0, BitsOf({22})},
        {1, 2, 1, false, true, 0, BitsOf({18})},
        {1, 2, 1, false, false, 0, _CapsBitset()},
        {1, 3, 1, false, false, 0, BitsOf({22})},
        {1, 4, 1, false, false, 0, BitsOf({30})},
        {1, 5, 1, false, false, 0, BitsOf({19})},
        {1, 7, 1, false, false, 0, BitsOf({19, 20})},
        {1, 6, 1, true, true, 0, _CapsBitset()},
        {2, 3, 1, false, false, 0, _CapsBitset()},
        {1, 7, 0, false, false, 0x8031, BitsOf({19, 20})},
        {1, 7, 0, false, false, 0x8001, _CapsBitset()},
        {1, 3, 0, true, true, 0x8031, _CapsBitset()},
    };
    Build(SingleCamera("wide"));
    m_peer->SetCameraCaps(0, CapsSHDR);
    uint32_t frame = 0;
    for (const Case& c : cases) {
        m_peer->WarmStart(0) = {c.enable, 0, 0, 0, 0, 0, 0, 0, c.dolState};
        m_peer->SetFromMainMenu(c.fromMainMenu);
        m_peer->SetCameraCaps(0, CapsSHDRType1, c.supports22);
        m_peer->SetCameraCaps(0, CapsSHDRPath, c.supports18);
        m_peer->SetOperationMode(c.operationMode);
        Request request(++frame);
        request.SensorModes({-1});
        EXPECT_EQ(0, Update(request));
        EXPECT_EQ(c.want, Caps(0)) << "case " << frame;
        EXPECT_EQ(_CapsBitset(), Caps(TypeLogicalCamera)) << "case " << frame;
    }
}

TEST_F(RequestCapsUpdateTest, ReturnValueAndExposurePlanFollowTheWarmStartFallback) {
    Build(MultiCamera(2, 0, 0));
    m_peer->SetSessionCaps(CapsVideoStream);
    m_peer->SetFromMainMenu(1);
    m_lastResult.m_lastReqCameraAECInfo[0].expCount = 4;
    m_lastResult.m_lastReqCameraAECInfo[1].expCount = 1;

    Request noSettings(1);
    EXPECT_EQ(4, Update(noSettings));  // no enabled warm start: no exposure plan either
    EXPECT_EQ(_CapsBitset(), Caps(0));
    EXPECT_TRUE(LoggedExactly("I Invalid request, settings is NULL"));
    Request noList(2);
    noList.ZoomRatio(1.0f);
    EXPECT_EQ(4, Update(noList));
    EXPECT_TRUE(LoggedExactly("I Invalid SensorModeList. frameNum 2"));

    // One enabled camera is enough; its dolState does not matter.
    m_peer->WarmStart(1) = {1, 0, 0, 0, 0, 0, 0, 0, 9};
    Request enabled(3);
    EXPECT_EQ(0, Update(enabled));
    EXPECT_EQ(BitsOf({30}), Caps(0));
    EXPECT_EQ(BitsOf({17}), Caps(1));
    EXPECT_TRUE(
        LoggedExactly("I Use AECInfo exp count 4. frame_number 3 phyCamId 0 capsFlag 0x40000000"));

    // A single exposure undoes the DOL modes the list chose.
    m_peer->SetCameraCaps(1, CapsSHDR);
    m_lastResult.m_lastReqCameraAECInfo[0].expCount = 1;
    Request listed(4);
    listed.SensorModes({8, 4});
    EXPECT_EQ(0, Update(listed));
    EXPECT_EQ(BitsOf({17}), Caps(0));
    EXPECT_EQ(BitsOf({17, 19}), Caps(1));
}

TEST_F(RequestCapsUpdateTest, QbcThresholdsPerCamera) {
    Build(MultiCamera(3, 0, 0));
    Request none(1);
    none.SensorModes({0, 0, 0}).ZoomRatio(8.0f);
    Update(none);
    EXPECT_TRUE(LoggedExactly("I frame:1 phy:0 DisableQBC4x"));

    m_peer->SetZoomThresholds({2.0f, 0.0f, 3.0f});
    Request request(2);
    request.SensorModes({8, 0, 0}).ZoomRatio(2.0f);
    Update(request);
    EXPECT_EQ(BitsOf({22, 31}), Caps(0));  // equality enables
    EXPECT_EQ(_CapsBitset(), Caps(1));     // a threshold of 0 never does
    EXPECT_EQ(_CapsBitset(), Caps(2));
    EXPECT_TRUE(LoggedExactly("I frame:2 phy:0 EnableQBC4x"));

    m_peer->SetZoomThresholds({2.0f});  // no threshold for cameras 1 and 2
    request.ZoomRatio(9.0f);
    Update(request);
    EXPECT_TRUE(Caps(0).test(31));
    EXPECT_FALSE(Caps(1).test(31) || Caps(2).test(31));
}

TEST_F(RequestCapsUpdateTest, QbcOfASingleCameraTriesThePositionAfterTheOtherCamerasFirst) {
    Build(SingleCamera("wide"), 1);  // two cameras: position 0 + 2 - 1
    const struct {
        std::vector<float> thresholds;
        bool enabled;
    } cases[] = {{{5.0f, 2.0f}, true}, {{2.0f, 5.0f}, true}, {{3.0f, 2.5f}, false}, {{2.0f}, true}};
    for (const auto& c : cases) {
        m_peer->SetZoomThresholds(c.thresholds);
        Request request(1);
        request.SensorModes({0}).ZoomRatio(2.0f);
        Update(request);
        EXPECT_EQ(c.enabled, Caps(0).test(31)) << c.thresholds[0];
    }
}

TEST_F(RequestCapsUpdateTest, StreamBitsGoToTheCameraNamedByFrameworkId) {
    CameraSetup camera;
    camera.physicalCameras = {{0, 5, 0, true}, {0, 2, 1, false}, {0, 7, 2, false}};
    Build(camera);
    StreamConfig config;
    camera3_stream_t* preview = config.Add(PreviewStream());
    camera3_stream_t* raw = config.Add(RawStream(0x20, 4000, 3000, "2"));
    camera3_stream_t* liveShot = config.Add(YuvSnapshotStream(4000, 3000, "7"));
    camera3_stream_t* video = config.Add(VideoStream(1920, 1080, "3"));  // no camera: id 3 as is
    camera3_stream_t* jpeg = config.Add(JpegStream(4000, 3000, "9"));    // no camera, no slot
    camera3_stream_t* finder = config.Add(PreviewStream(1280, 720, "258"));  // slot 258 & 0xFF
    m_peer->AddStream(EStreamTypePreview, preview);
    m_peer->AddStream(EStreamTypeSnapshotRAWFull, raw);
    m_peer->AddStream(EStreamTypeVideoLiveShot, liveShot);
    m_peer->AddStream(EStreamTypeVideo, video);
    m_peer->AddStream(EStreamTypeSnapshotJPEG, jpeg);
    m_peer->AddStream(EStreamTypeViewFinder, finder);

    Request request(1);
    request.SensorModes({0, 0, 0}).Buffer(preview).Buffer(raw).Buffer(liveShot).Buffer(video);
    request.Buffer(jpeg).Buffer(finder).Buffer(nullptr);
    EXPECT_EQ(0, Update(request));
    EXPECT_EQ(BitsOf({0, 2, 6, 8, 10}), Caps(TypeLogicalCamera));
    EXPECT_EQ(BitsOf({6, 21}), Caps(1));
    EXPECT_EQ(BitsOf({8}), Caps(3));
    EXPECT_EQ(_CapsBitset(), Caps(0));
    EXPECT_EQ(BitsOf({10}), Caps(2));
    EXPECT_EQ(1u, m_record.GetStreamByStreamType(EStreamTypeVideoLiveShot)->size());
    EXPECT_EQ(raw, m_record.GetStreamByStreamType(EStreamTypeSnapshotRAWFull)->at(0).pStream);
    EXPECT_TRUE(m_record.GetStreamByStreamType(static_cast<StreamType>(16))->empty());

    // The lists are rebuilt per request; a null buffer array is skipped.
    Request bare(2);
    bare.SensorModes({0, 0, 0});
    auto* raw2 = const_cast<camera3_capture_request_t*>(bare.Get());
    raw2->num_output_buffers = 4;
    m_peer->SetOperationMode(0x80BE);
    EXPECT_EQ(0, m_record.UpdatePerRequestCaps(raw2, m_session.get(), m_lastResult));
    EXPECT_EQ(BitsOf({60}), Caps(TypeLogicalCamera));
    EXPECT_TRUE(m_record.GetStreamByStreamType(EStreamTypePreview)->empty());
}

// The bits a requested buffer sets, by the role of its stream: on the logical
// camera, and on the camera whose framework id the stream names.
TEST_F(RequestCapsUpdateTest, EachStreamRoleSetsItsOwnBits) {
    struct Case {
        StreamType type;
        std::initializer_list<size_t> logical;
        std::initializer_list<size_t> camera;
    };
    const Case cases[] = {
        {EStreamTypeNone, {}, {}},
        {EStreamTypePreview, {CapsStreamPreview}, {CapsStreamPreview}},
        {EStreamTypeSnapshotYUV, {CapsStreamSnapshotYUV}, {CapsStreamSnapshotYUV}},
        {EStreamTypeSnapshotJPEG, {CapsStreamSnapshotJPEG}, {CapsStreamSnapshotJPEG}},
        {EStreamTypeSnapshotRAW, {CapsStreamSnapshotRAW}, {CapsStreamSnapshotRAW}},
        {EStreamTypeSnapshotRAWShort, {CapsStreamSnapshotRAWShort}, {CapsStreamSnapshotRAWShort}},
        {EStreamTypeSnapshotRAWMiddle,
         {CapsStreamSnapshotRAWMiddle},
         {CapsStreamSnapshotRAWMiddle}},
        {EStreamTypeSnapshotRAWFull,
         {CapsStreamSnapshotRAWFull},
         {CapsStreamSnapshotRAWFull, CapsPhysicalRawStream}},
        {EStreamTypeSnapshotRAWFullYUV, {}, {}},
        {EStreamTypeSnapshotRAWQcfa2x2,
         {CapsStreamSnapshotRAWQcfa2x2},
         {CapsStreamSnapshotRAWQcfa2x2, CapsPhysicalRawStream}},
        {EStreamTypeVideo, {CapsStreamVideo}, {CapsStreamVideo}},
        {EStreamTypeVideoLiveShot, {}, {}},
        {EStreamTypeViewFinder, {CapsStreamViewFinder}, {CapsStreamViewFinder}},
        {EStreamTypeASDPreview, {CapsStreamASDPreview}, {CapsStreamASDPreview}},
        {EStreamTypeMetadata, {CapsStreamMetadata}, {CapsStreamMetadata}},
        {EStreamTypeMultiSpectralRaw, {CapsStreamMultiSpectralRaw}, {CapsStreamMultiSpectralRaw}},
    };
    CameraSetup camera;
    camera.physicalCameras = {{0, 5, 0, true}, {0, 6, 1, false}};
    Build(camera);
    StreamConfig config;
    uint32_t frame = 0;
    for (const Case& c : cases) {
        // Framework id 5 is the first entry's, whose physical id is 0.
        camera3_stream_t* stream = config.Add(PreviewStream(640, 480, "5"));
        m_peer->AddStream(c.type, stream);
        Request request(++frame);
        request.SensorModes({0, 0}).Buffer(stream);
        EXPECT_EQ(0, Update(request));
        EXPECT_EQ(BitsOf(c.logical), Caps(TypeLogicalCamera)) << c.type;
        EXPECT_EQ(BitsOf(c.camera), Caps(0)) << c.type;
        EXPECT_EQ(_CapsBitset(), Caps(5)) << c.type;
        EXPECT_EQ(1u, m_record.GetStreamByStreamType(c.type)->size()) << c.type;
    }
}

// The per-camera rules visit the record's entries and no slot after them,
// which reads as physical camera 0.
TEST_F(RequestCapsUpdateTest, CameraLoopsStopAtTheLastEntry) {
    CameraSetup camera;
    camera.physicalCameras = {{0, 1, 1, true}, {0, 2, 2, false}};
    Build(camera);
    m_peer->SetZoomThresholds({1.0f});
    m_peer->SetFromMainMenu(1);
    m_peer->WarmStart(0) = {1, 0, 0, 0, 0, 0, 0, 0, 3};
    Request zoomed(1);
    zoomed.SensorModes({0, 0, 0}).ZoomRatio(4.0f);
    EXPECT_EQ(0, Update(zoomed));
    EXPECT_EQ(_CapsBitset(), Caps(0));
    Request noSettings(2);
    EXPECT_EQ(4, Update(noSettings));  // no camera of the record has an enabled warm start
    EXPECT_EQ(_CapsBitset(), Caps(0));
}

TEST_F(RequestCapsUpdateTest, ShortListsAndIdsWithoutSlotsAreHarmless) {
    CameraSetup camera;
    camera.physicalCameras = {{0, 0, 0, true}, {0, 9, 9, false}, {0, 20, 20, false}};
    Build(camera);
    m_peer->SetSessionCaps(CapsVideoStream);
    m_peer->SetFromMainMenu(1);
    m_peer->SetZoomThresholds({1.0f});
    m_peer->WarmStart(9) = {1, 0, 0, 0, 0, 0, 0, 0, 3};
    Request request(1);
    request.SensorModes({5}).ZoomRatio(4.0f);
    EXPECT_EQ(0, Update(request));
    EXPECT_EQ(BitsOf({19, 20, 31}), Caps(0));
    EXPECT_TRUE(LoggedExactly(
        "I frame_number 1 phyCamId 9 capsFlag 0x0000, SensorModeList: 5 -1 -1 -1 -1"));

    Request noSettings(2);
    EXPECT_EQ(0, Update(noSettings));  // camera 9 has an enabled record, but no caps slot
    EXPECT_EQ(_CapsBitset(), Caps(9));
    EXPECT_FALSE(m_record.IsRequestSupportCaps(CapsSHDRType1, static_cast<QueryCapsType>(9)));
    EXPECT_THROW(m_record.IsRequestSupportCaps(static_cast<DesiredSupportCaps>(100),
                                               static_cast<QueryCapsType>(9)),
                 std::out_of_range);
}

}  // namespace
}  // namespace LumoraTest
