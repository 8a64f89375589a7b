// velmoranth new
#include "cli/commands.h"
#include "cli/messages.h"
#include "desktop/files/cleanup.h"

#include "makers/starter/starter.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmoranth::cli {
namespace {

constexpr std::array<Option, 2> kNewOptions{{
    {"--tint", "", "RRGGBB", "the colour that everything is drawn in (2F6F73)"},
    {"--author", "", "NAME", "who makes it: NAME <ADDRESS>"},
}};

constexpr std::string_view kThemeEnding = ".theme";

// Six hexadecimal digits, a number sign before them or not.
std::optional<std::uint32_t> readColor(std::string_view text) {
    constexpr std::size_t kDigits = 6;
    constexpr int kBase = 16;
    text.remove_prefix(text.starts_with('#') ? 1 : 0);
    std::uint32_t color = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), color, kBase);
    return text.size() == kDigits && read.ec == std::errc() && read.ptr == text.end()
               ? std::optional(color)
               : std::nullopt;
}

ExitCode runNew(const Arguments& arguments) {
    namespace fs = std::filesystem;
    std::string path = arguments.positionals().front();
    path.erase(path.find_last_not_of('/') + 1);
    path += path.ends_with(kThemeEnding) ? "" : kThemeEnding;
    makers::Starter starter{.name = fs::path(path).stem(),
                            .author = arguments.value("--author").value_or("")};
    if (starter.name.empty() || starter.name == kThemeEnding || starter.name.starts_with('.') ||
        !isPlainText(path)) {
        return fail(ExitCode::wrongUsage, "NAME is the new theme's name, and " +
                                              inQuotes(arguments.positionals().front()) +
                                              " can be none");
    }
    if (!isPlainText(starter.author)) {
        return fail(ExitCode::wrongUsage, "--author takes a line of text");
    }
    if (const auto given = arguments.value("--tint")) {
        const auto color = readColor(*given);
        if (!color) {
            return fail(ExitCode::wrongUsage,
                        "--tint takes six hexadecimal digits, not " + inQuotes(*given));
        }
        starter.color = *color;
    }
    desktop::cleanUpOnSignals();
    if (const auto written = makers::writeStarter(starter, path); !written) {
        return fail(ExitCode::badInput, written.error());
    }
    print(shown(path) + ": a new theme; velmoranth preview " + forShell(path) + " draws it\n");
    return ExitCode::done;
}

}  // namespace

Command newCommand() {
    return {.name = "new",
            .summary = "Make a theme to begin with.",
            .positionalNames = "NAME",
            .description =
                "Makes the folder NAME.theme with every kind of file once, drawn in one "
                "colour, and a README that says what each is.\nPut your own pictures "
                "in their places.",
            .options = kNewOptions,
            .examples = {"velmoranth new Sunset",
                         "velmoranth new Sunset --tint C8553D --author 'Ann <ann@example.com>'"},
            .leastPositionals = 1,
            .mostPositionals = 1,
            .run = runNew};
}

}  // namespace velmoranth::cli
