#include "cli/preview_options.h"

#include "cli/device_options.h"
#include "cli/messages.h"
#include "cli/numbers.h"
#include "cli/output_file.h"
#include "cli/theme_folders.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr std::array<Option, 28> kPreviewOptions{{
    {"--output", "-o", "FILE",
     "write the picture here (default preview.png); - is standard output; with --all-screens the "
     "folder of the pictures (default preview)"},
    {"--root", "", "DIR",
     "use this device, with its own themes and preferences, in place of THEME"},
    {"--all", "", "",
     "of a THEME that is a folder with themes in it, such as a package's, all of these"},
    kIosOption,
    kDeviceOption,
    kOrientationOption,
    {"--screen", "", "SCREEN",
     "home, folder (open, over the home screen), pressed (a finger is on an icon), today, "
     "switcher, notification, settings, panel-error and panel-success (the theming's own settings, "
     "when something failed or is done), weather, controls (of an app), gallery (every image "
     "that "
     "the screens ask for, before and after) or icons (every icon of the themes)"},
    {"--page", "", "N", "the page of the home screen, of the gallery or of the icons, from 1"},
    {"--wallpaper", "", "FILE",
     "a picture (PNG, JPEG, GIF or TIFF) behind the home screen, in place of the drawn one; it "
     "fills the screen"},
    {"--apps", "", "theme|FILE",
     "the apps on the home screen: those that the themes have icons for, or a list with an "
     "identifier a line and, behind a blank, a name; - is standard input"},
    {"--folder", "", "NAME",
     "with --screen folder: the folder, by name or identifier (default the first of the page)"},
    {"--folder-page", "", "N", "with --screen folder: the page of the folder, from 1"},
    {"--icon", "", "NAME",
     "with --screen pressed: the icon, by name or identifier (default one in the middle)"},
    {"--steps", "", "",
     "with --screen folder: the folder as it opens and closes again, 20 pictures a second, in "
     "files beside the output: preview-01.png (closed) to preview-08.png (open) to preview-15.png "
     "(closed); with --screen panel-success: its image at 0.1, 0.2, 0.3 and 0.7 seconds"},
    {"--all-screens", "", "",
     "every screen, and every page of those that have pages, each in a file of its own: "
     "home-01.png "
     "to settings.png"},
    {"--sheet", "", "",
     "screens in one picture, a row a device: those that --screen, --device and --ios name with "
     "commas between them (--screen home,weather --device phone,pad), or all but the "
     "panel, the gallery and the icons on every device"},
    kSetOption,
    kDateOption,
    kLocaleOption,
    {"--before", "", "", "the stock screen: nothing replaced"},
    {"--compare", "", "", "the stock screen and the themed one side by side"},
    {"--log", "", "FILE",
     "append what the process logs to FILE, or - for standard error; more with --set "
     "enableLogging=yes"},
    kExactFilesOption,
    {"--expect", "", "FILE",
     "compare with this picture, or with --all-screens with those of the same names in this "
     "folder; exit code 1 when it is another one, and what differs in red in a file beside the "
     "output: preview-difference.png"},
    {"--tolerance", "", "N",
     "with --expect: how much red, green, blue or alpha may differ, 0 to 255 (default 0)"},
    {"--json", "", "",
     "say as JSON what was written, and which replaced methods and files of themes each screen has "
     "asked for"},
    {"--quiet", "-q", "", "do not say what the themes did"},
    {"--follow", "", "",
     "stay, and write the picture again whenever a file of the themes is saved or the device is "
     "notified (velmoranth notify), until interrupted"},
}};

constexpr std::string_view kOne = "it is of one screen";
constexpr std::string_view kOnePage = "every page is drawn";
constexpr std::string_view kFirstPage = "of each screen the first page is drawn";
constexpr std::array kPreviewApart = std::to_array<Apart>({
    {"--root", "--set", "a device has its own preferences; change those, or give THEME"},
    {"--before", "--compare", "--compare shows both"},
    {"--follow", "--before", "a screen with nothing replaced does not change"},
    {"--follow", "--compare", "follow the themed screen alone"},
    {"--steps", "--follow", "the steps have an end"},
    {"--steps", "--compare", "take --before for the stock screen's steps"},
    {"--all-screens", "--sheet", "take one after the other"},
    {"--all-screens", "--screen", "all are drawn"},
    {"--all-screens", "--page", kOnePage},
    {"--sheet", "--page", kFirstPage},
    {"--sheet", "--compare", "take one after the other"},
    {"--all-screens", "--folder", kOne},
    {"--all-screens", "--folder-page", kOne},
    {"--all-screens", "--icon", kOne},
    {"--all-screens", "--steps", kOne},
    {"--all-screens", "--follow", kOne},
    {"--sheet", "--folder", kOne},
    {"--sheet", "--folder-page", kOne},
    {"--sheet", "--icon", kOne},
    {"--sheet", "--steps", kOne},
    {"--sheet", "--follow", kOne},
    {"--expect", "--steps", kOne},
    {"--expect", "--follow", "the picture is to change"},
    {"--json", "--steps", kOne},
    {"--json", "--follow", "nothing says where one ends"},
    {"--root", "THEME", "a device has its own themes"},
    {"--follow", "--output -", "give a file, which is written again"},
    {"--steps", "--output -", "give a file, which the steps' are named for"},
    {"--all-screens", "--output -", "give a folder, which the pictures go to"},
    {"--expect", "--output -", "give a file, beside which the difference goes"},
    {"--json", "--output -", "give a file, since standard output has the JSON"},
});

constexpr std::array<Needed, 1> kPreviewNeeded{
    {{"a THEME folder is missing (or --root DIR)", {"THEME", "--root", "--before"}}}};

bool isSameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    return std::filesystem::equivalent(a, b, error);
}

// What is compared with what, and how closely.
Result<void> readExpected(const Arguments& arguments, PreviewOptions& options) {
    options.expected = arguments.value("--expect").value_or("");
    if (const auto given = arguments.value("--tolerance")) {
        if (!arguments.has("--expect")) {
            return misuse("--tolerance needs --expect FILE");
        }
        const auto tolerance = parseInteger(*given, 0, 255);
        if (!tolerance) {
            return misuse("--tolerance takes a whole number from 0 to 255, not " +
                          inQuotes(*given));
        }
        options.tolerance = *tolerance;
    }
    if (!options.expected.empty() && isSameFile(options.expected, options.output)) {
        return misuse("--expect and --output are the same, " + shown(options.output) +
                      ": what is expected would be written over");
    }
    return {};
}

// One screen, or which of which devices.
Result<void> readExtent(const Arguments& arguments, PreviewOptions& options) {
    if (arguments.has("--sheet")) {
        options.extent = PreviewExtent::sheet;
        auto devices = readEveryDevice(arguments, "13");
        if (!devices) {
            return tl::unexpected(std::move(devices.error()));
        }
        options.devices = std::move(*devices);
        options.device = options.devices.front().configuration;
        options.deviceName = options.devices.front().name;
    } else {
        options.extent =
            arguments.has("--all-screens") ? PreviewExtent::allScreens : PreviewExtent::screen;
        auto device = readDeviceOptions(arguments);
        if (!device) {
            return tl::unexpected(std::move(device.error()));
        }
        options.device = std::move(*device);
        options.deviceName = arguments.value("--device").value_or(options.deviceName);
    }
    auto screens = readScreenKinds(arguments);
    if (!screens) {
        return tl::unexpected(std::move(screens.error()));
    }
    options.screens = std::move(*screens);
    auto screen = readScreenOptions(arguments, options.screens);
    if (!screen) {
        return tl::unexpected(std::move(screen.error()));
    }
    options.screen = std::move(*screen);
    return {};
}

// Of a sheet's devices the first.
std::vector<std::pair<std::string, std::string>> deviceWords(const Arguments& arguments,
                                                             const PreviewOptions& options) {
    std::vector<std::pair<std::string, std::string>> words;
    if (arguments.has(kIosOption.name)) {
        words.emplace_back(kIosOption.name, std::to_string(options.device.system.major));
    }
    if (arguments.has(kDeviceOption.name) || options.extent == PreviewExtent::sheet) {
        words.emplace_back(kDeviceOption.name, options.deviceName);
    }
    for (const Option& option :
         {kOrientationOption, kSetOption, kDateOption, kLocaleOption, kExactFilesOption}) {
        for (const std::string& value : arguments.values(option.name)) {
            words.emplace_back(option.name, option.valueName.empty() ? "" : value);
        }
    }
    return words;
}

}  // namespace

std::span<const Option> previewOptionTable() {
    return kPreviewOptions;
}

std::span<const Apart> previewOptionsApart() {
    return kPreviewApart;
}

std::span<const Needed> neededByPreview() {
    return kPreviewNeeded;
}

Result<PreviewOptions> readPreviewOptions(const Arguments& arguments) {
    PreviewOptions options;
    if (auto named = noneEmpty(arguments.positionals(), "THEME"); !named) {
        return tl::unexpected(std::move(named.error()));
    }
    options.themes = arguments.has("--all") ? withThemesWithin(arguments.positionals())
                                            : arguments.positionals();
    options.root = arguments.value("--root").value_or("");
    options.output = arguments.value("--output")
                         .value_or(arguments.has("--all-screens") ? "preview" : options.output);
    options.isJson = arguments.has("--json");
    options.log = arguments.value("--log").value_or("");
    options.follow = arguments.has("--follow");
    options.isQuiet = arguments.has("--quiet");
    options.kind = arguments.has("--before")    ? PreviewKind::stock
                   : arguments.has("--compare") ? PreviewKind::sideBySide
                                                : PreviewKind::themed;
    for (const std::string_view name :
         {"--root", "--output", "--log", "--wallpaper", "--apps", "--expect"}) {
        if (arguments.value(name) == "") {
            return misuse(std::string(name) + " takes a name, and this one is empty");
        }
    }
    if (std::string why = whyOtherFormat(options.output, FileFormat::png);
        !arguments.has("--all-screens") && !why.empty()) {
        return misuse(std::move(why));
    }
    for (const auto read : {readExpected, readExtent}) {
        if (auto done = read(arguments, options); !done) {
            return tl::unexpected(std::move(done.error()));
        }
    }
    options.deviceWords = deviceWords(arguments, options);
    auto settings = readSettingOptions(arguments, "velmoranth preview --help");
    if (!settings) {
        return tl::unexpected(std::move(settings.error()));
    }
    options.settings = std::move(*settings);
    return options;
}

}  // namespace velmoranth::cli
