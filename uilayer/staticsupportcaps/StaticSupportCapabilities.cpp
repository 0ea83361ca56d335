#include "staticsupportcaps/StaticSupportCapabilities.h"

#include <cutils/properties.h>
#include <system/camera_metadata.h>

#include <cstdlib>
#include <cstring>
#include <iterator>

#include "common/CapsConstants.h"
#include "common/ConfigKeys.h"
#include "common/Log.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "common/StreamPredicates.h"
#include "common/Trace.h"
#include "common/VendorTags.h"

namespace Lumora {

namespace {

// Whether row k of a step table runs step k.
template <typename Row, size_t N>
constexpr bool RowsFollowStepOrder(const Row (&rows)[N]) {
    for (size_t i = 0; i < N; ++i) {
        if (static_cast<size_t>(rows[i].step) != i) {
            return false;
        }
    }
    return true;
}

bool IsLogicalCameraType(QueryCapsType type) {
    return QueryCameraId(type) == kLogicalCameraType;
}

// The sibling's record of one camera, or null when its characteristics carry
// none (or one too short to be a record).
LumoraCameraInfo* FindCameraInfoRecord(const camera_info& info) {
    camera_metadata_ro_entry_t entry = {};
    if (info.static_camera_characteristics == nullptr ||
        find_camera_metadata_ro_entry(info.static_camera_characteristics,
                                      VendorTagId(kTagCameraInfo), &entry) != 0 ||
        entry.data.u8 == nullptr || entry.count < sizeof(LumoraCameraInfo)) {
        return nullptr;
    }
    // The record lives in the camera's static characteristics and is shared
    // with the sibling layer, which reads the flag word this layer writes.
    return reinterpret_cast<LumoraCameraInfo*>(const_cast<uint8_t*>(entry.data.u8));
}

}  // namespace

StaticSupportCapabilities::StaticSupportCapabilities(unsigned int cameraId,
                                                     unsigned int allCameraNumbers,
                                                     camera_info* pAllCameraInfo) {
    // The camera count is kept in 8 bits, as the camera layer keeps it: a
    // table of 256 cameras or more is walked modulo 256.
    m_allCameraNumbers = pAllCameraInfo != nullptr ? static_cast<uint8_t>(allCameraNumbers) : 0;

    for (uint32_t i = 0; i < m_allCameraNumbers; ++i) {
        m_pCameraInfo[i] = &pAllCameraInfo[i];
        LumoraCameraInfo* record = FindCameraInfoRecord(pAllCameraInfo[i]);
        if (record == nullptr) {
            UI_LOGE("pCamInfoMap is null");
            continue;
        }
        if (record->logicalCamId >= kMaxLogicalCameraIds) {
            UI_LOGE("camera index %u: logical camera id %u is out of range, record skipped", i,
                    record->logicalCamId);
            continue;
        }
        m_cameraInfoMapById[record->logicalCamId] = record;
        if (record->frameworkId == cameraId) {
            m_pCameraInfoMap = record;
        }
        std::string& sensorName = m_sensorNameList[record->logicalCamId];
        switch (record->numPhysicalCameras) {
            case 4:
            case 3:
                sensorName = SetCameraName(record->numPhysicalCameras);
                break;
            case 1:
                sensorName = record->sensorName != nullptr ? record->sensorName : "";
                break;
            default:
                break;
        }
    }

    if (m_pCameraInfoMap != nullptr) {
        // Parsers of this camera that callers still hold read the flag without
        // a lock: it is written only when it changes.
        const uint32_t flag = (m_pCameraInfoMap->type == 2 || m_pCameraInfoMap->type == 4) ? 1 : 0;
        if (m_pCameraInfoMap->supportFlag != flag) {
            m_pCameraInfoMap->supportFlag = flag;
        }
        m_firstStreamDimension = {0, 0};
        m_frameworkId = cameraId;
        m_logicalCamId = static_cast<int32_t>(m_pCameraInfoMap->logicalCamId);
        uint32_t count = m_pCameraInfoMap->numPhysicalCameras & 0xFFu;
        if (count > kMaxPhysicalCameras) {
            UI_LOGE("camera %u lists %u physical cameras, only %u are used", cameraId, count,
                    kMaxPhysicalCameras);
            count = kMaxPhysicalCameras;
        }
        m_numPhysicalCameras = static_cast<uint8_t>(count);
        for (uint32_t i = 0; i < count; ++i) {
            m_cameraInfo[i] = m_pCameraInfoMap->cameraEntry[i];
        }
    } else {
        UI_LOGE("m_pCameraInfoMap is NULL for fwkCameraId %u, cannot initialize support caps",
                cameraId);
        m_numPhysicalCameras = 0;
        m_frameworkId = cameraId;
        m_logicalCamId = -1;
    }
}

StaticSupportCapabilities::~StaticSupportCapabilities() {}

int StaticSupportCapabilities::GetFwkCameraIdByCameraIndex(unsigned int cameraIndex) const {
    if (cameraIndex >= m_numPhysicalCameras) {
        return kNoCamera;
    }
    return m_cameraInfo[cameraIndex].frameworkId;
}

int StaticSupportCapabilities::GetFwkCameraIdByStream(const camera3_stream* stream) const {
    if (stream == nullptr || !HasPhysicalCameraId(*stream)) {
        return kNoCamera;
    }
    return atoi(stream->physical_camera_id);
}

void StaticSupportCapabilities::SetSensorDimension(unsigned int physicalCamId, unsigned int width,
                                                   unsigned int height) {
    for (uint32_t row = 0; row < kSensorDimensionRows; ++row) {
        if (m_sensorDimension[row].physicalCamId == physicalCamId) {
            m_sensorDimension[row].width = width;
            m_sensorDimension[row].height = height;
        }
    }
}

int StaticSupportCapabilities::FindCameraEntryByPhysicalId(uint32_t physicalCamId) const {
    for (uint32_t i = 0; i < m_numPhysicalCameras; ++i) {
        if (m_cameraInfo[i].physicalCamId == physicalCamId) {
            return static_cast<int>(i);
        }
    }
    return kNoCamera;
}

void StaticSupportCapabilities::ResetSessionState() {
    m_supportCaps.Reset();
    for (auto& caps : m_cameraSupportCaps) {
        caps.Reset();
    }
    memset(m_warmStartParam, 0, sizeof(m_warmStartParam));

    m_operationMode = 0;
    m_isAICompositionEnable = 0;
    m_minFps = 0;
    m_maxFps = 0;
    m_warmStartLux = 0.0f;
    m_mipiSelectMode = 0;
    memset(m_cameraMode, 0, sizeof(m_cameraMode));
    m_operationMode = kOperationModeUnset;
    m_warmStartLux = -1.0f;
    m_mipiSelectMode = 0xFF;

    m_satStaticCaps.Reset();
    for (auto& list : m_streamInfo) {
        list.clear();
    }
}

int StaticSupportCapabilities::ParseStaticCapabilities(const camera3_stream_configuration* config) {
    if (config == nullptr) {
        UI_LOGE("Invalid Args");
        return kStatusInvalidArgument;
    }
    UILAYER_TRACE_CONFIGURATION_BEGIN(config);
    m_debugEnable = property_get_bool("vendor.debug.camera.policy.debugEnable", false) ? 1 : 0;
    // The HAL always configures at least one stream; an empty configuration
    // leaves the first stream size at 0x0.
    if (config->num_streams > 0 && config->streams != nullptr && config->streams[0] != nullptr) {
        m_firstStreamDimension = {config->streams[0]->width, config->streams[0]->height};
    } else {
        m_firstStreamDimension = {0, 0};
    }

    ResetSessionState();

    RunConfigSteps(EConfigStep::ParseSessionParams, kFirstStreamStep, config);

    for (uint32_t i = 0; i < m_numPhysicalCameras; ++i) {
        const LumoraCameraEntry& entry = m_cameraInfo[i];
        m_sensorDimension[i].physicalCamId = entry.physicalCamId;
        UI_LOGI(
            "m_supportCaps camera info cameraIndex %d, logicalCamId %d frameworkId %d "
            "physicalCamId %d isPrimary %d",
            i, entry.logicalCamId, entry.frameworkId, entry.physicalCamId, entry.isPrimary);
    }
    if (UI_LOG_INFO_ON()) {
        for (uint32_t id = 0; id < kMaxLogicalCameraIds; ++id) {
            UI_LOGI("logicalCameraId %d, m_sensorNameList %s", id, m_sensorNameList[id].c_str());
        }
    }
    return kStatusOk;
}

int StaticSupportCapabilities::ParseStreamCapabilities(const camera3_stream_configuration* config) {
    RunConfigSteps(kFirstStreamStep, EConfigStep::Count, config);
    return kStatusOk;
}

void StaticSupportCapabilities::RunConfigSteps(EConfigStep first, EConfigStep end,
                                               const camera3_stream_configuration* config) {
// A row of the step table: step `name` runs the session's member function of
// that name with the arguments `args` (of `config`). The steps' own results
// are not used: each reports through the caps and the log.
#define CONFIG_STEP(name, args)                                                              \
    {                                                                                        \
        EConfigStep::name,                                                                   \
            [](StaticSupportCapabilities& s,                                                 \
               [[maybe_unused]] const camera3_stream_configuration* config) { s.name args; } \
    }
    // Every step in the order the configuration runs it. Later steps read what
    // earlier ones set: session parameters first, the zoom record after bokeh,
    // SHDR after the zoom record, warm start once the lux and frame rate are
    // known.
    static constexpr _ConfigStepRow kSteps[] = {
        CONFIG_STEP(ParseSessionParams, (config)),
        CONFIG_STEP(ConfigSupportCapsBokeh, (config)),
        CONFIG_STEP(ConfigSensorNameMap, ()),
        CONFIG_STEP(ConfigRAWQCFAFullSize, ()),
        CONFIG_STEP(ConfigSupportCapsSAT, (config)),
        CONFIG_STEP(ConfigSupportCapsSHDR, ()),
        CONFIG_STEP(ConfigSupportCaps2x2QCFA, ()),
        CONFIG_STEP(ConfigXCFA2SwitchZoomRatio, ()),
        CONFIG_STEP(ConfigureSensorDCGVSStreamingByCaps, ()),
        CONFIG_STEP(ConfigWarmStart, ()),
        CONFIG_STEP(ConfigAIAF, ()),
        CONFIG_STEP(ConfigStaticTuningPolicy, ()),
        CONFIG_STEP(ConfigStarModeAEInfo, ()),
        CONFIG_STEP(ConfigEISMode, (config)),
        CONFIG_STEP(ConfigSupportCapsAINR, (config)),
        CONFIG_STEP(ConfigSupportCapsFlowControl, (config)),
        CONFIG_STEP(ConfigVideoWatermarkEnable, (config)),
        CONFIG_STEP(ConfigSupportCapsProVideoIZoom, (config)),
        CONFIG_STEP(ParseStreamsInfo, (config)),
        CONFIG_STEP(SelectLowlatencyPipeline, (config)),
    };
#undef CONFIG_STEP
    static_assert(std::size(kSteps) == kConfigStepCount, "one row per configuration step");
    static_assert(RowsFollowStepOrder(kSteps), "rows in the order of EConfigStep");

    for (uint32_t i = static_cast<uint32_t>(first); i < static_cast<uint32_t>(end); ++i) {
        UILAYER_TRACE_STEP_BEGIN(i);
        kSteps[i].run(*this, config);
        UILAYER_TRACE_STEP_END(i);
    }
}

bool StaticSupportCapabilities::IsSessionSupportCaps(DesiredSupportCaps caps,
                                                     QueryCapsType type) const {
    bool supported = false;
    if (IsLogicalCameraType(type)) {
        supported = m_supportCaps.test(caps);
    } else {
        const int index = FindCameraEntryByPhysicalId(QueryCameraId(type));
        supported = index >= 0 && m_cameraSupportCaps[index].test(caps);
    }
    UI_LOGV("IsSessionSupportCaps %d supportCaps %d cameraType %d", supported, caps, type);
    return supported;
}

int StaticSupportCapabilities::GetStaticCapsMask(QueryCapsType type, _CapsBitset& mask) const {
    if (IsLogicalCameraType(type)) {
        for (DesiredSupportCaps caps : kLogicalCameraCapsGroup) {
            if (IsSessionSupportCaps(caps, type)) {
                mask |= CapsBit(caps);
            }
        }
    } else {
        for (DesiredSupportCaps caps : kPhysicalCameraCapsGroup) {
            if (IsSessionSupportCaps(caps, type)) {
                mask |= CapsBit(caps);
            }
        }
    }
    return kStatusOk;
}

#if defined(UILAYER_TRACE) && UILAYER_TRACE
void StaticSupportCapabilities::TraceStepEnd(uint32_t index) const {
    Trace::Observer* observer = Trace::CurrentObserver();
    if (observer == nullptr) {
        return;
    }
    Trace::_Step step = {};
    step.name = kConfigStepNames[index];
    step.index = index;
    step.logical = &m_supportCaps;
    step.cameraCaps = m_cameraSupportCaps;
    step.cameras = m_cameraInfo;
    step.cameraCount = m_numPhysicalCameras;
    Trace::_SessionFacts& facts = step.facts;
    facts.operationMode = m_operationMode;
    facts.minFps = m_minFps;
    facts.maxFps = m_maxFps;
    facts.cameraMode = m_cameraMode;
    facts.packageName = m_clientPackageName.data();
    facts.activityName = m_clientActivityName.data();
    facts.logicalCamId = m_logicalCamId;
    const bool hasLogicalId =
        m_logicalCamId >= 0 && static_cast<uint32_t>(m_logicalCamId) < kMaxLogicalCameraIds;
    facts.tableCameraName = hasLogicalId ? m_sensorNameList[m_logicalCamId].c_str() : "";
    facts.numPhysicalCameras = m_numPhysicalCameras;
    facts.isSystemCamera = m_isSystemCamera;
    facts.isCameraUnit = m_isCameraUint;
    facts.isEngineerCamera = m_isEngineerCamera;
    facts.isCtsCamera = m_isCtsCamera;
    facts.isCtsVerifier = m_isCtsVerifier;
    facts.isScanMode = m_isScanMode;
    facts.isGSIBuild = m_isGSIBuild;
    facts.supportOisCenterOn = m_SupportOisCenterOn;
    facts.supportOisCloseOcs = m_SupportOisCloseOcs;
    facts.hasExtModeStream = m_hasExtModeStream;
    facts.isBokehMode = m_isBokehMode;
    facts.isAICompositionEnable = m_isAICompositionEnable;
    facts.videoStabilizationMode = m_videoStabilizationMode;
    facts.cameraIsFromMainMenu = m_cameraIsFromMainMenu;
    observer->OnStepEnd(step);
}
#endif  // UILAYER_TRACE

}  // namespace Lumora
