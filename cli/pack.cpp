// velmoranth pack
#include "cli/commands.h"
#include "cli/device_layout.h"
#include "cli/help.h"
#include "cli/late_progress.h"
#include "cli/lint_check.h"
#include "cli/messages.h"
#include "cli/near_path.h"
#include "cli/nearest.h"
#include "cli/theme_folders.h"
#include "desktop/files/cleanup.h"

#include "makers/packing/packing.h"
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <ranges>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr std::array<Option, 11> kPackOptions{{
    {"--output", "-o", "FILE",
     "write it there, or into this folder under its usual name, ID_VERSION_iphoneos-arm.deb; - is "
     "standard output"},
    {"--id", "", "ID", "the package's identifier (themes.NAME)"},
    {"--name", "", "NAME", "what it is called (the folder's name)"},
    {"--version", "", "VERSION", "its version (1.0)"},
    {"--author", "", "NAME", "who made the theme: NAME <ADDRESS>"},
    {"--description", "", "TEXT", "a line that sums it up, and more lines below it"},
    {"--field", "", "FIELD=VALUE", "any other field of a package, such as Homepage", Repeat::often},
    {"--dry-run", "", "", "say what would be packed, and write nothing"},
    {"--force", "", "", "replace a file of that name"},
    {"--no-lint", "", "", "pack the theme whatever velmoranth lint finds in it"},
    {"--json", "", "", "the report as an object for programs"},
}};

// The options that are a field each.
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kFieldOptions{
    {{"--id", "Package"},
     {"--name", "Name"},
     {"--version", "Version"},
     {"--author", "Author"},
     {"--description", "Description"}}};

Result<void> addField(std::string_view name, const std::string& value,
                      makers::ControlValues& given) {
    const makers::ControlField* const field = makers::controlField(name);
    if (field == nullptr) {
        return misuse("a package of a theme has no field " + inQuotes(name) +
                      suggestion(name, std::views::transform(makers::controlFields(),
                                                             &makers::ControlField::name)));
    }
    if (!makers::valueOf(given, field->name).empty()) {
        return misuse("the field " + std::string(field->name) + " is given more than once");
    }
    if (value.empty()) {
        return misuse("the field " + std::string(field->name) +
                      " takes a value, and this one is "
                      "empty");
    }
    given.emplace_back(field->name, value);
    return {};
}

Result<makers::ControlValues> givenFields(const Arguments& arguments) {
    makers::ControlValues given;
    for (const auto& [option, field] : kFieldOptions) {
        const auto value = arguments.value(option);
        if (auto added = value ? addField(field, *value, given) : Result<void>(); !added) {
            return tl::unexpected(std::move(added.error()));
        }
    }
    for (const std::string& text : arguments.values("--field")) {
        const std::size_t sign = text.find('=');
        if (sign == std::string::npos) {
            return misuse("--field takes FIELD=VALUE, not " + inQuotes(text));
        }
        if (auto added = addField(text.substr(0, sign), text.substr(sign + 1), given); !added) {
            return tl::unexpected(std::move(added.error()));
        }
    }
    return given;
}

bool isFolder(const std::string& path) {
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string outputOf(const Arguments& arguments, const makers::ControlValues& control) {
    const std::string name = makers::fileNameOf(control);
    const std::string given = arguments.value("--output").value_or(name);
    if (given.ends_with('/')) {
        return given + name;
    }
    return given != "-" && isFolder(given) ? given + "/" + name : given;
}

std::string textOf(const makers::PackagePlan& plan, const std::string& output, bool isWritten) {
    std::string text = shown(output) + ": " + shown(makers::valueOf(plan.control, "Name")) + " " +
                       makers::valueOf(plan.control, "Version") + ", " +
                       counted(plan.package.files.size(), "file") + ", installed as " +
                       shown(plan.installed) + "\n";
    for (const makers::LeftOut& left : plan.leftOut) {
        text += "  left out  " + shown(left.name) + ": " + left.why + "\n";
    }
    return text + (isWritten ? "" : "Nothing was written.\n");
}

std::string jsonOf(const makers::PackagePlan& plan, const std::string& output, bool isWritten) {
    nlohmann::ordered_json control = nlohmann::ordered_json::object();
    for (const auto& [field, value] : plan.control) {
        control[field] = value;
    }
    nlohmann::ordered_json files = nlohmann::ordered_json::array();
    for (const makers::PackagedFile& file : plan.package.files) {
        files.push_back("/" + file.name);
    }
    nlohmann::ordered_json leftOut = nlohmann::ordered_json::array();
    for (const makers::LeftOut& left : plan.leftOut) {
        leftOut.push_back({{"file", left.name}, {"why", left.why}});
    }
    const nlohmann::ordered_json report{{"version", 1},
                                        {"package", output},
                                        {"written", isWritten},
                                        {"installed", plan.installed},
                                        {"bytes", plan.bytes},
                                        {"control", std::move(control)},
                                        {"files", std::move(files)},
                                        {"leftOut", std::move(leftOut)}};
    return report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

// What keeps the theme from being packed: errors in files that come along, and files that their
// maker hoped to see.
Result<std::vector<makers::Finding>> errorsIn(const std::string& folder,
                                              const makers::PackagePlan& plan) {
    const auto theme = makers::themeAsGiven(folder);
    const auto calendar = installedCalendar();
    if (!theme || !calendar) {
        return tl::unexpected(theme ? calendar.error() : theme.error());
    }
    LateProgress progress;
    auto findings = checkTheme(*theme, *calendar, progress);
    progress.clear();
    if (findings) {
        std::erase_if(*findings, [&](const makers::Finding& finding) {
            const auto left = std::ranges::find(plan.leftOut, finding.file, &makers::LeftOut::name);
            return finding.row().severity != makers::Severity::error ||
                   (left != plan.leftOut.end() && left->why != makers::kLoosePicture);
        });
    }
    return findings;
}

ExitCode failForErrors(const std::string& folder, const std::vector<makers::Finding>& errors) {
    const makers::Finding& first = errors.front();
    const auto mended =
        static_cast<std::size_t>(std::ranges::count_if(errors, &makers::Finding::isMended));
    const std::string hint = mended == 0
                                 ? ""
                                 : "velmoranth convert " + forShell(folder) + " -o FOLDER mends " +
                                       std::to_string(mended) + " of them, ";
    return fail(ExitCode::nothingFound,
                shown(folder) + ": it has " + counted(errors.size(), "error") + ", " +
                    shown(first.file) + " first: " + first.reason + "; " + hint +
                    "velmoranth lint " + forShell(folder) +
                    " lists what is wrong, --no-lint packs it all the same");
}

ExitCode runPack(const Arguments& arguments) {
    const auto given = givenFields(arguments);
    if (!given) {
        return fail(ExitCode::wrongUsage, given.error());
    }
    const std::string& folder = arguments.positionals().front();
    if (folder.empty() || arguments.value("--output") == "") {
        return fail(ExitCode::wrongUsage, "THEME and FILE take a name, and this one is empty");
    }
    if (const std::string why = whyNoTheme(folder); !why.empty()) {
        return fail(ExitCode::badInput, {why, folder});
    }
    const auto plan = makers::planPackage(folder, *given);
    if (!plan) {
        // A field that the user gave wrongly has no path.
        return fail(plan.error().path.empty() ? ExitCode::wrongUsage : ExitCode::badInput,
                    withNearPath(plan.error(), {&folder, 1}));
    }
    const std::string output = outputOf(arguments, plan->control);
    if (const auto checked = makers::checkPackagePlace(folder, output); !checked) {
        return fail(ExitCode::badInput, checked.error());
    }
    const bool isWritten = !arguments.has("--dry-run");
    desktop::cleanUpOnSignals();
    if (!arguments.has("--no-lint")) {
        const auto errors = errorsIn(folder, *plan);
        if (!errors) {
            return fail(ExitCode::badInput, errors.error());
        }
        if (!errors->empty()) {
            return failForErrors(folder, *errors);
        }
    }
    if (isWritten) {
        LateProgress progress;
        const auto written = makers::writePlannedPackage(
            *plan, output, arguments.has("--force"), [&](std::size_t files) {
                progress.show("packing: " + std::to_string(files) + " of " +
                              counted(plan->package.files.size(), "file"));
            });
        progress.clear();
        if (!written) {
            return fail(ExitCode::badInput, written.error());
        }
    }
    if (makers::valueOf(plan->control, "Author").empty()) {
        note("the package says nobody made it; --author NAME says who did");
    }
    if (output != "-" || !isWritten) {
        print(arguments.has("--json") ? jsonOf(*plan, output, isWritten)
                                      : textOf(*plan, output, isWritten));
    }
    return ExitCode::done;
}

std::string fieldHelp() {
    std::string fields;
    for (const makers::ControlField& field : makers::controlFields()) {
        fields += (fields.empty() ? "" : ", ") + std::string(field.name);
    }
    return "fields:\n" + twoColumns({{"--field", fields}}) +
           "\nexit codes:\n  0 done, 1 errors in the theme, 2 wrong usage, 3 a theme that is none "
           "or cannot be packed, or\n  nowhere to write, 130 interrupted\n";
}

}  // namespace

Command packCommand() {
    return {
        .name = "pack",
        .summary = "Make a package of a theme, which a phone installs.",
        .positionalNames = "THEME",
        .description =
            "THEME is a folder. The package installs it under /Library/Themes and tells the "
            "running apps. What no option\nsays comes from the theme's Info.plist, under the "
            "field's own name, and then from the folder's name. The same\ntheme gives the same "
            "package, byte for byte.",
        .options = kPackOptions,
        .examples = {"velmoranth pack Sunset.theme --version 1.1 --author 'Ann <ann@example.com>'",
                     "velmoranth pack Sunset.theme --id com.example.sunset --field "
                     "Homepage=https://example.com -o out"},
        .leastPositionals = 1,
        .mostPositionals = 1,
        .run = runPack,
        .moreHelp = fieldHelp};
}

}  // namespace velmoranth::cli
