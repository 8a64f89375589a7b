#include "makers/starter/starter_pictures.h"

#include "desktop/image_io/image_io.h"
#include "simulator/artwork/artwork.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <string>

namespace velmoranth::makers {
namespace {

constexpr std::array<StarterPicture, 20> kPictures{{
    {"IconBundles/com.apple.mobilesafari-large.png", "an app's icon, square: the mask shapes it",
     60, 60, compassIcon},
    {"IconBundles/com.apple.mobilecal-large.png",
     "the calendar; weekday and day are written over it", 60, 60, calendarIcon},
    {"Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png",
     "the clock without its hands", 60, 60, clockFace},
    {"Velmoranth/iPhoneOverlay.png", "drawn over every app icon", 60, 60, overlay},
    {"Velmoranth/iPadOverlay.png", "the same on a pad", 76, 76, padOverlay},
    {"Velmoranth/iPhoneShadow.png", "drawn behind every app icon, with enableShadow on", 80, 80,
     shadow},
    {"Velmoranth/iPadShadow~ipad.png", "the same on a pad", 96, 96, padShadow},
    {"Velmoranth/Folder.png", "the plate of folder icons", 60, 60, folderPlate},
    {"Velmoranth/ipadFolder.png", "the same on a pad", 76, 76, padFolderPlate},
    {"Bundles/com.apple.springboard/ANEMFolderBackground.png", "behind an open folder", 94, 203,
     folderBackground},
    {"Bundles/com.apple.springboard/SBBadgeBG.png", "the background of badges", 24, 24, badge},
    {"Bundles/com.apple.springboard/SBPageDotCurrent.png", "the dot of the page that is shown", 8,
     8, currentDot, Scales::all},
    {"Bundles/com.apple.springboard/SBPageDot.png", "the dots of the others", 8, 8, otherDot,
     Scales::all},
    {"Bundles/com.apple.springboard/Spotlight_Pages.png", "the search dot", 8, 8, searchDot,
     Scales::all},
    {"Velmoranth/SBDockBGiphone.png", "a phone's dock, with removeDock on", 375, 95, phoneDock},
    {"Velmoranth/SBDockBGipad.png", "a pad's dock, with removeDock on", 768, 104, padDock},
    {"UIImages/UISwitchKnob.png", "the knob of every switch", 50, 50, knob, Scales::all},
    {"UIImages/chevron.right@3x.png", "an image of the toolkit's, by its name", 20, 20, chevron},
    {"Bundles/com.apple.Preferences/WiFi@3x.png", "a row's icon in Settings", 29, 29, wirelessIcon},
    {"Bundles/com.apple.weather-framework/clear-day@3x.png", "a weather condition, on iOS 13", 30,
     30, sun},
}};

constexpr int kScale = 3;
constexpr int kMaskPixels = 180;

// "a/b.png" is "a/b@2x.png".
std::string nameAt(std::string_view name, int scale) {
    constexpr std::string_view kEnding = ".png";
    std::string scaled(name.substr(0, name.size() - kEnding.size()));
    return scaled.append("@").append(std::to_string(scale)).append("x").append(kEnding);
}

platform::Data drawn(const StarterPicture& picture, int scale, const Palette& palette) {
    const int width = static_cast<int>(std::lround(picture.width * scale));
    const int height = static_cast<int>(std::lround(picture.height * scale));
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) *
                                     static_cast<std::size_t>(height) * 4);
    {
        simulator::Pen pen(pixels, width, height, picture.width, picture.height);
        picture.draw(pen, palette);
    }
    return desktop::encodePng(pixels, static_cast<std::size_t>(width),
                              static_cast<std::size_t>(height), static_cast<std::size_t>(width) * 4,
                              desktop::PngEffort::balanced);
}

platform::Data drawnMask() {
    auto samples =
        simulator::continuousCornerCoverage(kMaskPixels, kMaskPixels, kMaskPixels * kCornerShare);
    for (std::uint8_t& sample : samples) {
        sample = static_cast<std::uint8_t>(UINT8_MAX - sample);
    }
    return desktop::encodeGrayPng(samples, kMaskPixels, kMaskPixels);
}

}  // namespace

std::span<const StarterPicture> starterPictures() {
    return kPictures;
}

std::vector<StarterFile> drawnFiles(const Palette& palette) {
    std::vector<StarterFile> files{{std::string(kMaskName), drawnMask()}};
    for (const StarterPicture& picture : kPictures) {
        if (picture.scales == Scales::three) {
            files.push_back({std::string(picture.name), drawn(picture, kScale, palette)});
            continue;
        }
        for (int scale = 1; scale <= kScale; ++scale) {
            files.push_back({scale == 1 ? std::string(picture.name) : nameAt(picture.name, scale),
                             drawn(picture, scale, palette)});
        }
    }
    return files;
}

}  // namespace velmoranth::makers
