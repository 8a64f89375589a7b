// The replacements of the two icons that the home screen draws: the calendar's and the clock's.
#include "device/library/image_rows_support.h"
#include <objc/runtime.h>

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
    const std::string line = sentTo("icon", kCalendar, {wordsOf(kInfo)});
    Call call = [this] { [icon generateIconImageWithInfo:kInfo]; };
};

TEST_F(CalendarIcon, IsPutTogetherOfTheBackgroundAndTwoLabels) {
    themePng(iconFile("com.apple.mobilecal"));
    addFont("Own-Font");
    infoPlist("{ CalendarIconDateSettings = { FontName = \"Own-Font\"; FontSize = \"20.5\"; "
              "TextXoffset = 2; TextYoffset = 3; }; }");
    clearJournal();
    UIImage* const image = [icon generateIconImageWithInfo:kInfo];
    EXPECT_EQ(wordsOf([image size]), "60.5×61.5");  // whole pixels at the screen's scale
    EXPECT_EQ(answeredBy(image), -1);
    const Lines lines = taken();
    EXPECT_EQ(lines.front(), line);
    const auto has = [&lines](const std::string& beginning) {
        return std::ranges::count_if(
            lines, [&](const std::string& found) { return found.starts_with(beginning); });
    };
    EXPECT_EQ(has(line), 1);
    EXPECT_EQ(has(readsImage(iconFile("com.apple.mobilecal"))), 1);
    EXPECT_EQ(has("+[UIFont fontWithName:size:] \"Own-Font\" 20.5"), 1);
    EXPECT_EQ(has("-[UILabel setText:] "), 2);
    EXPECT_EQ(has("-[UIView insertSubview:atIndex:] UIView UIImageView 0"), 1);
    EXPECT_EQ(has("-[UIView insertSubview:atIndex:] UIView UILabel 2"), 1);
    EXPECT_EQ(has("-[UIView insertSubview:atIndex:] UIView UILabel 1"), 1);
    EXPECT_EQ(has("-[CALayer renderInContext:] "), 1);
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
    EXPECT_EQ(journalOf("+[UIImage imageWithContentsOfFile:]").size(), 0U);
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

// As made of its components, though the platform has that colour by a message of its own.
TEST_F(CalendarIcon, ColoursOfTheThemeAreMadeOfTheirText) {
    themePng(iconFile("com.apple.mobilecal"));
    infoPlist("{ CalendarIconDateSettings = { TextColor = \"FFFFFF\"; ShadowColor = \"000000\"; }; "
              "CalendarIconDaySettings = { TextColor = \"0x000000\"; }; }");
    clearJournal();
    [icon generateIconImageWithInfo:kInfo];
    EXPECT_EQ(journalOf("+[UIColor colorWithRed:green:blue:alpha:] 1 1 1 1").size(), 1U);
    EXPECT_EQ(journalOf("+[UIColor colorWithRed:green:blue:alpha:] 0 0 0 1").size(), 2U);
    EXPECT_EQ(journalOf("+[UIColor whiteColor]"), Lines{});
    EXPECT_EQ(journalOf("+[UIColor blackColor]"), Lines{});
}

// The day of the month is the Gregorian calendar's, the weekday in the user's language.
TEST_F(CalendarIcon, ShowsTodayWhateverCalendarTheUserHas) {
    // A calendar whose day of the month is another one today.
    NSInteger (^const dayIn)(NSString*) = ^(NSString* identifier) {
      NSCalendar* const calendar =
          [[[NSCalendar alloc] initWithCalendarIdentifier:identifier] autorelease];
      return [[calendar components:NSCalendarUnitDay fromDate:[NSDate date]] day];
    };
    const bool isHebrewAlike = dayIn(@"hebrew") == dayIn(@"gregorian");
    setLocale(isHebrewAlike ? "he_IL@calendar=islamic" : "he_IL@calendar=hebrew");
    NSDate* const before = [NSDate date];
    [icon generateIconImageWithInfo:kInfo];
    NSDate* const after = [NSDate date];
    NSCalendar* const gregorian =
        [[[NSCalendar alloc] initWithCalendarIdentifier:@"gregorian"] autorelease];
    NSDateFormatter* const weekday = [[[NSDateFormatter alloc] init] autorelease];
    [weekday setLocale:[[[NSLocale alloc] initWithLocaleIdentifier:@"he_IL"] autorelease]];
    [weekday setDateFormat:@"EEEE"];
    const auto texts = [&](NSDate* date) {
        const NSInteger day = [[gregorian components:NSCalendarUnitDay fromDate:date] day];
        return Lines {
            "-[UILabel setText:] UILabel " + wordsOf([@(day) stringValue]),
                "-[UILabel setText:] UILabel " + wordsOf([weekday stringFromDate:date])
        };
    };
    const Lines shownTexts = journalOf("-[UILabel setText:] ");
    // Midnight may have come in between.
    EXPECT_TRUE(shownTexts == texts(before) || shownTexts == texts(after))
        << testing::PrintToString(shownTexts);
}

// A dictionary with words of its own.
NSDictionary* theirs = nil;

id giveTheirs(id /*self*/, SEL /*selector*/, NSString* path) {
    static_cast<void>(path);
    return theirs;
}

TEST_F(CalendarIcon, SettingsAreLoggedAsTheyPrint) {
    // Longer than what is printed of a value elsewhere, and data, which systems print differently.
    NSMutableDictionary* const values = [NSMutableDictionary dictionary];
    [values setObject:[@"x" stringByPaddingToLength:100'000 withString:@"yz" startingAtIndex:0]
               forKey:@"long"];
    [values setObject:[NSData dataWithBytes:"12345" length:5] forKey:@"data"];
    [values setObject:[NSArray arrayWithObject:@"A"] forKey:@"ActiveThemes"];
    theirs = values;
    infoPlist("{ }");
    const Method method =
        class_getClassMethod([NSDictionary class], @selector(dictionaryWithContentsOfFile:));
    const IMP platforms = method_setImplementation(
        method, reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(&giveTheirs)));
    clearLog();
    [icon generateIconImageWithInfo:kInfo];
    method_setImplementation(method, platforms);
    ASSERT_GE(logLines().size(), 2U);
    const std::string line = "ThemePlistDict: " + std::string([[values description] UTF8String]);
    EXPECT_GT(line.size(), 100'000U);
    EXPECT_TRUE(logLines().at(1) == line) << logLines().at(1).size() << " " << line.size();
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
        return sentToClass(kClock, {"\"Clock\"", wordsOf(kInfo), masks});
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
