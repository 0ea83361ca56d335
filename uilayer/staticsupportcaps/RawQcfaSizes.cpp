// Per-sensor remosaic settings keyed by sensor name: custom full RAW sizes, the
// 4x4 in-sensor zoom and 2x2 XCFA capabilities of the physical cameras, the
// XCFA switch zoom ratios, and the base zoom ratio of sensors whose
// equivalent focal length is remapped.
#include <CameraHWConfiguration.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/Status.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

constexpr _ConfigKey kCustomRawSizes = Key(EConfigKey::CustomRawFullSize);
constexpr _ConfigKey kEnable2x2Xcfa = Key(EConfigKey::Enable2x2Xcfa);
constexpr _ConfigKey kDisableMultiFrame = Key(EConfigKey::Xcfa4x4DisableMultiFrame);
constexpr _ConfigKey kSwitchZoomRatio = Key(EConfigKey::Xcfa2SwitchZoomRatio);
constexpr _ConfigKey kOverrideCameras = Key(EConfigKey::FocalLengthOverrideCameras);
constexpr _ConfigKey kBaseZoomRatios = Key(EConfigKey::FocalLengthBaseZoomRatios);
// Size of the key buffer for "Size[<sensor name>]".
constexpr size_t kRawSizeKeySize = 50;
// The base zoom ratios are read into a fixed table: longer lists are cut there.
constexpr uint32_t kMaxRemapSensors = ReadLimit(EConfigKey::FocalLengthOverrideCameras);

}  // namespace

void StaticSupportCapabilities::ConfigRAWQCFAFullSize() {
    if (GetKeyCount(kCustomRawSizes.group) == 0) {
        return;
    }
    for (const auto& sensor : m_sensorNameMap) {
        const std::string& name = sensor.second;
        // A name that does not fit the key buffer has no size: a cut key would
        // name another sensor.
        if (name.size() + 4 >= kRawSizeKeySize) {
            continue;
        }
        char key[kRawSizeKeySize];
        const int written = snprintf(key, sizeof(key), "%s[%s]", kCustomRawSizes.key, name.c_str());
        if (written < 0 || static_cast<size_t>(written) >= sizeof(key)) {
            continue;
        }
        const uint32_t count = GetValuesCount(kCustomRawSizes.group, key);
        if (count < 2) {
            continue;
        }
        std::vector<uint32_t> size(count, 0);
        if (GetUIntegerListConfiguration(kCustomRawSizes.group, key, size.data(), count) !=
            kConfigOk) {
            continue;
        }
        m_customRawFullSizes[sensor.first] = ODimension{size[0], size[1]};
        UI_LOGI("phycamid %d RawSizes %d:%d", sensor.first, size[0], size[1]);
    }
}

uint32_t StaticSupportCapabilities::ConfigSupportCaps2x2QCFA() {
    // The sensor name of a physical camera; null for an id without a name slot.
    auto sensorNameOf = [this](uint32_t physicalCamId) -> const char* {
        return physicalCamId < kMaxLogicalCameraIds ? m_sensorNameList[physicalCamId].c_str()
                                                    : nullptr;
    };

    std::vector<char*> izoomSensors;
    if (ReadStringList(EConfigKey::Izoom4x4Sensors, izoomSensors) == kConfigOk) {
        for (const char* listed : izoomSensors) {
            for (uint32_t j = 0; j < m_numPhysicalCameras; ++j) {
                const uint32_t physicalCamId = m_cameraInfo[j].physicalCamId;
                const char* name = sensorNameOf(physicalCamId);
                UI_LOGV(
                    "4x4IZOOMPSensorNameList compare phyIdx %u logicalCamId %u name %s vs cfg %s",
                    j, physicalCamId, name != nullptr ? name : "", listed);
                if (name != nullptr && strcmp(name, listed) == 0) {
                    m_cameraSupportCaps[j].set(Caps4x4Izoom);
                    UI_LOGI(
                        "4x4IZOOMPSensorNameList: Enable4x4Izoom phyIndex %u logicalCamId %u "
                        "sensor %s",
                        j, physicalCamId, name);
                }
            }
        }
    }

    bool enable2x2Xcfa = false;
    GetBooleanConfiguration(kEnable2x2Xcfa.group, kEnable2x2Xcfa.key, &enable2x2Xcfa);
    std::vector<char*> xcfaSensors;
    if (!enable2x2Xcfa || ReadStringList(EConfigKey::Xcfa2x2Sensors, xcfaSensors) != kConfigOk) {
        return kStatusOk;
    }
    for (const char* listed : xcfaSensors) {
        for (uint32_t j = 0; j < m_numPhysicalCameras; ++j) {
            const uint32_t physicalCamId = m_cameraInfo[j].physicalCamId;
            const char* name = sensorNameOf(physicalCamId);
            UI_LOGI("logicalCameraId %d, m_sensorNameList %s pSensorNameList %s", physicalCamId,
                    name != nullptr ? name : "", listed);
            if (name == nullptr || strcmp(name, listed) != 0) {
                continue;
            }
            m_cameraSupportCaps[j].set(Caps2x2XCFA);
            bool disableMultiFrame = false;
            GetBooleanConfiguration(kDisableMultiFrame.group, kDisableMultiFrame.key,
                                    &disableMultiFrame);
            if (disableMultiFrame) {
                m_cameraSupportCaps[j].set(Caps4x4XCFADisableMultiFrame);
            }
        }
    }
    return kStatusOk;
}

uint32_t StaticSupportCapabilities::ConfigXCFA2SwitchZoomRatio() {
    const uint32_t count = GetValuesCount(kSwitchZoomRatio.group, kSwitchZoomRatio.key);
    if (count == 0) {
        // Without the key the ratios of an earlier configuration stay.
        return kStatusOk;
    }
    // Values that do not read as floats stay 0; the request path bounds its
    // reads by the list's size.
    m_XCFA2SwitchZoomRatio.assign(count, 0.0f);
    GetFloatListConfiguration(kSwitchZoomRatio.group, kSwitchZoomRatio.key,
                              m_XCFA2SwitchZoomRatio.data(), count);
    return kStatusOk;
}

float StaticSupportCapabilities::ProcessRemapZoomRatio(char* sensorName, int skip) {
    m_baseZoomRatio = 1.0f;
    m_isNeedRemapZoomRatio = 0;
    // Only the system camera remaps its zoom ratio.
    if (skip != 0 || m_isSystemCamera == 0) {
        return 1.0f;
    }
    uint32_t count = GetValuesCount(kOverrideCameras.group, kOverrideCameras.key);
    if (count == 0) {
        return 1.0f;
    }
    // Sensors past the table of base ratios are not remapped.
    if (count > kMaxRemapSensors) {
        count = kMaxRemapSensors;
    }
    char* names[kMaxRemapSensors] = {};
    float baseRatios[kMaxRemapSensors] = {};
    if (GetStringListConfiguration(kOverrideCameras.group, kOverrideCameras.key, names, count) ==
            kConfigOk &&
        GetFloatListConfiguration(kBaseZoomRatios.group, kBaseZoomRatios.key, baseRatios, count) ==
            kConfigOk &&
        sensorName != nullptr) {
        for (uint32_t i = 0; i < count; ++i) {
            if (names[i] != nullptr && strcmp(names[i], sensorName) == 0) {
                m_isNeedRemapZoomRatio = 1;
                m_baseZoomRatio = baseRatios[i];
                break;
            }
        }
    }
    UI_LOGI("sensorname is %s, isNeedRemapZoomRatio is %d, basezoomratio is %f",
            sensorName != nullptr ? sensorName : "", m_isNeedRemapZoomRatio,
            static_cast<double>(m_baseZoomRatio));
    return m_baseZoomRatio;
}

}  // namespace Lumora
