// Preview pipeline defaults and the mip-map preview switch.
#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class PreviewPipelineTest : public SessionTest {};

TEST_F(PreviewPipelineTest, DefaultNameWhenNoRowMatches) {
    OpenSingle();
    // A row of an operation mode this session does not run.
    LoadConfig(
        "[OemDecouplePipelines]\nisSupportLowLatency = true\n"
        "[OPreviewPipelines]\nmode[0] = 0x8123, 255, 1, \"Other\"\n");
    StreamConfig config;
    config.Add(PreviewStream());
    Configure(config);
    EXPECT_STREQ("TavroSingleDefault", m_parser->GetPipelineName());
    EXPECT_FALSE(Has(CapsLowLatencyPipeline));
    EXPECT_TRUE(LoggedExactly("I select pipeline name TavroSingleDefault"));
}

TEST_F(PreviewPipelineTest, MipmapPreviewNeedsBothSwitchesAndNoVideo) {
    OpenSingle();
    const std::string both =
        "[OemDecouplePipelines]\nisSupportLowLatency = true\nisEnableMIPMAP = true\n";
    LoadConfig(both);
    StreamConfig preview;
    preview.Add(PreviewStream());
    Configure(preview);
    EXPECT_TRUE(Has(CapsMipmapPreview));

    StreamConfig withVideo;
    withVideo.Add(PreviewStream());
    withVideo.Add(VideoStream());
    Configure(withVideo);
    EXPECT_FALSE(Has(CapsMipmapPreview));

    LoadConfig("[OemDecouplePipelines]\nisEnableMIPMAP = true\n");
    Configure(preview);
    EXPECT_FALSE(Has(CapsMipmapPreview));
}

}  // namespace
}  // namespace LumoraTest
