// Interface images, masks, and what is left out by its name.
#include "tests/desktop/image_io/test_images.h"
#include "tests/makers/conversion/theme_fixture.h"

namespace velmoranth::makers::image_rules_test {
namespace {

using Names = std::vector<std::string>;

class ImageRules : public ThemeTest {
  protected:
    // The gray samples of a mask; empty when it is none of 8-bit gray without alpha.
    std::vector<int> gray(const std::string& name) const {
        const std::string bytes = made(name);
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
        const auto image = desktop::decodeImage({data, bytes.size()});
        if (!image || image->layout.bitsPerPixel != 8 ||
            image->layout.colorSpace != platform::ColorSpace::deviceGray) {
            return {};
        }
        return {image->samples->begin(), image->samples->end()};
    }

    void expectMade(const std::string& source, const std::string& target) {
        SCOPED_TRACE(source);
        std::filesystem::remove_all(folder / "in");
        file(source, png(60, kGreen));
        converted();
        EXPECT_EQ(made(source), png(60, kGreen));
        EXPECT_EQ(made(target), png(60, kGreen));
        // What the theme has stays.
        file(target, png(20));
        converted();
        EXPECT_EQ(made(target), png(20));
    }
};

constexpr const char* kMask = "Bundles/com.apple.mobileicons.framework/AppIconMask";

TEST_F(ImageRules, aMaskOfBlackWithAlphaHidesWhatItsAlphaCuts) {
    for (const std::string scale :
         {"@2x", "@3x", "@2x~iphone", "@3x~iphone", "@2x~ipad", "@3x~ipad", "~ipad", ""}) {
        SCOPED_TRACE(scale);
        std::filesystem::remove_all(folder / "in");
        file(kMask + scale + ".png", png(4, 4, kBlack, kClear));
        const Plan plan = converted();
        const std::vector<int> expected{255, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        EXPECT_EQ(gray(kMask + scale + ".png"), expected);
        EXPECT_EQ(gray(std::string(kMask) + ".png"), expected);
        EXPECT_TRUE(plan.leftOut.empty());
    }
}

TEST_F(ImageRules, noMaskOfTheFamilyStaysAsItWasAndThePlainOneIsMadeOfTheLargest) {
    file(std::string(kMask) + ".png", png(4, 4, kBlack, kClear));
    file(std::string(kMask) + "@2x.png", png(4, 4, kBlack, kClear));
    file(std::string(kMask) + "@3x~ipad.png", png(8, 8, kBlack, kClear));
    converted();
    EXPECT_EQ(gray(std::string(kMask) + ".png").size(), 64U);
    EXPECT_EQ(gray(std::string(kMask) + "@2x.png").size(), 16U);
    EXPECT_EQ(gray(std::string(kMask) + "@3x~ipad.png").size(), 64U);
}

TEST_F(ImageRules, aMaskThatHidesByItsSamplesStaysAsItIs) {
    // Without alpha; and one whose clear part is white as well.
    file(std::string(kMask) + ".png", png(4, 4, kBlack, Color{255, 255, 255, 255}));
    EXPECT_TRUE(converted().changesNothing());
    file(std::string(kMask) + ".png", png(4, kBlack));
    EXPECT_TRUE(converted().changesNothing());
    file(std::string(kMask) + "@2x.png", png(4, 4, kBlack, Color{255, 255, 255, 255}));
    std::filesystem::remove(folder / ("in/T.theme/" + std::string(kMask) + ".png"));
    converted();
    EXPECT_EQ(made(std::string(kMask) + ".png"), png(4, 4, kBlack, Color{255, 255, 255, 255}));
}

TEST_F(ImageRules, aMaskWhoseClearPartIsWhiteHidesTheSameBothWaysAndStays) {
    platform::Data rows(std::size_t{4} * 4 * 4);
    for (std::size_t i = 0; i < rows.size(); i += 4) {
        const std::uint8_t hides = i == 0 ? 255 : 0;
        rows[i] = rows[i + 1] = rows[i + 2] = hides;
        rows[i + 3] = static_cast<std::uint8_t>(255 - hides);
    }
    const auto bytes = desktop::test_images::pngFile({.width = 4, .height = 4}, rows);
    file(std::string(kMask) + ".png", std::string(bytes.begin(), bytes.end()));
    EXPECT_TRUE(converted().changesNothing());
}

// There it is looked for where Bundles has none.
TEST_F(ImageRules, aMaskAtTheThemesRootIsMendedWhereItLies) {
    const std::string root = "com.apple.mobileicons.framework/AppIconMask";
    file(root + "@2x.png", png(4, 4, kBlack, kClear));
    file(root + "@3x.png", png(8, 8, kBlack, kClear));
    const Plan plan = converted();
    EXPECT_EQ(names(), (Names{root + ".png", root + "@2x.png", root + "@3x.png"}));
    std::vector<int> expected(16);
    expected[0] = 255;
    EXPECT_EQ(gray(root + "@2x.png"), expected);
    std::vector<int> largest(64);
    largest[0] = largest[1] = largest[8] = largest[9] = 255;
    EXPECT_EQ(gray(root + "@3x.png"), largest);
    EXPECT_EQ(gray(root + ".png"), largest);
    EXPECT_TRUE(plan.leftOut.empty());
    // Each folder is a family of its own.
    file(std::string(kMask) + ".png", png(4, 4, kBlack, Color{255, 255, 255, 255}));
    converted();
    EXPECT_EQ(made(std::string(kMask) + ".png"), png(4, 4, kBlack, Color{255, 255, 255, 255}));
    EXPECT_EQ(gray(root + "@2x.png"), expected);
    file(root + "@2x.png", "no picture");
    EXPECT_NE(why(converted().leftOut, root + "@2x.png"), "<none>");
}

TEST_F(ImageRules, anEmptyMaskIsLeftOut) {
    file(std::string(kMask) + "@2x.png", "no picture");
    const auto themes = convert();
    ASSERT_TRUE(themes && themes->size() == 1);
    EXPECT_TRUE(themes->front().isEmpty());
    EXPECT_NE(why(themes->front().plan.leftOut, std::string(kMask) + "@2x.png"), "<none>");
    EXPECT_FALSE(std::filesystem::exists(folder / "out")) << "an empty theme";
}

TEST_F(ImageRules, namesThatAreLookedForAreMadeOfScaledOnes) {
    const std::string home = "Bundles/com.apple.springboard/";
    for (const std::string scale : {"@2x", "@3x", "~ipad", "@2x~ipad"}) {
        expectMade("AnemoneEffects/iPhoneOverlay" + scale + ".png",
                   "AnemoneEffects/iPhoneOverlay.png");
        expectMade(home + "ANEMFolderIconBG" + scale + ".png", home + "ANEMFolderIconBG.png");
    }
    expectMade("AnemoneEffects/iPhoneShadow@3x.png", "AnemoneEffects/iPhoneShadow.png");
    expectMade("AnemoneEffects/iPadOverlay@2x.png", "AnemoneEffects/iPadOverlay.png");
    expectMade("AnemoneEffects/iPadShadow@2x.png", "AnemoneEffects/iPadShadow.png");
    expectMade(home + "SBBadgeBG@2x.png", home + "SBBadgeBG.png");
    expectMade(home + "SBDockBG@3x.png", home + "SBDockBG@2x.png");
    expectMade(home + "SBPageDot@2x.png", home + "SBPageDot.png");
    expectMade(home + "SBPageDotCurrent@2x.png", home + "SBPageDotCurrent.png");
    expectMade("ANEMPageDots/Dot_Pages@2x.png", "ANEMPageDots/Dot_Pages.png");
    expectMade("UIImages/UIPageIndicator.png", home + "SBPageDot.png");
    expectMade("UIImages/UIPageIndicator@2x.png", home + "SBPageDot@2x.png");
    expectMade("UIImages/UIPageIndicatorCurrent.png", home + "SBPageDotCurrent.png");
    expectMade("Bundles/com.apple.preferences-framework/WiFi@3x.png",
               "Bundles/com.apple.Preferences/WiFi@3x.png");
    expectMade("Bundles/com.apple.preferences-ui-framework/WiFi.png",
               "Bundles/com.apple.Preferences/WiFi.png");
    expectMade("Bundles/com.apple.preferences/WiFi.png", "Bundles/com.apple.Preferences/WiFi.png");
}

TEST_F(ImageRules, anUnscaledImageIsMadeOfTheLargestScale) {
    const std::string badge = "Bundles/com.apple.springboard/SBBadgeBG";
    file(badge + "@2x.png", png(90));
    file(badge + "@3x~ipad.png", png(60, kBlue));
    file(badge + "@3x.png", png(60, kGreen));
    converted();
    EXPECT_EQ(made(badge + ".png"), png(60, kGreen));
    EXPECT_EQ(made(badge + "@2x.png"), png(90));
}

TEST_F(ImageRules, aThemesOwnDotsAreTakenBeforeTheToolkits) {
    file("UIImages/UIPageIndicatorCurrent.png", png(20));
    file("ANEMPageDots/Dot_Current.png", png(20, kGreen));
    EXPECT_TRUE(converted().changesNothing());
}

TEST_F(ImageRules, theFoldersPlateMoves) {
    file("Iconomatic/Folder.png", png(60));
    file("Iconomatic/Other.png", png(60));
    converted();
    EXPECT_EQ(names(), (Names{"Iconomatic/Other.png", "Velmoranth/Folder.png"}));
    EXPECT_EQ(made("Velmoranth/Folder.png"), png(60));
    file("Velmoranth/Folder.png", png(60, kGreen));
    const Plan plan = converted();
    EXPECT_EQ(made("Velmoranth/Folder.png"), png(60, kGreen));
    EXPECT_EQ(why(plan.leftOut, "Iconomatic/Folder.png"), "Velmoranth/Folder.png is there");
}

TEST_F(ImageRules, partsOfTheHomeScreenAmongTheToolkitsImagesGoWhereTheyAreLookedFor) {
    const std::string home = "Bundles/com.apple.springboard/";
    file("UIImages/SBDockBG@2x.png", png(60));
    file("UIImages/SBBadgeBG.png", png(20));
    file("UIImages/SBPageDot@2x.png", png(20));
    file("UIImages/SBPageDot@3x.png", png(30));
    file("UIImages/SBDockBGOther.png", png(10));
    const Plan plan = converted();
    EXPECT_EQ(names(), (Names{home + "SBBadgeBG.png", home + "SBDockBG@2x.png",
                              home + "SBPageDot.png", home + "SBPageDot@2x.png",
                              home + "SBPageDot@3x.png", "UIImages/SBDockBGOther.png"}));
    EXPECT_EQ(made(home + "SBPageDot.png"), png(30));
    EXPECT_EQ(plan.files.at(home + "SBBadgeBG.png").why, "the image is looked for there");
    // What the theme has there stays.
    file(home + "SBBadgeBG@3x.png", png(40));
    EXPECT_EQ(why(converted().leftOut, "UIImages/SBBadgeBG.png"),
              home + "SBBadgeBG.png is taken before it");
    EXPECT_EQ(made(home + "SBBadgeBG.png"), png(40));
}

TEST_F(ImageRules, ofTwoIconsForOnePlaceOfTheSettingsTheLargerIsTakenAndTheOtherNamed) {
    file("Bundles/com.apple.preferences-framework/WiFi.png", png(29));
    file("Bundles/com.apple.preferences-ui-framework/WiFi.png", png(58, kGreen));
    const Plan plan = converted();
    EXPECT_EQ(made("Bundles/com.apple.Preferences/WiFi.png"), png(58, kGreen));
    EXPECT_EQ(why(plan.notes, "Bundles/com.apple.preferences-framework/WiFi.png"),
              "not taken for Bundles/com.apple.Preferences/WiFi.png: "
              "Bundles/com.apple.preferences-ui-framework/WiFi.png is as large or larger");
}

TEST_F(ImageRules, aPictureOfOneClearPixelStays) {
    file("Bundles/com.apple.springboard/SBBadgeBG.png", png(1, kClear));
    EXPECT_TRUE(converted().changesNothing());
}

TEST_F(ImageRules, whatComesAlongWithoutShowingIsNoted) {
    file("Fonts/A.ttf", "font");
    file("Fonts/B.otf", "font");
    file("UISounds/lock.caf", "sound");
    file("UISounds/lock.mp3", "sound");
    file("AnemoneEffects/iPhoneUnderlay@2x.png", png(60));
    file("README.md", "text");
    const Plan plan = converted();
    EXPECT_EQ(names().size(), 6U);
    EXPECT_EQ(plan.notes,
              (std::vector<LeftOut>{
                  {"AnemoneEffects/iPhoneUnderlay@2x.png", "has no effect: nothing looks for it"},
                  {"Fonts/A.ttf", "has no effect until it is installed on the phone by hand"},
                  {"Fonts/B.otf", "has no effect until it is installed on the phone by hand"},
                  {"UISounds/lock.mp3", "has no effect: only .caf files are asked for"}}));
}

TEST_F(ImageRules, theClocksIconIsNotedWhereTheThemeHasNoFaceForTheOtherSystem) {
    const std::string clock = "IconBundles/com.apple.mobiletimer-large.png";
    file(clock, png(60));
    EXPECT_EQ(
        converted().notes,
        (std::vector<LeftOut>{
            {clock, "has no effect on iOS 13, which draws the clock upon a face of its own"}}));
    for (const std::string bundle : {"com.apple.SpringBoardHome", "com.apple.springboard"}) {
        SCOPED_TRACE(bundle);
        std::filesystem::remove_all(folder / "in");
        file(clock, png(60));
        file("Bundles/" + bundle + "/ClockIconBackgroundSquare@3x.png", png(60));
        EXPECT_TRUE(converted().notes.empty());
    }
}

TEST_F(ImageRules, whatBelongsToNoThemeIsLeftOutAndNamed) {
    const std::string kept = "Bundles/com.apple.Preferences/Wallpaper.png";
    file(kept, png(29));
    const std::vector<std::pair<std::string, std::string>> rows{
        {".DS_Store", "left behind by an archiver or a file manager"},
        {"Bundles/._x.png", "left behind by an archiver or a file manager"},
        {"__MACOSX/a", "left behind by an archiver or a file manager"},
        {"Thumbs.db", "left behind by an archiver or a file manager"},
        {"Bundles/a/empty.png", "the file is empty"},
        {"Icon.png", "the theme's own icon, which no phone shows"},
        {"LockBackground.png", "wallpapers are not themed"},
        {"Wallpaper~iphone.png", "wallpapers are not themed"},
        {"Wallpaper.jpg", "wallpapers are not themed"},
        {"Bundles/a/Localizable.strings", "texts are not themed"},
        {"install.sh", "a script, which no theme runs"},
        {"art/icon.psd", "the maker's own file, not a picture that is read"},
        {"icon.ai", "the maker's own file, not a picture that is read"}};
    for (const auto& [name, reason] : rows) {
        file(name, name == "Bundles/a/empty.png" ? "" : "x");
    }
    folder.link("in/T.theme/link.png", "nowhere.png");
    const Plan plan = converted();
    EXPECT_EQ(names(), Names{kept});
    for (const auto& [name, reason] : rows) {
        EXPECT_EQ(why(plan.leftOut, name), reason) << name;
    }
    EXPECT_EQ(why(plan.leftOut, "link.png"), "a link that leads nowhere");
    EXPECT_EQ(plan.leftOut.size(), rows.size() + 1);
}

}  // namespace
}  // namespace velmoranth::makers::image_rules_test
