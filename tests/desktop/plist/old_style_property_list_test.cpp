#include "property_list_text.h"
#include <gtest/gtest.h>

#include <string>

namespace velmoranth::desktop::old_style_property_list_test {
namespace {

using platform::Dictionary;
using platform::PropertyList;
using Array = PropertyList::Array;

struct Accepted {
    const char* text;
    PropertyList value;
};

TEST(OldStylePropertyList, Reads) {
    const Accepted cases[] = {
        {"{ key = value; }", Dictionary{{"key", "value"}}},
        {"{key=value;}", Dictionary{{"key", "value"}}},
        {"{ a = 1; b = YES; c = 1.5; }", Dictionary{{"a", "1"}, {"b", "YES"}, {"c", "1.5"}}},
        {"{ a; }", Dictionary{{"a", "a"}}},
        {"{ a = 1; a = 2; }", Dictionary{{"a", "2"}}},
        {"{}", Dictionary{}},
        {"()", Array{}},
        {"( a, b )", Array{"a", "b"}},
        {"( a, b, )", Array{"a", "b"}},
        {"( (a), {b = c;} )", Array{Array{"a"}, Dictionary{{"b", "c"}}}},
        {"<0fbd77 1C2735ae>", platform::Data{0x0f, 0xbd, 0x77, 0x1c, 0x27, 0x35, 0xae}},
        {"<>", platform::Data{}},
        {"< 01\n02\t>", platform::Data{1, 2}},
        {"A-Za_z0$9/:.-", "A-Za_z0$9/:.-"},
        {"http://x.y/z", "http://x.y/z"},
        {"'it is \"so\"'", "it is \"so\""},
        {"\"it's\"", "it's"},
        {"\"\"", ""},
        {"{ \"a b\" = 'c d'; }", Dictionary{{"a b", "c d"}}},
        {"// line\n/* block\n */ { // more\n a /* x */ = /**/ b; }", Dictionary{{"a", "b"}}},
        {"{ a = b; } // end", Dictionary{{"a", "b"}}},
        {"{ a = /usr/bin; }", Dictionary{{"a", "/usr/bin"}}},
        {"\u2028{\u2029a = b;}", Dictionary{{"a", "b"}}},
        {"{ a = \"line\nbreak\"; }", Dictionary{{"a", "line\nbreak"}}},
        // Nothing but white space and comments is an empty dictionary.
        {" \n\t", Dictionary{}},
        {"// nothing", Dictionary{}},
        {"/* not ended", Dictionary{}},
    };
    for (const Accepted& item : cases) {
        const auto value = parse(item.text);
        ASSERT_TRUE(value.has_value()) << item.text << ": " << value.error().message;
        EXPECT_EQ(*value, item.value) << item.text;
    }
}

TEST(OldStylePropertyList, BracelessFormIsADictionary) {
    EXPECT_EQ(parse("\"a\" = \"b\";\nc = d;\n/* x */ e;\n").value(),
              PropertyList(Dictionary{{"a", "b"}, {"c", "d"}, {"e", "e"}}));
    // What follows the last entry does not count.
    EXPECT_EQ(parse("a = b; }").value(), PropertyList(Dictionary{{"a", "b"}}));
    EXPECT_FALSE(parse("a = b").has_value());
    EXPECT_FALSE(parse("a b").has_value());
    EXPECT_FALSE(parse("a = ;").has_value());
}

TEST(OldStylePropertyList, Escapes) {
    const auto text = [](const std::string& escaped) {
        return *parse("\"" + escaped + "\"").value().as<std::string>();
    };
    EXPECT_EQ(text(R"(\a\b\f\n\r\t\v)"), "\a\b\f\n\r\t\v");
    EXPECT_EQ(text(R"(\"\\\'\q)"), "\"\\'q");
    EXPECT_EQ(text(R"(\101\60\7)"), "A0\a");
    EXPECT_EQ(text(R"(\1011)"), "A1");
    EXPECT_EQ(text(R"(\18)"), std::string("\x01") + "8");
    // Octal beyond ASCII is of the NeXTSTEP character set.
    EXPECT_EQ(text(R"(\200\201\333\341\366\373\376\377)"), "\u00A0ÀçÆüß\uFFFD\uFFFD");
    EXPECT_EQ(text(R"(\U00e9\Ue9\U)"), std::string("éé") + '\0');
    EXPECT_EQ(text(R"(\U00e9f)"), "éf");
    EXPECT_EQ(text(R"(\Ud83d\Udc3c)"), "\U0001F43C");
    EXPECT_EQ(text(R"(\Ud83dx\Udc3c)"), "\uFFFDx\uFFFD");
    EXPECT_EQ(text(R"(\Ud83d)"), "\uFFFD");
    EXPECT_EQ(*parse("'a\\'b'").value().as<std::string>(), "a'b");
}

TEST(OldStylePropertyList, Refuses) {
    for (const char* const text : {"{ a = b }",
                                   "{ a = b; c }",
                                   "{ a = b; c = d }",
                                   "{ a = ; }",
                                   "{ = b; }",
                                   "{ a = b;",
                                   "{ a = b; )",
                                   "{",
                                   "(",
                                   "( a b )",
                                   "( a,, b )",
                                   "( , )",
                                   "( a;",
                                   "<0>",
                                   "<0 1>",
                                   "<0g>",
                                   "<01",
                                   "\"abc",
                                   "'abc\"",
                                   "\"abc\\",
                                   "{ a = b; } x",
                                   "( a ) b",
                                   "<01> b",
                                   "{ {} = a; }",
                                   "{ a = \"b; }",
                                   "[a]",
                                   "a@b = c;",
                                   "{ a = b; c@ = d; }",
                                   "*"}) {
        EXPECT_FALSE(parse(text).has_value()) << text;
    }
}

TEST(OldStylePropertyList, Encodings) {
    const PropertyList expected(Dictionary{{"k", "ü€"}});
    EXPECT_EQ(parse("{ k = \"ü€\"; }").value(), expected);
    for (const bool bigEndian : {false, true}) {
        EXPECT_EQ(parse(utf16("{ k = \"ü€\"; }", bigEndian, true)).value(), expected);
        EXPECT_EQ(parse(utf16("{ k = \"ü€\"; }", bigEndian, false)).value(), expected);
    }
    // A mark before UTF-8 is passed over for XML alone.
    EXPECT_FALSE(parse("\xEF\xBB\xBF{ k = v; }").has_value());
    EXPECT_EQ(parse("{ k = \"\xFF\"; }").error().message,
              "the text is not UTF-8 (line 1, column 8)");
    for (const char* const bad : {"\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE2\x82",
                                  "\xF0\x80\x80\x80", "\x80", "\xE0\x80\x80"}) {
        EXPECT_FALSE(parse("\"" + std::string(bad) + "\"").has_value());
        EXPECT_FALSE(parse("a // " + std::string(bad)).has_value());
    }
}

TEST(OldStylePropertyList, NestingIsBounded) {
    const auto nested = [](int depth) {
        return std::string(static_cast<std::size_t>(depth), '(') +
               std::string(static_cast<std::size_t>(depth), ')');
    };
    EXPECT_TRUE(parse(nested(kMaxOldStyleDepth)).has_value());
    EXPECT_FALSE(parse(nested(kMaxOldStyleDepth + 2)).has_value());
    EXPECT_FALSE(parse(nested(4'000'000)).has_value());
}

TEST(OldStylePropertyList, ProblemsNameThePlace) {
    EXPECT_EQ(parse("{\n  a = b\n}").error().message, "a semicolon is missing (line 3, column 1)");
    EXPECT_EQ(parse("{ a = \"b; }").error().message,
              "the quoted string does not end (line 1, column 7)");
    EXPECT_EQ(parse("").error().message, "the file is empty");
    EXPECT_EQ(parse("<0a>  b").error().message,
              "unexpected text after the root object (line 1, column 7)");
}

}  // namespace
}  // namespace velmoranth::desktop::old_style_property_list_test
