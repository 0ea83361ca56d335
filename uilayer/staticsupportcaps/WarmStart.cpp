// AEC warm start: per physical camera, whether the exposure control starts
// from its saved state and which DOL type the sensor starts in.
#include <CameraHWConfiguration.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

constexpr _ConfigKey kWarmDol = Key(EConfigKey::WarmDolState);
constexpr const char* kWarmStartFile = "/data/vendor/camera/aecWarmStartCamera_%d.txt";
// Operation mode, camera id, seven record fields and the frame rate.
constexpr uint32_t kWarmDolRowValues = MinValues(EConfigKey::WarmDolState);
constexpr size_t kPathSize = 512;

// The values of the saved exposure state that the DOL decision reads.
struct SavedAecState {
    float valueA;
    float valueB;
    float lux;
};

// Reads the saved state of one camera. Returns the number of items the file
// line converted (9 for a good file), or kReadFileNotOpened.
int ReadWarmStartFile(uint32_t physicalCamId, SavedAecState& state) {
    char devicePath[kPathSize];
    char mapped[kPathSize];
    snprintf(devicePath, sizeof(devicePath), kWarmStartFile, static_cast<int>(physicalCamId));
    FILE* file = fopen(DevicePath(devicePath, mapped, sizeof(mapped)), "r");
    if (file == nullptr) {
        return kReadFileNotOpened;
    }
    float unused1 = 0.0f;
    float unused2 = 0.0f;
    float unused3 = 0.0f;
    float unused6 = 0.0f;
    int unused7 = 0;
    unsigned long long unused9 = 0;
    const int items =
        fscanf(file, "%f %f %f %f %f %f %d %f %llu\n", &unused1, &unused2, &unused3, &state.valueA,
               &state.valueB, &unused6, &unused7, &state.lux, &unused9);
    fclose(file);
    return items;
}

}  // namespace

uint32_t StaticSupportCapabilities::ConfigWarmStart() {
    uint32_t valueCount = 0;
    const uint32_t rows = ReadModeRows(__func__, EConfigKey::WarmDolState, &valueCount);
    // A row needs all ten values: with a shorter first row the configuration is
    // broken (already reported above) and no row is used, and any shorter row
    // is skipped. Longer rows are read whole and their extra values ignored.
    if (valueCount >= kWarmDolRowValues) {
        std::vector<uint32_t> values;
        for (uint32_t row = 0; row < rows; ++row) {
            const RowIndex index(row);
            values.assign(valueCount, 0);
            if (GetLocaleKeyValuesCount(kWarmDol.group, kWarmDol.key, index.text) <
                    kWarmDolRowValues ||
                GetLocaleUIntegerListConfiguration(kWarmDol.group, kWarmDol.key, index.text,
                                                   values.data(), valueCount) != kConfigOk ||
                values[0] != m_operationMode) {
                continue;
            }
            const int32_t fps = static_cast<int32_t>(values[9]);
            if (!RowValueMatches(fps, m_maxFps)) {
                continue;
            }
            // A later matching row for the same camera overwrites an earlier one.
            const uint32_t cam = values[1] & 7u;
            _WarmStartParam& param = m_warmStartParam[cam];
            param.warmStartEnable = values[2];
            param.luxDiffThreshold = values[3];
            param.maxLux = values[4];
            param.maxSavedValueB = values[5];
            param.minSavedValueA = values[6];
            param.aecDolType1 = static_cast<int32_t>(values[7]);
            param.aecDolType2 = static_cast<int32_t>(values[8]);
            param.fps = fps;
            param.dolState = param.aecDolType1;
            UI_LOGI(
                "warm start config: operation_mode:0x%x cfgPhyCameraId %d, warmStartEnable %u, "
                "aecDolType1:%d, aecDolType2:%d",
                m_operationMode, static_cast<int>(cam), param.warmStartEnable, param.aecDolType1,
                param.aecDolType2);
        }
    }

    for (uint32_t c = 0; c < m_numPhysicalCameras; ++c) {
        const uint32_t id = m_cameraInfo[c].physicalCamId;
        if (id >= kMaxLogicalCameraIds) {
            continue;  // no warm start record for this id
        }
        _WarmStartParam& param = m_warmStartParam[id];
        SavedAecState saved = {0.0f, 0.0f, 0.0f};
        const int items = ReadWarmStartFile(id, saved);
        if (items == kReadFileNotOpened) {
            param.dolState = param.aecDolType1;
            UI_LOGE("Get WarmStartFile failed");
        } else if (items != 9) {
            // A malformed file leaves the configured state.
            UI_LOGW("Failed to read warm start file, expected 9 items but got %d", items);
            continue;
        } else if (param.warmStartEnable != 0) {
            // The saved state still fits when the light barely changed and the
            // saved exposure is within its bounds, or when the light changed a
            // lot but the scene is not brighter than the bound.
            const float luxDiff = std::fabs(m_warmStartLux - saved.lux);
            const float luxDiffThreshold = static_cast<float>(param.luxDiffThreshold);
            const bool closeAndInBounds =
                luxDiff < luxDiffThreshold &&
                saved.valueA >= static_cast<float>(param.minSavedValueA) &&
                saved.valueB <= static_cast<float>(param.maxSavedValueB);
            const bool farButDim =
                luxDiff >= luxDiffThreshold && m_warmStartLux <= static_cast<float>(param.maxLux);
            param.dolState = closeAndInBounds || farButDim ? param.aecDolType2 : param.aecDolType1;
        }
        UI_LOGI("warm start physicalCamId %d warmStartEnable %d warmStartDolState %d",
                static_cast<int>(id), static_cast<int>(param.warmStartEnable), param.dolState);
    }
    return kStatusOk;
}

int StaticSupportCapabilities::GetWarmStartStateByCaps(unsigned int physicalCamId,
                                                       unsigned int& warmStartEnable,
                                                       int& dolState) const {
    if (physicalCamId >= kMaxLogicalCameraIds) {
        return kStatusOk;  // no record for this id: the outputs stay as preset
    }
    for (uint32_t c = 0; c < m_numPhysicalCameras; ++c) {
        if (m_cameraInfo[c].physicalCamId == physicalCamId) {
            warmStartEnable = m_warmStartParam[physicalCamId].warmStartEnable;
            dolState = m_warmStartParam[physicalCamId].dolState;
        }
    }
    return kStatusOk;
}

}  // namespace Lumora
