#include "theme/themed_icons.h"

#include "icon_sources_fixture.h"
#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

namespace velmoranth::tests::widget_icon_test {
namespace {

using platform::ImageRef;
using platform::NullableString;

class WidgetIcon : public IconSources {
  protected:
    using IconSources::IconSources;

    [[nodiscard]] std::string logLine(const ImageRef& image) const {
        return logged(
            "VELMORANTH WGWidgetInfo _queue_iconWithSize: %@  identifier: %@  extension: %@",
            {textOf(image), "com.argument", textOf(extension)});
    }

    void hasIdentifier(const NullableString& identifier) {
        widget.identifier = [identifier](int) { return identifier; };
    }

    // The widget tells its identifier from that question on.
    void hasIdentifierFrom(int first, int last = std::numeric_limits<int>::max()) {
        widget.identifier = [first, last](int question) {
            return question >= first && question <= last ? NullableString("w") : std::nullopt;
        };
    }

    const std::string orig = widgetCall();
};

TEST_F(WidgetIcon, WithoutThemingIsThePlatforms) {
    theme::storeThemedIcon("w", device.image(solid(1, 1, kRed)));
    hasIdentifier("w");
    set({.enable = false});
    EXPECT_EQ(answeredBy(widgetIcon()), 1);
    EXPECT_EQ(taken(), (Lines{orig, orig}));
    EXPECT_EQ(widget.questions, 0);

    set({.enable = false, .logging = true});
    given.clear();
    EXPECT_EQ(answeredBy(widgetIcon()), 2);
    EXPECT_EQ(taken(), (Lines{orig, orig, logLine(given.at(1)), orig}));
}

TEST_F(WidgetIcon, WithoutThemingMakesNoCache) {
    set({.enable = false, .logging = true});
    widgetIcon();
    EXPECT_FALSE(theme::themedIconsExist());
}

TEST_F(WidgetIcon, WithIdentifierIsAlwaysThePlatforms) {
    set({.mask = true, .overlay = true});
    hasIdentifier("w");
    themePng(iconFile("w"));
    themePng(iconFile("com.argument"));
    for (int i = 0; i < 2; ++i) {
        given.clear();
        EXPECT_EQ(answeredBy(widgetIcon()), 2);
        EXPECT_EQ(taken(), (Lines{orig, orig, orig}));
    }
    EXPECT_TRUE(theme::themedIconsExist());
    EXPECT_TRUE(theme::ThemedIconIdentifiers().empty());

    set({.logging = true});
    given.clear();
    EXPECT_EQ(answeredBy(widgetIcon()), 3);
    EXPECT_EQ(taken(), (Lines{orig, orig, logLine(given.at(1)), orig, orig}));
}

TEST_F(WidgetIcon, WithTheEmptyIdentifierIsAlwaysThePlatforms) {
    set({});
    hasIdentifier("");
    EXPECT_EQ(answeredBy(widgetIcon()), 2);
    EXPECT_EQ(taken(), (Lines{orig, orig, orig}));
}

TEST_F(WidgetIcon, OfAListedIdentifierIsTheKeptImage) {
    const ImageRef kept = device.image(solid(1, 1, kRed));
    theme::storeThemedIcon("w", kept);
    theme::storeThemedIcon("com.argument", device.image(solid(1, 1, kBlue)));
    hasIdentifier("w");
    set({});
    EXPECT_EQ(widgetIcon(), kept);
    EXPECT_EQ(taken(), Lines{orig});

    set({.logging = true});
    given.clear();
    EXPECT_EQ(widgetIcon(), kept);
    EXPECT_EQ(taken(), (Lines{orig, orig, logLine(given.at(1))}));

    answerNilAlways();
    EXPECT_EQ(widgetIcon(), kept);
}

TEST_F(WidgetIcon, WithoutIdentifierIsRedrawnAtTheSizeAskedFor) {
    set({});
    const ImageRef image = widgetIcon();
    EXPECT_EQ(drawnPixels(image), solid(12, 15, kGreen));
    EXPECT_EQ(image->scale(), 3);
    EXPECT_EQ(taken(), joined({{orig, orig, orig},
                               searchLines(std::nullopt, LookupLogging::off),
                               redrawLines({4, 5}, "3×2 @3x")}));
    EXPECT_TRUE(theme::themedIconsExist());
    EXPECT_TRUE(theme::ThemedIconIdentifiers().empty());
}

TEST_F(WidgetIcon, WithoutIdentifierIsTheThemesFileForNil) {
    set({.logging = true, .mask = true, .overlay = true});
    themePng(iconFile("(null)"));
    themeMask(6, 6);
    themeOverlay();
    EXPECT_EQ(drawnPixels(widgetIcon()), solid(12, 15, kRed));
    EXPECT_EQ(taken(), joined({{orig, orig, logLine(given.at(1)), orig, orig},
                               searchLines(std::nullopt, LookupLogging::on, LookupResult::found),
                               redrawLines({4, 5}, "6×6 @1x")}));
}

TEST_F(WidgetIcon, AnUnreadableFileIsDrawnAsNothing) {
    set({});
    device.file("/Library/Themes/" + iconFile("(null)"), "no image");
    EXPECT_EQ(drawnPixels(widgetIcon()), solid(12, 15, {0, 0, 0, 0}));
    EXPECT_EQ(taken(), joined({{orig, orig, orig},
                               searchLines(std::nullopt, LookupLogging::off, LookupResult::found),
                               redrawLines({4, 5}, "nil")}));
}

// The call that shows whether the platform has an icon is not the one whose icon is searched with.
TEST_F(WidgetIcon, TheSearchIsHandedANewAnswer) {
    set({});
    answerNilAt({2});
    EXPECT_EQ(drawnPixels(widgetIcon()), solid(12, 15, {0, 0, 0, 0}));
    EXPECT_EQ(taken(), joined({{orig, orig, orig},
                               searchLines(std::nullopt, LookupLogging::off),
                               redrawLines({4, 5}, "nil")}));
}

// A theme change may come at any time: what was found in the list is found with its image.
TEST_F(WidgetIcon, AThemeChangeAfterTheLookUpTakesNothingAway) {
    const ImageRef kept = device.image(solid(1, 1, kRed));
    theme::storeThemedIcon("w", kept);
    widget.identifier = [](int question) {
        if (question == 2) {
            theme::dropThemedIcons();
        }
        return NullableString("w");
    };
    set({});
    EXPECT_EQ(widgetIcon(), kept);
    EXPECT_EQ(widget.questions, 1);
}

TEST_F(WidgetIcon, NilOfThePlatformIsAskedForOnceMore) {
    set({});
    for (const NullableString& identifier : {NullableString(), NullableString("w")}) {
        hasIdentifier(identifier);
        answerNilAt({1});
        given.clear();
        EXPECT_EQ(answeredBy(widgetIcon()), 2);
        EXPECT_EQ(taken(), (Lines{orig, orig, orig}));
        answerNilAlways();
        given.clear();
        EXPECT_EQ(widgetIcon(), nullptr);
        EXPECT_EQ(taken(), (Lines{orig, orig, orig}));
    }
}

TEST_F(WidgetIcon, NilOfTheDroppedCallsDoesNotCount) {
    set({.logging = true});
    answerNilAt({0, 1});
    EXPECT_NE(widgetIcon(), nullptr);
    EXPECT_EQ(given.size(), 4U);
    EXPECT_EQ(device.journal.log().front(), logLine(nullptr).substr(4));
}

// The identifier is asked for anew at each step.
TEST_F(WidgetIcon, AnIdentifierThatAppearsIsSearchedForAndKept) {
    set({});
    hasIdentifierFrom(3);
    themePng(iconFile("w"));
    const ImageRef image = widgetIcon();
    EXPECT_EQ(drawnPixels(image), solid(12, 15, kRed));
    EXPECT_EQ(theme::ThemedIconIdentifiers(), Lines{"w"});
    EXPECT_EQ(theme::findThemedIcon("w").value_or(nullptr), image);
    EXPECT_EQ(widgetIcon(), image);
    EXPECT_EQ(given.size(), 4U);
}

TEST_F(WidgetIcon, AnIdentifierThatIsGoneIsNotKept) {
    set({});
    hasIdentifierFrom(3, 3);
    EXPECT_NE(widgetIcon(), nullptr);
    EXPECT_TRUE(theme::ThemedIconIdentifiers().empty());
}

TEST_F(WidgetIcon, AnImageThatCannotBeDrawnIsNotKept) {
    set({});
    hasIdentifierFrom(3);
    widgetSize = {0, 0};
    EXPECT_EQ(widgetIcon(), nullptr);
    EXPECT_TRUE(theme::ThemedIconIdentifiers().empty());
}

TEST_F(WidgetIcon, SizesThatNoIconHasGiveNoImage) {
    set({});
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double side : {0.0, -1.0, 1e9, kNan, kInfinity, -kInfinity}) {
        widgetSize = {side, side};
        given.clear();
        EXPECT_EQ(widgetIcon(), nullptr) << side;
        EXPECT_EQ(given.size(), 3U);
        EXPECT_EQ(device.journal.count("UIGraphicsEndImageContext"), 1U);
        device.journal.clear();
    }
}

}  // namespace
}  // namespace velmoranth::tests::widget_icon_test
