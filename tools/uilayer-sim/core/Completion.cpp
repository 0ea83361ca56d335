// The bash completion script of uilayer-sim, written from the command table so
// that a new subcommand or option completes without another edit.
#include <algorithm>
#include <cctype>
#include <string>

#include "core/Cli.h"

namespace UilayerSim {

namespace {

// The words of "a|b|c" or "a,b,c" when it lists choices (lower case words,
// no place holder such as FILE or N); empty otherwise.
std::string Choices(const char* value) {
    const std::string text = value != nullptr ? value : "";
    if (text.find_first_of("|,") == std::string::npos ||
        std::any_of(text.begin(), text.end(), [](char c) { return isupper(c) || c == ' '; })) {
        return "";
    }
    std::string words = text;
    std::replace_if(
        words.begin(), words.end(), [](char c) { return c == '|' || c == ','; }, ' ');
    return words;
}

// What completes the value of an option: its choices, file names for a file,
// nothing for a number or a name.
std::string ValueReply(const char* value) {
    const std::string choices = Choices(value);
    if (!choices.empty()) {
        return "COMPREPLY=($(compgen -W \"" + choices + "\" -- \"$cur\"))";
    }
    const std::string text = value;
    return text.find("FILE") != std::string::npos || text.find("DEVICE") != std::string::npos
               ? "COMPREPLY=($(compgen -f -- \"$cur\"))"
               : "COMPREPLY=()";
}

std::string Quoted(const std::string& words) {
    return "\"" + words + "\"";
}

}  // namespace

std::string BashCompletion(const Program& program) {
    std::string commands = "help completion";
    std::string alternatives;  // "replay|explain|..."
    std::string options;       // the options of each subcommand
    std::string values;        // what follows an option: its choices, or files
    std::string operands;
    for (const Subcommand& command : program.commands) {
        commands += std::string(" ") + command.name;
        alternatives += (alternatives.empty() ? "" : "|") + std::string(command.name);
        std::string names = "--help";
        for (const OptionSpec& option : command.options) {
            names += std::string(" ") + option.name;
            if (option.value != nullptr) {
                values += std::string("        ") + command.name + ":" + option.name + ") " +
                          ValueReply(option.value) + "; return ;;\n";
            }
        }
        options += std::string("        ") + command.name + ") options=" + Quoted(names) + " ;;\n";
        const std::string choices = Choices(command.operands);
        if (!choices.empty()) {
            operands +=
                std::string("        ") + command.name + ") words=" + Quoted(choices) + " ;;\n";
        }
    }
    const std::string fallback = program.commands.front().name;
    return "# bash completion of uilayer-sim: source it, or install it as\n"
           "# /usr/share/bash-completion/completions/uilayer-sim\n"
           "_uilayer_sim() {\n"
           "    local cur=\"${COMP_WORDS[COMP_CWORD]}\" prev=\"${COMP_WORDS[COMP_CWORD-1]}\"\n"
           "    local command=\"${COMP_WORDS[1]}\" options=\"\" words=\"\"\n"
           "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
           "        COMPREPLY=($(compgen -W " +
           Quoted(commands + " --help --version") +
           " -- \"$cur\") $(compgen -f -- \"$cur\"))\n"
           "        return\n"
           "    fi\n"
           "    case \"$command\" in\n"
           "        help) COMPREPLY=($(compgen -W " +
           Quoted(commands) +
           " -- \"$cur\")); return ;;\n"
           "        completion) COMPREPLY=($(compgen -W \"bash\" -- \"$cur\")); return ;;\n"
           "        " +
           alternatives +
           ") ;;\n"
           "        *) command=" +
           fallback +
           " ;;\n"
           "    esac\n"
           "    case \"$command\" in\n" +
           options +
           "    esac\n"
           "    case \"$command:$prev\" in\n" +
           values +
           "    esac\n"
           "    case \"$command\" in\n" +
           operands +
           "    esac\n"
           "    if [[ \"$cur\" == -* ]]; then\n"
           "        COMPREPLY=($(compgen -W \"$options\" -- \"$cur\"))\n"
           "    elif [ -n \"$words\" ]; then\n"
           "        COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
           "    else\n"
           "        COMPREPLY=($(compgen -f -- \"$cur\"))\n"
           "    fi\n"
           "}\n"
           "complete -o filenames -F _uilayer_sim uilayer-sim\n";
}

}  // namespace UilayerSim
