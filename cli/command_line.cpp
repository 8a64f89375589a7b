#include "cli/command_line.h"

#include "cli/choice.h"
#include "cli/help.h"
#include "cli/nearest.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <optional>
#include <ranges>
#include <utility>

namespace velmoranth::cli {
namespace {

// The command whose name the first words are, and how many words that took.
struct Chosen {
    const Command* command = nullptr;
    std::size_t words = 0;
};

Chosen choose(std::span<const Command> commands, const std::vector<std::string>& words) {
    for (const Command& command : commands) {
        if (words.front() == command.name) {
            return {&command, 1};
        }
        if (words.size() > 1 && words[0] + " " + words[1] == command.name) {
            return {&command, 2};
        }
    }
    return {};
}

// The commands that begin with this word and need another: "device".
std::vector<const Command*> group(std::span<const Command> commands, const std::string& word) {
    std::vector<const Command*> found;
    for (const Command& command : commands) {
        if (command.name.starts_with(word + " ")) {
            found.push_back(&command);
        }
    }
    return found;
}

ExitCode unknownCommand(std::span<const Command> commands, const std::vector<std::string>& words) {
    const std::string& first = words.front();
    if (first.size() > 1 && first.front() == '-') {
        const auto options = std::views::transform(kProgramOptions, &Option::name);
        return fail(ExitCode::wrongUsage,
                    "there is no option " + inQuotes(first) +
                        suggestion(first, options, "; velmoranth --help lists what there is"));
    }
    const std::vector<const Command*> members = group(commands, first);
    const bool isGroup = !members.empty();
    if (isGroup && (words.size() == 1 || words[1].starts_with('-'))) {
        print(groupHelp(first, members));
        return fail(ExitCode::wrongUsage, "velmoranth " + first + " needs one of these commands");
    }
    const std::string given = isGroup ? first + " " + words[1] : first;
    const std::string otherwise =
        "; velmoranth " + (isGroup ? first + " " : std::string()) + "--help lists what there is";
    return fail(ExitCode::wrongUsage,
                "there is no command " + inQuotes(given) +
                    suggestion(given, std::views::transform(commands, &Command::name), otherwise));
}

bool isHelpOption(const std::string& word) {
    return word == kHelpOption.name || word == kHelpOption.shortName;
}

// Of the command, or of the commands, that the words name.
ExitCode help(std::span<const Command> commands, std::span<const std::string> named) {
    const std::vector<std::string> words(named.begin(), named.end());
    const Chosen chosen = choose(commands, words);
    const std::vector<const Command*> members = group(commands, words.front());
    if (chosen.command != nullptr && chosen.words == words.size()) {
        print(commandHelp(*chosen.command));
    } else if (!members.empty() && words.size() == 1) {
        print(members.size() == 1 ? commandHelp(*members.front())
                                  : groupHelp(words.front(), members));
    } else {
        return unknownCommand(commands, words);
    }
    return ExitCode::done;
}

constexpr std::array<std::pair<std::string_view, Colors>, 3> kColorWords{
    {{"auto", Colors::automatic}, {"always", Colors::always}, {"never", Colors::never}}};

// What --color says; nothing for a word that it does not take.
std::optional<Colors> colorsOf(const Arguments& arguments) {
    const std::string given = arguments.value(kColorOption.name).value_or("auto");
    const auto* const word =
        std::ranges::find(kColorWords, given, &std::pair<std::string_view, Colors>::first);
    return word == kColorWords.end() ? std::nullopt : std::optional(word->second);
}

ExitCode run(const Program& program, const std::vector<std::string>& words) {
    const std::span<const Command> commands = program.commands;
    if (words.empty()) {
        return fail(ExitCode::wrongUsage, "a command is missing; velmoranth --help lists them");
    }
    const bool isHelpAlone =
        words.front() == "help" && (words.size() == 1 || isHelpOption(words[1]));
    if (isHelpOption(words.front()) || isHelpAlone) {
        print(programHelp(commands));
        return ExitCode::done;
    }
    if (words.front() == "help") {
        return help(commands, std::span(words).subspan(1));
    }
    if (words.front() == "--version") {
        print("velmoranth " VELMORANTH_VERSION "\n");
        return ExitCode::done;
    }
    if (words.front() == "--libraries") {
        return program.showLibraries();
    }
    const Chosen chosen = choose(commands, words);
    if (chosen.command == nullptr) {
        const bool asksForHelp = words.size() > 1 && isHelpOption(words[1]);
        return asksForHelp ? help(commands, std::span(words).first(1))
                           : unknownCommand(commands, words);
    }
    const auto arguments =
        Arguments::parse(*chosen.command, std::span(words).subspan(chosen.words));
    if (!arguments) {
        return fail(ExitCode::wrongUsage, arguments.error());
    }
    if (arguments->has(kHelpOption.name)) {
        print(commandHelp(*chosen.command));
        return ExitCode::done;
    }
    const auto colors = colorsOf(*arguments);
    if (!colors) {
        return fail(ExitCode::wrongUsage,
                    notAmong(kColorOption.name,
                             std::views::transform(kColorWords,
                                                   &std::pair<std::string_view, Colors>::first),
                             *arguments->value(kColorOption.name)));
    }
    setColors(*colors);
    return chosen.command->run(*arguments);
}

// A file that is opened must not become what was closed by whoever started the command: what is
// printed would be written into it. Reading and writing fail as they would have.
void keepStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) == -1) {
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

}  // namespace

int runCommandLine(const Program& program, const std::vector<std::string>& words) {
    keepStandardDescriptors();
    // A reader that goes before the end is none of the command's concern: what it has to clean up
    // it cleans up.
    std::signal(SIGPIPE, SIG_IGN);
    ExitCode code = run(program, words);
    const bool isPrinted = flushResults();
    if (isReaderGone()) {
        // As a shell knows it of other programs.
        std::signal(SIGPIPE, SIG_DFL);
        std::raise(SIGPIPE);
    } else if (!isPrinted) {
        const ExitCode failed =
            fail(ExitCode::badInput, "standard output cannot be written: " + whyNotPrinted());
        code = code == ExitCode::done || code == ExitCode::nothingFound ? failed : code;
    }
    return static_cast<int>(code);
}

}  // namespace velmoranth::cli
