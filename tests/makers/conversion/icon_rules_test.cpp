// App icons, from every place and name that themes have them under.
#include "simulator/home_screen/apps.h"
#include "tests/makers/conversion/theme_fixture.h"

#include "makers/conversion/names.h"

namespace velmoranth::makers::icon_rules_test {
namespace {

using Names = std::vector<std::string>;

constexpr const char* kMaps = "IconBundles/com.apple.Maps-large.png";

class IconRules : public ThemeTest {
  protected:
    static Names leftOutOf(const Plan& plan) {
        Names lines;
        for (const LeftOut& left : plan.leftOut) {
            lines.push_back(left.name + ": " + left.why);
        }
        return lines;
    }
};

TEST_F(IconRules, aLargeIconStaysAsItIsAndIsTakenBeforeLargerPictures) {
    file(kMaps, png(60));
    file("IconBundles/com.apple.Maps@3x.png", png(180, kGreen));
    file("IconBundles/com.apple.Maps-large~ipad.png", png(152, kBlue));
    const Plan plan = converted();
    EXPECT_EQ(names(), Names{kMaps});
    EXPECT_EQ(made(kMaps), png(60));
    EXPECT_EQ(why(plan.leftOut, "IconBundles/com.apple.Maps@3x.png"),
              std::string(kMaps) + " is taken for the app");
    EXPECT_EQ(plan.leftOut.size(), 2U);
    EXPECT_EQ(plan.files.at(kMaps).why, "");
}

TEST_F(IconRules, whatScreensTakeInTheLargeIconsPlaceStaysBesideIt) {
    const std::string scaled = "IconBundles/com.apple.Maps-large@3x.png";
    file(kMaps, png(60));
    file(scaled, png(180, kGreen));
    EXPECT_TRUE(converted().changesNothing());
    // Beside an icon that has another name so far it would show in that one's place.
    std::filesystem::remove(folder / ("in/T.theme/" + std::string(kMaps)));
    file("IconBundles/com.apple.Maps@2x.png", png(200));
    const Plan plan = converted();
    EXPECT_EQ(names(), Names{kMaps});
    EXPECT_EQ(made(kMaps), png(200));
    EXPECT_EQ(why(plan.leftOut, scaled), "IconBundles/com.apple.Maps@2x.png is taken for the app");
}

TEST_F(IconRules, anIconOfEveryOtherNameBecomesTheLargeOne) {
    for (const std::string name : {"", "@2x", "@3x", "~iphone", "~ipad", "@2x~ipad", "~ipad@2x",
                                   "-large@2x", "-large~ipad", "@2x@2x", "@2x@3x", "@3x~ipadpro"}) {
        SCOPED_TRACE(name);
        std::filesystem::remove_all(folder / "in");
        file("IconBundles/com.apple.Maps" + name + ".png", png(76));
        const Plan plan = converted();
        EXPECT_EQ(names(), Names{kMaps});
        EXPECT_EQ(made(kMaps), png(76));
        EXPECT_EQ(plan.files.at(kMaps).why, "an app's icon is looked for under that name");
    }
}

TEST_F(IconRules, theLargestSquarePictureIsTakenAndOfEqualOnesTheOneForAnyDevice) {
    file("IconBundles/com.apple.Maps@2x.png", png(120));
    file("IconBundles/com.apple.Maps@3x.png", png(121, kGreen));
    file("IconBundles/com.apple.Maps.png", png(400, 300, kBlue, kBlue));
    converted();
    EXPECT_EQ(made(kMaps), png(121, kGreen));
    file("IconBundles/com.apple.Maps@3x~ipad.png", png(121, kBlue));
    converted();
    EXPECT_EQ(made(kMaps), png(121, kGreen));
    file("IconBundles/com.apple.Maps@2x~ipad.png", png(122, kBlue));
    converted();
    EXPECT_EQ(made(kMaps), png(122, kBlue));
}

TEST_F(IconRules, aPictureThatIsNotSquareIsBetterThanNone) {
    file("IconBundles/com.apple.Maps@2x.png", png(120, 121, kRed, kRed));
    converted();
    EXPECT_EQ(made(kMaps), png(120, 121, kRed, kRed));
}

TEST_F(IconRules, iconsInAFlatFolderHaveADotOrAreKnown) {
    file("com.apple.Maps@2x.png", png(120));
    file("com.vendor.app.png", png(60, kGreen));
    file("pinterest-large.png", png(60, kBlue));
    file("crash-reporter.png", png(60, kBlue));
    file("preview.png", png(300));
    const Plan plan = converted();
    EXPECT_EQ(names(),
              (Names{kMaps, "IconBundles/com.vendor.app-large.png",
                     "IconBundles/crash-reporter-large.png", "IconBundles/pinterest-large.png"}));
    EXPECT_EQ(made(kMaps), png(120));
    EXPECT_EQ(leftOutOf(plan), (Names{"preview.png: no app of that name is known"}));
}

TEST_F(IconRules, everyAppOfADeviceIsFoundByItsNameHoweverItIsWritten) {
    for (const simulator::App* const app : simulator::allApps(simulator::stockApps())) {
        const std::string name(app->name);
        std::string joined = lowerCase(name);
        std::erase(joined, ' ');
        std::string lined = name;
        std::ranges::replace(lined, ' ', '_');
        const std::string icon = "IconBundles/" + std::string(app->bundleIdentifier) + "-large.png";
        for (const std::string& spelling : {name, " " + name + " ", joined, lined + "@3x"}) {
            SCOPED_TRACE(spelling);
            std::filesystem::remove_all(folder / "in");
            file(spelling + ".png", png(60));
            const Plan plan = converted();
            EXPECT_EQ(names(), Names{icon});
            EXPECT_EQ(plan.files.begin()->second.why,
                      "an app's icon is looked for under that name");
        }
    }
}

TEST_F(IconRules, aPictureNamedForAnAppGivesWayToOneWithItsIdentifier) {
    file("Maps.png", png(180, kGreen));
    file("com.apple.Maps.png", png(60));
    file("You Tube.png", png(60, kBlue));
    file("youtube@2x.png", png(120));
    const Plan plan = converted();
    EXPECT_EQ(made(kMaps), png(60));
    EXPECT_EQ(made("IconBundles/com.google.ios.youtube-large.png"), png(120));
    EXPECT_EQ(leftOutOf(plan), (Names{"Maps.png: com.apple.Maps.png is taken for the app",
                                      "You Tube.png: youtube@2x.png is taken for the app"}));
}

TEST_F(IconRules, whatIsLooseAndNoAppsIsNamedWithTheReason) {
    file("Maps.png", png(60));
    file("Maps 2.png", png(60));
    file("Safari-dark.png", png(60));
    file("Our logo.png", png(60));
    file("Mail.jpg", "x");
    file("notes.txt", "x");
    const Plan plan = converted();
    EXPECT_EQ(names(), (Names{kMaps, "notes.txt"}));
    EXPECT_EQ(leftOutOf(plan),
              (Names{"Mail.jpg: icons are PNG files; save it as one",
                     "Maps 2.png: the name looks like one that was left over from editing",
                     "Our logo.png: no app of that name is known",
                     "Safari-dark.png: icons for a dark or tinted screen are of newer systems"}));
}

TEST_F(IconRules, besideAThemesFoldersASquarePictureAloneIsTakenForAnAppsByItsName) {
    file("UISounds/lock.caf", "x");
    file("Maps.png", png(60));
    file("Weather.png", png(750, 1334, kBlue, kBlue));
    file("preview.png", png(300));
    file("Mail.jpg", "x");
    const Plan plan = converted();
    EXPECT_EQ(names(),
              (Names{kMaps, "Mail.jpg", "UISounds/lock.caf", "Weather.png", "preview.png"}));
    EXPECT_TRUE(plan.leftOut.empty());
}

TEST_F(IconRules, inIconBundlesEveryNameIsAnIdentifier) {
    file("IconBundles/stumble.png", png(60));
    file("IconBundles/(null)-large.png", png(60));
    converted();
    EXPECT_EQ(names(), (Names{"IconBundles/(null)-large.png", "IconBundles/stumble-large.png"}));
}

TEST_F(IconRules, anAppsOwnIconNameInItsBundleIsTakenWhenNothingBetterIsThere) {
    for (const std::string name :
         {"icon@2x.png", "Icon.png", "AppIcon60x60@2x.png", "Icon-72@2x.png", "Icon-60@3x.png",
          "Icon-Small-50@2x.png", "icon-83.5@2x~ipad.png", "AppIcon.png"}) {
        SCOPED_TRACE(name);
        std::filesystem::remove_all(folder / "in");
        file("Bundles/com.apple.Maps/" + name, png(60));
        converted();
        EXPECT_EQ(names(), (Names{"Bundles/com.apple.Maps/" + name, kMaps}));
        EXPECT_EQ(made(kMaps), png(60));
    }
    file("IconBundles/com.apple.Maps.png", png(29, kGreen));
    converted();
    EXPECT_EQ(made(kMaps), png(29, kGreen));
}

TEST_F(IconRules, otherImagesAndOtherBundlesGiveNoIcons) {
    file("Bundles/com.apple.Maps/IconBackground.png", png(60));
    file("Bundles/com.apple.springboard/icon.png", png(60));
    file("Bundles/com.apple.VPNPreferences/icon@3x.png", png(60));
    file("Bundles/com.vendor.thing-framework/icon.png", png(60));
    EXPECT_TRUE(converted().changesNothing());
    file("Bundles/com.vendor.thing/icon.png", png(60));
    converted();
    EXPECT_EQ(made("IconBundles/com.vendor.thing-large.png"), png(60));
}

TEST_F(IconRules, aDisplayNameIsLookedUp) {
    file("Icons/Maps.png", png(60));
    file("Icons/APP STORE@2x.png", png(60, kGreen));
    file("Icons/iPod.png", png(60, kBlue));
    file("Icons/com.vendor.app.png", png(60));
    file("Icons/Nobody.png", png(60));
    const Plan plan = converted();
    EXPECT_EQ(names(), (Names{"IconBundles/com.apple.AppStore-large.png", kMaps,
                              "IconBundles/com.apple.Music-large.png",
                              "IconBundles/com.vendor.app-large.png"}));
    EXPECT_EQ(made("IconBundles/com.apple.AppStore-large.png"), png(60, kGreen));
    EXPECT_EQ(why(plan.leftOut, "Icons/Nobody.png"), "no app of that name is known");
}

TEST_F(IconRules, namedFoldersAreBundlesOfTheirApps) {
    file("Folders/Maps.app/icon.png", png(60));
    file("Folders/Maps.app/Pin.png", png(20, kGreen));
    file("Folders/Nobody.app/icon.png", png(60));
    const Plan plan = converted();
    EXPECT_EQ(names(),
              (Names{"Bundles/com.apple.Maps/Pin.png", "Bundles/com.apple.Maps/icon.png", kMaps}));
    EXPECT_EQ(made(kMaps), png(60));
    EXPECT_EQ(made("Bundles/com.apple.Maps/Pin.png"), png(20, kGreen));
    EXPECT_EQ(why(plan.leftOut, "Folders/Nobody.app/icon.png"), "no app of that name is known");
}

TEST_F(IconRules, anIdentifierGetsTheAppsOwnLetterCase) {
    file("IconBundles/com.apple.mobilesms-large.png", png(60));
    file("IconBundles/com.apple.Calculator@2x.png", png(60, kGreen));
    file("IconBundles/COM.vendor.APP-large.png", png(60, kBlue));
    converted();
    EXPECT_EQ(names(), (Names{"IconBundles/COM.vendor.APP-large.png",
                              "IconBundles/com.apple.MobileSMS-large.png",
                              "IconBundles/com.apple.calculator-large.png"}));
}

TEST_F(IconRules, bothLetterCasesStayWhereTheirPicturesDiffer) {
    file("IconBundles/com.apple.maps-large.png", png(60));
    file(kMaps, png(60));
    const Plan plan = converted();
    EXPECT_EQ(names(), Names{kMaps});
    EXPECT_EQ(why(plan.leftOut, "IconBundles/com.apple.maps-large.png"),
              std::string("the same picture as ") + kMaps);
    file("IconBundles/com.apple.maps-large.png", png(60, kGreen));
    EXPECT_TRUE(converted().changesNothing());
}

TEST_F(IconRules, leftoversAndIconsOfNewerSystemsAreNamed) {
    const std::string newer = "icons for a dark or tinted screen are of newer systems";
    const std::string leftover = "the name looks like one that was left over from editing";
    const std::vector<std::pair<std::string, std::string>> rows{
        {"com.apple.Maps-dark.png", newer},         {"com.apple.Maps-tinted@2x.png", newer},
        {"com.apple.Maps-large-dark.png", newer},   {"com.apple.Maps 2.png", leftover},
        {"com.apple.Maps old.png", leftover},       {"com.apple.Maps-alt.png", leftover},
        {"com.apple.Maps@2x - Copy.png", leftover}, {"com. apple.Maps.png", leftover},
        {"com.apple.Maps 2-large.png", leftover}};
    for (const auto& [name, reason] : rows) {
        file("IconBundles/" + name, png(60));
    }
    file(kMaps, png(60));
    const Plan plan = converted();
    EXPECT_EQ(names(), Names{kMaps});
    for (const auto& [name, reason] : rows) {
        EXPECT_EQ(why(plan.leftOut, "IconBundles/" + name), reason) << name;
    }
}

TEST_F(IconRules, whatIsNoPictureIsNamedAndTheNextOneTaken) {
    file(kMaps, "");
    file("IconBundles/com.apple.Maps@3x.png", png(180).substr(0, 60));
    file("IconBundles/com.apple.Maps@2x.png", png(120, kGreen));
    const Plan plan = converted();
    EXPECT_EQ(names(), Names{kMaps});
    EXPECT_EQ(made(kMaps), png(120, kGreen));
    EXPECT_EQ(why(plan.leftOut, kMaps), "the file is empty");
    EXPECT_NE(why(plan.leftOut, "IconBundles/com.apple.Maps@3x.png"), "<none>");
}

TEST_F(IconRules, anIconOfMoreThan1024PixelsIsMadeSmaller) {
    file(kMaps, png(1025, kGreen));
    file("IconBundles/com.apple.AppStore-large.png", png(1024));
    file("IconBundles/com.apple.news-large.png", png(2048, 512, kRed, kBlue));
    const Plan plan = converted();
    EXPECT_EQ(made("IconBundles/com.apple.AppStore-large.png"), png(1024));
    EXPECT_EQ(plan.files.at(kMaps).why,
              "made smaller: 1025 × 1025 pixels are more than any icon shows");
    const std::string bytes = made("IconBundles/com.apple.news-large.png");
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const auto image = desktop::decodeImage({data, bytes.size()});
    ASSERT_TRUE(image);
    ASSERT_EQ(image->layout.width, 1024U);
    ASSERT_EQ(image->layout.height, 256U);
    const auto pixels = desktop::toPremultipliedBgra(*image);
    const auto at = [&](std::size_t x, std::size_t y) {
        Color color{};
        std::copy_n(pixels.begin() + static_cast<std::ptrdiff_t>((y * 1024 + x) * 4), 4,
                    color.begin());
        return color;
    };
    EXPECT_EQ(at(255, 63), kBlue);
    EXPECT_EQ(at(256, 63), kRed);
    EXPECT_EQ(at(255, 64), kRed);
}

TEST_F(IconRules, severalAppsMayHaveOnePicture) {
    file(kMaps, png(60));
    file("IconBundles/com.google.Maps-large.png", png(60));
    EXPECT_TRUE(converted().changesNothing());
}

}  // namespace
}  // namespace velmoranth::makers::icon_rules_test
