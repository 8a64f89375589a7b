// Other apps than a fresh device's: where they stand, what they are called, and how many pages and
// dots they take.
#include "simulator/home_screen/installed_apps.h"

#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/home_screen/page_control.h"
#include "simulator/home_screen/platform_classes.h"
#include "simulator/process/launcher.h"
#include "simulator/screens/gallery_items.h"
#include "simulator/toolkit/base_classes.h"
#include "themed_device.h"

#include "bare_process.h"
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator::installed_apps_test {
namespace {

// "Maps [Social: Instagram WhatsApp] Notes"
std::string pagesOf(const HomeScreenApps& apps) {
    std::string text;
    for (const HomeScreenItem& item : apps.items) {
        text += text.empty() ? "" : " ";
        if (item.folder == nullptr) {
            text += nameOf(item);
            continue;
        }
        text += "[" + nameOf(item) + ":";
        for (const App& app : item.folder->apps) {
            text += " " + std::string(app.name);
        }
        text += "]";
    }
    return text;
}

std::string namesOf(std::span<const App> apps) {
    std::string text;
    for (const App& app : apps) {
        text += (text.empty() ? "" : " ") + std::string(app.name);
    }
    return text;
}

std::vector<NamedApp> numbered(int count) {
    std::vector<NamedApp> apps;
    for (int i = 1; i <= count; ++i) {
        apps.push_back({"com.example.app" + std::to_string(i)});
    }
    return apps;
}

TEST(InstalledApps, NoneAreThoseOfAFreshDevice) {
    const InstalledApps none({});
    EXPECT_EQ(none.onHomeScreen().items.data(), homeScreenItems().data());
    EXPECT_EQ(none.onHomeScreen().items.size(), homeScreenItems().size());
    EXPECT_EQ(namesOf(none.onHomeScreen().dock), "Phone Safari Messages Music");
    EXPECT_EQ(namesOf(none.onHomeScreen().suggested), "Notes Maps Books");
    EXPECT_EQ(allApps(stockApps()).size(), homeScreenApps().size() + dockApps().size());
}

TEST(InstalledApps, KnownOnesStandWhereAFreshDeviceHasThem) {
    const std::vector<NamedApp> given{
        {"org.example.first"},    {"com.apple.Music"},           {"net.whatsapp.WhatsApp"},
        {"com.apple.iBooks"},     {"com.example.Two", "Zwei"},   {"com.apple.mobilephone"},
        {"com.apple.calculator"}, {"com.burbn.instagram", "IG"}, {"com.apple.mobilecal"}};
    const InstalledApps installed(given);
    const HomeScreenApps apps = installed.onHomeScreen();
    EXPECT_EQ(pagesOf(apps),
              "First [Social: WhatsApp IG] Books Zwei [Utilities: Calculator] Calendar");
    EXPECT_EQ(namesOf(apps.dock), "Music Phone");
    EXPECT_EQ(namesOf(apps.suggested), "Books First WhatsApp") << "none of the dock";
    ASSERT_EQ(apps.items.size(), 6U);
    ASSERT_NE(apps.items[1].folder, nullptr);
    EXPECT_EQ(apps.items[1].folder->identifier, "folder.social");
    // What a fresh device knows of an app besides its name.
    EXPECT_EQ(apps.items[5].app->iconClass, "SBCalendarApplicationIcon");
    EXPECT_EQ(apps.items[0].app->iconClass, "SBApplicationIcon");
    EXPECT_EQ(apps.items[1].folder->apps[0].badge, "3");
    EXPECT_EQ(badgeOf(apps.items[1]), "3");
    EXPECT_EQ(apps.items[0].app->badge, "");
    std::string all;
    for (const App* const app : allApps(apps)) {
        all += std::string(app->name) + " ";
    }
    EXPECT_EQ(all, "First WhatsApp IG Books Zwei Calculator Calendar Music Phone ");
}

TEST(InstalledApps, AllOfAFreshDeviceStandAsOnOne) {
    std::vector<NamedApp> given;
    for (const App* const app : allApps(stockApps())) {
        given.push_back({std::string(app->bundleIdentifier)});
    }
    const InstalledApps installed(given);
    EXPECT_EQ(pagesOf(installed.onHomeScreen()), pagesOf(stockApps()));
    EXPECT_EQ(namesOf(installed.onHomeScreen().dock), namesOf(dockApps()));
    EXPECT_EQ(namesOf(installed.onHomeScreen().suggested), namesOf(suggestedApps()));
}

TEST(InstalledApps, NamesComeFromTheIdentifiersLastPart) {
    EXPECT_EQ(nameFor("com.example.notes"), "Notes");
    EXPECT_EQ(nameFor("com.example.iNotes"), "INotes");
    EXPECT_EQ(nameFor("9gag"), "9gag");
    EXPECT_EQ(nameFor("com.example."), "com.example.");
    EXPECT_EQ(nameFor(""), "");
}

TEST(InstalledApps, TakeAsManyPagesAsTheyNeed) {
    struct Row {
        const char* model;
        int apps;
        std::size_t pages;
        std::size_t onLast;
    };

    for (const Row& row :
         {Row{"phone", 1, 1, 1}, Row{"phone", 24, 1, 24}, Row{"phone", 25, 2, 1},
          Row{"phone", 1000, 42, 16}, Row{"pad", 20, 1, 20}, Row{"pad", 21, 2, 1}}) {
        const std::vector<NamedApp> given = numbered(row.apps);
        const InstalledApps installed(given);
        const DeviceConfiguration device = deviceConfiguration(row.model, 13).value();
        const HomeScreenLayout layout = layoutHomeScreen(
            homeScreenMetrics(device.kind, device.screen), device.screen, installed.onHomeScreen());
        EXPECT_EQ(layout.pages.size(), row.pages) << row.model << " " << row.apps;
        EXPECT_EQ(layout.pages.back().size(), row.onLast) << row.model << " " << row.apps;
        EXPECT_TRUE(layout.dock.empty());
    }
}

TEST(InstalledApps, AreOnThePageInTheirOrder) {
    const ThemedDevice device;
    ScreenRequest request = device.request("phone-667", 13, {});
    request.apps = numbered(30);
    request.apps.push_back({"com.apple.mobilephone", "Ring"});
    request.page = 2;
    const auto screen = renderScreen(request);
    ASSERT_TRUE(screen) << toLine(screen.error());
    EXPECT_EQ(screen->pageCount, 2);
    ASSERT_EQ(screen->icons.size(), 7U);
    EXPECT_EQ(screen->icons[0].bundleIdentifier, "com.example.app25");
    EXPECT_EQ(screen->icons[0].label, "App25");
    EXPECT_EQ(screen->icons[5].label, "App30");
    EXPECT_EQ(screen->icons[6].bundleIdentifier, "com.apple.mobilephone");
    EXPECT_EQ(screen->icons[6].label, "Ring");
}

// A process with the home screen's classes and nothing replaced.
struct Dots : BareProcess {
    Dots() : BareProcess(deviceConfiguration("phone", 13).value()) {
        registerBaseClasses(context);
        registerPlatformClasses(context);
    }

    // The place among the dots that show of the current page's, and how many show.
    std::pair<std::ptrdiff_t, std::size_t> shown(int pages, int current) {
        const auto control = std::make_shared<PageControl>(
            context, platform::Point{context.device.screen.width / 2, 688}, pages, true);
        control->setCurrentPage(current);
        control->placeSubviews();
        const platform::Rect frame = control->frame();
        EXPECT_GE(frame.origin.x, 0);
        EXPECT_LE(frame.origin.x + frame.size.width, context.device.screen.width);
        const platform::ImageRef white =
            runtime.send<platform::ImageRef, bool>(*control, "_iconListIndicatorImage:", true);
        std::ptrdiff_t place = -1;
        const std::vector<platform::ViewRef> dots = control->subviews();
        for (std::size_t i = 0; i < dots.size(); ++i) {
            const auto dot = std::dynamic_pointer_cast<platform::ImageView>(dots[i]);
            if (samePixels(dot->image(), white)) {
                EXPECT_EQ(place, -1) << "one is current";
                place = static_cast<std::ptrdiff_t>(i);
            }
        }
        return {place, dots.size()};
    }
};

TEST(PageDots, AreThoseAroundTheCurrentPageWhereNotAllHaveRoom) {
    Dots dots;
    EXPECT_EQ(dots.shown(2, 1), std::pair(std::ptrdiff_t{1}, std::size_t{3})) << "search, 1, 2";
    EXPECT_EQ(dots.shown(19, 19), std::pair(std::ptrdiff_t{19}, std::size_t{20}));
    EXPECT_EQ(dots.shown(400, 1), std::pair(std::ptrdiff_t{1}, std::size_t{20}));
    EXPECT_EQ(dots.shown(400, 10), std::pair(std::ptrdiff_t{10}, std::size_t{20}));
    EXPECT_EQ(dots.shown(400, 200), std::pair(std::ptrdiff_t{10}, std::size_t{20}));
    EXPECT_EQ(dots.shown(400, 399), std::pair(std::ptrdiff_t{18}, std::size_t{20}));
    EXPECT_EQ(dots.shown(400, 400), std::pair(std::ptrdiff_t{19}, std::size_t{20}));
}

TEST(PadDock, DividerShowsBetweenItsAppsAndTheSuggestedOnes) {
    const ThemedDevice device;
    ScreenRequest request = device.request("pad", 13, {});
    request.loadEngine = false;
    // Whether a line as high as a divider stands in the dock's upper half, where no icon is.
    const auto hasLine = [&](const std::vector<NamedApp>& apps) {
        request.apps = apps;
        const RenderedScreen screen = renderScreen(request).value();
        const auto top = static_cast<std::size_t>(screen.icons.back().y);
        const auto side = static_cast<std::size_t>(screen.icons.back().side);
        const auto at = [&](std::size_t x, std::size_t y) {
            return static_cast<int>(screen.picture.pixels[(y * screen.picture.width + x) * 4 + 1]);
        };
        bool found = false;
        for (std::size_t x = 20; x + 20 < screen.picture.width; ++x) {
            bool isLine = true;
            for (std::size_t y = top + side / 4; y < top + side * 3 / 4; ++y) {
                isLine = isLine && at(x, y) > at(x - 8, y) + 8 && at(x, y) > at(x + 8, y) + 8;
            }
            found = found || isLine;
        }
        return found;
    };
    EXPECT_TRUE(hasLine({{"com.apple.mobilephone"}, {"com.apple.Maps"}}));
    EXPECT_FALSE(hasLine({{"com.apple.mobilephone"}}));
    EXPECT_FALSE(hasLine({{"com.apple.Maps"}}));
}

}  // namespace
}  // namespace velmoranth::simulator::installed_apps_test
