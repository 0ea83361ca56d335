// Sensor mode index by caps: the mask is reduced to the sensor-relevant bits
// and looked up, with the sensor name and the operation mode, in the seamless
// setting map of the configuration. Clients other than the system camera are
// served from their own table keyed by package or activity.
//
// These are queries of the running session: they work on the stack only.
#include <CameraHWConfiguration.h>
#include <cutils/properties.h>

#include <cstdio>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/Status.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

constexpr const char* kSeamlessSettingGroup = Key(EConfigKey::SeamlessSensorModes).group;
constexpr const char* kOtherCamSettingGroup = Key(EConfigKey::OtherCamSensorModes).group;
constexpr const char* kForcedSensorModeProperty = "vendor.debug.camera.policy.sensormode";
// Keys are cut to 63 characters.
constexpr size_t kSensorModeKeySize = 64;
// The index byte that means "no mode".
constexpr uint8_t kNoSensorMode = 0xFF;
constexpr uint32_t kOtherCamRowSize = MinValues(EConfigKey::OtherCamSensorModes);
// Caps bits 16..33 decide the sensor mode; bit 17 (position 1 after the
// shift) is the plain mode that any other bit of the range overrides.
constexpr unsigned char kSensorCapsShift = 16;
constexpr uint64_t kSensorCapsMask = 0x3FFFF;
constexpr uint64_t kPlainSensorMode = 0x2;

// Parses one piece of the forced index list: optional blanks, an optional
// sign, decimal digits, optional blanks. Gives the low 8 bits of the value
// (exact for any length of digits); false when the piece is not a number.
bool ParseIndexPiece(const char* begin, const char* end, uint8_t* out) {
    while (begin < end && (*begin == ' ' || *begin == '\t')) {
        ++begin;
    }
    while (end > begin && (end[-1] == ' ' || end[-1] == '\t')) {
        --end;
    }
    bool negative = false;
    if (begin < end && (*begin == '-' || *begin == '+')) {
        negative = *begin == '-';
        ++begin;
    }
    if (begin == end) {
        return false;
    }
    uint32_t low = 0;
    for (const char* p = begin; p < end; ++p) {
        if (*p < '0' || *p > '9') {
            return false;
        }
        low = (low * 10 + static_cast<uint32_t>(*p - '0')) & 0xFFu;
    }
    *out = static_cast<uint8_t>(negative ? (0u - low) & 0xFFu : low);
    return true;
}

// The forced index of a camera type from the debug property, or false when the
// property forces nothing for it. The list ends at the first piece that is not
// a decimal number.
bool ForcedSensorModeIndex(uint32_t type, uint8_t* index) {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get(kForcedSensorModeProperty, value, "");
    const char* piece = value;
    for (uint32_t position = 0;; ++position) {
        const char* end = piece;
        while (*end != '\0' && *end != ',') {
            ++end;
        }
        uint8_t parsed = 0;
        if (!ParseIndexPiece(piece, end, &parsed)) {
            return false;
        }
        if (position == type) {
            *index = parsed;
            return parsed != kNoSensorMode;
        }
        if (*end == '\0') {
            return false;
        }
        piece = end + 1;
    }
}

}  // namespace

void StaticSupportCapabilities::StandardizeSensorCapsMask(_CapsBitset& caps) const {
    const uint64_t before = caps.to_ullong(0);
    caps.reset(CapsSHDROption);
    // The physical raw stream takes the alternative SHDR path.
    if (caps.test(CapsPhysicalRawStream)) {
        caps.reset(CapsSHDRPath);
        caps.reset(CapsSHDRType1);
        caps.set(CapsSHDRAltPath);
    }
    uint64_t reduced = caps.to_ullong(kSensorCapsShift) & kSensorCapsMask;
    if (reduced == 0) {
        reduced = kPlainSensorMode;
    } else if (reduced != kPlainSensorMode) {
        reduced &= ~kPlainSensorMode;
    }
    caps = _CapsBitset(reduced, 0);
    UI_LOGV("supportCaps 0x%04lX -> 0x%04lX", static_cast<unsigned long>(before),
            static_cast<unsigned long>(reduced));
}

int32_t StaticSupportCapabilities::GetSensorModeIndexByCaps(_CapsBitset caps, QueryCapsType type,
                                                            signed char& index) {
    uint32_t value = 1;
    if (m_debugEnable != 0) {
        uint8_t forced = 0;
        if (ForcedSensorModeIndex(static_cast<uint32_t>(type), &forced)) {
            index = static_cast<signed char>(forced);
            UI_LOGE("Force Sensor Mode Index %d frameworkId %d", index, type);
            return kStatusOk;
        }
    }
    if (m_isSystemCamera == 0) {
        GetSensorModeIndexByCapsForOtherCam(caps, type, index);
        return kStatusOk;
    }

    StandardizeSensorCapsMask(caps);

    uint32_t logicalCamId = static_cast<uint32_t>(type);
    if (m_numPhysicalCameras > 0) {
        const bool logicalQuery = static_cast<uint32_t>(type) == kLogicalCameraType;
        int found = -1;
        for (uint32_t i = 0; i < m_numPhysicalCameras && found < 0; ++i) {
            const LumoraCameraEntry& entry = m_cameraInfo[i];
            if (logicalQuery ? entry.isPrimary != 0
                             : entry.physicalCamId == static_cast<uint32_t>(type)) {
                found = static_cast<int>(i);
            }
        }
        if (found >= 0) {
            logicalCamId = static_cast<uint32_t>(m_cameraInfo[found].logicalCamId);
            UI_LOGV("Query physical cameraid %d for TypeLogicalCamera", logicalCamId);
        } else {
            UI_LOGE("Can't find primary camera id for TypeLogicalCamera");
        }
    }
    // Only logical camera ids 0..15 have a sensor name; any other id looks up
    // keys of an empty name, which are not configured.
    const char* sensorName = "";
    if (logicalCamId < kMaxLogicalCameraIds) {
        sensorName = m_sensorNameList[logicalCamId].c_str();
    } else {
        UI_LOGE("logical camera id %u has no sensor name", logicalCamId);
    }

    const unsigned long mask = static_cast<unsigned long>(caps.to_ullong(0));
    char exactKey[kSensorModeKeySize] = {};
    char anyModeKey[kSensorModeKeySize] = {};
    snprintf(exactKey, sizeof(exactKey), "%s[0x%04lX][0x%04X]", sensorName, mask, m_operationMode);
    int result = GetUIntegerConfiguration(kSeamlessSettingGroup, exactKey, &value);
    UI_LOGV("Query result %d keyName %s index %d", result, exactKey, value);
    // Only a key that is not configured falls back to the key for every
    // operation mode; a configured value that does not read is reported.
    if (result == kConfigNotFound) {
        snprintf(anyModeKey, sizeof(anyModeKey), "%s[0x%04lX][-1]", sensorName, mask);
        result = GetUIntegerConfiguration(kSeamlessSettingGroup, anyModeKey, &value);
        UI_LOGI("Query result %d keyName %s index %d", result, anyModeKey, value);
    }
    if (result == kConfigOk) {
        index = static_cast<signed char>(value & 0xFFu);
        return kStatusOk;
    }
    UI_LOGE("GetSensorModeIndexByCaps Query %s fail, please config: %s", anyModeKey, exactKey);
    return result;
}

int32_t StaticSupportCapabilities::GetSensorModeIndexByCapsForOtherCam(_CapsBitset,
                                                                       QueryCapsType type,
                                                                       signed char& index) {
    index = static_cast<signed char>(kNoSensorMode);
    // The engineering camera picks its MIPI mode itself.
    if (m_mipiSelectMode != kNoSensorMode) {
        index = static_cast<signed char>(m_mipiSelectMode);
        return kStatusOk;
    }

    const char* client = m_clientPackageName.data();
    uint32_t rowCount = GetLocaleKeyCount(kOtherCamSettingGroup, client);
    if (rowCount == 0) {
        client = m_clientActivityName.data();
        rowCount = GetLocaleKeyCount(kOtherCamSettingGroup, client);
    }
    UI_LOGI("The keyCount of %s: %u, package name: %s, activity name: %s", kOtherCamSettingGroup,
            rowCount, m_clientPackageName.data(), m_clientActivityName.data());
    UI_LOGI("width : %d, height: %d,fps :%d", m_firstStreamDimension.width,
            m_firstStreamDimension.height, m_maxFps);
    if (rowCount == 0 ||
        GetLocaleKeyValuesCount(kOtherCamSettingGroup, client, "0") != kOtherCamRowSize) {
        return kStatusOk;
    }

    // A row: camera type, max fps, first stream width and height, operation
    // mode (each -1 for any), then the sensor mode index. The first match wins.
    const int32_t actual[kOtherCamRowSize - 1] = {
        static_cast<int32_t>(type), m_maxFps, static_cast<int32_t>(m_firstStreamDimension.width),
        static_cast<int32_t>(m_firstStreamDimension.height), static_cast<int32_t>(m_operationMode)};
    for (uint32_t row = 0; row < rowCount; ++row) {
        const RowIndex rowIndex(row);
        int32_t values[kOtherCamRowSize] = {};
        if (GetLocaleIntegerListConfiguration(kOtherCamSettingGroup, client, rowIndex.text, values,
                                              kOtherCamRowSize) != kConfigOk) {
            continue;
        }
        bool matches = true;
        for (uint32_t k = 0; k < kOtherCamRowSize - 1 && matches; ++k) {
            matches = RowValueMatches(values[k], actual[k]);
        }
        if (matches) {
            index = static_cast<signed char>(values[kOtherCamRowSize - 1]);
            return kStatusOk;
        }
    }
    return kStatusOk;
}

}  // namespace Lumora
