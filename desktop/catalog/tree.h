// The sorted tables of a catalog: trees of pages, whose leaves name a key and a value each.
#pragma once

#include "desktop/catalog/bom_store.h"
#include "desktop/catalog/catalog.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::catalog {

struct TreeEntry {
    Bytes key;                   // empty where keys are numbers
    std::uint32_t number = 0;    // the key, where keys are numbers
    std::optional<Bytes> value;  // nothing when its block lies outside the file
};

struct Tree {
    std::vector<TreeEntry> entries;  // in the tree's order
    // Pages and entries that had to be left out, and a count that is wrong: a clause each.
    std::vector<std::string> problems;
};

// Everything that can be reached from the root page. Every page is read once, whatever loops the
// file has, and there are no more entries than the file has room for. Fails when the block is no
// tree or has no root page.
[[nodiscard]] Result<Tree> readTree(const BomStore& store, std::uint32_t block);

}  // namespace velmoranth::catalog
