// Session parameters: the framework's session metadata and the configuration
// groups that turn it into the session values (operation mode, frame rate,
// camera mode, warm-start lux, ...) and session caps. Also the third-app
// operation-mode override and the IsGenericCam flag written back for the
// sibling modules.
#include <CameraHWConfiguration.h>
#include <cutils/properties.h>
#include <system/camera_metadata.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "common/CapsConstants.h"
#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/MetadataRead.h"
#include "common/OperationModes.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "common/StreamPredicates.h"
#include "common/VendorTags.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

// Helpers below do part of ParseSessionParams's work; their log lines name that step.
constexpr const char* kSessionParamsStep = ConfigStepName(EConfigStep::ParseSessionParams);

// The client names are compared in buffers of this size (79 characters).
constexpr size_t kSessionNameSize = 80;
// The snapshot raw format text is copied up to this many bytes.
constexpr size_t kRawFormatTextSize = 128;

constexpr _ConfigKey kOverride = Key(EConfigKey::ThirdAppOperationModeOverride);
constexpr _ConfigKey kAePrecapture = Key(EConfigKey::DisableAePrecapture);
// Values of a precapture row: package, activity and any more.
constexpr uint32_t kAePrecaptureMinValues = MinValues(EConfigKey::DisableAePrecapture);
constexpr _ConfigKey kFrameInsert = Key(EConfigKey::VideoFrameInsert);
// Values of an override row: package, activity, from-mode, to-mode.
constexpr uint32_t kOverrideRowValues = MinValues(EConfigKey::ThirdAppOperationModeOverride);

const camera3_stream_t* StreamAt(const camera3_stream_configuration* config, uint32_t i) {
    return config->streams != nullptr ? config->streams[i] : nullptr;
}

bool IsRaw12(const camera3_stream& stream) {
    return stream.format == HAL_PIXEL_FORMAT_RAW12;
}

// Reads a hexadecimal operation mode ("8001" or "0x8001").
bool ParseHexMode(const char* text, uint32_t* mode) {
    unsigned int value = 0;
    if (text == nullptr || sscanf(text, "%x", &value) != 1) {
        return false;
    }
    *mode = value;
    return true;
}

// The 3D LUT switch of the pro video modes: the configuration first, the
// property over it when set.
bool Is3DLutEnabled() {
    bool enabled = false;
    bool configured = false;
    const _ConfigKey& lut = Key(EConfigKey::Enable3DLut);
    if (GetBooleanConfiguration(lut.group, lut.key, &configured) == kConfigOk) {
        enabled = configured;
        UI_LOGI_IN(kSessionParamsStep, "Enable3DLut %d", enabled);
    }
    const int32_t forced = property_get_int32("persist.vendor.camera.3dlut.enable", -1);
    if (forced != -1) {
        enabled = forced != 0;
    }
    return enabled;
}

// The MLFT node is excluded unless its group is absent or lists the mode; a
// list that cannot be read (or is empty) excludes it too.
bool IsMlftNodeExcluded(uint32_t operationMode) {
    if (GetKeyCount(Key(EConfigKey::VideoMlftOperationMode).group) == 0) {
        return false;
    }
    return !UIntListContains(EConfigKey::VideoMlftOperationMode, operationMode);
}

void OverrideThirdAppOperationMode(camera3_stream_configuration* config,
                                   const camera_metadata_t* meta) {
    char package[kSessionNameSize] = {};
    char activity[kSessionNameSize] = {};
    CopySessionMetadataString(meta, VendorTagId(kTagPackageName), package);
    CopySessionMetadataString(meta, VendorTagId(kTagActivityName), activity);

    // Rows are package, activity, from-mode, to-mode; a first row of any other
    // length switches the whole group off. "-1" stands for any package or
    // activity. The first matching row wins.
    const uint32_t rows = GetKeyCount(kOverride.group);
    if (rows == 0 || GetValuesCount(kOverride.group, kOverride.firstRow) != kOverrideRowValues) {
        return;
    }
    for (uint32_t i = 0; i < rows; ++i) {
        const RowIndex index(i);
        char* values[kOverrideRowValues] = {};
        if (GetLocaleStringListConfiguration(kOverride.group, kOverride.key, index.text, values,
                                             kOverrideRowValues) != kConfigOk ||
            values[0] == nullptr || values[1] == nullptr) {
            continue;
        }
        uint32_t fromMode = 0;
        uint32_t toMode = 0;
        if (!ParseHexMode(values[2], &fromMode) || !ParseHexMode(values[3], &toMode)) {
            continue;
        }
        const bool packageMatches = strcmp(values[0], "-1") == 0 || strcmp(values[0], package) == 0;
        const bool activityMatches =
            strcmp(values[1], "-1") == 0 || strcmp(values[1], activity) == 0;
        if (packageMatches && activityMatches && fromMode == config->operation_mode) {
            UI_LOGI_IN(
                kSessionParamsStep,
                "Override third app operation mode in staticcaps: packageName %s, activityName "
                "%s, 0x%x -> 0x%x",
                values[0], values[1], fromMode, toMode);
            config->operation_mode = toMode;
            return;
        }
    }
}

bool IsAePrecaptureDisabled(const char* package, const char* activity) {
    if (package == nullptr || activity == nullptr || package[0] == '\0' || activity[0] == '\0' ||
        HasGroupConfiguration(kAePrecapture.group) <= 0) {
        return false;
    }
    // Exact package and activity: this list has no wildcard.
    const uint32_t rows = GetKeyCount(kAePrecapture.group);
    for (uint32_t i = 0; i < rows; ++i) {
        char key[32];
        snprintf(key, sizeof(key), "%s[%u]", kAePrecapture.key, i);
        const RowIndex index(i);
        const uint32_t count = GetValuesCount(kAePrecapture.group, key);
        if (count < kAePrecaptureMinValues) {
            continue;
        }
        std::vector<char*> values(count, nullptr);
        if (GetLocaleStringListConfiguration(kAePrecapture.group, kAePrecapture.key, index.text,
                                             values.data(), count) != kConfigOk ||
            values[0] == nullptr || values[1] == nullptr || values[0][0] == '\0' ||
            values[1][0] == '\0') {
            continue;
        }
        if (strcmp(values[0], package) == 0 && strcmp(values[1], activity) == 0) {
            return true;
        }
    }
    return false;
}

void WriteGenericCamFlag(camera_metadata_t* meta, bool isGeneric) {
    // The debug property decides only when it is set at all.
    char value[PROPERTY_VALUE_MAX] = {};
    if (property_get("vendor.debug.camera.policy.genericCam", value, "") > 0) {
        isGeneric = property_get_bool("vendor.debug.camera.policy.genericCam", isGeneric);
    }
    if (meta == nullptr) {
        // Nowhere to write it: the configuration came without session parameters.
        return;
    }
    const uint32_t tag = VendorTagId(kTagIsGenericCam);
    const uint8_t flag = isGeneric ? 1 : 0;
    camera_metadata_entry_t entry = {};
    int status = 0;
    if (find_camera_metadata_entry(meta, tag, &entry) != 0) {
        UI_LOGE_IN(kSessionParamsStep, "Can't find vendor tag IsGenericCam");
        status = add_camera_metadata_entry(meta, tag, &flag, 1);
    } else {
        status = update_camera_metadata_entry(meta, entry.index, &flag, 1, nullptr);
    }
    if (status != 0) {
        UI_LOGE_IN(kSessionParamsStep, "tagId: %u, error status: %d", tag, status);
    }
}

bool MatchVideoFrameInsert(const camera3_stream_configuration* config) {
    const uint32_t rows = GetKeyCount(kFrameInsert.group);
    const uint32_t rowLength = GetValuesCount(kFrameInsert.group, kFrameInsert.firstRow);
    if (rows == 0 || rowLength < 2) {
        return false;
    }
    // Rows are operation mode (unmasked) and video width; the rest is not read here.
    std::vector<uint32_t> row(rowLength);
    for (uint32_t s = 0; s < config->num_streams; ++s) {
        const camera3_stream_t* stream = StreamAt(config, s);
        if (stream == nullptr || !IsVideoStream(*stream)) {
            continue;
        }
        for (uint32_t i = 0; i < rows; ++i) {
            const RowIndex index(i);
            // A row shorter than two values is malformed and matches nothing.
            if (GetLocaleKeyValuesCount(kFrameInsert.group, kFrameInsert.key, index.text) < 2) {
                continue;
            }
            if (GetLocaleUIntegerListConfiguration(kFrameInsert.group, kFrameInsert.key, index.text,
                                                   row.data(), rowLength) == kConfigOk &&
                row[0] == config->operation_mode && row[1] == stream->width) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

void CopySessionMetadataString(const camera_metadata_t* meta, uint32_t tag, char* out) {
    camera_metadata_ro_entry_t entry = {};
    if (out != nullptr && FindTypedEntry(meta, tag, TYPE_BYTE, 0, &entry)) {
        CopyEntryText(entry, out, kSessionNameSize);
    }
}

uint32_t StaticSupportCapabilities::ParseSessionParams(const camera3_stream_configuration* config) {
    uint32_t result = kStatusOk;
    m_cameraIsFromMainMenu = 0;

    camera_metadata_t* meta = config != nullptr ? config->session_parameters : nullptr;
    if (meta == nullptr) {
        UI_LOGE("Invalid Args");
        result = kStatusInvalidArgument;
    } else {
        // The HAL's configuration object is mutable (IuiLayer takes it
        // non-const): a listed third-app client gets its operation mode
        // rewritten in place, and every later step and module sees the rewritten one.
        auto* mutableConfig = const_cast<camera3_stream_configuration*>(config);
        OverrideThirdAppOperationMode(mutableConfig, meta);
        ParseSessionMetadata(config, meta);
    }

    // Operation-mode lists compare the unmasked mode of the configuration.
    if (config != nullptr) {
        const uint32_t rawMode = config->operation_mode;
        if (UIntListContains(EConfigKey::EnableSkipRawStream, rawMode)) {
            UI_LOGI("operation mode: 0x%x  enableSkipRawStream %d", rawMode, 1);
            if (m_cameraIsFromMainMenu != 0) {
                m_supportCaps.set(CapsSkipRawStream);
            }
        }
        if (UIntListContains(EConfigKey::EnableReturnPrivateChiPhyMetaEarly, rawMode)) {
            m_supportCaps.set(CapsReturnPrivateChiPhyMetaEarly);
        }
    }

    const bool mlftExcluded = IsMlftNodeExcluded(m_operationMode);
    if (!mlftExcluded && !CameraModeIs("pro_video_log_mode") && m_numPhysicalCameras != 1) {
        m_supportCaps.set(CapsVideoMLFT);
    }

    SetFpsCaps(m_supportCaps, m_maxFps);

    m_supportCaps.reset(CapsOpMode80BE8009);
    if (IsProVideoFamilyMode(m_operationMode)) {
        m_supportCaps.set(CapsOpMode80BE8009);
        m_supportCaps.set(CapsProVideoFamily);
    }

    // The client policy rewrites the stream flags of its streams.
    InitPackageName(const_cast<camera3_stream_configuration*>(config));

    m_disableAePrecapture =
        IsAePrecaptureDisabled(m_clientPackageName.data(), m_clientActivityName.data()) ? 1 : 0;

    const bool hasVideoStream = HasStream(config, IsVideoStream);
    if (hasVideoStream) {
        UI_LOGI("Video Stream Existed, Can Not Register MultiSpectral Sensor");
    }
    m_supportCaps.reset(CapsMultiSpectral);
    if (m_isSystemCamera != 0) {
        if (!hasVideoStream) {
            m_supportCaps.set(CapsMultiSpectral);
        }
        m_supportCaps.set(CapsSystemCamera);
    }

    if (IsProVideoCameraMode() || CameraModeIs("video_mode") ||
        CameraModeIs("telephoto_video_mode")) {
        m_supportCaps.set(CapsVideoCameraMode);
    }

    if (ReadConfigBool(EConfigKey::SupportSnapshotLockMaster)) {
        m_supportCaps.set(CapsSnapshotLockMaster);
        UI_LOGI("SupportSnaphotLockMaster is enabled");
    }

    if (CameraModeIs("pro_video_log_mode")) {
        m_supportCaps.set(CapsCameraModeProVideoLog);
    } else if (CameraModeIs("pro_video_mode")) {
        m_supportCaps.set(CapsCameraModeProVideo);
    }

    if (m_isSystemCamera == 1 && m_isCameraUint == 0) {
        m_supportCaps.set(CapsSystemCameraApp);
    }

    WriteGenericCamFlag(meta,
                        (m_isSystemCamera == 0 && m_isEngineerCamera == 0) || m_isCameraUint != 0);

    if (mlftExcluded) {
        m_supportCaps.set(CapsMLFTNodeExcluded);
    } else {
        m_supportCaps.reset(CapsMLFTNodeExcluded);
    }

    if (m_isEngineerCamera != 0) {
        bool alwaysOn = false;
        const _ConfigKey& key = Key(EConfigKey::EngineerTwoCameraAlwaysOn);
        const int status = GetBooleanConfiguration(key.group, key.key, &alwaysOn);
        result = static_cast<uint32_t>(status);
        if (status == kConfigOk && alwaysOn) {
            m_supportCaps.set(CapsTwoCameraAlwaysOn);
            UI_LOGI("engineer camera always on");
        }
    }

    if (hasVideoStream) {
        m_supportCaps.set(CapsVideoStream);
    }

    const bool frameInsert =
        config != nullptr && !IsProVideoCameraMode() && MatchVideoFrameInsert(config);
    if (frameInsert) {
        m_supportCaps.set(CapsVideoFrameInsert);
    }
    UI_LOGI("VideoFrameInsertSupport %d", frameInsert ? 1 : 0);
    return result;
}

void StaticSupportCapabilities::ParseSessionMetadata(const camera3_stream_configuration* config,
                                                     const camera_metadata_t* meta) {
    camera_metadata_ro_entry_t entry = {};

    m_operationMode = config->operation_mode & kOperationModeMask;
    if (m_operationMode == kOpModeTeleConverter) {
        m_supportCaps.set(CapsEquivalentFocallengthOverride);
        m_supportCaps.set(CapsViewFinderUseAsdFullFovPath);
        UI_LOGI_IN(
            kSessionParamsStep,
            "StreamConfigCapModeTeleConverter mode: EnableEquivalentFocallengthOverride enabled");
        UI_LOGI_IN(kSessionParamsStep,
                   "EnableViewFinderUseAsdFullFovPath for StreamConfigCapModeTeleConverter");
    } else {
        m_supportCaps.reset(CapsEquivalentFocallengthOverride);
        m_supportCaps.reset(CapsViewFinderUseAsdFullFovPath);
    }

    if (FindTypedEntry(meta, VendorTagId(kTagAICompositionEnable), TYPE_BYTE, 1, &entry)) {
        m_isAICompositionEnable = entry.data.u8[0] == 1 ? 1 : 0;
        UI_LOGI_IN(kSessionParamsStep, "isAICompositionEnable: %d", m_isAICompositionEnable);
    }

    if (FindTypedEntry(meta, ANDROID_CONTROL_AE_TARGET_FPS_RANGE, TYPE_INT32, 2, &entry)) {
        m_minFps = entry.data.i32[0];
        m_maxFps = entry.data.i32[1];
        UI_LOGI_IN(kSessionParamsStep, "fps: %d %d", m_minFps, m_maxFps);
    }

    if (FindTypedEntry(meta, VendorTagId(kTagCameraMode), TYPE_BYTE, 0, &entry)) {
        const bool lut3d = Is3DLutEnabled();
        // At most 128 bytes of the text; the buffer keeps room for the terminator.
        CopyEntryText(entry, m_cameraMode, sizeof(m_cameraMode));
        UI_LOGI_IN(kSessionParamsStep, "cameraMode %s", m_cameraMode);
        ApplyCameraMode(lut3d);
    }

    // RAW12 is the snapshot raw format unless the client names another one.
    if (HasStream(config, IsRaw12)) {
        if (!FindTypedEntry(meta, VendorTagId(kTagSnapshotRawFormat), TYPE_BYTE, 0, &entry)) {
            m_supportCaps.set(CapsSnapshotRaw12);
            UI_LOGI_IN(kSessionParamsStep, "set RAW12 SnapshotRawFormat");
        } else {
            char format[kRawFormatTextSize + 1];
            CopyEntryText(entry, format, sizeof(format));
            UI_LOGI_IN(kSessionParamsStep, "SnapshotRawFormat %s, %s", format, format);
            if (strstr(format, "RAW12") != nullptr) {
                m_supportCaps.set(CapsSnapshotRaw12);
            }
        }
    }

    if (IsSatFusionMode(m_operationMode) && m_numPhysicalCameras >= 2) {
        m_supportCaps.set(CapsSatFusion);
        UI_LOGI_IN(kSessionParamsStep, "Sat fusion is supported!");
    }

    if (FindTypedEntry(meta, VendorTagId(kTagWarmStartLux), TYPE_FLOAT, 1, &entry)) {
        m_warmStartLux = entry.data.f[0];
    }
    UI_LOGI_IN(kSessionParamsStep, "warmStartLux: %f", static_cast<double>(m_warmStartLux));
    if (FindTypedEntry(meta, VendorTagId(kTagMipiSelectMode), TYPE_BYTE, 1, &entry)) {
        m_mipiSelectMode = entry.data.u8[0];
        UI_LOGI_IN(kSessionParamsStep, "engineercamera mipiSelectMode: %d",
                   static_cast<int8_t>(m_mipiSelectMode));
    }
    if (FindTypedEntry(meta, VendorTagId(kTagCameraFromMainMenu), TYPE_BYTE, 1, &entry)) {
        m_cameraIsFromMainMenu = entry.data.u8[0];
    }
}

void StaticSupportCapabilities::ApplyCameraMode(bool lut3d) {
    const bool proVideo = CameraModeIs("pro_video_mode");
    const bool proVideoLog = CameraModeIs("pro_video_log_mode");
    if (proVideo || proVideoLog) {
        m_supportCaps.set(CapsProVideo);
        if (proVideoLog) {
            m_supportCaps.set(CapsProVideoLog);
        }
        m_supportCaps.set(CapsProVideoFamily);
        if (lut3d) {
            m_supportCaps.set(Caps3DLut);
        }
        if (m_maxFps == 120) {
            m_supportCaps.set(CapsVideo120Fps);
        }
        // The stabilisation mode is the one the previous configuration chose:
        // it is only decided later in this one.
        if (m_videoStabilizationMode == 0) {
            m_supportCaps.reset(CapsVideoEIS);
        }
    } else if (CameraModeIs("super_text_mode") || CameraModeIs("super_text_mode_v2")) {
        m_supportCaps.set(CapsSuperText);
    } else if (CameraModeIs("video_mode")) {
        if (m_maxFps == 120) {
            m_supportCaps.set(CapsVideoEIS);
            m_supportCaps.set(CapsVideo120Fps);
        }
    } else if (CameraModeIs("fine_food_mode")) {
        m_supportCaps.set(CapsFineFood);
    } else if (CameraModeIs("gr_mode")) {
        m_supportCaps.set(CapsGrMode);
    }
}

}  // namespace Lumora
