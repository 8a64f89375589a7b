// velmoranth explain -- file: the question the other way round.
#include "tests/cli/explain_fixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace velmoranth::cli::explain_file_test {
namespace {

using nlohmann::json;

class ExplainFileTest : public ExplainTest {};

constexpr const char* kEveryDevice =
    " (phone iOS 12, phone-667 iOS 12, pad iOS 12, phone iOS 13, phone-667 iOS 13, pad iOS 13)\n";

// What lies behind a request that has kept the file is opened all the same.
TEST_F(ExplainFileTest, AFileIsOpenedByTheseRequestsOnTheseDevices) {
    picture(std::string("A/") + kMaps);
    const CommandResult result = explain({"A", "--", "file", std::string("A/") + kMaps});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(result.output.starts_with(std::string("opened by  icon com.apple.Maps") +
                                          kEveryDevice + "           miniature com.apple.Maps" +
                                          kEveryDevice))
        << result.output;
    EXPECT_EQ(lastLine(result.output),
              "A/IconBundles/com.apple.Maps-large.png is opened by icon com.apple.Maps.");
    EXPECT_EQ(result.output.find("image "), std::string::npos) << "which no device asks for";
    picture(std::string("A") + kMask);
    EXPECT_TRUE(explain({"A", "--", "file", std::string("A") + kMask})
                    .output.starts_with(std::string("opened by  mask") + kEveryDevice));
}

// Of another format, which nothing looks for.
TEST_F(ExplainFileTest, APictureThatIsNoPngIsSentToThePngsName) {
    picture("A/IconBundles/com.apple.Maps-large.jpg");
    EXPECT_EQ(
        answer({"A", "--", "file", "IconBundles/com.apple.Maps-large.jpg"}, 1),
        "A/IconBundles/com.apple.Maps-large.jpg is opened by no request; the nearest name that "
        "is looked for is IconBundles/com.apple.Maps-large.png.");
}

TEST_F(ExplainFileTest, AFileIsAskedAboutOnTheDevicesThatAreGiven) {
    picture("A/UIImages/UISwitchKnob@3x.png", 60);
    const std::string knob = "UIImages/UISwitchKnob@3x.png";
    EXPECT_TRUE(explain({"A", "--", "file", knob})
                    .output.starts_with("opened by  knob (phone iOS 12, phone iOS 13)\n"));
    EXPECT_TRUE(explain({"A", "--ios", "12", "--", "file", knob})
                    .output.starts_with("opened by  knob (phone iOS 12)\n"));
    EXPECT_EQ(explain({"A", "--device", "pad", "--", "file", knob}).code, 1);
    EXPECT_EQ(answer({"A", "--exact-files", "--", "file", knob}, 1),
              "A/UIImages/UISwitchKnob@3x.png is opened by image UISwitchKnob alone, which the "
              "simulated device does not ask for; the nearest name that is looked for is "
              "UIImages/UISwitchKnob.png@3x.png.");
}

// The plain name is looked for; which file is taken for it is the screen's affair.
TEST_F(ExplainFileTest, AFileBesideTheOneOfTheScreensScaleIsNotLost) {
    const std::string badge = "Bundles/com.apple.springboard/SBBadgeBG";
    for (const char* const ending : {".png", "@2x.png", "@3x.png"}) {
        picture("A/" + badge + ending);
    }
    const CommandResult result = explain({"A", "--", "file", badge + ".png"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output,
              "looked for badge, which takes SBBadgeBG@3x.png (phone iOS 12, phone iOS 13)\n"
              "           badge, which takes SBBadgeBG@2x.png (phone-667 iOS 12, pad iOS 12, "
              "phone-667 iOS 13, pad iOS 13)\n"
              "A/Bundles/com.apple.springboard/SBBadgeBG.png is looked for by badge; "
              "SBBadgeBG@3x.png beside it is taken for the screen's scale, and it shows itself "
              "where no such name is there.\n");
    const json said = object({"A", "--ios", "13", "--device", "pad", "--", "file", badge + ".png"});
    EXPECT_EQ(said.at("beside"), (json{{{"request", "badge"},
                                        {"argument", ""},
                                        {"bundle", ""},
                                        {"device", "pad"},
                                        {"ios", 13},
                                        {"file", badge + "@2x.png"}}}));
    EXPECT_EQ(said.at("hidden"), nullptr);
    // By its very name it is the one that is loaded.
    EXPECT_EQ(answer({"A", "--exact-files", "--", "file", badge + ".png"}),
              "A/Bundles/com.apple.springboard/SBBadgeBG.png is opened by badge.");
    EXPECT_EQ(explain({"A", "--", "file", "*"}).output, "");
}

TEST_F(ExplainFileTest, AnIconBesideTheOneOfTheScreensScaleIsTakenOnTheOthers) {
    picture(std::string("A/") + kMaps);
    picture("A/IconBundles/com.apple.Maps-large@3x.png");
    picture("A/IconBundles/org.mine.notes-large.png");
    picture("A/IconBundles/org.mine.notes-large@3x.png");
    const std::string pads = explain({"A", "--ios", "13", "--", "file", kMaps}).output;
    EXPECT_TRUE(pads.starts_with("opened by  icon com.apple.Maps (phone-667 iOS 13, pad iOS 13)\n"))
        << pads;
    EXPECT_NE(pads.find("\nlooked for icon com.apple.Maps, which takes "
                        "com.apple.Maps-large@3x.png (phone iOS 13)\n"),
              std::string::npos)
        << pads;
    EXPECT_EQ(lastLine(pads),
              "A/IconBundles/com.apple.Maps-large.png is opened by icon com.apple.Maps.");
    // On the phone alone, and of an app that it does not have.
    EXPECT_EQ(answer({"A", "--ios", "13", "--device", "phone", "--", "file",
                      "IconBundles/org.mine.notes-large.png"}),
              "A/IconBundles/org.mine.notes-large.png is looked for by icon org.mine.notes; "
              "org.mine.notes-large@3x.png beside it is taken for the screen's scale, and it shows "
              "itself where no such name is there.");
    EXPECT_EQ(explain({"A", "--", "file", "*"}).output, "");
}

TEST_F(ExplainFileTest, AFileThatNoRequestOpensIsToldWithTheNameThatOneWould) {
    picture("A/IconBundles/com.apple.maps.png");
    const CommandResult result = explain({"A", "--", "file", "IconBundles/com.apple.maps.png"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output,
              "A/IconBundles/com.apple.maps.png is opened by no request; the nearest name that is "
              "looked for is IconBundles/com.apple.Maps-large.png.\n");
    picture("A/IconBundles/com.example.mine.png");
    EXPECT_EQ(answer({"A", "--", "file", "IconBundles/com.example.mine.png"}, 1),
              "A/IconBundles/com.example.mine.png is opened by no request; the nearest name that "
              "is looked for is IconBundles/com.example.mine-large.png.");
    folder.file("work/A/notes.txt", "text");
    EXPECT_EQ(answer({"A", "--", "file", "notes.txt"}, 1),
              "A/notes.txt is opened by no request; nothing like it is looked for.");
}

// A name that nothing on the device has is not invented to find the file.
TEST_F(ExplainFileTest, AFileForWhatTheDeviceLacksIsToldSo) {
    picture("A/IconBundles/com.apple.maps-large.png");
    EXPECT_EQ(answer({"A", "--", "file", "IconBundles/com.apple.maps-large.png"}, 1),
              "A/IconBundles/com.apple.maps-large.png is opened by icon com.apple.maps alone, an "
              "app that the simulated device does not have; the nearest name that is looked for is "
              "IconBundles/com.apple.Maps-large.png.");
    picture("A/IconBundles/org.mine.notes-large.png");
    EXPECT_EQ(answer({"A", "--", "file", "IconBundles/org.mine.notes-large.png"}),
              "A/IconBundles/org.mine.notes-large.png is opened by icon org.mine.notes alone, an "
              "app that the simulated device does not have.");
    picture("A/Bundles/org.mine.notes/Pencil.png");
    EXPECT_EQ(answer({"A", "--", "file", "Bundles/org.mine.notes/Pencil.png"}),
              "A/Bundles/org.mine.notes/Pencil.png is opened by image Pencil of org.mine.notes "
              "alone, which the simulated device does not ask for.");
    const json opened = object({"A", "--", "file", "Bundles/org.mine.notes/Pencil.png"});
    for (const json& opening : opened.at("openedBy")) {
        EXPECT_EQ(opening.at("isOwn"), false);
        EXPECT_EQ(opening.at("argument"), "Pencil") << "the shortest of its names";
    }
}

TEST_F(ExplainFileTest, AFileThatASwitchOrAnotherFileKeepsClosedIsToldSo) {
    picture(kDock);
    EXPECT_EQ(answer({"A", "--", "file", kDock}, 1),
              std::string(kDock) +
                  " is opened by no request: removeDock is off; with it on, dock opens it.");
    EXPECT_EQ(object({"A", "--", "file", kDock}).at("reason").at("setting"), "removeDock");
    picture(std::string("A/") + kMaps);
    picture(std::string("B/") + kMaps);
    EXPECT_EQ(answer({"A", "B", "--", "file", std::string("B/") + kMaps}, 1),
              "B/IconBundles/com.apple.Maps-large.png is opened by no request: "
              "A/IconBundles/com.apple.Maps-large.png is opened in its place by icon "
              "com.apple.Maps.");
    EXPECT_EQ(object({"A", "B", "--", "file", std::string("B/") + kMaps}).at("hidden"),
              (json{{"request", "icon"},
                    {"argument", "com.apple.Maps"},
                    {"bundle", ""},
                    {"theme", "A"},
                    {"file", kMaps}}));
}

TEST_F(ExplainFileTest, AFileThatCountsInTheFirstThemeAloneIsToldSo) {
    picture(std::string("A/") + kMaps);
    picture("B/Velmoranth/Folder.png");
    const std::vector<std::string> words = {
        "A", "B", "--ios", "13", "--device", "phone", "--", "file", "Velmoranth/Folder.png"};
    const CommandResult result = explain(words);
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output,
              "B/Velmoranth/Folder.png is opened by no request: folder opens it once B is the "
              "first theme.\n");
    EXPECT_EQ(object(words).at("onceFirst").at("request"), "folder");
    EXPECT_EQ(lastLine(explain({"B", "A", "--", "file", "Velmoranth/Folder.png"}).output),
              "B/Velmoranth/Folder.png is opened by folder.");
}

TEST_F(ExplainFileTest, AFileThatGivesNothingIsToldWithItsReason) {
    folder.file("work/A/IconBundles/com.apple.Maps-large.png", "text");
    const CommandResult result =
        explain({"A", "--", "file", "IconBundles/com.apple.Maps-large.png"});
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(lastLine(result.output).find(" is opened and gives nothing: "), std::string::npos)
        << result.output;
}

TEST_F(ExplainFileTest, FilesThatLieWhereNothingLooksAreListed) {
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

}  // namespace
}  // namespace velmoranth::cli::explain_file_test
