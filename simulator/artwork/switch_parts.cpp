// The two parts of a switch.
#include "simulator/artwork/blank_picture.h"
#include "simulator/artwork/toolkit_artwork.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace velmoranth::simulator {
namespace {

constexpr Ink kWhite{0xFFFFFF};

// The colours changed with the system that brought the dark appearance.
constexpr int kFirstWithFilledOff = 13;
constexpr double kRing = 2;  // points

// The knob's shadows: how far down, how soft (a standard deviation) and how dark, in points.
struct KnobShadow {
    double fall, deviation, opacity;
};

constexpr std::array kKnobShadows{KnobShadow{3, 4, 0.15}, KnobShadow{3, 0.5, 0.06},
                                  KnobShadow{0, 0.5, 0.06}};

// Share of a blurred half plane's darkness at a distance from its edge.
double falloff(double distance, double deviation) {
    return 0.5 * std::erfc(distance / (deviation * std::numbers::sqrt2));
}

void drawKnobShadows(FurniturePicture& picture, double middle, double radius,
                     double pixelsPerPoint) {
    std::uint8_t* pixel = picture.bgra.data();
    for (int y = 0; y < picture.heightPixels; ++y) {
        for (int x = 0; x < picture.widthPixels; ++x, pixel += 4) {
            const double across = (x + 0.5) / pixelsPerPoint - middle;
            const double down = (y + 0.5) / pixelsPerPoint - middle;
            double light = 1;
            for (const KnobShadow& shadow : kKnobShadows) {
                const double distance = std::hypot(across, down - shadow.fall) - radius;
                light *= 1 - shadow.opacity * falloff(distance, shadow.deviation);
            }
            pixel[3] = static_cast<std::uint8_t>(std::lround((1 - light) * 255));
        }
    }
}

}  // namespace

FurniturePicture drawSwitchKnob(double scale) {
    constexpr double kSide = kSwitchKnobSide + 2 * kSwitchKnobShadowReach;
    constexpr double kRadius = kSwitchKnobSide / 2;
    const int pixels = pixelsFor(kSide, scale);
    FurniturePicture picture = blankPicture(pixels, pixels);
    if (!picture.bgra.empty()) {
        drawKnobShadows(picture, kSide / 2, kRadius, pixels / kSide);
        Pen pen(picture.bgra, pixels, pixels, kSide, kSide);
        pen.circle(kSide / 2, kSide / 2, kRadius).fill(kWhite);
    }
    return picture;
}

FurniturePicture drawSwitchTrack(bool isOn, int systemMajor, double scale) {
    const bool isFilledOff = systemMajor >= kFirstWithFilledOff;
    return drawnPicture(kSwitchWidth, kSwitchHeight, scale, kSwitchWidth, kSwitchHeight,
                        [&](Pen& pen) {
                            const auto capsule = [&](double inset, Ink ink) {
                                pen.roundRect(inset, inset, kSwitchWidth - 2 * inset,
                                              kSwitchHeight - 2 * inset, kSwitchHeight / 2 - inset)
                                    .fill(ink);
                            };
                            if (isOn) {
                                capsule(0, {isFilledOff ? 0x34C759U : 0x4CD964U});
                            } else if (isFilledOff) {
                                capsule(0, {0xE9E9EA});
                            } else {
                                capsule(0, {0xE5E5EA});
                                capsule(kRing, kWhite);
                            }
                        });
}

}  // namespace velmoranth::simulator
