// When a running screen shows that a setting has changed: the table's word, held against the engine
// in a process that goes on and one that has just started.
#include "core/setting_rows.h"
#include "desktop/notifications/notification_center.h"
#include "tests/simulator/themed_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace velmoranth::simulator::shown_settings_test {
namespace {

using core::SettingKind;
using core::SettingRow;
using core::Shows;
using platform::PropertyList;

constexpr const char* kModel = "phone-667";

class ShownSettings : public testing::TestWithParam<int> {
  protected:
    ShownSettings() {
        device.png("IconBundles/com.apple.Maps-large.png", 120, 120, kMagenta);
        device.png("Bundles/com.apple.mobileicons.framework/AppIconMask.png", 120, 120, kBlack,
                   kWhite);
        device.png("Velmoranth/iPhoneOverlay.png", 60, 60, kGreen, {0, 0, 0, 0});
        device.png("Velmoranth/iPhoneShadow.png", 80, 80, kBlue);
        device.png("Velmoranth/SBDockBGiphone.png", 375, 86, kGreen);
        device.png("Bundles/com.apple.springboard/SBBadgeBG.png", 60, 60, kBlue);
        device.png("Bundles/com.apple.springboard/ANEMFolderIconBG.png", 60, 60, kBlue);
    }

    // What a screen shows of a change, and what one shows that starts after it.
    struct Shown {
        Picture before;
        Picture running;
        Picture fresh;
    };

    [[nodiscard]] Shown change(const SettingRow& row, const PropertyList& from,
                               const PropertyList& to) const {
        // Numbers are those of a shadow that is drawn.
        platform::Dictionary preferences{{"dynamicShadow", row.kind() == SettingKind::number},
                                         {"opacityVal", 1.0},
                                         {"xAxisVal", 4.0},
                                         {"shadowWidthVal", 70.0},
                                         {"shadowHeightVal", 70.0}};
        const std::string key(row.key);
        preferences.insert_or_assign(key, from);
        auto screen = RunningScreen::start(device.request(kModel, GetParam(), preferences)).value();
        Shown shown{.before = screen->render().value().picture, .running = {}, .fresh = {}};
        preferences.insert_or_assign(key, to);
        const ScreenRequest after = device.request(kModel, GetParam(), preferences);
        const auto root = desktop::DeviceRoot::open(after.deviceFiles).value();
        EXPECT_EQ(desktop::postToProcesses(*root, std::string(row.notice)).value(), 1);
        shown.running = screen->nextPicture(std::chrono::seconds(60)).value().picture;
        screen.reset();
        shown.fresh = renderScreen(after).value().picture;
        return shown;
    }

    ThemedDevice device;
};

INSTANTIATE_TEST_SUITE_P(Systems, ShownSettings, testing::Values(12, 13));

TEST_P(ShownSettings, SwitchesShowAsTheTableSays) {
    int changes = 0;
    for (const SettingRow& row : core::kSettingRows) {
        if (row.kind() != SettingKind::yesOrNo) {
            continue;
        }
        const auto [before, on, freshOn] = change(row, false, true);
        changes += before == freshOn ? 0 : 1;
        EXPECT_EQ(on == freshOn, row.shows != Shows::afterRespring || before == freshOn) << row.key;
        if (row.shows == Shows::afterRespring) {
            EXPECT_EQ(on, before) << row.key;
        }
        const auto [wasOn, off, freshOff] = change(row, true, false);
        EXPECT_EQ(off == freshOff, row.shows == Shows::atOnce || wasOn == freshOff) << row.key;
    }
    // Tapping, logging, dumping and what is kept for older preferences change no picture.
    EXPECT_EQ(changes, 9);
}

// The other theme has an icon of the same app, and no mask, badge or folder's plate.
TEST_P(ShownSettings, OtherThemesShowOnIconsAtOnceAndElsewhereAfterARespring) {
    device.png("../U.theme/IconBundles/com.apple.Maps-large.png", 120, 120, kGreen);
    const platform::Point place = device.look(kModel, GetParam(), {}).icon("com.apple.Maps");
    const auto icon = [&](const Picture& picture) {
        Pixel pixel{};
        const auto column = static_cast<std::size_t>((place.x + 10) * picture.scale);
        const auto row = static_cast<std::size_t>((place.y + 10) * picture.scale);
        std::copy_n(&picture.pixels.at((row * picture.width + column) * 4), 4, pixel.begin());
        return pixel;
    };
    using Themes = PropertyList::Array;
    const SettingRow& row = core::kSettingRows.front();
    ASSERT_EQ(row.key, "ActiveThemes");
    EXPECT_EQ(row.shows, Shows::iconsAtOnce);
    const auto [before, running, fresh] = change(row, Themes{"T.theme"}, Themes{"U.theme"});
    EXPECT_NE(icon(before), kGreen);
    EXPECT_EQ(icon(running), kGreen);
    EXPECT_EQ(icon(fresh), kGreen);
    EXPECT_NE(running, fresh) << "the badge is the old theme's";
    const auto none = change(row, Themes{"T.theme"}, Themes{});
    EXPECT_EQ(icon(none.running), icon(none.fresh));
    EXPECT_NE(none.running, none.fresh);
}

TEST_P(ShownSettings, NumbersShowAfterARespring) {
    for (const SettingRow& row : core::kSettingRows) {
        if (row.kind() != SettingKind::number) {
            continue;
        }
        const bool isOpacity = row.key == "opacityVal";
        const auto [before, running, fresh] =
            change(row, isOpacity ? 0.2 : 4.0, isOpacity ? 1.0 : 72.0);
        EXPECT_EQ(row.shows, Shows::afterRespring) << row.key;
        EXPECT_EQ(running, before) << row.key;
        EXPECT_NE(fresh, before) << row.key;
    }
}

}  // namespace
}  // namespace velmoranth::simulator::shown_settings_test
