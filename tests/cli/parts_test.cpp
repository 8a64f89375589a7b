// The command's parts that are more than wiring.
#include "cli/comparison.h"
#include "cli/device_options.h"
#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/preferences.h"
#include "cli/preview_options.h"

#include <gtest/gtest.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): setenv() is POSIX's

#include <array>
#include <optional>
#include <string>

namespace velmoranth::cli::parts_test {
namespace {

constexpr std::array<std::string_view, 3> kWords{"enable", "enableShadow", "xAxisVal"};

TEST(Nearest, CountsLettersInsertedRemovedExchangedAndSwapped) {
    EXPECT_EQ(nearest("enabel", kWords), "enable");
    EXPECT_EQ(nearest("enbale", kWords), "enable");
    EXPECT_EQ(nearest("enable", kWords), "enable");
    EXPECT_EQ(nearest("ENABLESHADOW", kWords), "enableShadow");
    EXPECT_EQ(nearest("xaxis", kWords), std::nullopt) << "three letters are missing";
    EXPECT_EQ(nearest("yAxisVal", kWords), "xAxisVal");
    EXPECT_EQ(nearest("", kWords), std::nullopt);
    EXPECT_EQ(nearest("something else", kWords), std::nullopt);
    EXPECT_EQ(nearest(std::string(100000, 'e'), kWords), std::nullopt);
}

TEST(Preferences, ValuesHaveTheTypeOfTheirKey) {
    const platform::Dictionary preferences = previewPreferences({"A", "B"});
    EXPECT_EQ(preferences,
              (platform::Dictionary{{"ActiveThemes", platform::PropertyList::Array{"A", "B"}},
                                    {"enable", true},
                                    {"enableIconMask", true},
                                    {"enableOverlay", true}}));
    const auto valueOf = [](const std::string& assignment) {
        const auto parsed = parseAssignment(assignment, {"--set", "", "help", kPreviewSettings});
        return parsed ? std::optional(parsed->value) : std::nullopt;
    };
    for (const std::string yes : {"yes", "true", "on", "1"}) {
        EXPECT_EQ(valueOf("removeDock=" + yes), platform::PropertyList(true)) << yes;
    }
    for (const std::string no : {"no", "false", "off", "0"}) {
        EXPECT_EQ(valueOf("enable=" + no), platform::PropertyList(false)) << no;
    }
    EXPECT_EQ(valueOf("yAxisVal=-2.5"), platform::PropertyList(-2.5));
    EXPECT_EQ(valueOf("ActiveThemes=C"), std::nullopt);
}

TEST(PreviewDate, IsInTheTimeZoneOfTheMachine) {
    ::setenv("TZ", "UTC-2", 1);  // two hours east
    const auto seconds = [](const char* text) {
        return parseDate(text).value().secondsSinceReferenceDate;
    };
    EXPECT_EQ(seconds("2001-01-01T02:00"), 0);
    EXPECT_EQ(seconds("2001-01-01T02:00:05"), 5);
    EXPECT_EQ(seconds("2001-01-02"), 86400 + (9 - 2) * 3600 + 41 * 60);
    EXPECT_EQ(seconds("2000-02-29T00:00"), -(307 * 86400 + 2 * 3600));
}

TEST(PreviewDate, RefusesWhatIsNoDate) {
    for (const char* const text :
         {"", "today", "2019", "2019-13-01", "2019-02-29", "2019-1-1", "2019-01-01 10:00",
          "2019-01-01T10", "2019-01-01T24:00", "2019-01-01T10:60", "2019-01-01T10:00:60",
          "2019-01-01T10:00Z", "-019-01-01"}) {
        EXPECT_FALSE(parseDate(text)) << text;
    }
}

TEST(Messages, NamesAreShortenedBetweenCharacters) {
    std::string umlauts;
    for (int i = 0; i < 200; ++i) {
        umlauts += "ü";
    }
    const std::string text = shown("a" + umlauts);
    EXPECT_TRUE(isPlainText(text));
    EXPECT_LT(text.size(), 150U);
    EXPECT_NE(text.find("…"), std::string::npos);
}

TEST(Messages, WordsCanBePastedIntoAShell) {
    EXPECT_EQ(forShell("Maps.app/Assets.car"), "Maps.app/Assets.car");
    EXPECT_EQ(forShell("My Maps.app"), "'My Maps.app'");
    EXPECT_EQ(forShell("it's $HOME"), "'it'\\''s $HOME'");
    EXPECT_EQ(forShell("~/x"), "'~/x'");
    EXPECT_EQ(forShell("-x.car"), "./-x.car");
    EXPECT_EQ(forShell("-"), "-");
    EXPECT_EQ(forShell("-x y"), "'./-x y'");
    EXPECT_EQ(forShell(""), "''");
    EXPECT_EQ(forShell("Grüße"), "'Grüße'");
    EXPECT_EQ(forShell("a\nb"), "a?b");
}

TEST(Comparison, PicturesStandBesideEachOtherAtTheirOwnHeight) {
    const auto solid = [](std::size_t width, std::size_t height, std::uint8_t value) {
        return simulator::Picture{width, height, 2,
                                  std::vector<std::uint8_t>(width * height * 4, value)};
    };
    const simulator::Picture left = solid(10, 20, 255);
    const simulator::Picture right = solid(14, 30, 128);
    const simulator::Picture both = sideBySide({left, "."}, {right, ""});
    EXPECT_EQ(both.width, 10U + 24U + 14U);
    EXPECT_EQ(both.height, 56U + 30U);
    EXPECT_EQ(both.scale, 2);
    const auto at = [&](std::size_t x, std::size_t y) { return both.pixels[(y * 48 + x) * 4]; };
    EXPECT_EQ(at(0, 56), 255);
    EXPECT_EQ(at(9, 75), 255);
    EXPECT_EQ(at(9, 76), at(0, 0)) << "ground below the shorter one";
    EXPECT_EQ(at(33, 60), at(0, 0)) << "ground between";
    EXPECT_EQ(at(34, 56), 128);
    EXPECT_EQ(at(47, 85), 128);
}

}  // namespace
}  // namespace velmoranth::cli::parts_test
