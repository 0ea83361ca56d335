#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
uint32_t StaticSupportCapabilities::ConfigEISMode(const camera3_stream_configuration*) {
    return 0;
}
uint32_t StaticSupportCapabilities::ConfigSupportCapsFlowControl(
    const camera3_stream_configuration*) {
    return 0;
}
uint32_t StaticSupportCapabilities::ConfigVideoWatermarkEnable(
    const camera3_stream_configuration*) {
    return 0;
}
uint32_t StaticSupportCapabilities::ConfigSupportCapsProVideoIZoom(
    const camera3_stream_configuration*) {
    return 0;
}
}  // namespace Lumora
