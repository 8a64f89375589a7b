#include "cli/comparison.h"

#include "desktop/imaging/pixels.h"
#include "desktop/text/text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace velmoranth::cli {
namespace {

// A light ground, and gray that reads well on it without shouting.
constexpr std::uint8_t kGround[4] = {0xF4, 0xF2, 0xF2, 0xFF};  // B, G, R, A
const desktop::TextStyle kCaptionStyle{.weight = desktop::FontWeight::medium,
                                       .size = 12,
                                       .color = {0.43, 0.43, 0.45, 1},
                                       .alignment = desktop::TextAlignment::center};

std::size_t pixels(double points, double scale) {
    return static_cast<std::size_t>(std::lround(points * scale));
}

void place(simulator::Picture& target, const simulator::Picture& source, std::size_t x,
           std::size_t y) {
    for (std::size_t row = 0; row < source.height; ++row) {
        const std::uint8_t* const from = source.pixels.data() + row * source.width * 4;
        std::copy_n(from, source.width * 4,
                    target.pixels.data() + ((y + row) * target.width + x) * 4);
    }
}

}  // namespace

simulator::Picture sideBySide(const Captioned& left, const Captioned& right) {
    const double scale = left.picture.scale;
    const std::size_t gap = pixels(kComparisonGap, scale);
    const std::size_t caption = pixels(kCaptionHeight, scale);
    simulator::Picture result;
    result.scale = scale;
    result.width = left.picture.width + gap + right.picture.width;
    result.height = caption + std::max(left.picture.height, right.picture.height);
    result.pixels.resize(result.width * result.height * 4);
    for (std::size_t i = 0; i < result.pixels.size(); ++i) {
        result.pixels[i] = kGround[i % 4];
    }
    place(result, left.picture, 0, caption);
    place(result, right.picture, left.picture.width + gap, caption);

    const desktop::MutablePixels memory{result.pixels.data(), result.width, result.height,
                                        result.width * 4};
    const auto write = [&](const std::string& text, std::size_t x, std::size_t width) {
        desktop::drawText(memory, text, kCaptionStyle,
                          {{static_cast<double>(x) / scale, 0},
                           {static_cast<double>(width) / scale, kCaptionHeight}},
                          scale);
    };
    write(left.caption, 0, left.picture.width);
    write(right.caption, left.picture.width + gap, right.picture.width);
    return result;
}

}  // namespace velmoranth::cli
