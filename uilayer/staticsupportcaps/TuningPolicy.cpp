#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
void StaticSupportCapabilities::ConfigAIAF() {}
void StaticSupportCapabilities::ConfigStaticTuningPolicy() {}
void StaticSupportCapabilities::ConfigStarModeAEInfo() {}
}  // namespace Lumora
