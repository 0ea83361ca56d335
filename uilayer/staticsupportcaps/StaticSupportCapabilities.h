// Session state of one camera: everything derived from one stream configuration
// (the session caps of the logical camera and of each physical camera, the
// per-role stream lists and the values other modules ask for). Built once with
// its parser and rebuilt by every ParseStaticCapabilities.
//
// The implementation is split by concern over the files of this folder:
//   StaticSupportCapabilities.cpp  construction, camera table, configuration driver, queries
//   SessionParams.cpp              session parameters
//   ClientPackagePolicy.cpp        client package and activity policy
//   BokehSensorNames.cpp           bokeh sessions and the sensor name table
//   RawQcfaSizes.cpp               RAW/QCFA sizes, XCFA zoom ratios, zoom ratio remapping
//   StreamClassification.cpp       stream roles and stream queries
//   SensorModeSelection.cpp        sensor mode index by caps
//   PreviewPipeline.cpp            low-latency preview pipeline
//   MultiCameraZoom.cpp            multi-camera zoom record
//   ShdrStreaming.cpp              SHDR and DCG/VS streaming
//   WarmStart.cpp                  AEC warm start
//   VideoFeatures.cpp              EIS, flow control, watermark, pro-video in-sensor zoom
//   Ainr.cpp                       AI noise reduction in low-light video
//   TuningPolicy.cpp               AI autofocus, tuning policy tables, star-mode AE
#ifndef LUMORA_STATIC_SUPPORT_CAPABILITIES_H
#define LUMORA_STATIC_SUPPORT_CAPABILITIES_H

#include <LumoraCameraInfo.h>
#include <hardware/camera3.h>
#include <hardware/camera_common.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "IuiLayer.h"
#include "common/ConfigurationSteps.h"
#include "common/OperationModes.h"

namespace Lumora {

constexpr uint32_t kMaxPhysicalCameras = 8;  // camera entries of one session
constexpr uint32_t kMaxLogicalCameraIds = 16;
constexpr uint32_t kMaxCameraTable = 255;  // camera indices walked (8-bit count)
constexpr uint32_t kSensorDimensionRows = 8;
constexpr uint32_t kMaxTuningPolicyEntries = 64;
constexpr uint32_t kLogicalCameraType = TypeLogicalCamera;
static_assert(kMaxPhysicalCameras == LUMORA_MAX_PHYSICAL_CAMERAS, "camera entries of a record");

// Camera entries of a camera information record, at most the eight the record
// has room for; none without a record.
inline uint32_t RecordCameraCount(const LumoraCameraInfo* record) {
    return record != nullptr ? std::min<uint32_t>(record->numPhysicalCameras, kMaxPhysicalCameras)
                             : 0;
}

struct ODimension {
    uint32_t width;
    uint32_t height;
};

// Warm start parameters of one physical camera id.
struct _WarmStartParam {
    uint32_t warmStartEnable;
    uint32_t luxDiffThreshold;
    uint32_t maxLux;
    uint32_t maxSavedValueB;
    uint32_t minSavedValueA;
    int32_t aecDolType1;
    int32_t aecDolType2;
    int32_t fps;
    int32_t dolState;
};

// Tuning policy entries; position 0 is the tuning mode, 1 the operation mode
// (-1: any), 2 the APS feature type, the rest as the tuning mode query reads them.
struct _Feature1TuningPolicy {
    int32_t value[8];
};
struct _Feature2TuningPolicy {
    int32_t value[7];
};

class StaticSupportCapabilities {
public:
    // The client's package and activity name buffers: 80 characters and a
    // terminator; a longer name is not kept.
    static constexpr size_t kClientNameSize = 81;

    StaticSupportCapabilities(unsigned int cameraId, unsigned int allCameraNumbers,
                              camera_info* pAllCameraInfo);
    ~StaticSupportCapabilities();
    StaticSupportCapabilities(const StaticSupportCapabilities&) = delete;
    StaticSupportCapabilities& operator=(const StaticSupportCapabilities&) = delete;

    // ---- Configuration driver and session queries ----
    int ParseStaticCapabilities(const camera3_stream_configuration* config);
    int ParseStreamCapabilities(const camera3_stream_configuration* config);
    bool IsSessionSupportCaps(DesiredSupportCaps caps, QueryCapsType type) const;
    int GetStaticCapsMask(QueryCapsType type, _CapsBitset& mask) const;
    _SatStaticCaps* GetSatStaticCaps() { return &m_satStaticCaps; }
    const char* GetPipelineName() const { return m_pipelineName; }
    char* GetPackageName() { return m_clientPackageName.data(); }
    char* GetActivityName() { return m_clientActivityName.data(); }
    bool IsDisableAePrecaptureTriggerForSnapshot() const { return m_disableAePrecapture != 0; }
    char* GetCameraMode() { return m_cameraMode; }
    unsigned int GetVideoStabMode() const { return m_videoStabilizationMode; }
    _SensorDimension* GetSensorDimension() { return m_sensorDimension.data(); }
    StarModeAEInfo* GetStarModeAEInfo() { return &m_starModeAEInfo; }

    // ---- Camera table ----
    int GetFwkCameraIdByCameraIndex(unsigned int cameraIndex) const;
    int GetFwkCameraIdByStream(const camera3_stream* stream) const;
    void SetSensorDimension(unsigned int physicalCamId, unsigned int width, unsigned int height);

    // ---- Stream classification ----
    int ParseStreamsInfo(const camera3_stream_configuration* config);
    std::vector<_UIStreamInfo>* GetStreamByStreamType(StreamType type);
    StreamType GetStreamTypeByStream(const camera3_stream* stream) const;
    int GetCameraIndexByStream(const camera3_stream* stream) const;

    // ---- Sensor mode selection ----
    int32_t GetSensorModeIndexByCaps(_CapsBitset caps, QueryCapsType type, signed char& index);
    void StandardizeSensorCapsMask(_CapsBitset& caps) const;
    int32_t GetSensorModeIndexByCapsForOtherCam(_CapsBitset caps, QueryCapsType type,
                                                signed char& index);

    // ---- RAW and QCFA sizes ----
    float ProcessRemapZoomRatio(char* sensorName, int skip);

    // ---- AEC warm start ----
    int GetWarmStartStateByCaps(unsigned int physicalCamId, unsigned int& warmStartEnable,
                                int& dolState) const;

private:
    friend class RequestDesiredCapabilities;
    friend class ResultAppliedCapabilities;

#if defined(UILAYER_TRACE) && UILAYER_TRACE
    // Host trace: tells the observer the session after configuration step `index`.
    void TraceStepEnd(uint32_t index) const;
#endif
    // One row of the step table: a step and how the session runs it.
    struct _ConfigStepRow {
        EConfigStep step;
        void (*run)(StaticSupportCapabilities&, const camera3_stream_configuration*);
    };
    // Runs the configuration steps from `first` up to, not including, `end`.
    void RunConfigSteps(EConfigStep first, EConfigStep end,
                        const camera3_stream_configuration* config);
    // Resets every member that a stream configuration rebuilds.
    void ResetSessionState();
    // Index of the first camera entry with this physical camera id, -1 if none.
    int FindCameraEntryByPhysicalId(uint32_t physicalCamId) const;
    // The sibling's record of a logical camera id; null for an id without one.
    const LumoraCameraInfo* CameraRecordOf(int32_t logicalCamId) const {
        return logicalCamId >= 0 && static_cast<uint32_t>(logicalCamId) < kMaxLogicalCameraIds
                   ? m_cameraInfoMapById[logicalCamId]
                   : nullptr;
    }

    // ---- Session parameters ----
    uint32_t ParseSessionParams(const camera3_stream_configuration* config);
    // The values that come from the session metadata itself, in their order.
    void ParseSessionMetadata(const camera3_stream_configuration* config,
                              const camera_metadata_t* meta);
    // Caps of the client's camera mode (m_cameraMode).
    void ApplyCameraMode(bool lut3d);
    // Whether the client's camera mode is `name`. The buffer is handed out
    // writable, so the compare does not rely on its terminator.
    bool CameraModeIs(const char* name) const {
        const size_t length = strlen(name);
        return strnlen(m_cameraMode, sizeof(m_cameraMode)) == length &&
               memcmp(m_cameraMode, name, length) == 0;
    }
    bool IsProVideoCameraMode() const {
        return CameraModeIs("pro_video_mode") || CameraModeIs("pro_video_log_mode");
    }

    // ---- Client package policy ----
    uint32_t InitPackageName(camera3_stream_configuration* config);

    // ---- Bokeh and sensor names ----
    uint32_t ConfigSupportCapsBokeh(const camera3_stream_configuration* config);
    void ConfigSensorNameMap();

    // ---- RAW and QCFA sizes ----
    void ConfigRAWQCFAFullSize();
    uint32_t ConfigSupportCaps2x2QCFA();
    uint32_t ConfigXCFA2SwitchZoomRatio();

    // ---- Multi-camera zoom ----
    uint32_t ConfigSupportCapsSAT(const camera3_stream_configuration* config);

    // ---- SHDR and DCG/VS ----
    uint32_t ConfigSupportCapsSHDR();
    uint32_t ConfigureSensorDCGVSStreamingByCaps();

    // ---- AEC warm start ----
    uint32_t ConfigWarmStart();
    // Host tests of the request path set the session inputs it reads directly.
    friend class RequestPathTestPeer;

    // ---- Tuning policy and AE information ----
    void ConfigAIAF();
    void ConfigStaticTuningPolicy();
    void ConfigStarModeAEInfo();

    // ---- Video features ----
    uint32_t ConfigEISMode(const camera3_stream_configuration* config);
    uint32_t ConfigSupportCapsFlowControl(const camera3_stream_configuration* config);
    uint32_t ConfigVideoWatermarkEnable(const camera3_stream_configuration* config);
    uint32_t ConfigSupportCapsProVideoIZoom(const camera3_stream_configuration* config);

    // ---- AINR ----
    uint32_t ConfigSupportCapsAINR(const camera3_stream_configuration* config);

    // ---- Preview pipeline ----
    uint32_t SelectLowlatencyPipeline(const camera3_stream_configuration* config);

    // ======== Members ========

    // Camera table (construction).
    LumoraCameraInfo* m_pCameraInfoMap = nullptr;
    std::string m_sensorNameList[kMaxLogicalCameraIds];
    LumoraCameraInfo* m_cameraInfoMapById[kMaxLogicalCameraIds] = {};
    uint32_t m_frameworkId = 0;
    int32_t m_logicalCamId = -1;
    _CapsBitset m_supportCaps;
    uint8_t m_numPhysicalCameras = 0;
    LumoraCameraEntry m_cameraInfo[kMaxPhysicalCameras] = {};
    _CapsBitset m_cameraSupportCaps[kMaxPhysicalCameras];
    std::array<_SensorDimension, kSensorDimensionRows> m_sensorDimension = {};
    uint8_t m_allCameraNumbers = 0;
    camera_info* m_pCameraInfo[kMaxCameraTable] = {};

    // Stream classification: one list per StreamType value 0..15.
    std::vector<_UIStreamInfo> m_streamInfo[EStreamTypeMax];
    // Answer for a stream type of 16 or more: a list that stays empty.
    std::vector<_UIStreamInfo> m_noStreams;

    // Session parameters (the block from m_operationMode to m_cameraMode is
    // reset by every configuration).
    uint32_t m_operationMode = kOperationModeUnset;
    uint32_t m_isAICompositionEnable = 0;
    int32_t m_minFps = 0;
    int32_t m_maxFps = 0;
    float m_warmStartLux = -1.0f;
    uint8_t m_mipiSelectMode = 0xFF;
    char m_cameraMode[128 + 1] = {};  // 128 characters and a terminator
    uint8_t m_cameraIsFromMainMenu = 0;
    uint32_t m_disableAePrecapture = 0;

    // Configuration driver.
    uint8_t m_debugEnable = 0;
    ODimension m_firstStreamDimension = {0, 0};

    // Client package policy (kClientNameSize above).
    std::array<char, kClientNameSize> m_clientPackageName = {};
    std::array<char, kClientNameSize> m_clientActivityName = {};
    uint32_t m_isCameraUint = 0;
    uint32_t m_SupportOisCenterOn = 0, m_SupportOisCloseOcs = 0;
    uint32_t m_isCtsCamera = 0, m_isGSIBuild = 0;
    uint32_t m_isSystemCamera = 0;
    uint32_t m_isEngineerCamera = 0;
    uint32_t m_isCtsVerifier = 0;
    uint32_t m_isScanMode = 0;
    uint32_t m_hasExtModeStream = 0;

    // Preview pipeline; points into the configuration store or at a built-in name.
    const char* m_pipelineName = nullptr;

    // Multi-camera zoom.
    _SatStaticCaps m_satStaticCaps;

    // Bokeh and sensor names.
    uint32_t m_isBokehMode = 0;
    uint32_t m_bokehStartWithFallback = 0;
    uint32_t m_bokehTriplePreview = 0;
    std::map<unsigned int, std::string> m_sensorNameMap;

    // RAW and QCFA sizes.
    std::map<unsigned int, ODimension> m_customRawFullSizes;
    std::vector<float> m_XCFA2SwitchZoomRatio;
    float m_baseZoomRatio = 1.0f;
    uint32_t m_isNeedRemapZoomRatio = 0;

    // AEC warm start, one record per physical camera id.
    _WarmStartParam m_warmStartParam[kMaxLogicalCameraIds] = {};

    // Video features.
    uint32_t m_videoStabilizationMode = 0;

    // Tuning policy and AE information.
    _Feature1TuningPolicy m_feature1TuningPolicy[kMaxTuningPolicyEntries] = {};
    uint8_t m_feature1TuningPolicyNum = 0;
    _Feature2TuningPolicy m_feature2TuningPolicy[kMaxTuningPolicyEntries] = {};
    uint8_t m_feature2TuningPolicyNum = 0;
    StarModeAEInfo m_starModeAEInfo = {0, 0, 0};
};

// ---- Session parameters ----
// Copies the text of a session parameter entry into `out`, a zeroed buffer of
// 80 bytes: at most 79 bytes, so the copy stays terminated. `out` is left
// untouched when the entry is absent or not a byte entry.
void CopySessionMetadataString(const camera_metadata_t* meta, uint32_t tag, char* out);

}  // namespace Lumora

#endif  // LUMORA_STATIC_SUPPORT_CAPABILITIES_H
