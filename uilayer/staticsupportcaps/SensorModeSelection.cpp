#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
int32_t StaticSupportCapabilities::GetSensorModeIndexByCaps(_CapsBitset, QueryCapsType,
                                                            signed char&) {
    return 6;
}
void StaticSupportCapabilities::StandardizeSensorCapsMask(_CapsBitset&) const {}
int32_t StaticSupportCapabilities::GetSensorModeIndexByCapsForOtherCam(_CapsBitset, QueryCapsType,
                                                                       signed char& index) {
    index = static_cast<signed char>(0xFF);
    return 0;
}
}  // namespace Lumora
