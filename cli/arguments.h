// Commands and their options as data: help, parsing and "did you mean" are all made from these
// tables. A command's own function gives the words meaning.
#pragma once

#include "cli/messages.h"
#include "desktop/result/result.h"

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {

enum class Repeat { once, often };

struct Option {
    std::string_view name;       // "--output"
    std::string_view shortName;  // "-o", or ""
    std::string_view valueName;  // "FILE"; "" when the option takes no value
    std::string_view summary;
    Repeat repeat = Repeat::once;
};

// A problem of usage.
inline tl::unexpected<desktop::Problem> misuse(std::string message) {
    return tl::unexpected(desktop::Problem{std::move(message)});
}

// The options that every command has.
inline constexpr Option kHelpOption{"--help", "-h", "", "show this text"};
inline constexpr Option kColorOption{
    "--color", "", "WHEN",
    "auto (on a terminal, unless NO_COLOR is set), always or never (default auto)"};
inline constexpr std::array kCommonOptions{kColorOption, kHelpOption};

// The options of the program itself.
inline constexpr std::array<Option, 3> kProgramOptions{
    {{"--help", "-h", "", "show this text; velmoranth COMMAND --help shows a command's"},
     {"--version", "", "", "show the version"},
     {"--libraries", "", "", "show what draws vector images here, and of which version"}}};

inline constexpr std::string_view kExitCodes =
    "0 done, 1 nothing found or not all done, 2 wrong usage, 3 bad input, 130 interrupted";

struct Command;

// What a command was given, still as words.
class Arguments {
  public:
    // Of the words behind the command's name. The problem of words that its table does not allow
    // says which, and the nearest option.
    [[nodiscard]] static desktop::Result<Arguments> parse(const Command& command,
                                                          std::span<const std::string> words);

    [[nodiscard]] const std::vector<std::string>& positionals() const { return positionals_; }

    // How many of the positionals stand before "--"; nothing when there is none.
    [[nodiscard]] std::optional<std::size_t> dashes() const { return dashes_; }

    // `name` as in the table. An option without a value that is given has one empty value.
    [[nodiscard]] const std::vector<std::string>& values(std::string_view name) const;
    [[nodiscard]] std::optional<std::string> value(std::string_view name) const;

    // The option's value, a whole number from 1 to `most`, or `otherwise` where it is not given.
    [[nodiscard]] desktop::Result<int> number(std::string_view name, int most, int otherwise) const;

    [[nodiscard]] bool has(std::string_view name) const { return !values(name).empty(); }

  private:
    std::vector<std::string> positionals_;
    std::optional<std::size_t> dashes_;
    std::map<std::string_view, std::vector<std::string>> options_;
};

// A problem when one of the words, which name what `what` says, is empty.
[[nodiscard]] inline desktop::Result<void> noneEmpty(std::span<const std::string> words,
                                                     std::string_view what) {
    for (const std::string& word : words) {
        if (word.empty()) {
            return misuse(std::string(what) + " takes a name, and this one is empty");
        }
    }
    return {};
}

// Two that exclude each other. Each is an option, an option with its value ("--output -"), or the
// name of what is given without an option ("THEME").
struct Apart {
    std::string_view one;
    std::string_view other;
    std::string_view why;  // as a clause behind "one does not go with other: "
};

// What cannot be left out, unless one of these is given; named as in Apart.
struct Needed {
    std::string_view what;  // as a clause before the pointer to the help: "-o FOLDER is missing"
    std::array<std::string_view, 3> anyOf;
};

struct Command {
    std::string_view name;  // one word or two: "preview", "device init"
    std::string_view summary;
    std::string_view positionalNames;  // as in the usage line: "THEME...", or ""
    std::string_view description;      // whole lines; "" when the summary says it all
    std::span<const Option> options;
    std::vector<std::string_view> examples;
    std::size_t leastPositionals = 0;
    std::size_t mostPositionals = 0;
    ExitCode (*run)(const Arguments& arguments);
    // Lines below the options, made when asked for; may be null.
    std::string (*moreHelp)() = nullptr;
    std::span<const Apart> apart = {};
    std::span<const Needed> needed = {};
};

}  // namespace velmoranth::cli
