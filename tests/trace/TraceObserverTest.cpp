// The host trace of the traced library: a configuration reports its twenty
// steps in order with the caps after each, and a request reports what
// contributed to its caps.
#include <string>
#include <vector>

#include "common/CapsConstants.h"
#include "common/Trace.h"
#include "support/TestDevice.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

constexpr uint32_t kTagAsdScene = 38;
constexpr uint32_t kTagPipSensor = 159;

struct StepSeen {
    std::string name;
    uint32_t index;
    _CapsBitset logical;
    _CapsBitset camera0;
    uint32_t physicalId0;
    std::string cameraMode;
    uint32_t isSystemCamera;
};

class Recorder : public Trace::Observer {
public:
    void OnConfigurationBegin(const camera3_stream_configuration* config) override {
        modeAtBegin = config->operation_mode;
    }
    void OnStepBegin(const char* name, uint32_t index) override {
        begun.push_back(std::string(name) + "#" + std::to_string(index));
    }
    void OnStepEnd(const Trace::_Step& step) override {
        steps.push_back({step.name, step.index, *step.logical, step.cameraCaps[0],
                         step.cameraCount > 0 ? step.cameras[0].physicalCamId : 99u,
                         step.facts.cameraMode, step.facts.isSystemCamera});
    }
    void OnContribution(const Trace::_Contribution& contribution) override {
        contributions.push_back(contribution);
    }
    void OnRequestEnd(uint32_t frame, const _CapsBitset& primary, const _CapsBitset*,
                      int32_t status) override {
        endFrame = frame;
        endPrimary = primary;
        endStatus = status;
    }
    // The contributions of one source, in order.
    std::vector<Trace::_Contribution> Of(Trace::Source source) const {
        std::vector<Trace::_Contribution> found;
        for (const Trace::_Contribution& c : contributions) {
            if (c.source == source) {
                found.push_back(c);
            }
        }
        return found;
    }

    uint32_t modeAtBegin = 0;
    std::vector<std::string> begun;
    std::vector<StepSeen> steps;
    std::vector<Trace::_Contribution> contributions;
    uint32_t endFrame = 0;
    _CapsBitset endPrimary;
    int32_t endStatus = -1;
};

// The first step after which `bit` of the logical caps is set, or "".
std::string StepThatSet(const std::vector<StepSeen>& steps, size_t bit) {
    for (const StepSeen& step : steps) {
        if (step.logical.test(bit)) {
            return step.name;
        }
    }
    return "";
}

class TraceObserverTest : public UiLayerTest {
protected:
    void SetUp() override {
        UiLayerTest::SetUp();
        m_device.Add(SingleCamera("wide"));
        m_device.Init();
        m_parser = IuiLayer::Get(0);
        Trace::SetObserver(&m_recorder);
    }
    void TearDown() override {
        Trace::SetObserver(nullptr);
        UiLayerTest::TearDown();
    }
    // A system camera video_mode session at 120 fps in mode 0x8009 with a preview.
    camera3_stream_t* Configure() {
        LoadConfig(
            "[PackageName Group]\nSystemCamera = com.lumora.camera\n"
            "[FlowControl]\nisEnableFlowControl = true\n"
            "[AIAFTouch2track]\nMode[0] = 0x8009, 0x1\n");
        m_config.SetOperationMode(0x8009);
        SetClient(m_config, "com.lumora.camera");
        m_config.SessionParams()
            .Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, {30, 120})
            .VendorString(kTagCameraMode, "video_mode");
        camera3_stream_t* preview = m_config.Add(PreviewStream());
        EXPECT_EQ(0, m_parser->ParseStaticCapabilities(m_config.Get()));
        EXPECT_EQ(0, m_parser->ParseStreamCapabilities(m_config.Get()));
        return preview;
    }

    CameraTable m_device;
    std::shared_ptr<IuiLayer> m_parser;
    StreamConfig m_config;
    Recorder m_recorder;
};

TEST_F(TraceObserverTest, ConfigurationReportsTwentyStepsInOrderWithTheCapsAfterEach) {
    Configure();
    EXPECT_EQ(0x8009u, m_recorder.modeAtBegin);
    ASSERT_EQ(kConfigStepCount, m_recorder.steps.size());
    ASSERT_EQ(20u, kConfigStepCount);
    for (uint32_t i = 0; i < kConfigStepCount; ++i) {
        EXPECT_EQ(kConfigStepNames[i], m_recorder.steps[i].name);
        EXPECT_EQ(i, m_recorder.steps[i].index);
        EXPECT_EQ(m_recorder.steps[i].name + "#" + std::to_string(i), m_recorder.begun.at(i));
    }
    // Each bit is seen first after the step that sets it.
    EXPECT_EQ("ParseSessionParams", StepThatSet(m_recorder.steps, CapsVideoEIS));
    EXPECT_EQ("ParseSessionParams", StepThatSet(m_recorder.steps, CapsSystemCameraClient));
    EXPECT_EQ("ConfigSupportCapsBokeh", StepThatSet(m_recorder.steps, CapsNotBokeh));
    EXPECT_EQ("ConfigSupportCapsSAT", StepThatSet(m_recorder.steps, CapsBokehOrSingleCamera));
    EXPECT_EQ("ConfigAIAF", StepThatSet(m_recorder.steps, CapsAIAFTouch2Track));
    EXPECT_EQ("ConfigSupportCapsFlowControl", StepThatSet(m_recorder.steps, CapsFlowControl));
    EXPECT_EQ("ParseStreamsInfo", StepThatSet(m_recorder.steps, CapsStreamPreview));
    // Per camera: the AIAF camera bit of the camera entry at position 0.
    EXPECT_FALSE(m_recorder.steps[9].camera0.test(CapsAIAFTouch2Track));
    EXPECT_TRUE(m_recorder.steps[10].camera0.test(CapsAIAFTouch2Track));
    EXPECT_EQ(0u, m_recorder.steps[10].physicalId0);
    // The facts follow the steps; the last caps are the session's.
    EXPECT_EQ("video_mode", m_recorder.steps.back().cameraMode);
    EXPECT_EQ(1u, m_recorder.steps.back().isSystemCamera);
    for (size_t bit = 0; bit < _CapsBitset::kBitCount; ++bit) {
        const auto caps = static_cast<DesiredSupportCaps>(bit);
        EXPECT_EQ(m_parser->IsSessionSupportCaps(caps, TypeLogicalCamera),
                  m_recorder.steps.back().logical.test(bit))
            << bit;
        EXPECT_EQ(m_parser->IsSessionSupportCaps(caps, static_cast<QueryCapsType>(0)),
                  m_recorder.steps.back().camera0.test(bit))
            << bit;
    }
}

TEST_F(TraceObserverTest, RequestReportsEachContributionWithTheCapsItChanged) {
    camera3_stream_t* preview = Configure();
    m_recorder.contributions.clear();
    Request request(7);
    request.Buffer(preview).SensorModes({4}).ZoomRatio(2.0f);
    request.Settings().VendorInt32(kTagAsdScene, {29}).VendorInt32(kTagPipSensor, {1});
    ASSERT_EQ(0, m_parser->UpdatePerRequestCaps(request.Get()));

    auto zoom = m_recorder.Of(Trace::kSourceZoomRatio);
    ASSERT_EQ(1u, zoom.size());
    EXPECT_EQ(2.0f, zoom[0].zoomRatio);
    EXPECT_EQ(zoom[0].cameraBefore[0], zoom[0].cameraAfter[0]);  // no threshold list

    // Mode 4 adds bits 18 and 19 to the camera and, on one camera, the request;
    // without SHDR in the session bit 18 is withdrawn from the camera again.
    auto modes = m_recorder.Of(Trace::kSourceSensorModeList);
    ASSERT_EQ(1u, modes.size());
    EXPECT_EQ(0, modes[0].camera);
    EXPECT_EQ(4, modes[0].value);
    EXPECT_EQ(CapsBits(CapsSHDRPath, CapsSensorModeFlag19), modes[0].cameraAfter[0]);
    EXPECT_EQ(CapsBits(CapsSHDRPath, CapsSensorModeFlag19), modes[0].primaryAfter);
    auto shdr = m_recorder.Of(Trace::kSourceShdrSupport);
    ASSERT_EQ(1u, shdr.size());
    EXPECT_TRUE(shdr[0].cameraBefore[0].test(CapsSHDRPath));
    EXPECT_FALSE(shdr[0].cameraAfter[0].test(CapsSHDRPath));

    auto buffers = m_recorder.Of(Trace::kSourceStreamBuffer);
    ASSERT_EQ(1u, buffers.size());
    EXPECT_EQ(EStreamTypePreview, buffers[0].value);
    EXPECT_EQ(0, buffers[0].detail);
    EXPECT_EQ(preview, buffers[0].stream);
    EXPECT_EQ(-1, buffers[0].camera);
    EXPECT_FALSE(buffers[0].primaryBefore.test(CapsStreamPreview));
    EXPECT_TRUE(buffers[0].primaryAfter.test(CapsStreamPreview));

    auto settings = m_recorder.Of(Trace::kSourceSetting);
    ASSERT_EQ(1u, settings.size());
    EXPECT_EQ(kTagPipSensor, settings[0].tag);
    EXPECT_EQ(1, settings[0].value);
    EXPECT_EQ(29, settings[0].detail);
    EXPECT_TRUE(settings[0].primaryAfter.test(CapsMoonLayout));

    auto mode = m_recorder.Of(Trace::kSourceOperationMode);
    ASSERT_EQ(1u, mode.size());
    EXPECT_EQ(0x8009, mode[0].value);
    EXPECT_TRUE(mode[0].primaryAfter.test(CapsOpModeMarker));

    // The order of the update: zoom, modes, SHDR, buffers, settings, mode marker.
    EXPECT_EQ(Trace::kSourceZoomRatio, m_recorder.contributions.front().source);
    EXPECT_EQ(Trace::kSourceOperationMode, m_recorder.contributions.back().source);
    EXPECT_EQ(7u, m_recorder.endFrame);
    EXPECT_EQ(0, m_recorder.endStatus);
    EXPECT_EQ(m_parser->GetRequestSupportCaps(7, TypeLogicalCamera), m_recorder.endPrimary);
}

TEST_F(TraceObserverTest, RequestWithoutSettingsReportsTheWarmStartRule) {
    camera3_stream_t* preview = Configure();
    m_recorder.contributions.clear();
    Request request(8);
    request.Buffer(preview);
    EXPECT_EQ(4, m_parser->UpdatePerRequestCaps(request.Get()));
    auto warm = m_recorder.Of(Trace::kSourceWarmStart);
    ASSERT_EQ(1u, warm.size());
    EXPECT_EQ(0, warm[0].detail);  // warm start not enabled for the camera
    EXPECT_TRUE(m_recorder.Of(Trace::kSourceSensorModeList).empty());
    EXPECT_EQ(4, m_recorder.endStatus);
}

TEST_F(TraceObserverTest, NothingIsReportedWithoutAnObserver) {
    Trace::SetObserver(nullptr);
    Configure();
    EXPECT_TRUE(m_recorder.steps.empty());
    EXPECT_EQ(nullptr, Trace::SetObserver(&m_recorder));
}

}  // namespace
}  // namespace LumoraTest
