#include "simulator/home_screen/home_screen_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <set>
#include <span>
#include <string_view>

namespace velmoranth::simulator::home_screen_layout_test {
namespace {

HomeScreenLayout layoutOf(std::string_view model) {
    const DeviceConfiguration device = deviceConfiguration(model, 13).value();
    return layoutHomeScreen(homeScreenMetrics(device.kind, device.screen), device.screen);
}

const HomeScreenMetrics& metricsOf(std::string_view model) {
    const DeviceConfiguration device = deviceConfiguration(model, 13).value();
    return homeScreenMetrics(device.kind, device.screen);
}

void expectAt(const IconSlot& slot, double x, double y) {
    EXPECT_NEAR(slot.icon.origin.x, x, 1e-9) << nameOf(slot.item);
    EXPECT_NEAR(slot.icon.origin.y, y, 1e-9) << nameOf(slot.item);
}

TEST(HomeScreenLayout, TallPhone) {
    const HomeScreenLayout layout = layoutOf("phone");
    ASSERT_EQ(layout.pages.size(), 2U);
    ASSERT_EQ(layout.pages[0].size(), 24U);
    expectAt(layout.pages[0][0], 27, 72);
    expectAt(layout.pages[0][3], 288, 72);
    expectAt(layout.pages[0][4], 27, 72 + 310.0 / 3);
    expectAt(layout.pages[0][23], 288, 72 + 5 * 310.0 / 3);
    EXPECT_EQ(layout.dockFrame, (platform::Rect{{10, 708}, {355, 94}}));
    ASSERT_EQ(layout.dock.size(), 4U);
    expectAt(layout.dock[0], 27, 725);
    expectAt(layout.dock[3], 288, 725);
}

TEST(HomeScreenLayout, ClassicPhone) {
    const HomeScreenLayout layout = layoutOf("phone-667");
    expectAt(layout.pages[0][0], 27, 28);
    expectAt(layout.pages[0][23], 288, 28 + 5 * 88);
    EXPECT_EQ(layout.dockFrame, (platform::Rect{{0, 571}, {375, 96}}));
    expectAt(layout.dock[1], 114, 585);
}

TEST(HomeScreenLayout, PadDockIsAsWideAsItsIconsNeed) {
    const HomeScreenLayout layout = layoutOf("pad");
    expectAt(layout.pages[0][0], 81.5, 88);
    expectAt(layout.pages[0][19], 81.5 + 3 * 176, 88 + 4 * 161);
    const platform::Rect& dock = layout.dockFrame;
    // Four icons and three suggested ones, with a divider between them.
    EXPECT_EQ(dock.size.width, 7 * 76 + 9 * 20);
    EXPECT_EQ(dock.origin.x, (768 - dock.size.width) / 2);
    expectAt(layout.dock[0], dock.origin.x + 20, dock.origin.y + 14);
    expectAt(layout.dock[3], dock.origin.x + 20 + 3 * 96, dock.origin.y + 14);
}

TEST(HomeScreenLayout, EveryAppIsOnOnePageInOneFolderOrInTheDock) {
    for (const DeviceModel& model : deviceModels()) {
        const HomeScreenLayout layout = layoutOf(model.name);
        std::multiset<std::string> shown;
        std::size_t folders = 0;
        for (const auto& page : layout.pages) {
            EXPECT_FALSE(page.empty());
            for (const IconSlot& slot : page) {
                if (slot.item.folder == nullptr) {
                    shown.insert(identifierOf(slot.item));
                    continue;
                }
                ++folders;
                for (const App& app : slot.item.folder->apps) {
                    shown.insert(std::string(app.bundleIdentifier));
                }
            }
        }
        for (const IconSlot& slot : layout.dock) {
            shown.insert(identifierOf(slot.item));
        }
        EXPECT_EQ(shown.size(), homeScreenApps().size() + dockApps().size());
        EXPECT_EQ(std::set<std::string>(shown.begin(), shown.end()).size(), shown.size());
        EXPECT_EQ(folders, 2U);
        // Every device has a folder on its first page.
        EXPECT_TRUE(std::any_of(layout.pages[0].begin(), layout.pages[0].end(),
                                [](const IconSlot& slot) { return slot.item.folder != nullptr; }));
    }
}

TEST(HomeScreenLayout, OnlyAFloatingDockSuggestsApps) {
    EXPECT_TRUE(layoutOf("phone").suggested.empty());
    const HomeScreenLayout pad = layoutOf("pad");
    ASSERT_EQ(pad.suggested.size(), 3U);
    // Icon, gap, divider, gap, icon.
    const double lastUserIcon = pad.dock.back().icon.origin.x + 76;
    EXPECT_EQ(pad.dividerX, lastUserIcon + 20);
    EXPECT_EQ(pad.suggested[0].icon.origin.x, lastUserIcon + 40);
    EXPECT_EQ(pad.suggested[2].icon.origin.x + 76 + 20,
              pad.dockFrame.origin.x + pad.dockFrame.size.width);
}

TEST(HomeScreenLayout, FewIconsStandInTheMiddleOfADock) {
    const std::span<const App> dock = dockApps();
    const auto layOut = [&](const char* model, std::size_t docked, std::size_t suggested) {
        const DeviceConfiguration device = deviceConfiguration(model, 13).value();
        return layoutHomeScreen(homeScreenMetrics(device.kind, device.screen), device.screen,
                                {.items = homeScreenItems(),
                                 .dock = dock.first(docked),
                                 .suggested = suggestedApps().first(suggested)});
    };
    for (const char* const model : {"phone", "phone-667"}) {
        // To the nearest pixel.
        EXPECT_NEAR(layOut(model, 1, 0).dock[0].icon.origin.x, 157.5, 0.17);
        const HomeScreenLayout three = layOut(model, 3, 0);
        EXPECT_EQ(three.dockFrame, layoutOf(model).dockFrame);
        EXPECT_NEAR(three.dock[0].icon.origin.x, 70.5, 0.17);
        EXPECT_NEAR(three.dock[2].icon.origin.x, 244.5, 0.17);
    }
    // A divider has icons on both of its sides.
    const HomeScreenLayout user = layOut("pad", 2, 0);
    EXPECT_EQ(user.dividerX, std::nullopt);
    EXPECT_EQ(user.dockFrame.size.width, 2 * 76 + 3 * 20);
    EXPECT_EQ(user.dock[0].icon.origin.x, user.dockFrame.origin.x + 20);
    const HomeScreenLayout suggested = layOut("pad", 0, 2);
    EXPECT_EQ(suggested.dividerX, std::nullopt);
    EXPECT_EQ(suggested.dockFrame, user.dockFrame);
    EXPECT_EQ(suggested.suggested[0].icon.origin.x, suggested.dockFrame.origin.x + 20);
    EXPECT_EQ(suggested.suggested[1].icon.origin.x, suggested.dockFrame.origin.x + 116);
}

TEST(HomeScreenLayout, PadHeldSidewaysHasAGridOfItsOwn) {
    DeviceConfiguration device = deviceConfiguration("pad", 13).value();
    ASSERT_TRUE(turnToLandscape(device));
    EXPECT_EQ(device.screen.width, 1024);
    EXPECT_EQ(device.screen.height, 768);
    EXPECT_EQ(device.orientation, Orientation::landscape);
    const HomeScreenMetrics& metrics = homeScreenMetrics(device.kind, device.screen);
    EXPECT_EQ(metrics.columns, 5);
    EXPECT_EQ(metrics.rows, 4);
    const HomeScreenLayout layout = layoutHomeScreen(metrics, device.screen);
    expectAt(layout.pages[0][0], 100, 70);
    expectAt(layout.pages[0][6], 287, 212);
    EXPECT_EQ(layout.dockFrame.origin.y + layout.dockFrame.size.height, 758);
}

TEST(Device, PhoneDoesNotTurn) {
    DeviceConfiguration device = deviceConfiguration("phone", 13).value();
    const auto turned = turnToLandscape(device);
    ASSERT_FALSE(turned);
    EXPECT_NE(turned.error().message.find("phone"), std::string::npos);
    EXPECT_EQ(device.screen.width, 375);
}

TEST(HomeScreenLayout, EverythingStandsOnWholePixelsAndOnTheScreen) {
    for (const DeviceModel& model : deviceModels()) {
        const HomeScreenLayout layout = layoutOf(model.name);
        const HomeScreenMetrics& metrics = metricsOf(model.name);
        for (const IconSlot& slot : layout.pages[0]) {
            for (const double place : {slot.icon.origin.x, slot.icon.origin.y}) {
                const double pixels = place * model.screen.scale;
                EXPECT_NEAR(pixels, std::round(pixels), 1e-6) << model.name << nameOf(slot.item);
            }
            // The label, too, ends above the page dots.
            const LabelPlace label = labelPlace(metrics, model.screen.scale);
            EXPECT_LT(slot.icon.origin.y + metrics.iconSide + label.top + label.height,
                      metrics.pageDotsY - metrics.pageDotSide / 2);
        }
        EXPECT_LE(layout.dockFrame.origin.y + layout.dockFrame.size.height, model.screen.height);
        EXPECT_LT(metrics.pageDotsY + metrics.pageDotSide / 2, layout.dockFrame.origin.y);
    }
}

TEST(HomeScreenLayout, LabelsOfNeighboursDoNotTouch) {
    EXPECT_EQ(labelPlace(metricsOf("phone"), 3).width, 82);
    EXPECT_LT(labelPlace(metricsOf("pad"), 2).width, 176);
}

TEST(HomeScreenLayout, ScreenOfAnotherSizeTakesTheNearestOfItsKind) {
    EXPECT_EQ(homeScreenMetrics(DeviceKind::phone, {414, 896, 3}).screenHeight, 812);
    EXPECT_EQ(homeScreenMetrics(DeviceKind::phone, {768, 1024, 2}).kind, DeviceKind::phone);
    EXPECT_EQ(homeScreenMetrics(DeviceKind::pad, {375, 812, 3}).kind, DeviceKind::pad);
}

TEST(HomeScreenLayout, SnappingRoundsToThePixelsOfTheScreen) {
    EXPECT_DOUBLE_EQ(snapToPixels(10.2, 3), 31.0 / 3);
    EXPECT_DOUBLE_EQ(snapToPixels(10.2, 2), 10);
    EXPECT_DOUBLE_EQ(snapToPixels(10.25, 2), 10.5);
}

}  // namespace
}  // namespace velmoranth::simulator::home_screen_layout_test
