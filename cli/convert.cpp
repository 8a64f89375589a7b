// velmoranth convert
#include "makers/conversion/convert.h"

#include "cli/commands.h"
#include "cli/conversion_report.h"
#include "cli/device_layout.h"
#include "cli/late_progress.h"
#include "cli/messages.h"
#include "cli/near_path.h"
#include "desktop/files/cleanup.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr std::array<Option, 4> kConvertOptions{{
    {"--output", "-o", "FOLDER",
     "put the themes into this folder, which is made when it is missing"},
    {"--dry-run", "", "", "say what would be done, and write nothing"},
    {"--force", "", "", "replace themes of the same names in FOLDER"},
    {"--json", "", "", "the report as an object for programs"},
}};

constexpr std::array<Needed, 1> kConvertNeeded{{{"-o FOLDER is missing", {"--output"}}}};

Result<makers::Conversion> readConversion(const Arguments& arguments) {
    makers::Conversion conversion;
    conversion.inputs = arguments.positionals();
    conversion.output = arguments.value("--output").value_or("");
    conversion.isDryRun = arguments.has("--dry-run");
    conversion.replacesThemes = arguments.has("--force");
    if (conversion.output.empty() ||
        std::ranges::find(conversion.inputs, "") != conversion.inputs.end()) {
        return misuse("INPUT and FOLDER take a name, and this one is empty");
    }
    return conversion;
}

ExitCode runConvert(const Arguments& arguments) {
    auto conversion = readConversion(arguments);
    if (!conversion) {
        return fail(ExitCode::wrongUsage, conversion.error());
    }
    auto calendar = installedCalendar();
    if (!calendar) {
        return fail(ExitCode::badInput, calendar.error());
    }
    conversion->calendar = std::move(*calendar);
    desktop::cleanUpOnSignals();
    LateProgress progress;
    std::optional<LateProgress> writing;  // its time is not that of what came before
    conversion->progress = [&](const std::string& what) { progress.show(what); };
    conversion->warned = [&](const std::string& line) {
        progress.clear();
        warn(line);
    };
    conversion->written = [&](std::size_t done, std::size_t all) {
        if (!writing) {
            progress.clear();
            writing.emplace();
        }
        writing->show(done, all, "file");
    };
    const auto themes = makers::convertThemes(*conversion);
    progress.clear();
    writing.reset();
    if (!themes) {
        return fail(ExitCode::badInput, withNearPath(themes.error(), conversion->inputs));
    }
    print(arguments.has("--json") ? jsonOf(*themes, *conversion) : textOf(*themes, *conversion));
    return makers::hasEmptyInput(*themes) ? ExitCode::nothingFound : ExitCode::done;
}

std::string exitHelp() {
    return "exit codes:\n  0 done, 1 an input of which nothing comes along, 2 wrong usage, 3 an "
           "input that is none or cannot be read, or "
           "nowhere to write,\n  130 interrupted\n";
}

}  // namespace

Command convertCommand() {
    return {.name = "convert",
            .summary = "Make themes that show of themes in any layout.",
            .positionalNames = "INPUT...",
            .description =
                "INPUT is a folder, a package (.deb) or an archive (.zip, .tar, .tar.gz, .tar.xz "
                "and so on), with one\ntheme in it or several, at any depth; - is one on standard "
                "input. Each becomes a folder of its own in FOLDER.\nInputs are never changed, and "
                "nothing is replaced without --force.",
            .options = kConvertOptions,
            .examples = {"velmoranth convert OldTheme.deb -o themes",
                         "velmoranth convert icons.zip MyIcons -o themes --dry-run"},
            .leastPositionals = 1,
            .mostPositionals = 100000,
            .run = runConvert,
            .moreHelp = exitHelp,
            .needed = kConvertNeeded};
}

}  // namespace velmoranth::cli
