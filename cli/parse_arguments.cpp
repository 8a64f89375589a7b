// The one place that uses CLI11, which splits words into options, values and the rest (short and
// long forms, "--name=value", "--"). It stays a splitter: it gets its options from our table,
// everything comes out as text, and messages are ours.
#include "cli/parse_arguments.h"

#include "cli/nearest.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <deque>

namespace velmoranth::cli {

using desktop::Problem;

namespace {

// Holds what the splitter fills in.
struct Slot {
    const Option* option;
    std::vector<std::string> values;
    CLI::Option* handle = nullptr;
};

Problem unknownOption(const Command& command, const std::string& word) {
    std::vector<std::string_view> names;
    for (const Option& option : command.options) {
        names.push_back(option.name);
    }
    names.push_back(kHelpOption.name);
    const std::string_view name = std::string_view(word).substr(0, word.find('='));
    const std::string near = suggestion(name, names);
    const std::string commandName(command.name);
    return {"velmoranth " + commandName + " has no option " + inQuotes(name) +
            (near.empty() ? "; velmoranth " + commandName + " --help lists them" : near)};
}

// From the words that are no option of the table: up to "--" those with a dash are mistyped
// options, behind it everything is meant as it stands.
desktop::Result<std::vector<std::string>> takePositionals(const Command& command,
                                                          const std::vector<std::string>& words) {
    std::vector<std::string> positionals;
    bool behindMark = false;
    for (const std::string& word : words) {
        if (!behindMark && word == "--") {
            behindMark = true;
        } else if (!behindMark && word.size() > 1 && word.front() == '-') {
            return tl::unexpected(unknownOption(command, word));
        } else {
            positionals.push_back(word);
        }
    }
    if (positionals.size() > command.mostPositionals) {
        return tl::unexpected(Problem{"velmoranth " + std::string(command.name) +
                                      " does not know what to do with " +
                                      inQuotes(positionals[command.mostPositionals])});
    }
    return positionals;
}

desktop::Result<void> checkCounts(const Command& command, const std::deque<Slot>& slots,
                                  std::size_t positionalCount) {
    for (const Slot& slot : slots) {
        if (slot.option->repeat == Repeat::once && slot.handle->count() > 1) {
            return tl::unexpected(
                Problem{std::string(slot.option->name) + " is given more than once"});
        }
    }
    if (positionalCount < command.leastPositionals) {
        const std::string names(command.positionalNames);
        return tl::unexpected(Problem{"velmoranth " + std::string(command.name) + " needs " +
                                      names + "; velmoranth " + std::string(command.name) +
                                      " --help"});
    }
    return {};
}

// What the splitter refuses is a value too few or too many. It names the option first, at times
// without its dashes, and the rest of its words are its own.
Problem splitterProblem(const std::deque<Slot>& slots, std::string_view text) {
    const std::string_view start = text.substr(std::min(text.find_first_not_of('-'), text.size()));
    for (const Slot& slot : slots) {
        const std::string_view name = slot.option->name;
        const std::string_view valueName = slot.option->valueName;
        const std::string_view word = name.substr(2);
        if (start.starts_with(word) && !start.substr(word.size()).starts_with('-')) {
            return {valueName.empty() ? fmt::format("{} takes no value", name)
                                      : fmt::format("{0} needs a value: {0} {1}", name, valueName)};
        }
    }
    return {std::string(text)};
}

}  // namespace

desktop::Result<Arguments> parseArguments(const Command& command, std::vector<std::string> words) {
    CLI::App app;
    app.set_help_flag();
    app.allow_extras();

    std::deque<Slot> slots;
    for (const Option& option : command.options) {
        slots.push_back({&option, {}});
    }
    slots.push_back({&kHelpOption, {}});
    for (Slot& slot : slots) {
        std::string names(slot.option->name);
        if (!slot.option->shortName.empty()) {
            names += "," + std::string(slot.option->shortName);
        }
        if (slot.option->valueName.empty()) {
            slot.handle = app.add_flag(names)->disable_flag_override();
        } else {
            slot.handle = app.add_option(names, slot.values)
                              ->expected(1)
                              ->allow_extra_args(false)
                              ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        }
    }

    std::reverse(words.begin(), words.end());  // as the splitter takes them
    try {
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        return tl::unexpected(splitterProblem(slots, error.what()));
    }
    auto positionals = takePositionals(command, app.remaining());
    if (!positionals) {
        return tl::unexpected(std::move(positionals.error()));
    }
    std::map<std::string_view, std::vector<std::string>> options;
    for (const Slot& slot : slots) {
        if (slot.handle->count() > 0) {
            options[slot.option->name] =
                slot.option->valueName.empty() ? std::vector<std::string>(1) : slot.values;
        }
    }
    if (!options.contains(kHelpOption.name)) {
        if (auto counts = checkCounts(command, slots, positionals->size()); !counts) {
            return tl::unexpected(std::move(counts.error()));
        }
    }
    return Arguments(std::move(*positionals), std::move(options));
}

}  // namespace velmoranth::cli
