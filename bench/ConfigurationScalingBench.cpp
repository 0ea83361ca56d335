// Cost of a stream configuration (ParseStaticCapabilities followed by
// ParseStreamCapabilities) against its size: 1 to 12 streams on a logical
// camera of 1, 2 or 4 physical cameras, through the public interface.
#include <HostKit/CameraTable.h>
#include <HostKit/StreamConfig.h>
#include <HostPlatform.h>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>

#include "IuiLayer.h"

namespace {

constexpr uint32_t kOperationMode = 0x8001;

// Stream `index` of a configuration: a preview, video, JPEG, YUV snapshot or
// RAW stream in turn, spread over the physical cameras.
HostKit::StreamSetup StreamOf(uint32_t index, uint32_t cameras) {
    const std::string physicalId = cameras > 1 ? std::to_string(index % cameras) : "";
    switch (index % 5) {
        case 0:
            return HostKit::PreviewStream(1920, 1080, physicalId);
        case 1:
            return HostKit::VideoStream(3840, 2160, physicalId);
        case 2:
            return HostKit::JpegStream(4000, 3000, physicalId);
        case 3:
            return HostKit::YuvSnapshotStream(4000, 3000, physicalId);
        default:
            return HostKit::RawStream(0x20, 4000, 3000, physicalId);
    }
}

void BM_StreamConfigurationScaling(benchmark::State& state) {
    const auto streams = static_cast<uint32_t>(state.range(0));
    const auto cameras = static_cast<uint32_t>(state.range(1));
    HostPlatform::SetLogSwitches(false, false, false, false, false);
    HostPlatform::LoadConfiguration("");
    HostKit::CameraTable device;
    HostKit::CameraSetup camera = HostKit::MultiCamera(cameras, 0, 0);
    camera.sensorName = "bench";
    device.Add(camera);
    device.Init();
    std::shared_ptr<Lumora::IuiLayer> parser = Lumora::IuiLayer::Get(0);
    HostKit::StreamConfig config(kOperationMode);
    for (uint32_t i = 0; i < streams; ++i) {
        config.Add(StreamOf(i, cameras));
    }
    config.SessionParams().Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, {30, 30});
    for (auto _ : state) {
        config.SetOperationMode(kOperationMode);
        benchmark::DoNotOptimize(parser->ParseStaticCapabilities(config.Get()) +
                                 parser->ParseStreamCapabilities(config.Get()));
    }
    parser.reset();
    state.counters["streams"] = streams;
    state.counters["cameras"] = cameras;
}
BENCHMARK(BM_StreamConfigurationScaling)
    ->ArgsProduct({benchmark::CreateDenseRange(1, 12, 1), {1, 2, 4}})
    ->Unit(benchmark::kMicrosecond);

}  // namespace
