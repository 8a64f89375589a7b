// The home screen's furniture: flat, white, black or red, so that what a theme puts in its place is
// what the eye finds.
#include "simulator/artwork/artwork.h"
#include "simulator/artwork/blank_picture.h"
#include "simulator/artwork/pen.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace velmoranth::simulator {
namespace {

constexpr Ink kSystemRed{0xFF3B30};
constexpr Ink kWhite{0xFFFFFF};
constexpr Ink kBlack{0x000000};

constexpr double kOtherPageOpacity = 0.4;
constexpr double kHighlightOpacity = 0.25;
constexpr double kDividerOpacity = 0.2;
constexpr double kDividerWidth = 1;  // points

// The shadow's softness as a standard deviation, its fall and its darkest value.
constexpr double kShadowDeviation = 8;  // points
constexpr double kShadowFall = 4;       // points
constexpr double kShadowOpacity = 0.25;

// With a pen whose unit is a pixel, so that shapes end where the picture does.
Pen pixelPen(FurniturePicture& picture) {
    return Pen(picture.bgra, picture.widthPixels, picture.heightPixels, picture.widthPixels,
               picture.heightPixels);
}

// The whole picture with its shorter side rounded to a half circle at both ends.
void fillCapsule(FurniturePicture& picture, Ink ink) {
    if (picture.bgra.empty()) {
        return;
    }
    Pen pen = pixelPen(picture);
    pen.roundRect(0, 0, picture.widthPixels, picture.heightPixels,
                  std::min(picture.widthPixels, picture.heightPixels) / 2.0)
        .fill(ink);
}

Ink indicatorInk(PageIndicatorState state) {
    return state == PageIndicatorState::current ? kWhite : faded(kWhite, kOtherPageOpacity);
}

// How far a point lies outside a rectangle with round corners (inside: below zero), both around the
// origin.
double distanceToRoundRect(double x, double y, double halfWidth, double halfHeight, double radius) {
    const double across = std::abs(x) - (halfWidth - radius);
    const double down = std::abs(y) - (halfHeight - radius);
    return std::hypot(std::max(across, 0.0), std::max(down, 0.0)) +
           std::min(std::max(across, down), 0.0) - radius;
}

// Black at `opacity`, premultiplied.
void setBlack(std::uint8_t* bgra, double opacity) {
    bgra[3] = static_cast<std::uint8_t>(std::lround(opacity * 255));
}

}  // namespace

FurniturePicture drawBadgeBackground(double width, double scale, double height) {
    FurniturePicture picture =
        blankPicture(pixelsFor(std::max(height, width), scale), pixelsFor(height, scale));
    fillCapsule(picture, kSystemRed);
    return picture;
}

FurniturePicture drawPageDot(PageIndicatorState state, double side, double scale) {
    const int pixels = pixelsFor(side, scale);
    FurniturePicture picture = blankPicture(pixels, pixels);
    fillCapsule(picture, indicatorInk(state));
    return picture;
}

FurniturePicture drawSearchDot(PageIndicatorState state, double side, double scale) {
    // Hundredths. Lens and handle as one path: a translucent ink would show where two overlap.
    constexpr double kWidth = 16;
    constexpr double kMiddle = 40;
    constexpr double kRadius = 31;
    constexpr double kOnRim = kMiddle + kRadius * std::numbers::sqrt2 / 2;
    constexpr double kEnd = 91;
    return drawnPicture(side, side, scale, 100, 100, [&](Pen& pen) {
        pen.circle(kMiddle, kMiddle, kRadius)
            .line(kOnRim, kOnRim, kEnd, kEnd)
            .stroke(indicatorInk(state), kWidth);
    });
}

FurniturePicture drawPressedOverlay(double side, double scale) {
    const int pixels = pixelsFor(side, scale);
    FurniturePicture picture = blankPicture(pixels, pixels);
    for (std::size_t pixel = 0; pixel < picture.bgra.size(); pixel += 4) {
        setBlack(&picture.bgra[pixel], 1);
    }
    applyIconShape(picture.bgra, pixels);
    return picture;
}

FurniturePicture drawDockHighlight(double width, double scale) {
    FurniturePicture picture = blankPicture(pixelsFor(width, scale), 1);
    if (!picture.bgra.empty()) {
        Pen pen = pixelPen(picture);
        pen.roundRect(0, 0, picture.widthPixels, 1, 0).fill(faded(kWhite, kHighlightOpacity));
    }
    return picture;
}

FurniturePicture drawDockDivider(MaterialTone material, double height, double scale) {
    FurniturePicture picture =
        blankPicture(pixelsFor(kDividerWidth, scale), pixelsFor(height, scale));
    fillCapsule(picture, faded(material == MaterialTone::dark ? kWhite : kBlack, kDividerOpacity));
    return picture;
}

FurniturePicture drawPlatterShadow(double width, double height, double cornerRadius, double scale) {
    const int reach = pixelsFor(kPlatterShadowReach, scale);
    const int platterWidth = pixelsFor(width, scale);
    const int platterHeight = pixelsFor(height, scale);
    if (reach == 0 || platterWidth == 0 || platterHeight == 0 ||
        std::max(platterWidth, platterHeight) > kMaximumFurniturePixels - 2 * reach) {
        return {};
    }
    FurniturePicture picture = blankPicture(platterWidth + 2 * reach, platterHeight + 2 * reach);
    const std::vector<std::uint8_t> platter =
        continuousCornerCoverage(platterWidth, platterHeight, cornerRadius * scale);
    const double halfWidth = platterWidth / 2.0;
    const double halfHeight = platterHeight / 2.0;
    const double radius =
        cornerRadius > 0 ? std::min({cornerRadius * scale, halfWidth, halfHeight}) : 0.0;
    const double softness = kShadowDeviation * scale * std::numbers::sqrt2;
    for (int y = 0; y < picture.heightPixels; ++y) {
        for (int x = 0; x < picture.widthPixels; ++x) {
            const int column = x - reach;
            const int row = y - reach;
            double shown = 1;
            if (column >= 0 && column < platterWidth && row >= 0 && row < platterHeight) {
                const auto covered =
                    static_cast<std::size_t>(row) * static_cast<std::size_t>(platterWidth) +
                    static_cast<std::size_t>(column);
                shown = 1 - platter[covered] / 255.0;
            }
            // Most of the picture, and what takes longest to find is worth nothing there.
            if (shown == 0) {
                continue;
            }
            const double distance = distanceToRoundRect(
                x + 0.5 - reach - halfWidth, y + 0.5 - reach - halfHeight - kShadowFall * scale,
                halfWidth, halfHeight, radius);
            // A straight edge, blurred: half of it at the edge.
            const double opacity = kShadowOpacity * std::erfc(distance / softness) / 2 * shown;
            const auto pixel =
                static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.widthPixels) +
                static_cast<std::size_t>(x);
            setBlack(&picture.bgra[pixel * 4], opacity);
        }
    }
    return picture;
}

}  // namespace velmoranth::simulator
