// The capabilities one capture request needs, for the logical camera and for
// each physical camera, the streams it carries buffers for, and the scalar
// values of its settings. Records live in the request ring and are reused
// every 256 frames.
#ifndef LUMORA_REQUEST_DESIRED_CAPABILITIES_H
#define LUMORA_REQUEST_DESIRED_CAPABILITIES_H

#include <hardware/camera3.h>

#include <cstdint>
#include <vector>

#include "IuiLayer.h"
#include "resultappliedcaps/ResultAppliedCapabilities.h"

namespace Lumora {

class StaticSupportCapabilities;

constexpr uint32_t kRequestCameraCaps = 8;
constexpr uint32_t kUnusedFrameNumber = 65535;

class RequestDesiredCapabilities {
public:
    RequestDesiredCapabilities();
    ~RequestDesiredCapabilities();
    RequestDesiredCapabilities(const RequestDesiredCapabilities&) = default;
    RequestDesiredCapabilities& operator=(const RequestDesiredCapabilities&) = default;

    // Computes the record for one request; 4 when neither a sensor mode list nor
    // an enabled warm start decided the sensor mode bits, else 0.
    int32_t UpdatePerRequestCaps(const camera3_capture_request* request,
                                 const StaticSupportCapabilities* session,
                                 ResultAppliedCapabilities lastResult);
    void ParseOriginalRequestSetting(const camera3_capture_request* request);

    bool IsRequestSupportCaps(DesiredSupportCaps caps, QueryCapsType type) const;
    _CapsBitset GetRequestSupportCaps(QueryCapsType type) const;
    std::vector<_UIStreamInfo>* GetStreamByStreamType(StreamType type);
    int32_t GetOriginalRequestTuningMode(QueryTuningType type) const;

    uint32_t GetFrameNumber() const { return m_frameNumber; }

private:
    // The caps a query type names: the logical camera's, a physical camera's,
    // or an empty set for an id without a slot.
    const _CapsBitset& CapsOf(QueryCapsType type) const;
    // The caps of physical camera `cam`, or null for an id without a slot (8 or more).
    _CapsBitset* CameraCaps(uint32_t cam) {
        return cam < kRequestCameraCaps ? &m_cameraCaps[cam] : nullptr;
    }
    // Sensor mode bits of the warm start record of `cam` (only with warm start exactly 1).
    void ApplyWarmStartRule(const StaticSupportCapabilities& session, uint32_t cam);
    // Bits of the exposure count that the last result planned for `cam`.
    void ApplyAecFeedback(const StaticSupportCapabilities& session, const AecInfo& aec,
                          uint32_t cam);
    // Copies the session's streams that carry a buffer in `request` and sets their bits.
    void CollectRequestStreams(const camera3_capture_request* request,
                               const StaticSupportCapabilities& session);

    // Members in this order; m_frameNumber comes first.
    uint32_t m_frameNumber;
    _CapsBitset m_primaryCaps;
    _CapsBitset m_cameraCaps[kRequestCameraCaps];
    std::vector<_UIStreamInfo> m_streamList[EStreamTypeMax];
    // The scalars below are not reset when a slot is reused: a value stays as
    // the last request of this slot that carried its tag left it.
    int32_t m_apsFeatureType;
    int32_t m_bracketMode;
    int32_t m_asdSceneValue;
    int32_t m_longExposureSceneType;
    int32_t m_faceBeautyLevel;
    int32_t m_isFromExtension;
    float m_aecLuxIndex;
    int32_t m_aecFaceNum;
    const StaticSupportCapabilities* m_pStaticCaps;
    // Answer for a stream type of 16 or more: a list that stays empty.
    std::vector<_UIStreamInfo> m_noStreams;
};

}  // namespace Lumora

#endif  // LUMORA_REQUEST_DESIRED_CAPABILITIES_H
