// The patterns of --name.
#include "cli/name_pattern.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace velmoranth::cli::name_pattern_test {
namespace {

TEST(NamePattern, TakesTheWholeName) {
    EXPECT_TRUE(fitsPattern("Icon", "Icon"));
    EXPECT_FALSE(fitsPattern("Icon", "icon"));
    EXPECT_FALSE(fitsPattern("Icon2", "Icon"));
    EXPECT_FALSE(fitsPattern("Icon", "Icon2"));
    EXPECT_FALSE(fitsPattern(std::string_view("Icon\0x", 6), "Icon"));
    EXPECT_TRUE(fitsPattern("", ""));
    EXPECT_FALSE(fitsPattern("a", ""));
    EXPECT_FALSE(fitsPattern("", "a"));
}

TEST(NamePattern, StarStandsForAnyLetters) {
    for (const char* const name : {"", ".a", "Folder/Icon", "Grüße 🙂", "\xff"}) {
        EXPECT_TRUE(fitsPattern(name, "*")) << name;
        EXPECT_TRUE(fitsPattern(name, "***")) << name;
    }
    EXPECT_TRUE(fitsPattern(std::string_view("a\0b", 3), "a*b"));
    EXPECT_TRUE(fitsPattern("Folder/Icon", "Folder*on"));
    EXPECT_TRUE(fitsPattern("Icon", "*Icon*"));
    EXPECT_TRUE(fitsPattern("abababc", "*abc"));
    EXPECT_TRUE(fitsPattern("mississippi", "*ss*ip*i"));
    EXPECT_FALSE(fitsPattern("mississippi", "*ss*ss*ss*"));
    EXPECT_FALSE(fitsPattern("Icon", "*x"));
}

TEST(NamePattern, QuestionMarkStandsForOneLetterNotForOneByte) {
    EXPECT_TRUE(fitsPattern("bluétooo", "blu?tooo"));
    EXPECT_FALSE(fitsPattern("bluétooo", "blu??tooo"));
    EXPECT_TRUE(fitsPattern("🙂", "?"));
    EXPECT_TRUE(fitsPattern("a/b", "a?b"));
    EXPECT_FALSE(fitsPattern("", "?"));
    EXPECT_TRUE(fitsPattern("xüy", "*?üy"));
    EXPECT_FALSE(fitsPattern("ü", "*??"));
}

TEST(NamePattern, BytesThatAreNoUtf8CountAsOneLetter) {
    EXPECT_TRUE(fitsPattern("a\xff\xc3", "a??"));
    EXPECT_FALSE(fitsPattern("a\xff\xc3", "a?"));
    EXPECT_TRUE(fitsPattern("a\xff", "a\xff"));
    EXPECT_TRUE(fitsPattern("\xe2\x82", "??")) << "a letter that is cut off";
}

TEST(NamePattern, SetStandsForOneOfItsLetters) {
    EXPECT_TRUE(fitsPattern("Icon2", "Icon[1-3]"));
    EXPECT_TRUE(fitsPattern("Icon3", "Icon[1-3]"));
    EXPECT_FALSE(fitsPattern("Icon4", "Icon[1-3]"));
    EXPECT_TRUE(fitsPattern("b", "[abc]"));
    EXPECT_FALSE(fitsPattern("B", "[abc]"));
    EXPECT_FALSE(fitsPattern("ab", "[abc]"));
    EXPECT_FALSE(fitsPattern("", "[!a]"));
    EXPECT_TRUE(fitsPattern("ü", "[!a]"));
    EXPECT_FALSE(fitsPattern("a", "[!a]"));
    EXPECT_FALSE(fitsPattern("a", "[^a]"));
    EXPECT_TRUE(fitsPattern("ö", "[ä-ü]"));
    EXPECT_FALSE(fitsPattern("z", "[ä-ü]"));
    EXPECT_FALSE(fitsPattern("b", "[c-a]")) << "a range that is turned around holds nothing";
    EXPECT_TRUE(fitsPattern("]", "[]]"));
    EXPECT_TRUE(fitsPattern("-", "[a-]"));
    EXPECT_TRUE(fitsPattern("*", "[*?]"));
    EXPECT_TRUE(fitsPattern("[a", "[a")) << "never closed";
    EXPECT_TRUE(fitsPattern("[]", "[]")) << "never closed";
}

TEST(NamePattern, BackslashTakesAwayTheMeaning) {
    EXPECT_TRUE(fitsPattern("*", "\\*"));
    EXPECT_FALSE(fitsPattern("a", "\\*"));
    EXPECT_TRUE(fitsPattern("?[", "\\?\\["));
    EXPECT_TRUE(fitsPattern("a\\b", "a\\\\b"));
    EXPECT_TRUE(fitsPattern("]", "[\\]]"));
    EXPECT_TRUE(fitsPattern("a\\", "a\\"));
    EXPECT_TRUE(fitsPattern("é", "\\é"));
}

// With every run tried against every other this would not end.
TEST(NamePattern, ManyStarsTakeNoLongTime) {
    std::string pattern;
    for (int i = 0; i < 200; ++i) {
        pattern += "*a";
    }
    const std::string name(2000, 'a');
    EXPECT_TRUE(fitsPattern(name, pattern));
    EXPECT_FALSE(fitsPattern(name, pattern + "*b"));
    EXPECT_FALSE(fitsPattern(name + "c", pattern + "b"));
    EXPECT_TRUE(fitsPattern(name, std::string(10000, '*')));
    EXPECT_FALSE(fitsPattern(name, std::string(5000, '[')));
    EXPECT_FALSE(fitsPattern(name, std::string(5000, '\\')));
}

}  // namespace
}  // namespace velmoranth::cli::name_pattern_test
