#include "cli/preview_options.h"

#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/numbers.h"
#include "cli/preferences.h"
#include "desktop/dates/dates.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <ctime>
#include <ranges>
#include <regex>
#include <string_view>

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr std::array<Option, 19> kPreviewOptions{{
    {"--output", "-o", "FILE",
     "write the picture here (default preview.png); - is standard output"},
    {"--root", "", "DIR",
     "use this device, with its own themes and preferences, in place of THEME"},
    {"--ios", "", "12|13", "the system (default 13)"},
    {"--device", "", "NAME", "phone, phone-667 (a smaller one) or pad (default phone)"},
    {"--orientation", "", "HOW", "how the device is held: portrait or, a pad, landscape"},
    {"--screen", "", "SCREEN",
     "home, folder (open, over the home screen), pressed (a finger is on an icon), today, "
     "switcher, notification, settings, panel-error and panel-success (the theming's own settings, "
     "when something failed or is done), weather, controls (of an app) or gallery (every image "
     "that "
     "the screens ask for, before and after)"},
    {"--page", "", "N", "the page of the home screen or of the gallery, from 1"},
    {"--folder", "", "NAME",
     "with --screen folder: the folder, by name or identifier (default the first of the page)"},
    {"--folder-page", "", "N", "with --screen folder: the page of the folder, from 1"},
    {"--icon", "", "NAME",
     "with --screen pressed: the icon, by name or identifier (default one in the middle)"},
    {"--steps", "", "",
     "with --screen folder: the folder as it opens and closes again, 20 pictures a second, in "
     "files beside the output: preview-01.png (closed) to preview-08.png (open) to preview-15.png "
     "(closed); with --screen panel-success: its image at 0.1, 0.2, 0.3 and 0.7 seconds"},
    {"--set", "", "KEY=VALUE", "a preference of this run, see below", Repeat::often},
    {"--date", "", "DATE", "what the device's clock shows: 2019-12-24 or 2019-12-24T18:30"},
    {"--locale", "", "NAME",
     "the device's language and region (default en_US); the calendar's icon follows it"},
    {"--before", "", "", "the stock screen: nothing replaced"},
    {"--compare", "", "", "the stock screen and the themed one side by side"},
    {"--log", "", "FILE",
     "append what the process logs to FILE, or - for standard error; more with --set "
     "enableLogging=yes"},
    {"--exact-files", "", "", "load image files by the very name, never name@2x or name@3x for it"},
    {"--follow", "", "",
     "stay, and write the picture again whenever the device is notified (velmoranth notify), until "
     "interrupted"},
}};

// "en", "de_AT", "zh-Hant-TW": two or three letters, then parts of letters and digits.
bool isLocaleName(const std::string& text) {
    static const std::regex kForm("[A-Za-z]{2,3}([_-][A-Za-z0-9]{2,})*");
    constexpr std::size_t kLongest = 60;
    return text.size() <= kLongest && std::regex_match(text, kForm);
}

Result<simulator::DeviceConfiguration> readDevice(const Arguments& arguments) {
    const std::string system = arguments.value("--ios").value_or("13");
    const auto major = parseInteger(system, 0, 1000);
    if (!major || !simulator::systemVersion(*major)) {
        return misuse("--ios takes 12 or 13, not " + inQuotes(system));
    }
    const std::string name = arguments.value("--device").value_or("phone");
    auto device = simulator::deviceConfiguration(name, *major);
    if (!device) {
        const auto names =
            std::views::transform(simulator::deviceModels(), &simulator::DeviceModel::name);
        return misuse(fmt::format("--device takes one of {}, not {}{}", fmt::join(names, ", "),
                                  inQuotes(name), suggestion(name, names)));
    }
    if (const auto locale = arguments.value("--locale")) {
        if (!isLocaleName(*locale)) {
            return misuse("--locale takes a name like en_US or de, not " + inQuotes(*locale));
        }
        device->locale = *locale;
    }
    if (const auto text = arguments.value("--date")) {
        const auto date = parseDate(*text);
        if (!date) {
            return tl::unexpected(date.error());
        }
        device->date = *date;
    }
    const std::string held = arguments.value("--orientation").value_or("portrait");
    if (held != "portrait" && held != "landscape") {
        return misuse("--orientation takes portrait or landscape, not " + inQuotes(held));
    }
    if (held == "landscape") {
        if (auto turned = simulator::turnToLandscape(*device); !turned) {
            return tl::unexpected(std::move(turned.error()));
        }
    }
    device->exactFiles = arguments.has("--exact-files");
    return device;
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

Result<platform::Date> parseDate(const std::string& text) {
    static const std::regex kForm("\\d{4}-\\d\\d-\\d\\d(T\\d\\d:\\d\\d(:\\d\\d)?)?");
    constexpr std::array kFormats{"%Y-%m-%d", "%Y-%m-%dT%H:%M", "%Y-%m-%dT%H:%M:%S"};
    const std::string complaint =
        "--date takes a date like 2019-12-24 or 2019-12-24T18:30, not " + inQuotes(text);
    std::tm wanted{};
    const auto reads = [&](const char* format) {
        wanted = std::tm();
        // 9:41 is the time that devices show in pictures.
        wanted.tm_hour = 9;
        wanted.tm_min = 41;
        const char* const end = ::strptime(text.c_str(), format, &wanted);
        return end != nullptr && *end == '\0';
    };
    if (!std::regex_match(text, kForm) || std::ranges::none_of(kFormats, reads)) {
        return misuse(complaint);
    }
    wanted.tm_isdst = -1;
    std::tm real = wanted;
    const std::time_t time = std::mktime(&real);
    // A day that there is not comes back as another one; an hour that a change to summer time
    // leaves out may.
    if (real.tm_mon != wanted.tm_mon || real.tm_mday != wanted.tm_mday ||
        real.tm_min != wanted.tm_min) {
        return misuse(complaint);
    }
    return platform::Date{static_cast<double>(time) - desktop::kReferenceDate};
}

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
    options.kind = arguments.has("--before")    ? PreviewKind::stock
                   : arguments.has("--compare") ? PreviewKind::sideBySide
                                                : PreviewKind::themed;
    for (const std::string_view name : {"--root", "--output", "--log"}) {
        if (arguments.value(name) == "") {
            return misuse(std::string(name) + " takes a name, and this one is empty");
        }
    }
    auto device = readDevice(arguments);
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
    for (const std::string& assignment : arguments.values("--set")) {
        auto set = parseAssignment(
            assignment, {"--set", "--set ", "velmoranth preview --help", kPreviewSettings});
        if (!set) {
            return tl::unexpected(std::move(set.error()));
        }
        options.settings.insert_or_assign(std::string(set->setting->key), std::move(set->value));
    }
    return options;
}

}  // namespace velmoranth::cli
