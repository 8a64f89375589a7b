#include "cli/help.h"

#include <algorithm>
#include <cstddef>

namespace velmoranth::cli {
namespace {

constexpr std::size_t kLineLength = 90;

std::string indented(std::string_view text) {
    return "  " + std::string(text) + "\n";
}

// What an option's row begins with: "-o, --output FILE".
std::string label(const Option& option) {
    std::string text =
        option.shortName.empty() ? std::string() : std::string(option.shortName) + ", ";
    text += option.name;
    if (!option.valueName.empty()) {
        text += " " + std::string(option.valueName);
    }
    return text;
}

}  // namespace

std::string twoColumns(const std::vector<std::pair<std::string, std::string>>& rows) {
    std::size_t width = 0;
    for (const auto& [left, right] : rows) {
        width = std::max(width, left.size());
    }
    const std::size_t start = width + 4;
    std::string text;
    for (const auto& [left, right] : rows) {
        std::string line = "  " + left + std::string(width - left.size() + 2, ' ');
        std::size_t position = 0;
        while (position < right.size()) {
            const std::size_t end = std::min(right.find(' ', position), right.size());
            const std::string word = right.substr(position, end - position);
            if (line.size() + word.size() > kLineLength && line.size() > start) {
                line.erase(line.find_last_not_of(' ') + 1);
                text += line + "\n";
                line = std::string(start, ' ');
            }
            line += word + " ";
            position = end + 1;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

std::string programHelp(std::span<const Command> commands) {
    std::string text =
        "usage: velmoranth COMMAND ...\n\n"
        "Themes for the home screen, seen on a simulated device.\n\ncommands:\n";
    std::vector<std::pair<std::string, std::string>> rows;
    for (const Command& command : commands) {
        rows.emplace_back(command.name, command.summary);
    }
    text += twoColumns(rows) + "\noptions:\n";
    rows.clear();
    for (const Option& option : kProgramOptions) {
        rows.emplace_back(label(option), option.summary);
    }
    return text + twoColumns(rows) + "\nexit codes: " + std::string(kExitCodes) + "\n";
}

std::string groupHelp(const std::string& word, const std::vector<const Command*>& members) {
    std::vector<std::pair<std::string, std::string>> rows;
    rows.reserve(members.size());
    for (const Command* const command : members) {
        std::string left(command->name);
        left += command->positionalNames.empty() ? "" : " " + std::string(command->positionalNames);
        rows.emplace_back(std::move(left), command->summary);
    }
    return "usage: velmoranth " + word + " COMMAND ...\n\ncommands:\n" + twoColumns(rows) +
           "\nvelmoranth " + word + " COMMAND --help shows a command's options and examples\n";
}

std::string commandHelp(const Command& command) {
    std::string text = "usage: velmoranth " + std::string(command.name);
    if (!command.positionalNames.empty()) {
        text += " " + std::string(command.positionalNames);
    }
    // One that takes words of its own behind "--" says itself where its options stand.
    text += command.positionalNames.find("[OPTION...]") == std::string_view::npos
                ? " [OPTION...]\n\n"
                : "\n\n";
    text += std::string(command.summary) + "\n";
    if (!command.description.empty()) {
        text += "\n" + std::string(command.description) + "\n";
    }
    std::vector<std::pair<std::string, std::string>> rows;
    for (const Option& option : command.options) {
        rows.emplace_back(label(option), option.summary);
    }
    for (const Option& option : kCommonOptions) {
        rows.emplace_back(label(option), option.summary);
    }
    text += "\noptions:\n" + twoColumns(rows);
    if (command.moreHelp != nullptr) {
        text += "\n" + command.moreHelp();
    }
    text += "\nexamples:\n";
    for (const std::string_view example : command.examples) {
        text += indented(example);
    }
    return text;
}

}  // namespace velmoranth::cli
