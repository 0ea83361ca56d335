// The command line of uilayer-sim (Cli.h) and what its subcommands share (Commands.h).
#include "core/Cli.h"

#include <HostConfigText.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/Commands.h"
#include "core/ScenarioReader.h"
#include "core/Suggest.h"

namespace UilayerSim {

namespace {

constexpr const char* kProgram = "uilayer-sim";
constexpr int kHelpColumn = 24;
constexpr const char* kHelpHelp =
    "usage: uilayer-sim help [SUBCOMMAND]\n\n"
    "Shows the help of SUBCOMMAND (its usage, what it does, its options and exit\n"
    "status), or the overview of every subcommand without one. 'uilayer-sim\n"
    "SUBCOMMAND --help' shows the same.\n\n"
    "exit status: 0 shown, 2 unknown subcommand.\n";
constexpr const char* kCompletionHelp =
    "usage: uilayer-sim completion bash\n\n"
    "Prints a bash completion script of the subcommands, their options and the\n"
    "choices of their values: source <(uilayer-sim completion bash).\n\n"
    "exit status: 0 printed, 2 another shell.\n";

std::string UsageLine(const Subcommand& command, bool isDefault) {
    std::string line = kProgram;
    if (!isDefault) {
        line += std::string(" ") + command.name;
    }
    if (*command.operands != '\0') {
        line += std::string(" ") + command.operands;
    }
    for (const OptionSpec& option : command.options) {
        line += std::string(" [") + option.name +
                (option.value ? std::string(" ") + option.value : "") + "]";
    }
    return line;
}

// "  --format text|json    help", the help starting at one column.
std::string HelpRow(const std::string& left, const char* help) {
    std::string row = "  " + left;
    row += row.size() < kHelpColumn ? std::string(kHelpColumn - row.size(), ' ') : "  ";
    return row + help + "\n";
}

std::string CommandHelp(const Subcommand& command, bool isDefault) {
    std::string text = "usage: " + UsageLine(command, isDefault) + "\n\n" + command.help + "\n";
    text += "\noptions:\n";
    for (const OptionSpec& option : command.options) {
        text += HelpRow(
            std::string(option.name) + (option.value ? std::string(" ") + option.value : ""),
            option.help);
    }
    return text + HelpRow("-h, --help", "show this help and exit");
}

std::string ShortUsage(const Program& program) {
    std::string text;
    for (size_t i = 0; i < program.commands.size(); ++i) {
        text += (i == 0 ? "usage: " : "       ") + UsageLine(program.commands[i], i == 0) + "\n";
    }
    text += std::string("       ") + kProgram +
            " help [SUBCOMMAND] | completion bash | --help | --version\n";
    return text;
}

std::string Overview(const Program& program) {
    std::string text = ShortUsage(program) + "\n" + program.about + "\n";
    text += "\nsubcommands:\n";
    for (const Subcommand& command : program.commands) {
        text += HelpRow(command.name, command.summary);
    }
    text += HelpRow("help", "show the help of a subcommand");
    text += HelpRow("completion bash", "print a bash completion script");
    return text + "\nRun '" + kProgram + " SUBCOMMAND --help' for the options of a subcommand.\n";
}

std::vector<std::string> CommandNames(const Program& program) {
    std::vector<std::string> names;
    for (const Subcommand& command : program.commands) {
        names.push_back(command.name);
    }
    return names;
}

const Subcommand* FindCommand(const Program& program, const std::string& name) {
    const auto found =
        std::find_if(program.commands.begin(), program.commands.end(),
                     [&](const Subcommand& command) { return name == command.name; });
    return found != program.commands.end() ? &*found : nullptr;
}

std::string SuggestQuoted(const std::string& name, const std::vector<std::string>& known) {
    const std::string closest = ClosestName(name, known);
    return closest.empty() ? std::string() : " (did you mean '" + closest + "'?)";
}

// The operand's name without brackets or dots: "CONFIG" of "CONFIG...".
std::string OperandName(const Subcommand& command) {
    std::string name;
    for (const char* c = command.operands; *c != '\0' && *c != ' '; ++c) {
        if (*c != '[' && *c != ']' && *c != '.') {
            name += *c;
        }
    }
    return name;
}

// Parses the arguments after the subcommand's name; false when they ask for
// help, which is then written.
bool Parse(const Subcommand& command, bool isDefault, const std::vector<std::string>& args,
           CommandLine* line) {
    std::vector<std::string> known = {"--help"};
    for (const OptionSpec& option : command.options) {
        known.push_back(option.name);
    }
    bool operandsOnly = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (operandsOnly || arg.size() < 2 || arg[0] != '-') {
            line->operands.push_back(arg);
            continue;
        }
        if (arg == "--") {
            operandsOnly = true;
            continue;
        }
        if (arg == "-h" || arg == "--help") {
            fputs(CommandHelp(command, isDefault).c_str(), stdout);
            return false;
        }
        const size_t equals = arg.find('=');
        const std::string name = arg.substr(0, equals);
        const auto match =
            std::find_if(command.options.begin(), command.options.end(),
                         [&](const OptionSpec& option) { return name == option.name; });
        if (match == command.options.end()) {
            throw UsageError("unknown option '" + name + "'" + SuggestQuoted(name, known));
        }
        if (match->value == nullptr) {
            if (equals != std::string::npos) {
                throw UsageError("option '" + name + "' takes no value");
            }
            line->options[name] = "";
        } else if (equals != std::string::npos) {
            line->options[name] = arg.substr(equals + 1);
        } else if (i + 1 < args.size()) {
            line->options[name] = args[++i];
        } else {
            throw UsageError("option '" + name + "' needs a value (" + match->value + ")");
        }
        line->given.emplace_back(name, line->options[name]);
    }
    // Standard input can be read once.
    if (std::count(line->operands.begin(), line->operands.end(), "-") > 1) {
        throw UsageError("standard input ('-') can be given only once");
    }
    if (line->operands.size() < command.minOperands) {
        throw UsageError("no " + OperandName(command) + " given");
    }
    if (line->operands.size() > command.maxOperands) {
        throw UsageError("unexpected argument '" + line->operands[command.maxOperands] + "'");
    }
    return true;
}

int RunCommand(const Subcommand& command, bool isDefault, const std::vector<std::string>& args) {
    CommandLine line;
    try {
        if (!Parse(command, isDefault, args, &line)) {
            return kExitDone;
        }
        return command.run(line);
    } catch (const UsageError& error) {
        fprintf(stderr, "%s: %s\nusage: %s\nRun '%s%s%s --help' for more.\n", kProgram,
                error.what(), UsageLine(command, isDefault).c_str(), kProgram, isDefault ? "" : " ",
                isDefault ? "" : command.name);
        return kExitUsage;
    }
}

bool LooksLikePath(const std::string& arg) {
    return arg.find('/') != std::string::npos || arg.find('.') != std::string::npos ||
           access(arg.c_str(), F_OK) == 0;
}

}  // namespace

std::string CommandLine::Value(const std::string& name, const std::string& fallback) const {
    const auto it = options.find(name);
    return it == options.end() ? fallback : it->second;
}

std::vector<std::string> CommandLine::Values(const std::string& name) const {
    std::vector<std::string> values;
    for (const auto& option : given) {
        if (option.first == name) {
            values.push_back(option.second);
        }
    }
    return values;
}

int RunCommandLine(const Program& program, const std::vector<std::string>& args) {
    const Subcommand& fallback = program.commands.front();
    if (!args.empty() && (args[0] == "-h" || args[0] == "--help")) {
        fputs(Overview(program).c_str(), stdout);
        return kExitDone;
    }
    if (!args.empty() && args[0] == "--version") {
        printf("%s %s\n", kProgram, program.version);
        return kExitDone;
    }
    if (!args.empty() && args[0] == "help") {
        if (args.size() > 1 && (args[1] == "help" || args[1] == "completion")) {
            fputs(args[1] == "help" ? kHelpHelp : kCompletionHelp, stdout);
            return kExitDone;
        }
        const Subcommand* command = args.size() > 1 ? FindCommand(program, args[1]) : nullptr;
        if (args.size() > 1 && command == nullptr) {
            fprintf(stderr, "%s: unknown subcommand '%s'%s\n", kProgram, args[1].c_str(),
                    SuggestQuoted(args[1], CommandNames(program)).c_str());
            return kExitUsage;
        }
        fputs(command != nullptr ? CommandHelp(*command, false).c_str() : Overview(program).c_str(),
              stdout);
        return kExitDone;
    }
    if (!args.empty() && args[0] == "completion") {
        if (args.size() == 2 && (args[1] == "--help" || args[1] == "-h")) {
            fputs(kCompletionHelp, stdout);
            return kExitDone;
        }
        if (args.size() != 2 || args[1] != "bash") {
            fprintf(stderr, "%s: completion takes one shell: bash\n", kProgram);
            return kExitUsage;
        }
        fputs(BashCompletion(program).c_str(), stdout);
        return kExitDone;
    }
    if (args.empty()) {
        fprintf(stderr, "%s: no %s given\n%sRun '%s --help' for more.\n", kProgram,
                OperandName(fallback).c_str(), ShortUsage(program).c_str(), kProgram);
        return kExitUsage;
    }
    const Subcommand* command = FindCommand(program, args[0]);
    if (command != nullptr) {
        return RunCommand(*command, false, std::vector<std::string>(args.begin() + 1, args.end()));
    }
    const std::string closest = ClosestName(args[0], CommandNames(program));
    if (args[0][0] != '-' && !closest.empty() && !LooksLikePath(args[0])) {
        fprintf(stderr, "%s: unknown subcommand '%s' (did you mean '%s'?)\n", kProgram,
                args[0].c_str(), closest.c_str());
        return kExitUsage;
    }
    return RunCommand(fallback, true, args);
}

void ReportUnreadable(const std::string& path, const std::string& reason) {
    fprintf(stderr, "%s: %s: %s\n", kProgram, path.c_str(), reason.c_str());
}

// What the subcommands share (Commands.h).
std::string SiblingRoot() {
    const char* root = getenv("UILAYER_SIM_SIBLING_ROOT");
    return root != nullptr && *root != '\0' ? root : UILAYER_SIM_SIBLING_ROOT;
}

// A scenario this large gets a line on a terminal while it is read.
constexpr size_t kLargeScenarioBytes = size_t{1} << 20;

bool LoadScenario(const std::string& path, Scenario* scenario) {
    std::string text;
    std::string reason;
    if (!ReadWholeFile(path, &text, &reason)) {
        ReportUnreadable(path, reason);
        return false;
    }
    // Reading a scenario of megabytes takes seconds: a terminal is told.
    const bool told = text.size() >= kLargeScenarioBytes && isatty(STDERR_FILENO) != 0;
    if (told) {
        fprintf(stderr, "uilayer-sim: reading %s\033[K", path.c_str());
        fflush(stderr);
    }
    try {
        *scenario = ReadScenarioText(text, path);
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s%s\n", told ? "\r\033[K" : "", error.what());
        return false;
    }
    if (told) {
        fprintf(stderr, "\r\033[K");
    }
    for (const std::string& warning : scenario->warnings) {
        fprintf(stderr, "warning: %s\n", warning.c_str());
    }
    return true;
}

bool LoadConfiguration(const std::string& path, Scenario* scenario) {
    std::string text;
    std::string reason;
    if (!ReadWholeFile(path, &text, &reason)) {
        ReportUnreadable(path, reason);
        return false;
    }
    const HostPlatform::ConfigText parsed = HostPlatform::ReadConfigText(text);
    if (const HostPlatform::ConfigProblem* problem = parsed.FirstMalformed()) {
        fprintf(stderr, "%s:%d: %s: the configuration store refuses the whole file\n", path.c_str(),
                problem->line, HostPlatform::DescribeConfigProblem(*problem).c_str());
        return false;
    }
    scenario->configText = text;
    scenario->configName = path.substr(path.rfind('/') + 1);
    return true;
}

void WriteOut(const std::string& text) {
    fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace UilayerSim
