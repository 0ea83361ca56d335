// What the replay is doing, for the message written when the library aborts
// the process; the handler also removes the newest device root.
#ifndef UILAYER_SIM_ABORT_HANDLER_H
#define UILAYER_SIM_ABORT_HANDLER_H

#include <functional>
#include <string>

namespace UilayerSim {

void SetCurrentStep(const std::string& description);
void InstallAbortHandler();

// Runs `body`. When the library aborts the process during it (it raises
// SIGABRT from its own code, outside any allocator or lock), the abort ends
// `body` there instead of the process: false comes back. What `body` had
// on its stack is left behind.
bool RunUnlessAborted(const std::function<void()>& body);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_ABORT_HANDLER_H
