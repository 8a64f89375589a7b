// The two replacements that keep what they found for the life of the process: the switch's knob and
// the weather.
#include "core/change_observers.h"
#include "hooks/images/icon_source_hooks.h"
#include "theme/themed_icons.h"

#include "icon_sources_fixture.h"
#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace velmoranth::tests::kept_images_test {
namespace {

using hooks::SwitchKnobImage;
using hooks::WeatherImageKeys;
using platform::ImageRef;
using platform::NullableString;

const Lookup kKnob{"UISwitchKnob.png", std::nullopt};

class KeptImages : public IconSources {
  protected:
    // The theme changes, as the notice tells it to the process.
    void changeTheme() {
        core::registerChangeObservers();
        ASSERT_TRUE(device.notifications.post("com.qor.velmoranththemechanged.prefs"));
    }
};

class SwitchKnob : public KeptImages {};

class WeatherImage : public KeptImages {
  protected:
    static Lookup lookup(const std::string& name) { return {name, "com.apple.weather-framework"}; }

    static std::string logLine(const std::string& name, const ImageRef& image, long long style,
                               const std::string& keys) {
        return logged(
            "VELMORANTH WeatherImageLoader IOS13+ ONLY, conditionImageNamed: %@  orig: %@  Style: "
            "%@   WeatherImgArray: %@",
            {name, textOf(image), std::to_string(style), keys});
    }

    const std::string orig = weatherCall("rain", 0);
};

TEST_F(SwitchKnob, WithoutThemingIsThePlatforms) {
    themePng(kKnob.file());
    for (const bool logging : {false, true}) {
        set({.enable = false, .logging = logging});
        given.clear();
        EXPECT_EQ(answeredBy(knob()), 1);
        EXPECT_EQ(taken(), (Lines{kKnobCall, kKnobCall}));
        EXPECT_EQ(SwitchKnobImage(), nullptr);
    }
}

TEST_F(SwitchKnob, IsTheThemesForTheLifeOfTheProcess) {
    set({.mask = true, .overlay = true});
    themePng(kKnob.file());
    themeMask(6, 6);
    themeOverlay();
    const ImageRef image = knob();
    EXPECT_EQ(drawnPixels(image), solid(6, 6, kRed));
    ASSERT_EQ(given.size(), 2U);
    EXPECT_EQ(taken(), joined({{kKnobCall, kKnobCall},
                               kKnob.lines(given.at(1), LookupLogging::off, LookupResult::found)}));
    EXPECT_EQ(SwitchKnobImage(), image);

    EXPECT_EQ(knob(), image);
    EXPECT_EQ(taken(), Lines{kKnobCall});
    themePng(kKnob.file(), kBlue);
    changeTheme();
    EXPECT_EQ(knob(), image);
    EXPECT_EQ(SwitchKnobImage(), image);

    set({.enable = false});
    given.clear();
    EXPECT_EQ(answeredBy(knob()), 1) << "kept, but not shown";
    set({});
    EXPECT_EQ(knob(), image);
}

TEST_F(SwitchKnob, OfThePlatformIsKeptToo) {
    set({.logging = true});
    const ImageRef image = knob();
    EXPECT_EQ(answeredBy(image), 1);
    EXPECT_EQ(taken(),
              joined({{kKnobCall, kKnobCall}, kKnob.lines(given.at(1), LookupLogging::on)}));
    themePng(kKnob.file());
    changeTheme();
    device.journal.clear();
    EXPECT_EQ(knob(), image);
    EXPECT_EQ(taken(), Lines{kKnobCall});
}

TEST_F(SwitchKnob, IsAskedForAgainWhileItIsNil) {
    set({});
    answerNilAlways();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(knob(), nullptr);
        EXPECT_EQ(taken(),
                  joined({{kKnobCall, kKnobCall}, kKnob.lines(nullptr, LookupLogging::off)}));
    }
    themePng(kKnob.file());
    EXPECT_EQ(drawnPixels(knob()), solid(6, 6, kRed));
}

TEST_F(WeatherImage, WithoutThemingIsThePlatforms) {
    themePng(lookup("rain").file());
    set({.enable = false});
    EXPECT_EQ(answeredBy(weather("rain", 0)), 1);
    EXPECT_EQ(taken(), (Lines{orig, orig}));
    set({.enable = false, .logging = true});
    given.clear();
    EXPECT_EQ(answeredBy(weather("rain", 0)), 2);
    EXPECT_EQ(taken(), (Lines{orig, orig, logLine("rain", given.at(1), 0, "(null)"), orig}));
    EXPECT_TRUE(WeatherImageKeys().empty());
}

TEST_F(WeatherImage, OfNoThemeIsSearchedForEachTime) {
    set({});
    for (int i = 0; i < 2; ++i) {
        given.clear();
        EXPECT_EQ(answeredBy(weather("rain", 0)), 1);
        EXPECT_EQ(taken(),
                  joined({{orig}, lookup("rain").lines(nullptr, LookupLogging::off), {orig}}));
    }
    EXPECT_TRUE(WeatherImageKeys().empty());
}

TEST_F(WeatherImage, IsKeptUnderNameAndStyle) {
    set({.mask = true, .overlay = true});
    themePng(lookup("rain").file());
    themeMask(6, 6);
    themeOverlay();
    const ImageRef image = weather("rain", 0);
    EXPECT_EQ(drawnPixels(image), solid(6, 6, kRed));
    EXPECT_EQ(
        taken(),
        joined({{orig}, lookup("rain").lines(nullptr, LookupLogging::off, LookupResult::found)}));
    EXPECT_EQ(WeatherImageKeys(), Lines{"rain.0"});
    EXPECT_EQ(weather("rain", 0), image);
    EXPECT_EQ(taken(), Lines{orig});

    EXPECT_EQ(weather("rain", 1), image) << "every style has the same";
    EXPECT_EQ(taken(), (Lines{weatherCall("rain", 1), kDictHasImg}));
    EXPECT_EQ(WeatherImageKeys(), (Lines{"rain.0", "rain.1"}));
    EXPECT_EQ(weather("rain", 1), image);
    EXPECT_EQ(taken(), Lines{weatherCall("rain", 1)});
}

TEST_F(WeatherImage, KeepsItsKeysApart) {
    set({});
    themePng(lookup("rain").file());
    themePng(lookup("rain.1").file(), kBlue);
    EXPECT_EQ(drawnPixels(weather("rain", 1)), solid(6, 6, kRed));
    EXPECT_EQ(drawnPixels(weather("rain.1", 1)), solid(6, 6, kBlue));
    EXPECT_EQ(WeatherImageKeys(), (Lines{"rain.1", "rain.1.1"}));
    EXPECT_EQ(drawnPixels(weather("rain", 1)), solid(6, 6, kRed));
    EXPECT_EQ(drawnPixels(weather("rain.1", 1)), solid(6, 6, kBlue));
}

TEST_F(WeatherImage, LogsItsKeysInTheOrderOfTheirImages) {
    set({.logging = true});
    themePng(lookup("rain").file());
    weather("none", 0);
    EXPECT_EQ(device.journal.log().front(), logLine("none", given.at(1), 0, "(null)").substr(4));
    forget();
    weather("rain", 7);
    EXPECT_EQ(taken(),
              joined({{weatherCall("rain", 7), weatherCall("rain", 7),
                       logLine("rain", given.at(1), 7, "(\n)")},
                      lookup("rain").lines(nullptr, LookupLogging::on, LookupResult::found)}));
    weather("rain", -2);
    forget();
    weather("rain", 7);
    EXPECT_EQ(taken(),
              (Lines{weatherCall("rain", 7), weatherCall("rain", 7),
                     logLine("rain", given.at(1), 7, "(\n    \"rain.7\",\n    \"rain.-2\"\n)")}));
}

TEST_F(WeatherImage, StylesAreSigned64BitNumbers) {
    set({.logging = true});
    themePng(lookup("rain").file());
    using Limits = std::numeric_limits<long long>;
    for (const long long style : {Limits::min(), -1LL, 4294967296LL, Limits::max()}) {
        forget();
        weather("rain", style);
        EXPECT_EQ(given.size(), 2U);
        EXPECT_NE(device.journal.log().front().find("  Style: " + std::to_string(style) + "   "),
                  std::string::npos);
    }
    EXPECT_EQ(WeatherImageKeys(), (Lines{"rain.-9223372036854775808", "rain.-1", "rain.4294967296",
                                         "rain.9223372036854775807"}));
}

TEST_F(WeatherImage, StaysAfterAThemeChange) {
    set({});
    themePng(lookup("rain").file());
    const ImageRef image = weather("rain", 0);
    theme::storeThemedIcon("com.a", image);
    themePng(lookup("rain").file(), kBlue);
    changeTheme();
    EXPECT_FALSE(theme::themedIconsExist());
    device.journal.clear();
    EXPECT_EQ(weather("rain", 0), image);
    EXPECT_EQ(taken(), Lines{orig});
}

TEST_F(WeatherImage, OfAKeptKeyIsNotShownWithoutTheming) {
    set({});
    themePng(lookup("rain").file());
    weather("rain", 0);
    set({.enable = false});
    given.clear();
    EXPECT_EQ(answeredBy(weather("rain", 0)), 1);
}

TEST_F(WeatherImage, NilOfThePlatformIsPassedOn) {
    set({});
    answerNilAlways();
    EXPECT_EQ(weather("rain", 0), nullptr);
    EXPECT_EQ(given.size(), 2U);
    themePng(lookup("rain").file());
    EXPECT_EQ(drawnPixels(weather("rain", 0)), solid(6, 6, kRed)) << "needs none of the platform";
}

TEST_F(WeatherImage, NamesOfAnyKindHarmNothing) {
    set({});
    for (const NullableString& name :
         {NullableString(), NullableString(""), NullableString(std::string(1 << 16, 'n')),
          NullableString("../../../../User/Library"), NullableString("a/b"),
          NullableString(std::string("\0x", 2)), NullableString("\xff%@%n")}) {
        given.clear();
        EXPECT_EQ(answeredBy(weather(name, 0)), 1);
    }
    EXPECT_TRUE(WeatherImageKeys().empty());
    themePng(lookup("(null)").file());
    weather(std::nullopt, 3);
    EXPECT_EQ(WeatherImageKeys(), Lines{"(null).3"});
}

}  // namespace
}  // namespace velmoranth::tests::kept_images_test
