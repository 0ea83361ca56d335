// The mip-map preview switch; the pipeline rows are tested with the sessions
// that select them (StreamsIntegrationTest).
#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class PreviewPipelineTest : public SessionTest {};

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
