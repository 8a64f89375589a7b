#include "desktop/catalog/bom_store.h"

#include "tests/support/catalog/bom_writer.h"

#include <gtest/gtest.h>

#include <string>

namespace velmoranth::catalog::bom_store_test {
namespace {

using tests::BomWriter;
using tests::ByteVector;
using tests::ByteWriter;

constexpr std::size_t kTableField = 16;
constexpr std::size_t kVariablesField = 24;

// Puts another number in place of a big-endian one.
void put(ByteVector& file, std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) {
        file[offset + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    }
}

std::uint32_t get(const ByteVector& file, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8U | file[offset + i];
    }
    return value;
}

std::string messageOf(const ByteVector& file) {
    const auto store = BomStore::parse(file);
    return store ? "" : store.error().message;
}

TEST(BomStore, FindsBlocksByNumberAndName) {
    BomWriter writer;
    const std::uint32_t first = writer.add({1, 2, 3});
    const std::uint32_t second = writer.add({4});
    writer.name("one", second);
    writer.name("two", first);
    const ByteVector file = writer.build();
    const auto store = BomStore::parse(file);
    ASSERT_TRUE(store);
    EXPECT_EQ(store->named("one"), second);
    EXPECT_EQ(store->named("two"), first);
    EXPECT_EQ(store->named("three"), std::nullopt);
    const auto block = store->block(first);
    ASSERT_TRUE(block);
    EXPECT_EQ(ByteVector(block->begin(), block->end()), (ByteVector{1, 2, 3}));
    EXPECT_EQ(store->offsetOf(*block), 512U);
    EXPECT_EQ(store->blockCount(), 3U);
}

TEST(BomStore, HasNoBlockForNumbersWithoutOne) {
    BomWriter writer;
    const std::uint32_t unused = writer.addAt(0, 0);
    const std::uint32_t freed = writer.addAt(0xFFFFFFFF, 0xFFFFFFFF);
    const ByteVector file = writer.build();
    const auto store = BomStore::parse(file);
    ASSERT_TRUE(store);
    EXPECT_FALSE(store->block(0));
    EXPECT_FALSE(store->block(unused));
    EXPECT_FALSE(store->block(freed));
    EXPECT_FALSE(store->block(freed + 1));
    EXPECT_FALSE(store->block(0xFFFFFFFF));
}

TEST(BomStore, HasNoBlockZeroNorOneBeyondTheCount) {
    BomWriter writer;
    const std::uint32_t last = writer.add({1});
    ByteVector file = writer.build();
    const std::uint32_t table = get(file, kTableField);
    put(file, table + 4, 512);
    put(file, table, last);
    const auto store = BomStore::parse(file);
    ASSERT_TRUE(store);
    EXPECT_FALSE(store->block(0));
    EXPECT_FALSE(store->block(last));
}

TEST(BomStore, HasNoBlockThatIsNotWhollyWithinTheFile) {
    BomWriter writer;
    const std::uint32_t last = writer.addAt(512, 28);
    const std::uint32_t beyond = writer.addAt(512, 1000);
    const std::uint32_t wrapping = writer.addAt(512, 0xFFFFFF00);
    const ByteVector file = writer.build();
    const auto store = BomStore::parse(file);
    ASSERT_TRUE(store);
    EXPECT_TRUE(store->block(last));
    EXPECT_FALSE(store->block(beyond));
    EXPECT_FALSE(store->block(wrapping));
}

TEST(BomStore, RefusesOtherFiles) {
    EXPECT_EQ(messageOf({}), "it is not a compiled asset catalog");
    EXPECT_EQ(messageOf({'B', 'O', 'M'}), "it is not a compiled asset catalog");
    EXPECT_EQ(messageOf(ByteVector(1000)), "it is not a compiled asset catalog");
    EXPECT_EQ(messageOf(ByteWriter().text("BOMStore").zeros(8).take()),
              "the file is cut off: its header ends at byte 32, and the file at byte 16; get a "
              "whole copy");
}

TEST(BomStore, SaysThatAFileIsCutOffWhenItsTablesLieBehindItsEnd) {
    const ByteVector sound = BomWriter().build();
    const auto cutOff = [&](const std::string& table, std::uint64_t end) {
        return "the file is cut off: its table of " + table + " ends at byte " +
               std::to_string(end) + ", and the file at byte " + std::to_string(sound.size()) +
               "; get a whole copy";
    };
    ASSERT_EQ(messageOf(sound), "");
    ByteVector file = sound;
    put(file, kTableField, 0xFFFFFFFF);
    EXPECT_EQ(messageOf(file), cutOff("blocks", 0xFFFFFFFFULL + get(file, kTableField + 4)));
    file = sound;
    put(file, kTableField + 4, static_cast<std::uint32_t>(file.size()));
    EXPECT_EQ(messageOf(file), cutOff("blocks", get(file, kTableField) + file.size()));
    file = sound;
    put(file, kVariablesField, static_cast<std::uint32_t>(file.size()));
    EXPECT_EQ(messageOf(file), cutOff("names", file.size() + get(file, kVariablesField + 4)));
}

TEST(BomStore, RefusesCountsBeyondTheTables) {
    BomWriter writer;
    writer.name("a", writer.add({1}));
    const ByteVector sound = writer.build();
    ByteVector file = sound;
    put(file, get(file, kTableField), 0x10000000);
    EXPECT_EQ(messageOf(file), "the table of blocks is truncated");
    file = sound;
    put(file, get(file, kVariablesField), 2);
    EXPECT_EQ(messageOf(file), "the table of names is damaged");
    put(file, get(file, kVariablesField), 0xFFFFFFFF);
    EXPECT_EQ(messageOf(file), "the table of names is damaged");
}

TEST(BomStore, EveryCutIsRefusedOrRead) {
    BomWriter writer;
    writer.name("a", writer.add({1, 2, 3}));
    const ByteVector file = writer.build();
    for (std::size_t size = 0; size < file.size(); ++size) {
        // A copy of its own, so that a read beyond its end is noticed.
        const ByteVector cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(messageOf(cut), "") << size;
    }
}

}  // namespace
}  // namespace velmoranth::catalog::bom_store_test
