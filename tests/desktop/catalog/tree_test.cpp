#include "desktop/catalog/tree.h"

#include "tests/support/catalog/bom_writer.h"

#include <gtest/gtest.h>

#include <string>

namespace velmoranth::catalog::tree_test {
namespace {

using tests::BomWriter;
using tests::ByteVector;
using Problems = std::vector<std::string>;

BomWriter::Entries entries(std::size_t count) {
    BomWriter::Entries entries;
    for (std::size_t i = 0; i < count; ++i) {
        const auto high = static_cast<std::uint8_t>(i >> 8U);
        const auto low = static_cast<std::uint8_t>(i);
        entries.push_back({{high, low}, {low, high, 7}});
    }
    return entries;
}

// The tree that block `number` of the container is, its views made into copies.
struct ReadTree {
    std::string message;
    BomWriter::Entries entries;
    Problems problems;
    std::vector<std::uint32_t> numbers;
};

ReadTree read(const BomWriter& writer, std::uint32_t number) {
    const ByteVector file = writer.build();
    const auto store = BomStore::parse(file);
    EXPECT_TRUE(store);
    const auto tree = readTree(*store, number);
    ReadTree result;
    if (!tree) {
        result.message = tree.error().message;
        return result;
    }
    result.problems = tree->problems;
    for (const TreeEntry& entry : tree->entries) {
        const Bytes value = entry.value.value_or(Bytes());
        result.entries.push_back({ByteVector(entry.key.begin(), entry.key.end()),
                                  ByteVector(value.begin(), value.end())});
        result.numbers.push_back(entry.number);
    }
    return result;
}

TEST(Tree, GivesEntriesInOrder) {
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{510}}) {
        BomWriter writer;
        const ReadTree tree = read(writer, writer.addTree(entries(count)));
        EXPECT_EQ(tree.entries, entries(count));
        EXPECT_EQ(tree.problems, Problems());
    }
}

TEST(Tree, GoesDownSeveralLevels) {
    for (const std::size_t perPage : {1U, 2U, 3U, 7U}) {
        BomWriter writer;
        const std::uint32_t number = writer.addTree(entries(300), {.entriesPerPage = perPage});
        const ReadTree tree = read(writer, number);
        EXPECT_EQ(tree.entries, entries(300)) << perPage;
        EXPECT_EQ(tree.problems, Problems()) << perPage;
    }
}

TEST(Tree, TakesNumbersForKeys) {
    BomWriter writer;
    const std::uint32_t number =
        writer.addTree({{{0, 0, 1, 2}, {9}}, {{0, 0, 1, 3}, {8}}}, {.numbers = true});
    const ReadTree tree = read(writer, number);
    EXPECT_EQ(tree.entries, (BomWriter::Entries{{{}, {9}}, {{}, {8}}}));
    EXPECT_EQ(tree.numbers, (std::vector<std::uint32_t>{0x102, 0x103}));
}

TEST(Tree, SaysThatTheCountIsWrong) {
    BomWriter writer;
    const ReadTree tree = read(writer, writer.addTree(entries(3), {.count = 4}));
    EXPECT_EQ(tree.entries, entries(3));
    EXPECT_EQ(tree.problems, Problems{"it has 3 entries instead of 4"});
}

TEST(Tree, RefusesWhatIsNoTree) {
    BomWriter writer;
    const std::uint32_t other = writer.add(ByteVector(40));
    const std::uint32_t cut = writer.add({'t', 'r', 'e', 'e', 0, 0, 0, 1});
    const std::uint32_t rootless = writer.add(BomWriter::treeHeader(999, 1));
    const std::uint32_t badRoot =
        writer.add(BomWriter::treeHeader(writer.add({0, 1, 0, 1, 0, 0}), 1));
    EXPECT_EQ(read(writer, other).message, "it is no tree");
    EXPECT_EQ(read(writer, cut).message, "it is no tree");
    EXPECT_EQ(read(writer, 0).message, "it is no tree");
    EXPECT_EQ(read(writer, rootless).message, "its first page cannot be read");
    EXPECT_EQ(read(writer, badRoot).message, "its first page cannot be read");
}

TEST(Tree, LeavesOutPagesThatLoop) {
    BomWriter writer;
    const std::uint32_t key = writer.add({1});
    const std::uint32_t leaf = writer.add(BomWriter::page({.entries = {{key, key}}}));
    const std::uint32_t root = writer.add({});
    // The root is its own child, and so is a leaf twice.
    writer.replace(root, BomWriter::page({.leaf = false,
                                          .entries = {{root, key}, {leaf, key}, {leaf, key}},
                                          .lastChild = root}));
    const ReadTree tree = read(writer, writer.add(BomWriter::treeHeader(root, 1)));
    EXPECT_EQ(tree.entries, (BomWriter::Entries{{{1}, {1}}}));
    EXPECT_EQ(tree.problems, Problems{"3 of its pages cannot be read"});
}

TEST(Tree, KeepsWhatIsBesideDamage) {
    BomWriter writer;
    const std::uint32_t key = writer.add({1});
    const std::uint32_t sound = writer.add(BomWriter::page({.entries = {{key, key}}}));
    const std::uint32_t damaged = writer.add({0, 1, 0xFF, 0xFF});
    const std::uint32_t keyless =
        writer.add(BomWriter::page({.entries = {{key, 999}, {998, key}}}));
    const std::uint32_t root = writer.add(BomWriter::page(
        {.leaf = false, .entries = {{damaged, key}, {sound, key}}, .lastChild = keyless}));
    const ReadTree tree = read(writer, writer.add(BomWriter::treeHeader(root, 3)));
    EXPECT_EQ(tree.entries, (BomWriter::Entries{{{1}, {1}}, {{1}, {}}}));
    EXPECT_EQ(tree.problems,
              (Problems{"1 of its pages cannot be read", "1 of its keys cannot be read"}));
}

TEST(Tree, LeavesOutPagesThatAreCutOrOfNoKind) {
    BomWriter writer;
    const std::uint32_t key = writer.add({1});
    const std::uint32_t leaf = writer.add(BomWriter::page({.entries = {{key, key}}}));
    ByteVector cut = BomWriter::page({.leaf = false, .entries = {{leaf, key}}, .lastChild = leaf});
    cut.resize(cut.size() - 4);
    ByteVector odd = BomWriter::page({.entries = {{key, key}}});
    odd[1] = 2;
    const std::uint32_t root =
        writer.add(BomWriter::page({.leaf = false,
                                    .entries = {{writer.add(cut), key}, {writer.add(odd), key}},
                                    .lastChild = leaf}));
    const ReadTree tree = read(writer, writer.add(BomWriter::treeHeader(root, 1)));
    EXPECT_EQ(tree.entries, (BomWriter::Entries{{{1}, {1}}}));
    EXPECT_EQ(tree.problems, Problems{"2 of its pages cannot be read"});
}

TEST(Tree, StopsAtMoreEntriesThanTheFileHasRoomFor) {
    BomWriter writer;
    const std::uint32_t key = writer.add({1});
    BomWriter::Page leaf;
    leaf.entries.assign(1000, {key, key});
    const std::uint32_t stored = writer.add(BomWriter::page(leaf));
    // Many leaves on the same bytes.
    BomWriter::Page root{.leaf = false, .lastChild = stored};
    for (int i = 0; i < 500; ++i) {
        root.entries.emplace_back(writer.addAt(512 + 1, 12 + 8 * 1000), key);
    }
    const std::uint32_t number =
        writer.add(BomWriter::treeHeader(writer.add(BomWriter::page(root)), 500'000));
    const ReadTree tree = read(writer, number);
    EXPECT_LE(tree.entries.size(), writer.build().size() / 24);
    EXPECT_GE(tree.entries.size(), 100U);
    EXPECT_EQ(tree.problems, Problems{"it has more entries than the file has room for"});
}

TEST(Tree, DescendsAsDeepAsItHasPages) {
    BomWriter writer;
    const std::uint32_t key = writer.add({1});
    std::uint32_t child = writer.add(BomWriter::page({.entries = {{key, key}}}));
    for (int i = 0; i < 20'000; ++i) {
        child = writer.add(BomWriter::page({.leaf = false, .lastChild = child}));
    }
    const ReadTree tree = read(writer, writer.add(BomWriter::treeHeader(child, 1)));
    EXPECT_EQ(tree.entries, (BomWriter::Entries{{{1}, {1}}}));
    EXPECT_EQ(tree.problems, Problems());
}

}  // namespace
}  // namespace velmoranth::catalog::tree_test
