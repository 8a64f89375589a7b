// The colours that themes write in hexadecimal.
#include "imaging/chrome_images.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace velmoranth::imaging::chrome_colors_test {
namespace {

using platform::Color;
using platform::kGrayColor;
using namespace std::literals;

Color color(const platform::NullableString& string) {
    return ChromeImages::colorWithHexString(string);
}

// Of channels 0 to 255, each divided in single precision.
Color rgb(int red, int green, int blue) {
    const auto channel = [](int value) {
        return static_cast<double>(static_cast<float>(value) / 255.0F);
    };
    return {channel(red), channel(green), channel(blue), 1};
}

}  // namespace

TEST(ColorWithHexString, SixDigitsAreRedGreenAndBlue) {
    EXPECT_EQ(color("FF0000"), (Color{1, 0, 0, 1}));
    EXPECT_EQ(color("00FF00"), (Color{0, 1, 0, 1}));
    EXPECT_EQ(color("0000FF"), (Color{0, 0, 1, 1}));
    EXPECT_EQ(color("000000"), (Color{0, 0, 0, 1}));
    EXPECT_EQ(color("123456"), rgb(0x12, 0x34, 0x56));
    EXPECT_EQ(color("abcdef"), rgb(0xAB, 0xCD, 0xEF));
    EXPECT_EQ(color("aBcDeF"), rgb(0xAB, 0xCD, 0xEF));
}

TEST(ColorWithHexString, EveryChannelIsDividedInSinglePrecision) {
    for (int value = 0; value < 256; ++value) {
        std::array<char, 8> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x%02X%02x", value, 255 - value, value);
        ASSERT_EQ(color(digits.data()), rgb(value, 255 - value, value)) << digits.data();
    }
    // The nearest single, widened: not a third of a double.
    EXPECT_EQ(color("550000").red, 0.3333333432674407958984375);
    EXPECT_EQ(color("01FFFF").red, 0.0039215688593685626983642578125);
}

TEST(ColorWithHexString, APrefixIsDroppedAfterTrimming) {
    EXPECT_EQ(color(" 0x1a2B3c\n"), rgb(26, 43, 60));
    EXPECT_EQ(color("0x1a2B3c"), rgb(26, 43, 60));
    EXPECT_EQ(color("0X1A2B3C"), rgb(26, 43, 60));
    EXPECT_EQ(color("\r\n\t\u00A0\u3000 1A2B3C \u2028\v\f\r\n"), rgb(26, 43, 60));
}

TEST(ColorWithHexString, FewerThanSixCharactersAreGray) {
    EXPECT_EQ(color(""), kGrayColor);
    EXPECT_EQ(color("12345"), kGrayColor);
    EXPECT_EQ(color(" 12345 "), kGrayColor);
    EXPECT_EQ(color("0x123"), kGrayColor);
    EXPECT_EQ(color("     \n"), kGrayColor);
    EXPECT_EQ(color("      "), kGrayColor);
    EXPECT_EQ(kGrayColor, (Color{0.5, 0.5, 0.5, 1}));
}

TEST(ColorWithHexString, NilIsGray) {
    EXPECT_EQ(color(std::nullopt), kGrayColor);
}

TEST(ColorWithHexString, OtherThanSixCharactersBehindThePrefixAreGray) {
    EXPECT_EQ(color("0X12345"), kGrayColor);
    EXPECT_EQ(color("0x1234"), kGrayColor);
    EXPECT_EQ(color("0x1234567"), kGrayColor);
    EXPECT_EQ(color("0x12345678"), kGrayColor);
    EXPECT_EQ(color("1234567"), kGrayColor);
    EXPECT_EQ(color("12345678"), kGrayColor);
}

TEST(ColorWithHexString, ANumberSignIsNoPrefix) {
    EXPECT_EQ(color("#FF0000"), kGrayColor);
    EXPECT_EQ(color("#0xFF0000"), kGrayColor);
    // Six with the sign: the first pair begins with no digit.
    EXPECT_EQ(color("#FF000"), rgb(0, 0xF0, 0));
    EXPECT_EQ(color("0x#FF000"), rgb(0, 0xF0, 0));
}

TEST(ColorWithHexString, ASecondPrefixIsPartOfTheDigits) {
    EXPECT_EQ(color("0X0X1234"), rgb(0, 0x12, 0x34));
    EXPECT_EQ(color("0x0x0x12"), rgb(0, 0, 0x12));
    EXPECT_EQ(color("0x0x123456"), kGrayColor);
    // Only in front.
    EXPECT_EQ(color("120x34"), rgb(0x12, 0, 0x34));
    EXPECT_EQ(color("00x123"), rgb(0, 0, 0x23));
}

TEST(ColorWithHexString, APairIsReadAsFarAsItsDigitsGo) {
    EXPECT_EQ(color("1g2g3g"), rgb(1, 2, 3));
    EXPECT_EQ(color("1 2-3."), rgb(1, 2, 3));
    EXPECT_EQ(color("F\0E\0D\xFF"s), rgb(0xF, 0xE, 0xD));
    EXPECT_EQ(color("a\u00E9b\u20ACc!"), rgb(0xA, 0xB, 0xC));
}

TEST(ColorWithHexString, APairThatBeginsWithNoDigitIsZero) {
    EXPECT_EQ(color("g1-2+3"), rgb(0, 0, 0));
    EXPECT_EQ(color("purple"), rgb(0, 0, 0));
    EXPECT_EQ(color("12 456"), rgb(0x12, 0, 0x56));
    EXPECT_EQ(color("12\t4\n6"), rgb(0x12, 0, 0));
    EXPECT_EQ(color("12\u00A0"
                    "456"),
              rgb(0x12, 0, 0x56));
    EXPECT_EQ(color("12\0"
                    "456"s),
              rgb(0x12, 0, 0x56));
    EXPECT_EQ(color("x1x2x3"), rgb(0, 0, 0));
    EXPECT_EQ(color("\u00E9"
                    "1\u20AC"
                    "2\u05D0"
                    "3"),
              rgb(0, 0, 0));
}

TEST(ColorWithHexString, CountsAsThePlatformCounts) {
    // Outside the basic plane a character counts twice, and a pair may hold half of one.
    EXPECT_EQ(color("12\U0001F60056"), rgb(0x12, 0, 0x56));
    EXPECT_EQ(color("1\U0001F600234"), rgb(1, 0, 0x34));
    EXPECT_EQ(color("\U0001F600\U0001F600\U0001F600"), rgb(0, 0, 0));
    EXPECT_EQ(color("12345\U0001F600"), kGrayColor);
    EXPECT_EQ(color("1234\u20AC\u20AC"), rgb(0x12, 0x34, 0));
}

TEST(ColorWithHexString, CountsTheUpperCase) {
    EXPECT_EQ(color("\uFB00"
                    "1234"),
              rgb(0xFF, 0x12, 0x34));
    EXPECT_EQ(color("\uFB00\uFB00\uFB00"), rgb(255, 255, 255));
    EXPECT_EQ(color("1\uFB01"
                    "234"),
              rgb(0x1F, 0, 0x34));
    EXPECT_EQ(color("\uFB03"
                    "123"),
              rgb(0xFF, 0, 0x23));
    EXPECT_EQ(color("\u00DF"
                    "1234"),
              rgb(0, 0x12, 0x34));
    EXPECT_EQ(color("\u1E9A"
                    "1234"),
              rgb(0xA, 0x12, 0x34));
    EXPECT_EQ(color("1\u1E96"
                    "234"),
              rgb(1, 0, 0x34));
    EXPECT_EQ(color("\u00DF"
                    "12345"),
              kGrayColor);
}

TEST(ColorWithHexString, TakesTextOfAnyLength) {
    EXPECT_EQ(color(std::string(1 << 16, 'F')), kGrayColor);
    EXPECT_EQ(color(std::string(1 << 16, ' ')), kGrayColor);
    EXPECT_EQ(color(std::string(1 << 16, '\0')), kGrayColor);
    EXPECT_EQ(color(std::string(1 << 16, '\xFF')), kGrayColor);
    EXPECT_EQ(color(std::string(1 << 16, ' ') + "0x010203" + std::string(1 << 16, '\n')),
              rgb(1, 2, 3));
}

TEST(ColorWithHexString, AnyBytesGiveGrayOrAnOpaqueColor) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> byte(0, 255);
    std::uniform_int_distribution<std::size_t> size(0, 12);
    for (int i = 0; i < 20000; ++i) {
        std::string text(size(random), '\0');
        for (char& c : text) {
            c = static_cast<char>(byte(random));
        }
        const Color result = color(text);
        ASSERT_EQ(result.alpha, 1) << testing::PrintToString(text);
        for (const double channel : {result.red, result.green, result.blue}) {
            ASSERT_TRUE(channel >= 0 && channel <= 1) << testing::PrintToString(text);
        }
    }
    EXPECT_EQ(color("\xFF\xFF\xFF\xFF\xFF\xFF"), rgb(0, 0, 0));
    EXPECT_EQ(color("1\xFF"
                    "2\x80"
                    "3\xC3"),
              rgb(1, 2, 3));
    EXPECT_EQ(color("\0\0\0\0\0\0"s), rgb(0, 0, 0));
}

}  // namespace velmoranth::imaging::chrome_colors_test
