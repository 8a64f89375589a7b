// The screens of a preview beyond the plain home screen, and the pad held sideways.
#include "tests/cli/preview_fixture.h"

#include <string>
#include <vector>

namespace velmoranth::cli::preview_screen_test {
namespace {

class PreviewScreen : public PreviewTest {
  public:
    PreviewScreen() {
        theme("A.theme", kMagenta);
        // An app that lies in a folder.
        folder.file("A.theme/IconBundles/com.apple.calculator-large.png",
                    folder.contents("A.theme/IconBundles/com.apple.Preferences-large.png"));
    }

    // Draws with A.theme and these words besides; nothing is said on standard error.
    PngPicture draw(std::vector<std::string> words) {
        words.insert(words.begin(), "../A.theme");
        const CommandResult result = preview(std::move(words));
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.errors, "");
        output = result.output;
        return picture();
    }

    std::string output;
};

TEST_F(PreviewScreen, FolderShowsItsAppsThemed) {
    EXPECT_GT(draw({"--screen", "folder"}).count(kMagenta), 20000);
    EXPECT_EQ(draw({"--screen", "folder", "--folder", "social"}).count(kMagenta), 0);
    EXPECT_GT(draw({"--screen", "folder", "--folder", "folder.utilities"}).count(kMagenta), 20000);
    EXPECT_EQ(draw({"--screen", "folder", "--folder-page", "2"}).count(kMagenta), 0);
    EXPECT_GT(draw({"--screen", "home"}).count(kMagenta), 20000) << "the settings' icon";
}

TEST_F(PreviewScreen, FolderPageBeyondTheLastIsWrongUsage) {
    const CommandResult result =
        preview({"../A.theme", "--screen", "folder", "--folder-page", "9"});
    EXPECT_EQ(result.code, 2);
    EXPECT_FALSE(std::filesystem::exists(folder / "work/preview.png"));
    EXPECT_EQ(result.errors, "velmoranth: error: the folder has no page 9; its last is 2\n");
}

TEST_F(PreviewScreen, PageWithoutAFolderIsOneLine) {
    expectBadInput({"../A.theme", "--screen", "folder", "--page", "2"},
                   "there is no folder on page 2");
}

TEST_F(PreviewScreen, PressedIconIsDarkerAsFarAsTheThemesMaskShows) {
    const std::vector<std::string> words{"--screen", "pressed", "--icon", "Settings"};
    const int plain = draw({}).count(kMagenta);
    EXPECT_EQ(draw(words).count(kMagenta), plain) << "a theme without a mask has no overlay";

    theme("black", {0, 0, 0});  // shows everything
    folder.file("A.theme/Bundles/com.apple.mobileicons.framework/AppIconMask.png",
                folder.contents("black/IconBundles/com.apple.Preferences-large.png"));
    EXPECT_EQ(draw({}).count(kMagenta), plain);
    EXPECT_LT(draw(words).count(kMagenta), plain / 4) << "what is left is in a folder's icon";
    EXPECT_EQ(draw({"--screen", "pressed", "--icon", "com.apple.Music"}).count(kMagenta), plain);
}

TEST_F(PreviewScreen, PadIsHeldSideways) {
    const PngPicture sideways = draw({"--device", "pad", "--orientation", "landscape"});
    EXPECT_EQ(sideways.width, 2048U);
    EXPECT_EQ(sideways.height, 1536U);
    EXPECT_EQ(output, "preview.png: 2048 × 1536 pixels, iOS 13.3, pad, landscape\n");
    EXPECT_EQ(draw({"--device", "pad", "--orientation", "portrait"}).width, 1536U);
}

TEST_F(PreviewScreen, EveryOtherPlaceShowsTheThemesImages) {
    const std::string pixel =
        folder.contents("A.theme/IconBundles/com.apple.Preferences-large.png");
    const auto have = [&](const std::string& file) { folder.file("A.theme/" + file, pixel); };
    for (const char* screen : {"today", "switcher", "settings", "weather"}) {
        EXPECT_EQ(draw({"--screen", screen, "--set", "enableIconMask=no"}).count(kMagenta), 0)
            << screen;
    }
    have("IconBundles/com.apple.Music-large.png");
    have("IconBundles/com.apple.MobileSMS-large.png");
    have("Bundles/com.apple.Preferences/WiFi@3x.png");
    have("Bundles/com.apple.weather-framework/rain@3x.png");
    have("UIImages/UISwitchKnob.png");
    for (const char* screen : {"today", "switcher", "notification", "settings", "panel-success",
                               "weather", "controls", "gallery"}) {
        EXPECT_GT(draw({"--screen", screen}).count(kMagenta), 100) << screen;
        EXPECT_EQ(draw({"--screen", screen, "--before"}).count(kMagenta), 0) << screen;
    }
}

TEST_F(PreviewScreen, StepsAreTheFolderClosedOpenAndClosedAgain) {
    const CommandResult result = preview({"--before", "--device", "phone-667", "--screen", "folder",
                                          "--steps", "-o", "steps.of.a.png"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "steps.of.a-01.png to steps.of.a-15.png: 750 × 1334 pixels, iOS 13.3, phone-667\n");
    std::string names;
    for (int step = 1; step <= 15; ++step) {
        names += (step == 1 ? "" : " ") + std::string("steps.of.a-") + (step < 10 ? "0" : "") +
                 std::to_string(step) + ".png";
    }
    EXPECT_EQ(folder.names("work"), names);
    const auto step = [&](const char* number) {
        return folder.contents(std::string("work/steps.of.a-") + number + ".png");
    };
    ASSERT_EQ(preview({"--before", "--device", "phone-667"}).code, 0);
    const std::string closed = folder.contents("work/preview.png");
    ASSERT_EQ(preview({"--before", "--device", "phone-667", "--screen", "folder"}).code, 0);
    EXPECT_TRUE(step("01") == closed);
    EXPECT_TRUE(step("08") == folder.contents("work/preview.png"));
    EXPECT_TRUE(step("15") == closed);
    for (const char* const between : {"02", "05", "07", "09", "12", "14"}) {
        EXPECT_FALSE(step(between) == closed) << between;
        EXPECT_FALSE(step(between) == step("08")) << between;
    }
}

TEST_F(PreviewScreen, ThePanelShowsWhatTheEngineSays) {
    const auto draw = [&](const std::vector<std::string>& arguments) {
        std::vector<std::string> all{"../A.theme", "--device", "phone-667", "-o", "p.png"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(preview(all).code, 0);
        return folder.contents("work/p.png");
    };
    const std::string plain = draw({"--screen", "panel-error", "--before"});
    EXPECT_TRUE(draw({"--screen", "panel-success", "--before"}) == plain);
    EXPECT_FALSE(draw({"--screen", "panel-error"}) == plain);
    EXPECT_FALSE(draw({"--screen", "panel-success"}) == plain);
}

TEST_F(PreviewScreen, StepsOfSuccessComeAndGo) {
    const auto run = [&](const std::vector<std::string>& more) {
        std::vector<std::string> all{"../A.theme", "--device", "phone-667", "--screen",
                                     "panel-success"};
        all.insert(all.end(), more.begin(), more.end());
        return preview(all);
    };
    const CommandResult result = run({"--steps", "-o", "s.png"});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "s-01.png to s-04.png: 750 × 1334 pixels, iOS 13.3, phone-667\n");
    EXPECT_EQ(folder.names("work"), "s-01.png s-02.png s-03.png s-04.png");
    const auto step = [&](const char* number) {
        return folder.contents(std::string("work/s-0") + number + ".png");
    };
    EXPECT_FALSE(step("1") == step("2"));
    EXPECT_FALSE(step("2") == step("3"));
    EXPECT_FALSE(step("3") == step("4"));
    EXPECT_EQ(run({"-o", "end.png"}).code, 0);
    EXPECT_TRUE(step("3") == folder.contents("work/end.png"));
}

TEST_F(PreviewScreen, StepsShowTheThemeOfEachStep) {
    const CommandResult result = preview(
        {"../A.theme", "--screen", "folder", "--folder", "Utilities", "--steps", "-o", "s"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_GT(picture("work/s-01").count(kMagenta), 20000);
    EXPECT_GT(picture("work/s-08").count(kMagenta), 20000);
    EXPECT_EQ(folder.names("tmp"), "");
}

TEST_F(PreviewScreen, StepsThatCannotBeWrittenAreOneLineBeforeTheWork) {
    folder.folder("work/s-09.png");
    expectBadInput({"../A.theme", "--screen", "folder", "--steps", "-o", "s.png"},
                   "s-09.png: the picture cannot be written: is a directory");
    EXPECT_EQ(folder.names("work"), "s-09.png");
}

TEST_F(PreviewScreen, HelpHasNothingThatIsNotShown) {
    const CommandResult result = preview({"--help"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output.find("not shown"), std::string::npos);
    EXPECT_NE(result.output.find("a tap anywhere on an open folder closes it"), std::string::npos);
    EXPECT_NE(result.output.find("preview-15.png"), std::string::npos);
}

}  // namespace
}  // namespace velmoranth::cli::preview_screen_test
