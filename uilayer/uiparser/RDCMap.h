// Ring of per-request records, one slot per frame number modulo the capacity,
// plus the applied capabilities of the latest capture result.
#ifndef LUMORA_RDC_MAP_H
#define LUMORA_RDC_MAP_H

#include <hardware/camera3.h>

#include <cstdint>
#include <vector>

#include "IuiLayer.h"
#include "common/Log.h"
#include "common/Status.h"
#include "requestdesiredcaps/RequestDesiredCapabilities.h"
#include "resultappliedcaps/ResultAppliedCapabilities.h"

namespace Lumora {

class StaticSupportCapabilities;

class RDCMap {
public:
    RDCMap(unsigned int capacity, const StaticSupportCapabilities* pStaticCaps);
    ~RDCMap();
    RDCMap(const RDCMap&) = delete;
    RDCMap& operator=(const RDCMap&) = delete;

    // The ring queries live in this header: their log lines carry its name.

    // The record of `frameNumber`, or null (with an error line) when its slot
    // holds another frame or was never written.
    RequestDesiredCapabilities* GetRDC(unsigned int frameNumber) {
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
        UI_LOGE("GetRDC return NULL. index:%d frameNum:%d GetFrameworkFramenum:%d", slot,
                frameNumber, kUnusedFrameNumber);
        return nullptr;
    }

    bool IsRequestSupportCaps(unsigned int frameNumber, DesiredSupportCaps caps,
                              QueryCapsType type) {
        const RequestDesiredCapabilities* record = GetRDC(frameNumber);
        if (record == nullptr) {
            UI_LOGE("Failed to get RDC for frame %u", frameNumber);
            return false;
        }
        return record->IsRequestSupportCaps(caps, type);
    }

    _CapsBitset GetRequestSupportCaps(unsigned int frameNumber, QueryCapsType type) {
        const RequestDesiredCapabilities* record = GetRDC(frameNumber);
        if (record == nullptr) {
            UI_LOGE("Failed to get RDC for frame %u", frameNumber);
            return _CapsBitset();
        }
        return record->GetRequestSupportCaps(type);
    }

    unsigned int GetOriginalRequestTuningMode(unsigned int frameNumber, QueryTuningType type) {
        const RequestDesiredCapabilities* record = GetRDC(frameNumber);
        if (record == nullptr) {
            UI_LOGE("Failed to get RDC for frame %u", frameNumber);
            return static_cast<unsigned int>(kNoTuningMode);
        }
        return static_cast<unsigned int>(record->GetOriginalRequestTuningMode(type));
    }

    int UpdatePerRequestCaps(const camera3_capture_request* request);
    int UpdateResultAppliedCaps(const camera3_capture_result* result);

    ResultAppliedCapabilities& GetLastResult() { return m_lastResult; }
    unsigned int GetCapacity() const { return m_capacity; }

private:
    unsigned int SlotOf(unsigned int frameNumber) const {
        return m_capacity != 0 ? frameNumber % m_capacity : frameNumber;
    }

    // Constructed once (all slots), never grown.
    std::vector<RequestDesiredCapabilities> m_rdcList;
    ResultAppliedCapabilities m_lastResult;
    uint32_t m_capacity;
    uint32_t m_lastFrameNumber;
    const StaticSupportCapabilities* m_pStaticCaps;
    // Whether a slot has held a request yet; an unwritten slot matches no frame.
    std::vector<uint8_t> m_slotWritten;
};

}  // namespace Lumora

#endif  // LUMORA_RDC_MAP_H
