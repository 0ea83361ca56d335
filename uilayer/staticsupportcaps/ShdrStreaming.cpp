#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
uint32_t StaticSupportCapabilities::ConfigSupportCapsSHDR() {
    return 0;
}
uint32_t StaticSupportCapabilities::ConfigureSensorDCGVSStreamingByCaps() {
    return 0;
}
}  // namespace Lumora
