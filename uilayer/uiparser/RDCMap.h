// Ring of per-request records, one slot per frame number modulo the capacity,
// plus the applied capabilities of the latest capture result.
#ifndef LUMORA_RDC_MAP_H
#define LUMORA_RDC_MAP_H

#include <hardware/camera3.h>

#include <cstdint>
#include <vector>

#include "IuiLayer.h"
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

    // The record of `frameNumber`, or null (with an error line) when its slot
    // holds another frame or was never written.
    RequestDesiredCapabilities* GetRDC(unsigned int frameNumber);

    bool IsRequestSupportCaps(unsigned int frameNumber, DesiredSupportCaps caps,
                              QueryCapsType type);
    _CapsBitset GetRequestSupportCaps(unsigned int frameNumber, QueryCapsType type);
    unsigned int GetOriginalRequestTuningMode(unsigned int frameNumber, QueryTuningType type);

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
