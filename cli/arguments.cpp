#include "cli/arguments.h"

#include "cli/nearest.h"
#include "cli/numbers.h"

#include <algorithm>
#include <cstddef>

namespace velmoranth::cli {

using desktop::Problem;

namespace {

Problem unknownOption(const Command& command, std::string_view name) {
    std::vector<std::string_view> names;
    for (const Option& option : command.options) {
        names.push_back(option.name);
    }
    for (const Option& option : kCommonOptions) {
        names.push_back(option.name);
    }
    const std::string near = suggestion(name, names);
    const std::string commandName(command.name);
    return {"velmoranth " + commandName + " has no option " + inQuotes(name) +
            (near.empty() ? "; velmoranth " + commandName + " --help lists them" : near)};
}

const Option* findOption(const Command& command, std::string_view name) {
    const auto hasName = [&](const Option& option) {
        return name == option.name || name == option.shortName;
    };
    if (const auto own = std::ranges::find_if(command.options, hasName);
        own != command.options.end()) {
        return &*own;
    }
    const auto* const common = std::ranges::find_if(kCommonOptions, hasName);
    return common != kCommonOptions.end() ? common : nullptr;
}

// What the words have too few or too many of. Whoever asks for help is still at it.
desktop::Result<void> checkCounts(const Command& command, const Arguments& arguments) {
    const std::string name = "velmoranth " + std::string(command.name);
    const std::vector<std::string>& positionals = arguments.positionals();
    if (positionals.size() > command.mostPositionals) {
        return tl::unexpected(Problem{name + " does not know what to do with " +
                                      inQuotes(positionals[command.mostPositionals])});
    }
    if (arguments.has(kHelpOption.name)) {
        return {};
    }
    const auto isGivenTwice = [&](const Option& option) {
        return option.repeat == Repeat::once && arguments.values(option.name).size() > 1;
    };
    for (const Option& option : command.options) {
        if (isGivenTwice(option)) {
            return tl::unexpected(Problem{std::string(option.name) + " is given more than once"});
        }
    }
    if (isGivenTwice(kColorOption)) {
        return tl::unexpected(Problem{"--color is given more than once"});
    }
    if (positionals.size() < command.leastPositionals) {
        return tl::unexpected(Problem{name + " needs " + std::string(command.positionalNames) +
                                      "; " + name + " --help"});
    }
    return {};
}

bool isGiven(const Arguments& arguments, std::string_view what) {
    if (!what.starts_with('-')) {
        return !what.empty() && !arguments.positionals().empty();
    }
    const std::size_t end = what.find(' ');
    return end == std::string_view::npos
               ? arguments.has(what)
               : arguments.value(what.substr(0, end)) == what.substr(end + 1);
}

desktop::Result<void> checkTogether(const Command& command, const Arguments& arguments) {
    for (const Apart& pair : command.apart) {
        if (isGiven(arguments, pair.one) && isGiven(arguments, pair.other)) {
            return misuse(std::string(pair.one) + " does not go with " + std::string(pair.other) +
                          ": " + std::string(pair.why));
        }
    }
    for (const Needed& needed : command.needed) {
        if (std::ranges::none_of(needed.anyOf,
                                 [&](std::string_view what) { return isGiven(arguments, what); })) {
            return misuse(std::string(needed.what) + "; velmoranth " + std::string(command.name) +
                          " --help");
        }
    }
    return {};
}

}  // namespace

const std::vector<std::string>& Arguments::values(std::string_view name) const {
    static const std::vector<std::string> kNone;
    const auto found = options_.find(name);
    return found == options_.end() ? kNone : found->second;
}

std::optional<std::string> Arguments::value(std::string_view name) const {
    const std::vector<std::string>& all = values(name);
    return all.empty() ? std::nullopt : std::optional<std::string>(all.front());
}

desktop::Result<int> Arguments::number(std::string_view name, int most, int otherwise) const {
    const auto text = value(name);
    const auto number = text ? parseInteger(*text, 1, most) : otherwise;
    if (!number) {
        return misuse(std::string(name) + " takes a number from 1 to " + std::to_string(most) +
                      ", not " + inQuotes(*text));
    }
    return *number;
}

desktop::Result<Arguments> Arguments::parse(const Command& command,
                                            std::span<const std::string> words) {
    Arguments arguments;
    while (!words.empty()) {
        const std::string_view word = words.front();
        words = words.subspan(1);
        if (word == "--") {  // what follows is meant as it stands
            arguments.dashes_ = arguments.positionals_.size();
            arguments.positionals_.insert(arguments.positionals_.end(), words.begin(), words.end());
            break;
        }
        if (word.size() < 2 || word.front() != '-') {
            arguments.positionals_.emplace_back(word);
            continue;
        }
        // "--name=value", or "-nvalue". Nothing behind the sign is a value left out.
        const bool isLong = word.starts_with("--");
        const std::size_t end = isLong ? std::min(word.find('='), word.size()) : 2;
        const std::string_view name = word.substr(0, end);
        const std::string_view rest = word.substr(std::min(end + (isLong ? 1 : 0), word.size()));
        const Option* const option = findOption(command, name);
        if (option == nullptr || (!isLong && option->valueName.empty() && !rest.empty())) {
            return tl::unexpected(unknownOption(command, word.substr(0, word.find('='))));
        }
        std::vector<std::string>& values = arguments.options_[option->name];
        if (option->valueName.empty() && !rest.empty()) {
            return tl::unexpected(Problem{std::string(option->name) + " takes no value"});
        }
        if (option->valueName.empty() || !rest.empty()) {
            values.emplace_back(rest);
        } else if (!words.empty()) {
            values.push_back(words.front());
            words = words.subspan(1);
        } else {
            std::string problem(option->name);
            problem.append(" needs a value: ").append(option->name);
            problem.append(" ").append(option->valueName);
            return tl::unexpected(Problem{std::move(problem)});
        }
    }
    if (auto counts = checkCounts(command, arguments); !counts) {
        return tl::unexpected(std::move(counts.error()));
    }
    if (arguments.has(kHelpOption.name)) {
        return arguments;
    }
    if (auto together = checkTogether(command, arguments); !together) {
        return tl::unexpected(std::move(together.error()));
    }
    return arguments;
}

}  // namespace velmoranth::cli
