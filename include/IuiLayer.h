// Public interface of the camera layer's capability parser.
//
// One parser per framework camera id turns each stream configuration and each
// capture request into capability bits ("caps") and answers questions about
// them. Other modules of the camera HAL hold parsers through
// std::shared_ptr<IuiLayer> and call the virtual operations below; their slot
// order is binary interface and must never change.
#ifndef LUMORA_IUILAYER_H
#define LUMORA_IUILAYER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <hardware/camera3.h>
#include <hardware/camera_common.h>

// Vendor tag lookup of the sibling camera layer, filled by IuiLayer::Init.
extern uint32_t (*GetVendorTagId)(uint32_t index);

namespace Lumora {

// A set of exactly 100 capability bits: bits 0..63 in the first word, bits
// 64..99 in the low 36 bits of the second. A value type; all operations are
// cheap and none allocates except to_string().
class _CapsBitset {
public:
    static constexpr size_t kBitCount = 100;

    constexpr _CapsBitset() : m_words{0, 0} {}
    // Raw words; bits above 99 are dropped.
    constexpr _CapsBitset(uint64_t low, uint64_t high) : m_words{low, high & kHighMask} {}

    void Reset() {
        m_words[0] = 0;
        m_words[1] = 0;
    }

    // Bits 0..63 of a copy shifted right by `shift`; bits above are dropped.
    uint64_t to_ullong(unsigned char shift) const {
        if (shift == 0) {
            return m_words[0];
        }
        if (shift < 64) {
            return (m_words[0] >> shift) | (m_words[1] << (64 - shift));
        }
        if (shift < 128) {
            return m_words[1] >> (shift - 64);
        }
        return 0;
    }

    _CapsBitset& set(size_t pos, bool value = true) {
        CheckPosition(pos, "bitset set argument out of range");
        const uint64_t bit = uint64_t{1} << (pos % 64);
        if (value) {
            m_words[pos / 64] |= bit;
        } else {
            m_words[pos / 64] &= ~bit;
        }
        return *this;
    }

    _CapsBitset& reset(size_t pos) {
        CheckPosition(pos, "bitset reset argument out of range");
        m_words[pos / 64] &= ~(uint64_t{1} << (pos % 64));
        return *this;
    }

    // Throws std::out_of_range for pos >= 100: an out-of-range capability number
    // is a programming error, not a negative answer.
    bool test(size_t pos) const {
        CheckPosition(pos, "bitset test argument out of range");
        return ((m_words[pos / 64] >> (pos % 64)) & 1u) != 0;
    }

    bool any() const { return (m_words[0] | m_words[1]) != 0; }
    bool none() const { return !any(); }

    _CapsBitset& operator|=(const _CapsBitset& other) {
        m_words[0] |= other.m_words[0];
        m_words[1] |= other.m_words[1];
        return *this;
    }
    _CapsBitset& operator&=(const _CapsBitset& other) {
        m_words[0] &= other.m_words[0];
        m_words[1] &= other.m_words[1];
        return *this;
    }

    bool operator==(const _CapsBitset& other) const {
        return m_words[0] == other.m_words[0] && m_words[1] == other.m_words[1];
    }
    bool operator!=(const _CapsBitset& other) const { return !(*this == other); }

    // 100 characters '0'/'1', bit 99 first.
    std::string to_string() const {
        std::string text(kBitCount, '0');
        for (size_t pos = 0; pos < kBitCount; ++pos) {
            if (((m_words[pos / 64] >> (pos % 64)) & 1u) != 0) {
                text[kBitCount - 1 - pos] = '1';
            }
        }
        return text;
    }

private:
    static constexpr uint64_t kHighMask = (uint64_t{1} << (kBitCount - 64)) - 1;

    static void CheckPosition(size_t pos, const char* what) {
        if (pos >= kBitCount) {
            throw std::out_of_range(what);
        }
    }

    uint64_t m_words[2];
};

// Names of the capability bits; the value is the bit number. Numbers not listed
// are unassigned and stay free.
enum DesiredSupportCaps : uint32_t {
    CapsStreamPreview = 0,
    CapsStreamSnapshotYUV = 1,
    CapsStreamSnapshotJPEG = 2,
    CapsStreamSnapshotRAW = 3,
    CapsStreamSnapshotRAWShort = 4,
    CapsStreamSnapshotRAWMiddle = 5,
    CapsStreamSnapshotRAWFull = 6,
    CapsStreamSnapshotRAWQcfa2x2 = 7,
    CapsStreamVideo = 8,
    CapsStreamVideoLiveShot = 9,
    CapsStreamViewFinder = 10,
    CapsStreamASDPreview = 11,
    CapsStreamMetadata = 12,
    CapsStreamMultiSpectralRaw = 13,
    CapsSHDR = 15,
    CapsSHDROption = 16,
    CapsSHDRAltPath = 17,
    CapsSHDRPath = 18,
    CapsSensorModeFlag19 = 19,
    CapsSensorModeFlag20 = 20,
    CapsPhysicalRawStream = 21,
    CapsSHDRType1 = 22,
    CapsSHDRType2 = 23,
    CapsReserved24 = 24,
    CapsFps60 = 25,
    CapsFps120 = 26,
    CapsFps240 = 27,
    CapsFps480 = 28,
    CapsExtModePreview = 29,
    Caps3DolStreaming = 30,
    CapsQBC4x = 31,
    CapsVideo120Fps = 32,
    CapsReserved33 = 33,
    CapsResolution4K = 34,
    CapsResolution1080P = 35,
    CapsResolution720P = 36,
    CapsSuperText = 37,
    CapsNotBokeh = 38,
    CapsMultiSpectral = 39,
    CapsAIAFTouch2Track = 40,
    CapsOpMode80BE8009 = 41,
    CapsSystemCamera = 42,
    CapsBokehOrSingleCamera = 43,
    CapsPhotoRealtimeEIS = 44,
    CapsBokeh = 45,
    CapsVideoCameraMode = 46,
    CapsRawStream = 47,
    CapsSystemCameraApp = 48,
    CapsVideoEIS = 49,
    CapsProVideo = 50,
    CapsProVideoLog = 51,
    CapsTwoCameraAlwaysOn = 52,
    CapsVideoStream = 53,
    CapsCameraUnitSdk = 54,
    CapsSystemCameraClient = 55,
    CapsThirdPartyClient = 56,
    CapsScanMode = 57,
    CapsEngineerMode = 58,
    Caps2x2XCFA = 59,
    CapsOpModeMarker = 60,
    CapsVideoMLFT = 61,
    CapsSkipRawStream = 62,
    CapsReturnPrivateChiPhyMetaEarly = 63,
    CapsOverrideASDStreamDtSpace = 64,
    CapsStarModeOverrideAE = 65,
    CapsFineFood = 66,
    CapsBokehOperationMode = 67,
    CapsBokehStartWithFallback = 68,
    CapsBokehTriplePreview = 69,
    CapsGrMode = 70,
    CapsThirdAppStream = 71,
    CapsDisableProVideoIZoom = 72,
    CapsCtsVerifier = 73,
    CapsThirdAppTuning = 74,
    Caps4x4XCFADisableMultiFrame = 75,
    CapsExtModeStream = 76,
    CapsProVideoFamily = 77,
    CapsCaptureHdrP010Preview = 78,
    CapsOisCloseOcs = 79,
    CapsOisCenterOn = 80,
    CapsSensorModeFlag81 = 81,
    Caps4x4Izoom = 81,  // the same bit: set by the 4x4 in-sensor zoom sensors
    CapsSatFusion = 82,
    CapsLowLatencyPipeline = 83,
    CapsVideoBelow4K = 84,
    CapsMLFTNodeExcluded = 85,
    CapsMipmapPreview = 86,
    CapsMoonLayout = 87,
    CapsSnapshotRaw12 = 88,
    CapsVIULL = 89,
    CapsVideoFrameInsert = 90,
    CapsSnapshotLockMaster = 91,
    CapsCameraModeProVideoLog = 92,
    CapsCameraModeProVideo = 93,
    Caps3DLut = 94,
    CapsEquivalentFocallengthOverride = 95,
    CapsFlowControl = 96,
    CapsViewFinderUseAsdFullFovPath = 97,
    CapsVideoHalWatermark = 98,
    CapsPreviewOis = 99
};

// Which camera a caps query is about: 7 is the logical camera (the whole
// session or request); any other value is a physical camera id.
enum QueryCapsType : uint32_t { TypeLogicalCamera = 7 };

// Which tuning policy table a tuning mode query searches.
enum QueryTuningType : uint32_t { TypeFeature1Snapshot = 1, TypeFeature2Snapshot = 2 };

// Role of a configured stream; the value is the index of its stream list.
enum StreamType : int32_t {
    EStreamTypeNone = 0,
    EStreamTypePreview = 1,
    EStreamTypeSnapshotYUV = 2,
    EStreamTypeSnapshotJPEG = 3,
    EStreamTypeSnapshotRAW = 4,
    EStreamTypeSnapshotRAWShort = 5,
    EStreamTypeSnapshotRAWMiddle = 6,
    EStreamTypeSnapshotRAWFull = 7,
    EStreamTypeSnapshotRAWFullYUV = 8,
    EStreamTypeSnapshotRAWQcfa2x2 = 9,
    EStreamTypeVideo = 10,
    EStreamTypeVideoLiveShot = 11,
    EStreamTypeViewFinder = 12,
    EStreamTypeASDPreview = 13,
    EStreamTypeMetadata = 14,
    EStreamTypeMultiSpectralRaw = 15,
    EStreamTypeMax = 16
};

// One configured stream as kept in the per-role lists.
struct _UIStreamInfo {
    uint32_t streamIndex;     // position in the configuration's streams array
    int32_t phyCameraId;      // framework id of its physical camera, -1 when none
    camera3_stream* pStream;  // the HAL's stream record (not owned)
};

// Multi-camera zoom decisions of one stream configuration.
struct _SatStaticCaps {
    uint32_t fallbackUsecase = 0;
    uint32_t fallbackDebug = 0;
    uint32_t isTripartiteFallbackWhitelist = 0;
    uint32_t forceFallback = 0;
    uint32_t supportZoomDivision = 0;
    uint32_t supportBokehIzoomSeamless = 0;
    uint32_t enableSmoothZoom = 0;
    uint32_t isBokehMode = 0;
    int32_t videoMaxRtCount = 0;
    uint32_t useAIDLInput = 0;
    std::string zoomDivisionCurveCfgPrefix;
    uint32_t isEnableSkipMiddleSensor = 0;
    uint32_t is3rdCamZoomDivisionApp = 0;
    uint32_t useVideoStrategy = 0;

    // Back to the state of a new record; the string keeps no storage.
    void Reset() { *this = _SatStaticCaps(); }
};

// Star-mode exposure override values.
struct StarModeAEInfo {
    int32_t aeMode;
    int32_t sensitivity;
    int64_t expTime;
};

// One row of the sensor dimension table (eight rows per session).
struct _SensorDimension {
    uint32_t physicalCamId;
    uint32_t width;
    uint32_t height;
};

class IuiLayer {
public:
    // Empties the parser registry, keeps the HAL's camera table and resolves
    // the vendor tag lookup of the sibling camera layer.
    static void Init(unsigned int allCameraNumbers, camera_info* pAllCameraInfo);
    // The parser of a framework camera id, created on first use.
    static std::shared_ptr<IuiLayer> Get(unsigned int cameraId);

    virtual ~IuiLayer() {}

    // The slot order below is binary interface.
    virtual bool IsSessionSupportCaps(DesiredSupportCaps caps, QueryCapsType type) = 0;
    virtual std::vector<_UIStreamInfo>* GetStreamByStreamType(StreamType type) = 0;
    virtual std::vector<_UIStreamInfo>* GetStreamByStreamType(unsigned int frameNumber,
                                                              StreamType type) = 0;
    virtual int GetFwkCameraIdByCameraIndex(unsigned int cameraIndex) = 0;
    virtual int GetFwkCameraIdByStream(camera3_stream* stream) = 0;
    virtual int GetCameraIndexByStream(camera3_stream* stream) = 0;
    virtual StreamType GetStreamTypeByStream(camera3_stream* stream) = 0;
    virtual bool IsRequestSupportCaps(unsigned int frameNumber, DesiredSupportCaps caps,
                                      QueryCapsType type) = 0;
    virtual _CapsBitset GetRequestSupportCaps(unsigned int frameNumber, QueryCapsType type) = 0;
    virtual unsigned int GetOriginalRequestTuningMode(unsigned int frameNumber,
                                                      QueryTuningType type) = 0;
    virtual int GetSensorModeIndexByCaps(_CapsBitset caps, QueryCapsType type,
                                         signed char& modeIndex) = 0;
    virtual int ParseStaticCapabilities(camera3_stream_configuration* config) = 0;
    virtual int ParseStreamCapabilities(camera3_stream_configuration* config) = 0;
    virtual int UpdatePerRequestCaps(const camera3_capture_request* request) = 0;
    virtual int UpdateResultAppliedCaps(const camera3_capture_result* result) = 0;
    virtual const char* GetPipelineName() = 0;
    virtual char* GetPackageName() = 0;
    virtual char* GetActivityName() = 0;
    virtual bool IsDisableAePrecaptureTriggerForSnapshot() const = 0;
    virtual float ProcessRemapZoomRatio(char* value, int size) = 0;
    virtual char* GetCameraMode() = 0;
    virtual unsigned int GetVideoStabMode() = 0;
    virtual _SensorDimension* GetSensorDimension() = 0;
    virtual StarModeAEInfo* GetStarModeAEInfo() = 0;
    virtual int GetWarmStartStateByCaps(unsigned int physicalCamId, unsigned int& useWarmStart,
                                        int& dolState) = 0;
    virtual int GetStaticCapsMask(QueryCapsType type, _CapsBitset& mask) = 0;
    virtual _SatStaticCaps* GetSatStaticCaps() = 0;
};

}  // namespace Lumora

#endif  // LUMORA_IUILAYER_H
