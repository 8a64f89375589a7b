// Several screens, in files or in one picture, and JSON of what they have asked for.
#include "tests/cli/preview_fixture.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace velmoranth::cli::preview_several_test {
namespace {

using Json = nlohmann::json;

constexpr const char* kPicturesOfAPhone =
    "controls.png folder.png gallery-01.png gallery-02.png gallery-03.png gallery-04.png "
    "gallery-05.png gallery-06.png home-01.png home-02.png icons-01.png notification.png "
    "panel-error.png panel-success.png pressed.png settings.png switcher.png today.png weather.png";

class PreviewSeveral : public PreviewTest {
  protected:
    [[nodiscard]] Json json(std::vector<std::string> words) const {
        words.emplace_back("--json");
        const CommandResult result = preview(words);
        EXPECT_EQ(result.code, 0) << result.errors;
        return Json::parse(result.output, nullptr, false);
    }
};

TEST_F(PreviewSeveral, AllScreensAreFilesOfTheirOwn) {
    theme("A.theme", kMagenta);
    const CommandResult result = preview({"../A.theme", "--all-screens", "-o", "all"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(folder.names("work/all"), kPicturesOfAPhone);
    // In the order of the screens, whichever is drawn first.
    std::size_t last = 0;
    for (const char* const name : {"home-01", "home-02", "folder", "pressed", "today", "switcher",
                                   "notification", "settings", "panel-error", "panel-success",
                                   "weather", "controls", "gallery-01", "gallery-06", "icons-01"}) {
        const std::size_t place = result.output.find("all/" + std::string(name) +
                                                     ".png: 1125 × 2436 pixels, iOS 13.3, phone\n");
        ASSERT_NE(place, std::string::npos) << name << "\n" << result.output;
        EXPECT_GE(place, last) << name;
        last = place;
    }
}

TEST_F(PreviewSeveral, EachIsThePictureOfItsScreen) {
    theme("A.theme", kMagenta);
    ASSERT_EQ(preview({"../A.theme", "--all-screens"}).code, 0);
    ASSERT_EQ(folder.names("work"), "preview");
    for (const auto& [name, words] : std::vector<std::pair<std::string, std::vector<std::string>>>{
             {"home-01", {}},
             {"home-02", {"--page", "2"}},
             {"folder", {"--screen", "folder"}},
             {"gallery-03", {"--screen", "gallery", "--page", "3"}},
             {"icons-01", {"--screen", "icons"}}}) {
        std::vector<std::string> all{"../A.theme", "-o", "one.png"};
        all.insert(all.end(), words.begin(), words.end());
        ASSERT_EQ(preview(all).code, 0);
        EXPECT_TRUE(folder.contents("work/preview/" + name + ".png") ==
                    folder.contents("work/one.png"))
            << name;
    }
}

TEST_F(PreviewSeveral, AllScreensBesideTheStockOnes) {
    theme("A.theme", kMagenta);
    ASSERT_EQ(
        preview({"../A.theme", "--all-screens", "--compare", "--device", "phone-667", "-o", "all"})
            .code,
        0);
    ASSERT_EQ(preview({"../A.theme", "--compare", "--page", "2", "--device", "phone-667"}).code, 0);
    EXPECT_TRUE(folder.contents("work/all/home-02.png") == folder.contents("work/preview.png"));
    EXPECT_EQ(picture("work/all/settings.png").width, 750U + 24U + 750U);
}

TEST_F(PreviewSeveral, ThemesWithoutIconsHaveNoListOfThem) {
    folder.file("A.theme/Info.plist", "");
    const CommandResult result =
        preview({"../A.theme", "--all-screens", "--device", "phone-667", "-o", "all"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors,
              "velmoranth: warning: the screen icons is left out: no theme has an app's icon; one "
              "is a file IconBundles/IDENTIFIER-large.png\n");
    EXPECT_EQ(result.output.find("icons"), std::string::npos);
    EXPECT_NE(result.output.find("all/gallery-01.png"), std::string::npos);
}

TEST_F(PreviewSeveral, ListOfAppsIsReadOnce) {
    theme("A.theme", kMagenta);
    folder.file("work/apps", "com.apple.Preferences My Settings\n");
    const CommandResult all =
        preview({"../A.theme", "--all-screens", "--apps", "apps", "-o", "all"});
    ASSERT_EQ(all.code, 0);
    EXPECT_EQ(all.errors,
              "velmoranth: warning: the screen folder is left out: none of these apps lies in a "
              "folder\n");
    EXPECT_EQ(folder.names("work/all").find("home-02"), std::string::npos);
    EXPECT_EQ(folder.names("work/all").find("folder"), std::string::npos);
    const Json one = json(
        {"../A.theme", "--sheet", "--screen", "icons,home", "--device", "phone", "--apps", "apps"});
    EXPECT_EQ(one["pictures"][0]["screens"][1]["pages"], 1) << "its own apps";
}

TEST_F(PreviewSeveral, FolderThatCannotBeMadeIsNamed) {
    theme("A.theme", kMagenta);
    folder.file("work/f", "mine");
    expectBadInput({"../A.theme", "--all-screens", "-o", "f"},
                   "f: the pictures need a folder, and none can be made here: not a directory");
    EXPECT_EQ(folder.contents("work/f"), "mine");
    expectBadInput({"../A.theme", "--all-screens", "-o", "f/g"},
                   "f/g: the pictures need a folder, and none can be made here: not a directory");
}

TEST_F(PreviewSeveral, SheetHasARowADevice) {
    theme("A.theme", kMagenta);
    const CommandResult result = preview({"../A.theme", "--sheet"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    // Every screen is 320 pixels wide below its caption of 28, with gaps of 12 around it; the panel
    // is not among them.
    EXPECT_EQ(picture().height, 12U + (28 + 28 + 693 + 12) + (28 + 569 + 12) + (28 + 427 + 12));
    EXPECT_EQ(picture().width, 12U + 9 * (320 + 12));
    EXPECT_EQ(result.output, "preview.png: 3000 × 1849 pixels, 27 screens\n");
}

TEST_F(PreviewSeveral, SheetShowsTheScreensAndDevicesThatAreNamed) {
    theme("A.theme", kMagenta);
    const Json sheet = json({"../A.theme", "--sheet", "--screen", "settings,home", "--device",
                             "pad,phone-667", "--ios", "12,13", "-o", "sheet.png"});
    ASSERT_EQ(sheet["pictures"].size(), 1U);
    EXPECT_EQ(sheet["pictures"][0]["file"], "sheet.png");
    std::string rows;
    for (const Json& screen : sheet["pictures"][0]["screens"]) {
        rows += screen["screen"].get<std::string>() + " " + screen["device"].get<std::string>() +
                " " + screen["ios"].get<std::string>() + " " + screen["x"].dump() + "," +
                screen["y"].dump() + " " + screen["width"].dump() + "x" + screen["height"].dump() +
                "\n";
    }
    EXPECT_EQ(rows,
              "settings pad 12.4 12,68 320x427\n"
              "home pad 12.4 344,68 320x427\n"
              "settings phone-667 12.4 12,535 320x569\n"
              "home phone-667 12.4 344,535 320x569\n"
              "settings pad 13.3 12,1144 320x427\n"
              "home pad 13.3 344,1144 320x427\n"
              "settings phone-667 13.3 12,1611 320x569\n"
              "home phone-667 13.3 344,1611 320x569\n");
    // The icon is on the home screen alone.
    EXPECT_EQ(picture("work/sheet.png").count(kMagenta, 0, 332), 0);
    EXPECT_GT(picture("work/sheet.png").count(kMagenta, 344), 500);
}

TEST_F(PreviewSeveral, ThePanelIsOnASheetWhenItIsNamed) {
    theme("A.theme", kMagenta);
    const Json sheet =
        json({"../A.theme", "--sheet", "--screen", "panel-error,home", "--device", "phone"});
    EXPECT_EQ(sheet["pictures"][0]["screens"][0]["screen"], "panel-error");
}

TEST_F(PreviewSeveral, OneScreenIsASheetToo) {
    theme("A.theme", kMagenta);
    const CommandResult result =
        preview({"../A.theme", "--sheet", "--screen", "home", "--device", "pad", "--before"});
    EXPECT_EQ(result.output, "preview.png: 344 × 507 pixels, iOS 13.3, pad\n");
    EXPECT_EQ(picture().count(kMagenta), 0);
}

TEST_F(PreviewSeveral, JsonSaysWhatAScreenHasAskedForAndGot) {
    theme("A.theme", kMagenta);
    const Json all = json({"../A.theme", "--device", "pad", "--orientation", "landscape"});
    EXPECT_EQ(all["version"], 1);
    EXPECT_EQ(all["themes"], Json({"A.theme"}));
    ASSERT_EQ(all["pictures"].size(), 1U);
    const Json& picture = all["pictures"][0];
    EXPECT_EQ(picture["file"], "preview.png");
    EXPECT_EQ(picture["width"], 2048);
    EXPECT_EQ(picture["height"], 1536);
    EXPECT_TRUE(picture["expected"].is_null());
    ASSERT_EQ(picture["screens"].size(), 1U);
    const Json& screen = picture["screens"][0];
    EXPECT_EQ(screen["screen"], "home");
    EXPECT_EQ(screen["page"], 1);
    EXPECT_EQ(screen["pages"], 2);
    EXPECT_EQ(screen["device"], "pad");
    EXPECT_EQ(screen["ios"], "13.3");
    EXPECT_EQ(screen["orientation"], "landscape");
    EXPECT_EQ(std::count(screen["methods"].begin(), screen["methods"].end(),
                         "-[SBIconImageView contentsImage]"),
              1);
    const Json found{{"state", "found"},
                     {"theme", "A.theme"},
                     {"file", "IconBundles/com.apple.Preferences-large.png"},
                     {"answer", "180×180 @1x"}};
    const Json missing{{"state", "missing"},
                       {"theme", "A.theme"},
                       {"file", "IconBundles/com.apple.mobilemail-large.png"}};
    for (const Json& file : {found, missing}) {
        EXPECT_EQ(std::count(screen["files"].begin(), screen["files"].end(), file), 1)
            << screen["files"].dump(1);
    }
}

TEST_F(PreviewSeveral, JsonOfEveryPageHasItsOwnRequests) {
    theme("A.theme", kMagenta);
    const Json all = json({"../A.theme", "--all-screens", "-o", "all"});
    EXPECT_EQ(all["pictures"].size(), 19U);
    const auto asks = [&](std::size_t picture, const std::string& name) {
        const Json& screen = all["pictures"][picture]["screens"][0];
        return std::ranges::any_of(screen["files"], [&](const Json& file) {
            return file["file"] == "IconBundles/" + name + "-large.png";
        });
    };
    EXPECT_EQ(all["pictures"][1]["screens"][0]["page"], 2);
    EXPECT_TRUE(asks(0, "com.apple.mobilemail"));
    EXPECT_FALSE(asks(1, "com.apple.mobilemail"));
}

TEST_F(PreviewSeveral, NothingIsAskedOfThemesByTheStockScreen) {
    theme("A.theme", kMagenta);
    const Json stock = json({"../A.theme", "--before"});
    EXPECT_EQ(stock["pictures"][0]["screens"][0]["methods"], Json::array());
    EXPECT_EQ(stock["pictures"][0]["screens"][0]["files"], Json::array());
}

}  // namespace
}  // namespace velmoranth::cli::preview_several_test
