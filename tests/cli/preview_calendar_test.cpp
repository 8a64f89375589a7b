// What a preview says of the property list that a calendar was drawn by.
#include "tests/cli/preview_report_fixture.h"

#include <algorithm>
#include <string>
#include <vector>

namespace velmoranth::cli::preview_calendar_test {
namespace {

// The lines about the calendar of a theme whose Info.plist says that.
class CalendarReportTest : public PreviewReportTest {
  protected:
    [[nodiscard]] static std::string text(const std::string& key, const std::string& value) {
        return "<key>" + key + "</key><string>" + value + "</string>";
    }

    [[nodiscard]] static std::string settings(const std::string& key, const std::string& contents) {
        return "<key>" + key + "</key><dict>" + contents + "</dict>";
    }

    void list(const std::string& theme, const std::string& contents) const {
        folder.file("work/" + theme + "/Info.plist",
                    "<plist><dict>" + contents + "</dict></plist>");
    }

    // Behind the first line, which counts.
    [[nodiscard]] std::string about(const std::string& contents,
                                    const std::vector<std::string>& more = {}) const {
        list("A", contents);
        picture("work/A/IconBundles/com.apple.mobilecal-large.png");
        const std::string all = report(more);
        EXPECT_TRUE(all.starts_with("velmoranth: 1 of ")) << all;
        return all.substr(all.find('\n') + 1);
    }

    const std::string weekdaysFont_ = text("FontName", "AvenirNext-Medium");
    const std::string font_ = weekdaysFont_ + "<key>TextYoffset</key><real>20</real>";
    const std::string understood_ =
        settings("CalendarIconDateSettings", font_) + settings("CalendarIconDaySettings", font_);
};

constexpr const char* kAbout = "velmoranth: A/Info.plist: ";

TEST_F(CalendarReportTest, WhatIsUnderstoodIsNotTold) {
    EXPECT_EQ(about(understood_), "");
    EXPECT_EQ(about(settings("CalendarIconDateSettings", font_ + text("TextColor", " 0x1a2b3c ") +
                                                             text("ShadowColor", "ffffff")) +
                    settings("CalendarIconDaySettings",
                             font_ + text("TextColor", "808080") + text("Other", "#1"))),
              "");
}

TEST_F(CalendarReportTest, AFontThatTheDeviceLacksIsTold) {
    const std::string odd =
        text("FontName", "NoSuchFont") + "<key>TextYoffset</key><real>20</real>";
    EXPECT_EQ(about(settings("CalendarIconDateSettings", odd) +
                    settings("CalendarIconDaySettings", font_)),
              std::string(kAbout) + "the date's font \"NoSuchFont\" is none of the device's\n");
    EXPECT_EQ(about(settings("CalendarIconDateSettings", font_) +
                    settings("CalendarIconDaySettings", odd)),
              std::string(kAbout) + "the weekday's font \"NoSuchFont\" is none of the device's\n");
    EXPECT_EQ(about(settings("CalendarIconDateSettings", font_) +
                    settings("CalendarIconDaySettings", "")),
              std::string(kAbout) +
                  "CalendarIconDaySettings names no font, so the weekday is written in the "
                  "device's own\n");
}

TEST_F(CalendarReportTest, AColorThatShowsAsAnotherOneIsTold) {
    const auto line = [](const std::string& what, const std::string& shows) {
        return std::string(kAbout) + what + " is not understood and shows as " + shows +
               "; write six hexadecimal digits, as in FF8000\n";
    };
    const std::string good = text("TextColor", "FF0000");
    EXPECT_EQ(
        about(settings("CalendarIconDateSettings", font_ + text("TextColor", "#FF0000")) +
              settings("CalendarIconDaySettings", font_ + good + text("ShadowColor", "white"))),
        line("the date's TextColor \"#FF0000\"", "#808080") +
            line("the weekday's ShadowColor \"white\"", "#808080"));
    // The other way round, and one of whose letters only the A counts.
    EXPECT_EQ(
        about(settings("CalendarIconDateSettings", font_ + good + text("ShadowColor", "12345")) +
              settings("CalendarIconDaySettings", font_ + text("TextColor", "Orange"))),
        line("the date's ShadowColor \"12345\"", "#808080") +
            line("the weekday's TextColor \"Orange\"", "#000A00"));
}

TEST_F(CalendarReportTest, AValueOfAWrongKindIsTold) {
    EXPECT_EQ(
        about(settings("CalendarIconDateSettings", font_ + "<key>TextColor</key><integer>112233"
                                                           "</integer>") +
              settings("CalendarIconDaySettings", font_ + "<key>FontSize</key><array/>")),
        std::string(kAbout) +
            "TextColor in CalendarIconDateSettings is no string and counts as missing\n" + kAbout +
            "FontSize in CalendarIconDaySettings is no number and counts as missing\n");
    EXPECT_EQ(about(settings("CalendarIconDateSettings", font_) +
                    text("CalendarIconDaySettings", "FF0000")),
              std::string(kAbout) +
                  "CalendarIconDaySettings in the property list is no dictionary and counts as "
                  "missing\n");
}

TEST_F(CalendarReportTest, ASizeThatNothingIsDrawnInIsTold) {
    const auto lines = [&](const std::string& date, const std::string& day) {
        return about(settings("CalendarIconDateSettings", font_ + "<key>FontSize</key>" + date) +
                     settings("CalendarIconDaySettings", font_ + "<key>FontSize</key>" + day));
    };
    EXPECT_EQ(lines("<real>0.5</real>", "<string>12</string>"), "");
    EXPECT_EQ(lines("<integer>0</integer>", "<string>big</string>"),
              std::string(kAbout) + "the date's FontSize 0 is drawn in 14 points\n" + kAbout +
                  "the weekday's FontSize \"big\" is drawn in 14 points\n");
}

TEST_F(CalendarReportTest, ATextThatNothingIsSaidAboutIsToldWithTheCure) {
    const std::string cure = "; velmoranth convert fills in the settings that a device has";
    EXPECT_EQ(about(settings("CalendarIconDateSettings", font_)),
              std::string(kAbout) +
                  "CalendarIconDaySettings is missing, so the weekday stands at the icon's top "
                  "edge in the device's own font" +
                  cure + "\n");
    const std::string bare = std::string(kAbout) +
                             "there is nothing about the calendar in it, so the texts stand at the "
                             "icon's top edge in the device's own font";
    EXPECT_EQ(about(text("Name", "A")), bare + cure + "\n");
    // The list of the theme below has what this one lacks.
    list("B", text("Name", "B"));
    EXPECT_EQ(about(text("Name", "A"), {"B"}), bare + cure + "\n");
    list("C", understood_);
    EXPECT_EQ(about(text("Name", "A"), {"B", "C"}),
              bare + "; what C/Info.plist says is not read" + cure + "\n");
}

TEST_F(CalendarReportTest, ADayAcrossTheWeekdayIsToldWithTheCure) {
    EXPECT_EQ(about(settings("CalendarIconDateSettings", weekdaysFont_) +
                    settings("CalendarIconDaySettings", weekdaysFont_)),
              std::string(kAbout) +
                  "CalendarIconDateSettings has no TextYoffset, so the day is written across the "
                  "weekday; velmoranth convert puts the day where a device has it\n");
}

TEST_F(CalendarReportTest, AMaskThatCutsTheOtherIconsAloneIsTold) {
    const std::string mask = "Bundles/com.apple.mobileicons.framework/AppIconMask.png";
    picture("work/B/" + mask, {128, 128, 128});
    EXPECT_EQ(about(understood_, {"B"}),
              std::string(kAbout) + "IB-MaskIcons is missing, so B/" + mask +
                  " does not cut the calendar; add the key, yes or no\n");
    picture("work/A/" + mask, {128, 128, 128});
    EXPECT_EQ(about(understood_, {"B"}),
              std::string(kAbout) + "IB-MaskIcons is missing, so A/" + mask +
                  " does not cut the calendar; velmoranth convert lets the mask cut the calendar "
                  "too\n");
    EXPECT_EQ(about(understood_, {"--set", "enableIconMask=no"}), "");
    EXPECT_EQ(about(understood_ + "<key>IB-MaskIcons</key><false/>"), "");
}

TEST_F(CalendarReportTest, AThemeWithoutAListHasTheDevicesOwn) {
    picture("work/A/IconBundles/com.apple.mobilecal-large.png");
    EXPECT_EQ(std::ranges::count(report(), '\n'), 1);
}

}  // namespace
}  // namespace velmoranth::cli::preview_calendar_test
