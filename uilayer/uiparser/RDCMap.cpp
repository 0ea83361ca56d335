#include "uiparser/RDCMap.h"

#include "common/Log.h"

namespace Lumora {

RDCMap::RDCMap(unsigned int capacity, const StaticSupportCapabilities* pStaticCaps)
    : m_rdcList(capacity),
      m_capacity(capacity),
      m_lastFrameNumber(0),
      m_pStaticCaps(pStaticCaps),
      m_slotWritten(capacity, 0) {}

RDCMap::~RDCMap() {}

RequestDesiredCapabilities* RDCMap::GetRDC(unsigned int frameNumber) {
    const unsigned int slot = SlotOf(frameNumber);
    if (slot < m_rdcList.size()) {
        RequestDesiredCapabilities& record = m_rdcList[slot];
        if (m_slotWritten[slot] != 0 && record.GetFrameNumber() == frameNumber) {
            return &record;
        }
        UI_LOGE("GetRDC return NULL. index:%d frameNum:%d GetFrameworkFramenum:%d", slot,
                frameNumber, record.GetFrameNumber());
        return nullptr;
    }
    UI_LOGE("GetRDC return NULL. index:%d frameNum:%d GetFrameworkFramenum:%d", slot, frameNumber,
            kUnusedFrameNumber);
    return nullptr;
}

bool RDCMap::IsRequestSupportCaps(unsigned int frameNumber, DesiredSupportCaps caps,
                                  QueryCapsType type) {
    const RequestDesiredCapabilities* record = GetRDC(frameNumber);
    if (record == nullptr) {
        UI_LOGE("Failed to get RDC for frame %u", frameNumber);
        return false;
    }
    return record->IsRequestSupportCaps(caps, type);
}

_CapsBitset RDCMap::GetRequestSupportCaps(unsigned int frameNumber, QueryCapsType type) {
    const RequestDesiredCapabilities* record = GetRDC(frameNumber);
    if (record == nullptr) {
        UI_LOGE("Failed to get RDC for frame %u", frameNumber);
        return _CapsBitset();
    }
    return record->GetRequestSupportCaps(type);
}

unsigned int RDCMap::GetOriginalRequestTuningMode(unsigned int frameNumber, QueryTuningType type) {
    const RequestDesiredCapabilities* record = GetRDC(frameNumber);
    if (record == nullptr) {
        UI_LOGE("Failed to get RDC for frame %u", frameNumber);
        return 0xFFFFFFFFu;
    }
    return static_cast<unsigned int>(record->GetOriginalRequestTuningMode(type));
}

int RDCMap::UpdatePerRequestCaps(const camera3_capture_request* request) {
    if (request == nullptr) {
        UI_LOGE("Invalid request: null");
        return 4;
    }
    const unsigned int frameNumber = request->frame_number;
    m_lastFrameNumber = frameNumber;
    const unsigned int slot = SlotOf(frameNumber);
    if (slot >= m_rdcList.size()) {
        return 4;
    }
    m_slotWritten[slot] = 1;
    return m_rdcList[slot].UpdatePerRequestCaps(request, m_pStaticCaps, m_lastResult);
}

int RDCMap::UpdateResultAppliedCaps(const camera3_capture_result* result) {
    return m_lastResult.UpdateResultAppliedCaps(result, m_pStaticCaps);
}

}  // namespace Lumora
