// NSString's and NSScanner's operations on text of any kind, well formed or not.
#include "platform/strings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::platform::strings_test {
namespace {

using namespace std::literals;

// Every sequence of up to `length` of these bytes, among them leads and parts of longer sequences.
std::vector<std::string> awkwardTexts(std::size_t length) {
    constexpr std::string_view kBytes = "\0a \x80\xA0\xC2\xE2\xF0\xFF"sv;
    std::vector<std::string> all{""};
    std::size_t begin = 0;
    for (std::size_t i = 0; i < length; ++i) {
        const std::size_t end = all.size();
        for (; begin < end; ++begin) {
            for (const char byte : kBytes) {
                all.push_back(all[begin] + byte);
            }
        }
    }
    return all;
}

TEST(StringLength, CountsUtf16Units) {
    EXPECT_EQ(length(""), 0U);
    EXPECT_EQ(length("abc"), 3U);
    EXPECT_EQ(length("\u00DF"), 1U);
    EXPECT_EQ(length("\u20AC"), 1U);
    EXPECT_EQ(length("\uFFFD"), 1U);
    EXPECT_EQ(length("\U00010000"), 2U);
    EXPECT_EQ(length("a\U0001F600b"), 4U);
    EXPECT_EQ(length("a\0b"s), 3U);
}

TEST(StringLength, AByteThatBeginsNoSequenceCountsAsOne) {
    EXPECT_EQ(length("\xFF"), 1U);
    EXPECT_EQ(length("\x80\x80"), 2U);
    EXPECT_EQ(length("\xC3"), 1U);
    EXPECT_EQ(length("\xE2\x82"), 2U);
    EXPECT_EQ(length("\xF0\x9F\x98"), 3U);
    EXPECT_EQ(length("\xF0\x9F\x98z"), 4U);
}

TEST(SubstringWithRange, CountsFromTheLocation) {
    EXPECT_EQ(substringWithRange("abcdef", 0, 2), "ab");
    EXPECT_EQ(substringWithRange("abcdef", 2, 2), "cd");
    EXPECT_EQ(substringWithRange("abcdef", 4, 2), "ef");
    EXPECT_EQ(substringWithRange("abcdef", 3, 0), "");
    EXPECT_EQ(substringWithRange("a\u00DFb\u20ACc", 1, 3), "\u00DFb\u20AC");
    EXPECT_EQ(substringWithRange("a\0bc"s, 1, 2), "\0b"s);
    EXPECT_EQ(substringWithRange("a\xFF\x80z", 1, 2), "\xFF\x80");
}

TEST(SubstringWithRange, LeavesOutWhatLiesPastTheEnd) {
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
    EXPECT_EQ(substringWithRange("abc", 2, 5), "c");
    EXPECT_EQ(substringWithRange("abc", 3, 1), "");
    EXPECT_EQ(substringWithRange("abc", 7, 1), "");
    EXPECT_EQ(substringWithRange("", 0, 2), "");
    EXPECT_EQ(substringWithRange("abc", 1, kMost), "bc");
    EXPECT_EQ(substringWithRange("abc", kMost, kMost), "");
}

TEST(SubstringWithRange, HalfACharacterIsReplaced) {
    const std::string text = "1\U0001F600z";
    EXPECT_EQ(substringWithRange(text, 0, 2), "1\uFFFD");
    EXPECT_EQ(substringWithRange(text, 2, 2), "\uFFFDz");
    EXPECT_EQ(substringWithRange(text, 1, 2), "\U0001F600");
    EXPECT_EQ(substringWithRange(text, 1, 1), "\uFFFD");
    EXPECT_EQ(substringWithRange(text, 2, 1), "\uFFFD");
    EXPECT_EQ(substringWithRange(text, 2, 0), "");
}

TEST(SubstringWithRange, TwoUnitsOfAnyTextAreTwoUnits) {
    for (const std::string& text : awkwardTexts(4)) {
        const std::size_t units = length(text);
        EXPECT_EQ(substringWithRange(text, 0, units), text);
        for (std::size_t i = 0; i + 2 <= units; ++i) {
            ASSERT_EQ(length(substringWithRange(text, i, 2)), 2U) << testing::PrintToString(text);
        }
    }
}

TEST(Trimming, TakesSpaceAndLineEndsFromBothEnds) {
    EXPECT_EQ(stringByTrimmingWhitespaceAndNewlines(" \t\n\v\f\rab c\r\n \t"), "ab c");
    EXPECT_EQ(stringByTrimmingWhitespaceAndNewlines(" \n"), "");
    EXPECT_EQ(stringByTrimmingWhitespaceAndNewlines(""), "");
    EXPECT_EQ(stringByTrimmingWhitespaceAndNewlines("a"), "a");
    EXPECT_EQ(stringByTrimmingWhitespaceAndNewlines("\0a\0"s), "\0a\0"s);
}

TEST(Trimming, TakesTheUnicodeSpaces) {
    for (const char* const space :
         {"\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003",
          "\u2004", "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A",
          "\u200B", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"}) {
        const std::string text = std::string(space) + "x" + space + "y" + space + space;
        EXPECT_EQ(stringByTrimmingWhitespaceAndNewlines(text), std::string("x") + space + "y");
    }
    for (const char* const other : {"\uFEFF", "\u200C", "\u1FFF", "\u0084", "\u180E", "\x08"}) {
        const std::string text = std::string(other) + "x" + other;
        EXPECT_EQ(stringByTrimmingWhitespaceAndNewlines(text), text);
    }
}

TEST(Trimming, LeavesNoSpaceAtEitherEndOfAnyText) {
    for (const std::string& text : awkwardTexts(4)) {
        const std::string trimmed = stringByTrimmingWhitespaceAndNewlines(text);
        ASSERT_NE(text.find(trimmed), std::string::npos);
        ASSERT_EQ(stringByTrimmingWhitespaceAndNewlines(trimmed), trimmed);
    }
}

TEST(Uppercase, AsciiLetters) {
    EXPECT_EQ(uppercaseString("abcxyzABCXYZ`{@[019 #"), "ABCXYZABCXYZ`{@[019 #");
    EXPECT_EQ(uppercaseString("a\0b"s), "A\0B"s);
    EXPECT_EQ(uppercaseString(""), "");
}

TEST(Uppercase, CharactersWithALongerUpperCase) {
    EXPECT_EQ(uppercaseString("1\u00DF2"), "1SS2");
    EXPECT_EQ(uppercaseString("\uFB00\uFB01\uFB02"), "FFFIFL");
    EXPECT_EQ(uppercaseString("\uFB03\uFB04\uFB05\uFB06"), "FFIFFLSTST");
    EXPECT_EQ(uppercaseString("\u0149"), "\u02BCN");
    EXPECT_EQ(uppercaseString("\u0390"), "\u0399\u0308\u0301");
    EXPECT_EQ(uppercaseString("\u1E96\u1E9A"), "H\u0331A\u02BE");
    EXPECT_EQ(uppercaseString("\u1F88\u1FFC"), "\u1F08\u0399\u03A9\u0399");
    EXPECT_EQ(uppercaseString("\uFB17"), "\u0544\u053D");
    // None of their neighbours.
    for (const char* const text : {"\u1E95", "\u1E9B", "\uFB07", "\uFB12", "\uFB18"}) {
        EXPECT_EQ(uppercaseString(text), text);
    }
}

TEST(Uppercase, BytesThatAreNoTextStayAsTheyAre) {
    EXPECT_EQ(uppercaseString("a\xFF"s + "b\x80\xC3"), "A\xFF"s + "B\x80\xC3");
    EXPECT_EQ(uppercaseString("\xEF\xAC"), "\xEF\xAC");
    EXPECT_EQ(uppercaseString("\xDF"), "\xDF");
}

TEST(HexDigit, TwentyTwoBytes) {
    std::string digits;
    for (int c = 0; c < 256; ++c) {
        if (isHexDigit(static_cast<char>(c))) {
            digits += static_cast<char>(c);
        }
    }
    EXPECT_EQ(digits, "0123456789ABCDEFabcdef");
}

TEST(ScanHexInt, ReadsAsManyDigitsAsThereAre) {
    EXPECT_EQ(scanHexInt("0"), 0U);
    EXPECT_EQ(scanHexInt("1a"), 0x1AU);
    EXPECT_EQ(scanHexInt("FFzz"), 0xFFU);
    EXPECT_EQ(scanHexInt("9G"), 9U);
    EXPECT_EQ(scanHexInt("dEaDbEeF!"), 0xDEADBEEFU);
    EXPECT_EQ(scanHexInt("1\0"
                         "2"s),
              1U);
    EXPECT_EQ(scanHexInt("1 2"), 1U);
    EXPECT_EQ(scanHexInt("2\uFF11"), 2U);
}

TEST(ScanHexInt, SkipsSpaceThenThePrefix) {
    EXPECT_EQ(scanHexInt(" \n\t\u3000"
                         "1F"),
              0x1FU);
    EXPECT_EQ(scanHexInt("0x1F"), 0x1FU);
    EXPECT_EQ(scanHexInt(" 0X1f"), 0x1FU);
    EXPECT_EQ(scanHexInt("0x"), 0U);
    EXPECT_EQ(scanHexInt("0xg"), 0U);
    EXPECT_EQ(scanHexInt("0x0x5"), 0U);
    EXPECT_EQ(scanHexInt("00x5"), 0U);
}

TEST(ScanHexInt, EndsWithItsText) {
    const std::string_view text = "0x12";
    EXPECT_EQ(scanHexInt(text.substr(0, 1)), 0U);
    EXPECT_EQ(scanHexInt(text.substr(0, 2)), 0U);
    EXPECT_EQ(scanHexInt(text.substr(0, 3)), 1U);
    EXPECT_EQ(scanHexInt(text.substr(0, 0)), std::nullopt);
}

TEST(ScanHexInt, IsNothingWithoutADigit) {
    for (const std::string& text : {""s, " "s, "#FF"s, "zz"s, "x1"s, "-1"s, "+1"s,
                                    "\0"
                                    "1"s,
                                    "\xFF"
                                    "1"s,
                                    "\uFF11"s}) {
        EXPECT_EQ(scanHexInt(text), std::nullopt) << testing::PrintToString(text);
    }
}

TEST(ScanHexInt, TooManyDigitsGiveTheGreatestValue) {
    constexpr std::uint32_t kGreatest = std::numeric_limits<std::uint32_t>::max();
    EXPECT_EQ(scanHexInt("FFFFFFFF"), kGreatest);
    EXPECT_EQ(scanHexInt("100000000"), kGreatest);
    EXPECT_EQ(scanHexInt("100000000000000000000000000000001"), kGreatest);
    EXPECT_EQ(scanHexInt("0000000000000000000000000012"), 0x12U);
    EXPECT_EQ(scanHexInt(std::string(1 << 16, 'F')), kGreatest);
}

TEST(Strings, LastPathComponent) {
    EXPECT_EQ(lastPathComponent("/tmp/"), "tmp");
    EXPECT_EQ(lastPathComponent("scratch///"), "scratch");
    EXPECT_EQ(lastPathComponent("//"), "/");
    EXPECT_EQ(lastPathComponent(""), "");
    EXPECT_EQ(lastPathComponent("a.car"), "a.car");
}

TEST(Strings, DeletingLastPathComponent) {
    EXPECT_EQ(stringByDeletingLastPathComponent("/tmp/lock/"), "/tmp");
    EXPECT_EQ(stringByDeletingLastPathComponent("/tmp//lock"), "/tmp");
    EXPECT_EQ(stringByDeletingLastPathComponent("/tmp"), "/");
    EXPECT_EQ(stringByDeletingLastPathComponent("/"), "/");
    EXPECT_EQ(stringByDeletingLastPathComponent("a"), "");
    EXPECT_EQ(stringByDeletingLastPathComponent(""), "");
}

TEST(Strings, DeletingPathExtension) {
    EXPECT_EQ(stringByDeletingPathExtension("scratch.bundle/"), "scratch");
    EXPECT_EQ(stringByDeletingPathExtension("/tmp/"), "/tmp");
    EXPECT_EQ(stringByDeletingPathExtension("scratch..tiff"), "scratch.");
    EXPECT_EQ(stringByDeletingPathExtension(".tiff"), ".tiff");
    EXPECT_EQ(stringByDeletingPathExtension("/a/.tiff"), "/a/.tiff");
    EXPECT_EQ(stringByDeletingPathExtension("/"), "/");
    EXPECT_EQ(stringByDeletingPathExtension(""), "");
    EXPECT_EQ(stringByDeletingPathExtension("name@2x.png"), "name@2x");
    EXPECT_EQ(stringByDeletingPathExtension("a.b.png"), "a.b");
    EXPECT_EQ(stringByDeletingPathExtension("a.b/c"), "a.b/c");
    EXPECT_EQ(stringByDeletingPathExtension("zip."), "zip.");
    EXPECT_EQ(stringByDeletingPathExtension("...zip"), "...zip");
}

}  // namespace
}  // namespace velmoranth::platform::strings_test
