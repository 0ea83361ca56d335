// Further host-only hooks of the platform stand-ins, for tests and host tools.
#ifndef HOST_PLATFORM_EXTRAS_H
#define HOST_PLATFORM_EXTRAS_H

#include <vector>

namespace HostPlatform {

// Arguments of the OLog::SwitchLogEnable calls since the last call, oldest first.
std::vector<int> TakeSwitchLogEnableCalls();

}  // namespace HostPlatform

#endif  // HOST_PLATFORM_EXTRAS_H
