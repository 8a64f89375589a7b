// velmoranth explain
#include "tests/cli/preview_fixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace velmoranth::cli::explain_test {
namespace {

using nlohmann::json;

// As a mask it hides nothing.
constexpr Color kBlack{0, 0, 0};
constexpr const char* kMask = "/Bundles/com.apple.mobileicons.framework/AppIconMask.png";

std::string lastLine(const std::string& text) {
    const std::size_t end = text.find_last_not_of('\n');
    const std::size_t begin = text.rfind('\n', end);
    return text.substr(begin + 1, end - begin);
}

class ExplainTest : public PreviewTest {
  protected:
    // A picture of one colour, that side in pixels.
    void picture(const std::string& name, std::size_t side = 180, Color color = kMagenta) const {
        std::vector<std::uint8_t> pixels(side * side * 4, 255);
        for (std::size_t i = 0; i < pixels.size(); i += 4) {
            pixels[i] = color.blue;
            pixels[i + 1] = color.green;
            pixels[i + 2] = color.red;
        }
        const auto png = desktop::encodePng(pixels, side, side, side * 4);
        folder.file("work/" + name, std::string(png.begin(), png.end()));
    }

    [[nodiscard]] CommandResult explain(std::vector<std::string> words) const {
        words.insert(words.begin(), "explain");
        return runCommand(words, setting());
    }

    // The sentence that sums up.
    [[nodiscard]] std::string answer(const std::vector<std::string>& words, int code = 0) const {
        const CommandResult result = explain(words);
        EXPECT_EQ(result.code, code) << result.errors;
        EXPECT_EQ(folder.names("tmp"), "") << "nothing is left";
        return lastLine(result.output);
    }

    [[nodiscard]] json object(std::vector<std::string> words) const {
        words.insert(words.begin(), "--json");
        return json::parse(explain(words).output, nullptr, false);
    }
};

// --- What people ask.

TEST_F(ExplainTest, MyIconHasSquareCorners) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    EXPECT_EQ(
        answer({"A", "--", "icon", "com.apple.Maps"}),
        "A/IconBundles/com.apple.Maps-large.png shows, with the corners that the file has: no "
        "active theme has a mask that is used.");
    picture(std::string("A") + kMask, 180, kBlack);
    EXPECT_EQ(
        answer({"A", "--", "icon", "com.apple.Maps"}),
        "A/IconBundles/com.apple.Maps-large.png shows, cut out by A" + std::string(kMask) + ".");
}

TEST_F(ExplainTest, TheBadgeIsStock) {
    picture("A/Bundles/com.apple.springboard/SBBadgeBg.png", 24);
    EXPECT_EQ(
        answer({"A", "--", "badge"}, 1),
        "The stock picture shows: A has Bundles/com.apple.springboard/SBBadgeBg.png, which is "
        "not looked for; name it Bundles/com.apple.springboard/SBBadgeBG.png.");
}

TEST_F(ExplainTest, TheIconOfAnAppDoesNotShow) {
    picture("A/IconBundles/com.apple.maps-large.png");
    EXPECT_EQ(answer({"A", "--", "icon", "com.apple.Maps"}, 1),
              "The stock picture shows: A has IconBundles/com.apple.maps-large.png, which is not "
              "looked for; name it IconBundles/com.apple.Maps-large.png.");
    picture("B/IconBundles/com.apple.News-large.png");
    EXPECT_EQ(answer({"B", "--", "icon", "com.apple.Maps"}, 1),
              "The stock picture shows: no active theme has what is looked for, "
              "IconBundles/com.apple.Maps-large.png first.");
}

TEST_F(ExplainTest, ThereIsAHoleInPlaceOfTheIcon) {
    folder.file("work/A/IconBundles/com.apple.Maps-large.png");
    const std::string text = answer({"A", "--", "icon", "com.apple.Maps"}, 1);
    EXPECT_NE(text.find("A/IconBundles/com.apple.Maps-large.png is there and gives nothing: "
                        "the file is empty."),
              std::string::npos)
        << text;
}

TEST_F(ExplainTest, AnotherThemesIconShows) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    picture("B/IconBundles/com.apple.Maps-large.png");
    picture("B/IconBundles/com.apple.News-large.png");
    const CommandResult result = explain({"A", "B", "--", "icon", "com.apple.Maps"});
    EXPECT_NE(result.output.find("\nshows      A/IconBundles/com.apple.Maps-large.png\n"
                                 "hides      B/IconBundles/com.apple.Maps-large.png\n"),
              std::string::npos)
        << result.output;
    EXPECT_NE(lastLine(result.output).find("; it hides B/IconBundles/com.apple.Maps-large.png."),
              std::string::npos);
    EXPECT_EQ(answer({"A", "B", "--", "icon", "com.apple.news"}, 1).find("; it hides"),
              std::string::npos);
}

TEST_F(ExplainTest, TheKnobStaysOld) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    EXPECT_EQ(answer({"A", "--", "knob"}),
              "A/UIImages/UISwitchKnob@3x.png shows; a change of themes shows after a respring.");
}

TEST_F(ExplainTest, TheClocksFaceIsNotMine) {
    picture("A/Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare~iphone.png");
    EXPECT_NE(answer({"A", "--", "clock"}, 1).find("which is not looked for; name it "),
              std::string::npos);
    picture("A/Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png");
    EXPECT_TRUE(answer({"A", "--", "clock"})
                    .starts_with("A/Bundles/com.apple.SpringBoardHome/"
                                 "ClockIconBackgroundSquare@3x.png shows"));
}

TEST_F(ExplainTest, TheDotsAreStock) {
    picture("A/Bundles/com.apple.springboard/SBPageDotCurrent@3x.png", 24);
    EXPECT_EQ(answer({"A", "--", "dot", "current"}),
              "A/Bundles/com.apple.springboard/SBPageDotCurrent@3x.png shows.");
    EXPECT_TRUE(answer({"A", "--", "dot", "search"}, 1).starts_with("The stock picture shows: "));
}

TEST_F(ExplainTest, TheFoldersHaveNoPlate) {
    picture("A/Bundles/com.apple.springboard/ANEMFolderIconBG.png");
    EXPECT_EQ(answer({"A", "--", "folder"}),
              "A/Bundles/com.apple.springboard/ANEMFolderIconBG.png shows.");
}

TEST_F(ExplainTest, NoSoundPlays) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    EXPECT_EQ(answer({"A", "--", "sound", "1104"}, 1),
              "The system's own sound plays: no active theme has what is looked for, UISounds "
              "first.");
    EXPECT_EQ(answer({"A", "--", "sound", "event:1002"}, 1),
              "Nothing plays: no active theme has what is looked for, UISounds first.");
}

// --- What lies behind the device's own picture.

constexpr const char* kCalendarList =
    "<plist><dict><key>CalendarIconDateSettings</key><dict><key>FontName</key><string>"
    "AvenirNext-Medium</string><key>TextColor</key><string>#FF8000</string></dict>"
    "<key>CalendarIconDaySettings</key><dict><key>FontName</key><string>AvenirNext-Medium</string>"
    "</dict></dict></plist>";

TEST_F(ExplainTest, AListThatTheCalendarIsDrawnByIsBehindIt) {
    folder.file("work/A/Info.plist", kCalendarList);
    const CommandResult result = explain({"A", "--", "calendar"});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(lastLine(result.output)
                    .starts_with("The device's own picture shows, drawn as in A/Info.plist: "))
        << result.output;
    EXPECT_NE(result.output.find("\ncalendar   A/Info.plist: the date's TextColor \"#FF8000\" is "
                                 "not understood"),
              std::string::npos)
        << result.output;
    const json said = object({"A", "--", "calendar"});
    EXPECT_EQ(said.at("effects").at("list").at("file"), "Info.plist");
    EXPECT_EQ(said.at("findings").size(), 1U);
    EXPECT_EQ(said.at("isStock"), false);
}

TEST_F(ExplainTest, WhatLiesOverAPressedIconHasTheMask) {
    picture(std::string("A") + kMask, 180, kBlack);
    const json said = object({"A", "--", "pressed"});
    EXPECT_EQ(said.at("effects").at("mask").at("file"), std::string(kMask).substr(1));
    EXPECT_EQ(said.at("summary").get<std::string>().find("no file of a theme is looked for"),
              std::string::npos);
}

// --- Settings.

constexpr const char* kDock = "A/Velmoranth/SBDockBGiphone.png";

TEST_F(ExplainTest, ASwitchThatIsOffIsTheReason) {
    picture(kDock);
    EXPECT_EQ(answer({"A", "--", "dock"}, 1),
              "The stock picture shows: removeDock is off; with it on, " + std::string(kDock) +
                  " shows.");
    EXPECT_EQ(answer({"A", "--set", "removeDock=yes", "--", "dock"}),
              std::string(kDock) + " shows.");
    EXPECT_TRUE(answer({"A", "--set", "enable=no", "--set", "removeDock=yes", "--", "dock"}, 1)
                    .ends_with(": enable is off; with it on, " + std::string(kDock) + " shows."));
    const json said = object({"A", "--", "dock"}).at("reason");
    EXPECT_EQ(said.at("setting"), "removeDock");
    EXPECT_EQ(said.at("isOn"), false);
    EXPECT_EQ(said.at("file").at("file"), "Velmoranth/SBDockBGiphone.png");
    EXPECT_EQ(object({"A", "--", "badge"}).at("reason"), json());
}

TEST_F(ExplainTest, ASwitchThatIsOnIsTheReason) {
    picture("A/Bundles/com.apple.springboard/SBBadgeBG.png", 24);
    EXPECT_EQ(answer({"A", "--set", "removeIconBadges=yes", "--", "badge"}, 1),
              "Nothing shows: removeIconBadges is on; with it off, "
              "A/Bundles/com.apple.springboard/SBBadgeBG.png shows.");
}

TEST_F(ExplainTest, AMaskThatIsSwitchedOffIsNamed) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    picture(std::string("A") + kMask, 180, kBlack);
    EXPECT_EQ(answer({"A", "--set", "enableIconMask=no", "--", "icon", "com.apple.Maps"}),
              "A/IconBundles/com.apple.Maps-large.png shows, with the corners that the file has: "
              "enableIconMask is off; with it on, A" +
                  std::string(kMask) + " cuts it out.");
}

// --- Masks that cannot be used.

TEST_F(ExplainTest, ABrokenMaskIsNamed) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    folder.file(std::string("work/A") + kMask);
    EXPECT_EQ(answer({"A", "--", "icon", "com.apple.Maps"}),
              "A/IconBundles/com.apple.Maps-large.png shows; A" + std::string(kMask) +
                  " is there and gives nothing: the file is empty.");
    EXPECT_EQ(object({"A", "--", "icon", "com.apple.Maps"}).at("brokenEffects").size(), 1U);
}

TEST_F(ExplainTest, AMaskThatHidesAllOfItIsNamed) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    folder.file(std::string("work/A") + kMask, deepGrayPng());
    EXPECT_EQ(answer({"A", "--", "icon", "com.apple.Maps"}),
              "A/IconBundles/com.apple.Maps-large.png is read, and nothing shows: A" +
                  std::string(kMask) + " hides all of it.");
}

// --- The other parts of the text.

TEST_F(ExplainTest, SaysWhichMethodsAreReachedAndWhatIsTriedInOrder) {
    picture("B/IconBundles/com.apple.Maps-large.png");
    picture("A/IconBundles/com.apple.News-large.png");
    const CommandResult result = explain({"A", "B", "--ios", "13", "--", "icon", "com.apple.Maps"});
    EXPECT_TRUE(result.output.starts_with(
        "request    icon com.apple.Maps\n"
        "asks       -[SBIconImageView contentsImage]\n"
        "           -[SBHIconImageCache imageForIcon:]\n"
        "looks for  A/IconBundles/com.apple.Maps-large.png (missing)\n"
        "           B/IconBundles/com.apple.Maps-large.png (found, 180×180 @1x)\n"))
        << result.output;
    EXPECT_NE(result.output.find("\nagain      kept: the next request opens no file\n"),
              std::string::npos);
    EXPECT_EQ(result.errors, "");
    const CommandResult older = explain({"B", "--ios", "12", "--", "icon", "com.apple.Maps"});
    EXPECT_NE(
        older.output.find("+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]\n"),
        std::string::npos)
        << older.output;
}

TEST_F(ExplainTest, JsonHasTheSameInOneObject) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    const json answer = object({"A", "--", "icon", "com.apple.Maps"});
    ASSERT_TRUE(answer.is_object());
    EXPECT_EQ(answer.at("version"), 1);
    EXPECT_EQ(answer.at("request"), "icon");
    EXPECT_EQ(answer.at("argument"), "com.apple.Maps");
    EXPECT_EQ(answer.at("shown").at("theme"), "A");
    EXPECT_EQ(answer.at("shown").at("file"), "IconBundles/com.apple.Maps-large.png");
    EXPECT_EQ(answer.at("hidden"), json());
    EXPECT_EQ(answer.at("isStock"), false);
    EXPECT_EQ(answer.at("isKept"), true);
    EXPECT_EQ(answer.at("stockSize"), (json{{"width", 180}, {"height", 180}}));
    EXPECT_EQ(answer.at("failure"), json());
    EXPECT_TRUE(answer.at("summary").get<std::string>().starts_with("A/IconBundles/"));
}

TEST_F(ExplainTest, RawIsTheRecordItself) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    const CommandResult result = explain({"A", "--raw", "--", "icon", "com.apple.Maps"});
    EXPECT_TRUE(result.output.starts_with("entered    -[SBIconImageView contentsImage] "));
    EXPECT_NE(
        result.output.find("      found      /Library/Themes/A/IconBundles/"
                           "com.apple.Maps-large.png -[NSFileManager fileExistsAtPath:] = YES\n"),
        std::string::npos)
        << result.output;
}

TEST_F(ExplainTest, WritesThePictureThatShows) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    EXPECT_EQ(explain({"A", "-o", "knob.png", "--", "knob"}).code, 0);
    const PngPicture knob(folder.contents("work/knob.png"));
    EXPECT_EQ(knob.width, 60U);
    EXPECT_EQ(knob.count(kMagenta), 60 * 60);
    const CommandResult piped = explain({"A", "-o", "-", "--", "knob"});
    EXPECT_EQ(PngPicture(piped.output).count(kMagenta), 60 * 60);
}

TEST_F(ExplainTest, EveryAppIsATableOfTheirSentences) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    const CommandResult result = explain({"A", "--", "icon", "*"});
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(result.output.find("com.apple.Maps"), std::string::npos);
    EXPECT_GT(std::ranges::count(result.output, '\n'), 30);
    EXPECT_NE(result.output.find("  A/IconBundles/com.apple.Maps-large.png shows"),
              std::string::npos);
}

TEST_F(ExplainTest, RequestsAreReadFromAFileALineEach) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    folder.file("work/asks", "# two of them\nknob\n\n  badge\n");
    const CommandResult result = explain({"A", "--requests", "asks"});
    EXPECT_EQ(result.code, 0) << "one of them shows a file of the theme";
    EXPECT_NE(result.output.find("request    knob\n"), std::string::npos);
    EXPECT_NE(result.output.find("\n\nrequest    badge\n"), std::string::npos);
    folder.file("work/wrong", "knob\nbagde\n");
    const CommandResult wrong = explain({"A", "--requests", "wrong"});
    EXPECT_EQ(wrong.code, 2);
    EXPECT_NE(
        wrong.errors.find("wrong: line 2: there is no request \"bagde\"; did you mean badge?"),
        std::string::npos)
        << wrong.errors;
}

TEST_F(ExplainTest, FilesThatLieWhereNothingLooksAreListed) {
    picture("A/IconBundles/com.apple.maps-large.png");
    picture("A/Bundles/com.apple.Preferences/Wifi@3x.png");
    picture("A/UIImages/UISwitchknob@3x.png", 60);
    picture("A/IconBundles/com.apple.News-large.png");
    const CommandResult result = explain({"A", "--", "file", "*"});
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(result.output.find("A/IconBundles/com.apple.maps-large.png is not looked for; name "
                                 "it IconBundles/com.apple.Maps-large.png\n"),
              std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("A/UIImages/UISwitchknob@3x.png is not looked for; name it "
                                 "UIImages/UISwitchKnob@3x.png\n"),
              std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("A/Bundles/com.apple.Preferences/Wifi@3x.png is not"),
              std::string::npos)
        << result.output;
}

// --- The question the other way round.

TEST_F(ExplainTest, AFileIsOpenedByTheseRequestsOnTheseDevices) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    const CommandResult result =
        explain({"A", "--", "file", "A/IconBundles/com.apple.Maps-large.png"});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(result.output.starts_with(
        "opened by  icon com.apple.Maps (phone iOS 12, phone-667 iOS 12, pad iOS 12, phone iOS 13, "
        "phone-667 iOS 13, pad iOS 13)\n"))
        << result.output;
    EXPECT_EQ(lastLine(result.output),
              "A/IconBundles/com.apple.Maps-large.png is opened by icon com.apple.Maps.");
}

TEST_F(ExplainTest, AFileThatNoRequestOpensIsToldWithTheNameThatOneWould) {
    picture("A/IconBundles/com.apple.maps.png");
    const CommandResult result = explain({"A", "--", "file", "IconBundles/com.apple.maps.png"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output,
              "A/IconBundles/com.apple.maps.png is opened by no request; the nearest name that one "
              "looks for is IconBundles/com.apple.maps-large.png.\n");
}

TEST_F(ExplainTest, AFileThatGivesNothingIsToldWithItsReason) {
    folder.file("work/A/IconBundles/com.apple.Maps-large.png", "text");
    const CommandResult result =
        explain({"A", "--", "file", "IconBundles/com.apple.Maps-large.png"});
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(lastLine(result.output).find(" is opened and gives nothing: "), std::string::npos)
        << result.output;
}

// --- Bad input.

TEST_F(ExplainTest, WrongWordsAreToldInALine) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    const auto expectMisuse = [&](const std::vector<std::string>& words, const std::string& text) {
        const CommandResult result = explain(words);
        EXPECT_EQ(result.code, 2) << text;
        EXPECT_EQ(result.errors, "velmoranth: error: " + text + "\n");
        EXPECT_EQ(result.output, "");
    };
    expectMisuse({"A", "--", "icn", "x"}, "there is no request \"icn\"; did you mean icon?");
    expectMisuse({"A", "--", "icon"}, "icon takes ID behind it");
    expectMisuse({"A", "--", "badge", "x"}, "badge takes nothing behind it");
    expectMisuse({"A", "--", "dot", "next"}, "dot takes current|other|search behind it");
    expectMisuse({"A"}, "a REQUEST is missing behind --; velmoranth explain --help lists them");
    expectMisuse({"--", "badge"}, "a THEME folder is missing before --; velmoranth explain --help");
    expectMisuse({"A", "--bundle", "x", "--", "badge"}, "--bundle goes with image alone");
    expectMisuse({"A", "--json", "--raw", "--", "badge"},
                 "--json does not go with --raw: the one is in the other");
}

TEST_F(ExplainTest, InputThatCannotBeUsedIsToldInALine) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    const CommandResult missing = explain({"None", "--", "badge"});
    EXPECT_EQ(missing.code, 3);
    EXPECT_EQ(missing.errors, "velmoranth: error: None: there is no such theme folder\n");
    const CommandResult file = explain({"A", "--", "file", "Nothing.png"});
    EXPECT_EQ(file.code, 3);
    EXPECT_EQ(file.errors,
              "velmoranth: error: Nothing.png: no theme has this file; give its path in "
              "the theme's folder\n");
    const CommandResult older = explain({"A", "--ios", "12", "--", "symbol", "gear"});
    EXPECT_EQ(older.code, 3);
    EXPECT_EQ(older.errors, "velmoranth: error: iOS 12 has no symbol: nothing asks for one\n");
    const CommandResult sound = explain({"A", "--", "sound", "loud"});
    EXPECT_EQ(sound.code, 3);
    EXPECT_EQ(sound.errors, "velmoranth: error: a sound is a number or event:NUMBER, not loud\n");
}

TEST_F(ExplainTest, WhatSessionAndPlayerAreToldIsInTheRecord) {
    // A sound that every device has, as the theme's own.
    ASSERT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
    folder.file("work/A/UISounds/photoShutter.caf",
                folder.contents("device/private/var/mobile/Library/VelMoranth/Sounds/Reboot.caf"));
    const CommandResult result = explain({"A", "--raw", "--", "sound", "1100"});
    EXPECT_EQ(result.code, 0) << result.errors;
    std::vector<std::string> told;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t at = line.find("AVAudio");
        if (at != std::string::npos) {
            const std::size_t begin = line.find_first_not_of(' ');
            told.push_back(line.substr(begin, line.find(' ', begin) - begin) + line.substr(at - 2));
        }
    }
    const std::vector<std::string> expected{
        "call+[AVAudioSession sharedInstance] = AVAudioSession",
        "message-[AVAudioSession setCategory:error:] AVAudioSession "
        "\"AVAudioSessionCategoryAmbient\"",
        "message-[AVAudioSession setActive:error:] AVAudioSession YES",
        "found-[AVAudioPlayer initWithContentsOfURL:error:] = AVAudioPlayer",
        "message-[AVAudioPlayer prepareToPlay] AVAudioPlayer",
        "message-[AVAudioPlayer play] AVAudioPlayer"};
    EXPECT_EQ(told, expected) << result.output;
}

TEST_F(ExplainTest, OddIdentifiersAreAskedForAsTheyAre) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    const CommandResult result = explain({"A", "--", "icon", "a/../../b"});
    EXPECT_EQ(result.code, 1);
    EXPECT_NE(result.output.find("(missing)"), std::string::npos) << result.output;
    const CommandResult near = explain({"A", "--", "icon", "com.apple.maps"});
    EXPECT_EQ(near.errors,
              "velmoranth: \"com.apple.maps\" is not of this device's own; did you mean "
              "com.apple.Maps?\n");
}

}  // namespace
}  // namespace velmoranth::cli::explain_test
