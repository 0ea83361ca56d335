// explain against the bundled examples (every set bit is traced to the step or
// request contribution that set it) and the questions of tests/data/explain.yaml,
// each answered with the input that kept the bit clear.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "experiment/Experiments.h"
#include "explain/Explain.h"
#include "replay/Replay.h"
#include "core/ScenarioReader.h"

namespace UilayerSim {
namespace {

std::vector<std::string> Examples() {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(UILAYER_SIM_EXAMPLES_DIR)) {
        if (entry.path().extension() == ".yaml") {
            paths.push_back(entry.path().string());
        }
    }
    return paths;
}

Scenario Load(const std::string& path) {
    std::string text;
    std::string reason;
    EXPECT_TRUE(ReadWholeFile(path, &text, &reason)) << path << ": " << reason;
    return ReadScenarioText(text, path);
}

void Record(const Scenario& scenario, TraceRecorder* recorder) {
    ReplayOptions options;
    options.log = true;
    options.siblingRoot = UILAYER_SIM_SIBLING_ROOT;
    options.recorder = recorder;
    recorder->RecordRequests(true);
    Replay(scenario, options);
}

_ExplainQuery Query(const std::string& cap, const std::string& session, const std::string& camera,
                    bool hasFrame = false, uint32_t frame = 0) {
    return _ExplainQuery{cap, session, camera, hasFrame, frame};
}

_ExplainQuery Query(uint32_t bit, size_t session, int64_t camera) {
    return Query(std::to_string(bit), std::to_string(session + 1),
                 camera < 0 ? "logical" : std::to_string(camera));
}

TEST(ExplainTest, EveryBitSetInAnExampleHasItsStep) {
    const std::vector<std::string> examples = Examples();
    ASSERT_GE(examples.size(), 5u);
    size_t sessionBits = 0;
    size_t requestBits = 0;
    for (const std::string& path : examples) {
        const Scenario scenario = Load(path);
        TraceRecorder recorder;
        Record(scenario, &recorder);
        for (size_t s = 0; s < recorder.Sessions().size(); ++s) {
            const _RecordedSession& session = recorder.Sessions()[s];
            ASSERT_FALSE(session.steps.empty()) << path;
            const _RecordedStep& last = session.steps.back();
            std::vector<int64_t> cameras = {-1};
            for (const auto& camera : last.cameras) {
                cameras.push_back(camera.first);
            }
            for (int64_t camera : cameras) {
                for (uint32_t bit = 0; bit < Lumora::kCapabilityCount; ++bit) {
                    if (!last.Caps(camera)->test(bit)) {
                        continue;
                    }
                    const _Explanation e = Explain(scenario, recorder, Query(bit, s, camera));
                    EXPECT_TRUE(e.set && !e.setBy.empty() && !e.rules.empty())
                        << path << " session " << s + 1 << " camera " << camera << " bit " << bit;
                    ++sessionBits;
                }
            }
            // The request caps of the frames the scenario asks about.
            for (const Step& step : scenario.sessions[s].steps) {
                if (step.kind != StepKind::RequestCaps || session.requests.count(step.frame) == 0) {
                    continue;
                }
                const int64_t camera = step.camera == kLogicalCamera ? -1 : step.camera;
                const _RecordedRequest& request = session.requests.at(step.frame);
                for (uint32_t bit = 0; bit < Lumora::kCapabilityCount; ++bit) {
                    const bool set = camera < 0 ? request.primary.test(bit)
                                                : request.cameraCaps[camera].test(bit);
                    if (!set) {
                        continue;
                    }
                    const _Explanation e = Explain(
                        scenario, recorder,
                        Query(std::to_string(bit), std::to_string(s + 1),
                              camera < 0 ? "logical" : std::to_string(camera), true, step.frame));
                    EXPECT_TRUE(e.set && !e.contributions.empty() && e.contributions.back().added)
                        << path << " frame " << step.frame << " bit " << bit;
                    ++requestBits;
                }
            }
        }
    }
    EXPECT_GT(sessionBits, 100u);
    EXPECT_GT(requestBits, 0u);
}

// The bits a probe flips against the baseline, and whether the configured
// operation mode changed.
std::set<uint32_t> Flipped(const std::string& baseline, const std::string& probe, bool* mode) {
    std::set<uint32_t> bits;
    *mode = probe.substr(probe.find(" M:")) != baseline.substr(baseline.find(" M:"));
    for (size_t at = 0; probe.size() == baseline.size() && at < probe.find(" M:"); ++at) {
        if (probe[at] != baseline[at]) {
            bits.insert(static_cast<uint32_t>(at - probe.rfind(':', at) - 1));
        }
    }
    return bits;
}

// Every single change that flips a session bit in a bundled example changes an
// input that the capability reference lists for one of the bit's rules: the
// input itself, a bit it lists that the change flips too, or the operation
// mode when the change made the library configure another one.
TEST(ExplainTest, TheReferenceListsEveryInputWhoseChangeFlipsABit) {
    std::vector<Lumora::_CapabilityInput> everyInput;  // every value worth trying everywhere
    for (size_t r = 0; r < Lumora::CapabilityRuleCount(); ++r) {
        for (const auto& input : Lumora::ParseInputs(Lumora::CapabilityRules()[r])) {
            everyInput.push_back(input);
        }
    }
    std::set<std::string> unlisted;
    size_t flips = 0;
    for (const std::string& path : Examples()) {
        const Scenario scenario = Load(path);
        for (size_t s = 0; s < scenario.sessions.size(); ++s) {
            _Question question;
            question.session = s;
            const _ExperimentRun run = RunCandidates(ScenarioUpTo(scenario, s, false, 0), question,
                                                     everyInput, UILAYER_SIM_SIBLING_ROOT);
            for (size_t i = 0; i < run.candidates.size(); ++i) {
                if (run.probes[i].find(" M:") == std::string::npos) {
                    continue;  // an aborted rerun
                }
                bool mode = false;
                const std::set<uint32_t> bits = Flipped(run.baseline, run.probes[i], &mode);
                for (uint32_t bit : bits) {
                    bool listed = false;
                    for (const Lumora::_CapabilityRule* rule : Lumora::RulesOf(bit)) {
                        for (const Lumora::_CapabilityInput& in : Lumora::ParseInputs(*rule)) {
                            listed = listed || ChangeTouches(run.candidates[i], in) ||
                                     (in.kind == Lumora::kInputCaps &&
                                      bits.count(static_cast<uint32_t>(std::stoul(in.value)))) ||
                                     (in.kind == Lumora::kInputOperationMode && mode);
                        }
                    }
                    ++flips;
                    if (!listed) {
                        unlisted.insert(
                            CapabilityName(bit) + " by " + ChangeKindName(run.candidates[i].kind) +
                            " " + run.candidates[i].target + " " + run.candidates[i].streamField);
                    }
                }
            }
        }
    }
    EXPECT_GT(flips, 100u);
    EXPECT_EQ(std::set<std::string>{}, unlisted);
}

// The recorded replay of the questions' scenario.
class ExplainQuestionsTest : public ::testing::Test {
protected:
    void SetUp() override { Record(scenario, &recorder); }
    const Scenario scenario = Load(UILAYER_SIM_TEST_DATA_DIR "/explain.yaml");
    TraceRecorder recorder;
};

// Each answer is a change whose own rerun flips the bit: the test reruns every
// change it prints and expects the one a user would make among them.
TEST_F(ExplainQuestionsTest, AnswersWithChangesThatFlipTheBit) {
    const struct {
        const char* example;  // a bundled example, or null for the questions' scenario
        const char* cap;
        const char* session;
        const char* camera;
        const char* change;
    } cases[] = {
        {nullptr, "94", "pro video", "logical", "property persist.vendor.camera.3dlut.enable = 1"},
        {nullptr, "CapsOisCloseOcs", "chat", "0", "property ro.product.brand unset"},
        {nullptr, "CapsCameraModeProVideoLog", "2", "logical",
         "session parameter CameraMode (vendor 160) = \"pro_video_log_mode\""},
        {nullptr, "Caps3DLut", "chat", "logical",
         "session parameter CameraMode (vendor 160) = \"pro_video_mode\" and property "
         "persist.vendor.camera.3dlut.enable = 1"},
        {nullptr, "CapsSystemCameraClient", "1", "logical", "remove session parameter"},
        {"bokeh.yaml", "CapsSHDR", "1", "logical",
         "device.conf: add SHDRTypeMatching/Mode[3] = 6, 0x8010, "},
        {"bokeh.yaml", "CapsResolution720P", "1", "logical", "stream \"preview\" size = 1280x720"},
        {"photo.yaml", "CapsStreamSnapshotRAWQcfa2x2", "1", "logical", "add stream \"added RAW"},
        {"photo.yaml", "CapsMipmapPreview", "1", "logical",
         "device.conf:75: OemDecouplePipelines/isEnableMIPMAP = false"},
        // A RAW stream by its use case, and a metadata stream.
        {"photo.yaml", "CapsStreamSnapshotRAWShort", "1", "logical", "add stream \"added RAW16"},
        {"zoom-video.yaml", "CapsStreamMetadata", "1", "logical", "add stream \"added RAW16"},
        // Two values of a new row: the set's camera and a mask with camera 2.
        {"bokeh.yaml", "CapsSHDR", "1", "2", "device.conf: add SHDRTypeMatching/Mode[3] = 6, "},
        // A key that lists the operation mode and a stream format it names.
        {"speed.yaml", "CapsCaptureHdrP010Preview", "1", "logical", "operation mode = 0x8001 and"},
        // A camera that gets Caps2x2XCFA and a RAW stream of the camera.
        {"speed.yaml", "CapsStreamSnapshotRAWQcfa2x2", "1", "4",
         "device.conf:133: OemRemosaicConfig/2x2XCFASensorNameList = lmt64 and add stream"},
        // A table row the run never read, and a client that reads it.
        {"speed.yaml", "CapsVIULL", "1", "logical", "remove session parameter"},
        // A new row with the set's camera in the camera column, and its option.
        {"bokeh.yaml", "CapsSHDROption", "1", "2",
         "device.conf: add SHDRTypeMatching/Mode[3] = 6, "},
        // A row that gets the step part of the way, with a RAW12 stream.
        {"bokeh.yaml", "CapsSHDRType2", "1", "logical",
         "device.conf: add SHDRTypeMatching/Mode[3] = 6, "},
        // The operation mode and a size only the rules name.
        {"photo.yaml", "CapsStreamViewFinder", "1", "logical",
         "operation mode = 0x8001 and stream \"preview\" size = 320x240"},
    };
    for (const auto& c : cases) {
        const Scenario asked = c.example == nullptr
                                   ? scenario
                                   : Load(std::string(UILAYER_SIM_EXAMPLES_DIR "/") + c.example);
        TraceRecorder traced;
        if (c.example != nullptr) {
            Record(asked, &traced);
        }
        _Explanation e = Explain(asked, c.example == nullptr ? recorder : traced,
                                 Query(c.cap, c.session, c.camera));
        ExplainByExperiment(asked, e.sessionIndex, UILAYER_SIM_SIBLING_ROOT, &e);
        bool named = false;
        for (const _ExplainChange& change : e.changes) {
            named = named || change.text.find(c.change) == 0;
            const Scenario upTo = ScenarioUpTo(asked, e.sessionIndex, false, 0);
            const std::string probe = CapsProbe(ReplayWith(upTo, change.changes, e.sessionIndex,
                                                           false, 0, UILAYER_SIM_SIBLING_ROOT),
                                                false);
            const std::string label = e.camera < 0 ? "L:" : "C" + std::to_string(e.camera) + ":";
            EXPECT_EQ(e.set ? '0' : '1', probe.at(probe.find(label) + label.size() + e.bit))
                << c.cap << ": " << change.text;
        }
        EXPECT_TRUE(named) << c.cap << "\n" << RenderExplanationText(e);
    }
}

TEST_F(ExplainQuestionsTest, RefusesWhatItCannotAnswer) {
    const struct {
        const char* cap;
        const char* session;
        const char* camera;
        bool hasFrame;
        const char* message;
    } cases[] = {
        {"CapsVideoEISS", "", "logical", false, "did you mean \"CapsVideoEIS\""},
        {"100", "", "logical", false, "out of range"},
        {"Caps4x4Izoom", "4", "logical", false, "no session named or numbered '4'"},
        {"0", "chat", "2", false, "not 'logical' or a physical camera of the session (0)"},
        {"0", "pro video", "logical", true, "no record for the frame 1"},
    };
    for (const auto& c : cases) {
        try {
            Explain(scenario, recorder, Query(c.cap, c.session, c.camera, c.hasFrame, 1));
            ADD_FAILURE() << c.cap << " was answered";
        } catch (const ExplainError& error) {
            EXPECT_NE(std::string::npos, std::string(error.what()).find(c.message)) << error.what();
        }
    }
    // Either name of the shared bit, and the session's position, answer alike.
    const _ExplainQuery byName = Query("Caps4x4Izoom", "3", "logical");
    EXPECT_EQ(81u, Explain(scenario, recorder, byName).bit);
    EXPECT_EQ("chat", Explain(scenario, recorder, byName).session);
}

}  // namespace
}  // namespace UilayerSim
