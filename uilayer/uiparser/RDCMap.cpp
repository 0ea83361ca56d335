#include "uiparser/RDCMap.h"

#include "common/Log.h"
#include "common/Status.h"

namespace Lumora {

RDCMap::RDCMap(unsigned int capacity, const StaticSupportCapabilities* pStaticCaps)
    : m_rdcList(capacity),
      m_capacity(capacity),
      m_lastFrameNumber(0),
      m_pStaticCaps(pStaticCaps),
      m_slotWritten(capacity, 0) {}

RDCMap::~RDCMap() {}

int RDCMap::UpdatePerRequestCaps(const camera3_capture_request* request) {
    if (request == nullptr) {
        UI_LOGE("Invalid request: null");
        return kStatusInvalidArgument;
    }
    const unsigned int frameNumber = request->frame_number;
    m_lastFrameNumber = frameNumber;
    const unsigned int slot = SlotOf(frameNumber);
    if (slot >= m_rdcList.size()) {
        return kStatusInvalidArgument;
    }
    m_slotWritten[slot] = 1;
    return m_rdcList[slot].UpdatePerRequestCaps(request, m_pStaticCaps, m_lastResult);
}

int RDCMap::UpdateResultAppliedCaps(const camera3_capture_result* result) {
    return m_lastResult.UpdateResultAppliedCaps(result, m_pStaticCaps);
}

}  // namespace Lumora
