#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
uint32_t StaticSupportCapabilities::ParseSessionParams(const camera3_stream_configuration* config) {
    InitPackageName(const_cast<camera3_stream_configuration*>(config));
    return 0;
}
}  // namespace Lumora
