// Info.plist: the calendar's texts, and what else it may say.
#include "tests/makers/conversion/theme_fixture.h"

#include <optional>

namespace velmoranth::makers::calendar_list_test {
namespace {

using platform::Dictionary;
using platform::PropertyList;

constexpr const char* kDate = "CalendarIconDateSettings";
constexpr const char* kDay = "CalendarIconDaySettings";
// Where the day of the month stands.
const std::string kPlaced = "<key>TextYoffset</key><integer>31</integer>";
// What is said of a list with neither.
constexpr const char* kFilledIn =
    "\nCalendarIconDateSettings as a device has it\nCalendarIconDaySettings as a device has it";

class CalendarLists : public ThemeTest {
  protected:
    CalendarLists() { file("IconBundles/com.apple.Maps-large.png", png(60)); }

    void background() const { file("IconBundles/com.apple.mobilecal@2x.png", png(120)); }

    [[nodiscard]] Dictionary madeList() const {
        const std::string bytes = made("Info.plist");
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
        const auto value = desktop::parsePropertyList({data, bytes.size()});
        const auto* const list = value ? value->as<Dictionary>() : nullptr;
        EXPECT_NE(list, nullptr) << bytes;
        return list == nullptr ? Dictionary() : *list;
    }

    [[nodiscard]] Dictionary settings(const char* key) const {
        const Dictionary list = madeList();
        const auto* const value = platform::objectForKey(list, key);
        return value == nullptr || value->as<Dictionary>() == nullptr ? Dictionary()
                                                                      : *value->as<Dictionary>();
    }

    static std::string text(const char* key, const std::string& value) {
        return "<key>" + std::string(key) + "</key><string>" + value + "</string>";
    }

    static std::string dictionary(const char* key, const std::string& entries = "") {
        return "<key>" + std::string(key) + "</key><dict>" + entries + "</dict>";
    }
};

TEST_F(CalendarLists, aListThatSaysAllStaysByteForByte) {
    background();
    list(dictionary(kDate, text("TextColor", "FF0000") + kPlaced) + dictionary(kDay) +
         "<key>IB-MaskIcons</key><false/>");
    EXPECT_TRUE(converted().files.at("Info.plist").why.empty());
    EXPECT_EQ(made("Info.plist"), folder.contents("in/T.theme/Info.plist"));
}

TEST_F(CalendarLists, aThemeWithoutAListGetsNone) {
    background();
    converted();
    EXPECT_EQ(made("Info.plist"), "<none>");
}

TEST_F(CalendarLists, aListWithoutTextsGetsTheInstalledOnes) {
    list("<key>IB-MaskIcons</key><true/>");
    const Plan plan = converted();
    EXPECT_EQ(PropertyList(settings(kDate)), *platform::objectForKey(calendar(), kDate));
    EXPECT_EQ(PropertyList(settings(kDay)), *platform::objectForKey(calendar(), kDay));
    EXPECT_EQ(madeList().at("IB-MaskIcons"), PropertyList(true));
    EXPECT_EQ("\n" + plan.files.at("Info.plist").why, kFilledIn);
}

TEST_F(CalendarLists, aMissingTextIsTheInstalledOneButNoMissingKeyIs) {
    list(dictionary(kDate, "<key>FontSize</key><integer>0</integer>" + kPlaced));
    converted();
    EXPECT_EQ(settings(kDate), (Dictionary{{"FontSize", 0}, {"TextYoffset", 31}}));
    EXPECT_EQ(PropertyList(settings(kDay)), *platform::objectForKey(calendar(), kDay));
}

TEST_F(CalendarLists, misspeltKeysAndColoursOfStyleSheetsArePutRight) {
    list(dictionary(kDate, text("Font", "Helvetica") + text("TextColor", "#ffd6d6") + kPlaced +
                               "<key>ShadowYOffset</key><real>2</real>" +
                               text("ShadowColor", "rgba(255, 128,0,.5)")) +
         dictionary(kDay, text("Font", "Wrong") + text("FontName", "Right") +
                              text("ShadowColor", "rgba(0,0,0,0)") + text("TextColor", "#12")));
    const Plan plan = converted();
    EXPECT_EQ(settings(kDate), (Dictionary{{"FontName", "Helvetica"},
                                           {"TextColor", "FFD6D6"},
                                           {"TextYoffset", 31},
                                           {"ShadowYoffset", 2.0},
                                           {"ShadowColor", "FF8000"}}));
    EXPECT_EQ(settings(kDay), (Dictionary{{"FontName", "Right"}, {"TextColor", "#12"}}));
    EXPECT_EQ(plan.files.at("Info.plist").why,
              "CalendarIconDateSettings: Font is spelt FontName\n"
              "CalendarIconDateSettings: ShadowYOffset is spelt ShadowYoffset\n"
              "CalendarIconDateSettings: TextColor #ffd6d6 is written FFD6D6\n"
              "CalendarIconDateSettings: ShadowColor rgba(255, 128,0,.5) is written FF8000\n"
              "CalendarIconDaySettings: Font is spelt FontName\n"
              "CalendarIconDaySettings: ShadowColor rgba(0,0,0,0) is no shadow");
    EXPECT_EQ(plan.notes,
              (std::vector<LeftOut>{
                  {"Info.plist",
                   "CalendarIconDateSettings: ShadowColor rgba(255, 128,0,.5): its "
                   "alpha is lost"},
                  {"Info.plist",
                   "CalendarIconDaySettings: TextColor #12 is no colour that is understood"}}));
}

TEST_F(CalendarLists, styleSheetsBecomeSettings) {
    list(text("CalendarIconDateStyle",
              "font-size: 40px; font-family: 'Avenir Next', Helvetica; color: #1af; margin-top: "
              "-3px; text-shadow: 0px 1px 2.5px rgba(0,0,0,.25); letter-spacing: -1px") +
         text("CalendarIconDayStyle", "color: White"));
    const Plan plan = converted();
    EXPECT_EQ(settings(kDate), (Dictionary{{"FontName", "Avenir Next"},
                                           {"FontSize", 40.0},
                                           {"TextColor", "11AAFF"},
                                           {"TextYoffset", 17.0},
                                           {"ShadowXoffset", 0.0},
                                           {"ShadowYoffset", 1.0},
                                           {"ShadowBlurRadius", 2.5},
                                           {"ShadowColor", "000000"}}));
    // What it does not say is as a device has it.
    EXPECT_EQ(settings(kDay),
              (Dictionary{{"FontName", "Installed"}, {"FontSize", 8}, {"TextColor", "FFFFFF"}}));
    EXPECT_EQ(
        plan.notes,
        (std::vector<LeftOut>{
            {"Info.plist", "CalendarIconDateStyle: text-shadow: its alpha, 25 %, is lost"},
            {"Info.plist", "CalendarIconDateStyle: letter-spacing: -1px cannot be carried over"}}));
    EXPECT_TRUE(madeList().contains("CalendarIconDateStyle"));
}

TEST_F(CalendarLists, marginsCountFromWhereADeviceHasTheText) {
    list(text("CalendarIconDateStyle", "margin-top: 4px; margin-left: 2px") +
         text("CalendarIconDayStyle", "margin-top: 5.5px"));
    converted();
    EXPECT_EQ(settings(kDate).at("TextYoffset"), PropertyList(24.0));
    EXPECT_EQ(settings(kDate).at("TextXoffset"), PropertyList(2.0));
    // The installed one says nothing of it, so that it is at the top.
    EXPECT_EQ(settings(kDay).at("TextYoffset"), PropertyList(5.5));
}

TEST_F(CalendarLists, aDayThatWouldLieAcrossTheWeekdayGetsItsPlace) {
    struct Row {
        std::string date, day;
        std::optional<PropertyList> top;
    };

    const auto at = [](const char* points) {
        return "<key>TextYoffset</key><real>" + std::string(points) + "</real>";
    };
    const std::optional<PropertyList> none;
    for (const Row& row :
         {Row{"", "", PropertyList(20)}, Row{"", at("29.5"), PropertyList(20)},
          Row{"", at("-11.5"), PropertyList(20)}, Row{"", at("30"), none}, Row{"", at("-12"), none},
          // What the theme says holds, also when it is the top.
          Row{at("0"), "", PropertyList(0.0)}}) {
        list(dictionary(kDate, row.date) + dictionary(kDay, row.day));
        const Plan plan = converted();
        const Dictionary date = settings(kDate);
        const PropertyList* const top = platform::objectForKey(date, "TextYoffset");
        EXPECT_EQ(top == nullptr ? none : std::optional(*top), row.top) << row.date << row.day;
        EXPECT_EQ(plan.files.at("Info.plist").why,
                  row.top == PropertyList(20)
                      ? "CalendarIconDateSettings: TextYoffset as a device has it, so that the day "
                        "stands below the weekday"
                      : "")
            << row.date << row.day;
    }
}

TEST_F(CalendarLists, theThemesMaskCutsTheCalendarUnlessTheListSaysNo) {
    const std::string texts = dictionary(kDate, kPlaced) + dictionary(kDay);
    list(texts);
    EXPECT_TRUE(converted().changesNothing());
    for (const std::string place :
         {"Bundles/com.apple.mobileicons.framework/", "com.apple.mobileicons.framework/"}) {
        std::filesystem::remove_all(folder / "in");
        file(place + "AppIconMask@2x.png", png(60, 60, kBlack, kClear));
        list(texts);
        const Plan plan = converted();
        EXPECT_EQ(madeList().at("IB-MaskIcons"), PropertyList(true)) << place;
        EXPECT_EQ(plan.files.at("Info.plist").why,
                  "IB-MaskIcons is on, so that the theme's mask cuts the calendar");
        list(texts + "<key>IB-MaskIcons</key><false/>");
        converted();
        EXPECT_EQ(madeList().at("IB-MaskIcons"), PropertyList(false)) << place;
    }
}

TEST_F(CalendarLists, settingsGoBeforeStyleSheets) {
    list(text("CalendarIconDateStyle", "color: red") + dictionary(kDate, kPlaced) +
         dictionary(kDay));
    EXPECT_TRUE(converted().changesNothing());
}

TEST_F(CalendarLists, keysWithoutEffectAreNotedAndStay) {
    list("<key>BadgeSettings</key><dict/><key>TintColors</key><array/>");
    const Plan plan = converted();
    EXPECT_EQ(plan.notes, (std::vector<LeftOut>{{"Info.plist", "BadgeSettings has no effect"},
                                                {"Info.plist", "TintColors has no effect"}}));
    EXPECT_TRUE(madeList().contains("BadgeSettings"));
    EXPECT_TRUE(madeList().contains("TintColors"));
}

TEST_F(CalendarLists, fuzzyIdentifiersGetTheIconThatTheyResemble) {
    file("IconBundles/com.vendor-large.png", png(60, kBlue));
    file("IconBundles/com.vendor.app-large.png", png(60, kGreen));
    list(
        "<key>FuzzyBundleIdentifiers</key><array><string>com.vendor.app.beta</string>"
        "<string>com.apple.Map</string><string>org.other</string><string>../up</string></array>");
    const Plan plan = converted();
    EXPECT_EQ(made("IconBundles/com.vendor.app.beta-large.png"), png(60, kGreen));
    EXPECT_EQ(made("IconBundles/com.apple.Map-large.png"), png(60));
    EXPECT_EQ(why(plan.notes, "Info.plist"), "FuzzyBundleIdentifiers: no icon resembles org.other");
}

TEST_F(CalendarLists, aListThatDoesNotParseIsRepairedWhereOneChangeDoesIt) {
    const std::string entries = text("PackageName", "P");
    const std::string good = "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>";
    const std::vector<std::pair<std::string, std::string>> rows{
        {good + "\n</plist>\n", "what stood behind the end of the list was taken away"},
        {"<plist version=\xE2\x80\x9C"
         "1.0\xE2\x80\x9D><dict>" +
             entries + "</dict></plist>",
         "curly quotation marks were made straight"},
        {"{ PackageName = \xE2\x80\x9CP\xE2\x80\x9D; }",
         "curly quotation marks were made straight"},
    };
    for (const auto& [contents, repair] : rows) {
        file("Info.plist", contents);
        EXPECT_EQ(converted().files.at("Info.plist").why, repair + kFilledIn) << contents;
        EXPECT_EQ(madeList().at("PackageName"), PropertyList("P"));
    }
    // A key's whole text stays, whatever marks it has.
    list(text("PackageName", "\xE2\x80\x9CP\xE2\x80\x9D") + dictionary(kDate, kPlaced) +
         dictionary(kDay));
    EXPECT_TRUE(converted().changesNothing());
}

TEST_F(CalendarLists, aListBeyondRepairIsLeftOutWithItsLineAndColumn) {
    file("Info.plist", "<plist><dict>\n<key>a</key></dict></plist>");
    Plan plan = converted();
    EXPECT_EQ(made("Info.plist"), "<none>");
    EXPECT_NE(why(plan.leftOut, "Info.plist").find("(line 2, column "), std::string::npos);
    file("Info.plist", "<plist><array/></plist>");
    EXPECT_EQ(why(converted().leftOut, "Info.plist"), "it is no dictionary");
}

}  // namespace
}  // namespace velmoranth::makers::calendar_list_test
