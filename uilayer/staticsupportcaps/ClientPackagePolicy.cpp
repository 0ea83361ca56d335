#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
uint32_t StaticSupportCapabilities::InitPackageName(camera3_stream_configuration*) {
    return 0;
}
}  // namespace Lumora
