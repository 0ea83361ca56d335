// What the replay is doing, for the message written when the library aborts
// the process; the handler also removes the newest device root.
#ifndef UILAYER_SIM_ABORT_HANDLER_H
#define UILAYER_SIM_ABORT_HANDLER_H

#include <string>

namespace UilayerSim {

void SetCurrentStep(const std::string& description);
void InstallAbortHandler();

}  // namespace UilayerSim

#endif  // UILAYER_SIM_ABORT_HANDLER_H
