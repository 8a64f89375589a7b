#include "core/change_observers.h"
#include "theme/themed_icons.h"

#include "icon_sources_fixture.h"
#include <gtest/gtest.h>

#include <string>

namespace velmoranth::tests::notification_icon_test {
namespace {

using platform::ImageRef;
using platform::NullableString;

class NotificationIcon : public IconSources {
  protected:
    static std::string logLine(const ImageRef& image, const NullableString& identifier = "com.a") {
        return logged("VELMORANTH UNNotificationIcon, %@  With Identifier: %@",
                      {textOf(image), textOf(identifier)});
    }

    const std::string orig = notificationCall("icon", "com.a");
    const std::string same = notificationCall("com.a", "com.a");
};

TEST_F(NotificationIcon, WithoutThemingIsThePlatformsAndLogsNothing) {
    theme::storeThemedIcon("com.a", device.image(solid(1, 1, kRed)));
    for (const bool logging : {false, true}) {
        set({.enable = false, .logging = logging});
        given.clear();
        EXPECT_EQ(answeredBy(notification("com.a", "com.a")), 1);
        EXPECT_EQ(taken(), (Lines{same, same}));
    }
}

TEST_F(NotificationIcon, WithoutThemingMakesNoCache) {
    set({.enable = false, .logging = true});
    notification("icon", "com.a");
    EXPECT_FALSE(theme::themedIconsExist());
}

TEST_F(NotificationIcon, IsThePlatformsLastAnswerWithoutThemesFile) {
    set({});
    const ImageRef image = notification("icon", "com.a");
    EXPECT_EQ(answeredBy(image), 2);
    EXPECT_EQ(taken(), joined({{orig, orig, orig}, searchLines("com.a", LookupLogging::off)}));
    EXPECT_EQ(theme::ThemedIconIdentifiers(), Lines{"com.a"});
    EXPECT_EQ(theme::findThemedIcon("com.a").value_or(nullptr), image);
}

TEST_F(NotificationIcon, IsTheThemesAndLogged) {
    set({.logging = true});
    themePng(iconFile("com.a"));
    themePng(iconFile("icon"), kBlue);
    const ImageRef image = notification("icon", "com.a");
    EXPECT_EQ(drawnPixels(image), solid(6, 6, kRed));
    EXPECT_EQ(taken(), joined({{orig, orig, logLine(given.at(1)), orig, orig},
                               searchLines("com.a", LookupLogging::on, LookupResult::found)}));
}

TEST_F(NotificationIcon, WhoseNameIsItsIdentifierIsServedFromTheCache) {
    set({});
    const ImageRef first = notification("com.a", "com.a");
    forget();
    EXPECT_EQ(notification("com.a", "com.a"), first);
    EXPECT_EQ(taken(), (Lines{same, same}));
    EXPECT_EQ(theme::ThemedIconIdentifiers(), Lines{"com.a"});

    set({.logging = true});
    forget();
    EXPECT_EQ(notification("com.a", "com.a"), first);
    EXPECT_EQ(taken(), (Lines{same, same, logLine(given.at(1)), same}));
}

TEST_F(NotificationIcon, OfAnotherNameIsLookedUpAndListedEachTime) {
    set({});
    notification("icon", "com.a");
    forget();
    const ImageRef second = notification("icon", "com.a");
    EXPECT_EQ(answeredBy(second), 2);
    EXPECT_EQ(taken(), joined({{orig, orig, orig}, searchLines("com.a", LookupLogging::off)}));
    EXPECT_EQ(theme::ThemedIconIdentifiers(), (Lines{"com.a", "com.a"}));
    EXPECT_EQ(theme::findThemedIcon("com.a").value_or(nullptr), second) << "the newest";
}

TEST_F(NotificationIcon, OfAListedNameIsTheImageOfItsIdentifier) {
    set({});
    const ImageRef a = device.image(solid(1, 1, kRed));
    const ImageRef b = device.image(solid(1, 1, kBlue));
    theme::storeThemedIcon("com.a", a);
    theme::storeThemedIcon("com.b", b);
    EXPECT_EQ(notification("com.a", "com.b"), b);
    EXPECT_EQ(notification("com.b", "com.a"), a);
    EXPECT_EQ(notification("com.b", "com.c"), nullptr) << "none is kept under com.c";
    EXPECT_EQ(notification("com.b", std::nullopt), nullptr);
    EXPECT_EQ(theme::ThemedIconIdentifiers(), (Lines{"com.a", "com.b"}));
}

TEST_F(NotificationIcon, NilOfThePlatformIsAskedForOnceMore) {
    set({});
    theme::storeThemedIcon("com.a", device.image(solid(1, 1, kRed)));
    answerNilAt({1});
    EXPECT_EQ(answeredBy(notification("com.a", "com.a")), 2);
    EXPECT_EQ(taken(), (Lines{same, same, same}));
    answerNilAlways();
    EXPECT_EQ(notification("com.a", "com.a"), nullptr);
}

TEST_F(NotificationIcon, NilOfThePlatformMakesNoCache) {
    set({});
    answerNilAlways();
    EXPECT_EQ(notification("icon", "com.a"), nullptr);
    EXPECT_EQ(given.size(), 3U);
    EXPECT_FALSE(theme::themedIconsExist());
}

TEST_F(NotificationIcon, NilOfTheLastCallIsNotKept) {
    set({});
    answerNilAt({2});
    EXPECT_EQ(notification("icon", "com.a"), nullptr);
    EXPECT_EQ(given.size(), 3U);
    EXPECT_TRUE(theme::themedIconsExist());
    EXPECT_TRUE(theme::ThemedIconIdentifiers().empty());
}

TEST_F(NotificationIcon, WithoutNameOrIdentifierIsLookedUp) {
    set({});
    EXPECT_EQ(answeredBy(notification(std::nullopt, "com.a")), 2);
    EXPECT_EQ(theme::ThemedIconIdentifiers(), Lines{"com.a"});
    forget();
    EXPECT_EQ(answeredBy(notification(std::nullopt, std::nullopt)), 2);
    EXPECT_EQ(theme::ThemedIconIdentifiers(), Lines{"com.a"});
    EXPECT_EQ(taken(), joined({{notificationCall(std::nullopt, std::nullopt),
                                notificationCall(std::nullopt, std::nullopt),
                                notificationCall(std::nullopt, std::nullopt)},
                               searchLines(std::nullopt, LookupLogging::off)}));
}

TEST_F(NotificationIcon, IsMasked) {
    set({.mask = true});
    themePng(iconFile("com.a"));
    themeMask(6, 6);
    themeOverlay();
    const ImageRef image = notification("icon", "com.a");
    EXPECT_EQ(drawnPixels(image), masked(6, 6, kRed));
    EXPECT_EQ(theme::findThemedIcon("com.a").value_or(nullptr), image);
}

TEST_F(NotificationIcon, IsOverlaid) {
    set({.overlay = true});
    themePng(iconFile("com.a"));
    themeMask(6, 6);
    themeOverlay();
    EXPECT_EQ(drawnPixels(notification("icon", "com.a")), solid(18, 18, kBlue));
}

TEST_F(NotificationIcon, IsOverlaidAfterItIsMasked) {
    set({.mask = true, .overlay = true});
    themePng(iconFile("com.a"));
    themeMask(6, 6);
    themeOverlay();
    EXPECT_EQ(drawnPixels(notification("icon", "com.a")), solid(18, 18, kBlue));
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 1U);
}

TEST_F(NotificationIcon, OfAThemeWithoutEffectsAsksForBothAtTheEnd) {
    set({.mask = true, .overlay = true});
    EXPECT_EQ(answeredBy(notification("icon", "com.a")), 2);
    EXPECT_EQ(taken(), joined({{orig, orig, orig},
                               searchLines("com.a", LookupLogging::off),
                               noMaskLines(),
                               noOverlayLines()}));
}

TEST_F(NotificationIcon, IsLookedUpAnewAfterAThemeChange) {
    device.system.number = kiOS13;
    core::registerChangeObservers();
    set({});
    themePng(iconFile("com.a"));
    const ImageRef first = notification("com.a", "com.a");
    themePng(iconFile("com.a"), kBlue);
    EXPECT_EQ(notification("com.a", "com.a"), first);
    ASSERT_TRUE(device.notifications.post("com.qor.velmoranththemechanged.prefs"));
    EXPECT_TRUE(theme::ThemedIconIdentifiers().empty());
    EXPECT_EQ(drawnPixels(notification("com.a", "com.a")), solid(6, 6, kBlue));
    EXPECT_EQ(theme::ThemedIconIdentifiers(), Lines{"com.a"});
}

TEST_F(NotificationIcon, NamesOfAnyKindHarmNothing) {
    set({.mask = true});
    for (const NullableString& name :
         {NullableString(""), NullableString(std::string(1 << 16, 'n')),
          NullableString("../../../../User/Library"), NullableString("a/b"),
          NullableString(std::string("\0x", 2)), NullableString("\xff%@%n")}) {
        given.clear();
        const ImageRef image = notification(name, name);
        EXPECT_EQ(answeredBy(image), 2);
        EXPECT_EQ(notification(name, name), image) << "kept";
    }
}

}  // namespace
}  // namespace velmoranth::tests::notification_icon_test
