// A device for the tests of the icon effects, with one active theme and empty caches.
#pragma once

#include "imaging/icon_effects.h"
#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace velmoranth::tests {

class IconEffectsOnDevice : public testing::Test {
  protected:
    void SetUp() override {
        imaging::IconEffects::clearIconOverlay();
        imaging::IconEffects::clearShadowImg();
        device.activeThemes({"A"});
        device.journal.clear();
    }

    void makePad() { device.idiom.idiom = platform::kUserInterfaceIdiomPad; }

    static std::string inTheme(const std::string& path, const std::string& theme = "A") {
        return "/Library/Themes/" + theme + "/" + path;
    }

    TestDevice device;
};

// a × b over 255, rounded to nearest: 255 is odd, so nothing lies half way.
inline std::uint8_t share(unsigned a, unsigned b) {
    return static_cast<std::uint8_t>((2 * a * b + 255) / 510);
}

inline Pixel times(const Pixel& pixel, unsigned factor) {
    return {share(pixel.red, factor), share(pixel.green, factor), share(pixel.blue, factor),
            share(pixel.alpha, factor)};
}

// Premultiplied source over premultiplied destination.
inline Pixel over(const Pixel& source, const Pixel& destination) {
    const Pixel rest = times(destination, 255U - source.alpha);
    const auto sum = [](unsigned a, unsigned b) { return static_cast<std::uint8_t>(a + b); };
    return {sum(source.red, rest.red), sum(source.green, rest.green), sum(source.blue, rest.blue),
            sum(source.alpha, rest.alpha)};
}

inline Pixel premultiplied(const Pixel& pixel) {
    return {share(pixel.red, pixel.alpha), share(pixel.green, pixel.alpha),
            share(pixel.blue, pixel.alpha), pixel.alpha};
}

// Colours and alphas of all kinds, straight alpha.
inline Pixels translucentPattern(std::size_t width, std::size_t height) {
    Pixels pixels = pattern(width, height);
    for (std::size_t i = 0; i < pixels.values.size(); ++i) {
        pixels.values[i].alpha = static_cast<std::uint8_t>(i * 37);
    }
    return pixels;
}

}  // namespace velmoranth::tests
