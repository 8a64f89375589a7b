// velmoranth explain: what people ask, and what it says.
#include "tests/cli/explain_fixture.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace velmoranth::cli::explain_test {
namespace {

using nlohmann::json;

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
    // A theme below may have a mask and an overlay besides.
    picture(std::string("B") + kMask, 180, kBlack);
    picture("B/Velmoranth/iPhoneOverlay.png");
    EXPECT_NE(answer({"A", "B", "--", "icon", "com.apple.Maps"})
                  .find("; it hides B/IconBundles/com.apple.Maps-large.png."),
              std::string::npos);
}

TEST_F(ExplainTest, TheKnobStaysOld) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    EXPECT_EQ(answer({"A", "--", "knob"}),
              "A/UIImages/UISwitchKnob@3x.png shows; a change of themes shows after a respring.");
}

TEST_F(ExplainTest, TheClocksFaceIsNotMine) {
    picture("A/Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare~iphone.png");
    EXPECT_EQ(answer({"A", "--", "clock"}, 1),
              "The device's own picture shows: A has Bundles/com.apple.SpringBoardHome/"
              "ClockIconBackgroundSquare~iphone.png, which is not looked for; name it "
              "Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare.png.");
    picture("A/Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png");
    EXPECT_TRUE(answer({"A", "--", "clock"})
                    .starts_with("A/Bundles/com.apple.SpringBoardHome/"
                                 "ClockIconBackgroundSquare@3x.png shows"));
}

TEST_F(ExplainTest, TheClocksIconIsForTheOtherSystem) {
    const std::string file = "A/IconBundles/com.apple.mobiletimer-large.png";
    picture(file);
    const std::vector<std::string> words = {"A", "--", "icon", "com.apple.mobiletimer"};
    EXPECT_EQ(answer(words, 1),
              "The device's own picture shows: no active theme has what is looked for, Bundles/"
              "com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png first; on iOS 12 " +
                  file + " shows.");
    EXPECT_EQ(
        object(words).at("onOtherSystem"),
        (json{
            {"ios", 12}, {"theme", "A"}, {"file", "IconBundles/com.apple.mobiletimer-large.png"}}));
    EXPECT_EQ(object({"A", "--", "badge"}).at("onOtherSystem"), json());
}

TEST_F(ExplainTest, TheDotsAreStock) {
    picture("A/Bundles/com.apple.springboard/SBPageDotCurrent@3x.png", 24);
    EXPECT_EQ(answer({"A", "--", "dot", "current"}),
              "A/Bundles/com.apple.springboard/SBPageDotCurrent@3x.png shows.");
    EXPECT_EQ(answer({"A", "--", "dot", "search"}, 1),
              "The stock picture shows: no active theme has what is looked for, "
              "Bundles/com.apple.springboard/Spotlight_Pages.png first.");
}

TEST_F(ExplainTest, TheDotsAreGone) {
    picture("A/Bundles/com.apple.springboard/SBPageDotCurrent@3x.png", 24);
    EXPECT_EQ(answer({"A", "--set", "removePageDots=yes", "--", "dot", "current"}, 1),
              "Nothing shows: removePageDots is on; with it off, "
              "A/Bundles/com.apple.springboard/SBPageDotCurrent@3x.png shows.");
}

TEST_F(ExplainTest, TheCalendarAloneIsSquare) {
    picture("A/IconBundles/com.apple.mobilecal-large.png");
    picture(std::string("A") + kMask, 180, kBlack);
    folder.file("work/A/Info.plist", "<plist><dict><key>a</key><true/></dict></plist>");
    EXPECT_NE(answer({"A", "--", "calendar"})
                  .find(", with the corners that the file has: IB-MaskIcons is not on in "
                        "A/Info.plist, so A" +
                        std::string(kMask) + " does not cut it out"),
              std::string::npos);
    folder.file("work/A/Info.plist", "<plist><dict><key>IB-MaskIcons</key><true/></dict></plist>");
    EXPECT_NE(answer({"A", "--", "calendar"}).find(", cut out by A"), std::string::npos);
}

// A file that another request opens is at its place.
TEST_F(ExplainTest, AFileThatIsInUseIsNoneThatIsMisnamed) {
    picture("A/Bundles/com.apple.Preferences/WiFi@3x.png", 87);
    picture(std::string("A/") + kMaps);
    for (const std::vector<std::string>& request : {std::vector<std::string>{"symbol", "wifi"},
                                                    {"settings", "Wifi"},
                                                    {"icon", "com.apple.maps"}}) {
        const CommandResult result = explain({"A", "--", request[0], request[1]});
        EXPECT_EQ(result.output.find("name it"), std::string::npos) << result.output;
        EXPECT_EQ(result.output.find("unused"), std::string::npos) << result.output;
    }
    picture("B/IconBundles/com.apple.Maps.png");
    EXPECT_NE(answer({"B", "--", "icon", "com.apple.Maps"}, 1)
                  .find("B has IconBundles/com.apple.Maps.png, which is not looked for; name it "),
              std::string::npos);
    // A bundle's picture is meant for another place under its very name alone.
    picture("C/Bundles/com.apple.preferences-ui-framework/WiFi.png", 87);
    EXPECT_EQ(explain({"C", "--", "file", "*"}).output, "");
}

TEST_F(ExplainTest, TheFoldersHaveNoPlate) {
    picture("A/IconBundles/com.apple.News-large.png");
    EXPECT_EQ(answer({"A", "--", "folder"}, 1),
              "Nothing shows: no active theme has what is looked for, Velmoranth/Folder.png "
              "first.");
    picture("A/Bundles/com.apple.springboard/ANEMFolderIconBG.png");
    EXPECT_EQ(answer({"A", "--", "folder"}),
              "A/Bundles/com.apple.springboard/ANEMFolderIconBG.png shows; a change of themes "
              "shows after a respring.");
}

TEST_F(ExplainTest, APartOfAThemeThatIsNotTheFirst) {
    picture("A/IconBundles/com.apple.News-large.png");
    picture("B/Velmoranth/Folder.png");
    EXPECT_EQ(answer({"A", "B", "--", "folder"}, 1),
              "Nothing shows: B has a file for it, which is looked for once that theme is the "
              "first.");
    EXPECT_TRUE(answer({"B", "A", "--", "folder"}).starts_with("B/Velmoranth/Folder.png shows"));
    picture("C/Bundles/com.apple.mobileicons.framework/AppIconMask.png");
    EXPECT_EQ(answer({"A", "C", "--", "icon", "com.apple.Maps"}).find("once that theme"),
              std::string::npos)
        << "a mask is looked for in every theme, and is no icon";
}

TEST_F(ExplainTest, NoSoundPlays) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    EXPECT_EQ(answer({"A", "--", "sound", "1104"}, 1),
              "The system's own sound plays: no active theme has what is looked for, "
              "UISounds/key_press_click.caf first.")
        << "the folder is missing as well";
    EXPECT_EQ(answer({"A", "--", "sound", "event:lock"}, 1),
              "Nothing plays: no active theme has what is looked for, UISounds/lock.caf first.");
    folder.file("work/B/UISounds/lock.caf", "text");
    EXPECT_EQ(answer({"B", "--", "sound", "1004"}, 1),
              "The system's own sound plays: no file's name belongs to it; velmoranth names "
              "sounds lists those that have one.");
    folder.file("work/A/UIsounds/key_press_click.caf", "text");
    EXPECT_EQ(answer({"A", "--", "sound", "key-click"}, 1),
              "The system's own sound plays: A has UIsounds/key_press_click.caf, which is not "
              "looked for; name it UISounds/key_press_click.caf.");
}

// --- What lies behind the device's own picture.

constexpr const char* kCalendarList =
    "<plist><dict><key>CalendarIconDateSettings</key><dict><key>FontName</key><string>"
    "AvenirNext-Medium</string><key>TextColor</key><string>#FF8000</string>"
    "<key>TextYoffset</key><integer>20</integer></dict>"
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
    EXPECT_NE(
        result.output.find("\nagain      kept: the next request does not open it again; nor does "),
        std::string::npos);
    EXPECT_EQ(result.errors, "");
    const CommandResult older = explain({"B", "--ios", "12", "--", "icon", "com.apple.Maps"});
    EXPECT_NE(
        older.output.find("+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]\n"),
        std::string::npos)
        << older.output;
}

TEST_F(ExplainTest, SaysWhatWasDrawnStepByStepWithTheSizes) {
    picture(std::string("A/") + kMaps, 120);
    picture(std::string("A") + kMask, 60, kBlack);
    picture("A/Velmoranth/iPhoneOverlay.png", 90);
    const CommandResult result = explain({"A", "--", "icon", "com.apple.Maps"});
    EXPECT_NE(result.output.find("\ndrawn      made a mask: 120×120 @1x, 60×60 @1x → 60×60 mask\n"
                                 "           cut out: 120×120 pixels, 60×60 mask → 120×120 pixels\n"
                                 "           redrawn: 120×120 pixels, 90×90 @1x, 120×120 @1x → "
                                 "120×120 @3x\n"),
              std::string::npos)
        << result.output;
    const json steps = object({"A", "--", "icon", "com.apple.Maps"}).at("drawn");
    ASSERT_EQ(steps.size(), 3U);
    EXPECT_EQ(steps[1], (json{{"what", "cut out"},
                              {"message", "CGImageCreateWithMask"},
                              {"before", {"120×120 pixels", "60×60 mask"}},
                              {"after", "120×120 pixels"}}));
    EXPECT_EQ(object({"A", "--", "badge"}).at("drawn"), json::array());
}

TEST_F(ExplainTest, SaysWhichLaterRequestsWhatIsKeptAnswers) {
    picture(std::string("A/") + kMaps);
    const CommandResult result = explain({"A", "--", "icon", "com.apple.Maps"});
    EXPECT_NE(
        result.output.find("\nagain      kept: the next request does not open it again; nor does "
                           "miniature com.apple.Maps\n"),
        std::string::npos)
        << result.output;
    EXPECT_EQ(object({"A", "--", "icon", "com.apple.Maps"}).at("later"),
              (json::array({{{"request", "miniature"}, {"argument", "com.apple.Maps"}}})));
    EXPECT_EQ(object({"A", "--", "notification", "com.apple.Maps"}).at("later"), json::array());
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

// The page for programs lists every member.
TEST_F(ExplainTest, JsonHasTheMembersThatTheDocumentLists) {
    picture("A/IconBundles/com.apple.Maps-large.png");
    std::ifstream page(std::string(tests::kSourceFolder) + "/docs/themes/explain.md");
    const std::string document{std::istreambuf_iterator<char>(page), {}};
    const std::size_t begin = document.find("\n| `version` |");
    const std::size_t end = document.find("\n\n", begin);
    ASSERT_NE(end, std::string::npos);
    std::vector<std::string> listed;
    std::istringstream rows(document.substr(begin, end - begin));
    for (std::string row; std::getline(rows, row);) {
        // The names in the first column.
        const std::string first = row.substr(0, row.find(" |", 1));
        for (std::size_t at = first.find('`'); at != std::string::npos;
             at = first.find('`', first.find('`', at + 1) + 1)) {
            listed.push_back(first.substr(at + 1, first.find('`', at + 1) - at - 1));
        }
    }
    std::vector<std::string> members;
    const auto answer = nlohmann::ordered_json::parse(
        explain({"--json", "A", "--", "icon", "com.apple.Maps"}).output);
    for (const auto& [name, value] : answer.items()) {
        members.push_back(name);
    }
    std::ranges::sort(listed);
    std::ranges::sort(members);
    EXPECT_EQ(members, listed);
}

TEST_F(ExplainTest, SaysHowLargeItIsBesideTheStockPicture) {
    picture("A/IconBundles/com.apple.Maps-large.png", 60);
    EXPECT_NE(
        explain({"A", "--", "icon", "com.apple.Maps"})
            .output.find("\nsize       60 × 60 pixels, the stock picture's 180 × 180 pixels\n"),
        std::string::npos);
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

TEST_F(ExplainTest, WithNoPictureToWriteItIsExplainedFirst) {
    folder.file(std::string("work/A/") + kMaps);
    const CommandResult result = explain({"A", "-o", "x.png", "--", "icon", "com.apple.Maps"});
    EXPECT_EQ(result.code, 3);
    EXPECT_TRUE(lastLine(result.output).starts_with("Nothing shows: ")) << result.output;
    EXPECT_EQ(result.errors, "velmoranth: error: nothing shows, so there is no picture to write\n");
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
        "\"AVAudioSessionCategoryAmbient\" = YES",
        "message-[AVAudioSession setActive:error:] AVAudioSession YES = YES",
        "found-[AVAudioPlayer initWithContentsOfURL:error:] = AVAudioPlayer",
        "message-[AVAudioPlayer prepareToPlay] AVAudioPlayer = YES",
        "message-[AVAudioPlayer play] AVAudioPlayer = YES"};
    EXPECT_EQ(told, expected) << result.output;
}

}  // namespace
}  // namespace velmoranth::cli::explain_test
