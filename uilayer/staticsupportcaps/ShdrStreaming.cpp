// Staggered HDR (SHDR) and DCG/VS streaming: which cameras run their sensor
// in an HDR readout for this session.
#include <CameraHWConfiguration.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/Status.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

constexpr _ConfigKey kShdr = Key(EConfigKey::ShdrTypeMatching);
constexpr const char* kDcgVsGroup = Key(EConfigKey::SensorDcgVs).group;

// Values of one SHDR entry.
constexpr uint32_t kShdrEntrySize = MinValues(EConfigKey::ShdrTypeMatching);
enum ShdrValue : uint32_t {
    kShdrCameraId = 0,
    kShdrOperationMode = 1,
    kShdrPhysicalMask = 2,
    kShdrOption = 3,
    kShdrType = 4,
    kShdrMaxFps = 5,
};

// Adds one SHDR entry to a camera's caps. A type-2 entry takes the alternative
// path only when the session snapshots RAW12.
void ApplyShdrEntry(_CapsBitset& caps, int32_t option, int32_t type, bool snapshotRaw12) {
    caps.set(CapsSHDR);
    caps.set(CapsSHDRPath);
    if (type == 1) {
        caps.set(CapsSHDRType1);
    }
    if (type == 2 && snapshotRaw12) {
        caps.reset(CapsSHDRPath);
        caps.set(CapsSHDRAltPath);
        caps.set(CapsSHDRType2);
    }
    if (option == 1) {
        caps.set(CapsSHDROption);
    }
}

}  // namespace

uint32_t StaticSupportCapabilities::ConfigSupportCapsSHDR() {
    uint32_t valueCount = 0;
    const uint32_t keyCount = ReadModeRows(__func__, EConfigKey::ShdrTypeMatching, &valueCount);
    if (keyCount == 0) {
        return kStatusOk;
    }

    // At least a whole entry, so that every value below can be read.
    std::vector<int32_t> values(std::max(valueCount, kShdrEntrySize), 0);
    int status = 0;
    for (uint32_t i = 0; i < keyCount; ++i) {
        const RowIndex indexText(i);
        std::fill(values.begin(), values.end(), 0);
        status = GetLocaleIntegerListConfiguration(kShdr.group, kShdr.key, indexText.text,
                                                   values.data(), valueCount);
        if (status != kConfigOk) {
            continue;
        }
        // An entry shorter than six values leaves the missing ones absent; an
        // entry without its camera, mode, mask, type or fps cannot be matched,
        // so it is skipped rather than guessed.
        if (valueCount < kShdrEntrySize ||
            GetLocaleKeyValuesCount(kShdr.group, kShdr.key, indexText.text) < kShdrEntrySize) {
            continue;
        }
        if (UI_LOG_INFO_ON()) {
            UI_LOGI("logical capsFlag %s, cfg %x %d %d %d %d, frameworkId %d, operationMode %x",
                    m_supportCaps.to_string().c_str(), values[kShdrOperationMode],
                    values[kShdrCameraId], values[kShdrPhysicalMask], values[kShdrType],
                    values[kShdrMaxFps], m_frameworkId, m_operationMode);
        }
        const bool applies = values[kShdrCameraId] == static_cast<int32_t>(m_frameworkId) &&
                             static_cast<uint32_t>(values[kShdrOperationMode]) == m_operationMode &&
                             RowValueMatches(values[kShdrMaxFps], m_maxFps);
        if (!applies) {
            continue;
        }

        // Every applying entry adds its bits: entries for different physical
        // cameras or types combine.
        const bool snapshotRaw12 = m_supportCaps.test(CapsSnapshotRaw12);
        const int32_t option = values[kShdrOption];
        const int32_t type = values[kShdrType];
        const uint32_t physicalMask = static_cast<uint32_t>(values[kShdrPhysicalMask]);
        ApplyShdrEntry(m_supportCaps, option, type, snapshotRaw12);

        UI_LOGV("Dump m_supportCaps.frameworkId %d m_supportCaps.logicalCamId %d", m_frameworkId,
                m_logicalCamId);
        for (uint32_t j = 0; j < m_numPhysicalCameras; ++j) {
            const LumoraCameraEntry& camera = m_cameraInfo[j];
            UI_LOGV(
                "Dump m_supportCaps %d / %d, logicalCamId %d frameworkId %d physicalCamId %d "
                "isPrimary %d",
                j, m_numPhysicalCameras, camera.logicalCamId, camera.frameworkId,
                camera.physicalCamId, camera.isPrimary);
            _CapsBitset& caps = m_cameraSupportCaps[j];
            if (((physicalMask >> (camera.physicalCamId & 31u)) & 1u) != 0) {
                ApplyShdrEntry(caps, option, type, snapshotRaw12);
            } else {
                // Cameras outside the mask stream on the alternative path.
                caps.set(CapsSHDRAltPath);
            }
            if (UI_LOG_INFO_ON()) {
                UI_LOGI("physical %d capsFlag %s", camera.physicalCamId, caps.to_string().c_str());
            }
        }

        if (UI_LOG_INFO_ON()) {
            UI_LOGI("logical capsFlag %s, cfg %x %d %d %d %d, frameworkId %d, operationMode %x",
                    m_supportCaps.to_string().c_str(), values[kShdrOperationMode],
                    values[kShdrCameraId], values[kShdrPhysicalMask], values[kShdrType],
                    values[kShdrMaxFps], m_frameworkId, m_operationMode);
        }
    }
    return static_cast<uint32_t>(status);
}

uint32_t StaticSupportCapabilities::ConfigureSensorDCGVSStreamingByCaps() {
    if (m_numPhysicalCameras == 0) {
        return kStatusOk;
    }
    int status = 0;
    for (uint32_t j = 0; j < m_numPhysicalCameras; ++j) {
        const uint32_t physicalCamId = m_cameraInfo[j].physicalCamId;
        // Sensor names are known for camera ids 0..15 only.
        if (physicalCamId >= kMaxLogicalCameraIds) {
            continue;
        }
        char sensorName[64];
        snprintf(sensorName, sizeof(sensorName), "%s", m_sensorNameList[physicalCamId].c_str());
        if (HasGroupConfiguration(kDcgVsGroup) <= 0) {
            continue;
        }
        std::vector<uint32_t> modes;
        status = ReadUIntList(kDcgVsGroup, sensorName, modes);
        if (status == kConfigOk && !modes.empty() &&
            std::find(modes.begin(), modes.end(), m_operationMode) != modes.end()) {
            m_cameraSupportCaps[j].set(Caps3DolStreaming);
            UI_LOGI("sensor %s cameraid %d opmode 0x%4x support3DolStreaming", sensorName,
                    physicalCamId, m_operationMode);
        }
    }
    return static_cast<uint32_t>(status);
}

}  // namespace Lumora
