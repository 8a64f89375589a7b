#include "desktop/text/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::desktop::text_test {

namespace {

using platform::Rect;

// Memory to draw in, and where ink is in it.
class Paper {
  public:
    Paper(std::size_t width, std::size_t height)
        : width_(width), height_(height), bytes(width * height * 4) {}

    void draw(const std::string& text, const TextStyle& style, const Rect& box, double scale = 1) {
        drawText({bytes.data(), width_, height_, width_ * 4}, text, style, box, scale);
    }

    [[nodiscard]] unsigned alpha(std::size_t x, std::size_t y) const {
        return bytes.at((y * width_ + x) * 4 + 3);
    }

    // First column (or row) with ink, and the one after the last; both 0 when there is none.
    [[nodiscard]] std::pair<std::size_t, std::size_t> columns() const { return extent(true); }

    [[nodiscard]] std::pair<std::size_t, std::size_t> rows() const { return extent(false); }

    [[nodiscard]] double ink() const {
        double sum = 0;
        for (std::size_t i = 3; i < bytes.size(); i += 4) {
            sum += bytes[i];
        }
        return sum / 255;
    }

  private:
    [[nodiscard]] std::pair<std::size_t, std::size_t> extent(bool ofColumns) const {
        std::size_t first = std::numeric_limits<std::size_t>::max();
        std::size_t last = 0;
        for (std::size_t y = 0; y < height_; ++y) {
            for (std::size_t x = 0; x < width_; ++x) {
                if (alpha(x, y) > 8) {
                    const std::size_t place = ofColumns ? x : y;
                    first = std::min(first, place);
                    last = std::max(last, place + 1);
                }
            }
        }
        return last == 0 ? std::pair<std::size_t, std::size_t>{} : std::pair{first, last};
    }

    std::size_t width_;
    std::size_t height_;

  public:
    std::vector<std::uint8_t> bytes;
};

constexpr Rect kBox{{0, 0}, {200, 40}};

}  // namespace

TEST(MeasureText, GrowsWithTextAndSize) {
    const TextStyle style;
    const platform::Size one = measureText("M", style);
    const platform::Size two = measureText("MM", style);
    EXPECT_GT(one.width, 8);
    EXPECT_NEAR(two.width, 2 * one.width, 0.5);
    EXPECT_EQ(one.height, two.height);
    EXPECT_GE(one.height, style.size);
    const platform::Size large = measureText("M", {.size = 34});
    EXPECT_NEAR(large.width, 2 * one.width, 0.1);
    EXPECT_NEAR(large.height, 2 * one.height, 0.1);
    EXPECT_GT(measureText("M", {.weight = FontWeight::black}).width, one.width);
}

TEST(MeasureText, IsCappedAtTheWidth) {
    const std::string text = "A rather long line of text";
    const double whole = measureText(text, {}).width;
    EXPECT_LE(measureText(text, {}, 60).width, 60);
    EXPECT_GT(measureText(text, {}, 60).width, 30);
    EXPECT_NEAR(measureText(text, {}, whole + 1).width, whole, 0.01);
    for (const double width : {0.0, -5.0, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(measureText(text, {}, width).width, whole) << width;
    }
}

TEST(MeasureText, NothingHasNoSize) {
    EXPECT_EQ(measureText("", {}), platform::Size{});
    for (const double size : {0.0, -1.0, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(measureText("x", {.size = size}), platform::Size{}) << size;
    }
    EXPECT_LT(measureText("x", {.size = 1e300}).width, 1e5);
}

TEST(MeasureText, LineEndsAreBlanksOfOneLine) {
    const double height = measureText("ab", {}).height;
    for (const char* text : {"a\nb", "a\r\nb", "a\rb", "a\u2028b", "a\u2029b", "\n"}) {
        EXPECT_NEAR(measureText(text, {}).height, height, 0.01) << text;
    }
    EXPECT_EQ(measureText("a\nb", {}).width, measureText("a b", {}).width);
}

TEST(MeasureText, BytesThatAreNoUtf8AreReplacements) {
    EXPECT_EQ(measureText("a\xFF"
                          "b",
                          {})
                  .width,
              measureText("a\uFFFD"
                          "b",
                          {})
                  .width);
    EXPECT_EQ(measureText("\xC3", {}).width, measureText("\uFFFD", {}).width);
    EXPECT_EQ(measureText(std::string("a\0b", 3), {}).width, measureText("a\uFFFD"
                                                                         "b",
                                                                         {})
                                                                 .width);
}

TEST(MeasureText, AMissingFamilyIsTheSystemFace) {
    const double width = measureText("Handgloves", {}).width;
    EXPECT_EQ(measureText("Handgloves", {.family = "No Such Family"}).width, width);
    EXPECT_EQ(measureText("Handgloves", {.family = ""}).width, width);
    EXPECT_TRUE(hasSystemFace());
}

TEST(DrawText, PutsInkWhereItIsAligned) {
    const double width = measureText("HHHH", {}).width;
    for (const auto& [alignment, start] : {std::pair{TextAlignment::left, 20.0},
                                           std::pair{TextAlignment::center, 20 + (160 - width) / 2},
                                           std::pair{TextAlignment::right, 180 - width}}) {
        Paper paper(200, 40);
        paper.draw("HHHH", {.alignment = alignment}, {{20, 0}, {160, 40}});
        const auto [left, right] = paper.columns();
        EXPECT_NEAR(static_cast<double>(left), start, 3);
        EXPECT_NEAR(static_cast<double>(right), start + width, 3);
    }
}

TEST(DrawText, IsCentredVertically) {
    Paper paper(100, 60);
    paper.draw("H", {}, {{0, 10}, {100, 40}});
    const auto [top, bottom] = paper.rows();
    EXPECT_NEAR(static_cast<double>(top + bottom) / 2, 30, 2);
    Paper lower(100, 60);
    lower.draw("H", {}, {{0, 20}, {100, 40}});
    EXPECT_EQ(lower.rows().first, top + 10);
}

TEST(DrawText, EndsInAnEllipsisWhenItDoesNotFit) {
    const std::string text = "WWWWWWWWWWWWWWWWWWWWWWWW";
    Paper paper(200, 40);
    paper.draw(text, {}, {{10, 0}, {80, 40}});
    const auto [left, right] = paper.columns();
    EXPECT_GE(left, 10U);
    EXPECT_LE(right, 91U);
    EXPECT_GT(right, 60U);
    // The dots stand on the base line: nothing above it at the end.
    const auto [top, bottom] = paper.rows();
    for (std::size_t y = top; y + 4 < bottom; ++y) {
        EXPECT_LT(paper.alpha(right - 2, y), 9U) << y;
    }
}

TEST(DrawText, IsTheSameEveryTime) {
    Paper first(200, 40);
    Paper second(200, 40);
    first.draw("Settings & Wi-Fi", {}, kBox);
    second.draw("Settings & Wi-Fi", {}, kBox);
    EXPECT_EQ(first.bytes, second.bytes);
    EXPECT_GT(first.ink(), 100);
}

TEST(DrawText, ScaleIsPixelsForAPoint) {
    Paper one(200, 40);
    Paper three(600, 120);
    one.draw("Name", {}, kBox);
    three.draw("Name", {}, kBox, 3);
    EXPECT_NEAR(three.ink() / one.ink(), 9, 0.5);
    EXPECT_NEAR(static_cast<double>(three.columns().second),
                3 * static_cast<double>(one.columns().second), 4);
}

TEST(DrawText, HasItsColorPremultiplied) {
    Paper paper(200, 40);
    paper.draw("HHHH", {.weight = FontWeight::black, .size = 30, .color = {1, 0.5, 0, 0.5}}, kBox);
    unsigned greatest = 0;
    for (std::size_t i = 0; i < paper.bytes.size(); i += 4) {
        const std::uint8_t* const pixel = paper.bytes.data() + i;
        greatest = std::max<unsigned>(greatest, pixel[3]);
        ASSERT_EQ(pixel[0], 0);
        ASSERT_NEAR(pixel[1], pixel[3] / 2.0, 1.5);
        ASSERT_NEAR(pixel[2], pixel[3], 1.5);
    }
    EXPECT_NEAR(greatest, 128, 1);
}

TEST(DrawText, GoesOverWhatIsThere) {
    Paper paper(200, 40);
    for (std::size_t i = 0; i < paper.bytes.size(); i += 4) {
        paper.bytes[i] = 255;
        paper.bytes[i + 3] = 255;
    }
    paper.draw("HHHH", {.weight = FontWeight::black, .size = 30}, kBox);
    std::uint8_t least = 255;
    for (std::size_t i = 0; i < paper.bytes.size(); i += 4) {
        ASSERT_EQ(paper.bytes[i + 3], 255);
        least = std::min(least, paper.bytes[i]);
    }
    EXPECT_LT(least, 10);
    EXPECT_EQ(paper.bytes[0], 255);
}

TEST(DrawText, AHardShadowIsTheMovedText) {
    const TextStyle plain{.color = {1, 0, 0, 1}};
    TextStyle style = plain;
    style.shadow = TextShadow{.color = {0, 0, 1, 1}, .offset = {60, 0}, .radius = 0};
    Paper without(200, 40);
    Paper with(200, 40);
    without.draw("Hi", plain, kBox);
    with.draw("Hi", style, kBox);
    for (std::size_t y = 0; y < 40; ++y) {
        for (std::size_t x = 0; x < 200; ++x) {
            ASSERT_EQ(with.alpha(x, y),
                      without.alpha(x, y) + (x >= 60 ? without.alpha(x - 60, y) : 0U));
        }
    }
    EXPECT_NEAR(with.ink(), 2 * without.ink(), 0.01);
}

TEST(DrawText, ABlurredShadowSpreadsAndOffsetsAreDownwards) {
    TextStyle style;
    style.shadow = TextShadow{.color = {0, 0, 0, 1}, .offset = {0, 8}, .radius = 2};
    Paper shadow(200, 60);
    Paper text(200, 60);
    shadow.draw("H", style, {{20, 0}, {100, 40}});
    text.draw("H", {}, {{20, 0}, {100, 40}});
    EXPECT_GT(shadow.rows().second, text.rows().second + 8);
    EXPECT_EQ(shadow.rows().first, text.rows().first);
    EXPECT_LT(shadow.columns().first, text.columns().first);
    EXPECT_NEAR(shadow.ink(), 2 * text.ink(), 0.3 * text.ink());
}

TEST(DrawText, AbsurdShadowsDoNoHarm) {
    for (const double number : {1e300, -1e300, std::numeric_limits<double>::infinity(),
                                -std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN(), 500.0, -500.0}) {
        TextStyle style;
        style.shadow = TextShadow{.offset = {number, number}, .radius = number};
        Paper paper(200, 40);
        paper.draw("Hi", style, kBox);
        EXPECT_GT(paper.ink(), 10) << number;
    }
}

TEST(DrawText, NothingIsDrawnForNothing) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    Paper paper(50, 20);
    paper.draw("", {}, kBox);
    paper.draw("x", {.size = 0}, kBox);
    paper.draw("x", {}, {{0, 0}, {0, 20}});
    paper.draw("x", {}, {{0, 0}, {kNone, 20}});
    paper.draw("x", {}, kBox, 0);
    paper.draw("x", {}, kBox, kNone);
    drawText({}, "x", {}, kBox, 1);
    EXPECT_EQ(paper.ink(), 0);
}

TEST(DrawText, OutsideTheMemoryThereIsNothing) {
    Paper paper(20, 20);
    paper.draw("WWWWWWWW", {.size = 60}, {{-100, -30}, {300, 80}});
    paper.draw("W", {}, {{1e9, 1e9}, {100, 20}});
    paper.draw("W", {}, {{-1e9, 0}, {100, 20}});
    EXPECT_EQ(paper.bytes.size(), 1600U);
}

TEST(DrawText, BoldHasMoreInk) {
    Paper thin(200, 40);
    Paper bold(200, 40);
    thin.draw("Weight", {.weight = FontWeight::light}, kBox);
    bold.draw("Weight", {.weight = FontWeight::heavy}, kBox);
    EXPECT_GT(bold.ink(), 1.3 * thin.ink());
}

}  // namespace velmoranth::desktop::text_test
