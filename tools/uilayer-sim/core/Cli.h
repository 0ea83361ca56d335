// The command line of uilayer-sim: a table of subcommands with their options
// and help, parsed the way command-line tools are (help and version on
// standard output with status 0, a wrong command line on standard error with
// status 2 and a "did you mean" for near misses).
#ifndef UILAYER_SIM_CLI_H
#define UILAYER_SIM_CLI_H

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace UilayerSim {

constexpr int kExitDone = 0;
constexpr int kExitFindings = 1;
constexpr int kExitUsage = 2;
constexpr int kExitSetup = 3;
// A replay in which the library aborted the process in some session: the
// other sessions reported.
constexpr int kExitAborted = 4;

struct OptionSpec {
    const char* name;   // "--json"
    const char* value;  // what it takes ("text|json"), or nullptr for a switch
    const char* help;
};

// A parsed command line of one subcommand.
struct CommandLine {
    std::map<std::string, std::string> options;  // switches map to ""; the last value given
    std::vector<std::pair<std::string, std::string>> given;  // every option, in order
    std::vector<std::string> operands;

    bool Has(const std::string& name) const { return options.count(name) != 0; }
    std::string Value(const std::string& name, const std::string& fallback) const;
    // Every value of an option that may be given more than once, in order.
    std::vector<std::string> Values(const std::string& name) const;
};

struct Subcommand {
    const char* name;      // "lint"
    const char* operands;  // "CONFIG..."
    const char* summary;   // one line for the overview
    const char* help;      // what it does, shown by --help
    std::vector<OptionSpec> options;
    size_t minOperands;
    size_t maxOperands;
    int (*run)(const CommandLine& line);
};

// A wrong command line; the message says what is wrong, in one line.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Program {
    const char* version;
    const char* about;                 // shown by --help below the usage lines
    std::vector<Subcommand> commands;  // the first is the default
};

// Runs the command line `args` (without the program name). The first
// subcommand is the default: "uilayer-sim FILE" runs it as well as
// "uilayer-sim NAME FILE". Returns the exit status.
int RunCommandLine(const Program& program, const std::vector<std::string>& args);

// A bash completion script of the program's subcommands, their options, the
// choices of options and operands written as "a|b|c", and file names for the
// rest ("uilayer-sim completion bash").
std::string BashCompletion(const Program& program);

// Writes "uilayer-sim: PATH: reason" to standard error.
void ReportUnreadable(const std::string& path, const std::string& reason);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_CLI_H
