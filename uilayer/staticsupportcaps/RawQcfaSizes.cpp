#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
void StaticSupportCapabilities::ConfigRAWQCFAFullSize() {}
uint32_t StaticSupportCapabilities::ConfigSupportCaps2x2QCFA() {
    return 0;
}
uint32_t StaticSupportCapabilities::ConfigXCFA2SwitchZoomRatio() {
    return 0;
}
float StaticSupportCapabilities::ProcessRemapZoomRatio(char*, int) {
    return 1.0f;
}
}  // namespace Lumora
