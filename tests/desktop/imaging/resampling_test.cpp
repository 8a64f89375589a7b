#include "desktop/imaging/resampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoranth::desktop::test_images::resampling_test {

namespace {

// Premultiplied, steep: neighbours are far apart, so that the curves between them overshoot.
std::vector<std::uint8_t> steep(std::size_t pixels) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < pixels; ++i) {
        const auto alpha = static_cast<std::uint8_t>(i % 5 == 0 ? 0 : i * 97 % 256);
        bytes.insert(bytes.end(), {alpha, static_cast<std::uint8_t>(alpha / 3),
                                   static_cast<std::uint8_t>(i % 2 == 0 ? alpha : 0), alpha});
    }
    return bytes;
}

double catmullRom(double distance) {
    const double x = std::abs(distance);
    if (x >= 2) {
        return 0;
    }
    return x < 1 ? 1.5 * x * x * x - 2.5 * x * x + 1 : -0.5 * x * x * x + 2.5 * x * x - 4 * x + 2;
}

// The weight of a source pixel for a target pixel on an axis that goes from `size` to `length`.
double cubicWeight(std::size_t target, std::size_t source, std::size_t size, double length) {
    const double position =
        (static_cast<double>(target) + 0.5) * static_cast<double>(size) / length - 0.5;
    double weight = 0;
    for (int tap = static_cast<int>(std::floor(position)) - 1, i = 0; i < 4; ++i, ++tap) {
        if (std::clamp(tap, 0, static_cast<int>(size) - 1) == static_cast<int>(source)) {
            weight += catmullRom(position - tap);
        }
    }
    return weight;
}

double areaWeight(std::size_t target, std::size_t source, std::size_t size, double length) {
    const double step = static_cast<double>(size) / length;
    const double from = static_cast<double>(target) * step;
    const auto left = static_cast<double>(source);
    return std::max(std::min(from + step, left + 1) - std::max(from, left), 0.0) / step;
}

struct Case {
    std::size_t width;
    std::size_t height;
    std::size_t targetWidth;
    std::size_t targetHeight;
};

void expectTheRule(const Case& size) {
    const std::vector<std::uint8_t> bytes = steep(size.width * size.height);
    const auto weight = [](std::size_t to, std::size_t from, std::size_t source,
                           std::size_t target) {
        const auto length = static_cast<double>(target);
        return target < source ? areaWeight(to, from, source, length)
                               : cubicWeight(to, from, source, length);
    };
    Resampler resampler({bytes.data(), size.width, size.height, size.width * 4},
                        {.end = static_cast<double>(size.targetWidth),
                         .sourceSize = size.width,
                         .last = static_cast<std::int64_t>(size.targetWidth)},
                        {.end = static_cast<double>(size.targetHeight),
                         .sourceSize = size.height,
                         .last = static_cast<std::int64_t>(size.targetHeight)});
    std::size_t checked = 0;
    for (std::size_t y = 0; y < size.targetHeight; ++y) {
        const std::uint8_t* const row = resampler.row(y);
        for (std::size_t x = 0; x < size.targetWidth; ++x) {
            double sums[4] = {};
            for (std::size_t v = 0; v < size.height; ++v) {
                for (std::size_t u = 0; u < size.width; ++u) {
                    const double share = weight(x, u, size.width, size.targetWidth) *
                                         weight(y, v, size.height, size.targetHeight);
                    for (std::size_t c = 0; c < 4; ++c) {
                        sums[c] += share * bytes[(v * size.width + u) * 4 + c];
                    }
                }
            }
            for (std::size_t c = 0; c < 4; ++c) {
                const double value =
                    std::min(std::clamp(sums[c], 0.0, 255.0), std::clamp(sums[3], 0.0, 255.0));
                // Between two values either is right.
                if (std::abs(value - std::floor(value) - 0.5) > 1e-3) {
                    ASSERT_EQ(row[x * 4 + c], std::lround(value)) << x << ' ' << y << ' ' << c;
                    ++checked;
                }
            }
        }
    }
    EXPECT_GT(checked, size.targetWidth * size.targetHeight * 7 / 2);
}

}  // namespace

TEST(Resampling, EnlargingIsCatmullRomWithinTheAlpha) {
    expectTheRule({7, 6, 31, 23});
}

TEST(Resampling, ShrinkingAveragesAreas) {
    expectTheRule({31, 23, 7, 6});
}

TEST(Resampling, EachAxisIsForItself) {
    expectTheRule({7, 23, 31, 5});
    expectTheRule({31, 6, 8, 25});
    expectTheRule({2, 3, 9, 10});
}

// What is seen of a picture is made of the columns behind it alone, whichever way round they lie.
TEST(Resampling, PartOfTheRowIsThatPartOfTheWholeOne) {
    constexpr std::size_t kSize = 13;
    const std::vector<std::uint8_t> bytes = steep(kSize * kSize);
    const PixelView source{bytes.data(), kSize, kSize, kSize * 4};
    std::size_t compared = 0;
    for (const double end : {5.0, 9.5, 13.0, 31.0}) {
        for (const bool flipped : {false, true}) {
            const Axis down{.end = end, .sourceSize = kSize, .last = 5};
            const auto across = [&](std::int64_t first, std::int64_t last) {
                return Axis{.end = end,
                            .flipped = flipped,
                            .sourceSize = kSize,
                            .first = first,
                            .last = last};
            };
            const auto all = static_cast<std::int64_t>(std::ceil(end));
            Resampler whole(source, across(0, all), down);
            for (std::int64_t first = 0; first < all; ++first) {
                for (std::int64_t last = first + 1; last <= all; ++last) {
                    Resampler part(source, across(first, last), down);
                    for (std::size_t y = 0; y < 5; ++y) {
                        const std::uint8_t* const expected = whole.row(y) + first * 4;
                        const std::uint8_t* const row = part.row(y);
                        ASSERT_TRUE(std::equal(row, row + (last - first) * 4, expected))
                            << end << (flipped ? " flipped " : " ") << first << ".." << last
                            << " row " << y;
                        ++compared;
                    }
                }
            }
        }
    }
    EXPECT_GT(compared, 5U * 2 * (15 + 55 + 91 + 496) - 1);
}

}  // namespace velmoranth::desktop::test_images::resampling_test
