#include "resultappliedcaps/ResultAppliedCapabilities.h"

#include <cstring>

namespace Lumora {

ResultAppliedCapabilities::ResultAppliedCapabilities() {
    Initialize();
}

ResultAppliedCapabilities::~ResultAppliedCapabilities() {}

void ResultAppliedCapabilities::Initialize() {
    m_isEnableMlft = 0;
    memset(m_lastReqCameraAECInfo, 0, sizeof(m_lastReqCameraAECInfo));
}

// Placeholder: filled in with its own concern.
int32_t ResultAppliedCapabilities::UpdateResultAppliedCaps(const camera3_capture_result*,
                                                           const StaticSupportCapabilities*) {
    return 0;
}

}  // namespace Lumora
