// The registry is the only state shared between cameras; Get and Init may be
// called from several HAL threads at once, and each camera's parser is used
// from its own threads. These tests are written for ThreadSanitizer (the tsan
// preset): the threads start together, the sessions run once quiet and once
// with every log channel on (the logger is shared too), and each thread checks
// its answers against a run made alone, so that cross-talk shows as well.
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "support/TestDevice.h"

namespace LumoraTest {
namespace {

using Lumora::_CapsBitset;
using Lumora::IuiLayer;

constexpr int kCameras = 2;
constexpr uint32_t kRounds = 10;
constexpr uint32_t kFramesPerRound = 20;

// Lets threads run only once all of them are ready, so that they overlap. The
// waiting blocks rather than spins: under valgrind, which runs one thread at a
// time, a spinning thread can keep the others from ever arriving.
class StartLine {
public:
    explicit StartLine(int threads) : m_waiting(threads) {}
    void Wait() {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (--m_waiting == 0) {
            m_arrived.notify_all();
        }
        m_arrived.wait(lock, [this] { return m_waiting == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    int m_waiting;
};

// What one camera's session answers; the same whichever thread asks.
struct Answers {
    _CapsBitset sessionMask;
    _CapsBitset requestCaps;
    _CapsBitset cameraCaps;
    bool operator==(const Answers& other) const {
        return sessionMask == other.sessionMask && requestCaps == other.requestCaps &&
               cameraCaps == other.cameraCaps;
    }
};

class ConcurrencyTest : public UiLayerTest {
protected:
    void SetUp() override {
        UiLayerTest::SetUp();
        // Rows for both cameras, so that the two sessions differ.
        LoadConfig(
            "[SHDRTypeMatching]\n"
            "Mode[0] = 0, 0x8001, 0x1, 1, 1, -1\n"
            "Mode[1] = 1, 0x8001, 0x2, 0, 2, -1\n"
            "[OPreviewPipelines]\n"
            "mode[0] = 0x8001, 255, 1, \"Preview\"\n"
            "[OEMFeature1ModeMatch]\n"
            "Mode[0] = 11, -1, -1, -1, -1, -1, -1, -1\n");
        m_device.Add(SingleCamera("sensorA", 0, 0));
        m_device.Add(SingleCamera("sensorB", 1, 1));
        m_device.Init();
    }

    // One session of `camera`: configure, then requests with queries after
    // each one. Returns the answers for the last frame.
    static Answers RunSession(IuiLayer& parser, uint32_t camera, uint32_t round) {
        StreamConfig config(0x8001);
        camera3_stream_t* preview = config.Add(PreviewStream(1920, 1080));
        camera3_stream_t* jpeg = config.Add(JpegStream());
        EXPECT_EQ(0, parser.ParseStaticCapabilities(config.Get()));
        EXPECT_EQ(0, parser.ParseStreamCapabilities(config.Get()));
        EXPECT_STREQ("Preview", parser.GetPipelineName());
        Answers answers;
        for (uint32_t i = 0; i < kFramesPerRound; ++i) {
            const uint32_t frame = round * kFramesPerRound + i;
            Request request(frame);
            request.Buffer(preview).Buffer(jpeg).SensorModes({1, 1});
            parser.UpdatePerRequestCaps(request.Get());
            parser.UpdateResultAppliedCaps(
                Result(frame).Aec(static_cast<int32_t>(camera), 2).Get());
            EXPECT_TRUE(parser.IsRequestSupportCaps(frame, Lumora::CapsStreamPreview,
                                                    Lumora::TypeLogicalCamera));
            EXPECT_EQ(11u,
                      parser.GetOriginalRequestTuningMode(frame, Lumora::TypeFeature1Snapshot));
            answers.requestCaps = parser.GetRequestSupportCaps(frame, Lumora::TypeLogicalCamera);
            answers.cameraCaps =
                parser.GetRequestSupportCaps(frame, static_cast<Lumora::QueryCapsType>(camera));
        }
        answers.sessionMask = _CapsBitset();
        parser.GetStaticCapsMask(static_cast<Lumora::QueryCapsType>(camera), answers.sessionMask);
        return answers;
    }

    // The answers of each camera's session, run alone.
    std::vector<Answers> Reference() {
        std::vector<Answers> reference;
        for (uint32_t camera = 0; camera < kCameras; ++camera) {
            std::shared_ptr<IuiLayer> parser = IuiLayer::Get(camera);
            reference.push_back(RunSession(*parser, camera, 0));
        }
        return reference;
    }

    // Sessions of both cameras on their own threads, checked against
    // `reference`; with `reloads`, a third thread calls Init and Get meanwhile.
    void RunSessionsAtOnce(const std::vector<Answers>& reference, bool reloads) {
        std::shared_ptr<IuiLayer> parsers[kCameras] = {IuiLayer::Get(0), IuiLayer::Get(1)};
        StartLine start(reloads ? kCameras + 1 : kCameras);
        std::vector<std::thread> threads;
        for (uint32_t camera = 0; camera < kCameras; ++camera) {
            threads.emplace_back([&, camera] {
                start.Wait();
                for (uint32_t round = 0; round < kRounds; ++round) {
                    EXPECT_TRUE(RunSession(*parsers[camera], camera, round) == reference[camera])
                        << "camera " << camera << " round " << round;
                }
            });
        }
        if (reloads) {
            threads.emplace_back([&] {
                start.Wait();
                for (uint32_t round = 0; round < kRounds * kFramesPerRound; ++round) {
                    IuiLayer::Init(static_cast<unsigned int>(m_device.Count()), m_device.Table());
                    EXPECT_NE(nullptr, IuiLayer::Get(0));
                }
            });
        }
        for (auto& thread : threads) {
            thread.join();
        }
    }

    // Every log channel on or off. The shared logger locks, and each lock
    // orders the threads for ThreadSanitizer: the quiet run hides less.
    static void SetLogging(bool on) { HostPlatform::SetLogSwitches(on, on, on, on, on); }

    CameraTable m_device;
};

TEST_F(ConcurrencyTest, GetAndInitFromSeveralThreads) {
    constexpr int kThreads = 4;
    StartLine start(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            start.Wait();
            for (int i = 0; i < 50; ++i) {
                if (t == 0 && i % 10 == 0) {
                    IuiLayer::Init(static_cast<unsigned int>(m_device.Count()), m_device.Table());
                }
                const unsigned int camera = static_cast<unsigned int>(i % kCameras);
                std::shared_ptr<IuiLayer> parser = IuiLayer::Get(camera);
                EXPECT_EQ(static_cast<int>(camera), parser->GetFwkCameraIdByCameraIndex(0));
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    // Between two Inits every caller gets the same parser.
    EXPECT_EQ(IuiLayer::Get(1), IuiLayer::Get(1));
}

TEST_F(ConcurrencyTest, TwoCamerasConfiguredAndQueriedAtOnce) {
    const std::vector<Answers> reference = Reference();
    ASSERT_FALSE(reference[0] == reference[1]);
    for (bool logging : {false, true}) {
        SCOPED_TRACE(logging ? "logging" : "quiet");
        SetLogging(logging);
        RunSessionsAtOnce(reference, false);
    }
}

// The HAL may reload its camera list while sessions of cameras it still holds
// go on: Init and Get on one thread, sessions on two others. (ThreadSanitizer
// needs no exact overlap to see a race, only accesses the threads do not order.)
TEST_F(ConcurrencyTest, InitWhileOtherCamerasRunSessions) {
    const std::vector<Answers> reference = Reference();
    for (bool logging : {false, true}) {
        SCOPED_TRACE(logging ? "logging" : "quiet");
        SetLogging(logging);
        RunSessionsAtOnce(reference, true);
    }
}

}  // namespace
}  // namespace LumoraTest
