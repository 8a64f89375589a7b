// What a theme can replace, and that it can.
#include "tests/cli/preview_fixture.h"

#include <nlohmann/json.hpp>

#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace velmoranth::cli::names_test {
namespace {

using Json = nlohmann::json;

class Names : public PreviewTest {
  protected:
    [[nodiscard]] Json names(std::vector<std::string> words) const {
        words.insert(words.begin(), "names");
        words.emplace_back("--json");
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 0) << result.errors;
        EXPECT_EQ(folder.names("tmp"), "");
        return Json::parse(result.output, nullptr, false);
    }

    // "WORD ARGUMENT: FILE, SIZE"
    static std::string line(const Json& name) {
        return name["request"].get<std::string>() + " " + name["argument"].get<std::string>() +
               ": " + name["file"].get<std::string>() + ", " +
               (name["size"].is_null()
                    ? "-"
                    : name["size"]["width"].dump() + "x" + name["size"]["height"].dump());
    }

    static std::string lines(const Json& all) {
        std::string text;
        for (const Json& name : all["names"]) {
            text += line(name) + "\n";
        }
        return text;
    }

    // A picture without alpha, of any size: what it is replaced with is told by its file.
    void picture(const std::string& name) const {
        const std::vector<std::uint8_t> pixels(std::size_t{60} * 60 * 4, 255);
        const auto png = desktop::encodePng(pixels, 60, 60, std::size_t{60} * 4);
        folder.file(name, std::string(png.begin(), png.end()));
    }
};

TEST_F(Names, PartsOfTheHomeScreen) {
    EXPECT_EQ(lines(names({"chrome"})),
              "folder : Velmoranth/Folder.png, 180x180\n"
              "behind : Bundles/com.apple.springboard/ANEMFolderBackground.png, 1125x2436\n"
              "dock : Velmoranth/SBDockBGiphone.png, 1125x282\n"
              "badge : Bundles/com.apple.springboard/SBBadgeBG.png, 72x72\n"
              "dot current: Bundles/com.apple.springboard/SBPageDotCurrent@3x.png, 24x24\n"
              "dot other: Bundles/com.apple.springboard/SBPageDot@3x.png, 24x24\n"
              "dot search: Bundles/com.apple.springboard/Spotlight_Pages@3x.png, 24x24\n"
              "mask : Bundles/com.apple.mobileicons.framework/AppIconMask.png, 180x180\n"
              "overlay : Velmoranth/iPhoneOverlay.png, 180x180\n"
              "shadow : Velmoranth/iPhoneShadow.png, 240x240\n"
              "pressed : Bundles/com.apple.mobileicons.framework/AppIconMask.png, 180x180\n"
              "calendar : IconBundles/com.apple.mobilecal-large.png, 180x180\n"
              "clock : Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png, "
              "180x180\n"
              "knob : UIImages/UISwitchKnob@3x.png, 150x150\n");
}

TEST_F(Names, DevicesAndSystemsHaveTheirOwn) {
    const std::string pad = lines(names({"chrome", "--device", "pad", "--ios", "12"}));
    EXPECT_NE(pad.find("folder : Velmoranth/ipadFolder.png, 152x152\n"), std::string::npos) << pad;
    EXPECT_NE(pad.find("overlay : Velmoranth/iPadOverlay.png, 152x152\n"), std::string::npos);
    EXPECT_NE(pad.find("shadow : Velmoranth/iPadShadow~ipad.png, 192x192\n"), std::string::npos);
    EXPECT_NE(pad.find("/ANEMFolderBackground.png, 1536x2048\n"), std::string::npos);
    const std::string smaller = lines(names({"chrome", "--device", "phone-667"}));
    EXPECT_NE(smaller.find("shadow : Velmoranth/iPhoneShadow.png, 160x160\n"), std::string::npos)
        << smaller;
    EXPECT_NE(pad.find("dot other: Bundles/com.apple.springboard/SBPageDot@2x.png, 16x16\n"),
              std::string::npos);
    EXPECT_NE(smaller.find("knob : UIImages/UISwitchKnob@2x.png, 100x100\n"), std::string::npos);
    EXPECT_NE(pad.find("clock : IconBundles/com.apple.mobiletimer-large.png, 152x152\n"),
              std::string::npos);
    EXPECT_NE(lines(names({"settings", "--device", "phone-667"}))
                  .find("settings General: Bundles/com.apple.Preferences/General@3x.png, 87x87\n"),
              std::string::npos);
    EXPECT_EQ(lines(names({"images"})).find("ClockIcon"), std::string::npos) << "it is chrome";
    EXPECT_NE(lines(names({"images"})).find("symbol gear: "), std::string::npos);
    EXPECT_EQ(lines(names({"images", "--ios", "12"})).find("symbol"), std::string::npos);
}

TEST_F(Names, SettingThatThemesNeedIsSaid) {
    const Json all = names({"chrome"});
    for (const Json& name : all["names"]) {
        EXPECT_EQ(name["setting"], name["request"] == "dock" ? "removeDock" : "") << name;
    }
}

TEST_F(Names, SoundsAreNamedByTheirFiles) {
    const Json all = names({"sounds"});
    EXPECT_EQ(lines(all),
              "sound 1000: UISounds/SentMessage.caf, -\n"
              "sound 1002: UISounds/lock.caf, -\n"
              "sound 1003: UISounds/Anticipate.caf, -\n"
              "sound 1104: UISounds/key_press_click.caf, -\n"
              "sound 1108: UISounds/photoShutter.caf, -\n"
              "sound 1155: UISounds/key_press_modifier.caf, -\n"
              "sound 1156: UISounds/key_press_delete.caf, -\n"
              "sound event:1002: UISounds/lock.caf, -\n"
              "sound event:1003: UISounds/Anticipate.caf, -\n"
              "sound event:1004: UISounds/key_press_click.caf, -\n"
              "sound event:1008: UISounds/photoShutter.caf, -\n");
    EXPECT_EQ(all["names"][1]["title"], "lock");
}

TEST_F(Names, GroupsComeInTheirOwnOrderOnceEach) {
    const Json all = names({"weather", "apps", "weather"});
    EXPECT_EQ(all["version"], 1);
    EXPECT_EQ(all["device"], "phone");
    EXPECT_EQ(all["ios"], 13);
    std::vector<std::string> groups;
    for (const Json& name : all["names"]) {
        if (groups.empty() || groups.back() != name["group"]) {
            groups.push_back(name["group"]);
        }
    }
    EXPECT_EQ(groups, (std::vector<std::string>{"apps", "weather"}));
    const Json& first = all["names"][0];
    EXPECT_EQ(first["title"], "FaceTime");
    EXPECT_EQ(line(first),
              "icon com.apple.facetime: IconBundles/com.apple.facetime-large.png, 180x180");
}

TEST_F(Names, EveryGroupIsThereUnlessSomeAreAskedFor) {
    const Json all = names({});
    std::set<std::string> groups;
    for (const Json& name : all["names"]) {
        groups.insert(name["group"]);
    }
    EXPECT_EQ(groups,
              (std::set<std::string>{"apps", "chrome", "images", "settings", "sounds", "weather"}));
}

TEST_F(Names, TableHasWhatAPersonTypes) {
    const CommandResult result = runCommand({"names", "sounds", "chrome"}, setting());
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(
        result.output.starts_with("chrome\n"
                                  "    180 × 180  Velmoranth/Folder.png "))
        << result.output;
    EXPECT_NE(result.output.find("dock  with removeDock\n"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("\n\nsounds\n"), std::string::npos);
    EXPECT_NE(result.output.find("  sound 1002  (lock)\n"), std::string::npos);
}

// A theme that has each first file, and what explain says of each request.
TEST_F(Names, WhatIsListedReplacesWhatItSays) {
    const Json all = names({});
    std::vector<Json> tried;
    std::string requests;
    for (const Json& name : all["names"]) {
        // A few of each group, since every answer takes some time.
        const bool isOften = name["group"] == "chrome" ? false : tried.size() % 9 != 0;
        const bool isWhole =
            name["setting"] == "" && name["group"] != "sounds" && name["request"] != "pressed";
        tried.push_back(name);
        picture("work/A/" + name["file"].get<std::string>());
        if (isOften || !isWhole) {
            tried.back() = nullptr;
        } else {
            requests +=
                name["request"].get<std::string>() + " " + name["argument"].get<std::string>() +
                (name["bundle"] == "" ? "" : " --bundle " + name["bundle"].get<std::string>()) +
                "\n";
        }
    }
    std::erase_if(tried, [](const Json& name) { return name.is_null(); });
    ASSERT_GT(tried.size(), 15U);
    folder.file("work/requests", requests);
    const CommandResult result = runCommand(
        {"explain", "A", "--json", "--set", "enableShadow=yes", "--requests", "requests"},
        setting());
    std::istringstream answers(result.output);
    for (const Json& name : tried) {
        std::string text;
        ASSERT_TRUE(std::getline(answers, text)) << name << result.errors;
        const Json answer = Json::parse(text, nullptr, false);
        EXPECT_EQ(answer["request"], name["request"]);
        EXPECT_EQ(answer["argument"], name["argument"]);
        EXPECT_EQ(answer["shown"]["file"], name["file"]) << name << answer["summary"];
    }
}

}  // namespace
}  // namespace velmoranth::cli::names_test
