// Per-request caps: the sensor mode bits of every physical camera (from the
// request's sensor mode list, the warm start records or the last result's
// exposure plan), the QBC switch by zoom ratio and the bits of the streams the
// request carries buffers for.
#include <algorithm>
#include <cstdlib>
#include <string>

#include "common/CapsConstants.h"
#include "common/Log.h"
#include "common/MetadataRead.h"
#include "common/OperationModes.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "common/StreamPredicates.h"
#include "common/StreamRoles.h"
#include "common/Trace.h"
#include "common/VendorTags.h"
#include "requestdesiredcaps/RequestDesiredCapabilities.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

// A request that left the sensor modes to nobody reports an invalid argument.
constexpr int32_t kStatusNoSensorMode = kStatusInvalidArgument;
// Sensor mode list value: no mode chosen upstream, the warm start decides.
constexpr int32_t kModeByWarmStart = -1;

// Sensor mode bits by sensor mode list value 0..12; the same for the logical
// camera of a single-camera session and for each physical camera.
constexpr _CapsBitset kModeBits[] = {
    _CapsBitset(),                                                               // 0
    CapsBits(CapsSensorModeFlag19),                                              // 1
    _CapsBitset(),                                                               // 2
    CapsBits(CapsSHDRPath),                                                      // 3
    CapsBits(CapsSHDRPath, CapsSensorModeFlag19),                                // 4
    CapsBits(CapsSensorModeFlag19, CapsSensorModeFlag20),                        // 5
    CapsBits(CapsSensorModeFlag20, CapsPhysicalRawStream),                       // 6
    CapsBits(CapsSHDRPath, CapsSensorModeFlag19, CapsSensorModeFlag20),          // 7
    CapsBits(CapsSHDRType1),                                                     // 8
    CapsBits(Caps3DolStreaming),                                                 // 9
    CapsBits(Caps3DolStreaming),                                                 // 10
    CapsBits(CapsSensorModeFlag19, CapsSensorModeFlag20, CapsSensorModeFlag81),  // 11
    CapsBits(CapsSHDRType2),                                                     // 12
};
constexpr int32_t kModeCount = static_cast<int32_t>(sizeof(kModeBits) / sizeof(kModeBits[0]));

// Bits of a mode list value; values outside the table set nothing.
inline const _CapsBitset* ModeBits(int32_t mode) {
    return mode >= 0 && mode < kModeCount ? &kModeBits[mode] : nullptr;
}

// The request's sensor mode list: one int32 per physical camera id.
struct SensorModeList {
    bool present = false;
    camera_metadata_ro_entry_t entry = {};
    size_t bytes = 0;

    // The mode of camera `cam`; false when the list ends before it.
    bool ModeOf(uint64_t cam, int32_t& mode) const {
        return present && ReadElement32(entry, bytes, static_cast<size_t>(cam), mode);
    }
    // Element `index` for the log line; -1 stands for an element the list lacks.
    int32_t Logged(size_t index) const {
        int32_t mode = -1;
        return ModeOf(index, mode) ? mode : -1;
    }
};

// Physical camera id of a buffer's stream as `atoi` reads it, kNoCamera without one.
int32_t StreamPhysicalId(const camera3_stream* stream) {
    if (!HasPhysicalCameraId(*stream)) {
        return kNoCamera;
    }
    // strtol saturates where atoi's overflow is undefined; the value is then
    // cut to 32 bits as atoi's int result would be.
    return static_cast<int32_t>(strtol(stream->physical_camera_id, nullptr, 10));
}

// The sensor mode caps of a plan of 2, 3 or 4 exposures (a warm start DOL
// state or the last result's exposure count). Two exposures take SHDR type 1
// where the camera's session has it, else the SHDR path when `pathAlways` is
// set or the session has that.
void SetExposurePlanCaps(const StaticSupportCapabilities& session, uint32_t cam, int32_t exposures,
                         bool pathAlways, _CapsBitset* caps) {
    const QueryCapsType type = static_cast<QueryCapsType>(cam);
    switch (exposures) {
        case 2:
            if (session.IsSessionSupportCaps(CapsSHDRType1, type)) {
                caps->set(CapsSHDRType1);
            } else if (pathAlways || session.IsSessionSupportCaps(CapsSHDRPath, type)) {
                caps->set(CapsSHDRPath);
            }
            break;
        case 3:
            caps->set(CapsSHDRType1);
            break;
        case 4:
            caps->set(Caps3DolStreaming);
            break;
        default:
            break;
    }
}

}  // namespace

void RequestDesiredCapabilities::ApplyWarmStartRule(const StaticSupportCapabilities& session,
                                                    uint32_t cam) {
    // Every camera with a caps slot (0..7) also has a warm start record.
    _CapsBitset* caps = CameraCaps(cam);
    if (caps == nullptr) {
        return;
    }
    const _WarmStartParam& param = session.m_warmStartParam[cam];
    UILAYER_TRACE_CONTRIBUTION(kSourceWarmStart, static_cast<int32_t>(cam), param.dolState,
                               static_cast<int32_t>(param.warmStartEnable), );
    if (param.warmStartEnable != 1) {
        return;
    }
    if (session.m_cameraIsFromMainMenu == 1) {
        switch (param.dolState) {
            case 5:
                caps->set(CapsSensorModeFlag19);
                break;
            case 7:
                caps->set(CapsSensorModeFlag19).set(CapsSensorModeFlag20);
                break;
            default:
                SetExposurePlanCaps(session, cam, param.dolState, false, caps);
                break;
        }
    } else if (param.dolState == 7 && session.m_operationMode == kOpModeBokeh8031) {
        caps->set(CapsSensorModeFlag19).set(CapsSensorModeFlag20);
    }
}

void RequestDesiredCapabilities::ApplyAecFeedback(const StaticSupportCapabilities& session,
                                                  const AecInfo& aec, uint32_t cam) {
    _CapsBitset* caps = CameraCaps(cam);
    if (caps == nullptr) {
        return;
    }
    UILAYER_TRACE_CONTRIBUTION(kSourceAecFeedback, static_cast<int32_t>(cam), aec.expCount, 0, );
    if (aec.expCount == 1) {
        // One exposure: back to the plain mode whatever chose a DOL mode.
        caps->reset(CapsSHDRPath).reset(CapsSHDRType1).set(CapsSHDRAltPath);
    } else {
        SetExposurePlanCaps(session, cam, aec.expCount, true, caps);
    }
}

void RequestDesiredCapabilities::CollectRequestStreams(const camera3_capture_request* request,
                                                       const StaticSupportCapabilities& session) {
    const camera3_stream_buffer_t* buffers = request->output_buffers;
    const uint32_t bufferCount = buffers != nullptr ? request->num_output_buffers : 0;
    if (bufferCount == 0) {
        return;
    }
    const LumoraCameraInfo* info = session.m_pCameraInfoMap;
    const uint32_t cameraCount = RecordCameraCount(info);
    for (int32_t type = 0; type < EStreamTypeMax; ++type) {
        const _StreamRole& role = kStreamRoles[type];
        for (const _UIStreamInfo& configured : session.m_streamInfo[type]) {
            for (uint32_t b = 0; b < bufferCount; ++b) {
                const camera3_stream* stream = buffers[b].stream;
                if (stream == nullptr || configured.pStream != stream) {
                    continue;
                }
                const int32_t fwkId = StreamPhysicalId(stream);
                // The framework names the camera by its framework id; the caps
                // are kept by physical id. An id that names no camera is taken
                // as a physical id as it stands. Either way the caps slot is
                // the id's low 8 bits.
                uint32_t cam = static_cast<uint32_t>(fwkId);
                for (uint32_t c = 0; fwkId != kNoCamera && c < cameraCount; ++c) {
                    if (info->cameraEntry[c].frameworkId == fwkId) {
                        cam = info->cameraEntry[c].physicalCamId;
                        break;
                    }
                }
                UILAYER_TRACE_CONTRIBUTION(
                    kSourceStreamBuffer,
                    fwkId == kNoCamera ? kNoCamera : static_cast<int32_t>(cam & 0xFFu), type,
                    static_cast<int32_t>(configured.streamIndex), .Stream(stream));
                m_streamList[type].push_back(configured);
                m_primaryCaps |= role.primary;
                if (fwkId == kNoCamera) {
                    continue;
                }
                if (_CapsBitset* caps = CameraCaps(cam & 0xFFu)) {
                    *caps |= role.camera;
                }
            }
        }
    }
}

int32_t RequestDesiredCapabilities::UpdatePerRequestCaps(const camera3_capture_request* request,
                                                         const StaticSupportCapabilities* session,
                                                         ResultAppliedCapabilities lastResult) {
    UILAYER_TRACE_REQUEST_BEGIN(request);
    m_frameNumber = request->frame_number;
    const int frame = static_cast<int>(m_frameNumber);
    m_primaryCaps.Reset();
    for (_CapsBitset& caps : m_cameraCaps) {
        caps.Reset();
    }
    for (std::vector<_UIStreamInfo>& list : m_streamList) {
        list.clear();
        list.shrink_to_fit();
    }

    const LumoraCameraInfo* info = session != nullptr ? session->m_pCameraInfoMap : nullptr;
    const uint32_t cameraCount = RecordCameraCount(info);
    int32_t status = kStatusOk;
    bool useWarmStart = false;

    if (request->settings == nullptr) {
        UI_LOGI("Invalid request, settings is NULL");
        useWarmStart = true;
    } else {
        m_pStaticCaps = session;
        const camera_metadata_t* settings = request->settings;
        SensorModeList modes;
        modes.present =
            FindEntry(settings, VendorTagId(kTagSensorModeList), modes.entry, modes.bytes);
        float zoomRatio = 0.0f;  // stays 0 without the tag
        ReadFirst32(settings, ANDROID_CONTROL_ZOOM_RATIO, zoomRatio);

        // QBC 4x by zoom ratio. A single-camera session first tries the
        // threshold after the other cameras' ones; a position beyond the list
        // has no threshold.
        const float* thresholds = nullptr;
        int64_t thresholdCount = 0;
        if (session != nullptr) {
            thresholds = session->m_XCFA2SwitchZoomRatio.data();
            thresholdCount = static_cast<int64_t>(session->m_XCFA2SwitchZoomRatio.size());
        }
        auto reachesThreshold = [&](int64_t position) {
            return position >= 0 && position < thresholdCount && thresholds[position] > 0.0f &&
                   zoomRatio >= thresholds[position];
        };
        for (uint32_t c = 0; c < cameraCount; ++c) {
            const uint32_t cam = info->cameraEntry[c].physicalCamId;
            bool enabled = false;
            if (thresholdCount > 0) {
                if (cameraCount == 1) {
                    enabled = reachesThreshold(static_cast<int64_t>(cam) +
                                               session->m_allCameraNumbers - 1);
                }
                enabled = enabled || reachesThreshold(cam);
            }
            UILAYER_TRACE_CONTRIBUTION(kSourceZoomRatio, static_cast<int32_t>(cam), -1, 0,
                                       .ZoomRatio(zoomRatio));
            if (enabled) {
                if (_CapsBitset* caps = CameraCaps(cam)) {
                    caps->set(CapsQBC4x);
                }
                UI_LOGI("frame:%u phy:%u EnableQBC4x", m_frameNumber, cam);
            } else {
                UI_LOGI("frame:%u phy:%u DisableQBC4x", m_frameNumber, cam);
            }
        }

        if (!modes.present) {
            UI_LOGI("Invalid SensorModeList. frameNum %d", frame);
            useWarmStart = true;
        } else {
            for (uint32_t c = 0; c < cameraCount; ++c) {
                const uint32_t cam = info->cameraEntry[c].physicalCamId;
                _CapsBitset* caps = CameraCaps(cam);
                int32_t mode = 0;
                // A list that ends before this camera's id has no mode for it.
                if (modes.ModeOf(cam, mode)) {
                    const _CapsBitset* bits = ModeBits(mode);
                    {
                        UILAYER_TRACE_CONTRIBUTION(kSourceSensorModeList, static_cast<int32_t>(cam),
                                                   mode, 0, );
                        if (bits != nullptr) {
                            if (cameraCount == 1) {
                                m_primaryCaps |= *bits;
                            }
                            if (caps != nullptr) {
                                *caps |= *bits;
                            }
                        }
                    }
                    if (bits == nullptr && mode == kModeByWarmStart) {
                        ApplyWarmStartRule(*session, cam);
                    }
                }
                // Without SHDR support the SHDR path bit never stands, whichever
                // step above set it.
                if (caps != nullptr &&
                    !session->IsSessionSupportCaps(CapsSHDR, static_cast<QueryCapsType>(cam))) {
                    UILAYER_TRACE_CONTRIBUTION(kSourceShdrSupport, static_cast<int32_t>(cam), 0,
                                               0, );
                    caps->reset(CapsSHDRPath);
                }
                // The five list elements are logged whatever the camera count;
                // an element the list does not hold is printed as -1.
                UI_LOGI(
                    "frame_number %d phyCamId %d capsFlag 0x%04lX, SensorModeList: %d %d %d %d %d",
                    frame, static_cast<int>(cam),
                    static_cast<unsigned long>(caps != nullptr ? caps->to_ullong(0) : 0),
                    modes.Logged(0), modes.Logged(1), modes.Logged(2), modes.Logged(3),
                    modes.Logged(4));
            }
        }
    }

    bool runAecFeedback = !useWarmStart;
    if (useWarmStart) {
        // Neither settings nor a mode list chose the sensor modes: the warm start
        // records of the session decide.
        status = kStatusNoSensorMode;
        const uint8_t fromMainMenu = session != nullptr ? session->m_cameraIsFromMainMenu : 0;
        for (uint32_t c = 0; c < cameraCount; ++c) {
            const uint32_t cam = info->cameraEntry[c].physicalCamId;
            const _WarmStartParam noParam = {};
            const _WarmStartParam& param =
                cam < kMaxLogicalCameraIds ? session->m_warmStartParam[cam] : noParam;
            UI_LOGI(
                "Use Warm Start Param %d. frame_number %d phyCamId %d dolState %d, "
                "m_cameraIsFromMainMenu:%d",
                static_cast<int>(param.warmStartEnable), frame, static_cast<int>(cam),
                param.dolState, fromMainMenu);
            if (param.warmStartEnable == 1) {
                status = kStatusOk;
            }
            // The rule itself does nothing unless warm start is enabled.
            ApplyWarmStartRule(*session, cam);
            const _CapsBitset* caps = CameraCaps(cam);
            UI_LOGI("Use Warm Start Param %d. frame_number %d phyCamId %d capsFlag 0x%04lX",
                    static_cast<int>(param.warmStartEnable), frame, static_cast<int>(cam),
                    static_cast<unsigned long>(caps != nullptr ? caps->to_ullong(0) : 0));
        }
        runAecFeedback = status != kStatusNoSensorMode;
    }

    if (runAecFeedback && session != nullptr) {
        status = kStatusOk;
        // The exposure plan of the last result overrides the mode choices above
        // while recording from the system camera.
        if (session->IsSessionSupportCaps(CapsVideoStream, TypeLogicalCamera) &&
            session->m_cameraIsFromMainMenu == 1) {
            for (uint32_t c = 0; c < cameraCount; ++c) {
                const uint32_t cam = info->cameraEntry[c].physicalCamId;
                if (cam >= kAecInfoCount) {
                    continue;
                }
                const AecInfo& aec = lastResult.m_lastReqCameraAECInfo[cam];
                ApplyAecFeedback(*session, aec, cam);
                UI_LOGI("Use AECInfo exp count %d. frame_number %d phyCamId %d capsFlag 0x%04lX",
                        aec.expCount, frame, static_cast<int>(cam),
                        static_cast<unsigned long>(m_cameraCaps[cam].to_ullong(0)));
            }
        }
    }

    if (session != nullptr) {
        CollectRequestStreams(request, *session);
    }
    ParseOriginalRequestSetting(request);

    if (m_pStaticCaps != nullptr && IsProVideoFamilyMode(m_pStaticCaps->m_operationMode)) {
        UILAYER_TRACE_CONTRIBUTION(kSourceOperationMode, kNoCamera,
                                   static_cast<int32_t>(m_pStaticCaps->m_operationMode), 0, );
        m_primaryCaps.set(CapsOpModeMarker);
    }

    if (UI_LOG_VERBOSE_ON()) {
        const std::string primary = m_primaryCaps.to_string();
        for (uint32_t i = 0; i < kRequestCameraCaps; ++i) {
            UI_LOGV(
                "req desired caps dump frameNumber:%d, primary capsFlag:%s , logicalCamId %d "
                "capsFlag:%s",
                frame, primary.c_str(), static_cast<int>(i), m_cameraCaps[i].to_string().c_str());
        }
    }
    UILAYER_TRACE_REQUEST_END(m_frameNumber, m_primaryCaps, m_cameraCaps, status);
    return status;
}

}  // namespace Lumora
