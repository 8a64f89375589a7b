#include "desktop/catalog/key_format.h"

#include "tests/support/catalog/byte_writer.h"

#include <gtest/gtest.h>

namespace velmoranth::catalog::key_format_test {
namespace {

using tests::ByteVector;
using tests::ByteWriter;
using Attributes = std::vector<std::uint16_t>;

ByteVector block(std::size_t count, const std::vector<std::uint32_t>& attributes) {
    ByteWriter writer;
    writer.text("tmfk").u32(0).u32(count);
    for (const std::uint32_t attribute : attributes) {
        writer.u32(attribute);
    }
    return writer.take();
}

std::string messageOf(const ByteVector& bytes) {
    const auto format = KeyFormat::parse(bytes);
    return format ? "" : format.error().message;
}

TEST(KeyFormat, ListsTheAttributeOfEachSlot) {
    const auto format = KeyFormat::parse(block(3, {12, 17, 1}));
    ASSERT_TRUE(format);
    EXPECT_EQ(format->attributes(), (Attributes{12, 17, 1}));
    EXPECT_EQ(format->keySize(), 6U);
}

TEST(KeyFormat, CorrectsThePlaceholders) {
    auto format = KeyFormat::parse(block(4, {12, 5, 17, 5}));
    ASSERT_TRUE(format);
    EXPECT_FALSE(format->correct(ByteWriter().u32(0).u32(25).u32(0).take()));
    EXPECT_EQ(format->attributes(), (Attributes{12, 5, 17, 5}));
    EXPECT_TRUE(format->correct(ByteWriter().u32(0).u32(25).u32(0).u32(24).take()));
    EXPECT_EQ(format->attributes(), (Attributes{12, 25, 17, 24}));
}

TEST(KeyFormat, ReadsValuesAndTakesMissingOnesForZero) {
    const KeyFormat format(Attributes{12, 17});
    const ByteVector key{2, 0, 7, 1, 99, 99};
    EXPECT_EQ(format.value(key, 12), 2);
    EXPECT_EQ(format.value(key, 17), 0x107);
    EXPECT_EQ(format.value(key, 15), 0);
    EXPECT_EQ(format.value(Bytes(key).first(3), 17), 0);
    EXPECT_EQ(format.value({}, 12), 0);
}

TEST(KeyFormat, MakesKeys) {
    const KeyFormat format(Attributes{12, 17, 1});
    EXPECT_EQ(format.key({{1, 9}, {12, 0x203}}), (ByteVector{3, 2, 0, 0, 9, 0}));
    EXPECT_EQ(format.key({}), ByteVector(6));
    EXPECT_EQ(format.key({{15, 0}}), ByteVector(6));
    EXPECT_EQ(format.key({{15, 1}}), std::nullopt);
}

TEST(KeyFormat, RefusesDamage) {
    EXPECT_EQ(messageOf({}), "the key format is damaged");
    EXPECT_EQ(messageOf(ByteVector(20)), "the key format is damaged");
    EXPECT_EQ(messageOf(block(4, {1, 2, 3})), "the key format is truncated");
    EXPECT_EQ(messageOf(block(0xFFFFFFFF, {1, 2, 3})), "the key format is truncated");
    EXPECT_EQ(messageOf(block(0, {})), "the key format has 0 slots");
    EXPECT_EQ(messageOf(block(257, std::vector<std::uint32_t>(257, 1))),
              "the key format has 257 slots");
    EXPECT_EQ(messageOf(block(1, {0x10000})), "the key format has an attribute 65536");
}

}  // namespace
}  // namespace velmoranth::catalog::key_format_test
