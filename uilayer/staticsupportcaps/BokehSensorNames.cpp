#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
uint32_t StaticSupportCapabilities::ConfigSupportCapsBokeh(const camera3_stream_configuration*) {
    return 0;
}
void StaticSupportCapabilities::ConfigSensorNameMap() {}
}  // namespace Lumora
