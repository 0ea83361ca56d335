// One combination of a sweep configured the way a replay configures a
// session: the same device root, camera table, configuration and properties.
// This is the only place the sweep reaches the replay and device glue.
#ifndef UILAYER_SIM_SWEEP_SESSION_H
#define UILAYER_SIM_SWEEP_SESSION_H

#include <string>

#include "core/Scenario.h"
#include "sweep/SweepOutcome.h"

namespace UilayerSim {

// Replays `session` (its steps are replaced) on the device, configuration,
// properties and files of `device`, asks for the sensor mode of the session
// caps, and reads back codes, roles, caps and pipeline (the status follows
// from the codes once the outcome has crossed the pipe). The library's log is
// on, so that an abort handler can show the last lines. Throws
// std::runtime_error when the device cannot be set up.
CombinationOutcome ConfigureCombination(const Scenario& device, SessionSetup session,
                                        const std::string& siblingRoot);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SWEEP_SESSION_H
