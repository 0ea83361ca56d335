// Every key of the hardware configuration store that the library reads, named
// once: its group, its key (or the row name of indexed keys), the form of the
// key, the shape of its values and the configuration step that reads it. The
// library's reads name their key from here, and host tools (the linter, the
// capability reference, the simulator) take the names from the same table.
// Group and key names are spelled as the store has them, odd ones included
// ("OemCommonCapbility", "opertionMode", "sensitiviy").
#ifndef LUMORA_CONFIG_KEYS_H
#define LUMORA_CONFIG_KEYS_H

#include <cstddef>
#include <cstdint>

#include "common/ConfigurationSteps.h"

namespace Lumora {

enum class EConfigKeyForm : uint8_t {
    // The key itself ("isSupportLowLatency").
    Single,
    // Rows "<key>[0]" .. "<key>[K-1]", K being the number of keys of the group.
    Rows,
    // Rows "<name>[0]" .. "<name>[n-1]" under any name (a client package or
    // activity), n being the number of keys of that name.
    NamedRows,
    // Like NamedRows, with exactly one entry "<name>[0]" per name.
    NamedSingleRow,
    // "<key>[<sensor name>]".
    NamedByKey,
    // Any key (a sensor name).
    AnyKey,
    // "<sensor>[0x<mask>][0x<operation mode>]" or "<sensor>[0x<mask>][-1]".
    SensorModeKey,
};

// The shape of a key's values: one letter per value ('b' boolean, 'i' 32-bit
// integer, 'u' unsigned 32-bit integer, 'l' 64-bit integer, 'f' float, 's'
// text, 'x' hexadecimal text as "%x" reads it); a '*' repeats the letter
// before it over the middle of the list, the letters after it are the last
// values. A key needs the values before a '[' (the bracketed ones it may
// leave out) and, without '*', has at most all its letters: counts are spelt
// as letters, "u[uuuu]" is one to five unsigned values, "[u]*" any number. A
// final '=' marks rows that the library reads with the value count of row 0.
//
// The step is the configuration step that reads the key; Count stands for the
// session's queries after the steps (the sensor mode index and the zoom ratio
// remap), which read their keys on demand.
// clang-format off
#define LUMORA_CONFIG_KEYS(X) \
    /* Stream classification. */ \
    X(AsdOverrideStreamDtSpace, "ASDFeatureConfig", "OverrideASDStreamDtSpace", Single, "b", ParseStreamsInfo) \
    X(AsdVideoOperationMode, "ASDFeatureConfig", "VideoASDOperationMode", Single, "u*", ParseStreamsInfo) \
    X(AsdFullFovStreamInfo, "ASDFeatureConfig", "ViewASDFullFovStreamInfo", Single, "uu", ParseStreamsInfo) \
    X(PipViewFinderOperationMode, "PIPFeatureConfig", "ViewFinderOperationMode", Single, "u*", ParseStreamsInfo) \
    X(PipViewFinderStreamInfo, "PIPFeatureConfig", "ViewFinderStreamInfo", Single, "uu", ParseStreamsInfo) \
    X(PipViewFinderMasterModeStreamInfo, "PIPFeatureConfig", "ViewFinderMasterModeStreamInfo", Single, "uu", ParseStreamsInfo) \
    X(OisOperationMode, "OIS", "operationMode", Single, "u*", ParseStreamsInfo) \
    X(OisCtsCloseOcs, "OIS", "OisCtsCloseOcs", Single, "u[uuuu]", ParseStreamsInfo) \
    X(CaptureHdrSupportOpMode, "OemCommonCapbility", "CaptureHdrSupportOpMode", Single, "u*", ParseStreamsInfo) \
    /* Session parameters. */ \
    X(ThirdAppOperationModeOverride, "ThirdAppOperationModeOverride", "scene", Rows, "ssxx=", ParseSessionParams) \
    X(Enable3DLut, "OemCommonCapbility", "Enable3DLut", Single, "b", ParseSessionParams) \
    X(EnableSkipRawStream, "OemCamSupportType", "EnableSkipRawStream", Single, "u*", ParseSessionParams) \
    X(EnableReturnPrivateChiPhyMetaEarly, "OemCamSupportType", "EnableReturnPrivateChiPhyMetaEarly", Single, "u*", ParseSessionParams) \
    X(VideoMlftOperationMode, "VideoMLFTNode", "opertionMode", Single, "[u]*", ParseSessionParams) \
    X(DisableAePrecapture, "DisableAePrecapture", "scene", Rows, "ss*", ParseSessionParams) \
    X(SupportSnapshotLockMaster, "OemCamSettings", "SupportSnaphotLockMaster", Single, "b", ParseSessionParams) \
    X(EngineerTwoCameraAlwaysOn, "EngineercameraConfig", "isNeedTwoCameraAlwaysOn", Single, "b", ParseSessionParams) \
    X(VideoFrameInsert, "VideoFrameInsertSupport", "Mode", Rows, "uu*=", ParseSessionParams) \
    /* Client package policy (InitPackageName, within the session parameters). */ \
    X(OisCenterOnApp, "PackageName Group", "OisCenterOnApp", Single, "s*", ParseSessionParams) \
    X(OisCloseOcsApp, "PackageName Group", "OisCloseOcsApp", Single, "s*", ParseSessionParams) \
    X(CtsCameraPackage, "PackageName Group", "ctsCamera", Single, "s", ParseSessionParams) \
    X(SystemCameraPackage, "PackageName Group", "SystemCamera", Single, "s", ParseSessionParams) \
    X(EngineerModePackage, "PackageName Group", "EngineerMode", Single, "s", ParseSessionParams) \
    X(CtsVerifierPackage, "PackageName Group", "ctsVerifier", Single, "s", ParseSessionParams) \
    X(ScanModePackage, "PackageName Group", "ScanMode", Single, "s", ParseSessionParams) \
    /* Preview pipelines. */ \
    X(SupportLowLatency, "OemDecouplePipelines", "isSupportLowLatency", Single, "b", SelectLowlatencyPipeline) \
    X(EnableMipmap, "OemDecouplePipelines", "isEnableMIPMAP", Single, "b", SelectLowlatencyPipeline) \
    X(PreviewPipelines, "OPreviewPipelines", "mode", Rows, "u*s=", SelectLowlatencyPipeline) \
    /* Multi-camera zoom. */ \
    X(SatFallbackWireless, "SatFallback", "isEnablewireless", Single, "b", ConfigSupportCapsSAT) \
    X(TripartiteFallbackApps, "TripartiteModeFallbackWhitelist", "App", Rows, "s*=", ConfigSupportCapsSAT) \
    X(BokehZoomRatioTranslate, "BokehZoomRatioTranslateInfo", "enableBokehZoomRatio", Single, "b", ConfigSupportCapsSAT) \
    X(BokehIzoomSeamlessModes, "BokehSATConfig", "supportBokehIzoomSeamless", Single, "u*", ConfigSupportCapsSAT) \
    X(ZoomDivisionApps, "3rdCamIsSupportZoomdivisionConfig", "APP", Rows, "s*=", ConfigSupportCapsSAT) \
    X(SatUseAidlInput, "SatSmoothZoom", "UseAIDLInput", Single, "b", ConfigSupportCapsSAT) \
    X(SkipMiddleSensor, "SatPointZoomSkip", "isEnableSkipMiddleSensor", Single, "b", ConfigSupportCapsSAT) \
    X(SkipMiddleSensorForVideo, "SatPointZoomSkip", "EnablePointZoomskipForVideo", Single, "b", ConfigSupportCapsSAT) \
    X(VideoMaxRtCount, "4SatSmoothZoom", "videoMaxRtCount", Single, "i", ConfigSupportCapsSAT) \
    X(VideoStrategyModes, "MvgSatSettings", "useVideoStrategyMode", Single, "u*", ConfigSupportCapsSAT) \
    /* Bokeh and sensor names. */ \
    X(BokehStartWithFallback, "BokehSATConfig", "supportStartWithFallback", Single, "b", ConfigSupportCapsBokeh) \
    X(SensorNames, "SensorNameList", "mode", Rows, "us=", ConfigSensorNameMap) \
    /* RAW and QCFA sizes. */ \
    X(CustomRawFullSize, "OemSupportedCustomRAWFullSizes", "Size", NamedByKey, "uu*", ConfigRAWQCFAFullSize) \
    X(Izoom4x4Sensors, "OemRemosaicConfig", "4x4IZOOMPSensorNameList", Single, "s*", ConfigSupportCaps2x2QCFA) \
    X(Enable2x2Xcfa, "OemRemosaicConfig", "Enable2x2XCFA", Single, "b", ConfigSupportCaps2x2QCFA) \
    X(Xcfa2x2Sensors, "OemRemosaicConfig", "2x2XCFASensorNameList", Single, "s*", ConfigSupportCaps2x2QCFA) \
    X(Xcfa4x4DisableMultiFrame, "OemRemosaicConfig", "4x4XCFADisableMultiFrame", Single, "b", ConfigSupportCaps2x2QCFA) \
    X(Xcfa2SwitchZoomRatio, "OemRemosaicConfig", "XCFA2SwitchZoomRatio", Single, "f*", ConfigXCFA2SwitchZoomRatio) \
    X(FocalLengthOverrideCameras, "EquivalentFocalLengthMapping", "needOverrideCameraList", Single, "s[sssssssssssssss]", Count) \
    X(FocalLengthBaseZoomRatios, "EquivalentFocalLengthMapping", "baseZoomRatio", Single, "f[fffffffffffffff]", Count) \
    /* SHDR and DCG/VS streaming. */ \
    X(ShdrTypeMatching, "SHDRTypeMatching", "Mode", Rows, "iiiiii=", ConfigSupportCapsSHDR) \
    X(SensorDcgVs, "EnableSensorDCGVS", "", AnyKey, "u*", ConfigureSensorDCGVSStreamingByCaps) \
    /* AEC warm start. */ \
    X(WarmDolState, "WarmDolState", "Mode", Rows, "uuuuuuuuuu=", ConfigWarmStart) \
    /* Video features. */ \
    X(PhotoRealtimeEis, "PhotoRealtimeEIS", "operationMode", Single, "u*", ConfigEISMode) \
    X(EisTypeMatching, "EISTypeMatching", "Mode", Rows, "us*", ConfigEISMode) \
    X(EnableFlowControl, "FlowControl", "isEnableFlowControl", Single, "b", ConfigSupportCapsFlowControl) \
    X(VideoHalWatermark, "TavroVideoWaterMarkParams", "videoHalWatermarkEnable", Single, "b", ConfigVideoWatermarkEnable) \
    X(ProVideoIzoomCamIdMask, "InsensorZoom", "supportProVideoIZoomCamIdMask", Single, "i", ConfigSupportCapsProVideoIZoom) \
    /* AI noise reduction in low-light video. */ \
    X(ViullEnable, "3rdAppEnableVIULL", "isEnable3rdAppVIULL", Rows, "uu=", ConfigSupportCapsAINR) \
    X(ViullDisableMap, "3rdAppDisableVIULLMap", "", NamedSingleRow, "u", ConfigSupportCapsAINR) \
    X(ViullEnableMap, "3rdAppEnableVIULLMapLumora", "", NamedRows, "xs=", ConfigSupportCapsAINR) \
    X(DisableViullForHdr, "OemCommonCapbility", "disableVIULLForSpecificHDR", Single, "b", ConfigSupportCapsAINR) \
    /* Static tuning policy and AE information. */ \
    X(AiafTouch2Track, "AIAFTouch2track", "Mode", Rows, "uu=", ConfigAIAF) \
    X(Feature1ModeMatch, "OEMFeature1ModeMatch", "Mode", Rows, "ii[iiiiii]=", ConfigStaticTuningPolicy) \
    X(Feature2ModeMatch, "OEMFeature2ModeMatch", "Mode", Rows, "ii[iiiii]=", ConfigStaticTuningPolicy) \
    X(StarModeOverrideAe, "StarMode", "needOverrideAE", Single, "b", ConfigStarModeAEInfo) \
    X(StarModeAeMode, "StarMode", "AEMode", Single, "i", ConfigStarModeAEInfo) \
    X(StarModeSensitivity, "StarMode", "sensitiviy", Single, "i", ConfigStarModeAEInfo) \
    X(StarModeExposureTime, "StarMode", "expTime", Single, "l", ConfigStarModeAEInfo) \
    /* Sensor mode selection. */ \
    X(SeamlessSensorModes, "OemCamSeamlessSettingMap", "", SensorModeKey, "u", Count) \
    X(OtherCamSensorModes, "OtherCamSensorSettingMap", "", NamedRows, "iiiiii=", Count)
// clang-format on

// clang-format off
enum class EConfigKey : uint8_t {
#define LUMORA_CONFIG_KEY_ID(id, group, key, form, shape, step) id,
    LUMORA_CONFIG_KEYS(LUMORA_CONFIG_KEY_ID)
#undef LUMORA_CONFIG_KEY_ID
    Count,
};
// clang-format on

constexpr size_t kConfigKeyCount = static_cast<size_t>(EConfigKey::Count);

struct _ConfigKey {
    const char* group;
    const char* key;       // the key or row name; "" for the forms that take any name
    const char* firstRow;  // "<key>[0]", the row whose value count the library checks
    EConfigKeyForm form;
    const char* shape;
    EConfigStep step;
};

inline constexpr _ConfigKey kConfigKeys[kConfigKeyCount] = {
#define LUMORA_CONFIG_KEY_ENTRY(id, group, key, form, shape, step) \
    {group, key, key "[0]", EConfigKeyForm::form, shape, EConfigStep::step},
    LUMORA_CONFIG_KEYS(LUMORA_CONFIG_KEY_ENTRY)
#undef LUMORA_CONFIG_KEY_ENTRY
};

// The name of each entry as the enum spells it ("ShdrTypeMatching").
inline constexpr const char* kConfigKeyIds[kConfigKeyCount] = {
#define LUMORA_CONFIG_KEY_NAME(id, group, key, form, shape, step) #id,
    LUMORA_CONFIG_KEYS(LUMORA_CONFIG_KEY_NAME)
#undef LUMORA_CONFIG_KEY_NAME
};

constexpr const _ConfigKey& Key(EConfigKey key) {
    return kConfigKeys[static_cast<size_t>(key)];
}

// The value of a preview pipeline row (PreviewPipelines) that asks for the
// low-latency pipeline, counted from 0: a row has it only with the name after
// it, so shorter rows never ask.
constexpr uint32_t kPipelineLowLatencyValue = 2;
// A preview pipeline row's logical camera id that matches every logical camera.
constexpr uint32_t kPipelineAnyLogicalCamera = 255;

// The name a set of cameras goes by where tables are keyed by sensor name
// (a set of one camera goes by its sensor's name): null for other sizes.
constexpr const char* SetCameraName(uint32_t numPhysicalCameras) {
    return numPhysicalCameras == 4 ? "4SatR" : numPhysicalCameras == 3 ? "3SatR" : nullptr;
}

// The fewest values a key of `shape` needs: its letters before any optional ones.
constexpr uint32_t MinValues(const char* shape) {
    uint32_t letters = 0;
    for (; *shape != '\0' && *shape != '[' && *shape != '='; ++shape) {
        letters += *shape != '*';
    }
    return letters;
}

constexpr uint32_t MinValues(EConfigKey key) {
    return MinValues(Key(key).shape);
}

// The most values the library reads of a key of a shape without '*': all its letters.
constexpr uint32_t ReadLimit(EConfigKey key) {
    uint32_t letters = 0;
    for (const char* shape = Key(key).shape; *shape != '\0' && *shape != '='; ++shape) {
        letters += *shape != '[' && *shape != ']';
    }
    return letters;
}

}  // namespace Lumora

#endif  // LUMORA_CONFIG_KEYS_H
