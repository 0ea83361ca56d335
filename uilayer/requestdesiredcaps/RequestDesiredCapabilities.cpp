// The request record: construction, destruction and the per-frame queries.
#include "requestdesiredcaps/RequestDesiredCapabilities.h"

#include <algorithm>

#include "common/CapsConstants.h"
#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/Status.h"
#include "common/StreamLists.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

// Answer of a query about a camera without a caps slot.
constexpr _CapsBitset kNoCaps;

}  // namespace

// The scalars are set once here and never reset afterwards: a reused slot keeps
// the values of the last request that carried their tags.
RequestDesiredCapabilities::RequestDesiredCapabilities()
    : m_frameNumber(kUnusedFrameNumber),
      m_apsFeatureType(0),
      m_bracketMode(0),
      m_asdSceneValue(0),
      m_longExposureSceneType(0),
      m_faceBeautyLevel(0),
      m_isFromExtension(0),
      m_aecLuxIndex(0.0f),
      m_aecFaceNum(0),
      m_pStaticCaps(nullptr) {
    m_primaryCaps.Reset();
    for (_CapsBitset& caps : m_cameraCaps) {
        caps.Reset();
    }
}

RequestDesiredCapabilities::~RequestDesiredCapabilities() {
    for (std::vector<_UIStreamInfo>& list : m_streamList) {
        list.clear();
        list.shrink_to_fit();
    }
}

bool RequestDesiredCapabilities::IsRequestSupportCaps(DesiredSupportCaps caps,
                                                      QueryCapsType type) const {
    // A capability number of 100 or more throws, for any camera.
    const bool supported = CapsOf(type).test(caps);
    UI_LOGI("frame number %d bSupport %d query supportCaps %d cameraType %d",
            static_cast<int>(m_frameNumber), supported, static_cast<int>(caps),
            static_cast<int>(type));
    return supported;
}

_CapsBitset RequestDesiredCapabilities::GetRequestSupportCaps(QueryCapsType type) const {
    return CapsOf(type);
}

const _CapsBitset& RequestDesiredCapabilities::CapsOf(QueryCapsType type) const {
    // A camera id without a slot supports nothing.
    const uint32_t id = QueryCameraId(type);
    if (id == TypeLogicalCamera) {
        return m_primaryCaps;
    }
    return id < kRequestCameraCaps ? m_cameraCaps[id] : kNoCaps;
}

std::vector<_UIStreamInfo>* RequestDesiredCapabilities::GetStreamByStreamType(StreamType type) {
    return StreamListOf(m_streamList, m_noStreams, type);
}

int32_t RequestDesiredCapabilities::GetOriginalRequestTuningMode(QueryTuningType type) const {
    if (type == TypeFeature2Snapshot) {
        const uint32_t count = m_pStaticCaps != nullptr
                                   ? std::min<uint32_t>(m_pStaticCaps->m_feature2TuningPolicyNum,
                                                        kMaxTuningPolicyEntries)
                                   : 0;
        int32_t result = kNoTuningMode;
        // Every entry is checked: the last matching one wins, later rows refine
        // earlier ones.
        for (uint32_t i = 0; i < count; ++i) {
            const int32_t* field = m_pStaticCaps->m_feature2TuningPolicy[i].value;
            if (RowValueMatches(field[1], static_cast<int32_t>(m_pStaticCaps->m_operationMode)) &&
                RowValueMatches(field[2], m_apsFeatureType) &&
                RowValueMatches(field[3], m_bracketMode) &&
                RowValueMatches(field[4], m_asdSceneValue) && field[5] == kConfigAnyValue &&
                field[6] == kConfigAnyValue) {
                result = field[0];
                UI_LOGI("Query TuningMode TypeFeature2Snapshot %d", result);
            }
        }
        return result;
    }
    if (type == TypeFeature1Snapshot) {
        const uint32_t count = m_pStaticCaps != nullptr
                                   ? std::min<uint32_t>(m_pStaticCaps->m_feature1TuningPolicyNum,
                                                        kMaxTuningPolicyEntries)
                                   : 0;
        if (count == 0) {
            return kNoTuningMode;
        }
        const LumoraCameraInfo* info = m_pStaticCaps->m_pCameraInfoMap;
        const int32_t cameraFlag = info != nullptr ? static_cast<uint8_t>(info->supportFlag) : 0;
        const int32_t hasFaceBeauty = m_faceBeautyLevel > 0 ? 1 : 0;
        const int32_t isBracket12 = m_bracketMode == 12 ? 1 : 0;
        int32_t result = kNoTuningMode;
        for (uint32_t i = 0; i < count; ++i) {
            const int32_t* field = m_pStaticCaps->m_feature1TuningPolicy[i].value;
            if (RowValueMatches(field[1], static_cast<int32_t>(m_pStaticCaps->m_operationMode)) &&
                RowValueMatches(field[2], m_apsFeatureType) &&
                RowValueMatches(field[3], m_bracketMode) && RowValueMatches(field[4], cameraFlag) &&
                RowValueMatches(field[5], hasFaceBeauty) &&
                RowValueMatches(field[6], isBracket12) &&
                RowValueMatches(field[7], m_isFromExtension)) {
                result = field[0];
                UI_LOGI("Query TuningMode TypeFeature1Snapshot %d", result);
            }
        }
        return result;
    }
    UI_LOGE("Unsupport Query Tuning Type %d", static_cast<int>(type));
    return kNoTuningMode;
}

}  // namespace Lumora
