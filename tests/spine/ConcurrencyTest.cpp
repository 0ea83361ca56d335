// The registry is the only state shared between cameras; Get and Init may be
// called from several HAL threads at once, and each camera's parser is used
// from its own threads.
#include <atomic>
#include <thread>
#include <vector>

#include "support/TestDevice.h"

namespace LumoraTest {
namespace {

using Lumora::IuiLayer;

class ConcurrencyTest : public UiLayerTest {
protected:
    void SetUp() override {
        UiLayerTest::SetUp();
        HostPlatform::SetLogSwitches(false, false, false, false, false);
        m_device.AddCamera(TestDevice::SingleCamera("sensorA", 0, 0));
        m_device.AddCamera(TestDevice::SingleCamera("sensorB", 1, 1));
        m_device.Init();
    }
    TestDevice m_device;
};

TEST_F(ConcurrencyTest, GetAndInitFromSeveralThreads) {
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            while (!go.load()) {
            }
            for (int i = 0; i < 50; ++i) {
                if (t == 0 && i % 10 == 0) {
                    IuiLayer::Init(static_cast<unsigned int>(m_device.CameraCount()),
                                   m_device.Table());
                }
                std::shared_ptr<IuiLayer> parser = IuiLayer::Get(static_cast<unsigned int>(i % 2));
                EXPECT_EQ(i % 2, parser->GetFwkCameraIdByCameraIndex(0));
            }
        });
    }
    go = true;
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST_F(ConcurrencyTest, TwoCamerasConfiguredAndQueriedAtOnce) {
    std::shared_ptr<IuiLayer> parsers[2] = {IuiLayer::Get(0), IuiLayer::Get(1)};
    std::vector<std::thread> threads;
    for (int camera = 0; camera < 2; ++camera) {
        threads.emplace_back([&, camera] {
            StreamConfig config(0x8001);
            camera3_stream_t* preview = config.Add(PreviewStream(1920, 1080));
            for (uint32_t round = 0; round < 20; ++round) {
                EXPECT_EQ(0, parsers[camera]->ParseStaticCapabilities(config.Get()));
                EXPECT_EQ(0, parsers[camera]->ParseStreamCapabilities(config.Get()));
                for (uint32_t frame = 0; frame < 20; ++frame) {
                    Request request(round * 20 + frame);
                    request.Buffer(preview).SensorModes({1});
                    parsers[camera]->UpdatePerRequestCaps(request.Get());
                    parsers[camera]->IsRequestSupportCaps(
                        round * 20 + frame, Lumora::CapsStreamPreview, Lumora::TypeLogicalCamera);
                    Lumora::_CapsBitset mask;
                    parsers[camera]->GetStaticCapsMask(Lumora::TypeLogicalCamera, mask);
                }
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

}  // namespace
}  // namespace LumoraTest
