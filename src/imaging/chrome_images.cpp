#include "imaging/chrome_images.h"

#include "core/format.h"
#include "imaging/view_tags.h"
#include "platform/platform.h"
#include "platform/strings.h"
#include "theme/interface_image_lookup.h"
#include "theme/theme_selection.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace velmoranth::imaging {

using core::stringWithFormat;
using platform::ImageRef;
using platform::ImageViewRef;
using platform::platform;
using theme::deviceIsPad;

namespace {

constexpr const char* kSpringBoardFolder = "Bundles/com.apple.springboard/";
constexpr const char* kPageDotsFolder = "ANEMPageDots/";
// Without the slash, so that the file's name stands right behind the folder's.
constexpr const char* kVelmoranthFolder = "Velmoranth";

constexpr double kPadIconSide = 76;
constexpr double kPhoneIconSide = 60;
constexpr double kBadgeSide = 30;
constexpr double kDockOffset = 10;

ImageRef searchFolder(const char* folder, const std::string& name) {
    return theme::InterfaceImageLookup::searchFolderForImageStr(folder, name);
}

// Directly from the selected theme's folder for this system; without a theme, from the root.
ImageRef selectedThemeImage(const std::string& name) {
    return platform().images.imageWithContentsOfFile(
        stringWithFormat("%@/%@", theme::ThemeSelection::selectedTheme(), name));
}

// The first two places of folder and dock. A failed attempt leaves the view without an image.
void setOwnImage(platform::ImageView& view, const std::string& name) {
    view.setImage(selectedThemeImage(name));
    if (view.image() == nullptr) {
        view.setImage(searchFolder(kVelmoranthFolder, name));
    }
}

const char* padDockName() {
    const int orientation = platform().device.orientation();
    const bool isLandscape = orientation == platform::kDeviceOrientationLandscapeLeft ||
                             orientation == platform::kDeviceOrientationLandscapeRight;
    return isLandscape ? "SBDockBG-Landscape@2x~ipad.png" : "SBDockBG-Portrait@2x~ipad.png";
}

// Of the two characters at `location`. The scanner alone would pass over white space before a
// digit.
double channel(const std::string& digits, std::size_t location) {
    const std::string pair = platform::substringWithRange(digits, location, 2);
    const std::uint32_t value =
        platform::isHexDigit(pair.front()) ? platform::scanHexInt(pair).value_or(0) : 0;
    return static_cast<double>(static_cast<float>(value) / 255.0F);
}

}  // namespace

ImageViewRef ChromeImages::FolderImage() {
    const ImageViewRef view = platform().views.imageView();
    const bool isPad = deviceIsPad();
    const double side = isPad ? kPadIconSide : kPhoneIconSide;
    view->setFrame({{0, 0}, {side, side}});
    view->setBackgroundColor(platform::kClearColor);
    setOwnImage(*view, isPad ? "ipadFolder.png" : "Folder.png");
    if (view->image() == nullptr) {
        view->setImage(searchFolder(kSpringBoardFolder, "ANEMFolderIconBG-Apple.png"));
    }
    if (view->image() == nullptr) {
        view->setImage(searchFolder(kSpringBoardFolder, "ANEMFolderIconBG.png"));
    }
    view->setTag(FolderImageTag);
    return view;
}

ImageViewRef ChromeImages::badgeImage() {
    const ImageViewRef view = platform().views.imageView();
    view->setFrame({{0, 0}, {kBadgeSide, kBadgeSide}});
    view->setImage(searchFolder(kSpringBoardFolder, "SBBadgeBG.png"));
    return view;
}

ImageRef ChromeImages::pageDots(bool isCurrent) {
    if (ImageRef image = searchFolder(kSpringBoardFolder,
                                      isCurrent ? "SBPageDotCurrent.png" : "SBPageDot.png")) {
        return image;
    }
    return searchFolder(kPageDotsFolder, isCurrent ? "Dot_Current.png" : "Dot_Pages.png");
}

ImageRef ChromeImages::spotlightPageDot() {
    if (ImageRef image = searchFolder(kSpringBoardFolder, "Spotlight_Pages.png")) {
        return image;
    }
    return searchFolder(kPageDotsFolder, "Spotlight_Pages.png");
}

ImageViewRef ChromeImages::SBDockImgWithFrame(const platform::Rect& frame) {
    const ImageViewRef view = platform().views.imageView();
    view->setFrame({{frame.origin.x, frame.origin.y + kDockOffset}, frame.size});
    const bool isPad = deviceIsPad();
    setOwnImage(*view, isPad ? "SBDockBGipad.png" : "SBDockBGiphone.png");
    if (view->image() == nullptr) {
        view->setImage(searchFolder(kSpringBoardFolder, isPad ? padDockName() : "SBDockBG@2x.png"));
    }
    return view;
}

platform::Color ChromeImages::colorWithHexString(const platform::NullableString& string) {
    constexpr std::size_t kDigits = 6;
    std::string text = platform::uppercaseString(
        platform::stringByTrimmingWhitespaceAndNewlines(string.value_or("")));
    if (platform::length(text) < kDigits) {
        return platform::kGrayColor;
    }
    if (text.starts_with("0X")) {
        text.erase(0, 2);
    }
    if (platform::length(text) != kDigits) {
        return platform::kGrayColor;
    }
    return {channel(text, 0), channel(text, 2), channel(text, 4), 1};
}

}  // namespace velmoranth::imaging
