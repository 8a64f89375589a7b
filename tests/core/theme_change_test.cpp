#include "core/theme_change.h"

#include "core/change_observers.h"
#include "core/hook_table.h"
#include "core/settings.h"
#include "imaging/icon_effects.h"
#include "tests/support/test_device.h"
#include "theme/themed_icons.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace velmoranth::core::theme_change_test {
namespace {

using imaging::IconEffects;
using platform::ImageRef;
using platform::NullableString;
using tests::Pixel;
using tests::TestDevice;
using Lines = std::vector<std::string>;

constexpr double kIos12 = 1575.23;
constexpr const char* kSelector = "_applicationIconImageForBundleIdentifier:format:scale:";
const std::string kRead =
    "+[NSDictionary dictionaryWithContentsOfFile:] "
    "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kNotice = "log VELMORANTH " + std::string(46, '*') +
                            "Theme PreferencesChangedCallback CFStringRef:com.qor."
                            "velmoranththemechanged.prefs " +
                            std::string(44, '*');
const std::string kUpdated = "log Velmoranth UpdateIcons ";

constexpr Pixel kGray{90, 90, 90};
constexpr Pixel kRed{255, 0, 0};
constexpr Pixel kBlue{0, 0, 255};

class ThemeChange : public ::testing::Test {
  protected:
    // The callback as the notification centre runs it, and nothing before it in the journal.
    void change() {
        device.journal.clear();
        ThemePreferencesChangedCallback(device.notifications, nullptr,
                                        "com.qor.velmoranththemechanged.prefs", nullptr, nullptr);
    }

    void keep(const Lines& keys) {
        for (const std::string& key : keys) {
            theme::storeThemedIcon(key, device.image(tests::solid(2, 2, kGray)));
        }
    }

    void setPreferences(const platform::Dictionary& preferences) {
        device.preferences(preferences);
        loadSettings();
    }

    // A process of iOS 12 whose every app has a gray icon, with the hooks installed.
    void installIos12() {
        device.system.number = kIos12;
        device.runtime.addClass("UIImage");
        device.runtime.addClassMethod(
            "UIImage", kSelector,
            std::function<ImageRef(platform::Class&, NullableString, int, double)>(
                [this](platform::Class&, const NullableString&, int, double) {
                    return device.image(tests::solid(6, 6, kGray));
                }));
        HookTable::install();
    }

    ImageRef request(const NullableString& identifier, int format) {
        return device.runtime.sendToClass<ImageRef, NullableString, int, double>(
            "UIImage", kSelector, identifier, format, 3.0);
    }

    TestDevice device;
};

TEST_F(ThemeChange, OnIos12AsksAgainForWhatWasKeptInFormat2) {
    device.system.number = kIos12;
    keep({"com.a.2", "com.b"});
    change();
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{kRead, "log Velmoranth updateIcon : com.a",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.a\" 2 3",
               "log Velmoranth updateIcon : (null)",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 2 3",
               kUpdated}));
    EXPECT_FALSE(theme::themedIconsExist());
    EXPECT_EQ(theme::findThemedIcon("com.a.2").value_or(nullptr), nullptr);
}

TEST_F(ThemeChange, WithLoggingOnTheNoticeComesFirst) {
    device.system.number = kIos12;
    setPreferences({{"enableLogging", true}});
    keep({"com.a.2"});
    change();
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{kNotice, kRead, "log Velmoranth updateIcon : com.a",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.a\" 2 3",
               kUpdated}));
}

TEST_F(ThemeChange, ArrivesThroughTheNotificationCentre) {
    device.system.number = kIos12;
    keep({"com.a.2"});
    registerChangeObservers();
    device.journal.clear();
    ASSERT_TRUE(device.notifications.post("com.qor.velmoranththemechanged.prefs"));
    EXPECT_EQ(
        device.journal.lines(),
        tests::calledBack(
            "com.qor.velmoranththemechanged.prefs",
            {kRead, "log Velmoranth updateIcon : com.a",
             "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.a\" 2 3",
             kUpdated}));
}

TEST_F(ThemeChange, TakesOnlyTheEndingOfFormat2Off) {
    device.system.number = kIos12;
    keep({"com.a.1", "com.a.12", "com.a.22", "com.a.2.", "com.a2", ".2", "2", "com.a.2.2", "a.2"});
    change();
    EXPECT_EQ(
        device.journal.linesWith(
            "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] "),
        (Lines{"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"\" 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.a.2\" 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"a\" 2 3"}));
    EXPECT_EQ(device.journal.log(),
              (Lines{"Velmoranth updateIcon : (null)", "Velmoranth updateIcon : (null)",
                     "Velmoranth updateIcon : (null)", "Velmoranth updateIcon : (null)",
                     "Velmoranth updateIcon : (null)", "Velmoranth updateIcon : ",
                     "Velmoranth updateIcon : (null)", "Velmoranth updateIcon : com.a.2",
                     "Velmoranth updateIcon : a", "Velmoranth UpdateIcons "}));
}

TEST_F(ThemeChange, AnEmptyEntryIsAskedForAsNone) {
    device.system.number = kIos12;
    keep({""});
    change();
    EXPECT_EQ(device.journal.linesWith(
                  "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] "),
              (Lines{"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 2 3"}));
}

TEST_F(ThemeChange, AsksAgainOnceForEachEntry) {
    device.system.number = kIos12;
    keep({"com.b.2", "com.a.2", "com.b.2"});
    change();
    EXPECT_EQ(
        device.journal.linesWith(
            "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] "),
        (Lines{"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.b\" 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.a\" 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.b\" 2 3"}));
}

TEST_F(ThemeChange, WithNothingKeptOnlySaysThatItIsDone) {
    for (const double version : {kIos12, 1600.0, 1674.102}) {
        device.system.number = version;
        change();
        EXPECT_EQ(device.journal.lines(), (Lines{kRead, kUpdated})) << version;
        EXPECT_FALSE(theme::themedIconsExist());
    }
}

TEST_F(ThemeChange, AsksForTheScreensScale) {
    device.system.number = kIos12;
    device.screen.value = 2;
    keep({"com.a.2"});
    change();
    EXPECT_EQ(
        device.journal.linesWith(
            "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] "),
        (Lines{"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.a\" 2 2"}));
}

TEST_F(ThemeChange, AboveIos12EmptiesTheCachesAndAsksForNothing) {
    for (const double version : {std::nextafter(1575.23, 2000.0), 1600.0, 1665.15, 1674.102}) {
        SCOPED_TRACE(version);
        device.system.number = version;
        keep({"com.a.2", "com.b"});
        change();
        EXPECT_EQ(device.journal.lines(), (Lines{kRead, kUpdated}));
        EXPECT_FALSE(theme::themedIconsExist());
        EXPECT_TRUE(theme::ThemedIconIdentifiers().empty());
        EXPECT_EQ(theme::findThemedIcon("com.b").value_or(nullptr), nullptr);
    }
}

TEST_F(ThemeChange, AboveIos12TheNoticeIsLoggedToo) {
    setPreferences({{"enableLogging", true}});
    keep({"com.a.2"});
    change();
    EXPECT_EQ(device.journal.lines(), (Lines{kNotice, kRead, kUpdated}));
}

TEST_F(ThemeChange, ReadsTheVersionOnce) {
    change();
    EXPECT_EQ(device.system.versionNumberReads, 1);
}

TEST_F(ThemeChange, ForgetsOverlayAndShadowOnEverySystem) {
    for (const double version : {kIos12, 1600.0, 1674.102}) {
        SCOPED_TRACE(version);
        device.system.number = version;
        device.activeThemes({"Old"});
        for (const char* const file : {"iPhoneOverlay.png", "iPhoneShadow.png"}) {
            device.png(std::string("/Library/Themes/Old/Velmoranth/") + file,
                       tests::solid(4, 4, kRed));
            device.png(std::string("/Library/Themes/New/Velmoranth/") + file,
                       tests::solid(4, 4, kBlue));
        }
        change();
        ASSERT_EQ(tests::drawnPixels(IconEffects::iconOverlay()), tests::solid(4, 4, kRed));
        ASSERT_EQ(tests::drawnPixels(IconEffects::addShadowToIcon()->image()),
                  tests::solid(4, 4, kRed));
        device.activeThemes({"New"});
        ASSERT_EQ(tests::drawnPixels(IconEffects::iconOverlay()), tests::solid(4, 4, kRed));
        change();
        EXPECT_EQ(tests::drawnPixels(IconEffects::iconOverlay()), tests::solid(4, 4, kBlue));
        EXPECT_EQ(tests::drawnPixels(IconEffects::addShadowToIcon()->image()),
                  tests::solid(4, 4, kBlue));
    }
}

TEST_F(ThemeChange, RefillsTheCachesThroughTheReplacementOfIos12) {
    installIos12();
    device.activeThemes({"Old"}, {{"enable", true}});
    loadSettings();
    device.png("/Library/Themes/Old/IconBundles/com.a-large.png", tests::solid(6, 6, kRed));
    device.png("/Library/Themes/New/IconBundles/com.a-large.png", tests::solid(6, 6, kBlue));
    EXPECT_EQ(tests::drawnPixels(request("com.a", 2)), tests::solid(6, 6, kRed));
    request("com.b", 1);
    request("com.c", 2);
    ASSERT_EQ(theme::ThemedIconIdentifiers(), (Lines{"com.a.2", "com.b.1", "com.c.2"}));

    device.activeThemes({"New"}, {{"enable", true}});
    EXPECT_EQ(tests::drawnPixels(request("com.a", 2)), tests::solid(6, 6, kRed));
    change();
    // The list grew while its copy was walked: each entry came once.
    EXPECT_EQ(
        device.journal.linesWith(
            "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] "),
        (Lines{"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.a\" 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 2 3",
               "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.c\" 2 3"}));
    EXPECT_EQ(theme::ThemedIconIdentifiers(), (Lines{"com.a.2", "(null).2", "com.c.2"}));
    EXPECT_EQ(tests::drawnPixels(theme::findThemedIcon("com.a.2").value_or(nullptr)),
              tests::solid(6, 6, kBlue));
    EXPECT_EQ(tests::drawnPixels(request("com.a", 2)), tests::solid(6, 6, kBlue));
    EXPECT_EQ(theme::findThemedIcon("com.b.1").value_or(nullptr), nullptr);
}

TEST_F(ThemeChange, TheNewIconsHaveTheNewOverlay) {
    installIos12();
    const platform::Dictionary switches{{"enable", true}, {"enableOverlay", true}};
    device.activeThemes({"Old"}, switches);
    loadSettings();
    device.png("/Library/Themes/Old/Velmoranth/iPhoneOverlay.png", tests::solid(6, 6, kRed));
    device.png("/Library/Themes/New/Velmoranth/iPhoneOverlay.png", tests::solid(6, 6, kBlue));
    EXPECT_EQ(tests::drawnPixels(request("com.a", 2)), tests::solid(6, 6, kRed));
    device.activeThemes({"New"}, switches);
    change();
    EXPECT_EQ(tests::drawnPixels(theme::findThemedIcon("com.a.2").value_or(nullptr)),
              tests::solid(6, 6, kBlue));
}

TEST_F(ThemeChange, TheNewSettingsHoldForTheNewIcons) {
    installIos12();
    setPreferences({{"enable", true}});
    request("com.a", 2);
    ASSERT_EQ(theme::ThemedIconIdentifiers(), (Lines{"com.a.2"}));
    device.preferences({{"enable", false}});
    change();
    EXPECT_EQ(
        device.journal.count(
            "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] \"com.a\" 2 3"),
        1U);
    EXPECT_TRUE(theme::ThemedIconIdentifiers().empty());
    EXPECT_EQ(tests::drawnPixels(request("com.a", 2)), tests::solid(6, 6, kGray));
}

}  // namespace
}  // namespace velmoranth::core::theme_change_test
