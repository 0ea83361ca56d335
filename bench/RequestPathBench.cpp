// Request path benchmarks: one per-request update on a three-camera session,
// the per-frame caps query and a failed frame lookup, all with logging off.
#include <HostPlatform.h>
#include <LumoraCameraInfo.h>
#include <benchmark/benchmark.h>
#include <hardware/camera3.h>
#include <system/camera_metadata.h>

#include <cstdint>
#include <memory>

#include "IuiLayer.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"
#include "uiparser/RDCMap.h"

namespace Lumora {

// Puts in place the session inputs that other configuration steps provide on
// a device (streams by role, zoom thresholds, a video session opened from the
// main menu), where the configuration did not already.
class RequestPathTestPeer {
public:
    static void Prepare(StaticSupportCapabilities& session, camera3_stream_t* const* streams,
                        const StreamType* types, uint32_t count) {
        session.m_cameraIsFromMainMenu = 1;
        session.m_supportCaps.set(CapsVideoStream);
        for (uint32_t i = 0; i < count; ++i) {
            std::vector<_UIStreamInfo>& list = session.m_streamInfo[types[i]];
            bool listed = false;
            for (const _UIStreamInfo& info : list) {
                listed = listed || info.pStream == streams[i];
            }
            if (!listed) {
                list.push_back({i, -1, streams[i]});
            }
        }
        if (session.m_XCFA2SwitchZoomRatio.empty()) {
            session.m_XCFA2SwitchZoomRatio = {2.0f, 3.0f, 4.0f};
        }
    }
};

}  // namespace Lumora

namespace {

using namespace Lumora;

constexpr uint32_t kTagCameraInfo = 5;
constexpr uint32_t kTagApsFeatureType = 0;
constexpr uint32_t kTagBracketMode = 35;
constexpr uint32_t kTagSensorModeList = 49;
constexpr uint32_t kTagExposureCountList = 156;
constexpr uint32_t kCameraCount = 3;
constexpr uint32_t kRingCapacity = 256;

// A logical camera of three physical cameras (framework ids 2, 3, 4 for
// physical ids 0, 1, 2), configured with a preview, a video and a full-size
// RAW stream, and a request carrying buffers of all three.
class RequestPath {
public:
    RequestPath() {
        HostPlatform::SetLogSwitches(false, false, false, false, false);
        HostPlatform::LoadConfiguration(
            "[OemRemosaicConfig]\nXCFA2SwitchZoomRatio = 2.0, 3.0, 4.0\n"
            "[OEMFeature1ModeMatch]\nMode[0] = 3, -1, 1, -1, -1, -1, -1, -1\n");
        IuiLayer::Init(0, nullptr);  // resolves the vendor tag lookup

        m_characteristics = allocate_camera_metadata(4, sizeof(LumoraCameraInfo) + 64);
        LumoraCameraInfo record = {};
        record.numPhysicalCameras = kCameraCount;
        for (uint32_t k = 0; k < kCameraCount; ++k) {
            record.cameraEntry[k].frameworkId = static_cast<int32_t>(2 + k);
            record.cameraEntry[k].physicalCamId = k;
            record.cameraEntry[k].isPrimary = k == 0 ? 1 : 0;
        }
        record.sensorName = "bench";
        add_camera_metadata_entry(m_characteristics, GetVendorTagId(kTagCameraInfo), &record,
                                  sizeof(record));
        m_cameraInfo.static_camera_characteristics = m_characteristics;

        const StreamType types[kCameraCount] = {EStreamTypePreview, EStreamTypeVideo,
                                                EStreamTypeSnapshotRAWFull};
        const char* physicalIds[kCameraCount] = {"", "2", "3"};
        const int formats[kCameraCount] = {0x22, 0x22, 0x20};
        const uint32_t usages[kCameraCount] = {0x100, 0x10000, 0x3};
        for (uint32_t i = 0; i < kCameraCount; ++i) {
            m_streams[i] = {};
            m_streams[i].width = i == 2 ? 8192 : 1920;
            m_streams[i].height = i == 2 ? 6144 : 1080;
            m_streams[i].format = formats[i];
            m_streams[i].usage = usages[i];
            m_streams[i].physical_camera_id = physicalIds[i];
            m_streamPointers[i] = &m_streams[i];
            m_buffers[i] = {};
            m_buffers[i].stream = &m_streams[i];
        }
        m_sessionParameters = allocate_camera_metadata(8, 64);
        const int32_t fps[2] = {30, 30};
        add_camera_metadata_entry(m_sessionParameters, ANDROID_CONTROL_AE_TARGET_FPS_RANGE, fps, 2);
        m_config.num_streams = kCameraCount;
        m_config.streams = m_streamPointers;
        m_config.operation_mode = 0x8001;
        m_config.session_parameters = m_sessionParameters;

        m_session = std::make_unique<StaticSupportCapabilities>(0, 1, &m_cameraInfo);
        m_ring = std::make_unique<RDCMap>(kRingCapacity, m_session.get());
        m_session->ParseStaticCapabilities(&m_config);
        m_session->ParseStreamCapabilities(&m_config);
        RequestPathTestPeer::Prepare(*m_session, m_streamPointers, types, kCameraCount);

        // The last result planned two exposures for physical camera 1.
        m_resultMetadata = allocate_camera_metadata(4, 256);
        AecInfo records[8] = {};
        for (int32_t k = 0; k < 8; ++k) {
            records[k] = {k, 1.0f, 2.0f, k == 1 ? 2 : 1, 0};
        }
        add_camera_metadata_entry(m_resultMetadata, GetVendorTagId(kTagExposureCountList), records,
                                  sizeof(records));
        camera3_capture_result_t result = {};
        result.result = m_resultMetadata;
        m_ring->UpdateResultAppliedCaps(&result);

        m_settings = allocate_camera_metadata(8, 128);
        const int32_t modes[kCameraCount] = {8, 4, -1};
        const int32_t aps = 1;
        const int32_t bracket = 0;
        const float zoom = 2.0f;
        add_camera_metadata_entry(m_settings, GetVendorTagId(kTagSensorModeList), modes,
                                  kCameraCount);
        add_camera_metadata_entry(m_settings, ANDROID_CONTROL_ZOOM_RATIO, &zoom, 1);
        add_camera_metadata_entry(m_settings, GetVendorTagId(kTagApsFeatureType), &aps, 1);
        add_camera_metadata_entry(m_settings, GetVendorTagId(kTagBracketMode), &bracket, 1);
        m_request.settings = m_settings;
        m_request.num_output_buffers = kCameraCount;
        m_request.output_buffers = m_buffers;
    }

    ~RequestPath() {
        m_ring.reset();
        m_session.reset();
        free_camera_metadata(m_settings);
        free_camera_metadata(m_resultMetadata);
        free_camera_metadata(m_sessionParameters);
        free_camera_metadata(m_characteristics);
    }

    RDCMap& Ring() { return *m_ring; }
    camera3_capture_request_t& Request() { return m_request; }

private:
    camera_metadata_t* m_characteristics = nullptr;
    camera_info m_cameraInfo = {};
    camera3_stream_t m_streams[kCameraCount];
    camera3_stream_t* m_streamPointers[kCameraCount];
    camera3_stream_buffer_t m_buffers[kCameraCount];
    camera_metadata_t* m_sessionParameters = nullptr;
    camera3_stream_configuration_t m_config = {};
    camera_metadata_t* m_resultMetadata = nullptr;
    camera_metadata_t* m_settings = nullptr;
    camera3_capture_request_t m_request = {};
    std::unique_ptr<StaticSupportCapabilities> m_session;
    std::unique_ptr<RDCMap> m_ring;
};

RequestPath& Path() {
    static RequestPath path;
    return path;
}

void BM_UpdatePerRequestCaps(benchmark::State& state) {
    RequestPath& path = Path();
    uint32_t frame = 0;
    for (auto _ : state) {
        path.Request().frame_number = frame++;
        benchmark::DoNotOptimize(path.Ring().UpdatePerRequestCaps(&path.Request()));
    }
}
BENCHMARK(BM_UpdatePerRequestCaps);

void BM_IsRequestSupportCaps(benchmark::State& state) {
    RequestPath& path = Path();
    path.Request().frame_number = 1000;
    path.Ring().UpdatePerRequestCaps(&path.Request());
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            path.Ring().IsRequestSupportCaps(1000, CapsSHDRType1, static_cast<QueryCapsType>(0)));
    }
}
BENCHMARK(BM_IsRequestSupportCaps);

void BM_GetOriginalRequestTuningMode(benchmark::State& state) {
    RequestPath& path = Path();
    path.Request().frame_number = 1000;
    path.Ring().UpdatePerRequestCaps(&path.Request());
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            path.Ring().GetOriginalRequestTuningMode(1000, TypeFeature1Snapshot));
    }
}
BENCHMARK(BM_GetOriginalRequestTuningMode);

void BM_FailedFrameLookup(benchmark::State& state) {
    RequestPath& path = Path();
    path.Request().frame_number = 1000;
    path.Ring().UpdatePerRequestCaps(&path.Request());
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
    RequestPath& path = Path();
    HostPlatform::SetLogSwitches(true, true, true, false, false);
    uint32_t frame = 0;
    for (auto _ : state) {
        path.Request().frame_number = frame++;
        benchmark::DoNotOptimize(path.Ring().UpdatePerRequestCaps(&path.Request()));
    }
    HostPlatform::SetLogSwitches(false, false, false, false, false);
    HostPlatform::TakeCameraLog();
}
BENCHMARK(BM_UpdatePerRequestCapsInfoLog);
