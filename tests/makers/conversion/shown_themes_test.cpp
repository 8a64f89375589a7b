// A theme that was converted shows what the same pictures show where they are looked for, on every
// device and system.
#include "desktop/files/create_device_root.h"
#include "simulator/process/launcher.h"
#include "tests/makers/conversion/theme_fixture.h"
#include "tests/support/places.h"

namespace velmoranth::makers::shown_themes_test {
namespace {

using simulator::ScreenKind;

// Two colours in stripes: what is moved or scaled is seen.
std::string stripes(std::size_t side, const Color& color) {
    return png(side, side, color, kBlack);
}

class ShownThemes : public ThemeTest {
  protected:
    // A file of the theme that is laid by hand where the engine looks for it.
    void laid(const std::string& name, const std::string& contents) const {
        folder.file("hand/T.theme/" + name, contents);
    }

    void device(const std::string& name, const std::string& themes) const {
        ASSERT_TRUE(desktop::createDeviceRoot(folder / name));
        std::filesystem::copy(folder / themes, folder / (name + "/Library/Themes"),
                              std::filesystem::copy_options::recursive);
        const platform::Dictionary preferences{
            {"ActiveThemes", platform::PropertyList::Array{"T.theme"}},
            {"enable", true},
            {"enableIconMask", true},
            {"enableOverlay", true},
            {"enableShadow", true},
            {"removeDock", true}};
        const auto bytes = desktop::writeXmlPropertyList(platform::PropertyList(preferences));
        folder.file(name + "/User/Library/Preferences/com.qor.velmoranthprefs.plist",
                    std::string(bytes.begin(), bytes.end()));
    }

    [[nodiscard]] simulator::Picture picture(const std::string& root, std::string_view model,
                                             int system, ScreenKind screen) const {
        simulator::ScreenRequest request;
        request.device = simulator::deviceConfiguration(model, system).value();
        request.device.date = platform::Date{600000000};
        request.deviceFiles = folder / root;
        request.enginePath = tests::kEngineLibrary;
        request.screen = screen;
        const auto shown = simulator::renderScreen(request);
        EXPECT_TRUE(shown) << (shown ? "" : toLine(shown.error()));
        return shown ? shown->picture : simulator::Picture();
    }

    // Of what was laid by hand and what is made of "in/T.theme"; not of that theme as it is.
    void expectSame(ScreenKind screen,
                    const std::vector<const char*>& models = {"phone", "phone-667", "pad"}) {
        converted();
        device("before", "in");
        device("made", "out");
        device("laid", "hand");
        for (const char* const model : models) {
            for (const int system : {12, 13}) {
                SCOPED_TRACE(model + std::to_string(system));
                const simulator::Picture expected = picture("laid", model, system, screen);
                EXPECT_EQ(picture("made", model, system, screen).pixels, expected.pixels);
            }
        }
        EXPECT_NE(picture("before", "pad", 13, screen).pixels,
                  picture("laid", "pad", 13, screen).pixels);
    }
};

TEST_F(ShownThemes, iconsOfEveryKindOfPlaceShow) {
    const auto icon = [this](const std::string& source, const std::string& identifier,
                             const Color& color) {
        file(source, stripes(180, color));
        laid("IconBundles/" + identifier + "-large.png", stripes(180, color));
    };
    icon("IconBundles/com.apple.Maps@3x.png", "com.apple.Maps", kRed);
    icon("IconBundles/com.apple.camera@2x~ipad.png", "com.apple.camera", kGreen);
    icon("com.apple.weather.png", "com.apple.weather", kBlue);
    icon("Bundles/com.apple.AppStore/AppIcon60x60@3x.png", "com.apple.AppStore", kRed);
    icon("Icons/Notes.png", "com.apple.mobilenotes", kGreen);
    icon("Folders/Stocks.app/icon@2x.png", "com.apple.stocks", kBlue);
    icon("IconBundles/com.apple.mobilesms-large.png", "com.apple.MobileSMS", kRed);
    icon("IconBundles/com.apple.mobilecal@3x.png", "com.apple.mobilecal", kGreen);
    file("IconBundles/com.apple.Maps@2x.png", stripes(120, kBlue));
    file("Info.plist", "<plist version=\"1.0\"><dict/></plist>");
    const auto bytes = desktop::writeXmlPropertyList(platform::PropertyList(calendar()));
    laid("Info.plist", std::string(bytes.begin(), bytes.end()));
    expectSame(ScreenKind::home);
}

TEST_F(ShownThemes, masksEffectsAndTheHomeScreensOwnImagesShow) {
    const std::string home = "Bundles/com.apple.springboard/";
    const std::string mask = "Bundles/com.apple.mobileicons.framework/AppIconMask";
    for (const std::string scale : {"@2x", "@3x"}) {
        file(mask + scale + ".png", png(120, 120, kBlack, kClear));
    }
    std::vector<std::uint8_t> gray(std::size_t{120} * 120);
    for (std::size_t i = 0; i < gray.size(); ++i) {
        gray[i] = i % 120 < 30 && i / 120 < 30 ? 255 : 0;
    }
    const auto laidMask = desktop::encodeGrayPng(gray, 120, 120);
    laid(mask + ".png", std::string(laidMask.begin(), laidMask.end()));
    const auto both = [this](const std::string& source, const std::vector<std::string>& targets,
                             const std::string& picture) {
        file(source, picture);
        for (const std::string& target : targets) {
            laid(target, picture);
        }
    };
    const std::string overlay = png(60, 60, kClear, kGreen);
    both("AnemoneEffects/iPhoneOverlay@2x.png",
         {"AnemoneEffects/iPhoneOverlay@2x.png", "AnemoneEffects/iPhoneOverlay.png"}, overlay);
    both("AnemoneEffects/iPadOverlay@3x.png", {"AnemoneEffects/iPadOverlay.png"}, overlay);
    both(home + "SBBadgeBG@3x.png", {home + "SBBadgeBG.png", home + "SBBadgeBG@3x.png"},
         stripes(60, kBlue));
    both("Iconomatic/Folder.png", {"Velmoranth/Folder.png"}, stripes(60, kGreen));
    both(home + "ANEMFolderIconBG@3x~ipad.png", {home + "ANEMFolderIconBG.png"}, stripes(76, kRed));
    both(home + "SBDockBG.png", {home + "SBDockBG@2x.png"}, stripes(200, kRed));
    both("UIImages/UIPageIndicatorCurrent.png", {home + "SBPageDotCurrent.png"}, stripes(7, kRed));
    both("UIImages/UIPageIndicator.png", {home + "SBPageDot.png"}, stripes(7, kBlue));
    expectSame(ScreenKind::home);
}

TEST_F(ShownThemes, iconsOfTheSettingsShow) {
    for (const std::string name : {"WiFi", "General", "Bluetooth", "Wallpaper", "Sounds"}) {
        file("Bundles/com.apple.preferences-ui-framework/" + name + ".png", stripes(87, kRed));
        laid("Bundles/com.apple.Preferences/" + name + ".png", stripes(87, kRed));
    }
    expectSame(ScreenKind::settings, {"phone", "pad"});
}

}  // namespace
}  // namespace velmoranth::makers::shown_themes_test
