// What velmoranth explain is given: lists of requests, wrong words, bad input.
#include "tests/cli/explain_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace velmoranth::cli::explain_input_test {
namespace {

class ExplainInputTest : public ExplainTest {};

TEST_F(ExplainInputTest, RequestsAreReadFromAFileALineEach) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    folder.file("work/asks", "# two of them\r\nknob\r\n\r\n \tbadge\t\r\n");
    const CommandResult result = explain({"A", "--requests", "asks"});
    EXPECT_EQ(result.code, 0) << "one of them shows a file of the theme";
    EXPECT_NE(result.output.find("request    knob\n"), std::string::npos);
    EXPECT_NE(result.output.find("\n\nrequest    badge\n"), std::string::npos);
    EXPECT_EQ(result.errors, "");
    folder.file("work/bundled", "image TabList\t--bundle com.example.Workbench");
    const std::string bundled = explain({"A", "--requests", "bundled"}).output;
    EXPECT_TRUE(bundled.starts_with("request    image TabList of com.example.Workbench\n"));
    EXPECT_EQ(explain({"A", "--", "image", "TabList", "--bundle", "com.example.Workbench"}).output,
              bundled);
}

TEST_F(ExplainInputTest, ALineThatIsNoRequestKeepsNoOtherFromBeingAsked) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    folder.file("work/wrong", "bagde\nknob\nimage --bundle\ndock next");
    const CommandResult wrong = explain({"A", "--requests", "wrong"});
    EXPECT_EQ(wrong.code, 2);
    EXPECT_NE(wrong.output.find("A/UIImages/UISwitchKnob@3x.png shows"), std::string::npos);
    EXPECT_EQ(
        wrong.errors,
        "velmoranth: error: wrong: line 1: there is no request \"bagde\"; did you mean "
        "badge?\n"
        "velmoranth: error: wrong: line 3: a request has no option behind it but --bundle ID, of "
        "image NAME; the others stand before --\n"
        "velmoranth: error: wrong: line 4: dock takes nothing behind it\n");
}

TEST_F(ExplainInputTest, AListOfRequestsThatCannotBeReadIsTold) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    folder.folder("work/none");
    folder.file("work/empty", "# nothing\n\n");
    folder.file("work/long", "icon " + std::string(1000, 'x'));
    const auto expectError = [&](const std::string& list, const std::string& text) {
        const CommandResult result = explain({"A", "--requests", list});
        EXPECT_EQ(result.code, 3) << text;
        EXPECT_EQ(result.errors, "velmoranth: error: " + list + ": " + text + "\n");
        EXPECT_EQ(result.output, "");
    };
    expectError("none", "the list of requests cannot be read: is a directory");
    expectError("missing", "the list of requests cannot be read: no such file or directory");
    expectError("empty", "there is no request in it; a line has one, as in icon com.apple.Maps");
    expectError("long", "line 1: the line is longer than 1000 bytes");
}

TEST_F(ExplainInputTest, WrongWordsAreToldInALine) {
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
    expectMisuse({"--", "badge"},
                 "a THEME folder is missing before -- (or --root DIR); velmoranth explain --help");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"A", "--root", "d", "--", "badge"}, {"--root", "d", "badge"}}) {
        expectMisuse(words,
                     "--root does not go with THEME: a device has its own themes; the REQUEST "
                     "stands behind --");
    }
    expectMisuse({"--root", "d", "--set", "enable=no", "--", "badge"},
                 "--set does not go with --root: a device has its own preferences");
    expectMisuse({"A", "--bundle", "x", "--", "badge"}, "--bundle goes with image alone");
    expectMisuse({"A", "--", "badge", "--bundle", "x"}, "--bundle goes with image alone");
    expectMisuse({"A", "--bundle", "x", "--", "image", "y", "--bundle", "z"},
                 "--bundle is given twice");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"A", "--", "badge", "--ios", "12"},
          {"A", "--", "icon", "x", "-o", "x.png"}}) {
        expectMisuse(words,
                     "a request has no option behind it but --bundle ID, of image NAME; the others "
                     "stand before --");
    }
    expectMisuse({"A", "--json", "--raw", "--", "badge"},
                 "--json does not go with --raw: the one is in the other");
    expectMisuse({"A", "--bundle", "x", "--requests", "list"},
                 "--bundle does not go with --requests: it stands in their lines");
    expectMisuse({"A", "--requests", "list", "--", "badge"},
                 "--requests does not go with a REQUEST behind --");
    expectMisuse({"A", "-o", "x.png", "--", "icon", "*"}, "--output does not go with icon *");
    expectMisuse({"A", "--raw", "--", "icon", "*"}, "--raw does not go with icon *");
    expectMisuse({"A", "--raw", "--", "file", "x"}, "--raw does not go with file x");
    expectMisuse({"A", "-o", "", "--", "badge"}, "--output takes the name of a file");
    expectMisuse({"A", "-o", "-", "--json", "--", "badge"},
                 "--output - does not go with --json: both go to standard output");
    expectMisuse({"A", "--", "widget", "*"}, "* stands for all behind icon and file alone");
    expectMisuse({"A", "--ios", "12", "--", "symbol", "gear"},
                 "iOS 12 has no symbol: nothing asks for one; --ios 13");
    expectMisuse({"A", "--", "sound", "loud"}, "there is no sound \"loud\"; did you mean lock?");
    expectMisuse({"A", "--", "sound", "panel:on"},
                 "a sound of the settings panel is none of a theme's; velmoranth sound plays "
                 "panel:on");
}

TEST_F(ExplainInputTest, InputThatCannotBeUsedIsToldInALine) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    const CommandResult missing = explain({"None", "--", "badge"});
    EXPECT_EQ(missing.code, 3);
    EXPECT_EQ(missing.errors, "velmoranth: error: None: there is no such theme folder\n");
    const CommandResult file = explain({"A", "--", "file", "Nothing.png"});
    EXPECT_EQ(file.code, 3);
    EXPECT_EQ(file.errors,
              "velmoranth: error: Nothing.png: no theme has this file; give its path in "
              "the theme's folder\n");
}

TEST_F(ExplainInputTest, OddIdentifiersAreAskedForAsTheyAre) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    const CommandResult result = explain({"A", "--", "icon", "a/../../b"});
    EXPECT_EQ(result.code, 1);
    EXPECT_NE(result.output.find("(missing)"), std::string::npos) << result.output;
    const auto noteOf = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"A", "--"});
        return explain(words).errors;
    };
    EXPECT_EQ(noteOf({"icon", "com.apple.maps"}),
              "velmoranth: the simulated device has no app \"com.apple.maps\"; did you mean "
              "com.apple.Maps?\n");
    EXPECT_EQ(noteOf({"icon", "com.apple.walls"}),
              "velmoranth: the simulated device has no app \"com.apple.walls\"\n")
        << "too far from any";
    EXPECT_EQ(noteOf({"symbol", "gaer"}),
              "velmoranth: the simulated device has no symbol \"gaer\"; did you mean gear?\n");
    EXPECT_EQ(noteOf({"settings", "Wifi"}),
              "velmoranth: the simulated device has no settings icon \"Wifi\"; did you mean "
              "WiFi?\n");
    EXPECT_EQ(explain({"A", "--bundle", "com.example.workbank", "--", "image", "TabList"}).errors,
              "velmoranth: the simulated device has no bundle \"com.example.workbank\"; did you "
              "mean com.example.Workbench?\n");
}

// --- Processes that end in the middle.

TEST_F(ExplainInputTest, OfAProcessThatEndsEarlyIsToldWhatItDid) {
    picture(std::string("A/") + kMaps);
    const CommandResult result = runCommand({"explain", "A", "--", "icon", "com.apple.Maps"},
                                            endingSetting("com.apple.Maps"));
    EXPECT_EQ(result.code, 3);
    EXPECT_NE(result.output.find("looks for  A/IconBundles/com.apple.Maps-large.png (found, "
                                 "180×180 @1x)\n"),
              std::string::npos)
        << result.output;
    EXPECT_TRUE(lastLine(result.output)
                    .starts_with("The process ended before it answered: the simulated process "
                                 "crashed with SIGABRT"))
        << result.output;
    EXPECT_TRUE(
        result.errors.starts_with("velmoranth: error: the simulated process crashed with SIGABRT"))
        << result.errors;
    EXPECT_EQ(folder.names("tmp"), "");
}

TEST_F(ExplainInputTest, AnAppWhoseProcessEndsEarlyKeepsNoOtherFromTheTable) {
    picture(std::string("A/") + kMaps);
    picture("A/IconBundles/com.apple.weather-large.png");
    const std::vector<std::string> words{"explain", "A", "--", "icon", "*"};
    const CommandResult result = runCommand(words, endingSetting("com.apple.Maps"));
    EXPECT_EQ(result.code, 3);
    const std::string ended = "  The process ended before it answered: ";
    const std::size_t first = result.output.find(ended);
    ASSERT_NE(first, std::string::npos) << result.output;
    EXPECT_EQ(result.output.find(ended, first + 1), std::string::npos) << "of the one app alone";
    EXPECT_NE(result.output.find("  A/IconBundles/com.apple.weather-large.png shows"),
              std::string::npos)
        << result.output;
    EXPECT_EQ(std::ranges::count(result.output, '\n'),
              std::ranges::count(runCommand(words, setting()).output, '\n'))
        << "each app has its line";
}

}  // namespace
}  // namespace velmoranth::cli::explain_input_test
