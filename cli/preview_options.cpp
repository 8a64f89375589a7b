#include "cli/preview_options.h"

#include "cli/device_options.h"
#include "cli/messages.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string_view>

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr std::array<Option, 22> kPreviewOptions{{
    {"--output", "-o", "FILE",
     "write the picture here (default preview.png); - is standard output"},
    {"--root", "", "DIR",
     "use this device, with its own themes and preferences, in place of THEME"},
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
    kSetOption,
    kDateOption,
    kLocaleOption,
    {"--before", "", "", "the stock screen: nothing replaced"},
    {"--compare", "", "", "the stock screen and the themed one side by side"},
    {"--log", "", "FILE",
     "append what the process logs to FILE, or - for standard error; more with --set "
     "enableLogging=yes"},
    kExactFilesOption,
    {"--quiet", "-q", "", "do not say what the themes did"},
    {"--follow", "", "",
     "stay, and write the picture again whenever a file of the themes is saved or the device is "
     "notified (velmoranth notify), until interrupted"},
}};

// Whether the name says that something else than a PNG picture is in the file.
bool isOtherFormat(const std::string& name) {
    constexpr std::array<std::string_view, 12> kOthers{".jpg",  ".jpeg", ".gif",  ".tif",
                                                       ".tiff", ".bmp",  ".webp", ".heic",
                                                       ".avif", ".svg",  ".pdf",  ".ico"};
    std::string ending = std::filesystem::path(name).extension();
    std::ranges::transform(ending, ending.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return std::ranges::find(kOthers, ending) != kOthers.end();
}

// Options that exclude each other, and why.
Result<void> checkTogether(const Arguments& arguments) {
    struct Pair {
        std::string_view one;
        std::string_view other;
        std::string_view why;
    };

    static constexpr std::array<Pair, 6> kPairs{{
        {"--root", "--set", "a device has its own preferences; change those, or give THEME"},
        {"--before", "--compare", "--compare shows both"},
        {"--follow", "--before", "a screen with nothing replaced does not change"},
        {"--follow", "--compare", "follow the themed screen alone"},
        {"--steps", "--follow", "the steps have an end"},
        {"--steps", "--compare", "take --before for the stock screen's steps"},
    }};
    for (const Pair& pair : kPairs) {
        if (arguments.has(pair.one) && arguments.has(pair.other)) {
            return misuse(std::string(pair.one) + " does not go with " + std::string(pair.other) +
                          ": " + std::string(pair.why));
        }
    }
    if (arguments.has("--root") && !arguments.positionals().empty()) {
        return misuse("--root does not go with THEME: a device has its own themes");
    }
    if (!arguments.has("--root") && !arguments.has("--before") && arguments.positionals().empty()) {
        return misuse("a THEME folder is missing (or --root DIR); velmoranth preview --help");
    }
    if (arguments.has("--follow") && arguments.value("--output") == "-") {
        return misuse("--follow does not go with --output -: give a file, which is written again");
    }
    if (arguments.has("--steps") && arguments.value("--output") == "-") {
        return misuse(
            "--steps does not go with --output -: give a file, which the steps' are named for");
    }
    return {};
}

}  // namespace

std::span<const Option> previewOptionTable() {
    return kPreviewOptions;
}

Result<PreviewOptions> readPreviewOptions(const Arguments& arguments) {
    if (auto together = checkTogether(arguments); !together) {
        return tl::unexpected(std::move(together.error()));
    }
    PreviewOptions options;
    options.themes = arguments.positionals();
    options.root = arguments.value("--root").value_or("");
    options.output = arguments.value("--output").value_or(options.output);
    options.log = arguments.value("--log").value_or("");
    options.follow = arguments.has("--follow");
    options.isQuiet = arguments.has("--quiet");
    options.kind = arguments.has("--before")    ? PreviewKind::stock
                   : arguments.has("--compare") ? PreviewKind::sideBySide
                                                : PreviewKind::themed;
    for (const std::string_view name : {"--root", "--output", "--log", "--wallpaper", "--apps"}) {
        if (arguments.value(name) == "") {
            return misuse(std::string(name) + " takes a name, and this one is empty");
        }
    }
    if (isOtherFormat(options.output)) {
        return misuse("--output writes a PNG file, and the name " + shown(options.output) +
                      " is another format's");
    }
    auto device = readDeviceOptions(arguments);
    if (!device) {
        return tl::unexpected(std::move(device.error()));
    }
    options.device = std::move(*device);
    options.deviceName = arguments.value("--device").value_or(options.deviceName);
    auto screen = readScreenOptions(arguments);
    if (!screen) {
        return tl::unexpected(std::move(screen.error()));
    }
    options.screen = std::move(*screen);
    auto settings = readSettingOptions(arguments, "velmoranth preview --help");
    if (!settings) {
        return tl::unexpected(std::move(settings.error()));
    }
    options.settings = std::move(*settings);
    return options;
}

}  // namespace velmoranth::cli
