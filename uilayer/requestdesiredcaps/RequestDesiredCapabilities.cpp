#include "requestdesiredcaps/RequestDesiredCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
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
      m_pStaticCaps(nullptr) {}

RequestDesiredCapabilities::~RequestDesiredCapabilities() {}

int32_t RequestDesiredCapabilities::UpdatePerRequestCaps(const camera3_capture_request* request,
                                                         const StaticSupportCapabilities*,
                                                         ResultAppliedCapabilities) {
    m_frameNumber = request->frame_number;
    return 4;
}

void RequestDesiredCapabilities::ParseOriginalRequestSetting(const camera3_capture_request*) {}

bool RequestDesiredCapabilities::IsRequestSupportCaps(DesiredSupportCaps, QueryCapsType) const {
    return false;
}

_CapsBitset RequestDesiredCapabilities::GetRequestSupportCaps(QueryCapsType) const {
    return _CapsBitset();
}

std::vector<_UIStreamInfo>* RequestDesiredCapabilities::GetStreamByStreamType(StreamType) {
    m_noStreams.clear();
    return &m_noStreams;
}

int32_t RequestDesiredCapabilities::GetOriginalRequestTuningMode(QueryTuningType) const {
    return -1;
}

}  // namespace Lumora
