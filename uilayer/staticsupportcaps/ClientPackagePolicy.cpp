// Client package policy: who opened the camera (package and activity from the
// session parameters) and what kind of client that is, as member flags and
// session caps that the rest of the session policy reads.
#include <CameraHWConfiguration.h>
#include <OLog.h>
#include <cutils/properties.h>
#include <system/camera_metadata.h>

#include <vector>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/MetadataRead.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "common/VendorTags.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

// Stream mode of a stream that the camera layer renders in its extended mode,
// and the flag it gets for clients outside the system and engineer cameras.
constexpr uint32_t kExtStreamModeExtended = 2;
constexpr uint32_t kExtStreamFlagsThirdParty = 16;

// A byte entry of the session parameters. Entries of any other type carry no
// text or flag this policy understands and count as absent.
bool FindByteEntry(const camera_metadata_t* meta, uint32_t index,
                   camera_metadata_ro_entry_t* entry) {
    return FindTypedEntry(meta, VendorTagId(index), TYPE_BYTE, 0, entry);
}

// A single configured package string; when it is not configured the
// placeholder "NA" stands in, so only packages beginning with "NA" match then.
bool MatchesConfiguredPackage(const char* package, EConfigKey key) {
    char* configured = nullptr;
    const char* prefix = "NA";
    if (GetStringConfiguration(Key(key).group, Key(key).key, &configured) == kConfigOk &&
        configured != nullptr) {
        prefix = configured;
    }
    return StartsWith(package, prefix);
}

// True at the first string of a configured list that the package begins with.
bool MatchesConfiguredPackageList(const char* package, EConfigKey key) {
    std::vector<char*> prefixes;
    if (ReadStringList(key, prefixes) != kConfigOk) {
        return false;
    }
    for (const char* prefix : prefixes) {
        if (prefix != nullptr && StartsWith(package, prefix)) {
            return true;
        }
    }
    return false;
}

bool PropertyBeginsWith(const char* name, const char* defaultValue, const char* prefix) {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get(name, value, defaultValue);
    return StartsWith(value, prefix);
}

}  // namespace

uint32_t StaticSupportCapabilities::InitPackageName(camera3_stream_configuration* config) {
    UI_LOGV("Enter InitPackageName");
    const camera_metadata_t* meta = config != nullptr ? config->session_parameters : nullptr;
    camera_metadata_ro_entry_t entry = {};

    // The names are only replaced when the session parameters carry them; a
    // configuration without them keeps the names of the one before.
    if (FindByteEntry(meta, kTagPackageName, &entry)) {
        UI_LOGI("find vendor tags com.tavro.packageName");
        if (entry.count < kClientNameSize) {
            CopyEntryText(entry, m_clientPackageName.data(), kClientNameSize);
            UI_LOGI("get packageName successfully, packageName is %s", m_clientPackageName.data());
        }
    } else {
        UI_LOGE("cannot find vendor tags com.tavro.packageName");
    }

    if (FindByteEntry(meta, kTagActivityName, &entry)) {
        if (entry.count < kClientNameSize) {
            CopyEntryText(entry, m_clientActivityName.data(), kClientNameSize);
            UI_LOGI("get activityName successfully, activityName is %s",
                    m_clientActivityName.data());
        } else {
            UI_LOGE("no find vendor tags com.tavro.activityName");
        }
    }

    m_isCameraUint = 0;
    if (FindByteEntry(meta, kTagCameraUnitPackage, &entry) && entry.count > 0) {
        m_isCameraUint = entry.data.u8[0];
        UI_LOGI("get is.sdk.camera.package successfully, m_isCameraUint %d", m_isCameraUint);
    } else {
        UI_LOGE("no find vendor tags com.tavro.is.sdk.camera.package");
    }

    const char* package = m_clientPackageName.data();

    m_SupportOisCenterOn = 0;
    if (MatchesConfiguredPackageList(package, EConfigKey::OisCenterOnApp)) {
        m_SupportOisCenterOn = 1;
        UI_LOGI("m_SupportOisCenterOn %d", m_SupportOisCenterOn);
    }
    m_SupportOisCloseOcs = 0;
    if (MatchesConfiguredPackageList(package, EConfigKey::OisCloseOcsApp)) {
        m_SupportOisCloseOcs = 1;
        UI_LOGI("m_SupportOisCloseOcs %d", m_SupportOisCloseOcs);
    }

    m_isCtsCamera = MatchesConfiguredPackage(package, EConfigKey::CtsCameraPackage) ? 1 : 0;

    // A generic system image reports the platform's own brand or product.
    const bool gsi = PropertyBeginsWith("ro.product.brand", "Android", "Android") ||
                     PropertyBeginsWith("ro.product.system.brand", "", "Android") ||
                     PropertyBeginsWith("ro.build.product", "generic", "generic");
    m_isGSIBuild = gsi ? 1 : 0;
    UI_LOGI("get is.sdk.camera.package successfully, m_isGSIBuild %d", m_isGSIBuild);

    m_isSystemCamera =
        (MatchesConfiguredPackage(package, EConfigKey::SystemCameraPackage) || m_isCameraUint != 0)
            ? 1
            : 0;
    m_isEngineerCamera = MatchesConfiguredPackage(package, EConfigKey::EngineerModePackage) ? 1 : 0;
    m_isCtsVerifier = MatchesConfiguredPackage(package, EConfigKey::CtsVerifierPackage) ? 1 : 0;
    m_isScanMode = MatchesConfiguredPackage(package, EConfigKey::ScanModePackage) ? 1 : 0;

    if (m_isSystemCamera != 0) {
        m_supportCaps.set(CapsSystemCameraClient);
    }
    if (m_isCameraUint != 0) {
        m_supportCaps.set(CapsCameraUnitSdk);
    }
    if (m_isScanMode != 0) {
        m_supportCaps.set(CapsScanMode);
    }
    if (m_isEngineerCamera != 0) {
        m_supportCaps.set(CapsEngineerMode);
    } else if (m_isSystemCamera == 0) {
        m_supportCaps.set(CapsThirdPartyClient);
    }
    if (m_isCtsVerifier != 0) {
        m_supportCaps.set(CapsCtsVerifier);
    }

    m_hasExtModeStream = 0;
    const bool ownClient = m_isSystemCamera != 0 || m_isEngineerCamera != 0;
    if (config != nullptr && config->streams != nullptr) {
        for (uint32_t i = 0; i < config->num_streams; ++i) {
            camera3_stream_t* stream = config->streams[i];
            if (stream == nullptr || stream->ext_stream_mode != kExtStreamModeExtended) {
                continue;
            }
            m_hasExtModeStream = 1;
            if (!ownClient) {
                stream->ext_stream_flags = kExtStreamFlagsThirdParty;
            }
        }
    }
    if (m_hasExtModeStream != 0) {
        m_supportCaps.set(CapsExtModeStream);
    }

    // Verbose camera logging follows the client: on for the system camera
    // (the camera unit included), off for everyone else.
    OLog::SwitchLogEnable(m_isSystemCamera != 0 ? 1 : 0);
    return kStatusOk;
}

}  // namespace Lumora
