#include "lint/LintTable.h"

#include <cstring>
#include <iterator>

namespace UilayerSim {

namespace {

using F = KeyForm;

// Spellings are the library's own, odd ones included ("OemCommonCapbility",
// "opertionMode", "sensitiviy", "SupportSnaphotLockMaster").
constexpr KeyRule kRules[] = {
    // Stream classification.
    {"ASDFeatureConfig", "OverrideASDStreamDtSpace", F::Single, "b", 1, 1, false},
    {"ASDFeatureConfig", "VideoASDOperationMode", F::Single, "u*", 1, 0, false},
    {"ASDFeatureConfig", "ViewASDFullFovStreamInfo", F::Single, "uu", 2, 2, false},
    {"PIPFeatureConfig", "ViewFinderOperationMode", F::Single, "u*", 1, 0, false},
    {"PIPFeatureConfig", "ViewFinderStreamInfo", F::Single, "uu", 2, 2, false},
    {"PIPFeatureConfig", "ViewFinderMasterModeStreamInfo", F::Single, "uu", 2, 2, false},
    {"OIS", "operationMode", F::Single, "u*", 1, 0, false},
    {"OIS", "OisCtsCloseOcs", F::Single, "u*", 1, 5, false},
    {"OemCommonCapbility", "CaptureHdrSupportOpMode", F::Single, "u*", 1, 0, false},
    // Session parameters.
    {"ThirdAppOperationModeOverride", "scene", F::Rows, "ssxx", 4, 4, true},
    {"OemCommonCapbility", "Enable3DLut", F::Single, "b", 1, 1, false},
    {"OemCamSupportType", "EnableSkipRawStream", F::Single, "u*", 1, 0, false},
    {"OemCamSupportType", "EnableReturnPrivateChiPhyMetaEarly", F::Single, "u*", 1, 0, false},
    {"VideoMLFTNode", "opertionMode", F::Single, "u*", 0, 0, false},
    {"DisableAePrecapture", "scene", F::Rows, "s*", 2, 0, false},
    {"OemCamSettings", "SupportSnaphotLockMaster", F::Single, "b", 1, 1, false},
    {"EngineercameraConfig", "isNeedTwoCameraAlwaysOn", F::Single, "b", 1, 1, false},
    {"VideoFrameInsertSupport", "Mode", F::Rows, "u*", 2, 0, true},
    // Client package policy.
    {"PackageName Group", "OisCenterOnApp", F::Single, "s*", 1, 0, false},
    {"PackageName Group", "OisCloseOcsApp", F::Single, "s*", 1, 0, false},
    {"PackageName Group", "ctsCamera", F::Single, "s", 1, 1, false},
    {"PackageName Group", "SystemCamera", F::Single, "s", 1, 1, false},
    {"PackageName Group", "EngineerMode", F::Single, "s", 1, 1, false},
    {"PackageName Group", "ctsVerifier", F::Single, "s", 1, 1, false},
    {"PackageName Group", "ScanMode", F::Single, "s", 1, 1, false},
    // Preview pipelines.
    {"OemDecouplePipelines", "isSupportLowLatency", F::Single, "b", 1, 1, false},
    {"OemDecouplePipelines", "isEnableMIPMAP", F::Single, "b", 1, 1, false},
    {"OPreviewPipelines", "mode", F::Rows, "u*s", 2, 0, true},
    // Multi-camera zoom.
    {"SatFallback", "isEnablewireless", F::Single, "b", 1, 1, false},
    {"TripartiteModeFallbackWhitelist", "App", F::Rows, "s*", 1, 0, true},
    {"BokehZoomRatioTranslateInfo", "enableBokehZoomRatio", F::Single, "b", 1, 1, false},
    {"BokehSATConfig", "supportBokehIzoomSeamless", F::Single, "u*", 1, 0, false},
    {"3rdCamIsSupportZoomdivisionConfig", "APP", F::Rows, "s*", 1, 0, true},
    {"SatSmoothZoom", "UseAIDLInput", F::Single, "b", 1, 1, false},
    {"SatPointZoomSkip", "isEnableSkipMiddleSensor", F::Single, "b", 1, 1, false},
    {"SatPointZoomSkip", "EnablePointZoomskipForVideo", F::Single, "b", 1, 1, false},
    {"4SatSmoothZoom", "videoMaxRtCount", F::Single, "i", 1, 1, false},
    {"MvgSatSettings", "useVideoStrategyMode", F::Single, "u*", 1, 0, false},
    // Bokeh and sensor names.
    {"BokehSATConfig", "supportStartWithFallback", F::Single, "b", 1, 1, false},
    {"SensorNameList", "mode", F::Rows, "us", 2, 2, true},
    // RAW and QCFA sizes.
    {"OemSupportedCustomRAWFullSizes", "Size", F::NamedByKey, "u*", 2, 0, false},
    {"OemRemosaicConfig", "4x4IZOOMPSensorNameList", F::Single, "s*", 1, 0, false},
    {"OemRemosaicConfig", "Enable2x2XCFA", F::Single, "b", 1, 1, false},
    {"OemRemosaicConfig", "2x2XCFASensorNameList", F::Single, "s*", 1, 0, false},
    {"OemRemosaicConfig", "4x4XCFADisableMultiFrame", F::Single, "b", 1, 1, false},
    {"OemRemosaicConfig", "XCFA2SwitchZoomRatio", F::Single, "f*", 1, 0, false},
    {"EquivalentFocalLengthMapping", "needOverrideCameraList", F::Single, "s*", 1, 16, false},
    {"EquivalentFocalLengthMapping", "baseZoomRatio", F::Single, "f*", 1, 16, false},
    // SHDR and DCG/VS streaming.
    {"SHDRTypeMatching", "Mode", F::Rows, "iiiiii", 6, 6, true},
    {"EnableSensorDCGVS", "", F::AnyKey, "u*", 1, 0, false},
    // AEC warm start.
    {"WarmDolState", "Mode", F::Rows, "u*", 10, 10, true},
    // Video features.
    {"PhotoRealtimeEIS", "operationMode", F::Single, "u*", 1, 0, false},
    {"EISTypeMatching", "Mode", F::Rows, "us*", 2, 0, false},
    {"FlowControl", "isEnableFlowControl", F::Single, "b", 1, 1, false},
    {"TavroVideoWaterMarkParams", "videoHalWatermarkEnable", F::Single, "b", 1, 1, false},
    {"InsensorZoom", "supportProVideoIZoomCamIdMask", F::Single, "i", 1, 1, false},
    // AINR.
    {"3rdAppEnableVIULL", "isEnable3rdAppVIULL", F::Rows, "uu", 2, 2, true},
    {"3rdAppDisableVIULLMap", "", F::NamedSingleRow, "u", 1, 1, false},
    {"3rdAppEnableVIULLMapLumora", "", F::NamedRows, "xs", 2, 2, true},
    {"OemCommonCapbility", "disableVIULLForSpecificHDR", F::Single, "b", 1, 1, false},
    // Static tuning policy and AE information.
    {"AIAFTouch2track", "Mode", F::Rows, "uu", 2, 2, true},
    {"OEMFeature1ModeMatch", "Mode", F::Rows, "i*", 2, 8, true},
    {"OEMFeature2ModeMatch", "Mode", F::Rows, "i*", 2, 7, true},
    {"StarMode", "needOverrideAE", F::Single, "b", 1, 1, false},
    {"StarMode", "AEMode", F::Single, "i", 1, 1, false},
    {"StarMode", "sensitiviy", F::Single, "i", 1, 1, false},
    {"StarMode", "expTime", F::Single, "l", 1, 1, false},
    // Sensor mode selection.
    {"OemCamSeamlessSettingMap", "", F::SensorModeKey, "u", 1, 1, false},
    {"OtherCamSensorSettingMap", "", F::NamedRows, "iiiiii", 6, 6, true},
};

}  // namespace

const KeyRule* KeyRules(size_t* count) {
    *count = std::size(kRules);
    return kRules;
}

char TypeAt(const char* pattern, size_t position, size_t count) {
    const char* star = strchr(pattern, '*');
    const size_t length = strlen(pattern);
    if (star == nullptr) {
        return position < length ? pattern[position] : pattern[length - 1];
    }
    const size_t head = static_cast<size_t>(star - pattern);  // includes the repeated one
    const size_t tail = length - head - 1;
    if (count > tail && position >= count - tail && position < count) {
        return star[1 + (position - (count - tail))];
    }
    if (position < head) {
        return pattern[position];
    }
    return star[-1];
}

}  // namespace UilayerSim
