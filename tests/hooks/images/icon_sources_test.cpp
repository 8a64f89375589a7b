// The three replacements that keep nothing: the app switcher's banner, the settings app's icons and
// the app-icon utility; and what holds for all seven.
#include "theme/themed_icons.h"

#include "icon_sources_fixture.h"
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace velmoranth::tests::icon_sources_test {
namespace {

using platform::ImageRef;
using platform::NullableString;

const std::array<NullableString, 7> kOddNames{
    std::nullopt,          "",        std::string(1 << 16, 'n'), "../../../../User/Library", "a/b",
    std::string("\0x", 2), "\xff%@%n"};

class BannerIcon : public IconSources {
  protected:
    [[nodiscard]] std::string logLine(const ImageRef& image) const {
        return logged(
            "VELMORANTH SBSwitcherAppSuggestionBannerView _icon: %@    identifier: %@ "
            "withIconImageCache:  %@",
            {textOf(image), "com.a", textOf(extension)});
    }

    const std::string orig = bannerCall();
};

class SettingsIcon : public IconSources {
  protected:
    static std::string logLine(const ImageRef& image) {
        return logged("VELMORANTH PKIconImageCache: imageForKey: %@ Key : %@",
                      {textOf(image), "Wifi"});
    }

    const std::string orig = settingsCall();
    const Lookup lookup{"Wifi", "com.apple.Preferences"};
};

class AppUtilityIcon : public IconSources {
  protected:
    static std::string logLine(const ImageRef& image) {
        return logged(
            "VELMORANTH APWAppIconAndLabelView _loadImageWithBundleIdentifier %@ Icon: %@",
            {"com.a", textOf(image)});
    }

    const std::string orig = appCall();
};

class IconSourcesOniOS12 : public IconSources {
  protected:
    IconSourcesOniOS12() : IconSources(kiOS12) {}
};

TEST_F(BannerIcon, WithoutThemingIsThePlatforms) {
    themePng(iconFile("com.a"));
    set({.enable = false});
    EXPECT_EQ(answeredBy(bannerIcon()), 1);
    EXPECT_EQ(taken(), (Lines{orig, orig}));
    set({.enable = false, .logging = true});
    given.clear();
    EXPECT_EQ(answeredBy(bannerIcon()), 2);
    EXPECT_EQ(taken(), (Lines{orig, orig, logLine(given.at(1)), orig}));
}

TEST_F(BannerIcon, IsRedrawnAtThePlatformsSize) {
    set({.mask = true, .overlay = true});
    themePng(iconFile("com.a"));
    themeMask(6, 6);
    themeOverlay();
    EXPECT_EQ(drawnPixels(bannerIcon()), solid(12, 6, kRed));
    EXPECT_EQ(taken(), joined({{orig, orig, orig},
                               searchLines("com.a", LookupLogging::off, LookupResult::found),
                               {orig},
                               redrawLines({4, 2}, "6×6 @1x")}));
    set({.logging = true});
    given.clear();
    EXPECT_EQ(drawnPixels(bannerIcon()), solid(15, 6, kRed));
    EXPECT_EQ(taken(), joined({{orig, orig, logLine(given.at(1)), orig, orig},
                               searchLines("com.a", LookupLogging::on, LookupResult::found),
                               {orig},
                               redrawLines({5, 2}, "6×6 @1x")}));
    EXPECT_FALSE(theme::themedIconsExist());
}

TEST_F(BannerIcon, WithoutThemesFileIsThePlatformsRedrawn) {
    set({});
    const ImageRef image = bannerIcon();
    EXPECT_EQ(drawnPixels(image), solid(12, 6, kGreen));
    EXPECT_EQ(answeredBy(image), -1);
    EXPECT_EQ(taken(), joined({{orig, orig, orig},
                               searchLines("com.a", LookupLogging::off),
                               {orig},
                               redrawLines({4, 2}, "3×2 @3x")}));
}

// Each place that needs the platform's icon asks for it anew.
TEST_F(BannerIcon, TheSearchAndTheSizeAreOfNewAnswers) {
    set({});
    answerNilAt({2});
    EXPECT_EQ(drawnPixels(bannerIcon()), solid(12, 6, {0, 0, 0, 0})) << "nothing to draw";
    EXPECT_EQ(taken(), joined({{orig, orig, orig},
                               searchLines("com.a", LookupLogging::off),
                               {orig},
                               redrawLines({4, 2}, "nil")}));
    answerNilAt({3});
    given.clear();
    EXPECT_EQ(bannerIcon(), nullptr) << "no size";
    EXPECT_EQ(given.size(), 4U);
}

TEST_F(BannerIcon, OfAnUnreadableFileIsEmpty) {
    set({});
    device.file("/Library/Themes/" + iconFile("com.a"), "no image");
    EXPECT_EQ(drawnPixels(bannerIcon()), solid(12, 6, {0, 0, 0, 0}));
    EXPECT_EQ(device.journal.count("-[UIImage drawInRect:] nil (0, 0) 4×2"), 1U);
}

TEST_F(BannerIcon, NilOfThePlatformIsAskedForOnceMore) {
    set({});
    themePng(iconFile("com.a"));
    answerNilAt({1});
    EXPECT_EQ(answeredBy(bannerIcon()), 2);
    EXPECT_EQ(taken(), (Lines{orig, orig, orig}));
    answerNilAlways();
    EXPECT_EQ(bannerIcon(), nullptr);
    EXPECT_EQ(taken(), (Lines{orig, orig, orig}));
    set({.logging = true});
    EXPECT_EQ(bannerIcon(), nullptr);
    EXPECT_EQ(taken(), (Lines{orig, orig, logLine(nullptr), orig, orig}));
}

TEST_F(BannerIcon, NamesOfAnyKindHarmNothing) {
    set({});
    for (const NullableString& name : kOddNames) {
        given.clear();
        EXPECT_EQ(drawnPixels(bannerIcon(name)), solid(12, 6, kGreen));
        EXPECT_EQ(takenCalls(), Lines(4, bannerCall(name)));
    }
}

TEST_F(SettingsIcon, WithoutThemingIsThePlatforms) {
    themePng(lookup.file());
    set({.enable = false, .mask = true, .overlay = true});
    EXPECT_EQ(answeredBy(settingsIcon()), 1);
    EXPECT_EQ(taken(), (Lines{orig, orig}));
    set({.enable = false, .logging = true});
    given.clear();
    EXPECT_EQ(answeredBy(settingsIcon()), 2);
    EXPECT_EQ(taken(), (Lines{orig, orig, logLine(given.at(1)), orig}));
}

TEST_F(SettingsIcon, IsRedrawnAtTheSizeOfANewAnswer) {
    set({});
    EXPECT_EQ(drawnPixels(settingsIcon()), solid(9, 6, kGreen));
    EXPECT_EQ(taken(), joined({{orig, orig},
                               lookup.lines(given.at(1), LookupLogging::off),
                               {orig},
                               redrawLines({3, 2}, "2×2 @3x")}));
}

TEST_F(SettingsIcon, IsTheThemesAndLogged) {
    set({.logging = true});
    themePng(lookup.file());
    EXPECT_EQ(drawnPixels(settingsIcon()), solid(12, 6, kRed));
    EXPECT_EQ(taken(), joined({{orig, orig, logLine(given.at(1)), orig},
                               lookup.lines(given.at(2), LookupLogging::on, LookupResult::found),
                               {orig},
                               redrawLines({4, 2}, "2×2 @3x")}));
}

TEST_F(SettingsIcon, OfAThemeWithoutEffectsAsksForBothBeforeTheSize) {
    set({.mask = true, .overlay = true});
    settingsIcon();
    EXPECT_EQ(taken(), joined({{orig, orig},
                               lookup.lines(given.at(1), LookupLogging::off),
                               noMaskLines(),
                               noOverlayLines(),
                               {orig},
                               redrawLines({3, 2}, "2×2 @3x")}));
}

TEST_F(SettingsIcon, IsMaskedAndOverlaidBeforeItIsRedrawn) {
    themePng(lookup.file());
    themeMask(6, 6);
    themeOverlay();
    set({.mask = true});
    EXPECT_NE(drawnPixels(settingsIcon()), solid(9, 6, kRed));
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 1U);
    EXPECT_EQ(device.journal.count("-[UIImageView initWithImage:]"), 0U);
    set({.overlay = true});
    forget();
    EXPECT_EQ(drawnPixels(settingsIcon()), solid(9, 6, kBlue));
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 0U);
    set({.mask = true, .overlay = true});
    forget();
    EXPECT_EQ(drawnPixels(settingsIcon()), solid(9, 6, kBlue));
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 1U);
}

TEST_F(SettingsIcon, NilOfThePlatformHasNoSizeToDrawAt) {
    set({});
    answerNilAlways();
    EXPECT_EQ(settingsIcon(), nullptr);
    EXPECT_EQ(taken(), joined({{orig, orig},
                               lookup.lines(nullptr, LookupLogging::off),
                               {orig},
                               redrawLines({0, 0}, "nil")}));
    themePng(lookup.file());
    EXPECT_EQ(settingsIcon(), nullptr);
    answerNilAt({0, 1});
    given.clear();
    EXPECT_EQ(drawnPixels(settingsIcon()), solid(9, 6, kRed)) << "the last answer's size counts";
}

TEST_F(SettingsIcon, NamesOfAnyKindHarmNothing) {
    set({});
    for (const NullableString& name : kOddNames) {
        given.clear();
        EXPECT_EQ(drawnPixels(settingsIcon(name)), solid(9, 6, kGreen));
        EXPECT_EQ(takenCalls(),
                  (Lines{settingsCall(name), settingsCall(name), settingsCall(name)}));
    }
}

TEST_F(AppUtilityIcon, WithoutThemingIsThePlatforms) {
    themePng(iconFile("com.a"));
    set({.enable = false, .mask = true, .overlay = true});
    EXPECT_EQ(answeredBy(appIcon()), 1);
    EXPECT_EQ(taken(), (Lines{orig, orig}));
    set({.enable = false, .logging = true});
    given.clear();
    EXPECT_EQ(answeredBy(appIcon()), 2);
    EXPECT_EQ(taken(), (Lines{orig, orig, logLine(given.at(1)), orig}));
}

TEST_F(AppUtilityIcon, WithoutThemesFileIsThePlatforms) {
    set({.mask = true, .overlay = true});
    EXPECT_EQ(answeredBy(appIcon()), 1);
    EXPECT_EQ(taken(), joined({{orig, orig},
                               searchLines("com.a", LookupLogging::off),
                               noMaskLines(),
                               noOverlayLines()}));
}

TEST_F(AppUtilityIcon, IsTheThemesAndLogged) {
    set({.logging = true});
    themePng(iconFile("com.a"));
    EXPECT_EQ(drawnPixels(appIcon()), solid(6, 6, kRed)) << "not redrawn";
    EXPECT_EQ(taken(), joined({{orig, orig, logLine(given.at(1)), orig},
                               searchLines("com.a", LookupLogging::on, LookupResult::found)}));
    EXPECT_FALSE(theme::themedIconsExist());
}

TEST_F(AppUtilityIcon, IsMaskedAndThenOverlaid) {
    themePng(iconFile("com.a"));
    themeMask(6, 6);
    themeOverlay();
    set({.mask = true});
    EXPECT_EQ(drawnPixels(appIcon()), masked(6, 6, kRed));
    set({.overlay = true});
    EXPECT_EQ(drawnPixels(appIcon()), solid(18, 18, kBlue));
    device.journal.clear();
    set({.mask = true, .overlay = true});
    EXPECT_EQ(drawnPixels(appIcon()), solid(18, 18, kBlue));
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 1U);
}

TEST_F(AppUtilityIcon, NilOfThePlatformIsReplacedByTheThemes) {
    answerNilAlways();
    set({});
    EXPECT_EQ(appIcon(), nullptr);
    EXPECT_EQ(given.size(), 2U);
    themePng(iconFile("com.a"));
    EXPECT_EQ(drawnPixels(appIcon()), solid(6, 6, kRed));
    EXPECT_EQ(given.size(), 4U);
}

TEST_F(AppUtilityIcon, NamesOfAnyKindHarmNothing) {
    set({});
    for (const NullableString& name : kOddNames) {
        given.clear();
        EXPECT_EQ(answeredBy(appIcon(name)), 1);
        EXPECT_EQ(takenCalls(), (Lines{appCall(name), appCall(name)}));
    }
}

TEST_F(IconSourcesOniOS12, AreReplacedToo) {
    themePng(iconFile("com.a"));
    themePng(iconFile("(null)"));
    themePng(Lookup{"Wifi", "com.apple.Preferences"}.file());
    themePng(Lookup{"UISwitchKnob.png", std::nullopt}.file());
    themePng(Lookup{"rain", "com.apple.weather-framework"}.file());
    set({});
    const auto isRed = [](const ImageRef& image) {
        return !drawnPixels(image).values.empty() && drawnPixels(image).at(0, 0) == kRed;
    };
    EXPECT_TRUE(isRed(widgetIcon()));
    EXPECT_TRUE(isRed(bannerIcon()));
    EXPECT_TRUE(isRed(settingsIcon()));
    EXPECT_TRUE(isRed(notification("com.a", "com.a")));
    EXPECT_TRUE(isRed(appIcon()));
    EXPECT_TRUE(isRed(knob()));
    EXPECT_TRUE(isRed(weather("rain", 0)));
}

}  // namespace
}  // namespace velmoranth::tests::icon_sources_test
