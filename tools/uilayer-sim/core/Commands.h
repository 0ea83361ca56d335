// The subcommands of uilayer-sim, each run on its parsed command line and
// returning the exit status.
#ifndef UILAYER_SIM_COMMANDS_H
#define UILAYER_SIM_COMMANDS_H

#include "core/Cli.h"

namespace UilayerSim {

// SCENARIO [--json] [--log] [--no-lint]
int RunReplayCommand(const CommandLine& line);
// SCENARIO CAP [--session N] [--camera logical|K] [--frame F] [--json]
int RunExplainCommand(const CommandLine& line);
// [--format text|json] CONFIG...
int RunLintCommand(const CommandLine& line);
// caps|tags|formats|roles
int RunNamesCommand(const CommandLine& line);
int RunSweepTableCommand(const CommandLine& line);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_COMMANDS_H
