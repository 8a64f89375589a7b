#include "cli/command_tables.h"

#include <fmt/format.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace velmoranth::cli {
namespace {

// As a literal. An octal escape ends by itself after three digits, a hexadecimal one does not.
std::string asLiteral(std::string_view text) {
    std::string result = "\"";
    for (const char letter : text) {
        const auto byte = static_cast<unsigned char>(letter);
        if (letter == '"' || letter == '\\') {
            result += '\\';
            result += letter;
        } else if (byte >= 0x20 && byte < 0x7F && letter != '?') {
            result += letter;
        } else {
            result += fmt::format("\\{:03o}", byte);
        }
    }
    return result + '"';
}

std::string optionTable(std::size_t index, std::span<const Option> options) {
    if (options.empty()) {
        return "";
    }
    std::string text =
        fmt::format("constexpr std::array<Option, {}> kOptions{}{{{{\n", options.size(), index);
    for (const Option& option : options) {
        text += fmt::format("    {{{}, {}, {}, {}, {}}},\n", asLiteral(option.name),
                            asLiteral(option.shortName), asLiteral(option.valueName),
                            asLiteral(option.summary),
                            option.repeat == Repeat::once ? "Repeat::once" : "Repeat::often");
    }
    return text + "}};\n";
}

std::string rulesTable(std::size_t index, const Command& command) {
    std::string text;
    if (!command.apart.empty()) {
        text += fmt::format("constexpr std::array<Apart, {}> kApart{}{{{{\n", command.apart.size(),
                            index);
        for (const Apart& pair : command.apart) {
            text += fmt::format("    {{{}, {}, {}}},\n", asLiteral(pair.one), asLiteral(pair.other),
                                asLiteral(pair.why));
        }
        text += "}};\n";
    }
    if (!command.needed.empty()) {
        text += fmt::format("constexpr std::array<Needed, {}> kNeeded{}{{{{\n",
                            command.needed.size(), index);
        for (const Needed& needed : command.needed) {
            text += fmt::format("    {{{}, {{{}, {}, {}}}}},\n", asLiteral(needed.what),
                                asLiteral(needed.anyOf[0]), asLiteral(needed.anyOf[1]),
                                asLiteral(needed.anyOf[2]));
        }
        text += "}};\n";
    }
    return text;
}

std::string row(std::size_t index, const Command& command) {
    const auto table = [index](bool isEmpty, std::string_view name) {
        return isEmpty ? std::string("{}") : fmt::format("{}{}", name, index);
    };
    std::string examples;
    for (const std::string_view example : command.examples) {
        examples += asLiteral(example) + ", ";
    }
    const std::string more =
        command.moreHelp == nullptr
            ? "nullptr"
            : "+[] { return std::string(" + asLiteral(command.moreHelp()) + "); }";
    return fmt::format(
        "        Command{{{}, {}, {}, {}, {}, {{{}}}, {}, {}, &becomeDevice, {}, {}, {}}},\n",
        asLiteral(command.name), asLiteral(command.summary), asLiteral(command.positionalNames),
        asLiteral(command.description), table(command.options.empty(), "kOptions"), examples,
        command.leastPositionals, command.mostPositionals, more,
        table(command.apart.empty(), "kApart"), table(command.needed.empty(), "kNeeded"));
}

}  // namespace

std::string commandTables(std::span<const Command> commands) {
    std::string tables;
    std::string rows;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        tables += optionTable(i, commands[i].options) + rulesTable(i, commands[i]);
        rows += row(i, commands[i]);
    }
    return fmt::format(
        "// Written by velmoranth-device {}.\n"
        "#include \"cli/commands.h\"\n"
        "#include \"cli/device_program.h\"\n\n"
        "#include <array>\n\n"
        "namespace velmoranth::cli {{\n"
        "namespace {{\n\n"
        "{}\n"
        "}}  // namespace\n\n"
        "std::span<const Command> commands() {{\n"
        "    static const std::array kCommands{{\n"
        "{}"
        "    }};\n"
        "    return kCommands;\n"
        "}}\n\n"
        "}}  // namespace velmoranth::cli\n",
        kCommandTablesArgument, tables, rows);
}

}  // namespace velmoranth::cli
