// The subcommands of uilayer-sim, each run on its parsed command line and
// returning the exit status; each is defined in its command's folder. Also
// what the commands share: the sibling root, reading the scenario, writing out.
#ifndef UILAYER_SIM_COMMANDS_H
#define UILAYER_SIM_COMMANDS_H

#include <string>

#include "core/Cli.h"
#include "core/Scenario.h"

namespace UilayerSim {

struct ReplayOptions;

// Each command's operands and options are in the command table of main.cpp.
int RunReplayCommand(const CommandLine& line);
int RunDiffCommand(const CommandLine& line);
int RunExplainCommand(const CommandLine& line);
int RunLintCommand(const CommandLine& line);
int RunNamesCommand(const CommandLine& line);
int RunSweepCommand(const CommandLine& line);
int RunWhatIfCommand(const CommandLine& line);

// The root holding the host sibling camera layer: UILAYER_SIM_SIBLING_ROOT, or
// the build tree's.
std::string SiblingRoot();
// Reads the scenario of the command line; false (after saying why on
// standard error) when it cannot be read or has a mistake.
bool LoadScenario(const std::string& path, Scenario* scenario);
// Replaces the scenario's configuration with the file at `path`; false (after
// saying why) when it cannot be read or the configuration store refuses it.
bool LoadConfiguration(const std::string& path, Scenario* scenario);
// The options of a replay run from the command line, with the abort and
// interrupt handlers installed.
ReplayOptions CommandReplayOptions(bool log);
// A misspelt group or key silently turns a rule off: unless --no-lint, the
// scenario's configuration is linted first and each finding is a warning on
// standard error; the replay, its output and its status do not change.
void LintBeforeReplay(const CommandLine& line, const Scenario& scenario);
void WriteOut(const std::string& text);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_COMMANDS_H
