// velmoranth completion, velmoranth man
#include "cli/completion.h"

#include "cli/choice.h"
#include "cli/commands.h"
#include "cli/manual.h"
#include "cli/messages.h"
#include "cli/nearest.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <string>
#include <vector>

namespace velmoranth::cli {
namespace {

std::string_view firstWord(const Command& command) {
    return command.name.substr(0, command.name.find(' '));
}

std::string_view secondWord(const Command& command) {
    return command.name.substr(std::min(firstWord(command).size() + 1, command.name.size()));
}

// Every first word once, "help" besides.
std::vector<std::string_view> firstWords(std::span<const Command> commands) {
    std::vector<std::string_view> words;
    for (const Command& command : commands) {
        if (words.empty() || words.back() != firstWord(command)) {
            words.push_back(firstWord(command));
        }
    }
    words.emplace_back("help");
    return words;
}

std::vector<Option> optionsOf(const Command& command) {
    std::vector<Option> options(command.options.begin(), command.options.end());
    options.insert(options.end(), kCommonOptions.begin(), kCommonOptions.end());
    return options;
}

std::string joined(const auto& words) {
    std::string text;
    for (const std::string_view word : words) {
        text.append(text.empty() ? "" : " ").append(word);
    }
    return text;
}

// In single quotes for any of the shells.
std::string asWord(std::string_view text) {
    std::string result = "'";
    for (const char letter : text) {
        result += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    }
    return result + "'";
}

std::string secondWords(std::span<const Command> commands, std::string_view first) {
    std::vector<std::string_view> words;
    for (const Command& command : commands) {
        if (firstWord(command) == first && !secondWord(command).empty()) {
            words.push_back(secondWord(command));
        }
    }
    return joined(words);
}

// Each behind a blank.
std::string programOptions() {
    std::string text;
    for (const Option& option : kProgramOptions) {
        text.append(" ").append(option.name);
    }
    return text;
}

std::string bash(std::span<const Command> commands) {
    std::string text =
        "# bash completion for velmoranth\n"
        "_velmoranth() {\n"
        "    local word=${COMP_WORDS[COMP_CWORD]} words=\n"
        "    if [[ $COMP_CWORD == 1 ]]; then\n"
        "        words=" +
        asWord(joined(firstWords(commands)) + programOptions()) +
        "\n"
        "    elif [[ $COMP_CWORD == 2 && $word != -* ]]; then\n"
        "        case ${COMP_WORDS[1]} in\n"
        "            help) words=" +
        asWord(joined(firstWords(commands))) + " ;;\n";
    for (const std::string_view first : firstWords(commands)) {
        if (const std::string second = secondWords(commands, first); !second.empty()) {
            text.append("            ").append(first).append(") words=").append(asWord(second));
            text += " ;;\n";
        }
    }
    text +=
        "        esac\n"
        "    elif [[ $word == -* ]]; then\n"
        "        case \"${COMP_WORDS[1]} ${COMP_WORDS[2]}\" in\n";
    for (const Command& command : commands) {
        std::vector<std::string_view> names;
        const std::vector<Option> options = optionsOf(command);
        std::ranges::transform(options, std::back_inserter(names), &Option::name);
        const std::string pattern =
            asWord(command.name) + (secondWord(command).empty() ? "' '*" : "");
        text += "            " + pattern + ") words=" + asWord(joined(names)) + " ;;\n";
    }
    return text +
           "        esac\n"
           "    fi\n"
           "    if [[ -n $words ]]; then\n"
           "        mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n"
           "    else\n"
           "        compopt -o filenames 2>/dev/null\n"
           "        mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
           "    fi\n"
           "}\n"
           "complete -F _velmoranth velmoranth\n";
}

// What zsh's _arguments takes for an option: its name, what it does, what it takes.
std::string zshOption(const Option& option) {
    std::string summary;
    for (const char letter : option.summary) {
        summary += letter == '[' || letter == ']' || letter == ':' || letter == '\\'
                       ? std::string("\\") + letter
                       : std::string(1, letter);
    }
    std::string text;
    for (const std::string_view name : {option.shortName, option.name}) {
        if (!name.empty()) {
            std::string spec = option.repeat == Repeat::often ? "*" : "";
            spec.append(name).append("[").append(summary).append("]");
            if (!option.valueName.empty()) {
                spec.append(":").append(option.valueName).append(":_files");
            }
            text += " " + asWord(spec);
        }
    }
    return text;
}

std::string zsh(std::span<const Command> commands) {
    std::string text =
        "#compdef velmoranth\n"
        "_velmoranth() {\n"
        "    if (( CURRENT == 2 )); then\n"
        "        compadd -- " +
        joined(firstWords(commands)) + programOptions() +
        "\n"
        "        return\n"
        "    fi\n"
        "    local command=$words[2]\n"
        "    case $command in\n"
        "        help)\n"
        "            compadd -- " +
        joined(firstWords(commands)) +
        "\n"
        "            return ;;\n";
    for (const std::string_view first : firstWords(commands)) {
        if (const std::string second = secondWords(commands, first); !second.empty()) {
            text.append("        ").append(first).append(")\n            if (( CURRENT == 3 )); ");
            text += "then compadd -- " + second + "; return; fi\n" +
                    "            command+=\" $words[3]\" ;;\n";
        }
    }
    text += "    esac\n    case $command in\n";
    for (const Command& command : commands) {
        text += "        " + asWord(command.name) + ") _arguments";
        for (const Option& option : optionsOf(command)) {
            text += zshOption(option);
        }
        text += " '*:file:_files' ;;\n";
    }
    return text + "    esac\n}\n_velmoranth \"$@\"\n";
}

std::string fish(std::span<const Command> commands) {
    std::string text = "# fish completion for velmoranth\n";
    const auto offer = [&](const std::string& when, std::string_view word,
                           std::string_view summary) {
        text += "complete -c velmoranth -f -n " + asWord(when) + " -a " + asWord(word);
        text += summary.empty() ? "\n" : " -d " + asWord(summary) + "\n";
    };
    for (const Command& command : commands) {
        const std::string first(firstWord(command));
        const bool isAlone = secondWord(command).empty();
        offer("__fish_use_subcommand", first, isAlone ? command.summary : "");
        std::string given = "__fish_seen_subcommand_from " + first;
        if (!isAlone) {
            offer(given + "; and not __fish_seen_subcommand_from " + secondWords(commands, first),
                  secondWord(command), command.summary);
            given.append("; and __fish_seen_subcommand_from ").append(secondWord(command));
        }
        for (const Option& option : optionsOf(command)) {
            text += "complete -c velmoranth -n " + asWord(given);
            text +=
                option.shortName.empty() ? "" : " -s " + std::string(option.shortName.substr(1));
            text += " -l " + std::string(option.name.substr(2));
            text += option.valueName.empty() ? "" : " -r";
            text += " -d " + asWord(option.summary) + "\n";
        }
    }
    offer("__fish_use_subcommand", "help", "Show what a command does.");
    return text;
}

constexpr std::array<Shell, 3> kShells{{{"bash", bash}, {"zsh", zsh}, {"fish", fish}}};

ExitCode runCompletion(const Arguments& arguments) {
    const std::string& name = arguments.positionals().front();
    const auto shell = std::ranges::find(kShells, name, &Shell::name);
    if (shell == kShells.end()) {
        return fail(ExitCode::wrongUsage,
                    notAmong("completion", std::views::transform(kShells, &Shell::name), name));
    }
    print(shell->script(commands()));
    return ExitCode::done;
}

ExitCode runMan(const Arguments& arguments) {
    if (arguments.positionals().empty()) {
        print(programManual(commands()));
        return ExitCode::done;
    }
    std::string name = arguments.positionals().front();
    if (arguments.positionals().size() > 1) {
        name += " " + arguments.positionals()[1];
    }
    const auto command = std::ranges::find(commands(), name, &Command::name);
    if (command == commands().end()) {
        return fail(ExitCode::wrongUsage,
                    "there is no command " + inQuotes(name) +
                        suggestion(name, std::views::transform(commands(), &Command::name),
                                   "; velmoranth --help lists what there is"));
    }
    print(commandManual(*command));
    return ExitCode::done;
}

}  // namespace

std::span<const Shell> shells() {
    return kShells;
}

Command completionCommand() {
    return {.name = "completion",
            .summary = "Print what a shell needs to complete these commands.",
            .positionalNames = "SHELL",
            .description = "SHELL is bash, zsh or fish.",
            .options = {},
            .examples = {"source <(velmoranth completion bash)",
                         "velmoranth completion fish > ~/.config/fish/completions/velmoranth.fish"},
            .leastPositionals = 1,
            .mostPositionals = 1,
            .run = runCompletion};
}

Command manCommand() {
    return {.name = "man",
            .summary = "Print the manual page of the program or of a command.",
            .positionalNames = "[COMMAND]",
            .description = "",
            .options = {},
            .examples = {"velmoranth man preview | man -l -",
                         "velmoranth man device init > velmoranth-device-init.1"},
            .mostPositionals = 2,
            .run = runMan};
}

}  // namespace velmoranth::cli
