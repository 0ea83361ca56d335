// Stream classification: every configured stream gets one role and goes into
// the list of that role; the session caps record which roles exist, the
// resolution classes, raw kinds and a few per-camera facts.
#include <CameraHWConfiguration.h>

#include <cstdint>
#include <initializer_list>
#include <map>
#include <vector>

#include "common/CapsConstants.h"
#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/OperationModes.h"
#include "common/Status.h"
#include "common/StreamLists.h"
#include "common/StreamPredicates.h"
#include "common/StreamRoles.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

// Helpers below do part of ParseStreamsInfo's work; their log lines name that step.
constexpr const char* kStreamsInfoStep = ConfigStepName(EConfigStep::ParseStreamsInfo);

// Sensor mode flag of a quad-Bayer remosaic mode.
constexpr uint16_t kSensorModeQcfa = 0x800;

// The "close OCS" list is read into five values; longer lists are cut there.
constexpr uint32_t kMaxCloseOcsCameras = ReadLimit(EConfigKey::OisCtsCloseOcs);

bool SizeEquals(const camera3_stream& s, const ODimension& size) {
    return s.width == size.width && s.height == size.height;
}

// A (width, height) pair of the configuration; (0, 0) unless exactly two
// values read.
ODimension ReadStreamSize(EConfigKey key) {
    std::vector<uint32_t> values;
    if (ReadUIntList(key, values) != kConfigOk || values.size() != 2) {
        return ODimension{0, 0};
    }
    return ODimension{values[0], values[1]};
}

bool IsOneOf(uint32_t value, std::initializer_list<uint32_t> values) {
    for (uint32_t v : values) {
        if (v == value) {
            return true;
        }
    }
    return false;
}

// What the classification of one configuration knows besides the stream.
struct ClassificationFacts {
    bool videoExist = false;
    bool videoAsdMode = false;
    bool viewFinderEnabledMode = false;
    bool oisOpMode = false;
    bool captureHdrOpMode = false;
    bool thirdApp = false;
    bool qcfaSensor = false;
    bool noQcfaCamera = true;
    ODimension asdFullFovSize = {0, 0};
    ODimension viewFinderSize = {0, 0};
    ODimension viewFinderMasterSize = {0, 0};
    uint32_t fullWidth = 0;
    uint32_t fullHeight = 0;
    uint32_t halfWidth = 0;
};

// Places one stream by the rules below, in order: the first rule that places
// it wins. The first rules only set caps bits; the later ones give the role.
class StreamClassifier {
public:
    StreamClassifier(const StaticSupportCapabilities& session, _CapsBitset& sessionCaps,
                     _CapsBitset* cameraCaps, uint32_t operationMode, int32_t maxFps,
                     const LumoraCameraInfo* record,
                     const std::map<unsigned int, ODimension>& customRawFullSizes,
                     const ClassificationFacts& facts)
        : m_session(session),
          m_sessionCaps(sessionCaps),
          m_cameraCaps(cameraCaps),
          m_operationMode(operationMode),
          m_maxFps(maxFps),
          m_record(record),
          m_recordEntryCount(RecordCameraCount(record)),
          m_customRawFullSizes(customRawFullSizes),
          m_facts(facts) {}

    StreamType Classify(const camera3_stream& s, int32_t phyCameraId) {
        const bool previewYuv = IsPreviewYuv(s);

        // Extended preview of the vendor modes that support it.
        if (previewYuv && s.ext_stream_mode >= 2 &&
            IsOneOf(m_operationMode,
                    {kOpModeConstrainedHighSpeed, kOpMode800B, kOpMode8021, kOpMode8028,
                     kOpMode80A9, kOpMode80AE, kOpMode80B5, kOpMode80B6, kOpMode80B7})) {
            m_sessionCaps.set(CapsExtModePreview);
        }
        if (previewYuv && (m_facts.oisOpMode || m_facts.thirdApp)) {
            m_sessionCaps.set(CapsPreviewOis);
        }
        if (previewYuv) {
            if (s.height >= 2160) {
                m_sessionCaps.set(CapsResolution4K);
            } else if (s.height >= 1080) {
                m_sessionCaps.set(CapsResolution1080P);
            } else if (s.height >= 720) {
                m_sessionCaps.set(CapsResolution720P);
            }
        }
        // Video resolution classes, whatever the stream type.
        if (IsVideoStream(s)) {
            if (s.height >= 2160) {
                m_sessionCaps.set(CapsResolution4K);
            } else if (s.height >= 1080) {
                m_sessionCaps.set(CapsResolution1080P).set(CapsVideoBelow4K);
            } else if (s.height >= 720) {
                m_sessionCaps.set(CapsResolution720P).set(CapsVideoBelow4K);
            }
        }

        // The full-FOV scene detection stream of the video ASD modes: a preview
        // stream of that size is the view finder; any stream of that size after
        // a video stream feeds scene detection.
        if (m_facts.videoAsdMode) {
            if (previewYuv && SizeEquals(s, m_facts.asdFullFovSize)) {
                return EStreamTypeViewFinder;
            }
            if (m_sessionCaps.test(CapsStreamVideo) && SizeEquals(s, m_facts.asdFullFovSize)) {
                return EStreamTypeASDPreview;
            }
        }
        if (m_facts.viewFinderEnabledMode && previewYuv &&
            (SizeEquals(s, m_facts.viewFinderMasterSize) ||
             SizeEquals(s, m_facts.viewFinderSize))) {
            return EStreamTypeViewFinder;
        }
        // The small preview of the multi-camera modes is the view finder.
        if (previewYuv && s.width == 320 && s.height == 240 &&
            (IsSatFusionMode(m_operationMode) || m_operationMode == kOpModeTeleConverter)) {
            return EStreamTypeViewFinder;
        }
        if (previewYuv) {
            if (m_facts.captureHdrOpMode && s.format == HAL_PIXEL_FORMAT_YCBCR_P010) {
                m_sessionCaps.set(CapsCaptureHdrP010Preview);
            }
            return EStreamTypePreview;
        }
        if (IsVideoStream(s)) {
            SetFpsCaps(m_sessionCaps, m_maxFps);
            return EStreamTypeVideo;
        }

        // Output snapshots; input streams go straight to the raw rules.
        if (IsOutputStream(s)) {
            const StreamType snapshot = ClassifyOutputSnapshot(s);
            if (snapshot != EStreamTypeNone) {
                return snapshot;
            }
        }
        if (IsQcfa2x2Raw(s, phyCameraId)) {
            return EStreamTypeSnapshotRAWQcfa2x2;
        }
        if (IsFullSizeRaw(s, phyCameraId)) {
            return EStreamTypeSnapshotRAWFull;
        }
        const bool shortRaw = IsShortRawStream(&s);
        const bool middleRaw = IsMiddleRawStream(&s);
        if (IsRaw(s) && !shortRaw && !middleRaw) {
            return EStreamTypeSnapshotRAW;
        }
        if (shortRaw) {
            return EStreamTypeSnapshotRAWShort;
        }
        if (middleRaw) {
            return EStreamTypeSnapshotRAWMiddle;
        }
        if ((s.usage & kUsageVendorMetadata) != 0) {
            return EStreamTypeMetadata;
        }
        if (s.format == HAL_PIXEL_FORMAT_RAW16 && IsMultiSpectralUseCase(s)) {
            return EStreamTypeMultiSpectralRaw;
        }
        return EStreamTypeNone;
    }

private:
    // Live shot (with a video stream), YUV snapshot, JPEG; None sends the
    // stream on to the raw rules.
    StreamType ClassifyOutputSnapshot(const camera3_stream& s) {
        const int32_t dataSpace = StreamDataSpace(s);
        const bool yuvOrPrivate = IsYuvClass(s) || (s.usage & GRALLOC_USAGE_PRIVATE_2) != 0;
        const bool previewLike =
            dataSpace != HAL_DATASPACE_DEPTH && HasPreviewUsage(s) && IsYuvClass(s);
        if (m_facts.videoExist && yuvOrPrivate && dataSpace != HAL_DATASPACE_HEIF &&
            !HasVideoUsage(s) && !previewLike) {
            return EStreamTypeVideoLiveShot;
        }
        if (!yuvOrPrivate || dataSpace == HAL_DATASPACE_HEIF || HasVideoUsage(s)) {
            if (s.format == HAL_PIXEL_FORMAT_BLOB &&
                (dataSpace == HAL_DATASPACE_V0_JFIF || dataSpace == HAL_DATASPACE_JFIF)) {
                return EStreamTypeSnapshotJPEG;
            }
            return EStreamTypeNone;
        }
        if (previewLike) {
            return EStreamTypeNone;
        }
        const bool fullSize =
            (s.width == 6560 || s.height == 4928) &&
            (s.format == HAL_PIXEL_FORMAT_YCbCr_420_888 ||
             s.format == HAL_PIXEL_FORMAT_YCBCR_P010 || (s.usage & GRALLOC_USAGE_PRIVATE_2) != 0);
        if (m_operationMode == kOpModeSat8001) {
            m_sessionCaps.set(CapsRawStream);
        }
        return fullSize ? EStreamTypeSnapshotRAWFullYUV : EStreamTypeSnapshotYUV;
    }

    // A raw stream between half and full array width of a 2x2 QCFA camera.
    bool IsQcfa2x2Raw(const camera3_stream& s, int32_t phyCameraId) {
        if (!IsQcfaRawCandidate(s) || !m_facts.qcfaSensor) {
            return false;
        }
        if (phyCameraId != kNoCamera) {
            bool qcfaCamera = false;
            for (uint32_t e = 0; e < m_recordEntryCount; ++e) {
                const LumoraCameraEntry& entry = m_record->cameraEntry[e];
                if (entry.frameworkId == phyCameraId &&
                    m_session.IsSessionSupportCaps(
                        Caps2x2XCFA, static_cast<QueryCapsType>(entry.physicalCamId))) {
                    qcfaCamera = true;
                    UI_LOGI_IN(kStreamsInfoStep, "2x2QCFA pStream->width %d frameworkId %d",
                               s.width, entry.frameworkId);
                }
            }
            if (!qcfaCamera) {
                return false;
            }
        } else if (m_facts.noQcfaCamera) {
            return false;
        }
        if (s.width < m_facts.halfWidth || s.width >= m_facts.fullWidth) {
            return false;
        }
        UI_LOGI_IN(kStreamsInfoStep, "pStream: %p, physicalCameraId: %d, fullArraySize: %dx%d",
                   static_cast<const void*>(&s), phyCameraId, m_facts.fullWidth,
                   m_facts.fullHeight);
        SetCameraBits(phyCameraId, CapsStreamSnapshotRAWQcfa2x2);
        return true;
    }

    // A raw stream at the full array width or at a configured custom full
    // size, or any stream that asks for the full raw use case.
    bool IsFullSizeRaw(const camera3_stream& s, int32_t phyCameraId) {
        bool fullSize = false;
        if (IsQcfaRawCandidate(s) && m_facts.qcfaSensor) {
            if (m_record != nullptr && s.width >= m_record->fullArrayWidth) {
                fullSize = true;
            } else if (phyCameraId != kNoCamera) {
                for (uint32_t e = 0; e < m_recordEntryCount; ++e) {
                    const LumoraCameraEntry& entry = m_record->cameraEntry[e];
                    if (entry.frameworkId != phyCameraId) {
                        continue;
                    }
                    const auto size = m_customRawFullSizes.find(entry.physicalCamId);
                    if (size != m_customRawFullSizes.end() && size->second.width != 0 &&
                        size->second.width <= s.width) {
                        UI_LOGI_IN(kStreamsInfoStep,
                                   "pStream->width %d frameworkId %d phyId %d QCFA size %d:%d",
                                   s.width, entry.frameworkId, entry.physicalCamId,
                                   size->second.width, size->second.height);
                        fullSize = true;
                    }
                }
            }
        }
        if (s.stream_use_case == kStreamUseCaseRawFull) {
            fullSize = true;
        }
        if (fullSize) {
            SetCameraBits(phyCameraId, CapsStreamSnapshotRAWFull);
        }
        return fullSize;
    }

    // The role bit and the physical raw bit on every camera of the record with
    // that framework id. These caps are indexed by physical camera id; ids
    // past the per-camera array have no caps.
    void SetCameraBits(int32_t phyCameraId, DesiredSupportCaps roleBit) {
        for (uint32_t e = 0; e < m_recordEntryCount; ++e) {
            const LumoraCameraEntry& entry = m_record->cameraEntry[e];
            if (entry.frameworkId == phyCameraId && entry.physicalCamId < kMaxPhysicalCameras) {
                m_cameraCaps[entry.physicalCamId].set(roleBit).set(CapsPhysicalRawStream);
            }
        }
    }

    const StaticSupportCapabilities& m_session;
    _CapsBitset& m_sessionCaps;
    _CapsBitset* m_cameraCaps;
    const uint32_t m_operationMode;
    const int32_t m_maxFps;
    const LumoraCameraInfo* m_record;
    const uint32_t m_recordEntryCount;
    const std::map<unsigned int, ODimension>& m_customRawFullSizes;
    const ClassificationFacts& m_facts;
};

// One line per entry of the list of role `type`: the fields every list shows,
// then the text `more` with its arguments (which may name the entry `info`).
#define LOG_STREAM_LIST(lists, type, more, ...)                                           \
    do {                                                                                  \
        const std::vector<_UIStreamInfo>& list = (lists)[type];                           \
        for (const _UIStreamInfo& info : list) {                                          \
            UI_LOGI_IN(kStreamsInfoStep,                                                  \
                       "[" #type                                                          \
                       "] size %lu streamIndex %d phyCameraId %d pStream %p, format %x, " \
                       "width %d, height %d" more,                                        \
                       static_cast<unsigned long>(list.size()), info.streamIndex,         \
                       info.phyCameraId, static_cast<const void*>(info.pStream),          \
                       info.pStream->format, info.pStream->width, info.pStream->height,   \
                       ##__VA_ARGS__);                                                    \
        }                                                                                 \
    } while (0)

// Every list with its entries, in the order the camera layer reads them.
void LogStreamLists(const std::vector<_UIStreamInfo>* lists, const ClassificationFacts& facts) {
    LOG_STREAM_LIST(lists, EStreamTypePreview, "");
    LOG_STREAM_LIST(lists, EStreamTypeVideo, "");
    LOG_STREAM_LIST(lists, EStreamTypeSnapshotYUV, "");
    LOG_STREAM_LIST(lists, EStreamTypeVideoLiveShot, "");
    LOG_STREAM_LIST(lists, EStreamTypeSnapshotRAWFullYUV, "");
    LOG_STREAM_LIST(lists, EStreamTypeSnapshotJPEG, "");
    LOG_STREAM_LIST(lists, EStreamTypeSnapshotRAW, "");
    LOG_STREAM_LIST(lists, EStreamTypeSnapshotRAWShort, "");
    LOG_STREAM_LIST(lists, EStreamTypeSnapshotRAWMiddle, "");
    LOG_STREAM_LIST(lists, EStreamTypeSnapshotRAWFull, "");
    LOG_STREAM_LIST(lists, EStreamTypeSnapshotRAWQcfa2x2, "");
    LOG_STREAM_LIST(lists, EStreamTypeMetadata, "");
    LOG_STREAM_LIST(lists, EStreamTypeMultiSpectralRaw, ", stream_use_case:%llx",
                    static_cast<unsigned long long>(info.pStream->stream_use_case));
    LOG_STREAM_LIST(lists, EStreamTypeASDPreview, " bViewFinderEnabledMode %d bVideoASDMode %d",
                    facts.viewFinderEnabledMode, facts.videoAsdMode);
    LOG_STREAM_LIST(lists, EStreamTypeViewFinder, " bViewFinderEnabledMode %d bVideoASDMode %d",
                    facts.viewFinderEnabledMode, facts.videoAsdMode);
}

#undef LOG_STREAM_LIST

}  // namespace

int StaticSupportCapabilities::ParseStreamsInfo(const camera3_stream_configuration* config) {
    if (config == nullptr) {
        UI_LOGE("Invalid Args");
        return kStatusOk;
    }
    uint32_t numStreams = config->num_streams;
    if (numStreams > 0 && config->streams == nullptr) {
        UI_LOGE("num_streams %u without a stream array, no stream is classified", numStreams);
        numStreams = 0;
    }
    camera3_stream_t* const* streams = config->streams;

    // Survey: each stream's size is the sensor size of its physical camera.
    for (uint32_t i = 0; i < numStreams; ++i) {
        const camera3_stream* stream = streams[i];
        if (stream == nullptr) {
            continue;
        }
        const int cameraIndex = GetCameraIndexByStream(stream);
        if (cameraIndex >= 0) {
            SetSensorDimension(m_cameraInfo[cameraIndex].physicalCamId, stream->width,
                               stream->height);
        }
        UI_LOGI(
            "num_streams %d/%d pStream %p physical_camera_id %s. streamType = %d format = 0x%x "
            "width = %d height = %d, usage = 0x%x, data_space 0x%x",
            i, numStreams, static_cast<const void*>(stream),
            stream->physical_camera_id != nullptr ? stream->physical_camera_id : "(null)",
            stream->stream_type, stream->format, stream->width, stream->height, stream->usage,
            StreamDataSpace(*stream));
    }

    ClassificationFacts facts;
    facts.videoExist = HasStream(config, IsVideoStream);
    if (facts.videoExist) {
        UI_LOGI("Video Stream Existed, Can Not Register MultiSpectral Sensor");
    }

    bool overrideAsdDataSpace = false;
    const _ConfigKey& overrideKey = Key(EConfigKey::AsdOverrideStreamDtSpace);
    GetBooleanConfiguration(overrideKey.group, overrideKey.key, &overrideAsdDataSpace);
    if (overrideAsdDataSpace) {
        m_supportCaps.set(CapsOverrideASDStreamDtSpace);
        UI_LOGI("Override APP ASD Stream Data Space");
    }

    std::vector<uint32_t> asdModes;
    if (ReadUIntList(EConfigKey::AsdVideoOperationMode, asdModes) != kConfigOk) {
        UI_LOGE("Get VideoASDOperationMode failed");
    } else {
        for (uint32_t mode : asdModes) {
            if ((mode & kOperationModeMask) == m_operationMode) {
                facts.videoAsdMode = true;
                UI_LOGI("videoASDMode: 0x%x bVideoASDMode: %d", mode, facts.videoAsdMode);
            }
        }
    }
    facts.asdFullFovSize = ReadStreamSize(EConfigKey::AsdFullFovStreamInfo);

    facts.viewFinderEnabledMode =
        UIntListContains(EConfigKey::PipViewFinderOperationMode, m_operationMode);
    facts.oisOpMode = UIntListContains(EConfigKey::OisOperationMode, m_operationMode);
    facts.captureHdrOpMode = UIntListContains(EConfigKey::CaptureHdrSupportOpMode, m_operationMode);
    facts.thirdApp = !(m_isSystemCamera != 0 || m_isGSIBuild != 0 || m_isCtsCamera != 0);

    if (m_isGSIBuild == 1 || m_SupportOisCloseOcs == 1) {
        UI_LOGI("ois need close ocs ");
        const _ConfigKey& closeOcs = Key(EConfigKey::OisCtsCloseOcs);
        uint32_t count = GetValuesCount(closeOcs.group, closeOcs.key);
        if (count > kMaxCloseOcsCameras) {
            count = kMaxCloseOcsCameras;
        }
        uint32_t physicalIds[kMaxCloseOcsCameras] = {};
        if (count >= 1 && GetUIntegerListConfiguration(closeOcs.group, closeOcs.key, physicalIds,
                                                       count) == kConfigOk) {
            for (uint32_t n = 0; n < count; ++n) {
                const int k = FindCameraEntryByPhysicalId(physicalIds[n]);
                if (k >= 0) {
                    m_cameraSupportCaps[k].set(CapsOisCloseOcs);
                    UI_LOGI("ois need close ocs physicalcameraIndex %d", k);
                }
            }
        }
    }
    if (m_SupportOisCenterOn == 1) {
        for (uint32_t k = 0; k < m_numPhysicalCameras; ++k) {
            m_cameraSupportCaps[k].set(CapsOisCenterOn);
        }
    }
    if (m_isSystemCamera == 0) {
        m_supportCaps.set(CapsThirdAppStream);
        m_supportCaps.set(CapsThirdAppTuning);
    }

    facts.viewFinderSize = ReadStreamSize(EConfigKey::PipViewFinderStreamInfo);
    facts.viewFinderMasterSize = ReadStreamSize(EConfigKey::PipViewFinderMasterModeStreamInfo);

    // QCFA facts: some camera of the session has a remosaic sensor mode, and
    // the first camera with 2x2 QCFA support gives the full array size.
    for (uint32_t i = 0; i < m_numPhysicalCameras && !facts.qcfaSensor; ++i) {
        const LumoraCameraInfo* record = CameraRecordOf(m_cameraInfo[i].logicalCamId);
        if (record == nullptr) {
            continue;
        }
        const uint32_t modeCount = record->numSensorModes < LUMORA_MAX_SENSOR_MODES
                                       ? record->numSensorModes
                                       : static_cast<uint32_t>(LUMORA_MAX_SENSOR_MODES);
        for (uint32_t m = 0; m < modeCount; ++m) {
            if ((record->sensorModes[m].flags & kSensorModeQcfa) != 0) {
                facts.qcfaSensor = true;
                break;
            }
        }
    }
    for (uint32_t i = 0; i < m_numPhysicalCameras; ++i) {
        const LumoraCameraEntry& entry = m_cameraInfo[i];
        if (!IsSessionSupportCaps(Caps2x2XCFA, static_cast<QueryCapsType>(entry.physicalCamId))) {
            continue;
        }
        facts.noQcfaCamera = false;
        const LumoraCameraInfo* record = CameraRecordOf(entry.logicalCamId);
        if (record != nullptr) {
            facts.fullWidth = record->fullArrayWidth;
            facts.fullHeight = record->fullArrayHeight;
        }
        break;
    }
    facts.halfWidth = facts.fullWidth / 2;

    StreamClassifier classifier(*this, m_supportCaps, m_cameraSupportCaps, m_operationMode,
                                m_maxFps, m_pCameraInfoMap, m_customRawFullSizes, facts);

    for (uint32_t i = 0; i < numStreams; ++i) {
        camera3_stream* stream = streams[i];
        if (stream == nullptr) {
            // A null entry cannot be classified: the HAL gets no role for it.
            UI_LOGE("num_streams %d/%d pStream is null, the stream gets no role", i, numStreams);
            continue;
        }
        const int32_t phyCameraId = GetFwkCameraIdByStream(stream);
        const StreamType type = classifier.Classify(*stream, phyCameraId);
        if (type != EStreamTypeNone) {
            m_streamInfo[type].push_back(_UIStreamInfo{i, phyCameraId, stream});
            m_supportCaps.set(kStreamRoles[type].sessionBit);
        }
        if (IsRaw(*stream)) {
            m_supportCaps.set(CapsRawStream);
        }
    }

    if (UI_LOG_INFO_ON()) {
        LogStreamLists(m_streamInfo, facts);
    }
    return kStatusOk;
}

std::vector<_UIStreamInfo>* StaticSupportCapabilities::GetStreamByStreamType(StreamType type) {
    return StreamListOf(m_streamInfo, m_noStreams, type);
}

StreamType StaticSupportCapabilities::GetStreamTypeByStream(const camera3_stream* stream) const {
    if (stream == nullptr) {
        return EStreamTypeNone;
    }
    for (int32_t type = 0; type < EStreamTypeMax; ++type) {
        for (const _UIStreamInfo& info : m_streamInfo[type]) {
            if (info.pStream == stream) {
                return static_cast<StreamType>(type);
            }
        }
    }
    return EStreamTypeNone;
}

int StaticSupportCapabilities::GetCameraIndexByStream(const camera3_stream* stream) const {
    // A stream without a physical camera id looks for framework id -1: the
    // entry of a physical camera that the framework does not see, if any.
    const int frameworkId = GetFwkCameraIdByStream(stream);
    for (uint32_t i = 0; i < m_numPhysicalCameras; ++i) {
        if (m_cameraInfo[i].frameworkId == frameworkId) {
            return static_cast<int>(static_cast<uint8_t>(i));
        }
    }
    return kNoCamera;
}

}  // namespace Lumora
