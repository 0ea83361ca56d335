// uilayer-sim sweep DEVICE [--config FILE] [--camera ID] [--operation-mode M]
//                          [--level legacy|limited|full|3] [--raw] [--ten-bit]
//                          [--use-cases] [--json]
#ifndef UILAYER_SIM_SWEEP_COMMAND_H
#define UILAYER_SIM_SWEEP_COMMAND_H

#include <string>
#include <vector>

namespace UilayerSim {

// The usage line of the sweep subcommand, without "usage: ".
extern const char* const kSweepUsage;

// Runs the sweep subcommand on the arguments after "sweep" and prints the
// report. `siblingRoot` is the device root that holds the host sibling camera
// layer. Returns 0 when the sweep ran (whatever its combinations came to), 2
// for a bad command line or an unreadable or wrong device, configuration or
// scenario, 3 when the device cannot be set up.
int RunSweepCommand(const std::vector<std::string>& args, const std::string& siblingRoot);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SWEEP_COMMAND_H
