// Names that differ in capital and small letters from those that are looked for.
#include "makers/conversion/letter_case.h"

#include "tests/makers/conversion/theme_fixture.h"

namespace velmoranth::makers::letter_case_test {
namespace {

using Names = std::vector<std::string>;

constexpr const char* kMaps = "IconBundles/com.apple.Maps-large.png";

class LetterCases : public ThemeTest {};

TEST_F(LetterCases, foldersFixedNamesScalesAndEndingsAreSpeltAsTheyAreLookedFor) {
    const std::vector<std::pair<std::string, std::string>> rows{
        {"VelMoranth/Folder.png", "Velmoranth/Folder.png"},
        {"velmoranth/iphoneoverlay@2X.PNG", "Velmoranth/iPhoneOverlay@2x.png"},
        {"Velmoranth/sbdockbgIPHONE.png", "Velmoranth/SBDockBGiphone.png"},
        {"iconbundles/com.apple.Maps-large.png", kMaps},
        {"IconBundles/com.apple.Maps-Large.PNG", kMaps},
        {"bundles/com.apple.SpringBoard/sbbadgebg.png",
         "Bundles/com.apple.springboard/SBBadgeBG.png"},
        {"Bundles/com.apple.springboardhome/clockiconbackgroundsquare@3x.png",
         "Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png"},
        {"Bundles/com.apple.springboard/CLOCKIconBackgroundSquare@2x.png",
         "Bundles/com.apple.springboard/ClockIconBackgroundSquare@2x.png"},
        {"Velmoranth/ipadshadow~iPad.png", "Velmoranth/iPadShadow~ipad.png"},
        {"BUNDLES/com.Apple.MobileIcons.Framework/appiconmask.png",
         "Bundles/com.apple.mobileicons.framework/AppIconMask.png"},
        {"Com.Apple.MobileIcons.Framework/AppIconMask.png",
         "com.apple.mobileicons.framework/AppIconMask.png"},
        {"uiimages/Pin@2X~iPad.png", "UIImages/Pin@2x~ipad.png"},
        {"bundles/com.A.b/Pin.Png", "Bundles/com.A.b/Pin.png"},
        {"anempagedots/dot_current.png", "ANEMPageDots/Dot_Current.png"},
        {"anemoneeffects/ipadshadow.png", "AnemoneEffects/iPadShadow.png"},
        {"uisounds/Lock.CAF", "UISounds/lock.caf"},
        {"UISounds/anticipate.caf", "UISounds/Anticipate.caf"},
        {"UISounds/sentmessage.caf", "UISounds/SentMessage.caf"},
        {"UISounds/PhotoShutter.caf", "UISounds/photoShutter.caf"},
        {"UISounds/Key_Press_Click.caf", "UISounds/key_press_click.caf"},
        {"UISounds/Key_Press_Delete.caf", "UISounds/key_press_delete.caf"},
        {"UISounds/Key_Press_Modifier.caf", "UISounds/key_press_modifier.caf"},
    };
    for (const auto& [found, lookedFor] : rows) {
        SCOPED_TRACE(found);
        std::filesystem::remove_all(folder / "in");
        file(found, png(60));
        const Plan plan = converted();
        EXPECT_EQ(made(lookedFor), png(60));
        EXPECT_EQ(made(found), "<none>");
        const auto file = plan.files.find(lookedFor);
        ASSERT_NE(file, plan.files.end());
        EXPECT_EQ(file->second.source, found);
        EXPECT_EQ(file->second.why, "capital and small letters count");
        EXPECT_EQ(file->second.repairs, std::vector{Repair::letterCase});
    }
}

TEST_F(LetterCases, whatIsAskedForByAnAppOrByNobodyKeepsItsLetters) {
    for (const std::string name :
         {"UIImages/pin.png", "UIImages/PIN@2x.png", "Bundles/com.A.b/x.png", "docs/Shot.PNG",
          "README.PNG", "UISounds/Gong.caf", "Bundles/com.apple.springboard/Other/sbbadgebg.png"}) {
        SCOPED_TRACE(name);
        std::filesystem::remove_all(folder / "in");
        file("IconBundles/com.apple.Maps-large.png", png(60));  // loose pictures are all icons
        file(name, png(60));
        EXPECT_TRUE(converted().changesNothing());
    }
    // A folder of the settings, whose name is that of the one that is looked into but for a letter.
    EXPECT_EQ(inLettersLookedFor("Bundles/com.apple.preferences/WiFi.png"),
              "Bundles/com.apple.preferences/WiFi.png");
    EXPECT_EQ(inLettersLookedFor("Bundles/com.apple.PREFERENCES/WiFi.png"),
              "Bundles/com.apple.Preferences/WiFi.png");
}

TEST_F(LetterCases, theOtherRulesGoOnFromThere) {
    file("iconbundles/com.apple.Maps@3X.png", png(180, kGreen));
    file("iconbundles/com.apple.Maps@2x.png", png(120));
    file("bundles/com.apple.springboard/sbbadgebg@3x.png", png(60));
    file("info.PLIST",
         "<plist version=\"1.0\"><dict><key>DockMode</key><string>a</string>"
         "<key>CalendarIconDayStyle</key><string>color: red</string></dict></plist>");
    const Plan plan = converted();
    EXPECT_EQ(names(),
              (Names{"Bundles/com.apple.springboard/SBBadgeBG.png",
                     "Bundles/com.apple.springboard/SBBadgeBG@3x.png", kMaps, "Info.plist"}));
    EXPECT_EQ(made(kMaps), png(180, kGreen));
    EXPECT_EQ(plan.files.at(kMaps).source, "iconbundles/com.apple.Maps@3X.png");
    EXPECT_EQ(plan.files.at(kMaps).why,
              "capital and small letters count\nan app's icon is looked for under that name");
    EXPECT_EQ(plan.files.at(kMaps).repairs, (std::vector{Repair::letterCase, Repair::iconName}));
    EXPECT_NE(why(plan.leftOut, "iconbundles/com.apple.Maps@2x.png"), "<none>");
    EXPECT_EQ(why(plan.notes, "info.PLIST"), "DockMode has no effect");
    EXPECT_EQ(plan.files.at("Info.plist").repairs.front(), Repair::letterCase);
    EXPECT_NE(made("Info.plist").find("FF0000"), std::string::npos);
}

TEST_F(LetterCases, aFileThatIsRightStaysAndTheOtherIsLeftOut) {
    file("VelMoranth/Folder.png", png(180, kGreen));
    file("Velmoranth/Folder.png", png(60));
    const Plan plan = converted();
    EXPECT_EQ(names(), Names{"Velmoranth/Folder.png"});
    EXPECT_EQ(made("Velmoranth/Folder.png"), png(60));
    EXPECT_EQ(plan.leftOut,
              (std::vector<LeftOut>{{"VelMoranth/Folder.png", "Velmoranth/Folder.png is there",
                                     Repair::letterCase, "Velmoranth/Folder.png"}}));
}

TEST_F(LetterCases, aThemeIsKnownByFoldersInOtherLettersThatNothingElseHas) {
    folder.file("in/X/iconbundles/com.apple.Maps@2x.png", png(60));
    folder.file("in/Y/icons/a.png", png(60));
    folder.file("in/Z/Icons/Maps.png", png(60));
    const auto themes = convert({folder / "in"});
    ASSERT_TRUE(themes);
    ASSERT_EQ(themes->size(), 2U);
    EXPECT_EQ((*themes)[0].name, "X");
    EXPECT_EQ((*themes)[1].name, "Z");
    EXPECT_EQ(folder.contents("out/X/" + std::string(kMaps)), png(60));
}

// Pictures that lie beside the theme's folders are taken for icons, but not these.
TEST_F(LetterCases, whatIsLookedForBesideTheFoldersStays) {
    const std::string plate = png(60, kBlue);
    file("com.apple.Maps.png", png(60));
    file("VelmoranthFolder.png", plate);
    file("velmoranthsbdockbgiphone.PNG", plate);
    file("VelmoranthNobody.png", plate);
    const Plan plan = converted();
    EXPECT_EQ(made("VelmoranthFolder.png"), plate);
    EXPECT_EQ(made("VelmoranthSBDockBGiphone.png"), plate);
    ASSERT_EQ(plan.leftOut.size(), 1U);
    EXPECT_EQ(plan.leftOut.front().name, "VelmoranthNobody.png");
}

}  // namespace
}  // namespace velmoranth::makers::letter_case_test
