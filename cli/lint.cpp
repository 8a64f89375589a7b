// velmoranth lint
#include "cli/commands.h"
#include "cli/device_layout.h"
#include "cli/help.h"
#include "cli/late_progress.h"
#include "cli/lint_check.h"
#include "cli/lint_report.h"
#include "cli/messages.h"
#include "cli/near_path.h"
#include "cli/nearest.h"
#include "desktop/files/cleanup.h"

#include "makers/conversion/theme_input.h"
#include "makers/lint/codes.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr std::array<Option, 3> kLintOptions{{
    {"--all", "", "", "every file of a code that many have, not the first ten"},
    {"--json", "", "", "the findings as an object for programs"},
    {"--explain", "", "CODE", "what a code means, and what to do; without a THEME"},
}};

ExitCode explainCode(const std::string& code) {
    const makers::CodeRow* const row = makers::codeNamed(code);
    if (row == nullptr) {
        return fail(
            ExitCode::wrongUsage,
            "there is no code " + inQuotes(code) +
                suggestion(code, std::views::transform(makers::codes(), &makers::CodeRow::code),
                           "; velmoranth lint --help lists them"));
    }
    print(explained(*row));
    return ExitCode::done;
}

// A folder that is a theme is checked as a device has it, with all that is in it. Others are
// searched for themes, as are packages and archives.
Result<makers::ThemeInput> openTheme(const std::string& path) {
    auto input = makers::openInput(path, makers::Purpose::show);
    const bool isFolder = input && !input->isArchive;
    const bool isTheme = isFolder && std::ranges::any_of(input->themes, &makers::FoundTheme::isTop);
    if (!isTheme) {
        return input;
    }
    auto theme = makers::themeAsGiven(path);
    if (!theme) {
        return tl::unexpected(std::move(theme.error()));
    }
    input->themes.clear();
    input->themes.push_back(std::move(*theme));
    return input;
}

Result<void> checkInput(const std::string& path, const platform::Dictionary& calendar,
                        std::vector<CheckedTheme>& themes) {
    auto input = openTheme(path);
    if (!input) {
        return tl::unexpected(std::move(input.error()));
    }
    warnOf(input->warning);
    for (const makers::FoundTheme& theme : input->themes) {
        LateProgress progress;
        auto findings = checkTheme(theme, calendar, progress);
        progress.clear();
        if (!findings) {
            return tl::unexpected(std::move(findings.error()));
        }
        themes.push_back({.input = path,
                          .name = theme.name,
                          .files = theme.files.size(),
                          .findings = std::move(*findings)});
    }
    return {};
}

ExitCode runLint(const Arguments& arguments) {
    const std::vector<std::string>& paths = arguments.positionals();
    if (const auto code = arguments.value("--explain")) {
        return paths.empty() && !arguments.has("--json") && !arguments.has("--all")
                   ? explainCode(*code)
                   : fail(ExitCode::wrongUsage, "--explain CODE stands alone");
    }
    if (paths.empty() || std::ranges::find(paths, "") != paths.end()) {
        return fail(ExitCode::wrongUsage, "a THEME is missing; velmoranth lint --help");
    }
    if (arguments.has("--all") && arguments.has("--json")) {
        return fail(ExitCode::wrongUsage, "--json has all findings; --all goes without it");
    }
    const auto calendar = installedCalendar();
    if (!calendar) {
        return fail(ExitCode::badInput, calendar.error());
    }
    desktop::cleanUpOnSignals();
    std::vector<CheckedTheme> themes;
    for (const std::string& path : paths) {
        if (auto checked = checkInput(path, *calendar, themes); !checked) {
            return fail(ExitCode::badInput, withNearPath(checked.error(), paths));
        }
    }
    print(arguments.has("--json") ? jsonOf(themes) : textOf(themes, arguments.has("--all")));
    return hasErrors(themes) ? ExitCode::nothingFound : ExitCode::done;
}

std::string codesHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    for (const makers::CodeRow& row : makers::codes()) {
        rows.emplace_back(std::string(row.code), std::string(makers::wordOf(row.severity)) + ": " +
                                                     std::string(row.reason));
    }
    return "codes:\n" + twoColumns(rows) +
           "\nexit codes:\n  0 nothing found but warnings and notes, 1 errors, 2 wrong usage, 3 a "
           "theme that is none or cannot\n  be read, 130 interrupted\n";
}

}  // namespace

Command lintCommand() {
    return {.name = "lint",
            .summary = "Find what in themes will not do what their makers hope.",
            .positionalNames = "THEME...",
            .description =
                "THEME is a folder, a package (.deb) or an archive (.zip, .tar, .tar.gz, .tar.xz "
                "and so on); - is one on\n"
                "standard input. Simulated phones and pads with iOS 12 and 13 are asked for every "
                "file by its name; nothing\n"
                "is changed.",
            .options = kLintOptions,
            .examples = {"velmoranth lint MyTheme.theme", "velmoranth lint OldTheme.deb --json",
                         "velmoranth lint --explain mask-hides-nothing"},
            .leastPositionals = 0,
            .mostPositionals = 100000,
            .run = runLint,
            .moreHelp = codesHelp};
}

}  // namespace velmoranth::cli
