// What velmoranth explain says of later requests and of a change of themes.
#include "tests/cli/explain_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmoranth::cli::explain_change_test {
namespace {

using Words = std::vector<std::string>;

class ExplainChangeTest : public ExplainTest {
  protected:
    void SetUp() override {
        ExplainTest::SetUp();
        picture("A/Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png");
        picture("A/Bundles/com.apple.Preferences/WiFi@3x.png", 87);
        picture("A/Bundles/com.apple.springboard/SBBadgeBG.png", 72);
        picture("A/Bundles/com.apple.springboard/SBPageDotCurrent@3x.png", 24);
        picture("A/Velmoranth/Folder.png");
        picture("A/Velmoranth/iPhoneShadow.png");
        picture("A/Velmoranth/SBDockBGiphone.png");
        picture("A/Velmoranth/SBDockBGipad.png");
        picture(std::string("A/") + kMaps);
        picture(std::string("A/") + kTimer);
    }

    // The lines about later requests and about a change of themes, without their words in front.
    struct Said {
        std::string again;
        std::string changes;
    };

    [[nodiscard]] Said said(const Words& words) const {
        const CommandResult result = explain(words);
        EXPECT_EQ(result.code, 0) << result.errors << result.output;
        return {.again = behind("\nagain      ", result.output),
                .changes = behind("\nchanges    ", result.output)};
    }

    static std::string behind(const std::string& word, const std::string& text) {
        const std::size_t at = text.find(word);
        const std::size_t begin = at + word.size();
        return at == std::string::npos ? "" : text.substr(begin, text.find('\n', begin) - begin);
    }

    static constexpr const char* kTimer = "IconBundles/com.apple.mobiletimer-large.png";
    const std::string kAgain = "the next request opens the files again";
    const std::string kKept = "kept: the next request does not open it again";
    const std::string kAtOnce = "of the themes show at the next request";
    const std::string kRespring = "of the themes show after a respring";
};

TEST_F(ExplainChangeTest, WhatTheSystemKeepsIsKeptUnderAMaskAsWell) {
    for (const bool isMasked : {false, true}) {
        if (isMasked) {
            picture(std::string("A") + kMask, 180, kBlack);
        }
        for (const Words& request : {Words{"clock"}, Words{"settings", "WiFi"}}) {
            Words words = {"A", "--"};
            words.insert(words.end(), request.begin(), request.end());
            const Said answer = said(words);
            EXPECT_EQ(answer.again, kKept) << request.front() << isMasked;
            EXPECT_EQ(answer.changes, kRespring) << request.front() << isMasked;
        }
    }
}

TEST_F(ExplainChangeTest, AnIconIsKeptUntilTheThemesChange) {
    picture(std::string("A") + kMask, 180, kBlack);
    const Said icon = said({"A", "--", "icon", "com.apple.Maps"});
    EXPECT_TRUE(icon.again.starts_with(kKept)) << icon.again;
    EXPECT_EQ(icon.changes, kAtOnce);
    EXPECT_EQ(said({"A", "--ios", "12", "--", "clock"}).changes, kAtOnce);
    picture(std::string("A") + kMask);
    const Said masked = said({"A", "--", "icon", "com.apple.News"});
    EXPECT_EQ(masked.again, "kept: the next request opens no file")
        << "the device's own icon, cut out";
    EXPECT_EQ(masked.changes, "");
}

// A home screen keeps its views, and what a theme has put into them.
TEST_F(ExplainChangeTest, ViewsThatStayOnTheScreenKeepTheirPictures) {
    EXPECT_EQ(said({"A", "--", "folder"}).changes, kRespring);
    EXPECT_EQ(said({"A", "--set", "enableShadow=yes", "--", "shadow"}).changes, kRespring);
    EXPECT_EQ(said({"A", "--device", "pad", "--set", "removeDock=yes", "--", "dock"}).changes,
              kRespring);
    EXPECT_EQ(said({"A", "--set", "removeDock=yes", "--", "dock"}).changes, kAtOnce);
    EXPECT_EQ(said({"A", "--", "badge"}).changes, kAtOnce);
    EXPECT_EQ(said({"A", "--", "dot", "current"}).changes, kAtOnce);
}

TEST_F(ExplainChangeTest, TheThemesAreAsTheyWereAndNothingIsLeft) {
    const std::string before = lastLine(explain({"A", "--", "folder"}).output);
    folder.file("work/asks", "folder\nfolder\nbadge\n");
    const CommandResult result = explain({"A", "--requests", "asks"});
    EXPECT_NE(result.output.find(before), std::string::npos);
    EXPECT_NE(result.output.rfind(before), result.output.find(before)) << "both times";
    EXPECT_EQ(folder.names("tmp"), "");
}

}  // namespace
}  // namespace velmoranth::cli::explain_change_test
