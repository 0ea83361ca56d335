#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
uint32_t StaticSupportCapabilities::ConfigWarmStart() {
    return 0;
}
int StaticSupportCapabilities::GetWarmStartStateByCaps(unsigned int, unsigned int&, int&) const {
    return 0;
}
}  // namespace Lumora
