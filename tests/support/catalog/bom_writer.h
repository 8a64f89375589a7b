// Writes the container of an asset catalog: numbered blocks, names and trees. What it is told it
// writes, so that tests can make what no sound catalog has.
#pragma once

#include "tests/support/catalog/byte_writer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

class BomWriter {
  public:
    struct TreeOptions {
        std::size_t entriesPerPage = 510;  // and children of a page that is no leaf, less one
        bool numbers = false;              // keys are numbers: four bytes, big-endian
        std::optional<std::uint32_t> count = {};  // that the tree claims to have
    };

    using Entries = std::vector<std::pair<ByteVector, ByteVector>>;  // keys and values

    // The number of the new block.
    std::uint32_t add(ByteVector block);
    // A block that the table places anywhere.
    std::uint32_t addAt(std::uint32_t offset, std::uint32_t length);
    void replace(std::uint32_t number, ByteVector block);
    [[nodiscard]] const ByteVector& block(std::uint32_t number) const;

    // Names a block; a name that is there already is moved.
    void name(const std::string& name, std::uint32_t number);
    void forget(const std::string& name);
    // 0 when there is no such name.
    [[nodiscard]] std::uint32_t named(const std::string& name) const;

    // The number of the tree's block. Entries are written in the order given.
    std::uint32_t addTree(const Entries& entries) { return addTree(entries, TreeOptions()); }

    std::uint32_t addTree(const Entries& entries, const TreeOptions& options);

    // One page: entries are pairs of value and key, or of child and key, as they are stored.
    struct Page {
        bool leaf = true;
        std::vector<std::pair<std::uint32_t, std::uint32_t>> entries = {};
        std::uint32_t lastChild = 0;  // where it is no leaf
        std::uint32_t forward = 0;
        std::uint32_t backward = 0;
    };

    static ByteVector page(const Page& page);
    static ByteVector treeHeader(std::uint32_t root, std::size_t count, bool numbers = false);

    [[nodiscard]] ByteVector build() const;

  private:
    struct Block {
        ByteVector bytes;
        std::optional<std::pair<std::uint32_t, std::uint32_t>> place;  // instead of one by order
    };

    std::vector<std::uint32_t> addLeaves(const Entries& entries, const TreeOptions& options,
                                         std::vector<std::uint32_t>& firstKeys);

    std::vector<Block> blocks_ = {Block()};  // number 0 is none
    std::vector<std::pair<std::string, std::uint32_t>> names_;
};

}  // namespace velmoranth::tests
