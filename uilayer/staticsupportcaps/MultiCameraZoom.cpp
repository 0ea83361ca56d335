// Multi-camera zoom record: per-session decisions about single-camera
// fallback, zoom division curves, bokeh seamless zoom and smooth zoom.
#include <CameraHWConfiguration.h>
#include <cutils/properties.h>
#include <system/graphics.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/OperationModes.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "common/StreamPredicates.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

constexpr const char* kWirelessOnlinePath = "/sys/class/power_supply/wireless/online";
// The sysfs node holds "0" or "1" and a newline; a few bytes are plenty.
constexpr int kWirelessReadSize = 4;

// Why the zoom pipeline falls back to a single camera: 0 (off) to 10; 7 is
// not used.
enum FallbackUsecase : uint32_t {
    kFallbackOff,
    kFallbackDefault,
    kFallbackOpMode8019,
    kFallbackOpMode800B,
    kFallbackOpMode8021,
    kFallbackOpMode8009,
    kFallbackBokeh,
    kFallbackThirdPartyClient = 8,
    kFallbackEngineerOpMode8029,
    kFallbackProVideo,
};
static_assert(kFallbackProVideo == 10, "fallback use cases are reported by number");

// Decimal value at the start of a terminated text, as atoi reads it; text that
// does not start with a number gives 0, and values beyond int are clamped.
int ParseDecimal(const char* text) {
    const int savedErrno = errno;
    char* end = nullptr;
    const long value = strtol(text, &end, 10);
    errno = savedErrno;
    if (end == text) {
        return 0;
    }
    if (value > INT_MAX) {
        return INT_MAX;
    }
    if (value < INT_MIN) {
        return INT_MIN;
    }
    return static_cast<int>(value);
}

int PropertyDecimal(const char* name, const char* defaultValue) {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get(name, value, defaultValue);
    return ParseDecimal(value);
}

struct FallbackInputs {
    bool thirdPartyOrCameraUnit;
    bool bokehSession;
    bool proVideoCameraMode;
    uint32_t operationMode;
    bool engineerCamera;
};

// The reasons are tested in order of precedence: who the client is first, then
// the kind of session, then the operation mode.
uint32_t SelectFallbackUsecase(const FallbackInputs& in) {
    if (in.thirdPartyOrCameraUnit) {
        return kFallbackThirdPartyClient;
    }
    if (in.bokehSession) {
        return kFallbackBokeh;
    }
    if (in.proVideoCameraMode) {
        return kFallbackProVideo;
    }
    switch (in.operationMode) {
        case kOpMode800B:
        case kOpMode800C:
        case kOpMode8028:
            return kFallbackOpMode800B;
        case kOpModeSat8009:
            return kFallbackOpMode8009;
        case kOpModeSat8019:
            return kFallbackOpMode8019;
        case kOpMode8021:
            return kFallbackOpMode8021;
        case kOpMode8029:
            return in.engineerCamera ? kFallbackEngineerOpMode8029 : kFallbackDefault;
        default:
            return kFallbackDefault;
    }
}

// Strings of one indexed row; values the row does not have stay null.
bool ReadLocaleStrings(const char* group, const char* name, uint32_t index, uint32_t count,
                       std::vector<char*>& values) {
    const RowIndex indexText(index);
    values.assign(count, nullptr);
    if (count == 0) {
        return false;
    }
    return GetLocaleStringListConfiguration(group, name, indexText.text, values.data(), count) ==
           kConfigOk;
}

// True when the client is listed in the tripartite fallback white list. Every
// entry is visited, so that each listed form that matches is logged (on behalf
// of `step`).
bool IsTripartiteFallbackApp(const char* packageName, const char* activityName, const char* step) {
    constexpr _ConfigKey kApps = Key(EConfigKey::TripartiteFallbackApps);
    const uint32_t keyCount = GetKeyCount(kApps.group);
    const uint32_t valueCount = GetValuesCount(kApps.group, kApps.firstRow);
    bool listed = false;
    std::vector<char*> values;
    for (uint32_t i = 0; i < keyCount; ++i) {
        if (valueCount < 2) {
            // One name, matched as a prefix of the package or of the activity.
            const RowIndex indexText(i);
            char* app = nullptr;
            if (GetLocaleStringConfiguration(kApps.group, kApps.key, indexText.text, &app) !=
                    kConfigOk ||
                app == nullptr || app[0] == '\0') {
                continue;
            }
            if (StartsWith(packageName, app) || StartsWith(activityName, app)) {
                listed = true;
                UI_LOGI_IN(step, "m_clientPackageName %s, m_clientActivityName %s", packageName,
                           activityName);
            }
            continue;
        }
        // An activity prefix and the package prefix it belongs to ("-1": any
        // package). A row that stops after the activity names no package,
        // which means any package as well.
        if (!ReadLocaleStrings(kApps.group, kApps.key, i, valueCount, values)) {
            continue;
        }
        const char* activity = values[0];
        const char* package = values[1] != nullptr ? values[1] : "-1";
        if (activity == nullptr || activity[0] == '\0') {
            continue;
        }
        const bool packageMatches = strcmp(package, "-1") == 0 || StartsWith(packageName, package);
        if (packageMatches && StartsWith(activityName, activity)) {
            listed = true;
            UI_LOGI_IN(step,
                       "m_clientPackageName %s, m_clientActivityName %s, whitelistPackageName %s",
                       packageName, activityName, package);
        }
    }
    return listed;
}

// True when the client is listed as a third-party app with zoom division
// curves. Names are compared whole, unlike the fallback white list.
bool IsZoomDivisionApp(const char* packageName, const char* activityName) {
    constexpr _ConfigKey kApps = Key(EConfigKey::ZoomDivisionApps);
    const uint32_t keyCount = GetKeyCount(kApps.group);
    const uint32_t valueCount = GetValuesCount(kApps.group, kApps.firstRow);
    std::vector<char*> values;
    for (uint32_t i = 0; i < keyCount; ++i) {
        if (!ReadLocaleStrings(kApps.group, kApps.key, i, valueCount, values) ||
            values[0] == nullptr) {
            continue;
        }
        if (strcmp(values[0], packageName) == 0 || strcmp(values[0], activityName) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace

uint32_t StaticSupportCapabilities::ConfigSupportCapsSAT(
    const camera3_stream_configuration* config) {
    _SatStaticCaps& sat = m_satStaticCaps;

    if (m_isBokehMode != 0 || m_numPhysicalCameras == 1) {
        m_supportCaps.set(CapsBokehOrSingleCamera);
    }
    const bool hasVideoStream = HasStream(config, IsVideoStream);

    // While the device charges wirelessly (and the device allows it) fallback
    // detection is off.
    const bool enableWireless = ReadConfigBool(EConfigKey::SatFallbackWireless);
    char wirelessText[kWirelessReadSize + 1] = {};
    const int readStatus = readFile(kWirelessOnlinePath, wirelessText, kWirelessReadSize);
    const int wirelessStat = ParseDecimal(wirelessText);
    UI_LOGI("read wireless_stat is %d result %d isEnablewireless %d", wirelessStat, readStatus,
            enableWireless);
    const bool wirelessOn = readStatus == kStatusOk && wirelessStat == 1 && enableWireless;

    const int fallbackDetect =
        PropertyDecimal("persist.vendor.camera.sat.enable.fallbackdetect", "1");
    const bool thirdPartyOrCameraUnit = m_isSystemCamera == 0 || m_isCameraUint != 0;
    if (thirdPartyOrCameraUnit) {
        sat.forceFallback = 1;
        UI_LOGV("enable force fallback");
    }
    if (fallbackDetect >= 1 && m_isAICompositionEnable == 0 && !wirelessOn) {
        const FallbackInputs inputs = {thirdPartyOrCameraUnit, m_isBokehMode != 0,
                                       m_supportCaps.test(CapsCameraModeProVideoLog) ||
                                           m_supportCaps.test(CapsCameraModeProVideo),
                                       m_operationMode, m_isEngineerCamera != 0};
        sat.fallbackUsecase = SelectFallbackUsecase(inputs);
    } else {
        UI_LOGI("fallback disable by persist or wireless is on");
        sat.fallbackUsecase = kFallbackOff;
    }
    UI_LOGI("fallbackUsecase is %d operationMode is 0x%x", sat.fallbackUsecase, m_operationMode);

    sat.fallbackDebug =
        PropertyDecimal("persist.vendor.camera.sat.enable.fallbackdebug", "0") > 0 ? 1 : 0;

    sat.isTripartiteFallbackWhitelist =
        IsTripartiteFallbackApp(m_clientPackageName.data(), m_clientActivityName.data(), __func__)
            ? 1
            : 0;

    // Bokeh seamless zoom is restricted only in bokeh sessions that do not
    // translate the zoom ratio themselves.
    const bool enableBokehZoomRatio = ReadConfigBool(EConfigKey::BokehZoomRatioTranslate);
    std::vector<uint32_t> seamlessModes;
    ReadUIntList(EConfigKey::BokehIzoomSeamlessModes, seamlessModes);
    bool seamlessMode = false;
    for (uint32_t mode : seamlessModes) {
        UI_LOGV("map mode %d==%d support bokeh seamless zoom", m_operationMode, mode);
        if (mode == m_operationMode) {
            seamlessMode = true;
            break;
        }
    }
    sat.supportBokehIzoomSeamless =
        (m_isBokehMode != 0 && !enableBokehZoomRatio) ? (seamlessMode ? 1 : 0) : 1;

    const bool zoomDivisionApp =
        IsZoomDivisionApp(m_clientPackageName.data(), m_clientActivityName.data());
    sat.is3rdCamZoomDivisionApp = zoomDivisionApp ? 1 : 0;
    sat.supportZoomDivision = (zoomDivisionApp || m_isSystemCamera != 0) ? 1 : 0;

    sat.enableSmoothZoom = 0;
    sat.useAIDLInput = 0;
    if (m_isSystemCamera != 0 && m_isCameraUint == 0) {
        sat.enableSmoothZoom = 1;
        if (m_numPhysicalCameras >= 2) {
            sat.useAIDLInput = ReadConfigBool(EConfigKey::SatUseAidlInput) ? 1 : 0;
        }
    }

    sat.isBokehMode = m_isBokehMode;
    sat.isEnableSkipMiddleSensor = ReadConfigBool(EConfigKey::SkipMiddleSensor) ? 1 : 0;

    if (hasVideoStream) {
        int32_t videoMaxRtCount = 0;
        const _ConfigKey& rtCount = Key(EConfigKey::VideoMaxRtCount);
        GetIntegerConfiguration(rtCount.group, rtCount.key, &videoMaxRtCount);
        sat.videoMaxRtCount = videoMaxRtCount;
        sat.isEnableSkipMiddleSensor =
            ReadConfigBool(EConfigKey::SkipMiddleSensorForVideo, sat.isEnableSkipMiddleSensor != 0)
                ? 1
                : 0;
        sat.zoomDivisionCurveCfgPrefix = "ZoomDivisionCurveCfg_Video_";
    } else {
        sat.videoMaxRtCount = 0;
        sat.zoomDivisionCurveCfgPrefix = "ZoomDivisionCurveCfg_Photo_";
    }

    sat.useVideoStrategy = 0;
    const _ConfigKey& strategy = Key(EConfigKey::VideoStrategyModes);
    if (GetValuesCount(strategy.group, strategy.key) != 0 && m_isCameraUint == 0) {
        std::vector<uint32_t> strategyModes;
        ReadUIntList(EConfigKey::VideoStrategyModes, strategyModes);
        for (uint32_t mode : strategyModes) {
            if (mode == m_operationMode) {
                sat.useVideoStrategy = 1;
                UI_LOGI("useVideoStrategy operationMode: 0x%x", m_operationMode);
            }
        }
    }

    // A missing or unreadable sysfs node only means "not charging wirelessly";
    // the status is handed back for the record.
    return static_cast<uint32_t>(readStatus);
}

}  // namespace Lumora
