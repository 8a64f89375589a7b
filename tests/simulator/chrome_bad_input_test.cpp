// Theme parts and numbers that nobody should ship: a picture all the same, in bounded memory.
#include "tests/support/places.h"
#include "themed_device.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::simulator::chrome_bad_input_test {
namespace {

namespace fs = std::filesystem;

const std::vector<std::string>& parts() {
    static const std::vector<std::string> kParts{
        "Velmoranth/Folder.png",
        "Velmoranth/SBDockBGiphone.png",
        "Velmoranth/iPhoneOverlay.png",
        "Velmoranth/iPhoneShadow.png",
        "Bundles/com.apple.mobileicons.framework/AppIconMask.png",
        "Bundles/com.apple.springboard/SBBadgeBG.png",
        "Bundles/com.apple.springboard/SBPageDot.png",
        "Bundles/com.apple.springboard/SBPageDotCurrent.png",
        "Bundles/com.apple.springboard/Spotlight_Pages.png",
        "Bundles/com.apple.springboard/ANEMFolderBackground.png",
    };
    return kParts;
}

const platform::Dictionary kEverything{{"enableIconMask", true},
                                       {"enableOverlay", true},
                                       {"enableShadow", true},
                                       {"removeDock", true}};

// Opens a folder of that device, which asks for every part there is.
RenderedScreen folderScreen(const ThemedDevice& device, int system,
                            const platform::Dictionary& preferences) {
    ScreenRequest request = device.request("phone-667", system, preferences);
    request.screen = ScreenKind::folder;
    request.timeLimit = std::chrono::minutes(2);
    auto screen = renderScreen(request);
    EXPECT_TRUE(screen) << (screen ? "" : toLine(screen.error()));
    return screen ? *screen : RenderedScreen{};
}

TEST(ChromeBadInput, OnePixelIsStretched) {
    const ThemedDevice device;
    for (const std::string& part : parts()) {
        device.png(part, 1, 1, kGreen);
    }
    for (const int system : {12, 13}) {
        const Look look = device.look("phone-667", system, {{"removeDock", true}});
        EXPECT_EQ(look.at(2, 640), kGreen);  // the dock
        const platform::Point folder = look.icon("folder.utilities");
        EXPECT_EQ(look.at(folder.x + 2, folder.y + 30), kGreen);
        EXPECT_FALSE(folderScreen(device, system, kEverything).picture.pixels.empty());
    }
}

TEST(ChromeBadInput, HugePartsTakeBoundedMemory) {
    const ThemedDevice device;
    constexpr std::size_t kSide = 4096;
    const std::vector<std::uint8_t> pixels(kSide * kSide * 4, 255);
    const platform::Data png = desktop::encodePng(pixels, kSide, kSide, kSide * 4);
    for (const char* const part : {"Velmoranth/Folder.png", "Velmoranth/SBDockBGiphone.png",
                                   "Bundles/com.apple.springboard/SBBadgeBG.png",
                                   "Bundles/com.apple.springboard/SBPageDot.png",
                                   "Bundles/com.apple.springboard/ANEMFolderBackground.png"}) {
        device.folder.file(std::string("device/Library/Themes/T.theme/") + part,
                           std::string(png.begin(), png.end()));
    }
    const RenderedScreen screen = folderScreen(device, 13, kEverything);
    EXPECT_FALSE(screen.picture.pixels.empty());
#if !defined(__SANITIZE_ADDRESS__)
    // A part is held as stored and as drawn, 64 MiB each, by every view that shows it: badges,
    // dots, folder icons and the rest, twenty at most.
    constexpr std::size_t kEach = std::size_t{2} * kSide * kSide * 4;
    EXPECT_LE(screen.peakMemoryBytes, std::size_t{200} * 1024 * 1024 + kEach * 20);
#endif
}

TEST(ChromeBadInput, EverySampleLayoutShows) {
    const fs::path samples = fs::path(tests::kSourceFolder) / "fuzz/images/corpus";
    ASSERT_TRUE(fs::exists(samples));
    for (const auto& sample : fs::directory_iterator(samples)) {
        const ThemedDevice device;
        for (const std::string& part : parts()) {
            const fs::path to = device.folder / ("device/Library/Themes/T.theme/" + part);
            fs::create_directories(to.parent_path());
            fs::copy_file(sample.path(), to);
        }
        EXPECT_FALSE(folderScreen(device, 13, kEverything).picture.pixels.empty()) << sample.path();
    }
}

TEST(ChromeBadInput, FilesThatAreNoPicturesLeaveThePlatforms) {
    const ThemedDevice device;
    const Look stock = device.look("phone-667", 13, {});
    for (const std::string& part : parts()) {
        device.folder.file("device/Library/Themes/T.theme/" + part, "no picture");
    }
    const Look look = device.look("phone-667", 13, {});
    // Badges and dots stay; a folder's plate goes with theming, picture or not.
    EXPECT_EQ(look.at(187.5, 563.5), stock.at(187.5, 563.5));
    const platform::Point mail = look.icon("com.apple.mobilemail");
    EXPECT_EQ(look.at(mail.x + 66, mail.y - 6), stock.at(mail.x + 66, mail.y - 6));
}

TEST(ChromeBadInput, NumbersOfTheDrawnShadowMayBeAnything) {
    const ThemedDevice device;
    const std::vector<platform::PropertyList> values{-1e6,
                                                     1e9,
                                                     3.4e38,
                                                     -3.4e38,
                                                     1e-40,
                                                     "nan",
                                                     "inf",
                                                     "-5",
                                                     "0x10",
                                                     "",
                                                     "1e99",
                                                     true,
                                                     platform::PropertyList::Array{1},
                                                     platform::Data{1, 2}};
    constexpr int kSystem = 13;
    for (const platform::PropertyList& value : values) {
        platform::Dictionary preferences{{"dynamicShadow", true}};
        for (const char* const key : {"shadowRadiusVal", "opacityVal", "xAxisVal", "yAxisVal",
                                      "shadowWidthVal", "shadowHeightVal"}) {
            preferences.insert_or_assign(key, value);
        }
        const Look look = device.look("phone-667", kSystem, preferences);
        EXPECT_FALSE(look.screen().picture.pixels.empty());
        // One key alone, the others as they should be.
        for (const char* const key : {"shadowRadiusVal", "shadowWidthVal"}) {
            platform::Dictionary one{{"dynamicShadow", true},  {"shadowRadiusVal", 3.0},
                                     {"opacityVal", 0.8},      {"xAxisVal", 0.0},
                                     {"yAxisVal", 4.0},        {"shadowWidthVal", 60.0},
                                     {"shadowHeightVal", 60.0}};
            one.insert_or_assign(key, value);
            EXPECT_FALSE(device.look("phone-667", kSystem, one).screen().picture.pixels.empty());
        }
    }
}

}  // namespace
}  // namespace velmoranth::simulator::chrome_bad_input_test
