// Video features of a session: stabilisation (EIS), flow control, the video
// watermark and in-sensor zoom in the professional video modes.
#include <CameraHWConfiguration.h>
#include <system/camera_metadata.h>

#include <cstring>
#include <string>
#include <vector>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "common/VendorTags.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

// First byte of a session parameter, or false when the configuration has no
// such entry (or an empty one).
bool FindSessionByte(const camera3_stream_configuration* config, uint32_t tag, uint8_t& value) {
    if (config == nullptr || config->session_parameters == nullptr) {
        return false;
    }
    camera_metadata_ro_entry_t entry = {};
    if (find_camera_metadata_ro_entry(config->session_parameters, tag, &entry) != 0 ||
        entry.count == 0 || entry.data.u8 == nullptr) {
        return false;
    }
    value = entry.data.u8[0];
    return true;
}

}  // namespace

uint32_t StaticSupportCapabilities::ConfigEISMode(const camera3_stream_configuration* config) {
    uint8_t stabilizationMode = 0;
    if (FindSessionByte(config, ANDROID_CONTROL_VIDEO_STABILIZATION_MODE, stabilizationMode)) {
        m_videoStabilizationMode = stabilizationMode;
        UI_LOGI("videoStabilizationMode: %d", m_videoStabilizationMode);
        if (m_videoStabilizationMode != 0) {
            m_supportCaps.set(CapsVideoEIS);
        }
    }

    // Photo modes with real-time stabilisation are listed by the raw mode the
    // framework asked for; the capability is for multi-camera sessions only.
    if (config != nullptr) {
        std::vector<uint32_t> photoEisModes;
        ReadUIntList(EConfigKey::PhotoRealtimeEis, photoEisModes);
        for (uint32_t mode : photoEisModes) {
            if (mode == config->operation_mode) {
                UI_LOGI("operation mode: 0x%x  enablePhotoEIS %d", config->operation_mode, 1);
                if (m_numPhysicalCameras >= 2) {
                    m_supportCaps.set(CapsPhotoRealtimeEIS);
                }
                break;
            }
        }
    }

    // Video stabilisation per operation mode and sensor: a row names the mode
    // and the sensors (by the logical camera's sensor name) that support it.
    if (m_logicalCamId >= 0 && static_cast<uint32_t>(m_logicalCamId) < kMaxLogicalCameraIds) {
        constexpr _ConfigKey kEis = Key(EConfigKey::EisTypeMatching);
        const std::string& cameraName = m_sensorNameList[m_logicalCamId];
        const uint32_t rowCount = GetKeyCount(kEis.group);
        std::vector<char*> names;
        for (uint32_t i = 0; i < rowCount; ++i) {
            char key[32];
            if (!FormatIndexedKey(key, sizeof(key), kEis.key, i)) {
                continue;
            }
            const RowIndex indexText(i);
            const uint32_t valueCount = GetValuesCount(kEis.group, key);
            if (valueCount < 2) {
                continue;
            }
            uint32_t mode = 0;
            if (GetLocaleUIntegerListConfiguration(kEis.group, kEis.key, indexText.text, &mode,
                                                   1) != kConfigOk) {
                continue;
            }
            names.assign(valueCount, nullptr);
            if (GetLocaleStringListConfiguration(kEis.group, kEis.key, indexText.text, names.data(),
                                                 valueCount) != kConfigOk ||
                mode != m_operationMode) {
                continue;
            }
            for (uint32_t k = 1; k < valueCount; ++k) {
                if (names[k] != nullptr && cameraName == names[k]) {
                    m_supportCaps.set(CapsVideoEIS);
                    UI_LOGI("[OP_EXT] : operationmode:0x%x, cameraName:%s, VideoEisMode",
                            m_operationMode, cameraName.c_str());
                    break;
                }
            }
        }
    }

    // The professional video mode keeps stabilisation off unless the
    // application asked for it.
    if (CameraModeIs("pro_video_mode") && m_videoStabilizationMode == 0) {
        m_supportCaps.reset(CapsVideoEIS);
    }
    return kStatusOk;
}

uint32_t StaticSupportCapabilities::ConfigSupportCapsFlowControl(
    const camera3_stream_configuration*) {
    if (ReadConfigBool(EConfigKey::EnableFlowControl)) {
        m_supportCaps.set(CapsFlowControl);
        UI_LOGI("EnableFlowControl");
    }
    return kStatusOk;
}

uint32_t StaticSupportCapabilities::ConfigVideoWatermarkEnable(
    const camera3_stream_configuration* config) {
    // The application asks for the watermark; the HAL draws it only where the
    // device is configured to.
    uint8_t videoWatermarkEnable = 0;
    FindSessionByte(config, VendorTagId(kTagVideoWatermark), videoWatermarkEnable);
    const bool videoHalWatermarkEnable = ReadConfigBool(EConfigKey::VideoHalWatermark);
    UI_LOGI("videoWatermarkEnable: %d, videoHalWatermarkEnable: %d", videoWatermarkEnable,
            videoHalWatermarkEnable);
    if (videoWatermarkEnable != 0 && videoHalWatermarkEnable) {
        m_supportCaps.set(CapsVideoHalWatermark);
    }
    return kStatusOk;
}

uint32_t StaticSupportCapabilities::ConfigSupportCapsProVideoIZoom(
    const camera3_stream_configuration*) {
    char cameraMode[sizeof(m_cameraMode) + 1] = {};
    memcpy(cameraMode, m_cameraMode, sizeof(m_cameraMode));
    UI_LOGI("sessionParams.cameraMode %s, numPhysicalCameras %d", cameraMode, m_numPhysicalCameras);
    if (!IsProVideoCameraMode()) {
        return kStatusOk;
    }

    // Cameras listed in the mask keep in-sensor zoom; the others have it
    // disabled in the professional video modes.
    int32_t mask = 0;
    const _ConfigKey& maskKey = Key(EConfigKey::ProVideoIzoomCamIdMask);
    GetIntegerConfiguration(maskKey.group, maskKey.key, &mask);
    for (uint32_t k = 0; k < m_numPhysicalCameras; ++k) {
        const uint32_t physicalCamId = m_cameraInfo[k].physicalCamId;
        const bool inMask = ((static_cast<uint32_t>(mask) >> (physicalCamId & 31u)) & 1u) != 0;
        if (inMask) {
            m_cameraSupportCaps[k].reset(CapsDisableProVideoIZoom);
        } else {
            m_cameraSupportCaps[k].set(CapsDisableProVideoIZoom);
        }
        UI_LOGI("physical %d DisableProVideoIZoom %d", physicalCamId, inMask ? 0 : 1);
    }
    return kStatusOk;
}

}  // namespace Lumora
