#include "property_list_text.h"
#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace velmoranth::desktop::binary_property_list_test {
namespace {

using platform::Date;
using platform::Dictionary;
using platform::PropertyList;

// The binary form of an XML property list, written by another implementation.
std::string binaryOf(const PropertyList& value) {
    const platform::Data xml = writeXmlPropertyList(value);
    plist_t node = nullptr;
    plist_from_xml(reinterpret_cast<const char*>(xml.data()),
                   static_cast<std::uint32_t>(xml.size()), &node);
    char* bytes = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(node, &bytes, &length);
    std::string result(bytes, length);
    std::free(bytes);
    plist_free(node);
    return result;
}

// A binary property list of the given objects; references are one byte.
std::string binary(const std::vector<std::string>& objects, unsigned top = 0) {
    std::string file = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
        table += static_cast<char>(file.size() >> 8U);
        table += static_cast<char>(file.size() & 0xFFU);
        file += object;
    }
    const std::size_t place = file.size();
    file += table + std::string(6, '\0') + "\x02\x01";
    const auto number = [&](std::size_t value) {
        for (int shift = 56; shift >= 0; shift -= 8) {
            file += static_cast<char>(value >> static_cast<unsigned>(shift) & 0xFFU);
        }
    };
    number(objects.size());
    number(top);
    number(place);
    return file;
}

TEST(BinaryPropertyList, ReadsWhatAnotherImplementationWrites) {
    PropertyList::Array many;
    for (int i = 0; i < 300; ++i) {
        many.emplace_back("item " + std::to_string(i));
    }
    const PropertyList value(Dictionary{
        {"string", "text"},
        {"long", std::string(70'000, 'x')},
        {"wide", "ü€\U0001F43C"},
        {"yes", true},
        {"no", false},
        {"integers", PropertyList::Array{0, 255, 256, 65536, INT64_MAX, -1, INT64_MIN}},
        {"real", 0.1},
        {"date", Date{590580000}},
        {"data", platform::Data(1000, 7)},
        {"many", many},
        {"empty", PropertyList::Array{"", Dictionary{}, PropertyList::Array{}}},
    });
    const auto read = parse(binaryOf(value));
    ASSERT_TRUE(read.has_value()) << toLine(read.error());
    EXPECT_EQ(*read, value);
}

TEST(BinaryPropertyList, ReadsSingleObjects) {
    const auto shown = [](const std::string& object) {
        const auto value = parse(binary({object}));
        return value ? show(*value) : "failed: " + value.error().message;
    };
    using namespace std::string_literals;
    EXPECT_EQ(shown("\x08"), "bool 0");
    EXPECT_EQ(shown("\x09"), "bool 1");
    EXPECT_EQ(shown("\x10\xFF"), "integer 255");
    EXPECT_EQ(shown("\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE"), "integer -2");
    EXPECT_EQ(shown("\x14\0\0\0\0\0\0\0\0\x80\0\0\0\0\0\0\0"s), "integer 9223372036854775807");
    EXPECT_EQ(shown("\x14\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x05"s), "integer 5");
    EXPECT_EQ(shown("\x22\x3F\xC0\0\0"s), "real 1.500000");
    EXPECT_EQ(shown("\x23\xC0\x04\0\0\0\0\0\0"s), "real -2.500000");
    EXPECT_EQ(shown("\x33\x40\x59\0\0\0\0\0\0"s), "date 100");
    EXPECT_EQ(shown("\x42\x01\xFF"), "data 01ff");
    EXPECT_EQ(shown("\x53"
                    "abc"),
              "string abc");
    EXPECT_EQ(shown("\x5F\x10\x03"
                    "abc"),
              "string abc");
    EXPECT_EQ(shown("\x62\xD8\x3D\xDC\x3C"), "string \U0001F43C");
    EXPECT_EQ(shown("\x61\xD8\x3D"), "string \uFFFD");
    EXPECT_EQ(parse(binary({"\x81\x01\x02"})).value(), PropertyList(Dictionary{{"CF$UID", 258}}));
    for (const std::string& bad : {"\0"s,           "\x0F"s,     "\x15"s + std::string(40, 'x'),
                                   "\x13"s,         "\x22"s,     "\x24"s + std::string(16, '\0'),
                                   "\x32\0\0\0\0"s, "\x5F"s,     "\x5F\x53"s,
                                   "\x5F\x10\x09"s, "\x51\x80"s, "\x5F\x14"s,
                                   "\x55"s,         "\x62x"s,    "\x45x"s,
                                   "\x70"s,         "\xC0"s,     "\xF0"s,
                                   "\xA1"s,         "\xA1\x09"s, "\xD1\0"s,
                                   "\x88"s}) {
        EXPECT_EQ(shown(bad).substr(0, 6), "failed") << bad;
    }
}

TEST(BinaryPropertyList, FirstOfARepeatedKeyCounts) {
    EXPECT_EQ(parse(binary({std::string("\xD2\x01\x01\x02\x03"), "\x51k",
                            "\x51"
                            "1",
                            "\x51"
                            "2"}))
                  .value(),
              PropertyList(Dictionary{{"k", "1"}}));
}

TEST(BinaryPropertyList, KeysAreStrings) {
    EXPECT_EQ(parse(binary({std::string("\xD1\x01\x01"), "\x09"})).error().message,
              "a key that is no string");
}

TEST(BinaryPropertyList, ObjectsInThemselvesAreRefused) {
    EXPECT_FALSE(parse(binary({std::string("\xA1\x00", 2)})).has_value());
    EXPECT_FALSE(parse(binary({std::string("\xA1\x01"), std::string("\xA1\x00", 2)})).has_value());
}

// Each array refers twice to the next: a file of some hundred bytes stands for 2^40 values.
TEST(BinaryPropertyList, ExpansionIsBounded) {
    std::vector<std::string> objects;
    for (int i = 1; i <= 40; ++i) {
        objects.push_back(std::string("\xA2") + static_cast<char>(i) + static_cast<char>(i));
    }
    objects.emplace_back("\x09");
    EXPECT_EQ(parse(binary(objects)).error().message,
              "the property list expands to more than is read");
}

TEST(BinaryPropertyList, ExpansionOfLongStringsIsBounded) {
    const std::string text = std::string("\x5F\x12\x00\x00\xF0\x00", 6) + std::string(0xF000, 'x');
    std::string many = "\xAF\x11\x20";
    many += std::string(1, '\0') + std::string(0x2000, '\x01');
    EXPECT_EQ(parse(binary({many, text})).error().message,
              "the property list expands to more than is read");
}

TEST(BinaryPropertyList, DamagedFilesFailWithAPlace) {
    const std::string good = binary({"\x51k"});
    ASSERT_TRUE(parse(good).has_value());
    for (std::size_t length = 7; length < good.size(); ++length) {
        EXPECT_FALSE(parse(good.substr(0, length)).has_value()) << length;
    }
    const auto damaged = [&](std::size_t fromEnd, char byte) {
        std::string file = good;
        file[file.size() - fromEnd] = byte;
        return parse(file);
    };
    for (const std::size_t fromEnd : {26U, 25U, 17U, 9U, 1U}) {
        for (const char byte : {'\0', '\x7F', '\xFF'}) {
            if (good[good.size() - fromEnd] != byte && !(fromEnd == 25 && byte != '\0')) {
                EXPECT_FALSE(damaged(fromEnd, byte).has_value()) << fromEnd;
            }
        }
    }
    const auto problem = parse("bplist00").error();
    EXPECT_EQ(problem.message, "the binary property list is truncated");
    EXPECT_EQ(problem.offset, 8U);
}

}  // namespace
}  // namespace velmoranth::desktop::binary_property_list_test
