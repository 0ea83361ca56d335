// AI autofocus touch-to-track, the snapshot tuning policy tables and the
// star-mode exposure override of a session.
#include <CameraHWConfiguration.h>

#include <algorithm>
#include <vector>

#include "common/CapsConstants.h"
#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/OperationModes.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

constexpr _ConfigKey kAIAF = Key(EConfigKey::AiafTouch2Track);
constexpr uint32_t kAIAFRowValues = MinValues(EConfigKey::AiafTouch2Track);

// Builds one tuning policy table from the rows of `group` that apply to
// `operationMode` (or to any mode). Leaves the table and its count untouched
// when the group has no usable rows. Accepted rows are logged on behalf of `step`.
template <typename Entry>
void LoadTuningTable(EConfigKey rowsKey, uint32_t operationMode, Entry* table, uint8_t& count,
                     const char* step) {
    constexpr uint32_t kWidth = sizeof(Entry::value) / sizeof(Entry::value[0]);
    const _ConfigKey& key = Key(rowsKey);
    const uint32_t rowValues = GetValuesCount(key.group, key.firstRow);
    const uint32_t rows = GetKeyCount(key.group);
    // A row needs at least the tuning mode and the operation mode.
    if (rows == 0 || rowValues < MinValues(key.shape)) {
        return;
    }
    std::vector<int32_t> values(rowValues);
    uint32_t appended = 0;
    for (uint32_t row = 0; row < rows; ++row) {
        const RowIndex index(row);
        std::fill(values.begin(), values.end(), 0);
        if (GetLocaleIntegerListConfiguration(key.group, key.key, index.text, values.data(),
                                              rowValues) != kConfigOk) {
            continue;
        }
        if (!RowValueMatches(values[1], static_cast<int32_t>(operationMode))) {
            continue;  // an entry of another mode never applies in this session
        }
        if (appended >= kMaxTuningPolicyEntries) {
            continue;  // the table is full: further entries are dropped
        }
        // Positions the row does not hold match any request value.
        const uint32_t held =
            std::min(rowValues, GetLocaleKeyValuesCount(key.group, key.key, index.text));
        int32_t* entry = table[appended].value;
        for (uint32_t k = 0; k < kWidth; ++k) {
            entry[k] = k < held ? values[k] : -1;
        }
        ++appended;
        if constexpr (kWidth == 8) {
            UI_LOGI_IN(step, "static cfg feature1Mode %d operationMode %d apsFeatureType %d",
                       entry[0], entry[1], entry[2]);
        } else {
            UI_LOGI_IN(step, "static cfg feature2Mode %d operationMode %d apsFeatureType %d",
                       entry[0], entry[1], entry[2]);
        }
    }
    count = static_cast<uint8_t>(appended);
}

}  // namespace

void StaticSupportCapabilities::ConfigAIAF() {
    const uint32_t rows = GetKeyCount(kAIAF.group);
    if (rows == 0 || GetValuesCount(kAIAF.group, kAIAF.firstRow) != kAIAFRowValues) {
        return;
    }
    for (uint32_t row = 0; row < rows; ++row) {
        const RowIndex index(row);
        uint32_t values[kAIAFRowValues] = {0, 0};
        if (GetLocaleUIntegerListConfiguration(kAIAF.group, kAIAF.key, index.text, values,
                                               kAIAFRowValues) != kConfigOk) {
            continue;
        }
        // values[1] is a mask of physical camera ids.
        for (uint32_t c = 0; c < m_numPhysicalCameras; ++c) {
            const uint32_t id = m_cameraInfo[c].physicalCamId;
            if (values[0] == m_operationMode && ((values[1] >> (id % 32)) & 1u) != 0) {
                m_supportCaps |= kCapsAIAFTouch2Track;
                m_cameraSupportCaps[c] |= kCapsAIAFTouch2Track;
            }
        }
    }
}

void StaticSupportCapabilities::ConfigStaticTuningPolicy() {
    LoadTuningTable(EConfigKey::Feature1ModeMatch, m_operationMode, m_feature1TuningPolicy,
                    m_feature1TuningPolicyNum, __func__);
    LoadTuningTable(EConfigKey::Feature2ModeMatch, m_operationMode, m_feature2TuningPolicy,
                    m_feature2TuningPolicyNum, __func__);
}

void StaticSupportCapabilities::ConfigStarModeAEInfo() {
    if (m_operationMode != kOpModeStarMode) {
        return;
    }
    if (!ReadConfigBool(EConfigKey::StarModeOverrideAe)) {
        return;
    }
    m_supportCaps.set(CapsStarModeOverrideAE);
    m_starModeAEInfo = {0, 0, 0};
    // A key that is absent (or does not convert) leaves its value 0.
    int32_t aeMode = 0;
    int32_t sensitivity = 0;
    int64_t expTime = 0;
    const _ConfigKey& aeModeKey = Key(EConfigKey::StarModeAeMode);
    const _ConfigKey& sensitivityKey = Key(EConfigKey::StarModeSensitivity);
    const _ConfigKey& expTimeKey = Key(EConfigKey::StarModeExposureTime);
    if (GetIntegerConfiguration(aeModeKey.group, aeModeKey.key, &aeMode) == kConfigOk) {
        m_starModeAEInfo.aeMode = aeMode;
    }
    if (GetIntegerConfiguration(sensitivityKey.group, sensitivityKey.key, &sensitivity) ==
        kConfigOk) {
        m_starModeAEInfo.sensitivity = sensitivity;
    }
    if (GetInt64Configuration(expTimeKey.group, expTimeKey.key, &expTime) == kConfigOk) {
        m_starModeAEInfo.expTime = expTime;
    }
}

}  // namespace Lumora
