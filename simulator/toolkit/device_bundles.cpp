#include "simulator/toolkit/device_bundles.h"

#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/toolkit/tinted_images.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace velmoranth::simulator {
namespace {

using Names = std::span<const std::string_view>;

// Glyphs are drawn in black; what shows them fills them with its tint.
constexpr std::uint32_t kBlack = 0x000000;

constexpr double kWeatherSide = 30;    // points
constexpr double kClockFaceSide = 60;  // points

FurniturePicture glyph(std::string_view name, double side, double scale) {
    return drawGlyph(name, side, scale, kBlack);
}

FurniturePicture toolkitImage(std::string_view name, double /*side*/, double scale) {
    return drawToolkitImage(name, scale);
}

FurniturePicture settingsIcon(std::string_view name, double /*side*/, double scale) {
    return drawSettingsIcon(name, scale);
}

FurniturePicture weatherCondition(std::string_view name, double /*side*/, double scale) {
    return drawWeatherCondition(name, kWeatherSide, scale,
                                static_cast<std::int64_t>(WeatherStyle::onColor));
}

constexpr std::array<std::string_view, 1> kClockNames{"ClockIconBackgroundSquare"};

Names clockNames() {
    return kClockNames;
}

FurniturePicture clockFace(std::string_view name, double /*side*/, double scale) {
    return name == kClockNames[0] ? drawClockBackground(kClockFaceSide, scale) : FurniturePicture();
}

// The ordinary app's own images: buttons in colours of its own.
struct AppImage {
    std::string_view name;
    std::string_view glyph;
    double side;  // points
    std::uint32_t rgb;
};

constexpr std::array kAppImages{
    AppImage{"FavoriteButton", "heart.fill", 28, 0xFF2D55},
    AppImage{"RemindButton", "bell.fill", 28, 0xFF9500},
    AppImage{"NightButton", "moon.fill", 28, 0x5856D6},
    AppImage{"PlaceButton", "location.fill", 28, 0x34C759},
    AppImage{"ProfilePicture", "person.crop.circle.fill", 56, 0x8E8E93},
    AppImage{"TabList", "list.bullet", 26, 0x8E8E93},
    AppImage{"TabSettings", "gear", 26, 0x8E8E93},
};

Names appImageNames() {
    static const auto kNames = [] {
        std::array<std::string_view, kAppImages.size()> names;
        std::ranges::transform(kAppImages, names.begin(), &AppImage::name);
        return names;
    }();
    return kNames;
}

FurniturePicture appImage(std::string_view name, double /*side*/, double scale) {
    const auto* const found = std::ranges::find(kAppImages, name, &AppImage::name);
    return found == kAppImages.end() ? FurniturePicture()
                                     : drawGlyph(found->glyph, found->side, scale, found->rgb);
}

// A glyph that the app brings along.
constexpr std::array<std::string_view, 1> kAppGlyphNames{"workbench.mark"};

Names appGlyphNames() {
    return kAppGlyphNames;
}

FurniturePicture appGlyph(std::string_view name, double side, double scale) {
    return name == kAppGlyphNames[0] ? drawGlyph("wifi", side, scale, kBlack) : FurniturePicture();
}

// Of a program that brings no images.
Names noNames() {
    return {};
}

FurniturePicture nothing(std::string_view /*name*/, double /*side*/, double /*scale*/) {
    return {};
}

using enum CatalogKind;

constexpr std::array kCatalogs{
    BundleCatalog{kToolkitBundle, "/System/Library/PrivateFrameworks/UIKitCore.framework", images,
                  Systems::both, toolkitImageNames, toolkitImage},
    BundleCatalog{kGlyphsBundle, "/System/Library/CoreServices/CoreGlyphs.bundle", glyphs,
                  Systems::both, glyphNames, glyph},
    BundleCatalog{kPreferencesBundle, "/Applications/Preferences.app", images, Systems::both,
                  settingsIconNames, settingsIcon},
    BundleCatalog{kWeatherBundle, "/System/Library/PrivateFrameworks/Weather.framework", images,
                  Systems::both, weatherConditionNames, weatherCondition},
    BundleCatalog{kWeatherAppBundle, "/Applications/Weather.app", images, Systems::both, noNames,
                  nothing},
    BundleCatalog{kHomeScreenBundle, "/System/Library/CoreServices/SpringBoard.app", images,
                  Systems::only12, clockNames, clockFace},
    BundleCatalog{kHomeScreenBundle, "/System/Library/CoreServices/SpringBoard.app", images,
                  Systems::only13, noNames, nothing},
    BundleCatalog{"com.apple.SpringBoardHome",
                  "/System/Library/PrivateFrameworks/SpringBoardHome.framework", images,
                  Systems::only13, clockNames, clockFace},
    BundleCatalog{kAppBundle, "/Applications/Workbench.app", images, Systems::both, appImageNames,
                  appImage},
    BundleCatalog{kAppBundle, "/Applications/Workbench.app", glyphs, Systems::both, appGlyphNames,
                  appGlyph},
};

}  // namespace

std::span<const BundleCatalog> bundleCatalogs() {
    return kCatalogs;
}

bool takesTint(const BundleCatalog& catalog, std::string_view name) {
    return catalog.kind == CatalogKind::glyphs ||
           (catalog.identifier == kToolkitBundle && name.starts_with("UITabBar"));
}

}  // namespace velmoranth::simulator
