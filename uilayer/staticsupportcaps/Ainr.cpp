// AI noise reduction in low-light video (VIULL) for client apps other than the
// system camera: decided per session and handed to the pipeline as the
// SupportedAINRType session parameter.
#include <CameraHWConfiguration.h>
#include <system/camera_metadata.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "common/StreamPredicates.h"
#include "common/VendorTags.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

constexpr int32_t kAinrTypeNone = 0;
constexpr int32_t kAinrTypeVIULL = 2;

constexpr _ConfigKey kEnable = Key(EConfigKey::ViullEnable);
constexpr const char* kDisableMapGroup = Key(EConfigKey::ViullDisableMap).group;
constexpr const char* kEnableMapGroup = Key(EConfigKey::ViullEnableMap).group;

// Hexadecimal camera mask text as "%x" reads it: an optional 0x, junk gives 0.
uint32_t ParseHexMask(const char* text) {
    const int savedErrno = errno;
    const unsigned long value = strtoul(text, nullptr, 16);
    errno = savedErrno;
    return static_cast<uint32_t>(value);
}

// Enable for every client on the cameras of a mask: rows of (enable, mask).
// Rows are logged on behalf of `step`.
bool IsEnabledForAllApps(uint32_t cameraBit, const char* step) {
    const uint32_t keyCount = GetKeyCount(kEnable.group);
    if (keyCount == 0 || GetValuesCount(kEnable.group, kEnable.firstRow) != 2) {
        return false;
    }
    for (uint32_t i = 0; i < keyCount; ++i) {
        const RowIndex indexText(i);
        // A row with a single value leaves the mask at 0: no camera.
        uint32_t values[2] = {0, 0};
        if (GetLocaleUIntegerListConfiguration(kEnable.group, kEnable.key, indexText.text, values,
                                               2) != kConfigOk) {
            continue;
        }
        UI_LOGI_IN(step, "key: 0x%x, sensorMask: 0x%x", values[1], cameraBit);
        if ((values[1] & cameraBit) != 0 && values[0] == 1) {
            return true;
        }
    }
    return false;
}

}  // namespace

uint32_t StaticSupportCapabilities::ConfigSupportCapsAINR(
    const camera3_stream_configuration* config) {
    // The system camera (and the engineer camera) rule VIULL through their own
    // settings; only camera unit clients of them go through the app policy.
    if ((m_isSystemCamera != 0 || m_isEngineerCamera != 0) && m_isCameraUint == 0) {
        return kStatusOk;
    }

    const char* packageName = m_clientPackageName.data();
    const char* activityName = m_clientActivityName.data();
    // Camera masks have 32 bits; the logical camera id picks one of them.
    const uint32_t cameraBit = 1u << (static_cast<uint32_t>(m_logicalCamId) & 31u);

    // Later rules override earlier ones: a package and activity entry beats a
    // package disable, which beats the general enable.
    bool enableVIULL = IsEnabledForAllApps(cameraBit, __func__);

    const uint32_t disableKeyCount = GetKeyCount(kDisableMapGroup);
    const uint32_t disableEntryCount = GetLocaleKeyCount(kDisableMapGroup, packageName);
    UI_LOGI("VIULL m_clientPackageName: %s, logicalCameraId: %d, keyCount: %d, valueCount: %d",
            packageName, m_logicalCamId, disableKeyCount, disableEntryCount);
    if (disableKeyCount > 0 && disableEntryCount == 1) {
        for (uint32_t i = 0; i < disableKeyCount; ++i) {
            const RowIndex indexText(i);
            uint32_t mask = 0;
            if (GetLocaleUIntegerListConfiguration(kDisableMapGroup, packageName, indexText.text,
                                                   &mask, 1) != kConfigOk) {
                continue;
            }
            UI_LOGI("key: 0x%x, sensorMask: 0x%x", mask, cameraBit);
            if ((mask & cameraBit) != 0) {
                enableVIULL = false;
                break;
            }
        }
    }

    // The package name holds at most 80 characters, so its first key fits.
    char firstKey[kClientNameSize + 8];
    snprintf(firstKey, sizeof(firstKey), "%s[0]", packageName);
    const uint32_t enableKeyCount = GetKeyCount(kEnableMapGroup);
    const uint32_t enableValueCount = GetValuesCount(kEnableMapGroup, firstKey);
    UI_LOGI("VIULL m_clientPackageName: %s, logicalCameraId: %d, keyCount: %d, valueCount: %d",
            packageName, m_logicalCamId, enableKeyCount, enableValueCount);
    if (enableKeyCount > 0 && enableValueCount == 2) {
        for (uint32_t i = 0; i < enableKeyCount; ++i) {
            const RowIndex indexText(i);
            // A row with only the mask names no activity and cannot match.
            char* values[2] = {nullptr, nullptr};
            if (GetLocaleStringListConfiguration(kEnableMapGroup, packageName, indexText.text,
                                                 values, 2) != kConfigOk ||
                values[0] == nullptr) {
                continue;
            }
            const uint32_t mask = ParseHexMask(values[0]);
            UI_LOGI("key: 0x%x, sensorMask: 0x%x", mask, cameraBit);
            if ((mask & cameraBit) != 0 && values[1] != nullptr &&
                strcmp(values[1], activityName) == 0) {
                enableVIULL = true;
                break;
            }
        }
    }

    // HDR video streams exclude VIULL on devices that say so, whoever asked.
    const bool disableForHdr = ReadConfigBool(EConfigKey::DisableViullForHdr);
    int32_t supportedAinrType = kAinrTypeNone;
    if (disableForHdr && HasStream(config, IsHdrVideoStream)) {
        enableVIULL = false;
    } else if (enableVIULL) {
        supportedAinrType = kAinrTypeVIULL;
        m_supportCaps.set(CapsVIULL);
    }
    UI_LOGI("supportedAinrType: %d, isEnableVIULL: %d, disableVIULLForSpecificHDR: %d",
            supportedAinrType, enableVIULL, disableForHdr);

    if (config == nullptr) {
        UI_LOGE("pStreamConfigsAPI Invalid Args");
        return kStatusInvalidArgument;
    }
    camera_metadata_t* sessionParams = config->session_parameters;
    if (sessionParams == nullptr) {
        UI_LOGE("sessionParams Invalid Args");
        return kStatusInvalidArgument;
    }
    const uint32_t tagId = VendorTagId(kTagSupportedAINRType);
    camera_metadata_entry_t entry = {};
    int status = 0;
    if (find_camera_metadata_entry(sessionParams, tagId, &entry) != 0) {
        UI_LOGE("Can't find vendor tag SupportedAINRType");
        status = add_camera_metadata_entry(sessionParams, tagId, &supportedAinrType, 1);
    } else {
        status = update_camera_metadata_entry(sessionParams, entry.index, &supportedAinrType, 1,
                                              nullptr);
        UI_LOGI("update_camera_metadata_entry supportedAinrType: %d", supportedAinrType);
    }
    if (status != 0) {
        UI_LOGE("tagId: %u, error status: %d", tagId, status);
    }
    return kStatusOk;
}

}  // namespace Lumora
