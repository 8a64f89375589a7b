#include "core/format.h"

#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::core::format_test {

// Not of this file alone: a format string's check is a function of its arguments' types, which
// clang would miss the definition of.
struct Thing final : platform::Object {
    [[nodiscard]] std::string className() const override { return "Thing"; }

    [[nodiscard]] std::string description() const override { return "a thing"; }
};

namespace {

TEST(StringWithFormat, Objects) {
    EXPECT_EQ(stringWithFormat("<%@>", std::string("text")), "<text>");
    EXPECT_EQ(stringWithFormat("<%@>", std::string()), "<>");
    EXPECT_EQ(stringWithFormat("<%@>", platform::NullableString("text")), "<text>");
    EXPECT_EQ(stringWithFormat("%@", platform::PropertyList(true)), "1");
    EXPECT_EQ(stringWithFormat("%@", platform::PropertyList(0.5)), "0.5");
    EXPECT_EQ(stringWithFormat("%@", platform::PropertyList("a b")), "a b");
    EXPECT_EQ(stringWithFormat("%@", std::make_shared<Thing>()), "a thing");
    EXPECT_EQ(stringWithFormat("%@", platform::ObjectRef(std::make_shared<Thing>())), "a thing");
}

TEST(StringWithFormat, NilIsWrittenAsSuch) {
    EXPECT_EQ(stringWithFormat("<%@>", platform::NullableString()), "<(null)>");
    EXPECT_EQ(stringWithFormat("<%@>", platform::ObjectRef()), "<(null)>");
    EXPECT_EQ(stringWithFormat("<%@>", platform::ImageRef()), "<(null)>");
    EXPECT_EQ(stringWithFormat("<%s>", static_cast<const char*>(nullptr)), "<(null)>");
}

TEST(StringWithFormat, TextOfC) {
    EXPECT_EQ(stringWithFormat("<%s>", "text"), "<text>");
    const char* const empty = "";
    EXPECT_EQ(stringWithFormat("<%s>", empty), "<>");
}

TEST(StringWithFormat, WholeNumbers) {
    EXPECT_EQ(stringWithFormat("%i", 2), "2");
    EXPECT_EQ(stringWithFormat("%d", -7), "-7");
    EXPECT_EQ(stringWithFormat("%i", std::numeric_limits<int>::min()), "-2147483648");
    EXPECT_EQ(stringWithFormat("%u", 4294967295U), "4294967295");
    EXPECT_EQ(stringWithFormat("%ld", -9L), "-9");
    EXPECT_EQ(stringWithFormat("%lld", std::numeric_limits<long long>::min()),
              "-9223372036854775808");
    EXPECT_EQ(stringWithFormat("%llu", std::numeric_limits<unsigned long long>::max()),
              "18446744073709551615");
}

TEST(StringWithFormat, RealNumbersWithSixDecimals) {
    EXPECT_EQ(stringWithFormat("%f", 3.0), "3.000000");
    EXPECT_EQ(stringWithFormat("%f", 1575.23), "1575.230000");
    EXPECT_EQ(stringWithFormat("%f", -0.0000004), "-0.000000");
    EXPECT_EQ(stringWithFormat("%f", 0.5F), "0.500000");
    const std::string largest = stringWithFormat("%f", -std::numeric_limits<double>::max());
    EXPECT_EQ(largest.size(), 317U);
    EXPECT_TRUE(largest.starts_with("-179769313486231570"));
    EXPECT_TRUE(largest.ends_with(".000000"));
}

TEST(StringWithFormat, SeveralInTheirOrder) {
    EXPECT_EQ(stringWithFormat("%@.%i", platform::NullableString("com.a"), 2), "com.a.2");
    EXPECT_EQ(stringWithFormat("%@%@", std::string("a"), std::string("b")), "ab");
    EXPECT_EQ(stringWithFormat("/%@/x/%@-large.png", std::string("T"), platform::NullableString()),
              "/T/x/(null)-large.png");
    EXPECT_EQ(stringWithFormat("a %d b %u c %lld d %llu e %f f %s g", -1, 2U, -3LL, 4ULL, 0.5, "s"),
              "a -1 b 2 c -3 d 4 e 0.500000 f s g");
}

TEST(StringWithFormat, WithoutPlaceholderTheTextItself) {
    EXPECT_EQ(stringWithFormat("UpdateIcons "), "UpdateIcons ");
    EXPECT_EQ(stringWithFormat(""), "");
}

TEST(StringWithFormat, AnArgumentIsNoFormat) {
    EXPECT_EQ(stringWithFormat("%@-%@", std::string("%@ %s %%"), std::string("%i")), "%@ %s %%-%i");
}

TEST(NSLog, WritesOneLineToTheSystemLog) {
    const tests::TestDevice device;
    NSLog("a %@ of %i", platform::NullableString(), 3);
    NSLog("plain ");
    EXPECT_EQ(device.journal.lines(),
              (std::vector<std::string>{"log a (null) of 3", "log plain "}));
}

}  // namespace
}  // namespace velmoranth::core::format_test
