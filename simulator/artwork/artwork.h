// The pictures that the simulated device shows where no theme has one: app icons, the icon shape,
// the wallpaper, and the home screen's furniture (badges, page dots, parts of docks).
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

/// Largest side in pixels of a piece of furniture.
inline constexpr int kMaximumFurniturePixels = 4096;

/// Corner radius of the icon shape, as a share of the icon's side (13.5 points on an icon of 60).
inline constexpr double kIconCornerRadiusShare = 0.225;

/// The stock icon of an app: square, not masked, opaque, `pixels` a side. An identifier without
/// artwork of its own gets a neutral plate with a letter taken from the identifier, so the result
/// is empty only for a size out of range.
std::vector<std::uint8_t> drawStockIcon(const std::string& bundleIdentifier, int pixels);

/// A name for what drawStockIcon() draws: apps without artwork of their own that have one letter
/// look alike and share one.
std::string stockIconLook(const std::string& bundleIdentifier);

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

/// A drawn piece of furniture. Its pixels are its points times the scale, to the nearest pixel and
/// one at least; the drawing fills those pixels, so that its edges stay sharp. Without pixels when
/// a side or the scale is not a positive number, or a side is beyond the cap.
struct FurniturePicture {
    int widthPixels = 0;
    int heightPixels = 0;
    std::vector<std::uint8_t> bgra;

    friend bool operator==(const FurniturePicture&, const FurniturePicture&) = default;
};

/// Height in points of a badge that the platform draws itself; a badge of one digit is as wide.
inline constexpr double kBadgeHeight = 24;

/// The background of a badge, a capsule in system red. In points; a width below the height counts
/// as the height.
FurniturePicture drawBadgeBackground(double width, double scale, double height = kBadgeHeight);

/// The current page's dot is white; the others are white too, and let most of the wallpaper
/// through.
enum class PageIndicatorState { other, current };

/// A page's dot, `side` points across (7 on screens with a home button, 8 on those without).
FurniturePicture drawPageDot(PageIndicatorState state, double side, double scale);

/// The magnifier that stands for the search page among the dots, in a square of `side` points.
FurniturePicture drawSearchDot(PageIndicatorState state, double side, double scale);

/// What darkens a pressed icon: opaque black in the icon shape. How much of it shows is the view's
/// business.
FurniturePicture drawPressedOverlay(double side, double scale);

/// The hairline along the top of a dock that reaches from edge to edge: a single row of pixels.
FurniturePicture drawDockHighlight(double width, double scale);

/// What is drawn over a light material, and what over a dark one.
enum class MaterialTone { light, dark };

/// The upright line between a floating dock's own and its recent icons, 1 point wide with round
/// ends.
FurniturePicture drawDockDivider(MaterialTone material, double height, double scale);

/// How far in points a platter's shadow reaches beyond the platter on every side.
inline constexpr double kPlatterShadowReach = 24;

/// The shadow of a floating platter of `width` by `height` points: the picture is larger by the
/// reach on every side. Nothing is drawn under the platter itself, whose material lets light
/// through. The radius is that of the platter's continuous corners, in points.
FurniturePicture drawPlatterShadow(double width, double height, double cornerRadius, double scale);

}  // namespace velmoranth::simulator
