#include "calendar_icon_fixture.h"
#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace velmoranth::tests::calendar_icon_test {
namespace {

using platform::Dictionary;
using platform::ImageRef;

class CalendarIconOniOS12 : public CalendarIcon {
  protected:
    CalendarIconOniOS12() : CalendarIcon(kiOS12) {}
};

TEST_F(CalendarIcon, WithoutThemingIsThePlatformsSecondAnswer) {
    themePng(iconFile(kCalendar));
    for (const bool logging : {false, true}) {
        set({.enable = false, .logging = logging, .mask = true, .overlay = true});
        given.clear();
        EXPECT_EQ(answeredBy(calendarIcon()), 1);
        EXPECT_EQ(taken(), (Lines{calendarCall(), calendarCall()}));
    }
}

TEST_F(CalendarIcon, WithoutThemingNilIsPassedOn) {
    answerNilAlways();
    set({.enable = false});
    EXPECT_EQ(calendarIcon(), nullptr);
    EXPECT_EQ(given.size(), 2U);
}

TEST_F(CalendarIcon, IsPutTogetherInOrder) {
    set({});
    const Dictionary values{{"CalendarIconDateSettings", dateText()},
                            {"CalendarIconDaySettings", dayText()}};
    infoPlist(values);
    themePng(iconFile(kCalendar));
    const ImageRef image = calendarIcon();
    EXPECT_EQ(steps(), joined({{calendarCall()},
                               themePlistLines(loaded(values)),
                               kViews,
                               backgroundLines(),
                               kDateLabel,
                               kDayLabel,
                               kRendering}));
    EXPECT_EQ(image, contexts.snapshot);
    EXPECT_EQ(drawnPixels(image), solid(6, 9, kRed));
    EXPECT_EQ(answeredBy(image), -1);
}

TEST_F(CalendarIconOniOS12, IsDrawnToo) {
    set({});
    themePng(iconFile(kCalendar));
    EXPECT_EQ(drawnPixels(calendarIcon()), solid(6, 9, kRed));
}

TEST_F(CalendarIcon, LoggingChangesNothingButTheSearch) {
    set({.logging = true});
    infoPlist({});
    calendarIcon();
    EXPECT_EQ(steps(), joined({{calendarCall()},
                               themePlistLines(loaded({})),
                               kViews,
                               noBackgroundLines(LookupLogging::on),
                               kPlainDateLabel,
                               kPlainDayLabel,
                               kRendering}));
}

TEST_F(CalendarIcon, WithoutBackgroundIsWhite) {
    set({});
    infoPlist({});
    const ImageRef image = calendarIcon();
    EXPECT_EQ(steps(), joined({{calendarCall()},
                               themePlistLines(loaded({})),
                               kViews,
                               noBackgroundLines(),
                               kPlainDateLabel,
                               kPlainDayLabel,
                               kRendering}));
    EXPECT_EQ(drawnPixels(image), solid(6, 9, {255, 255, 255, 255}));
}

// The same file is asked for twice: what is there at the second time counts.
TEST_F(CalendarIcon, SecondSearchMayFindTheBackground) {
    set({});
    infoPlist({});
    themePng(iconFile(kCalendar));
    ScriptedImages images(platform::platform().images);
    int loads = 0;
    const ImageRef blue = device.image(solid(6, 9, {0, 0, 255, 255}));
    images.load = [&](const std::string&) { return ++loads == 1 ? nullptr : blue; };
    replaceServices({.images = &images});
    EXPECT_EQ(drawnPixels(calendarIcon()), solid(6, 9, kBlue));
    EXPECT_EQ(loads, 2);
    EXPECT_EQ(views.picture->image(), blue);
    EXPECT_EQ(views.container->backgroundColor(), platform::kWhiteColor);
}

TEST_F(CalendarIcon, StacksTheDateInFrontOfTheWeekday) {
    set({});
    calendarIcon();
    Lines names;
    for (const ViewRef& view : views.container->subviews()) {
        names.push_back(NamedView::nameOf(view));
    }
    EXPECT_EQ(names, (Lines{"picture", "weekday label", "date label"}));
}

TEST_F(CalendarIcon, IsMadeAnewAtEveryCall) {
    set({});
    infoPlist({});
    const ImageRef first = calendarIcon();
    const Lines lines = taken();
    views.labels.clear();
    EXPECT_NE(calendarIcon(), first);
    EXPECT_EQ(taken(), lines);
    infoPlist({{"CalendarIconDateSettings", Dictionary{{"TextXoffset", 1}}}});
    device.journal.clear();
    views.labels.clear();
    calendarIcon();
    EXPECT_EQ(device.journal.linesWith("-[UILabel initWithFrame:] ").front(),
              "-[UILabel initWithFrame:] (1, 0) 2×30");
}

TEST_F(CalendarIcon, IsAsLargeAsAsked) {
    set({});
    info = {{60, 40.5}, 2, 0};
    const ImageRef image = calendarIcon();
    EXPECT_EQ(device.journal.count("-[UIView initWithFrame:] (0, 0) 60×40.5"), 1U);
    EXPECT_EQ(device.journal.count("-[UIImageView initWithFrame:] (0, 0) 60×40.5"), 1U);
    EXPECT_EQ(device.journal.linesWith("-[UILabel initWithFrame:] "),
              (Lines{"-[UILabel initWithFrame:] (0, 0) 60×30",
                     "-[UILabel initWithFrame:] (0, 0) 60×12"}));
    EXPECT_EQ(device.journal.count("UIGraphicsBeginImageContextWithOptions 60×40.5 NO 0"), 1U);
    EXPECT_EQ(image->scale(), 3) << "the screen's, not the record's";
}

TEST_F(CalendarIcon, ShowsTheDayWithoutLeadingZeroAndTheWeekdayInTheDevicesLanguage) {
    set({});

    struct Day {
        double daysLater;
        const char* locale;
        const char* day;
        const char* weekday;
    };

    for (const Day& shown : {Day{0, "en_US", "5", "Wednesday"}, Day{5, "en_US", "10", "Monday"},
                             Day{24, "de_DE", "29", "Samstag"}, Day{25, "fr_FR", "1", "dimanche"},
                             Day{-5, "en_US", "31", "Friday"}}) {
        const platform::Date start = device.dates.now;
        device.dates.now.secondsSinceReferenceDate += shown.daysLater * 86400;
        device.dates.locale = shown.locale;
        device.journal.clear();
        views.labels.clear();
        calendarIcon();
        EXPECT_EQ(device.journal.linesWith("-[UILabel setText:] date label "),
                  Lines{"-[UILabel setText:] date label " + record::words(shown.day)});
        EXPECT_EQ(device.journal.linesWith("-[UILabel setText:] weekday label "),
                  Lines{"-[UILabel setText:] weekday label " + record::words(shown.weekday)});
        device.dates.now = start;
    }
}

TEST_F(CalendarIcon, SizesThatNoIconHasHarmNothing) {
    set({.mask = true, .overlay = true});
    infoPlist({{"IB-MaskIcons", true}});
    themePng(iconFile(kCalendar));
    themeMask(6, 9);
    themeOverlay();
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    for (const double side : {0.0, -1.0, 1e9, kNan, kInfinity, -kInfinity, 1e300}) {
        for (const platform::Size size :
             {platform::Size{side, side}, platform::Size{side, 3}, platform::Size{2, side}}) {
            info.size = size;
            views.labels.clear();
            device.journal.clear();
            calendarIcon();
            EXPECT_EQ(device.journal.count("orig "), 1U);
            EXPECT_EQ(device.journal.count("UIGraphicsBeginImageContextWithOptions "),
                      device.journal.count("UIGraphicsEndImageContext"));
        }
    }
}

TEST_F(CalendarIcon, ASizeBeyondMemoryGivesNoImage) {
    set({});
    info.size = {1e9, 1e9};
    EXPECT_EQ(calendarIcon(), nullptr);
    EXPECT_EQ(device.journal.count("UIGraphicsBeginImageContextWithOptions 1e+09×1e+09 NO 0"), 1U);
    EXPECT_EQ(device.journal.count("UIGraphicsEndImageContext"), 1U);
}

TEST_F(CalendarIcon, IsMaskedWhenThemeAndUserWantIt) {
    themePng(iconFile(kCalendar));
    themeMask(6, 9);
    const auto wish = [this](const Dictionary& values, bool enableMask) {
        set({.mask = enableMask});
        infoPlist(values);
        const ImageRef image = calendarIcon();
        const bool isMasked = drawnPixels(image) == masked(6, 9, kRed);
        EXPECT_TRUE(isMasked || drawnPixels(image) == solid(6, 9, kRed));
        EXPECT_EQ(device.journal.count("log UpdateIcons mask is "), isMasked ? 1U : 0U);
        return isMasked;
    };
    EXPECT_TRUE(wish({{"IB-MaskIcons", true}}, true));
    EXPECT_TRUE(wish({{"IB-MaskIcons", 1}}, true));
    EXPECT_TRUE(wish({{"IB-MaskIcons", "YES"}}, true));
    EXPECT_FALSE(wish({{"IB-MaskIcons", true}}, false));
    EXPECT_FALSE(wish({{"IB-MaskIcons", false}}, true));
    EXPECT_FALSE(wish({{"IB-MaskIcons", "no"}}, true));
    EXPECT_FALSE(wish({}, true));
    EXPECT_FALSE(wish({{"IB-MaskIcon", true}}, true));
}

TEST_F(CalendarIcon, IsOverlaidAfterItIsMasked) {
    set({.mask = true, .overlay = true});
    infoPlist({{"IB-MaskIcons", true}});
    themePng(iconFile(kCalendar));
    themeMask(6, 9);
    themeOverlay();
    // The mask leaves an image of scale 1.
    EXPECT_EQ(drawnPixels(calendarIcon()), solid(18, 27, kBlue));
    EXPECT_LT(device.journal.place("-[CALayer renderInContext:] container"),
              device.journal.place("CGImageCreateWithMask "));
    EXPECT_LT(device.journal.place("CGImageCreateWithMask "),
              device.journal.place("-[UIImageView initWithImage:] "));
    EXPECT_EQ(device.journal.count("-[UIImageView initWithImage:]"), 1U);
}

TEST_F(CalendarIcon, IsOverlaidWithoutAnyWish) {
    set({.overlay = true});
    infoPlist({{"IB-MaskIcons", false}});
    themeOverlay();
    EXPECT_EQ(drawnPixels(calendarIcon()), solid(6, 9, kBlue));
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 0U);
}

TEST_F(CalendarIcon, OfAThemeWithoutEffectsAsksForBothAfterRendering) {
    set({.mask = true, .overlay = true});
    infoPlist({{"IB-MaskIcons", true}});
    EXPECT_EQ(calendarIcon(), contexts.snapshot);
    const Lines lines = steps();
    const Lines wanted = joined({kRendering, noMaskLines(), noOverlayLines()});
    EXPECT_EQ(Lines(lines.end() - static_cast<std::ptrdiff_t>(wanted.size()), lines.end()), wanted);
}

TEST_F(CalendarIcon, WithEffectsOffAsksForNeither) {
    set({});
    infoPlist({{"IB-MaskIcons", true}});
    themeMask(6, 9);
    themeOverlay();
    EXPECT_EQ(drawnPixels(calendarIcon()), solid(6, 9, {255, 255, 255, 255}));
    EXPECT_EQ(steps().back(), "UIGraphicsEndImageContext");
}
}  // namespace
}  // namespace velmoranth::tests::calendar_icon_test
