#include "drawn_icons_fixture.h"
#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace velmoranth::tests::clock_icon_test {
namespace {

using platform::ImageRef;
using platform::NullableString;

constexpr const char* kHome = "com.apple.SpringBoardHome";
constexpr const char* kOlder = "com.apple.springboard";

class ClockIcon : public DrawnIcons {
  protected:
    using DrawnIcons::DrawnIcons;

    [[nodiscard]] std::string call(bool masks = true) const {
        return clockCall("Clock", info, masks);
    }

    const Lookup inHome{"Clock", kHome};
    const Lookup inOlder{"Clock", kOlder};
};

class ClockIconOniOS12 : public ClockIcon {
  protected:
    ClockIconOniOS12() : ClockIcon(kiOS12) {}
};

constexpr const char* kLine = "log VELMORANTH SBHClockApplicationIconImageView setIcon: Clock";

TEST_F(ClockIcon, WithoutThemingIsThePlatformsSecondAnswer) {
    themePng(inHome.file());
    for (const bool masks : {false, true}) {
        set({.enable = false, .mask = true, .overlay = true});
        given.clear();
        EXPECT_EQ(answeredBy(clockIcon("Clock", masks)), 1);
        EXPECT_EQ(taken(), (Lines{call(masks), call(masks)}));
    }
}

TEST_F(ClockIcon, LogsTheNameBetweenTheTwoCalls) {
    set({.enable = false, .logging = true});
    EXPECT_EQ(answeredBy(clockIcon()), 1);
    EXPECT_EQ(taken(), (Lines{call(), kLine, call()}));
    clockIcon(std::nullopt);
    EXPECT_EQ(device.journal.log(),
              Lines{"VELMORANTH SBHClockApplicationIconImageView setIcon: (null)"});
}

TEST_F(ClockIcon, IsTheImageOfTheHomeScreensBundle) {
    set({.logging = true});
    themePng(inHome.file());
    themePng(inOlder.file(), kBlue);
    EXPECT_EQ(drawnPixels(clockIcon()), solid(6, 6, kRed));
    EXPECT_EQ(taken(), joined({{call(), kLine},
                               inHome.lines(nullptr, LookupLogging::on, LookupResult::found)}));
}

TEST_F(ClockIcon, OtherwiseThatOfTheOlderBundle) {
    set({});
    themePng(inOlder.file(), kBlue);
    EXPECT_EQ(drawnPixels(clockIcon()), solid(6, 6, kBlue));
    EXPECT_EQ(taken(), joined({{call()},
                               inHome.lines(nullptr, LookupLogging::off),
                               inOlder.lines(nullptr, LookupLogging::off, LookupResult::found)}));
}

TEST_F(ClockIcon, OtherwiseThePlatformsUnmasked) {
    for (const bool masks : {true, false}) {
        set({.logging = true});
        given.clear();
        EXPECT_EQ(answeredBy(clockIcon("Clock", masks)), 1);
        EXPECT_EQ(taken(), joined({{call(masks), kLine},
                                   inHome.lines(nullptr, LookupLogging::on),
                                   inOlder.lines(nullptr, LookupLogging::on),
                                   {call(false)},
                                   inHome.lines(given.at(1), LookupLogging::on)}));
    }
}

TEST_F(ClockIconOniOS12, IsReplacedToo) {
    set({});
    themePng(inHome.file());
    EXPECT_EQ(drawnPixels(clockIcon()), solid(6, 6, kRed));
}

TEST_F(ClockIcon, TheThirdLookupMayStillFindTheThemes) {
    set({});
    whenCalled = [this](std::size_t callNumber) {
        if (callNumber == 1) {
            themePng(inHome.file());
        }
    };
    EXPECT_EQ(drawnPixels(clockIcon()), solid(6, 6, kRed));
    EXPECT_EQ(given.size(), 2U);
}

TEST_F(ClockIcon, KeepsTheReceiver) {
    set({});
    clockIcon("Clock", true, "SBHClockVariant");
    EXPECT_EQ(takenCalls(), (Lines{clockCall("Clock", info, true, "SBHClockVariant"),
                                   clockCall("Clock", info, false, "SBHClockVariant")}));
}

TEST_F(ClockIcon, IsServedFromTheLookupsCache) {
    set({});
    themePng(inHome.file());
    const ImageRef first = clockIcon();
    device.journal.clear();
    EXPECT_EQ(clockIcon(), first);
    EXPECT_EQ(taken(), (Lines{call(), kDictHasImg}));
}

TEST_F(ClockIcon, IsMaskedWithoutAnyWish) {
    set({.mask = true});
    infoPlist({{"IB-MaskIcons", false}});
    themeMask(6, 9);
    EXPECT_EQ(drawnPixels(clockIcon()), masked(6, 9, kGreen));
    EXPECT_EQ(device.journal.count("log UpdateIcons mask is "), 1U);
    EXPECT_EQ(device.journal.count("-[NSFileManager fileExistsAtPath:] "), 0U);
    EXPECT_EQ(device.journal.count("-[UIImageView initWithImage:]"), 0U);
}

TEST_F(ClockIcon, OfTheThemeIsMaskedToo) {
    set({.mask = true});
    themePng(inHome.file());
    themeMask(6, 6);
    EXPECT_EQ(drawnPixels(clockIcon()), masked(6, 6, kRed));
}

TEST_F(ClockIcon, IsOverlaid) {
    set({.overlay = true});
    themeMask(6, 9);
    themeOverlay();
    EXPECT_EQ(drawnPixels(clockIcon()), solid(6, 9, kBlue));
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 0U);
}

TEST_F(ClockIcon, IsOverlaidAfterItIsMasked) {
    set({.mask = true, .overlay = true});
    themeMask(6, 9);
    themeOverlay();
    // The mask leaves an image of scale 1.
    EXPECT_EQ(drawnPixels(clockIcon()), solid(18, 27, kBlue));
}

TEST_F(ClockIcon, OfAThemeWithoutEffectsAsksForBothAtTheEnd) {
    set({.mask = true, .overlay = true});
    EXPECT_EQ(answeredBy(clockIcon()), 1);
    EXPECT_EQ(steps(), joined({{call()},
                               inHome.lines(nullptr, LookupLogging::off),
                               inOlder.lines(nullptr, LookupLogging::off),
                               {call(false)},
                               inHome.lines(given.at(1), LookupLogging::off),
                               noMaskLines(),
                               noOverlayLines()}));
}

TEST_F(ClockIcon, NilOfThePlatformGoesThroughTheEffects) {
    answerNilAlways();
    set({});
    EXPECT_EQ(clockIcon(), nullptr);
    EXPECT_EQ(given.size(), 2U);
    themeMask(6, 9);
    themeOverlay();
    set({.mask = true, .overlay = true});
    forget();
    clockIcon();
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 1U);
    EXPECT_EQ(device.journal.count("-[UIImageView initWithImage:]"), 1U);
    EXPECT_EQ(given.size(), 2U);
}

TEST_F(ClockIcon, PassesAnySizeOnUnchanged) {
    set({});
    for (const double side : {0.0, -1.0, 1e9, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()}) {
        info = {{side, -side}, side, side};
        given.clear();
        EXPECT_EQ(answeredBy(clockIcon()), 1);
        EXPECT_EQ(takenCalls(), (Lines{call(true), call(false)}));
    }
}

TEST_F(ClockIcon, NamesOfAnyKindHarmNothing) {
    set({.mask = true});
    for (const NullableString& name :
         {NullableString(), NullableString(""), NullableString(std::string(1 << 16, 'n')),
          NullableString("../../../../User/Library"), NullableString("a/b"),
          NullableString(std::string("\0x", 2)), NullableString("\xff%@%n")}) {
        given.clear();
        EXPECT_EQ(answeredBy(clockIcon(name)), 1);
        EXPECT_EQ(takenCalls(), (Lines{clockCall(name, info, true), clockCall(name, info, false)}));
    }
}

}  // namespace
}  // namespace velmoranth::tests::clock_icon_test
