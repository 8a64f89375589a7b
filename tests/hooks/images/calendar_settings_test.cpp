#include "calendar_icon_fixture.h"
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

namespace velmoranth::tests::calendar_settings_test {
namespace {

using platform::Dictionary;
using platform::PropertyList;

using CalendarIconSettings = CalendarIcon;

TEST_F(CalendarIconSettings, OfAThemePlistWithoutItsKeysDoesNotAskTheUsersFile) {
    set({});
    infoPlist({{"Other", 1}});
    plist(kUserFile, {{"CalendarIconDateSettings", dateText()},
                      {"CalendarIconDaySettings", dayText()},
                      {"IB-MaskIcons", true}});
    calendarIcon();
    EXPECT_EQ(steps(), joined({{calendarCall()},
                               themePlistLines(loaded({{"Other", 1}})),
                               kViews,
                               noBackgroundLines(),
                               kPlainDateLabel,
                               kPlainDayLabel,
                               kRendering}));
}

TEST_F(CalendarIconSettings, WithoutThemePlistIsWrittenAsTheUsersFileSays) {
    set({});
    const Dictionary values{{"CalendarIconDateSettings", dateText()},
                            {"CalendarIconDaySettings", dayText()}};
    plist(kUserFile, values);
    calendarIcon();
    EXPECT_EQ(steps(), joined({{calendarCall()},
                               userPlistLines(loaded(values)),
                               kViews,
                               noBackgroundLines(),
                               kDateLabel,
                               kDayLabel,
                               kRendering}));
}

TEST_F(CalendarIconSettings, WithNeitherFileIsDrawnAllTheSame) {
    set({});
    const ImageRef image = calendarIcon();
    EXPECT_EQ(steps(), joined({{calendarCall()},
                               userPlistLines("(null)"),
                               kViews,
                               noBackgroundLines(),
                               kPlainDateLabel,
                               kPlainDayLabel,
                               kRendering}));
    EXPECT_EQ(drawnPixels(image), solid(6, 9, {255, 255, 255, 255}));
}

TEST_F(CalendarIconSettings, IsWrittenAsTheFirstThemeWithAPlistSays) {
    device.activeThemes({"A", "B", "C"}, {{"enable", true}});
    core::loadSettings();
    infoPlist({{"CalendarIconDateSettings", Dictionary{{"TextXoffset", 2}}}}, "B");
    infoPlist({{"CalendarIconDateSettings", Dictionary{{"TextXoffset", 3}}}}, "C");
    calendarIcon();
    EXPECT_EQ(device.journal.linesWith("-[UILabel initWithFrame:] ").front(),
              "-[UILabel initWithFrame:] (2, 0) 2×30");
    EXPECT_EQ(device.journal.log().front(), "ThemePlistDict: /Library/Themes/B/Info.plist");
}

TEST_F(CalendarIconSettings, OfAPlistOfGarbageHasNoSettings) {
    set({.mask = true});
    plist(kUserFile, {{"CalendarIconDateSettings", dateText()}});
    for (const std::string& garbage :
         {std::string("\x00\xff\xfe{{{", 6), std::string("bplist00\xff\xff\xff\xff"),
          std::string("<plist><dict><key>"), std::string(), std::string("<plist><array/></plist>"),
          std::string(1 << 16, '(')}) {
        device.file(kInfoPlist, garbage);
        device.journal.clear();
        views.labels.clear();
        EXPECT_NE(calendarIcon(), nullptr);
        EXPECT_EQ(steps(), joined({{calendarCall()},
                                   themePlistLines("(null)"),
                                   kViews,
                                   noBackgroundLines(),
                                   kPlainDateLabel,
                                   kPlainDayLabel,
                                   kRendering}));
    }
}

TEST_F(CalendarIconSettings, OfAPlistThatIsAFolderHasNoSettings) {
    set({});
    device.folder(kInfoPlist);
    calendarIcon();
    EXPECT_EQ(stepsOf("date label").size(), 5U);
    EXPECT_EQ(device.journal.count("+[NSDictionary dictionaryWithContentsOfFile:] " +
                                   std::string(kUserFile)),
              0U);
}

TEST_F(CalendarIconSettings, WithTheDateSettingsAloneLeavesTheWeekdayPlain) {
    set({});
    infoPlist({{"CalendarIconDateSettings", dateText()}});
    calendarIcon();
    const Lines lines = steps();
    EXPECT_EQ(Lines(lines.end() - 27, lines.end()),
              joined({kDateLabel, kPlainDayLabel, kRendering}));
}

TEST_F(CalendarIconSettings, WithTheDaySettingsAloneLeavesTheDatePlain) {
    set({});
    infoPlist({{"CalendarIconDaySettings", dayText()}});
    calendarIcon();
    const Lines lines = steps();
    EXPECT_EQ(Lines(lines.end() - 26, lines.end()),
              joined({kPlainDateLabel, kDayLabel, kRendering}));
}

TEST_F(CalendarIconSettings, ReadsNumbersAsSinglePrecision) {
    set({});
    const Dictionary numbers{{"FontSize", 12.1},     {"TextXoffset", 0.1},   {"TextYoffset", 0.7},
                             {"ShadowXoffset", 0.3}, {"ShadowYoffset", 0.9}, {"FontName", "F"}};
    infoPlist({{"CalendarIconDateSettings", numbers}, {"CalendarIconDaySettings", numbers}});
    calendarIcon();
    EXPECT_EQ(device.journal.count("+[UIFont fontWithName:size:] \"F\" 12.10000038146972"), 2U);
    for (const auto& label : views.labels) {
        EXPECT_EQ(label->frame().origin.x, static_cast<double>(0.1F));
        EXPECT_EQ(label->frame().origin.y, static_cast<double>(0.7F));
        EXPECT_EQ(label->shadowOffset.width, static_cast<double>(0.3F));
        EXPECT_EQ(label->shadowOffset.height, static_cast<double>(0.9F));
    }
}

TEST_F(CalendarIconSettings, ReadsNumbersFromText) {
    set({});
    infoPlist({{"CalendarIconDateSettings",
                Dictionary{{"FontSize", " 12.5pt"}, {"TextXoffset", "x"}, {"TextYoffset", true}}}});
    calendarIcon();
    EXPECT_EQ(device.journal.count("-[UILabel initWithFrame:] (0, 1) 2×30"), 1U);
    EXPECT_EQ(device.journal.count("+[UIFont fontWithName:size:] nil 12.5"), 1U);
    EXPECT_EQ(device.journal.log().size(), 2U) << "nothing counts as missing";
}

TEST_F(CalendarIconSettings, TextColourOfTheDateIsSetOnlyWhenThereIsOne) {
    set({});
    for (const char* color : {"nonsense", "", "#FF0000"}) {
        infoPlist({{"CalendarIconDateSettings", Dictionary{{"TextColor", color}}}});
        device.journal.clear();
        views.labels.clear();
        calendarIcon();
        EXPECT_EQ(device.journal.count("-[UILabel setTextColor:] date label #808080"), 1U) << color;
        EXPECT_EQ(device.journal.count("-[UILabel setShadowColor:] date label"), 0U);
    }
}

TEST_F(CalendarIconSettings, ShadowsTakeAnyColourTheThemeWrites) {
    set({});
    infoPlist({{"CalendarIconDateSettings", Dictionary{{"ShadowColor", ""}}},
               {"CalendarIconDaySettings", Dictionary{{"ShadowColor", "x"}}}});
    calendarIcon();
    EXPECT_EQ(device.journal.count("-[UILabel setShadowColor:] date label #808080"), 1U);
    EXPECT_EQ(device.journal.count("-[UILabel setShadowColor:] weekday label #808080"), 1U);
}

struct WrongValue {
    const char* key;
    const char* wanted;
    bool takesText;
};

constexpr std::array kKeys{
    WrongValue{"FontSize", "number", true},         WrongValue{"FontName", "string", false},
    WrongValue{"ShadowBlurRadius", "number", true}, WrongValue{"ShadowColor", "string", false},
    WrongValue{"ShadowXoffset", "number", true},    WrongValue{"ShadowYoffset", "number", true},
    WrongValue{"TextColor", "string", false},       WrongValue{"TextXoffset", "number", true},
    WrongValue{"TextYoffset", "number", true}};

TEST_F(CalendarIconSettings, ValuesOfAWrongKindCountAsMissing) {
    set({});
    const std::vector<PropertyList> kinds{platform::Date{1}, platform::Data{1, 2},
                                          PropertyList::Array{1, "a"}, Dictionary{{"a", 1}}};
    for (const WrongValue& row : kKeys) {
        for (const PropertyList& kind : kinds) {
            const Dictionary text{{row.key, kind}};
            infoPlist({{"CalendarIconDateSettings", text}, {"CalendarIconDaySettings", text}});
            device.journal.clear();
            views.labels.clear();
            EXPECT_NE(calendarIcon(), nullptr);
            const Lines log = device.journal.log();
            ASSERT_EQ(log.size(), 4U) << row.key;
            EXPECT_EQ(log.at(2), std::string("Velmoranth calendar icon: ") + row.key +
                                     " in CalendarIconDateSettings is no " + row.wanted +
                                     " and counts as missing");
            EXPECT_EQ(log.at(3), std::string("Velmoranth calendar icon: ") + row.key +
                                     " in CalendarIconDaySettings is no " + row.wanted +
                                     " and counts as missing");
            const Lines lines = steps();
            EXPECT_EQ(Lines(lines.end() - 25, lines.end()),
                      joined({kPlainDateLabel, kPlainDayLabel, kRendering}))
                << row.key;
        }
    }
}

TEST_F(CalendarIconSettings, NumbersAreNoTexts) {
    set({});
    const Dictionary text{{"FontName", 12}, {"ShadowColor", 123456}, {"TextColor", false}};
    infoPlist({{"CalendarIconDateSettings", text}});
    calendarIcon();
    EXPECT_EQ(device.journal.log().size(), 5U);
    const Lines lines = steps();
    EXPECT_EQ(Lines(lines.end() - 25, lines.end()),
              joined({kPlainDateLabel, kPlainDayLabel, kRendering}));
}

TEST_F(CalendarIconSettings, WrongKeysAreToldInTheOrderInWhichTheyAreRead) {
    set({});
    Dictionary text;
    for (const WrongValue& row : kKeys) {
        text.insert_or_assign(row.key, PropertyList::Array{});
    }
    infoPlist({{"CalendarIconDateSettings", text}, {"CalendarIconDaySettings", text}});
    calendarIcon();
    const Lines log = device.journal.log();
    ASSERT_EQ(log.size(), 20U);
    for (std::size_t i = 0; i < 18; ++i) {
        EXPECT_TRUE(log.at(i + 2).starts_with(std::string("Velmoranth calendar icon: ") +
                                              kKeys.at(i % 9).key + " in CalendarIconDa" +
                                              (i < 9 ? "te" : "y")))
            << log.at(i + 2);
    }
}

TEST_F(CalendarIconSettings, SectionsThatAreNoDictionariesCountAsMissing) {
    set({.mask = true});
    for (const PropertyList& value :
         {PropertyList("text"), PropertyList(1), PropertyList(true), PropertyList(2.5),
          PropertyList(PropertyList::Array{}), PropertyList(platform::Date{}),
          PropertyList(platform::Data{})}) {
        infoPlist({{"CalendarIconDateSettings", value}, {"CalendarIconDaySettings", value}});
        device.journal.clear();
        views.labels.clear();
        EXPECT_NE(calendarIcon(), nullptr);
        const Lines log = device.journal.log();
        ASSERT_EQ(log.size(), 4U);
        EXPECT_EQ(log.at(2),
                  "Velmoranth calendar icon: CalendarIconDateSettings in the property "
                  "list is no dictionary and counts as missing");
        EXPECT_EQ(log.at(3),
                  "Velmoranth calendar icon: CalendarIconDaySettings in the property "
                  "list is no dictionary and counts as missing");
        const Lines lines = steps();
        EXPECT_EQ(Lines(lines.end() - 25, lines.end()),
                  joined({kPlainDateLabel, kPlainDayLabel, kRendering}));
    }
}

TEST_F(CalendarIconSettings, HugeAndTinyNumbersHarmNothing) {
    set({});
    for (const double number : {1e9, -1e9, 1e300, -1e300, 1e-300, kInfinity, -kInfinity,
                                std::numeric_limits<double>::quiet_NaN()}) {
        const Dictionary text{{"FontSize", number},      {"TextXoffset", number},
                              {"TextYoffset", number},   {"ShadowXoffset", number},
                              {"ShadowYoffset", number}, {"ShadowBlurRadius", number}};
        infoPlist({{"CalendarIconDateSettings", text}, {"CalendarIconDaySettings", text}});
        EXPECT_EQ(drawnPixels(calendarIcon()), solid(6, 9, {255, 255, 255, 255})) << number;
    }
}

TEST_F(CalendarIconSettings, AMaskWishOfAWrongKindCountsAsMissing) {
    set({.mask = true});
    themeMask(6, 9);
    infoPlist({{"IB-MaskIcons", PropertyList::Array{true}}});
    calendarIcon();
    EXPECT_EQ(device.journal.log().at(2),
              "Velmoranth calendar icon: IB-MaskIcons in the property "
              "list is no boolean and counts as missing");
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 0U);
}

TEST_F(CalendarIconSettings, TheUsersFileMayWishTheMask) {
    set({.mask = true});
    plist(kUserFile, {{"IB-MaskIcons", true}});
    themeMask(6, 9);
    EXPECT_EQ(drawnPixels(calendarIcon()), masked(6, 9, {255, 255, 255, 255}));
}

TEST_F(CalendarIconSettings, ALongFontNameIsAskedForWhole) {
    set({});
    const std::string name(1 << 20, 'f');
    infoPlist({{"CalendarIconDateSettings", Dictionary{{"FontName", name}, {"TextXoffset", 1}}}});
    calendarIcon();
    EXPECT_EQ(std::count(fonts.asked.begin(), fonts.asked.end(), name), 1);
    EXPECT_EQ(device.journal.count("+[UIFont fontWithName:size:] " + record::words(name) + " 0"),
              1U);
    EXPECT_EQ(device.journal.count("-[UILabel initWithFrame:] (1, 0) 2×30"), 1U);
}

}  // namespace
}  // namespace velmoranth::tests::calendar_settings_test
