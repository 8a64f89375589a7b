// Every screen with a skeleton of the system's own pictures, beside the same screen with nothing
// replaced, on every device and system.
#include "cli/device_options.h"
#include "cli/throw_away_device.h"
#include "simulator/process/launcher.h"
#include "tests/cli/preview_fixture.h"

#include <cstdlib>
#include <iterator>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

namespace velmoranth::cli::dump_screens_test {
namespace {

using simulator::Picture;
using simulator::RenderedScreen;
using simulator::ScreenKind;
using simulator::ShownIcon;

// Pixels of a picture, the far edges left out, of which a channel may differ by that much.
struct Area {
    std::size_t left = 0;
    std::size_t top = 0;
    std::size_t right = 0;
    std::size_t bottom = 0;
    int most = 0;

    [[nodiscard]] bool has(std::size_t x, std::size_t y) const {
        return x >= left && x < right && y >= top && y < bottom;
    }
};

int mostAllowed(const std::vector<Area>& areas, std::size_t x, std::size_t y) {
    int most = 0;
    for (const Area& area : areas) {
        most = area.has(x, y) ? std::max(most, area.most) : most;
    }
    return most;
}

// What differs by more than it may, as boxes of neighbouring pixels; "" for nothing.
std::string differenceOf(const Picture& a, const Picture& b, const std::vector<Area>& allowed) {
    constexpr std::size_t kCell = 24;
    std::map<std::pair<std::size_t, std::size_t>, std::pair<int, int>> cells;
    for (std::size_t i = 0; i < a.pixels.size(); i += 4) {
        int most = 0;
        for (std::size_t channel = 0; channel < 4; ++channel) {
            most = std::max(most, std::abs(a.pixels[i + channel] - b.pixels[i + channel]));
        }
        const std::size_t x = i / 4 % a.width;
        const std::size_t y = i / 4 / a.width;
        if (most > 0 && most > mostAllowed(allowed, x, y)) {
            auto& [pixels, largest] = cells[{y / kCell, x / kCell}];
            ++pixels;
            largest = std::max(largest, most);
        }
    }
    std::string text;
    for (const auto& [place, difference] : cells) {
        text += "\n  at " + std::to_string(place.second * kCell) + ", " +
                std::to_string(place.first * kCell) + ": " + std::to_string(difference.first) +
                " pixels by up to " + std::to_string(difference.second);
    }
    return text;
}

constexpr int kAnything = 255;

class DumpScreens : public PreviewTest,
                    public testing::WithParamInterface<std::tuple<std::string_view, int>> {
  protected:
    DumpScreens() {
        const auto& [name, system] = GetParam();
        const CommandResult made = runCommand({"dump", "-o", "themes", "--device",
                                               std::string(name), "--ios", std::to_string(system)},
                                              setting());
        EXPECT_EQ(made.code, 0) << made.errors;
        themed_ = *makeDevice(std::vector{folder / "work/themes/Skeleton.theme"});
        bare_ = *makeDevice({});
        configuration_.date = usualDate();
    }

    [[nodiscard]] bool is(std::string_view device, int system) const {
        return GetParam() == std::tuple(device, system);
    }

    [[nodiscard]] bool isPad() const { return std::get<0>(GetParam()) == "pad"; }

    [[nodiscard]] simulator::ScreenRequest request(ScreenKind screen) const {
        simulator::ScreenRequest request;
        request.device = configuration_;
        request.screen = screen;
        return request;
    }

    static RenderedScreen shown(simulator::ScreenRequest request, const DeviceOfRun& device,
                                bool loadEngine) {
        request.deviceFiles = device.root->files();
        request.loadEngine = loadEngine;
        auto result = simulator::renderScreen(request);
        EXPECT_TRUE(result) << (result ? "" : toLine(result.error()));
        return result ? std::move(*result) : RenderedScreen();
    }

    [[nodiscard]] RenderedScreen themed(const simulator::ScreenRequest& request) const {
        return shown(request, themed_, true);
    }

    [[nodiscard]] RenderedScreen stock(const simulator::ScreenRequest& request) const {
        return shown(request, bare_, false);
    }

    // Points of the screen.
    [[nodiscard]] Area square(double left, double top, double side, int most) const {
        const auto pixels = [this](double points) {
            return static_cast<std::size_t>(points * configuration_.screen.scale);
        };
        return {pixels(left), pixels(top), pixels(left + side), pixels(top + side), most};
    }

    // Where a picture shows once it is blurred.
    [[nodiscard]] Area blurred(Area area, int most) const {
        const auto reach = static_cast<std::size_t>(110 * configuration_.screen.scale);
        return {area.left - std::min(area.left, reach), area.top - std::min(area.top, reach),
                area.right + reach, area.bottom + reach, most};
    }

    static Area areaOf(const ShownIcon& icon, int most) {
        const auto left = static_cast<std::size_t>(icon.x);
        const auto top = static_cast<std::size_t>(icon.y);
        const auto side = static_cast<std::size_t>(icon.side) + 1;
        return {left, top, left + side, top + side, most};
    }

    void expectSame(const RenderedScreen& stock, const RenderedScreen& themed,
                    const std::vector<Area>& allowed, const std::string& what) const {
        ASSERT_GT(stock.picture.pixels.size(), 0U);
        ASSERT_EQ(themed.picture.pixels.size(), stock.picture.pixels.size());
        EXPECT_EQ(differenceOf(stock.picture, themed.picture, allowed), "") << what;
    }

    // The plates of folders are blurred wallpaper, which no picture is, and what lies on them is
    // smaller than on the home screen, which has the one picture of an app's icon.
    static std::vector<Area> folderIcons(const RenderedScreen& screen, int most) {
        std::vector<Area> areas;
        for (const ShownIcon& icon : screen.icons) {
            if (icon.bundleIdentifier.starts_with("folder")) {
                areas.push_back(areaOf(icon, most));
            }
        }
        return areas;
    }

    // A pad with iOS 13 draws it on white: a picture of it would have no day. A screen of two
    // pixels a point cuts the weekday's line through its lowest row, so that tails are paler there.
    [[nodiscard]] std::vector<Area> calendars(const RenderedScreen& screen) const {
        std::vector<Area> areas;
        for (const ShownIcon& icon : screen.icons) {
            if (icon.bundleIdentifier == "com.apple.mobilecal" && is("pad", 13)) {
                areas.push_back(areaOf(icon, kAnything));
            } else if (icon.bundleIdentifier == "com.apple.mobilecal" && is("phone-667", 13)) {
                areas.push_back(areaOf(icon, 8));
                areas.back().top += 34;
                areas.back().bottom = areas.back().top + 1;
            }
        }
        return areas;
    }

    // Where the home screen cannot be the system's.
    [[nodiscard]] std::vector<Area> homeScreenAreas(const RenderedScreen& screen) const {
        std::vector<Area> areas = folderIcons(screen, 70);
        std::ranges::move(calendars(screen), std::back_inserter(areas));
        return areas;
    }

    // The same of a home screen that is behind blurred glass.
    [[nodiscard]] std::vector<Area> areasBehindGlass(int mostOfFolders, int mostOfCalendar) const {
        const RenderedScreen screen = stock(request(ScreenKind::home));
        std::vector<Area> areas;
        for (const Area& icon : folderIcons(screen, 0)) {
            areas.push_back(blurred(icon, mostOfFolders));
        }
        for (const Area& icon : calendars(screen)) {
            areas.push_back(blurred(icon, isPad() ? mostOfCalendar : 1));
        }
        return areas;
    }

    // With a skeleton, beside nothing replaced.
    void expectSame(ScreenKind kind, const std::vector<Area>& allowed) const {
        expectSame(stock(request(kind)), themed(request(kind)), allowed,
                   std::string(simulator::definitionOf(kind).name));
    }

    void expectHomeScreens() const {
        for (const ScreenKind kind : {ScreenKind::home, ScreenKind::pressed, ScreenKind::icons}) {
            simulator::ScreenRequest wanted = request(kind);
            int pages = 1;
            for (wanted.page = 1; wanted.page <= pages; ++wanted.page) {
                const RenderedScreen own = stock(wanted);
                pages = own.pageCount;
                expectSame(own, themed(wanted), homeScreenAreas(own),
                           std::string(simulator::definitionOf(kind).name) + " " +
                               std::to_string(wanted.page));
            }
            EXPECT_TRUE(pages == 2 || kind == ScreenKind::icons);
        }
    }

    // The system writes a long weekday smaller; a theme's is cut off or goes to the icon's edges.
    void expectTheLongestWeekday() const {
        simulator::ScreenRequest wanted = request(ScreenKind::home);
        wanted.device.date = parseDate("2019-09-11").value();
        const RenderedScreen own = stock(wanted);
        std::vector<Area> allowed = homeScreenAreas(own);
        for (const ShownIcon& icon : own.icons) {
            if (icon.bundleIdentifier == "com.apple.mobilecal" &&
                (is("phone", 13) || is("phone-667", 13))) {
                allowed.push_back(areaOf(icon, kAnything));
                allowed.back().bottom =
                    allowed.back().top + static_cast<std::size_t>(18 * configuration_.screen.scale);
            }
        }
        expectSame(own, themed(wanted), allowed, "Wednesday");
    }

    void expectSettingsWeatherAndControls() const {
        for (const ScreenKind kind :
             {ScreenKind::settings, ScreenKind::weather, ScreenKind::controls}) {
            expectSame(kind, {});
        }
    }

    // Where icons are smaller than on the home screen, its picture is made smaller, and the system
    // draws another one.
    void expectToday() const {
        std::vector<Area> suggested;
        for (double left = 407; isPad() && left <= 677; left += 90) {
            suggested.push_back(square(left, 148, 60, 32));
        }
        expectSame(ScreenKind::today, suggested);
    }

    void expectNotification() const {
        const RenderedScreen own = stock(request(ScreenKind::notification));
        std::vector<Area> allowed = homeScreenAreas(stock(request(ScreenKind::home)));
        allowed.push_back(
            square(isPad() ? 144 : 18, configuration_.screen.scale == 3 ? 52 : 28, 20, 14));
        if (is("pad", 13)) {
            const std::vector<Area> behind = areasBehindGlass(0, 14);
            allowed.insert(allowed.end(), behind.begin(), behind.end());
        }
        expectSame(own, themed(request(ScreenKind::notification)), allowed, "notification");
    }

    void expectSwitcher() const {
        std::vector<Area> allowed = areasBehindGlass(2, 3);
        std::vector<std::pair<double, double>> cards{{73.5, 59}, {341.5, 59}};
        std::pair<double, double> suggestion{22, 613};
        if (is("phone", 12) || is("phone", 13)) {
            cards = {{73.5, 83}, {341.5, 83}};
            suggestion = {22, 742};
        } else if (isPad()) {
            cards = {{78, 33}, {414, 33}, {78, 487}, {414, 487}};
            suggestion = {188, 970};
        }
        for (const auto& [left, top] : cards) {
            allowed.push_back(square(left, top, 29.5, 36));
        }
        allowed.push_back(square(suggestion.first, suggestion.second, 32, 25));
        expectSame(ScreenKind::switcher, allowed);
    }

    // With nothing replaced there is no panel that says so.
    void expectPanelsAreThoseWithoutATheme() const {
        for (const ScreenKind kind : {ScreenKind::panelError, ScreenKind::panelSuccess}) {
            expectSame(shown(request(kind), bare_, true), themed(request(kind)), {},
                       std::string(simulator::definitionOf(kind).name));
        }
    }

    // While theming is on there is no plate behind the icons, with whatever theme.
    void expectOpenFolders() const {
        const RenderedScreen home = stock(request(ScreenKind::home));
        std::vector<Area> behind = areasBehindGlass(2, 8);
        simulator::ScreenRequest wanted = request(ScreenKind::folder);
        for (const ShownIcon& icon : home.icons) {
            wanted.item = icon.bundleIdentifier;
            int pages = wanted.item.starts_with("folder") ? 1 : 0;
            for (wanted.folderPage = 1; wanted.folderPage <= pages; ++wanted.folderPage) {
                const RenderedScreen own = stock(wanted);
                ASSERT_TRUE(own.folder);
                pages = own.folder->pageCount;
                std::vector<Area> allowed = behind;
                allowed.push_back({static_cast<std::size_t>(own.folder->x),
                                   static_cast<std::size_t>(own.folder->y),
                                   static_cast<std::size_t>(own.folder->x + own.folder->width) + 1,
                                   static_cast<std::size_t>(own.folder->y + own.folder->height) + 1,
                                   5});
                expectSame(own, themed(wanted), allowed,
                           wanted.item + " " + std::to_string(wanted.folderPage));
            }
        }
    }

    simulator::DeviceConfiguration configuration_ =
        *simulator::deviceConfiguration(std::get<0>(GetParam()), std::get<1>(GetParam()));
    DeviceOfRun themed_;
    DeviceOfRun bare_;
};

// One case for all, since the skeleton is made for each.
TEST_P(DumpScreens, areTheSystemsOwn) {
    expectHomeScreens();
    expectTheLongestWeekday();
    expectSettingsWeatherAndControls();
    expectToday();
    expectNotification();
    expectSwitcher();
    expectPanelsAreThoseWithoutATheme();
    expectOpenFolders();
}

INSTANTIATE_TEST_SUITE_P(All, DumpScreens,
                         testing::Combine(testing::Values("phone", "phone-667", "pad"),
                                          testing::Values(12, 13)),
                         [](const auto& each) {
                             std::string name(std::get<0>(each.param));
                             std::ranges::replace(name, '-', '_');
                             return name + "_ios" + std::to_string(std::get<1>(each.param));
                         });

}  // namespace
}  // namespace velmoranth::cli::dump_screens_test
