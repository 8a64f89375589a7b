// Several screens: each in a file, or all in one picture.
#include "cli/messages.h"
#include "cli/picture_file.h"
#include "cli/preview_drawing.h"
#include "desktop/files/descriptor.h"
#include "simulator/home_screen/installed_apps.h"
#include "simulator/screen_kinds.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace velmoranth::cli {

namespace fs = std::filesystem;

using desktop::Problem;
using desktop::Result;
using simulator::ScreenKind;

namespace {

// How wide every screen of a sheet is, pixels, so that its columns stand below each other.
constexpr std::size_t kSheetScreenWidth = 320;

// The options of one of several screens. The list of icons has apps of its own. A problem when the
// themes or the apps have nothing for it.
Result<ScreenOptions> optionsOf(const PreviewOptions& options, const DeviceOfRun& device,
                                const simulator::SystemVersion& system, ScreenKind kind) {
    ScreenOptions screen = options.screen;
    screen.kind = kind;
    if (kind == ScreenKind::icons) {
        screen.appsFrom.clear();
        if (auto found = findApps(screen, *device.root, system); !found) {
            return tl::unexpected(std::move(found.error()));
        }
    }
    if (kind == ScreenKind::folder && !screen.apps.empty()) {
        const simulator::InstalledApps apps(screen.apps);
        if (std::ranges::none_of(apps.onHomeScreen().items,
                                 [](const auto& item) { return item.folder != nullptr; })) {
            return tl::unexpected(Problem{"none of these apps lies in a folder"});
        }
    }
    return screen;
}

// Whether the screen has pages of its own. What lies over the home screen has that one's.
bool hasOwnPages(ScreenKind kind) {
    const simulator::ScreenTraits& traits = simulator::definitionOf(kind).traits;
    return traits.hasPages && (kind == ScreenKind::home || !traits.hasHomeScreen);
}

// "home-01.png", or "settings.png" of a screen without pages.
std::string fileOf(ScreenKind kind, int page) {
    const std::string_view name = simulator::definitionOf(kind).name;
    return hasOwnPages(kind) ? fmt::format("{}-{:02}.png", name, page)
                             : fmt::format("{}.png", name);
}

Result<void> makeOutputFolder(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (fs::is_directory(path)) {
        return {};
    }
    Problem problem = desktop::problemOfErrno(error.value(), path);
    problem.message = "the pictures need a folder, and none can be made here: " + problem.message;
    return tl::unexpected(std::move(problem));
}

// Says which of the expected pictures no screen has. False when there is one.
bool tellUndrawn(const std::string& folder, const std::vector<DeliveredPicture>& pictures) {
    std::set<std::string> drawn;
    for (const DeliveredPicture& picture : pictures) {
        drawn.insert(fs::path(picture.file).filename());
    }
    bool areAllDrawn = true;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename();
        if (name.ends_with(".png") && !drawn.contains(name)) {
            note(shown(entry.path().string()) + " is expected, and no screen has that picture");
            areAllDrawn = false;
        }
    }
    return areAllDrawn;
}

// Draws these pages and writes each to its file, in their order.
Result<std::vector<DeliveredPicture>> drawAll(const PreviewOptions& options,
                                              const DeviceOfRun& device,
                                              const std::vector<ScreenOptions>& screens) {
    const NamedDevice named{options.deviceName, options.device};
    std::vector<DeliveredPicture> pictures(screens.size());
    auto drawn = doAtOnce(screens.size(), "screen", [&](std::size_t i) -> Result<void> {
        const ScreenOptions& screen = screens[i];
        const auto page =
            drawPage(options, device, requestFor(options, device, screen, options.device));
        if (!page) {
            return tl::unexpected(page.error());
        }
        auto delivered = deliver(options, page->picture,
                                 fs::path(options.output) / fileOf(screen.kind, screen.page),
                                 {shownScreen(page->screen, screen.kind, named, page->place)});
        if (!delivered) {
            return tl::unexpected(std::move(delivered.error()));
        }
        pictures[i] = std::move(*delivered);
        return {};
    });
    if (!drawn) {
        return tl::unexpected(std::move(drawn.error()));
    }
    return pictures;
}

struct ShrunkScreen {
    ShownScreen shown;
    simulator::Picture picture;
};

}  // namespace

ExitCode drawAllScreens(const PreviewOptions& options, const DeviceOfRun& device) {
    if (auto made = makeOutputFolder(options.output); !made) {
        return fail(ExitCode::badInput, made.error());
    }
    if (!options.expected.empty() && !fs::is_directory(options.expected)) {
        return fail(ExitCode::badInput,
                    Problem{"--all-screens compares with a folder of pictures, and this is none",
                            options.expected});
    }
    std::vector<ScreenOptions> screens;
    for (const ScreenKind kind : options.screens) {
        auto screen = optionsOf(options, device, options.device.system, kind);
        if (screen) {
            screens.push_back(std::move(*screen));
        } else {
            warn(fmt::format("the screen {} is left out: {}", simulator::definitionOf(kind).name,
                             desktop::toLine(screen.error())));
        }
    }
    auto pictures = drawAll(options, device, screens);
    if (pictures) {  // which say how many others there are
        std::vector<ScreenOptions> others;
        for (std::size_t i = 0; i < screens.size(); ++i) {
            const int last = hasOwnPages(screens[i].kind) ? (*pictures)[i].screens.front().pageCount
                                                          : screens[i].page;
            for (int page = screens[i].page + 1; page <= last; ++page) {
                others.push_back(screens[i]);
                others.back().page = page;
            }
        }
        auto more = drawAll(options, device, others);
        if (more) {
            std::ranges::move(*more, std::back_inserter(*pictures));
        } else {
            pictures = std::move(more);
        }
    }
    if (!pictures) {
        return fail(ExitCode::badInput, pictures.error());
    }
    // As the screens are listed, each by its pages.
    std::ranges::stable_sort(*pictures, {}, [&](const DeliveredPicture& picture) {
        return simulator::screenKindNamed(picture.screens.front().screen);
    });
    const ExitCode told = tell(options, *pictures, device.themes);
    if (told == ExitCode::nothingFound) {
        const auto others = std::ranges::count_if(*pictures, std::not_fn(isAsExpected));
        note(fmt::format("{} of {} {} not as expected", others,
                         counted(pictures->size(), "picture"), others == 1 ? "is" : "are"));
    }
    return options.expected.empty() || tellUndrawn(options.expected, *pictures)
               ? told
               : ExitCode::nothingFound;
}

ExitCode drawSheet(const PreviewOptions& options, const DeviceOfRun& device) {
    const std::size_t columns = options.screens.size();
    std::vector<ShrunkScreen> screens(columns * options.devices.size());
    const auto drawn = doAtOnce(screens.size(), "screen", [&](std::size_t i) -> Result<void> {
        const ScreenKind kind = options.screens[i % columns];
        const NamedDevice& named = options.devices[i / columns];
        const auto screen = optionsOf(options, device, named.configuration.system, kind);
        if (!screen) {
            return tl::unexpected(screen.error());
        }
        const auto page =
            drawPage(options, device, requestFor(options, device, *screen, named.configuration));
        if (!page) {
            return tl::unexpected(page.error());
        }
        screens[i] = {shownScreen(page->screen, kind, named, page->place),
                      shrunkToWidth(page->picture, kSheetScreenWidth)};
        return {};
    });
    if (!drawn) {
        return fail(ExitCode::badInput, drawn.error());
    }
    std::vector<CaptionedRow> rows(options.devices.size());
    for (std::size_t i = 0; i < screens.size(); ++i) {
        const ShownScreen& screen = screens[i].shown;
        CaptionedRow& row = rows[i / columns];
        row.title =
            fmt::format("{}, iOS {}", screen.device.name, screen.device.configuration.system.major);
        row.pictures.push_back(
            {screens[i].picture, i < columns ? std::string(screen.screen) : std::string()});
    }
    const Arranged sheet = inRows(rows, kComparisonGap);
    std::vector<ShownScreen> placed;
    for (std::size_t i = 0; i < screens.size(); ++i) {
        screens[i].shown.place = sheet.places[i];
        placed.push_back(std::move(screens[i].shown));
    }
    auto delivered = deliver(options, sheet.picture, options.output, std::move(placed));
    if (!delivered) {
        return fail(ExitCode::badInput, delivered.error());
    }
    return tell(options, {&*delivered, 1}, device.themes);
}

}  // namespace velmoranth::cli
