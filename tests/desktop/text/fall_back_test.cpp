// Which faces letters are drawn in, with the packages' fonts and without.
#include "desktop/text/text.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::desktop::fall_back_test {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kWidth = 240;
constexpr std::size_t kHeight = 40;
constexpr platform::Rect kBox{{0, 0}, {kWidth, kHeight}};

Bytes drawn(const std::string& text, const TextStyle& style) {
    Bytes bytes(kWidth * kHeight * 4);
    drawText({bytes.data(), kWidth, kHeight, kWidth * 4}, text, style, kBox, 1);
    return bytes;
}

constexpr const char* kStandIns[] = {
    "Inter",           "Liberation Sans", "Liberation Sans Narrow", "Liberation Serif",
    "Liberation Mono", "DejaVu Sans",     "DejaVu Serif",           "DejaVu Sans Mono",
    "Quicksand",       "Comic Neue",      "Dancing Script",
};

// Monday in the scripts of the languages that the phone is sold in.
constexpr const char* kMondays[] = {
    "الاثنين",     "יום שני", "月曜日",  "星期一",       "월요일",   "วันจันทร์",     "सोमवार",
    "понедельник", "Δευτέρα", "Thứ Hai", "poniedziałek", "সোমবার",   "திங்கள்",      "సోమవారం",
    "સોમવાર",      "ਸੋਮਵਾਰ",   "ಸೋಮವಾರ",  "തിങ്കൾ",        "ორშაბათი", "երկուշաբթի", "ច័ន្ទ",
    "ຈັນ",          "တနင်္လာ",   "සඳුදා",    "دوشنبه",       "پیر",
};

}  // namespace

TEST(FallBack, EveryStandInIsThere) {
    std::vector<Bytes> pictures;
    for (const char* family : kStandIns) {
        const Bytes picture = drawn("Handgloves 123", {.family = family});
        for (const Bytes& other : pictures) {
            EXPECT_NE(picture, other) << family;
        }
        pictures.push_back(picture);
    }
}

TEST(FallBack, TheSystemFaceHasEveryWeightAndItalics) {
    std::vector<Bytes> pictures;
    for (const int weight : {100, 200, 300, 400, 500, 600, 700, 800, 900}) {
        for (const bool italic : {false, true}) {
            const Bytes picture =
                drawn("Handgloves", {.weight = static_cast<FontWeight>(weight), .italic = italic});
            for (const Bytes& other : pictures) {
                EXPECT_NE(picture, other) << weight << italic;
            }
            pictures.push_back(picture);
        }
    }
}

TEST(FallBack, OtherScriptsAreShown) {
    for (const char* monday : kMondays) {
        EXPECT_TRUE(hasGlyphs(monday, {})) << monday;
        EXPECT_TRUE(hasGlyphs(monday, {.family = "Liberation Serif"})) << monday;
        EXPECT_TRUE(hasGlyphs(monday, {.weight = FontWeight::bold, .italic = true})) << monday;
    }
    EXPECT_FALSE(hasGlyphs("\U00013000", {}));  // a hieroglyph
}

TEST(FallBack, LettersOfAnotherFaceDoNotMoveTheLine) {
    const Bytes alone = drawn("Hx", {});
    const Bytes beside = drawn("Hx ไทย月", {});
    const double height = measureText("Hx", {}).height;
    EXPECT_EQ(measureText("Hx ไทย月", {}).height, height);
    const auto end = static_cast<std::size_t>(measureText("Hx", {}).width) - 1;
    for (std::size_t y = 0; y < kHeight; ++y) {
        for (std::size_t x = 0; x < end; ++x) {
            ASSERT_EQ(alone[(y * kWidth + x) * 4 + 3], beside[(y * kWidth + x) * 4 + 3])
                << x << ' ' << y;
        }
    }
}

TEST(FallBack, WithoutTheSystemFaceTextIsStillDrawn) {
    setFontFolders({"/nowhere"});
    EXPECT_FALSE(hasSystemFace());
    EXPECT_GT(measureText("Handgloves", {}).width, 20);
    EXPECT_NE(drawn("Handgloves", {}), Bytes(kWidth * kHeight * 4));
}

TEST(FallBack, FoldersGivenAreTheOnlyOnes) {
    setFontFolders({tests::kTestFonts}, "Boxes");
    EXPECT_TRUE(hasSystemFace());
    // An H is 0.6 of the size wide, and as high as the face's ascent and descent.
    EXPECT_EQ(measureText("HH", {.size = 20}), (platform::Size{24, 20}));
    EXPECT_EQ(measureText("HH", {.family = "Liberation Serif", .size = 20}),
              (platform::Size{24, 20}));
    EXPECT_TRUE(hasGlyphs("Hl", {}));
    EXPECT_FALSE(hasGlyphs("月", {}));
}

}  // namespace velmoranth::desktop::fall_back_test
