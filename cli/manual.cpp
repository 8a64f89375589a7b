#include "cli/manual.h"

#include "cli/commands.h"
#include "cli/help.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velmoranth::cli {
namespace {

// Text as it stands: no letter of it is taken for a request or an escape.
std::string plain(std::string_view text) {
    std::string result;
    bool isLineStart = true;
    for (const char letter : text) {
        if (isLineStart && (letter == '.' || letter == '\'')) {
            result += "\\&";
        }
        if (letter == '\\') {
            result += "\\e";
        } else if (letter == '-') {
            result += "\\-";
        } else {
            result += letter;
        }
        isLineStart = letter == '\n';
    }
    return result;
}

std::string heading(std::string_view text) {
    std::string result = ".SH ";
    std::ranges::transform(text, std::back_inserter(result), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return result + "\n";
}

std::string asItStands(std::string_view text) {
    return ".nf\n" + plain(text) + (text.ends_with('\n') ? "" : "\n") + ".fi\n";
}

std::string title(std::string_view page) {
    std::string name = "velmoranth";
    if (!page.empty()) {
        name.append("-").append(page);
        std::ranges::replace(name, ' ', '-');
    }
    return name;
}

std::string beginning(std::string_view page, std::string_view summary) {
    const std::string name = plain(title(page));
    // A summary stands behind a dash, in small letters and without a full stop.
    std::string line(summary);
    line.front() = static_cast<char>(line.front() | 0x20);
    line.erase(line.find_last_not_of('.') + 1);
    return ".TH \"" + name + "\" 1 \"\" \"velmoranth " VELMORANTH_VERSION "\"\n" + heading("name") +
           name + " \\- " + plain(line) + "\n";
}

std::string optionText(const Option& option) {
    std::string text = ".TP\n";
    const std::string value =
        option.valueName.empty() ? "" : " \\fI" + plain(option.valueName) + "\\fR";
    if (!option.shortName.empty()) {
        text += "\\fB" + plain(option.shortName) + "\\fR, ";
    }
    return text + "\\fB" + plain(option.name) + "\\fR" + value + "\n" + plain(option.summary) +
           "\n";
}

// What a command adds to its help: lines that end with a colon head the indented ones below.
std::string moreText(std::string_view text) {
    std::string result;
    std::string block;
    const auto end = [&] {
        if (!block.empty()) {
            result += asItStands(block);
            block.clear();
        }
    };
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (!line.empty() && line.front() != ' ' && line.back() == ':') {
            end();
            result += heading(line.substr(0, line.size() - 1));
        } else if (!line.empty()) {
            block.append(line).append("\n");
        }
    }
    end();
    return result;
}

}  // namespace

std::string programManual(std::span<const Command> commands) {
    std::string text = beginning("", "themes for the home screen, seen on a simulated device");
    text += heading("synopsis") + ".B velmoranth\n\\fICOMMAND\\fR ...\n" + heading("commands");
    for (const Command& command : commands) {
        text +=
            ".TP\n\\fB" + plain(title(command.name)) + "\\fR(1)\n" + plain(command.summary) + "\n";
    }
    text += heading("options");
    for (const Option& option : kProgramOptions) {
        text += optionText(option);
    }
    return text + heading("exit status") + plain(kExitCodes) + "\n";
}

std::string commandManual(const Command& command) {
    std::string text = beginning(command.name, command.summary);
    text += heading("synopsis") + ".B velmoranth " + plain(command.name) + "\n";
    text +=
        command.positionalNames.empty() ? "" : "\\fI" + plain(command.positionalNames) + "\\fR\n";
    text += "[\\fIOPTION\\fR...]\n";
    text += heading("description") + plain(command.summary) + "\n";
    if (!command.description.empty()) {
        text += ".PP\n" + plain(command.description) + "\n";
    }
    text += heading("options");
    for (const Option& option : command.options) {
        text += optionText(option);
    }
    for (const Option& option : kCommonOptions) {
        text += optionText(option);
    }
    const std::string more = command.moreHelp == nullptr ? "" : command.moreHelp();
    text += moreText(more);
    if (more.find("exit codes:") == std::string::npos) {
        text += heading("exit codes") + plain(kExitCodes) + "\n";
    }
    text += heading("examples");
    for (const std::string_view example : command.examples) {
        text += asItStands(example);
    }
    return text + heading("see also") + "\\fBvelmoranth\\fR(1)\n";
}

}  // namespace velmoranth::cli
