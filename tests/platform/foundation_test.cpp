#include "platform/foundation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace velmoranth::platform::foundation_test {
namespace {

using Array = PropertyList::Array;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(BoolValueOfText, LettersOfYesAndTrueAreTrue) {
    for (const char* const text : {"Y", "y", "T", "t", "YES", "yes", "true", "tRuE", "Tuesday",
                                   "  yes", "\t\n\v\f\ryes", "yikes"}) {
        EXPECT_TRUE(boolValue(std::string_view(text))) << text;
    }
    for (const char* const text : {"", " ", "no", "NO", "n", "false", "on", "enabled", "_true",
                                   "<true>", "+t", "-y", "0t", "00yes", "."}) {
        EXPECT_FALSE(boolValue(std::string_view(text))) << text;
    }
}

TEST(BoolValueOfText, NumbersOtherThanZeroAreTrue) {
    for (const char* const text : {"1", "9", "10", "+1", "-1", "2x", "+000009", "-01", "  7"}) {
        EXPECT_TRUE(boolValue(std::string_view(text))) << text;
    }
    for (const char* const text :
         {"0", "00", "-0", "-00000", "+", "-", "++", "+-1", "--1", "0.5", "0x1", "- 1", ".5"}) {
        EXPECT_FALSE(boolValue(std::string_view(text))) << text;
    }
}

TEST(BoolValueOfText, SkipsUnicodeSpaces) {
    for (const char* const space : {"\u0085", "\u00A0", "\u1680", "\u2000", "\u200A", "\u200B",
                                    "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"}) {
        EXPECT_TRUE(boolValue(space + std::string("y"))) << space;
    }
    for (const char* const other : {"\uFEFF", "\u200C", "\u00AD", "\x01", "\xC2"}) {
        EXPECT_FALSE(boolValue(other + std::string("y"))) << other;
    }
}

TEST(BoolValueOfPropertyList, ConvertsAsEachKindDoes) {
    const auto of = [](const PropertyList& value) { return boolValue(&value); };
    EXPECT_FALSE(boolValue(static_cast<const PropertyList*>(nullptr)));
    EXPECT_TRUE(of(true));
    EXPECT_FALSE(of(false));
    EXPECT_TRUE(of(1));
    EXPECT_TRUE(of(-1));
    EXPECT_TRUE(of(std::numeric_limits<std::int64_t>::min()));
    EXPECT_FALSE(of(0));
    EXPECT_TRUE(of(0.5));
    EXPECT_TRUE(of(std::nan("")));
    EXPECT_FALSE(of(-0.0));
    EXPECT_TRUE(of("YES"));
    EXPECT_FALSE(of("0.5"));
    EXPECT_FALSE(of(Date{1}));
    EXPECT_FALSE(of(Data{1}));
    EXPECT_FALSE(of(Array{true}));
    EXPECT_FALSE(of(Dictionary{{"a", true}}));
}

TEST(FloatValueOfText, ReadsADecimalNumberAsFarAsItGoes) {
    const std::pair<const char*, float> cases[] = {
        {"1.5", 1.5F},     {"1.5pt", 1.5F},      {".5", 0.5F},
        {"5.", 5},         {"1e2", 100},         {"1E+2", 100},
        {"1e", 1},         {"1,5", 1},           {"-0.25", -0.25F},
        {"+3", 3},         {"  7", 7},           {"\n\t7", 7},
        {"\x01\x7F 7", 7}, {"\u3000\u20037", 7}, {"1.2.3", 1.2F},
        {"1-2", 1},        {"1e5e5", 1e5F},      {"0.75 x", 0.75F},
        {"1e-2", 0.01F},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(floatValue(std::string_view(text)), value) << text;
    }
}

TEST(FloatValueOfText, WhatIsNoDecimalNumberIsZero) {
    for (const char* const text : {"", " ", "x", "inf", "-inf", "nan", "infinity", "0x1A", "- 5",
                                   "--5", "+-5", ".", "e5", "-", "YES",
                                   "\u2028"
                                   "5"}) {
        EXPECT_EQ(floatValue(std::string_view(text)), 0.0F) << text;
    }
}

TEST(FloatValueOfText, TooLargeIsInfiniteAndTooSmallZero) {
    EXPECT_EQ(floatValue(std::string_view("1e39")), kInfinity);
    EXPECT_EQ(floatValue(std::string_view("1e999")), kInfinity);
    EXPECT_EQ(floatValue(std::string_view("-1e999")), -kInfinity);
    EXPECT_EQ(floatValue(std::string_view("1e-999")), 0.0F);
    EXPECT_EQ(floatValue(std::string(400, '9')), kInfinity);
}

TEST(FloatValueOfPropertyList, ConvertsAsEachKindDoes) {
    const auto of = [](const PropertyList& value) { return floatValue(&value); };
    EXPECT_EQ(floatValue(static_cast<const PropertyList*>(nullptr)), 0.0F);
    EXPECT_EQ(of(true), 1.0F);
    EXPECT_EQ(of(false), 0.0F);
    EXPECT_EQ(of(-3), -3.0F);
    EXPECT_EQ(of(0.1), 0.1F);
    EXPECT_TRUE(std::isnan(of(std::nan(""))));
    EXPECT_EQ(of("0.75"), 0.75F);
    EXPECT_EQ(of(Date{1}), 0.0F);
    EXPECT_EQ(of(Data{1}), 0.0F);
    EXPECT_EQ(of(Array{1}), 0.0F);
    EXPECT_EQ(of(Dictionary{}), 0.0F);
}

TEST(Description, ScalarsAsTheyStand) {
    EXPECT_EQ(description("a \"b\"\nü"), "a \"b\"\nü");
    EXPECT_EQ(description(""), "");
    EXPECT_EQ(description(true), "1");
    EXPECT_EQ(description(false), "0");
    EXPECT_EQ(description(-42), "-42");
    EXPECT_EQ(description(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(description(0.5), "0.5");
    EXPECT_EQ(description(0.1), "0.1");
    EXPECT_EQ(description(2.0), "2");
    EXPECT_EQ(description(1e20), "1e+20");
    EXPECT_EQ(description(std::nan("")), "nan");
    EXPECT_EQ(description(std::numeric_limits<double>::infinity()), "+infinity");
    EXPECT_EQ(description(-std::numeric_limits<double>::infinity()), "-infinity");
    EXPECT_EQ(description(Data{}), "<>");
    EXPECT_EQ(description(Data{1, 2, 3, 4, 5, 0xFF}), "<01020304 05ff>");
}

TEST(Description, DatesInUniversalTime) {
    EXPECT_EQ(description(Date{0}), "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(description(Date{-0.5}), "2000-12-31 23:59:59 +0000");
    EXPECT_EQ(description(Date{-978307200}), "1970-01-01 00:00:00 +0000");
    EXPECT_EQ(description(Date{567993600}), "2019-01-01 00:00:00 +0000");
    EXPECT_EQ(description(Date{604713599.9}), "2020-02-29 23:59:59 +0000");
    EXPECT_EQ(description(Date{604713600}), "2020-03-01 00:00:00 +0000");
}

TEST(Description, ContainersInOldStyleText) {
    EXPECT_EQ(description(Dictionary{}), "{\n}");
    EXPECT_EQ(description(Array{}), "(\n)");
    EXPECT_EQ(description(Array{"a", 1, true}), "(\n    a,\n    1,\n    1\n)");
    EXPECT_EQ(
        description(Dictionary{{"b", "x"}, {"a", Array{"y", "z"}}, {"c", Dictionary{{"k", "v"}}}}),
        "{\n"
        "    a =     (\n"
        "        y,\n"
        "        z\n"
        "    );\n"
        "    b = x;\n"
        "    c =     {\n"
        "        k = v;\n"
        "    };\n"
        "}");
    EXPECT_EQ(description(Array{Dictionary{{"k", "v"}}}),
              "(\n"
              "        {\n"
              "        k = v;\n"
              "    }\n"
              ")");
}

TEST(Description, QuotesWithinContainersWhatIsNotLettersAndDigits) {
    const auto inside = [](const PropertyList& value) {
        const std::string text = description(Dictionary{{"k", value}});
        return text.substr(10, text.size() - 13);  // between "{\n    k = " and ";\n}"
    };
    EXPECT_EQ(inside("Abc123"), "Abc123");
    EXPECT_EQ(inside(""), "\"\"");
    EXPECT_EQ(inside("a b"), "\"a b\"");
    EXPECT_EQ(inside("a_b"), "\"a_b\"");
    EXPECT_EQ(inside("a.b"), "\"a.b\"");
    EXPECT_EQ(inside(7), "7");
    EXPECT_EQ(inside(-1), "\"-1\"");
    EXPECT_EQ(inside(0.5), "\"0.5\"");
    EXPECT_EQ(inside(Date{567993600}), "\"2019-01-01 00:00:00 +0000\"");
    EXPECT_EQ(inside("q\"b\\n\n"), R"("q\"b\\n\n")");
    EXPECT_EQ(inside("é"), R"("\U00e9")");
    EXPECT_EQ(inside("\U0001F43C"), R"("\Ud83d\Udc3c")");
    EXPECT_EQ(description(Dictionary{{"a b", "c"}}), "{\n    \"a b\" = c;\n}");
}

TEST(StringByAppendingPathComponent, JoinsWithOneSlash) {
    struct Case {
        const char* path;
        const char* component;
        const char* result;
    };

    constexpr Case kCases[] = {
        {"/tmp", "a", "/tmp/a"},
        {"/tmp/", "a", "/tmp/a"},
        {"/", "a", "/a"},
        {"", "a", "a"},
        {"hello///", "///test", "hello/test"},
        {"hello", "test///t2/", "hello/test/t2"},
        {"hello", "/", "hello"},
        {"hello", "", "hello"},
        {"hello/", "", "hello"},
        {"//", "/", "/"},
        {"/", "", "/"},
        {"", "", ""},
        {"https://x", "a", "https:/x/a"},
        {"/a//b", "c//d", "/a/b/c/d"},
        {"/a/.", "../b", "/a/./../b"},
        {"/Library/Themes", "Ü theme.theme", "/Library/Themes/Ü theme.theme"},
    };
    for (const Case& item : kCases) {
        EXPECT_EQ(stringByAppendingPathComponent(item.path, item.component), item.result)
            << item.path << " + " << item.component;
    }
}

TEST(ObjectForKey, IsNullWhenThereIsNone) {
    const Dictionary dictionary{{"a", 1}};
    EXPECT_EQ(*objectForKey(dictionary, "a"), PropertyList(1));
    EXPECT_EQ(objectForKey(dictionary, "b"), nullptr);
}

TEST(PropertyListValue, EndsHoweverDeepItNests) {
    PropertyList value = "core";
    for (int i = 0; i < 2'000'000; ++i) {
        if (i % 2 == 0) {
            PropertyList::Array array;
            array.push_back(std::move(value));
            value = std::move(array);
        } else {
            Dictionary dictionary;
            dictionary.emplace("below", std::move(value));
            value = std::move(dictionary);
        }
    }
    EXPECT_NE(value.as<Dictionary>(), nullptr);
}

TEST(PropertyListValue, KeepsBooleansAndNumbersApart) {
    EXPECT_NE(PropertyList(true), PropertyList(1));
    EXPECT_NE(PropertyList(1), PropertyList(1.0));
    EXPECT_EQ(PropertyList(1).as<double>(), nullptr);
    EXPECT_EQ(*PropertyList("x").as<std::string>(), "x");
}

TEST(Description, DeepContainersAreCutOff) {
    // 400 arrays in each other around many values: the indentation alone would fill hundreds of
    // megabytes.
    platform::PropertyList value = platform::PropertyList::Array(100000, true);
    for (int level = 0; level < 400; ++level) {
        value = platform::PropertyList::Array{std::move(value)};
    }
    const std::size_t length = platform::description(value).size();
    EXPECT_GT(length, platform::kLongestDescription);
    EXPECT_LT(length, platform::kLongestDescription * 20);
}

}  // namespace
}  // namespace velmoranth::platform::foundation_test
