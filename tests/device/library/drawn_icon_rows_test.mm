// The replacements of the two icons that the home screen draws: the calendar's and the clock's.
#include "device/library/image_rows_support.h"

#include <algorithm>

namespace velmoranth::standins::drawn_icon_rows_test {
namespace {

constexpr const char* kCalendar = "-[SBCalendarApplicationIcon generateIconImageWithInfo:]";
constexpr const char* kClock = "+[SBHClockApplicationIconImageView "
                               "generateProcessedMappedIconImageWithName:imageInfo:includingMask:]";
constexpr const char* kHome = "com.apple.SpringBoardHome";
constexpr const char* kOlder = "com.apple.springboard";
constexpr IconImageInfo kInfo{60.25, 61.5, 3, 13.125};

class CalendarIcon : public ImageRows {
  protected:
    CalendarIcon() {
        settings({"A"}, {"enable"});
        answerInTurn(kCalendar);
        clearJournal();
    }

    static void infoPlist(const std::string& contents) {
        file("/Library/Themes/A/Info.plist", contents);
    }

    SBCalendarApplicationIcon* icon = named([[SBCalendarApplicationIcon alloc] init], "icon");
    const std::string line = callLine(kCalendar, {shown(kInfo)});
    Call call = [this] { [icon generateIconImageWithInfo:kInfo]; };
};

TEST_F(CalendarIcon, IsPutTogetherOfTheBackgroundAndTwoLabels) {
    themePng(iconFile("com.apple.mobilecal"));
    addFont("Own-Font");
    infoPlist("{ CalendarIconDateSettings = { FontName = \"Own-Font\"; FontSize = \"20.5\"; "
              "TextXoffset = 2; TextYoffset = 3; }; }");
    clearJournal();
    UIImage* const image = [icon generateIconImageWithInfo:kInfo];
    EXPECT_EQ(shown([image size]), "{60.5, 61.5}");  // whole pixels at the screen's scale
    EXPECT_EQ(answeredBy(image), -1);
    const Lines lines = taken();
    EXPECT_EQ(lines.front(), line);
    const auto has = [&lines](const std::string& beginning) {
        return std::ranges::count_if(
            lines, [&](const std::string& found) { return found.starts_with(beginning); });
    };
    EXPECT_EQ(has(line), 1);
    EXPECT_EQ(has(readsImage(iconFile("com.apple.mobilecal"))), 1);
    EXPECT_EQ(has("+[UIFont fontWithName: Own-Font size: 20.5]"), 1);
    EXPECT_EQ(has("-[UILabel setText:"), 2);
    EXPECT_EQ(has("-[UIView insertSubview: <UIImageView> atIndex: 0]"), 1);
    EXPECT_EQ(has("-[UIView insertSubview: <UILabel> atIndex: 2]"), 1);
    EXPECT_EQ(has("-[UIView insertSubview: <UILabel> atIndex: 1]"), 1);
    EXPECT_EQ(has("-[CALayer renderInContext:"), 1);
}

TEST_F(CalendarIcon, IsNeverKept) {
    themePng(iconFile("com.apple.mobilecal"));
    UIImage* const first = [icon generateIconImageWithInfo:kInfo];
    EXPECT_NE(address([icon generateIconImageWithInfo:kInfo]), address(first));
    expectNothingLeft(call);
    EXPECT_EQ([icon retainCount], 1U);
}

TEST_F(CalendarIcon, WithoutBackgroundIsWhite) {
    infoPlist("{ }");
    [icon generateIconImageWithInfo:kInfo];
    EXPECT_EQ(journalOf("+[UIColor whiteColor]").size(), 1U);
    EXPECT_EQ(journalOf("+[UIImage imageWithContentsOfFile:").size(), 0U);
}

TEST_F(CalendarIcon, SettingsOfAnyKindHarmNothing) {
    for (const char* const contents :
         {"no list", "( a, b )", "{ CalendarIconDateSettings = (1, 2); IB-MaskIcons = {}; }",
          "{ CalendarIconDaySettings = { FontSize = (1); FontName = (2); TextColor = {}; }; }"}) {
        infoPlist(contents);
        EXPECT_NE(address([icon generateIconImageWithInfo:kInfo]), nullptr) << contents;
        expectNothingLeft(call);
    }
    expectExceptionsToPass(kCalendar, call);
    expectExceptionsToPass("-[UILabel setText:]", call);
}

TEST_F(CalendarIcon, OfNoSizeIsNoImage) {
    EXPECT_EQ(address([icon generateIconImageWithInfo:IconImageInfo{}]), nullptr);
    EXPECT_EQ(openImageContexts(), 0U);
}

class ClockIcon : public ImageRows {
  protected:
    ClockIcon() {
        settings({"A"}, {"enable"});
        answerInTurn(kClock);
    }

    static UIImage* send(BOOL masks = YES) {
        return [SBHClockApplicationIconImageView generateProcessedMappedIconImageWithName:@"Clock"
                                                                                imageInfo:kInfo
                                                                            includingMask:masks];
    }

    static std::string line(const char* masks) {
        return callLine(kClock, {"\"Clock\"", shown(kInfo), masks});
    }
};

TEST_F(ClockIcon, OtherwiseIsThePlatformsUnmasked) {
    for (const bool masks : {true, false}) {
        answerInTurn(kClock);
        EXPECT_EQ(answeredBy(send(masks)), 1);
        EXPECT_EQ(taken(), joined({{line(masks ? "YES" : "NO")},
                                   missesInBundle(kHome, "Clock"),
                                   missesInBundle(kOlder, "Clock"),
                                   {line("NO")},
                                   missesInBundle(kHome, "Clock")}));
    }
}

TEST_F(ClockIcon, IsTheImageOfEitherBundleAndKept) {
    themePng(bundleFile(kOlder, "Clock"));
    UIImage* const image = send();
    EXPECT_EQ(pathOf(image), themePath(bundleFile(kOlder, "Clock")));
    EXPECT_EQ(taken(), joined({{line("YES")},
                               missesInBundle(kHome, "Clock"),
                               {readsImage(bundleFile(kOlder, "Clock"))}}));
    EXPECT_EQ(address(send()), address(image));
    EXPECT_EQ(taken(), Lines{line("YES")});
}

TEST_F(ClockIcon, OfTheHomeScreensBundleComesFirst) {
    themePng(bundleFile(kOlder, "Clock"));
    themePng(bundleFile(kHome, "Clock"));
    EXPECT_EQ(pathOf(send()), themePath(bundleFile(kHome, "Clock")));
}

TEST_F(ClockIcon, IsLoggedBetweenTheCalls) {
    settings({"A"}, {"enableLogging"});
    EXPECT_EQ(answeredBy(send()), 1);
    EXPECT_EQ(taken(), Lines(2, line("YES")));
    EXPECT_EQ(logLines(), Lines{"VELMORANTH SBHClockApplicationIconImageView setIcon: Clock"});
}

}  // namespace
}  // namespace velmoranth::standins::drawn_icon_rows_test
