// Request path benchmarks: one per-request update on a three-camera session,
// the per-frame caps query and a failed frame lookup, all with logging off;
// and the update's cost against the number of output buffers.
#include <HostKit/CameraTable.h>
#include <HostKit/Capture.h>
#include <HostKit/StreamConfig.h>
#include <HostPlatform.h>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "IuiLayer.h"
#include "common/VendorTags.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"
#include "support/RequestPathTestPeer.h"
#include "uiparser/RDCMap.h"

namespace {

using namespace Lumora;

constexpr uint32_t kCameraCount = 3;
constexpr uint32_t kRingCapacity = 256;

// A logical camera of three physical cameras (framework ids 2, 3, 4 for
// physical ids 0, 1, 2), configured with `streams` streams that take turns at
// being a preview, a video and a full-size RAW stream (the first three are
// exactly those), and a request carrying a buffer of each.
class RequestPath {
public:
    explicit RequestPath(uint32_t streams) : m_config(0x8001) {
        HostPlatform::SetLogSwitches(false, false, false, false, false);
        HostPlatform::LoadConfiguration(
            "[OemRemosaicConfig]\nXCFA2SwitchZoomRatio = 2.0, 3.0, 4.0\n"
            "[OEMFeature1ModeMatch]\nMode[0] = 3, -1, 1, -1, -1, -1, -1, -1\n");
        HostKit::CameraSetup camera;
        camera.sensorName = "bench";
        for (uint32_t k = 0; k < kCameraCount; ++k) {
            camera.physicalCameras.push_back({0, static_cast<int32_t>(2 + k), k, k == 0 ? 1 : 0});
        }
        m_device.Add(camera);
        m_device.Init();

        const StreamType types[kCameraCount] = {EStreamTypePreview, EStreamTypeVideo,
                                                EStreamTypeSnapshotRAWFull};
        const HostKit::StreamSetup kinds[kCameraCount] = {
            HostKit::PreviewStream(), HostKit::VideoStream(1920, 1080, "2"),
            HostKit::RawStream(0x20, 8192, 6144, "3")};
        for (uint32_t i = 0; i < streams; ++i) {
            HostKit::StreamSetup stream = kinds[i % kCameraCount];
            stream.dynamicRangeProfile = 0;
            m_request.Buffer(m_config.Add(stream));
        }
        m_config.SessionParams().Int32(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, {30, 30});

        m_session = std::make_unique<StaticSupportCapabilities>(0, 1, m_device.Table());
        m_ring = std::make_unique<RDCMap>(kRingCapacity, m_session.get());
        m_session->ParseStaticCapabilities(m_config.Get());
        m_session->ParseStreamCapabilities(m_config.Get());
        Prepare(types);

        // The last result planned two exposures for physical camera 1.
        HostKit::Result result;
        for (int32_t k = 0; k < 8; ++k) {
            result.Aec(k, k == 1 ? 2 : 1);
        }
        m_ring->UpdateResultAppliedCaps(result.Get());

        m_request.SensorModes({8, 4, -1}).ZoomRatio(2.0f);
        m_request.Settings().VendorInt32(kTagApsFeatureType, {1}).VendorInt32(kTagBracketMode, {0});
    }

    RDCMap& Ring() { return *m_ring; }
    camera3_capture_request_t& Request() { return *m_request.Get(); }

private:
    // Puts in place the session inputs that other configuration steps provide
    // on a device (streams by role, zoom thresholds, a video session opened
    // from the main menu), where the configuration did not already.
    void Prepare(const StreamType* types) {
        RequestPathTestPeer peer(*m_session);
        peer.SetFromMainMenu(1);
        peer.SetSessionCaps(CapsVideoStream);
        const std::vector<camera3_stream_t*>& streams = m_config.Streams();
        for (uint32_t i = 0; i < streams.size(); ++i) {
            const StreamType type = types[i % kCameraCount];
            bool listed = false;
            for (const _UIStreamInfo& info : *m_session->GetStreamByStreamType(type)) {
                listed = listed || info.pStream == streams[i];
            }
            if (!listed) {
                peer.AddStream(type, streams[i]);
            }
        }
        peer.SetZoomThresholds({2.0f, 3.0f, 4.0f});  // as the configuration gives them
    }

    HostKit::CameraTable m_device;
    HostKit::StreamConfig m_config;
    HostKit::Request m_request;
    std::unique_ptr<StaticSupportCapabilities> m_session;
    std::unique_ptr<RDCMap> m_ring;
};

RequestPath& Path(uint32_t streams = kCameraCount) {
    static std::map<uint32_t, std::unique_ptr<RequestPath>> paths;
    std::unique_ptr<RequestPath>& path = paths[streams];
    if (!path) {
        path = std::make_unique<RequestPath>(streams);
    }
    return *path;
}

// The update of one request after the other, each of a new frame.
void UpdateRequests(benchmark::State& state, RequestPath& path) {
    uint32_t frame = 0;
    for (auto _ : state) {
        path.Request().frame_number = frame++;
        benchmark::DoNotOptimize(path.Ring().UpdatePerRequestCaps(&path.Request()));
    }
}

void BM_UpdatePerRequestCaps(benchmark::State& state) {
    UpdateRequests(state, Path());
}
BENCHMARK(BM_UpdatePerRequestCaps);

// The same update with 1 to 16 output buffers, each of its own stream.
void BM_UpdatePerRequestCapsBuffers(benchmark::State& state) {
    UpdateRequests(state, Path(static_cast<uint32_t>(state.range(0))));
    state.counters["buffers"] = static_cast<double>(state.range(0));
}
BENCHMARK(BM_UpdatePerRequestCapsBuffers)->RangeMultiplier(2)->Range(1, 16);

// The path with one request of frame `frame` in its ring, for the lookups.
RequestPath& PathWithFrame(uint32_t frame) {
    RequestPath& path = Path();
    path.Request().frame_number = frame;
    path.Ring().UpdatePerRequestCaps(&path.Request());
    return path;
}

void BM_IsRequestSupportCaps(benchmark::State& state) {
    RequestPath& path = PathWithFrame(1000);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            path.Ring().IsRequestSupportCaps(1000, CapsSHDRType1, static_cast<QueryCapsType>(0)));
    }
}
BENCHMARK(BM_IsRequestSupportCaps);

void BM_GetOriginalRequestTuningMode(benchmark::State& state) {
    RequestPath& path = PathWithFrame(1000);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            path.Ring().GetOriginalRequestTuningMode(1000, TypeFeature1Snapshot));
    }
}
BENCHMARK(BM_GetOriginalRequestTuningMode);

void BM_FailedFrameLookup(benchmark::State& state) {
    RequestPath& path = PathWithFrame(1000);
    for (auto _ : state) {
        // Slot 232 holds frame 1000, not 1256: two error lines, both switched off.
        benchmark::DoNotOptimize(
            path.Ring().IsRequestSupportCaps(1256, CapsSHDRType1, TypeLogicalCamera));
    }
}
BENCHMARK(BM_FailedFrameLookup);

// Memory of one parser's ring once every slot holds a three-buffer request:
// the records themselves and the stream list entries they hold on the heap.
void BM_RingMemory(benchmark::State& state) {
    RequestPath& path = Path();
    for (auto _ : state) {
        for (uint32_t frame = 0; frame < kRingCapacity; ++frame) {
            path.Request().frame_number = frame;
            path.Ring().UpdatePerRequestCaps(&path.Request());
        }
    }
    size_t heldEntries = 0;
    for (uint32_t frame = 0; frame < kRingCapacity; ++frame) {
        RequestDesiredCapabilities* record = path.Ring().GetRDC(frame);
        for (int32_t type = 0; record != nullptr && type < EStreamTypeMax; ++type) {
            heldEntries += record->GetStreamByStreamType(static_cast<StreamType>(type))->capacity();
        }
    }
    state.counters["record_bytes"] = sizeof(RequestDesiredCapabilities);
    state.counters["records_bytes"] = sizeof(RequestDesiredCapabilities) * kRingCapacity;
    state.counters["held_bytes"] = static_cast<double>(heldEntries * sizeof(_UIStreamInfo));
    state.counters["ring_object_bytes"] = sizeof(RDCMap);
    state.counters["slot_flag_bytes"] = kRingCapacity;  // one written flag per slot
}
BENCHMARK(BM_RingMemory)->Iterations(1);

}  // namespace

// The same update with info logging on (camera logger only, as on a device
// whose system log channel is off), for comparison with the silent update.
void BM_UpdatePerRequestCapsInfoLog(benchmark::State& state) {
    HostPlatform::SetLogSwitches(true, true, true, false, false);
    UpdateRequests(state, Path());
    HostPlatform::SetLogSwitches(false, false, false, false, false);
    HostPlatform::TakeCameraLog();
}
BENCHMARK(BM_UpdatePerRequestCapsInfoLog);
