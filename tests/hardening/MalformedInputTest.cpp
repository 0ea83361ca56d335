// Inputs outside what a well-behaved HAL sends, found by fuzzing: the library
// must answer them without undefined behaviour (these cases are meant to run
// under the sanitizers, where a fault stops the test) and treat them as the
// nearest well-formed input.
#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class MalformedInputTest : public SessionTest {};

// Data spaces outside the values the enumeration names (here with bit 31 set)
// are plain values to compare: neither depth nor HEIF.
TEST_F(MalformedInputTest, DataSpacesOutsideTheEnumerationAreOrdinaryValues) {
    constexpr int32_t kVendorDataSpace = static_cast<int32_t>(0x8A000002u);
    m_device.Add(MultiCamera(3, 6, 6));
    Start(6);

    StreamConfig config(0x8010);  // bokeh: the preview streams of two cameras are counted
    StreamSetup preview = PreviewStream(1920, 1080, "0");
    preview.dataSpace = kVendorDataSpace;
    StreamSetup secondPreview = PreviewStream(1280, 720, "1");
    secondPreview.dataSpace = kVendorDataSpace;
    StreamSetup video = VideoStream();
    video.dataSpace = kVendorDataSpace;
    camera3_stream_t* previewStream = config.Add(preview);
    config.Add(secondPreview);
    camera3_stream_t* videoStream = config.Add(video);
    Configure(config);

    EXPECT_EQ(EStreamTypePreview, m_parser->GetStreamTypeByStream(previewStream));
    EXPECT_EQ(EStreamTypeVideo, m_parser->GetStreamTypeByStream(videoStream));
    EXPECT_TRUE(Has(CapsBokeh));
    EXPECT_TRUE(Has(CapsVideoStream));
    EXPECT_EQ("ZoomDivisionCurveCfg_Video_",
              m_parser->GetSatStaticCaps()->zoomDivisionCurveCfgPrefix);
}

// A stream count without its array, and null entries in the array, are
// streams that are not there.
TEST_F(MalformedInputTest, MissingStreamsAreSkipped) {
    OpenSingle();
    StreamConfig bare(0x8001);
    bare.WithoutStreamArray();
    SetClient(bare, "com.app");
    EXPECT_EQ(0, m_parser->ParseStaticCapabilities(bare.Get()));
    EXPECT_EQ(0, m_parser->ParseStreamCapabilities(bare.Get()));
    EXPECT_TRUE(Has(CapsThirdPartyClient));
    EXPECT_FALSE(Has(CapsStreamPreview));

    StreamConfig holes(0x8001);
    holes.AddNull();
    StreamSetup extended = PreviewStream();
    extended.extMode = 2;
    camera3_stream_t* preview = holes.Add(extended);
    holes.AddNull();
    Configure(holes);
    EXPECT_EQ(EStreamTypePreview, m_parser->GetStreamTypeByStream(preview));
    EXPECT_TRUE(Has(CapsExtModeStream));
}

}  // namespace
}  // namespace LumoraTest
