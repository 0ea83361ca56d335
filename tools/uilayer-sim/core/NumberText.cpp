#include "core/NumberText.h"

#include <HostConfigValues.h>

#include <cstdint>

namespace UilayerSim {

bool IsIntegerSyntax(const std::string& text) {
    bool negative = false;
    uint64_t magnitude = 0;
    return HostPlatform::ParseIntegerMagnitude(text, &negative, &magnitude) !=
           HostPlatform::NumberStatus::NotANumber;
}

}  // namespace UilayerSim
