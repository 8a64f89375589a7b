#include "property_list_text.h"
#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace velmoranth::desktop::xml_property_list_test {
namespace {

using platform::Date;
using platform::Dictionary;
using platform::PropertyList;

// The value of key "a" in a dictionary written around `element`.
std::string valueOf(const std::string& element) {
    const auto root =
        parse("<plist version=\"1.0\"><dict><key>a</key>" + element + "</dict></plist>");
    if (!root) {
        return "failed: " + root.error().message;
    }
    return show(root->as<Dictionary>()->at("a"));
}

bool fails(const std::string& text) {
    return !parse(text).has_value();
}

TEST(XmlPropertyList, ReadsEveryKind) {
    const auto root = parse(R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<!-- a comment -->
<dict>
    <key>string</key> <string>a &amp; b&#65;<![CDATA[<&amp;>]]></string>
    <key>yes</key> <true/>
    <key>no</key> <false></false>
    <key>integer</key> <integer>-42</integer>
    <key>real</key> <real>0.25</real>
    <key>date</key> <date>2019-09-19T10:00:00Z</date>
    <key>data</key> <data>
        AQID
        BA==
    </data>
    <key>array</key> <array><string/><dict/><array/></array>
</dict>
</plist>
)");
    ASSERT_TRUE(root.has_value()) << root.error().message;
    EXPECT_EQ(*root, PropertyList(Dictionary{
                         {"string", "a & bA<&amp;>"},
                         {"yes", true},
                         {"no", false},
                         {"integer", -42},
                         {"real", 0.25},
                         {"date", Date{590580000}},
                         {"data", platform::Data{1, 2, 3, 4}},
                         {"array", PropertyList::Array{"", Dictionary{}, PropertyList::Array{}}},
                     }));
}

TEST(XmlPropertyList, IntegersAreDecimalOrHexadecimal) {
    EXPECT_EQ(valueOf("<integer>+7</integer>"), "integer 7");
    EXPECT_EQ(valueOf("<integer> \n 12\t</integer>"), "integer 12");
    EXPECT_EQ(valueOf("<integer>-0x1F</integer>"), "integer -31");
    EXPECT_EQ(valueOf("<integer>0XfF</integer>"), "integer 255");
    EXPECT_EQ(valueOf("<integer>-9223372036854775808</integer>"), "integer -9223372036854775808");
    EXPECT_EQ(valueOf("<integer>18446744073709551615</integer>"), "integer 9223372036854775807");
    for (const char* const text : {"", "12x", "1.5", "0x", "--1", "1 2", "18446744073709551616",
                                   "-9223372036854775809", "one"}) {
        EXPECT_EQ(valueOf("<integer>" + std::string(text) + "</integer>").substr(0, 6), "failed")
            << text;
    }
    EXPECT_EQ(valueOf("<integer/>").substr(0, 6), "failed");
}

TEST(XmlPropertyList, RealsAreTheWholeText) {
    EXPECT_EQ(valueOf("<real>1.5</real>"), "real 1.500000");
    EXPECT_EQ(valueOf("<real>-.5e1</real>"), "real -5.000000");
    EXPECT_EQ(valueOf("<real>+5.</real>"), "real 5.000000");
    EXPECT_EQ(valueOf("<real>NaN</real>"), "real nan");
    EXPECT_EQ(valueOf("<real>-Infinity</real>"), "real -inf");
    EXPECT_EQ(valueOf("<real>+inf</real>"), "real inf");
    EXPECT_EQ(valueOf("<real>1e999</real>"), "real inf");
    EXPECT_EQ(valueOf("<real>1e-999</real>"), "real 0.000000");
    for (const char* const text :
         {"", "1.5x", "0x10", "1,5", "+-5", "-", "+nan", "infinit", "1e", "1.5 "}) {
        EXPECT_EQ(valueOf("<real>" + std::string(text) + "</real>").substr(0, 6), "failed") << text;
    }
}

TEST(XmlPropertyList, DatesAreOfTheCalendar) {
    EXPECT_EQ(valueOf("<date>2001-01-01T00:00:00Z</date>"), "date 0");
    EXPECT_EQ(valueOf("<date>1970-01-01T00:00:00Z</date>"), "date -978307200");
    EXPECT_EQ(valueOf("<date>2020-02-29T23:59:60Z</date>"), "date 604713600");
    for (const char* const text :
         {"", "2019-02-29T00:00:00Z", "2020-13-01T00:00:00Z", "2020-01-01T24:00:00Z",
          "2020-01-01T00:00:00", "2020-01-01", "x020-01-01T00:00:00Z"}) {
        EXPECT_EQ(valueOf("<date>" + std::string(text) + "</date>").substr(0, 6), "failed") << text;
    }
}

TEST(XmlPropertyList, DataPassesOverWhatIsNoBase64) {
    EXPECT_EQ(valueOf("<data>A!Q\nI*D</data>"), "data 010203");
    EXPECT_EQ(valueOf("<data>/+8=</data>"), "data ffef");
    EXPECT_EQ(valueOf("<data></data>"), "data ");
    EXPECT_EQ(valueOf("<data/>").substr(0, 6), "failed");
}

TEST(XmlPropertyList, BooleansAreEmpty) {
    EXPECT_EQ(valueOf("<true></true>"), "bool 1");
    EXPECT_EQ(valueOf("<true>x</true>").substr(0, 6), "failed");
}

TEST(XmlPropertyList, WrapperIsOptionalAndWhatFollowsTheRootDoesNotCount) {
    EXPECT_EQ(parse("<dict><key>a</key><string>b</string></dict>").value(),
              PropertyList(Dictionary{{"a", "b"}}));
    EXPECT_TRUE(parse("<dict/>junk <b &").has_value());
    EXPECT_TRUE(parse("<plist><dict/></plist> trailing <b>").has_value());
    EXPECT_TRUE(parse(" \n\t<?xml version=\"1.0\"?><plist><dict/></plist>").has_value());
}

TEST(XmlPropertyList, LastOfARepeatedKeyCounts) {
    EXPECT_EQ(
        parse("<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>").value(),
        PropertyList(Dictionary{{"a", "2"}}));
}

TEST(XmlPropertyList, DamagedFilesFailAsAWhole) {
    for (const char* const text : {"<plist></plist>",
                                   "<plist/>",
                                   "<plist><dict/><dict/></plist>",
                                   "<plist><plist><dict/></plist></plist>",
                                   "<dict><plist/></dict>",
                                   "<dict><key>a</key></dict>",
                                   "<dict><key>a</key><key>b</key><string/></dict>",
                                   "<dict><string>a</string></dict>",
                                   "<dict><key>a</key><foo/></dict>",
                                   "<dict><key>a</key><string>b</string>c</dict>",
                                   "<dict><key>a</key><string>b<true/></string></dict>",
                                   "<dict><key>a</key><string>b</dict>",
                                   "<dict><key>a</key><string>b</string>",
                                   "<plist><dict>",
                                   "<array><key>a</key></array>",
                                   "<key>a</key>",
                                   "<plist><key>a</key></plist>",
                                   "<string>a & b</string>",
                                   "<string>&unknown;</string>",
                                   "<!DOCTYPE plist [<!ENTITY x \"y\">]><string>&x;</string>",
                                   "<!DOCTYPE plist SYSTEM \"x\"><dict>&x;</dict>",
                                   "<string>\xC3\x28</string>",
                                   "<?xml version=\"1.0\" encoding=\"no-such\"?><dict/>",
                                   "<html><body/></html>"}) {
        EXPECT_TRUE(fails(text)) << text;
    }
}

TEST(XmlPropertyList, EntitiesOfTheDocumentAreNotExpanded) {
    std::string text = "<!DOCTYPE plist [<!ENTITY a0 \"x\">";
    for (int i = 1; i < 30; ++i) {
        const std::string before = "&a" + std::to_string(i - 1) + ";";
        text += "<!ENTITY a" + std::to_string(i) + " \"" + before + before + "\">";
    }
    EXPECT_TRUE(fails(text + "]><string>&a29;</string>"));
}

TEST(XmlPropertyList, EncodingsAreTold) {
    const PropertyList expected(Dictionary{{"k", "ü"}});
    const std::string body = "<dict><key>k</key><string>ü</string></dict>";
    EXPECT_EQ(parse("\xEF\xBB\xBF" + body).value(), expected);
    EXPECT_EQ(parse("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
                    "<dict><key>k</key><string>\xFC</string></dict>")
                  .value(),
              expected);
    // What UTF-16 declares in its own characters does not count.
    const std::string declared = "<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + body;
    for (const std::string& text : {body, declared}) {
        for (const bool bigEndian : {false, true}) {
            EXPECT_EQ(parse(utf16(text, bigEndian, true)).value(), expected) << text;
            EXPECT_EQ(parse(utf16(text, bigEndian, false)).value(), expected) << text;
        }
    }
    EXPECT_EQ(
        parse(std::string("\0\0\xFE\xFF\0\0\0<\0\0\0d\0\0\0i\0\0\0c\0\0\0t\0\0\0/\0\0\0>", 32))
            .value(),
        PropertyList(Dictionary{}));
    EXPECT_EQ(
        parse(std::string("\xFF\xFE\0\0<\0\0\0d\0\0\0i\0\0\0c\0\0\0t\0\0\0/\0\0\0>\0\0\0", 32))
            .value(),
        PropertyList(Dictionary{}));
}

TEST(XmlPropertyList, NestingIsBounded) {
    const auto nested = [](int depth) {
        std::string text;
        for (int i = 0; i < depth; ++i) {
            text += "<array>";
        }
        for (int i = 0; i < depth; ++i) {
            text += "</array>";
        }
        return text;
    };
    EXPECT_FALSE(fails(nested(kMaxPropertyListDepth)));
    EXPECT_TRUE(fails(nested(kMaxPropertyListDepth + 2)));
    EXPECT_TRUE(fails(nested(1'000'000)));
}

TEST(XmlPropertyList, ProblemsNameThePlace) {
    EXPECT_EQ(parse("<dict>\n  <key>a</key>\n  <foo/>\n</dict>").error().message,
              "unknown element <foo> (line 3, column 3)");
    EXPECT_EQ(parse("<dict>\n<key>a</key><integer>x1</integer></dict>").error().message,
              "no value of this kind: \"x1\" (line 2, column 24)");
    EXPECT_EQ(parse("<dict>\n<key>a</wrong></dict>").error().message,
              "mismatched tag (line 2, column 9)");
    EXPECT_EQ(parse("<dict><key>a</key></dict>").error().message,
              "a key without a value (line 1, column 19)");
    EXPECT_EQ(parse("\n\n<foo/>").error().message, "unknown element <foo> (line 3, column 1)");
}

TEST(WriteXmlPropertyList, WritesAsThePlatformDoes) {
    const PropertyList value(Dictionary{
        {"b", PropertyList::Array{1, true, "x < & >"}},
        {"a", 0.1},
        {"d", Date{590580000.7}},
        {"e", Dictionary{}},
        {"c", platform::Data{0xFF, 0xEF}},
    });
    const platform::Data bytes = writeXmlPropertyList(value);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n<dict>\n"
              "\t<key>a</key>\n\t<real>0.1</real>\n"
              "\t<key>b</key>\n\t<array>\n\t\t<integer>1</integer>\n\t\t<true/>\n"
              "\t\t<string>x &lt; &amp; &gt;</string>\n\t</array>\n"
              "\t<key>c</key>\n\t<data>\n\t/+8=\n\t</data>\n"
              "\t<key>d</key>\n\t<date>2019-09-19T10:00:00Z</date>\n"
              "\t<key>e</key>\n\t<dict/>\n"
              "</dict>\n</plist>\n");
}

TEST(WriteXmlPropertyList, WhatIsWrittenReadsTheSame) {
    const PropertyList value(Dictionary{
        {"reals", PropertyList::Array{1.0 / 3, -1e300, 5e-324, INFINITY, -INFINITY, 0.0}},
        {"integers", PropertyList::Array{INT64_MIN, INT64_MAX, 0}},
        {"dates", PropertyList::Array{Date{-978307201}, Date{0}, Date{-63'113'904'000.0}}},
        {"strings", PropertyList::Array{"", " x ", "\n\t\r\n\r", "ü\U0001F600", "<![CDATA[]]>"}},
        {"<&>\"'", platform::Data{}},
        {"data", platform::Data{1, 2, 3, 4, 5}},
    });
    EXPECT_EQ(parsePropertyList(writeXmlPropertyList(value)).value(), value);
}

// XML cannot hold most control characters; a file that nobody can read helps nobody.
TEST(WriteXmlPropertyList, LeavesOutWhatXmlCannotHold) {
    EXPECT_EQ(parsePropertyList(writeXmlPropertyList(
                                    Dictionary{{"a", std::string("x\0\x01y\xFFz\xEF\xBF\xBE", 9)}}))
                  .value(),
              PropertyList(Dictionary{{"a", "xy\uFFFDz"}}));
}

}  // namespace
}  // namespace velmoranth::desktop::xml_property_list_test
