#include "desktop/imaging/compositing.h"

#include "desktop/imaging/coverage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace velmoranth::desktop::compositing_test {

namespace {

std::uint8_t share(unsigned a, unsigned b) {
    return static_cast<std::uint8_t>((2 * a * b + 255) / 510);
}

// Premultiplied pixels of every kind; a length that is no multiple of what loops work in.
constexpr std::size_t kPixels = 197;

std::vector<std::uint8_t> row(unsigned seed) {
    std::vector<std::uint8_t> bytes(kPixels * 4);
    unsigned state = seed;
    for (std::size_t i = 0; i < kPixels; ++i) {
        state = state * 1664525 + 1013904223;
        const unsigned alpha = i % 3 == 0 ? 255 : state >> 24;
        bytes[i * 4 + 3] = static_cast<std::uint8_t>(alpha);
        for (std::size_t c = 0; c < 3; ++c) {
            state = state * 1664525 + 1013904223;
            bytes[i * 4 + c] = share(state >> 24, alpha);
        }
    }
    return bytes;
}

std::vector<std::uint8_t> factors(std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 83);
    }
    return bytes;
}

}  // namespace

TEST(Compositing, ProductsAreExact) {
    for (unsigned a = 0; a < 256; ++a) {
        for (unsigned b = 0; b < 256; ++b) {
            ASSERT_EQ(multiply255(static_cast<std::uint8_t>(a), static_cast<std::uint8_t>(b)),
                      share(a, b));
        }
    }
}

TEST(Compositing, SourceOver) {
    std::vector<std::uint8_t> destination = row(1);
    const std::vector<std::uint8_t> before = destination;
    const std::vector<std::uint8_t> source = row(2);
    compositeRow(destination.data(), source.data(), kPixels);
    for (std::size_t i = 0; i < destination.size(); ++i) {
        const unsigned alpha = source[i / 4 * 4 + 3];
        ASSERT_EQ(destination[i], source[i] + share(before[i], 255 - alpha)) << i;
    }
}

TEST(Compositing, SourceOverTimesOpacityAndCoverage) {
    const std::vector<std::uint8_t> before = row(1);
    const std::vector<std::uint8_t> source = row(2);
    const std::vector<std::uint8_t> coverage = factors(kPixels);
    for (const unsigned opacity : {0U, 1U, 128U, 255U}) {
        std::vector<std::uint8_t> plain = before;
        std::vector<std::uint8_t> covered = before;
        const auto byte = static_cast<std::uint8_t>(opacity);
        compositeRow(plain.data(), source.data(), kPixels, byte, nullptr);
        compositeRow(covered.data(), source.data(), kPixels, byte, coverage.data());
        for (std::size_t i = 0; i < before.size(); ++i) {
            const unsigned alpha = source[i / 4 * 4 + 3];
            ASSERT_EQ(plain[i],
                      share(source[i], opacity) + share(before[i], 255 - share(alpha, opacity)));
            const unsigned factor = share(coverage[i / 4], opacity);
            ASSERT_EQ(covered[i],
                      share(source[i], factor) + share(before[i], 255 - share(alpha, factor)));
        }
    }
}

// Long runs of one kind, which are not worked out pixel by pixel, and what only just is none.
TEST(Compositing, RunsFollowTheSameRule) {
    constexpr std::uint8_t kAlphas[] = {255, 254, 0, 1, 255, 128};
    constexpr std::uint8_t kShares[] = {255, 0, 254, 1, 255, 77, 0};
    constexpr std::size_t kLength = 1000;
    std::vector<std::uint8_t> source;
    std::vector<std::uint8_t> coverage;
    for (std::size_t i = 0; i < kLength; ++i) {
        const std::uint8_t alpha = kAlphas[i / 70 % 6];
        source.insert(source.end(), {static_cast<std::uint8_t>(i % (alpha + 1U)),
                                     static_cast<std::uint8_t>(alpha / 2), 0, alpha});
        coverage.push_back(kShares[i / 130 % 7]);
    }
    const std::vector<std::uint8_t> before(kLength * 4, 200);
    const std::uint8_t color[4] = {9, 99, 199, 254};
    for (const unsigned opacity : {255U, 254U, 100U, 0U}) {
        const auto byte = static_cast<std::uint8_t>(opacity);
        std::vector<std::uint8_t> plain = before;
        std::vector<std::uint8_t> covered = before;
        std::vector<std::uint8_t> colored = before;
        compositeRow(plain.data(), source.data(), kLength, byte, nullptr);
        compositeRow(covered.data(), source.data(), kLength, byte, coverage.data());
        compositeColorRow(colored.data(), color, kLength, coverage.data());
        for (std::size_t i = 0; i < kLength * 4; ++i) {
            const auto expected = [&](unsigned value, unsigned alpha, unsigned factor) {
                return share(value, factor) + share(200, 255 - share(alpha, factor));
            };
            const unsigned alpha = source[i / 4 * 4 + 3];
            const unsigned factor = share(coverage[i / 4], opacity);
            ASSERT_EQ(plain[i], expected(source[i], alpha, opacity)) << i;
            ASSERT_EQ(covered[i], expected(source[i], alpha, factor)) << i;
            ASSERT_EQ(colored[i], expected(color[i % 4], color[3], coverage[i / 4])) << i;
        }
    }
}

TEST(Compositing, OneColorOverARow) {
    const std::uint8_t color[4] = {10, 20, 30, 40};
    const std::vector<std::uint8_t> before = row(3);
    std::vector<std::uint8_t> plain = before;
    compositeColorRow(plain.data(), color, kPixels, nullptr);
    const std::vector<std::uint8_t> coverage = factors(kPixels);
    std::vector<std::uint8_t> covered = before;
    compositeColorRow(covered.data(), color, kPixels, coverage.data());
    for (std::size_t i = 0; i < before.size(); ++i) {
        ASSERT_EQ(plain[i], color[i % 4] + share(before[i], 215));
        const unsigned factor = coverage[i / 4];
        ASSERT_EQ(covered[i],
                  share(color[i % 4], factor) + share(before[i], 255 - share(40, factor)));
    }
}

TEST(Compositing, RowsTimesSamples) {
    const std::vector<std::uint8_t> source = row(4);
    for (const std::size_t stride : {1U, 2U, 3U, 4U, 6U, 8U}) {
        const std::vector<std::uint8_t> samples = factors(kPixels * stride);
        std::vector<std::uint8_t> hidden(source.size());
        hideRow(hidden.data(), source.data(), kPixels, samples.data(), stride);
        for (std::size_t i = 0; i < source.size(); ++i) {
            ASSERT_EQ(hidden[i], share(source[i], 255U - samples[i / 4 * stride])) << stride;
        }
    }
    const std::vector<std::uint8_t> coverage = factors(kPixels);
    std::vector<std::uint8_t> shown(source.size());
    multiplyRow(shown.data(), source.data(), kPixels, coverage.data());
    for (std::size_t i = 0; i < source.size(); ++i) {
        ASSERT_EQ(shown[i], share(source[i], coverage[i / 4]));
    }
    std::vector<std::uint8_t> product = coverage;
    multiplyCoverage(product.data(), source.data(), kPixels);
    for (std::size_t i = 0; i < kPixels; ++i) {
        ASSERT_EQ(product[i], share(coverage[i], source[i]));
    }
}

// Each component by itself, and nothing of one gets into the next.
TEST(Compositing, ColorAboveAlphaSaturates) {
    for (std::size_t component = 0; component < 3; ++component) {
        std::vector<std::uint8_t> destination(kPixels * 4, 100);
        std::vector<std::uint8_t> source(kPixels * 4, 0);
        for (std::size_t i = 0; i < kPixels; ++i) {
            source[i * 4 + component] = static_cast<std::uint8_t>(i);
        }
        compositeRow(destination.data(), source.data(), kPixels);
        for (std::size_t i = 0; i < destination.size(); ++i) {
            ASSERT_EQ(destination[i], std::min(source[i] + 100, 255)) << component << ", " << i;
        }
    }
}

TEST(Compositing, ARowOverItself) {
    const std::vector<std::uint8_t> before = row(5);
    const std::vector<std::uint8_t> coverage = factors(kPixels);
    std::vector<std::uint8_t> over = before;
    compositeRow(over.data(), over.data(), kPixels);
    std::vector<std::uint8_t> multiplied = before;
    multiplyRow(multiplied.data(), multiplied.data(), kPixels, coverage.data());
    for (std::size_t i = 0; i < before.size(); ++i) {
        ASSERT_EQ(over[i], before[i] + share(before[i], 255U - before[i / 4 * 4 + 3])) << i;
        ASSERT_EQ(multiplied[i], share(before[i], coverage[i / 4])) << i;
    }
}

// What is written ends with the row.
TEST(Compositing, NothingBehindARowChanges) {
    const std::vector<std::uint8_t> source = row(6);
    const std::vector<std::uint8_t> coverage = factors(kPixels);
    const std::uint8_t color[4] = {10, 20, 30, 40};
    for (std::size_t pixels = 0; pixels < 140; ++pixels) {
        const auto behindIsKept = [&](const auto& write) {
            std::vector<std::uint8_t> destination(kPixels * 4, 77);
            write(destination.data());
            return std::all_of(destination.begin() + static_cast<std::ptrdiff_t>(pixels * 4),
                               destination.end(), [](std::uint8_t byte) { return byte == 77; });
        };
        EXPECT_TRUE(behindIsKept([&](auto* to) { compositeRow(to, source.data(), pixels); }));
        EXPECT_TRUE(behindIsKept(
            [&](auto* to) { compositeRow(to, source.data(), pixels, 9, coverage.data()); }));
        EXPECT_TRUE(behindIsKept([&](auto* to) { compositeColorRow(to, color, pixels, nullptr); }));
        EXPECT_TRUE(
            behindIsKept([&](auto* to) { compositeColorRow(to, color, pixels, coverage.data()); }));
        EXPECT_TRUE(behindIsKept(
            [&](auto* to) { multiplyRow(to, source.data(), pixels, coverage.data()); }));
        EXPECT_TRUE(behindIsKept(
            [&](auto* to) { hideRow(to, source.data(), pixels, coverage.data(), 1); }));
    }
}

TEST(Coverage, EdgesBetweenPixelsAreAreaShares) {
    const std::vector<std::uint8_t> coverage =
        coverageOf({.left = 0.25, .top = 0.5, .right = 2, .bottom = 2.25}, 3, 3);
    const std::vector<std::uint8_t> expected = {96, 128, 0, 191, 255, 0, 48, 64, 0};
    EXPECT_EQ(coverage, expected);
}

TEST(Coverage, RoundCornersCoverAQuarterOfADisc) {
    const std::vector<std::uint8_t> coverage = coverageOf(
        {.left = 0, .top = 0, .right = 40, .bottom = 40, .radiusX = 20, .radiusY = 20}, 40, 40);
    const double sum = std::accumulate(coverage.begin(), coverage.end(), 0.0) / 255;
    EXPECT_NEAR(sum, 3.14159265 * 400, 5);
    EXPECT_EQ(coverage[0], 0);
    EXPECT_EQ(coverage[20 * 40 + 20], 255);
    // Each pixel's share of the disc, counted at 32 × 32 points.
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            int inside = 0;
            for (int point = 0; point < 1024; ++point) {
                const int row = point / 32;
                const double dx = x + (point % 32 + 0.5) / 32 - 20;
                const double dy = y + (row + 0.5) / 32 - 20;
                inside += dx * dx + dy * dy < 400 ? 1 : 0;
            }
            ASSERT_NEAR(coverage[static_cast<std::size_t>(y * 40 + x)], inside * 255 / 1024.0, 12)
                << x << ", " << y;
        }
    }
}

TEST(Coverage, RadiiAreLimitedToHalfOfTheSides) {
    EXPECT_EQ(coverageOf({.right = 20, .bottom = 20, .radiusX = 1e9, .radiusY = 1e9}, 20, 20),
              coverageOf({.right = 20, .bottom = 20, .radiusX = 10, .radiusY = 10}, 20, 20));
    EXPECT_EQ(coverageOf({.right = 2, .bottom = 2, .radiusX = NAN, .radiusY = NAN}, 2, 2),
              std::vector<std::uint8_t>(4, 255));
}

TEST(Coverage, BlurKeepsTheSumAndHasTheDeviation) {
    for (const double deviation : {1.0, 2.0, 3.0, 5.5, 10.0}) {
        constexpr std::size_t kSide = 141;
        // A bar, so that bytes have room for what a blur makes of it.
        std::vector<std::uint8_t> coverage(kSide * kSide);
        for (std::size_t y = 0; y < kSide; ++y) {
            for (std::size_t x = 60; x < 81; ++x) {
                coverage[y * kSide + x] = 255;
            }
        }
        blurCoverage(coverage, kSide, kSide, deviation);
        double sum = 0;
        double mean = 0;
        double square = 0;
        for (std::size_t x = 0; x < kSide; ++x) {
            const double value = coverage[70 * kSide + x];
            const double place = static_cast<double>(x) - 70;
            sum += value;
            mean += value * place;
            square += value * place * place;
        }
        EXPECT_NEAR(sum, 255 * 21, 255 * 21 * 0.02) << deviation;
        EXPECT_NEAR(mean / sum, 0, 0.51) << deviation;
        const double bar = (21.0 * 21.0 - 1) / 12;
        EXPECT_NEAR(std::sqrt(std::max(square / sum - bar, 0.0)), deviation, 0.12 * deviation + 0.2)
            << deviation;
    }
}

TEST(Coverage, BlurWithoutADeviationDoesNothing) {
    std::vector<std::uint8_t> coverage = factors(30);
    const std::vector<std::uint8_t> before = coverage;
    for (const double deviation : {0.0, -1.0, static_cast<double>(NAN)}) {
        blurCoverage(coverage, 6, 5, deviation);
        EXPECT_EQ(coverage, before);
    }
    blurCoverage(coverage, 100, 100, 2);  // fewer bytes than said
    EXPECT_EQ(coverage, before);
    blurCoverage(coverage, 6, 5, 1e300);
    EXPECT_LE(coverage[0], 5);
}

}  // namespace velmoranth::desktop::compositing_test
