// The factory preferences and the calendar's settings, as the system takes them.
#include "core/library_classes.h"
#include "core/setting_rows.h"
#include "core/settings.h"
#include "core/velmoranth.h"
#include "desktop/plist/property_lists.h"
#include "hooks/images/calendar_settings.h"
#include "tests/support/places.h"
#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace velmoranth::tests::factory_settings_test {
namespace {

const std::string kFactory =
    "/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist";
const std::string kLive = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kCalendar = "/User/Library/VelMoranth/UserSettings/Cal.plist";

// A file of the layout; `path` is that of the device.
std::string installed(const std::string& path) {
    const std::string inLayout = "/var/mobile" + path.substr(std::string("/User").size());
    std::ifstream file(tests::kLayoutFolder + inLayout, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << inLayout;
    return {std::istreambuf_iterator<char>(file), {}};
}

platform::Dictionary dictionary(const std::string& text) {
    const std::vector<std::uint8_t> bytes(text.begin(), text.end());
    const auto list = desktop::parsePropertyList(bytes);
    EXPECT_TRUE(list.has_value());
    const auto* const values = list ? list->as<platform::Dictionary>() : nullptr;
    EXPECT_NE(values, nullptr);
    return values != nullptr ? *values : platform::Dictionary();
}

TEST(FactorySettings, AreInPlaceAfterTheFirstStart) {
    TestDevice device;
    device.file(kFactory, installed(kFactory));
    // Registering the main class runs its +load, which sends for the factory preferences.
    for (const platform::ClassDefinition& definition : core::libraryClasses()) {
        device.runtime.registerClass(definition);
    }
    core::loadSettings();
    EXPECT_EQ(device.contents(kLive), installed(kFactory));
    core::Settings expected;
    expected.enable = true;
    expected.enableIconMask = true;
    expected.enableOverlay = true;
    expected.shadowRadiusVal = 4;
    expected.opacityVal = 0.4F;
    expected.yAxisVal = 3;
    expected.shadowWidthVal = 60;
    expected.shadowHeightVal = 60;
    EXPECT_EQ(core::settings(), expected);
}

TEST(FactorySettings, LeaveTheUsersOwnAlone) {
    TestDevice device;
    device.file(kFactory, installed(kFactory));
    device.preferences({{"enable", false}, {"removeDock", true}});
    const std::string own = device.contents(kLive);
    core::VelMoranth::load();
    core::loadSettings();
    EXPECT_EQ(device.contents(kLive), own);
    EXPECT_FALSE(core::settings().enable);
    EXPECT_TRUE(core::settings().removeDock);
}

TEST(FactorySettings, NameEveryKeyWithAValueOfItsKind) {
    platform::Dictionary factory = dictionary(installed(kFactory));
    const platform::PropertyList* const themes = platform::objectForKey(factory, "ActiveThemes");
    ASSERT_NE(themes, nullptr);
    ASSERT_NE(themes->as<platform::PropertyList::Array>(), nullptr);
    EXPECT_TRUE(themes->as<platform::PropertyList::Array>()->empty());
    for (const core::SettingRow& row : core::kSettingRows) {
        if (row.kind() == core::SettingKind::themes) {
            continue;
        }
        const platform::PropertyList* const value = platform::objectForKey(factory, row.key);
        ASSERT_NE(value, nullptr) << row.key;
        EXPECT_EQ(value->as<bool>() != nullptr, row.kind() == core::SettingKind::yesOrNo)
            << row.key;
        EXPECT_EQ(value->as<double>() != nullptr, row.kind() == core::SettingKind::number)
            << row.key;
    }
    EXPECT_EQ(factory.size(), 21U);
}

TEST(CalendarSettings, OfTheLayoutAreReadWhereNoThemeHasAny) {
    TestDevice device;
    device.file(kCalendar, installed(kCalendar));
    device.activeThemes({});
    const hooks::CalendarSettings calendar = hooks::loadCalendarSettings();
    EXPECT_TRUE(calendar.masksIcon);
    for (const hooks::CalendarTextSettings& text : {calendar.date, calendar.day}) {
        EXPECT_GT(text.FontSize, 0);
        EXPECT_TRUE(text.FontName.has_value());
        EXPECT_EQ(text.TextColor.value_or("").size(), 6U);
    }
    // Neither label reaches into the other or beyond an icon of 60 points.
    EXPECT_GE(calendar.day.TextYoffset, 0);
    EXPECT_LE(calendar.day.TextYoffset + 12, calendar.date.TextYoffset);
    EXPECT_LE(calendar.date.TextYoffset + 30, 60);
    for (const std::string& line : device.journal.lines()) {
        EXPECT_EQ(line.find("counts as missing"), std::string::npos) << line;
    }
    const platform::Dictionary file = dictionary(installed(kCalendar));
    EXPECT_EQ(file.size(), 3U);
}

}  // namespace
}  // namespace velmoranth::tests::factory_settings_test
