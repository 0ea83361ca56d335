// Scalar values of a request's settings that the tuning mode query matches.
#include "common/CapsConstants.h"
#include "common/Log.h"
#include "common/MetadataRead.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "common/Trace.h"
#include "common/VendorTags.h"
#include "requestdesiredcaps/RequestDesiredCapabilities.h"

namespace Lumora {

namespace {

// Scenes that ask for the moon layout when the picture-in-picture sensor is on.
constexpr int32_t kMoonSceneFirst = 29;
constexpr int32_t kMoonSceneLast = 30;

template <typename T>
bool ReadSetting(const camera_metadata_t* settings, uint32_t index, T& out) {
    return ReadFirst32(settings, VendorTagId(index), out);
}

}  // namespace

// Each value is stored only when the request carries its tag (a read that
// fails leaves its member untouched); otherwise the member keeps what an
// earlier request of this slot left (deliberately: the HAL sends some of these
// tags only when they change). Only the first element is read; an entry with
// fewer than four bytes of data counts as absent.
void RequestDesiredCapabilities::ParseOriginalRequestSetting(
    const camera3_capture_request* request) {
    const camera_metadata_t* settings = request != nullptr ? request->settings : nullptr;
    if (settings == nullptr) {
        return;
    }
    if (ReadSetting(settings, kTagApsFeatureType, m_apsFeatureType)) {
        UI_LOGI("apsFeatureType %d", m_apsFeatureType);
    }
    if (ReadSetting(settings, kTagBracketMode, m_bracketMode)) {
        UI_LOGI("bracketMode %d", m_bracketMode);
    }
    if (ReadSetting(settings, kTagAsdSceneValue, m_asdSceneValue)) {
        UI_LOGI("asdSceneValue %d", m_asdSceneValue);
    }
    int32_t pipSensor = 0;
    if (ReadSetting(settings, kTagPipSensor, pipSensor)) {
        UI_LOGI("PIPSensor %d", pipSensor);
        UILAYER_TRACE_CONTRIBUTION(kSourceSetting, kNoCamera, pipSensor, m_asdSceneValue,
                                   .Tag(kTagPipSensor));
        // The scene is the record's, which may be a value carried over from an
        // earlier request of this slot.
        if (m_asdSceneValue >= kMoonSceneFirst && m_asdSceneValue <= kMoonSceneLast &&
            pipSensor == 1) {
            m_primaryCaps.set(CapsMoonLayout);
            UI_LOGI("moon layout condition met");
        } else {
            UI_LOGI("moon layout NOT trigger");
        }
    }
    if (ReadSetting(settings, kTagLongExposureSceneType, m_longExposureSceneType)) {
        UI_LOGI("longExposureSceneType %d", m_longExposureSceneType);
    }
    if (ReadSetting(settings, kTagFaceBeautyLevel, m_faceBeautyLevel)) {
        UI_LOGI("faceBeautyLevel %d", m_faceBeautyLevel);
    }
    if (ReadSetting(settings, kTagIsFromExtension, m_isFromExtension)) {
        UI_LOGI("isFromExtension %d", m_isFromExtension);
    }
    if (ReadSetting(settings, kTagAecLuxIndex, m_aecLuxIndex)) {
        UI_LOGI("aecLuxIndex %f", static_cast<double>(m_aecLuxIndex));
    }
    if (ReadSetting(settings, kTagAecFaceNum, m_aecFaceNum)) {
        UI_LOGI("aecFaceNum %d", m_aecFaceNum);
    }
}

}  // namespace Lumora
