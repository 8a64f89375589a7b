// The calendar's icon with real fonts and labels, whatever an Info.plist says of them.
#include "core/settings.h"
#include "desktop/plist/property_lists.h"
#include "hooks/images/drawn_icon_hooks.h"
#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <string>

namespace velmoranth::tests::calendar_text_test {
namespace {

using platform::Dictionary;
using platform::PropertyList;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class Icon final : public platform::SBCalendarApplicationIcon {
  public:
    [[nodiscard]] std::string className() const override { return "SBCalendarApplicationIcon"; }

    [[nodiscard]] platform::NullableString leafIdentifier() const override { return "calendar"; }

    [[nodiscard]] platform::NullableString nodeIdentifier() const override { return "calendar"; }

    [[nodiscard]] platform::NullableString uniqueIdentifier() const override { return "calendar"; }
};

class CalendarText : public testing::Test {
  protected:
    CalendarText() {
        device.activeThemes({"T.theme"}, {{"enable", true}});
        core::loadSettings();
    }

    // How many pixels of the white icon are not white, with these settings of the date's label.
    long inkWith(Dictionary text) {
        text.insert({"FontName", "Helvetica"});
        text.insert({"TextColor", "000000"});
        // The weekday's is put out of sight.
        const Dictionary hidden{{"FontName", "Helvetica"}, {"FontSize", 8}, {"TextYoffset", 500}};
        const platform::Data bytes = desktop::writeXmlPropertyList(PropertyList(Dictionary{
            {"CalendarIconDateSettings", std::move(text)}, {"CalendarIconDaySettings", hidden}}));
        device.file("/Library/Themes/T.theme/Info.plist", std::string(bytes.begin(), bytes.end()));
        device.journal.clear();
        Icon icon;
        const platform::Implementation none(
            std::function<platform::ImageRef(platform::Object&, platform::SBIconImageInfo)>(
                [](platform::Object&, platform::SBIconImageInfo) { return nullptr; }));
        const Pixels drawn =
            drawnPixels(hooks::SBCalendarApplicationIconHooks::generateIconImageWithInfo(
                core::OriginalImplementation<hooks::SBCalendarApplicationIconHooks::Signature>(
                    none),
                icon, {.size = {60, 60}, .scale = 2}));
        EXPECT_EQ(drawn.width, 120U);
        EXPECT_EQ(drawn.height, 120U);
        return std::count_if(drawn.values.begin(), drawn.values.end(),
                             [](const Pixel& pixel) { return pixel != Pixel{255, 255, 255}; });
    }

    TestDevice device{2};
};

TEST_F(CalendarText, FontOfNoSizeIsTheSystemsSize) {
    const long ink = inkWith({{"FontSize", 14}});
    EXPECT_GT(ink, 20);
    for (const double size : {0.0, -1.0, -1e9, kNaN}) {
        EXPECT_EQ(inkWith({{"FontSize", size}}), ink) << size;
    }
    EXPECT_EQ(inkWith({}), ink);
    EXPECT_EQ(device.journal.count("+[UIFont fontWithName:size:] \"Helvetica\" 0"), 1U);
}

TEST_F(CalendarText, HugeFontHarmsNothing) {
    for (const double size : {1e9, 1e300, kInfinity}) {
        EXPECT_LE(inkWith({{"FontSize", size}}), 60 * 120) << size << ": beyond its label";
    }
    EXPECT_EQ(device.journal.count("+[UIFont fontWithName:size:] \"Helvetica\" inf"), 1U);
}

TEST_F(CalendarText, LabelBeyondTheIconHasNoText) {
    for (const double offset : {61.0, -61.0, 1e9, -1e9, 1e300, kInfinity, kNaN}) {
        EXPECT_EQ(inkWith({{"FontSize", 14}, {"TextXoffset", offset}}), 0) << offset;
        EXPECT_EQ(inkWith({{"FontSize", 14}, {"TextYoffset", offset}}), 0) << offset;
    }
}

TEST_F(CalendarText, ShadowBeyondTheLabelIsCutOff) {
    const long ink = inkWith({{"FontSize", 14}});
    EXPECT_GT(inkWith({{"FontSize", 14}, {"ShadowColor", "FF0000"}, {"ShadowXoffset", 10}}), ink);
    for (const double offset : {1e9, -1e9, kInfinity}) {
        EXPECT_EQ(inkWith({{"FontSize", 14}, {"ShadowColor", "FF0000"}, {"ShadowXoffset", offset}}),
                  ink)
            << offset;
    }
}

}  // namespace
}  // namespace velmoranth::tests::calendar_text_test
