// The pictures that the simulated device shows where no theme has one: app icons, the icon shape,
// the wallpaper.
//
// Everything is drawn in code and in vectors, so it is sharp at any size, and it depends on no file
// or font of the machine: the same call gives the same bytes everywhere. Every picture is a plain
// buffer, `width * 4` bytes a row, top row first, premultiplied BGRA, 8 bits each. A size that is
// not positive or is beyond the stated cap gives an empty buffer. All functions are pure and may be
// called from any thread.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

/// Largest side in pixels of an icon or of an icon's shape.
inline constexpr int kMaximumIconPixels = 4096;

/// Largest side in pixels of a wallpaper and of a shape with continuous corners.
inline constexpr int kMaximumWallpaperPixels = 8192;

/// Corner radius of the icon shape, as a share of the icon's side (13.5 points on an icon of 60).
inline constexpr double kIconCornerRadiusShare = 0.225;

/// The stock icon of an app: square, not masked, opaque, `pixels` a side. An identifier without
/// artwork of its own gets a neutral plate with a letter taken from the identifier, so the result
/// is empty only for a size out of range.
std::vector<std::uint8_t> drawStockIcon(const std::string& bundleIdentifier, int pixels);

/// Whether there is artwork made for this identifier. Exact spelling, as the platform has it.
bool hasStockIcon(std::string_view bundleIdentifier);

/// Every identifier that has artwork, the platform's own apps first, in the order in which a fresh
/// device shows them.
std::span<const std::string_view> stockIconIdentifiers();

/// The clock icon without its hands, for a clock whose hands are layers of their own; otherwise as
/// `drawStockIcon`.
std::vector<std::uint8_t> drawClockFace(int pixels);

/// An opaque wallpaper that leaves white labels readable all over.
std::vector<std::uint8_t> drawWallpaper(int widthPixels, int heightPixels);

/// Coverage (0 outside, 255 inside) of the icon shape, one byte a pixel, `pixels` bytes a row.
std::vector<std::uint8_t> iconShapeCoverage(int pixels);

/// Coverage of a rectangle with continuous corners, one byte a pixel, `widthPixels` bytes a row:
/// docks, folder plates, badges. The radius is in pixels; it is clamped to what the shorter side
/// can hold, and below zero counts as zero.
std::vector<std::uint8_t> continuousCornerCoverage(int widthPixels, int heightPixels,
                                                   double radius);

/// Multiplies a square premultiplied BGRA image by the icon shape, in place. A buffer that does not
/// hold exactly `pixels * pixels` pixels is left as it is.
void applyIconShape(std::vector<std::uint8_t>& bgra, int pixels);

}  // namespace velmoranth::simulator
