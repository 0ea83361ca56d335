// The vendor tags the library reads or writes, by their index in the sibling
// camera layer's vendor tag enumeration (the id is GetVendorTagId(index)), with
// the element type the sibling gives them and where the library uses them.
// This is the one definition of every tag index: the library, the host
// stand-ins, the tools, tests, fuzzers and benchmarks all take it from here.
#ifndef LUMORA_VENDOR_TAGS_H
#define LUMORA_VENDOR_TAGS_H

#include <system/camera_metadata.h>

#include <cstddef>
#include <cstdint>

namespace Lumora {

// Request settings.
constexpr uint32_t kTagApsFeatureType = 0;
constexpr uint32_t kTagIsFromExtension = 19;
constexpr uint32_t kTagBracketMode = 35;
constexpr uint32_t kTagFaceBeautyLevel = 36;
constexpr uint32_t kTagLongExposureSceneType = 37;
constexpr uint32_t kTagAsdSceneValue = 38;
constexpr uint32_t kTagSensorModeList = 49;
constexpr uint32_t kTagPipSensor = 159;
constexpr uint32_t kTagAecFaceNum = 535;
constexpr uint32_t kTagAecLuxIndex = 544;
// Static characteristics: the sibling's per-camera record.
constexpr uint32_t kTagCameraInfo = 5;
// Session parameters.
constexpr uint32_t kTagPackageName = 34;
constexpr uint32_t kTagCameraUnitPackage = 71;
constexpr uint32_t kTagIsGenericCam = 72;
constexpr uint32_t kTagWarmStartLux = 85;
constexpr uint32_t kTagActivityName = 105;
constexpr uint32_t kTagCameraFromMainMenu = 109;
constexpr uint32_t kTagVideoWatermark = 147;
constexpr uint32_t kTagCameraMode = 160;
constexpr uint32_t kTagSnapshotRawFormat = 161;
constexpr uint32_t kTagAICompositionEnable = 165;
constexpr uint32_t kTagMipiSelectMode = 169;
constexpr uint32_t kTagSupportedAINRType = 212;
// Results.
constexpr uint32_t kTagExposureCountList = 156;
constexpr uint32_t kTagMlftParameters = 175;

// Where the library meets a tag (bit flags).
enum VendorTagUse : uint8_t {
    kTagInCharacteristics = 1,  // read from a camera's static characteristics
    kTagInSessionParams = 2,    // read from the session parameters
    kTagWrittenToSession = 4,   // written back into the session parameters
    kTagInRequests = 8,         // read from request settings
    kTagInResults = 16,         // read from capture results
};

struct _VendorTagInfo {
    uint32_t index;
    const char* name;  // the sibling's name of the tag
    uint8_t type;      // TYPE_BYTE, TYPE_INT32 or TYPE_FLOAT
    uint8_t use;       // VendorTagUse flags
};

// Sorted by index.
constexpr _VendorTagInfo kVendorTags[] = {
    {kTagApsFeatureType, "ApsFeatureType", TYPE_INT32, kTagInRequests},
    {kTagCameraInfo, "CameraInfo", TYPE_BYTE, kTagInCharacteristics},
    {kTagIsFromExtension, "IsFromExtension", TYPE_INT32, kTagInRequests},
    {kTagPackageName, "com.tavro.packageName", TYPE_BYTE, kTagInSessionParams},
    {kTagBracketMode, "BracketMode", TYPE_INT32, kTagInRequests},
    {kTagFaceBeautyLevel, "FaceBeautyLevel", TYPE_INT32, kTagInRequests},
    {kTagLongExposureSceneType, "LongExposureSceneType", TYPE_INT32, kTagInRequests},
    {kTagAsdSceneValue, "AsdSceneValue", TYPE_INT32, kTagInRequests},
    {kTagSensorModeList, "SensorModeList", TYPE_INT32, kTagInRequests},
    {kTagCameraUnitPackage, "com.tavro.is.sdk.camera.package", TYPE_BYTE, kTagInSessionParams},
    {kTagIsGenericCam, "IsGenericCam", TYPE_BYTE, kTagWrittenToSession},
    {kTagWarmStartLux, "WarmStartLux", TYPE_FLOAT, kTagInSessionParams},
    {kTagActivityName, "com.tavro.activityName", TYPE_BYTE, kTagInSessionParams},
    {kTagCameraFromMainMenu, "CameraFromMainMenu", TYPE_BYTE, kTagInSessionParams},
    {kTagVideoWatermark, "VideoWatermark", TYPE_BYTE, kTagInSessionParams},
    {kTagExposureCountList, "ExposureCountList", TYPE_BYTE, kTagInResults},
    {kTagPipSensor, "PipSensor", TYPE_INT32, kTagInRequests},
    {kTagCameraMode, "CameraMode", TYPE_BYTE, kTagInSessionParams},
    {kTagSnapshotRawFormat, "SnapshotRawFormat", TYPE_BYTE, kTagInSessionParams},
    {kTagAICompositionEnable, "AICompositionEnable", TYPE_BYTE, kTagInSessionParams},
    {kTagMipiSelectMode, "MipiSelectMode", TYPE_BYTE, kTagInSessionParams},
    {kTagMlftParameters, "MlftParameters", TYPE_BYTE, kTagInResults},
    {kTagSupportedAINRType, "SupportedAINRType", TYPE_INT32,
     kTagInSessionParams | kTagWrittenToSession},
    {kTagAecFaceNum, "AecFaceNum", TYPE_INT32, kTagInRequests},
    {kTagAecLuxIndex, "AecLuxIndex", TYPE_FLOAT, kTagInRequests},
};

constexpr size_t kVendorTagCount = sizeof(kVendorTags) / sizeof(kVendorTags[0]);

// The table entry of `index`; null for an index the library does not use.
constexpr const _VendorTagInfo* FindVendorTag(uint32_t index) {
    for (const _VendorTagInfo& tag : kVendorTags) {
        if (tag.index == index) {
            return &tag;
        }
    }
    return nullptr;
}

// Element type of a vendor tag index: the table's, and bytes for any other
// index (texts, records and flags are bytes in the sibling's enumeration).
constexpr uint8_t VendorTagType(uint32_t index) {
    const _VendorTagInfo* tag = FindVendorTag(index);
    return tag != nullptr ? tag->type : static_cast<uint8_t>(TYPE_BYTE);
}

}  // namespace Lumora

#endif  // LUMORA_VENDOR_TAGS_H
