#include "tests/cli/preview_fixture.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGTERM and SIGHUP

#include <cctype>
#include <filesystem>
#include <string>

namespace velmoranth::cli::preview_test {
namespace {

namespace fs = std::filesystem;

TEST_F(PreviewTest, DrawsTheThemeAndSaysWhatItWrote) {
    theme("A.theme", kMagenta);
    const CommandResult result = preview({"../A.theme"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "preview.png: 1125 × 2436 pixels, iOS 13.3, phone\n");
    EXPECT_EQ(picture().width, 1125U);
    EXPECT_EQ(picture().height, 2436U);
    EXPECT_GT(picture().count(kMagenta), 10000);
}

TEST_F(PreviewTest, LeavesNothingButThePicture) {
    theme("A.theme", kMagenta);
    ASSERT_EQ(preview({"../A.theme"}).code, 0);
    EXPECT_EQ(folder.names("tmp"), "");
    EXPECT_EQ(folder.names("work"), "preview.png");
    EXPECT_EQ(folder.names("A.theme"), "IconBundles");
    EXPECT_EQ(folder.names("A.theme/IconBundles"), "com.apple.Preferences-large.png");
    EXPECT_EQ(folder.names("."), "A.theme tmp work");
}

TEST_F(PreviewTest, FirstThemeWins) {
    theme("A.theme", kMagenta);
    theme("B.theme", kLime);
    ASSERT_EQ(preview({"../A.theme", "../B.theme/"}).code, 0);
    EXPECT_GT(picture().count(kMagenta), 0);
    EXPECT_EQ(picture().count(kLime), 0);
    ASSERT_EQ(preview({"../B.theme", "../A.theme"}).code, 0);
    EXPECT_EQ(picture().count(kMagenta), 0);
    EXPECT_GT(picture().count(kLime), 0);
}

TEST_F(PreviewTest, EverySystemAndDeviceShowsTheTheme) {
    theme("A.theme", kMagenta);

    struct Shape {
        const char* device;
        std::size_t width;
        std::size_t height;
    };

    for (const Shape& shape :
         {Shape{"phone", 1125, 2436}, {"phone-667", 750, 1334}, {"pad", 1536, 2048}}) {
        for (const char* const system : {"12", "13"}) {
            const CommandResult result =
                preview({"../A.theme", "--device", shape.device, "--ios", system});
            EXPECT_EQ(result.code, 0) << result.errors;
            EXPECT_NE(result.output.find(std::string(", iOS ") + system + "."), std::string::npos);
            EXPECT_TRUE(result.output.ends_with(std::string(", ") + shape.device + "\n"));
            EXPECT_EQ(picture().width, shape.width);
            EXPECT_EQ(picture().height, shape.height);
            EXPECT_GT(picture().count(kMagenta), 1000) << shape.device << " " << system;
        }
    }
}

TEST_F(PreviewTest, BeforeShowsNothingOfTheTheme) {
    theme("A.theme", kMagenta);
    ASSERT_EQ(preview({"../A.theme", "--before"}).code, 0);
    EXPECT_EQ(picture().width, 1125U);
    EXPECT_EQ(picture().count(kMagenta), 0);
}

TEST_F(PreviewTest, BeforeNeedsNoTheme) {
    EXPECT_EQ(preview({"--before"}).code, 0);
    EXPECT_EQ(picture().width, 1125U);
}

TEST_F(PreviewTest, CompareHasStockOnTheLeftAndTheThemeOnTheRight) {
    theme("A.theme", kMagenta);
    const CommandResult result = preview({"../A.theme", "--compare"});
    ASSERT_EQ(result.code, 0) << result.errors;
    const PngPicture both = picture();
    // 12 points between and 28 above, at 3 pixels a point.
    EXPECT_EQ(both.width, 2 * 1125U + 36U);
    EXPECT_EQ(both.height, 2436U + 84U);
    EXPECT_EQ(both.count(kMagenta, 0, 1125), 0);
    EXPECT_GT(both.count(kMagenta, 1125 + 36), 10000);
    EXPECT_NE(result.output.find("2286 × 2520"), std::string::npos);
}

TEST_F(PreviewTest, SetSwitchesTheming) {
    theme("A.theme", kMagenta);
    ASSERT_EQ(preview({"../A.theme", "--set", "enable=off"}).code, 0);
    EXPECT_EQ(picture().count(kMagenta), 0);
    ASSERT_EQ(preview({"../A.theme", "--set", "enable=off", "--set", "enable=yes"}).code, 0);
    EXPECT_GT(picture().count(kMagenta), 0) << "the last one counts";
}

TEST_F(PreviewTest, StandardOutputIsThePictureAlone) {
    theme("A.theme", kMagenta);
    const CommandResult result = preview({"../A.theme", "-o", "-"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(result.output.starts_with("\x89PNG\r\n\x1a\n"));
    EXPECT_GT(PngPicture(result.output).count(kMagenta), 10000);
    EXPECT_EQ(folder.names("work"), "");
}

TEST_F(PreviewTest, ThemesMayHaveAnyNameThatAFolderHas) {
    const std::string longName(250, 'n');
    for (const std::string& name :
         {std::string("Größe 📁 (weiß) & <mehr>"), std::string("[a,b]"), longName}) {
        theme(name, kMagenta);
        const CommandResult result = preview({"../" + name});
        EXPECT_EQ(result.code, 0) << result.errors;
        EXPECT_GT(picture().count(kMagenta), 0) << name;
    }
    theme("-x", kMagenta);
    EXPECT_EQ(runCommand({"preview", "--", "-x"}, {.folder = folder.path()}).code, 0);
}

TEST_F(PreviewTest, ThemeInTheWorkingFolderHasThatFoldersName) {
    theme("work", kMagenta);
    const CommandResult result = preview({".", "-o", "../out.png"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_GT(picture("out.png").count(kMagenta), 0);
}

TEST_F(PreviewTest, LinksOfAThemeDoNotLeaveTheDevice) {
    theme("A.theme", kMagenta);
    theme("Other", kLime);
    const std::string icon = "/IconBundles/com.apple.MobileSMS-large.png";
    fs::create_symlink(folder / "Other/IconBundles/com.apple.Preferences-large.png",
                       folder / ("A.theme" + icon));
    const CommandResult result = preview({"../A.theme"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(picture().count(kLime), 0);
    fs::remove(folder / ("A.theme" + icon));
    fs::create_symlink("com.apple.Preferences-large.png", folder / ("A.theme" + icon));
    const int one = picture().count(kMagenta);
    ASSERT_EQ(preview({"../A.theme"}).code, 0);
    EXPECT_GT(picture().count(kMagenta), one) << "a link within the theme";
}

TEST_F(PreviewTest, PageBeyondTheLastIsWrongUsage) {
    theme("A.theme", kMagenta);
    const CommandResult result = preview({"../A.theme", "--page", "99"});
    EXPECT_EQ(result.code, 2);
    EXPECT_FALSE(std::filesystem::exists(folder / "work/preview.png"));
    EXPECT_TRUE(result.errors.starts_with("velmoranth: error: there is no page 99; the last is "))
        << result.errors;
}

// An object's description has its address, which differs from run to run.
std::string withoutAddresses(const std::string& log) {
    std::string result;
    bool inAddress = false;
    for (const char c : log) {
        inAddress = inAddress && std::isxdigit(static_cast<unsigned char>(c)) != 0;
        if (!inAddress) {
            result += c;
        }
        inAddress = inAddress || result.ends_with("0x");
    }
    return result;
}

TEST_F(PreviewTest, LogHasTheProcesssLinesInOrderAndNothingElse) {
    theme("A.theme", kMagenta);
    const auto draw = [&](const char* log) {
        const CommandResult result =
            preview({"../A.theme", "--set", "enableLogging=yes", "--log", log});
        EXPECT_EQ(result.code, 0);
        return withoutAddresses(result.errors);
    };
    const std::string lines = draw("-");
    EXPECT_NE(lines.find("\nVelmoranth.M searchforIconInIconBundlesWithLeafIdentifier: "
                         "com.apple.Preferences\n"
                         "Velmoranth GetICON  "
                         "/Library/Themes/A.theme/IconBundles/com.apple.Preferences-large.png\n"
                         "Velmoranth BUNDLE FOUND in theme A.theme/com.apple.Preferences-large \n"),
              std::string::npos)
        << lines;
    EXPECT_EQ(lines.find("velmoranth: "), std::string::npos);

    EXPECT_EQ(draw("log.txt"), "");
    EXPECT_EQ(withoutAddresses(folder.contents("work/log.txt")), lines);
    EXPECT_EQ(draw("log.txt"), "");
    EXPECT_EQ(withoutAddresses(folder.contents("work/log.txt")), lines + lines) << "appended";
}

TEST_F(PreviewTest, LookUpsLogNothingUnlessThePreferencesSaySo) {
    theme("A.theme", kMagenta);
    const CommandResult result = preview({"../A.theme", "--log", "-"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors.find("com.apple.Preferences"), std::string::npos) << result.errors;
}

TEST_F(PreviewTest, SignalEndsItWithNothingLeftBehind) {
    theme("A.theme", kMagenta);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        RunningCommand running({"preview", "../A.theme", "--follow"}, setting());
        ASSERT_TRUE(running.waitForText("preview.png: "));
        EXPECT_NE(folder.names("tmp"), "");
        running.signal(number);
        EXPECT_EQ(running.finish().signal, number);
        EXPECT_EQ(folder.names("tmp"), "");
        EXPECT_EQ(folder.names("work"), "preview.png");
    }
}

}  // namespace
}  // namespace velmoranth::cli::preview_test
