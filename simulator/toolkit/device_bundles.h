// The bundles of a simulated device whose catalogs hold interface images, and what is in them under
// which name: one table.
#pragma once

#include "simulator/artwork/artwork.h"
#include "simulator/device.h"
#include "simulator/toolkit/class_rows.h"

#include <span>
#include <string_view>

namespace velmoranth::simulator {

enum class CatalogKind {
    images,  // each in its own size
    glyphs,  // in the size that is asked for
};

// A bundle has a row for each kind that it holds.
struct BundleCatalog {
    std::string_view identifier;
    std::string_view path;  // on the device
    CatalogKind kind;
    Systems systems;
    std::span<const std::string_view> (*names)();
    // `side` in points is that of a glyph; images do not look at it. Without pixels for a name that
    // is not in names().
    FurniturePicture (*draw)(std::string_view name, double side, double scale);
};

[[nodiscard]] std::span<const BundleCatalog> bundleCatalogs();

inline constexpr std::string_view kToolkitBundle = "com.apple.UIKitCore";
inline constexpr std::string_view kGlyphsBundle = "com.apple.CoreGlyphs";
inline constexpr std::string_view kPreferencesBundle = "com.apple.Preferences";
inline constexpr std::string_view kWeatherBundle = "com.apple.weather-framework";
inline constexpr std::string_view kWeatherAppBundle = "com.apple.weather";
inline constexpr std::string_view kHomeScreenBundle = "com.apple.springboard";
// The ordinary app of the device.
inline constexpr std::string_view kAppBundle = "com.example.Workbench";

}  // namespace velmoranth::simulator
