// The parts of the home screen that velmoranth preview tells of, with their settings on and off.
#include "tests/cli/preview_fixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli::preview_parts_test {
namespace {

constexpr const char* kChrome = "Bundles/com.apple.springboard/";

struct Part {
    std::string name;  // in the line
    std::string key;
    std::string shows;  // the value that shows it
    std::string hides;
    std::vector<std::string> files;
};

void PrintTo(const Part& part, std::ostream* out) {
    *out << part.name;
}

// A whole new theme.
class PreviewParts : public PreviewTest {
  protected:
    PreviewParts() { EXPECT_EQ(runCommand({"new", "A"}, setting()).code, 0); }

    [[nodiscard]] std::string report(const std::vector<std::string>& more,
                                     const std::string& output = "preview.png") const {
        std::vector<std::string> words{"preview", "A.theme", "--device", "phone-667", "-o", output};
        words.insert(words.end(), more.begin(), more.end());
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 0) << result.errors;
        EXPECT_EQ(folder.names("tmp"), "");
        return result.errors;
    }
};

class PreviewPart : public PreviewParts, public testing::WithParamInterface<Part> {};

INSTANTIATE_TEST_SUITE_P(
    All, PreviewPart,
    testing::Values(
        Part{"mask",
             "enableIconMask",
             "yes",
             "no",
             {"Bundles/com.apple.mobileicons.framework/AppIconMask.png"}},
        Part{"overlay", "enableOverlay", "yes", "no", {"Velmoranth/iPhoneOverlay.png"}},
        Part{"shadow", "enableShadow", "yes", "no", {"Velmoranth/iPhoneShadow.png"}},
        Part{"dock", "removeDock", "yes", "no", {"Velmoranth/SBDockBGiphone.png"}},
        Part{"badges", "removeIconBadges", "no", "yes", {std::string(kChrome) + "SBBadgeBG.png"}},
        Part{"dots",
             "removePageDots",
             "no",
             "yes",
             {std::string(kChrome) + "Spotlight_Pages.png",
              std::string(kChrome) + "Spotlight_Pages@2x.png",
              std::string(kChrome) + "Spotlight_Pages@3x.png",
              std::string(kChrome) + "SBPageDot.png", std::string(kChrome) + "SBPageDot@2x.png",
              std::string(kChrome) + "SBPageDot@3x.png",
              std::string(kChrome) + "SBPageDotCurrent.png",
              std::string(kChrome) + "SBPageDotCurrent@2x.png",
              std::string(kChrome) + "SBPageDotCurrent@3x.png"}}),
    [](const testing::TestParamInfo<Part>& part) { return part.param.name; });

// What is told is held against the pictures: of a part that is off the theme may as well have no
// file.
TEST_P(PreviewPart, IsToldAsTheScreenShowsIt) {
    const Part& part = GetParam();
    const auto parts = [&](const std::string& text) {
        const std::string begin = " of the theme; ";
        const std::size_t at = text.find(begin);
        const std::size_t end = text.find("; nothing for ");
        EXPECT_NE(at, std::string::npos) << text;
        EXPECT_NE(end, std::string::npos) << text;
        return at == std::string::npos ? text : text.substr(at + begin.size(), end - at);
    };
    const std::vector<std::string> shows{"--set", part.key + "=" + part.shows};
    const std::vector<std::string> hides{"--set", part.key + "=" + part.hides};
    const std::string shown = parts(report(shows, "on.png"));
    const std::size_t off = shown.find("; off: ");
    EXPECT_LT(shown.find(part.name), off) << shown;
    EXPECT_EQ(shown.find(part.key), std::string::npos) << shown;

    const std::string hidden = parts(report(hides, "off.png"));
    EXPECT_GT(hidden.find(part.name), hidden.find("; off: ")) << hidden;
    EXPECT_NE(hidden.find(part.name + " (" + part.key + ")"), std::string::npos) << hidden;

    for (const std::string& file : part.files) {
        ASSERT_TRUE(std::filesystem::remove(folder / ("work/A.theme/" + file))) << file;
    }
    const std::string bare = parts(report(hides, "bare-off.png"));
    EXPECT_EQ(bare.find(part.key), std::string::npos) << bare;
    EXPECT_TRUE(folder.contents("work/off.png") == folder.contents("work/bare-off.png"));
    const std::string without = parts(report(shows, "bare-on.png"));
    EXPECT_TRUE(folder.contents("work/on.png") != folder.contents("work/bare-on.png"));
    EXPECT_EQ(without.find(part.name + ","), std::string::npos) << without;
}

TEST_F(PreviewParts, OfANewThemeThoseThatAreOffAreToldWithTheirSettings) {
    EXPECT_EQ(report({}),
              "velmoranth: 3 of 46 apps have an icon of the theme; mask, overlay, folder, open "
              "folder, badges, dots; off: shadow (enableShadow), dock (removeDock); nothing for 43 "
              "apps (velmoranth explain A.theme --device phone-667 -- icon '*')\n");
}

TEST_F(PreviewParts, WithThemingOffNoneIsTold) {
    EXPECT_EQ(report({"--set", "enable=no", "--set", "enableShadow=yes"}),
              "velmoranth: 0 of 46 apps have an icon of the theme; theming is off (enable); "
              "nothing for 46 apps (velmoranth explain A.theme --device phone-667 --set enable=no "
              "--set enableShadow=yes -- icon '*')\n");
}

}  // namespace
}  // namespace velmoranth::cli::preview_parts_test
