#include "desktop/catalog/tree.h"

#include "desktop/catalog/byte_reader.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace velmoranth::catalog {

namespace {

constexpr std::string_view kMagic = "tree";
// What an entry takes at least: its place in a leaf, and in the table of blocks that of its value
// and, unless it is a number, that of its key.
constexpr std::size_t kEntrySize = 8;
constexpr std::size_t kBytesPerEntry = 24;
constexpr std::size_t kBytesPerNumberedEntry = 16;

struct TreeHeader {
    std::uint32_t root = 0;
    std::uint32_t count = 0;
    bool numbers = false;  // keys are numbers instead of blocks
};

struct Page {
    bool leaf = false;
    std::uint16_t count = 0;
    ByteReader entries;
};

std::optional<TreeHeader> readHeader(Bytes block) {
    ByteReader reader(block);
    const bool magic = reader.expect(kMagic);
    reader.skip(4);  // the version
    TreeHeader header;
    header.root = reader.u32Big();
    reader.skip(4);  // the size of a page
    header.count = reader.u32Big();
    header.numbers = reader.u8() != 0;
    return magic && reader.ok() ? std::optional(header) : std::nullopt;
}

std::optional<Page> readPage(Bytes block) {
    ByteReader reader(block);
    const std::uint16_t leaf = reader.u16Big();
    const std::uint16_t count = reader.u16Big();
    reader.skip(8);  // the neighbours: going down from the root finds them all
    const std::size_t children = leaf == 0 ? 4 : 0;
    if (!reader.ok() || leaf > 1 || reader.remaining() < count * kEntrySize + children) {
        return std::nullopt;
    }
    return Page{.leaf = leaf == 1, .count = count, .entries = reader};
}

class TreeWalk {
  public:
    TreeWalk(const BomStore& store, const TreeHeader& header)
        : store_(store),
          header_(header),
          seen_(store.blockCount()),
          room_(store.file().size() / (header.numbers ? kBytesPerNumberedEntry : kBytesPerEntry)) {}

    Tree run() {
        pending_.push_back(header_.root);
        while (!pending_.empty() && !full_) {
            const std::uint32_t page = pending_.back();
            pending_.pop_back();
            visit(page);
        }
        if (skippedPages_ != 0) {
            note(skippedPages_, "of its pages cannot be read");
        }
        if (skippedEntries_ != 0) {
            note(skippedEntries_, "of its keys cannot be read");
        }
        if (full_) {
            tree_.problems.emplace_back("it has more entries than the file has room for");
        } else if (tree_.entries.size() + skippedEntries_ != header_.count) {
            tree_.problems.push_back("it has " + std::to_string(tree_.entries.size()) +
                                     " entries instead of " + std::to_string(header_.count));
        }
        return std::move(tree_);
    }

  private:
    void note(std::size_t count, const char* what) {
        tree_.problems.push_back(std::to_string(count) + " " + what);
    }

    void visit(std::uint32_t number) {
        const std::optional<Bytes> block = store_.block(number);
        std::optional<Page> page = block ? readPage(*block) : std::nullopt;
        if (!page || seen_[number]) {
            ++skippedPages_;
            return;
        }
        seen_[number] = true;
        if (page->leaf) {
            addEntries(*page);
        } else {
            addChildren(*page);
        }
    }

    void addEntries(Page& page) {
        for (std::uint16_t i = 0; i < page.count; ++i) {
            const std::uint32_t value = page.entries.u32Big();
            const std::uint32_t key = page.entries.u32Big();
            if (!makeRoom()) {
                return;
            }
            addEntry(key, value);
        }
    }

    void addEntry(std::uint32_t key, std::uint32_t value) {
        TreeEntry entry{.key = {}, .number = key, .value = store_.block(value)};
        if (!header_.numbers) {
            const std::optional<Bytes> bytes = store_.block(key);
            if (!bytes) {
                ++skippedEntries_;
                return;
            }
            entry.key = *bytes;
            entry.number = 0;
        }
        tree_.entries.push_back(entry);
    }

    // Puts the children on the stack, the first one on top.
    void addChildren(Page& page) {
        const std::size_t base = pending_.size();
        for (std::size_t i = 0; i <= page.count; ++i) {
            const std::uint32_t child = page.entries.u32Big();
            if (i < page.count) {
                page.entries.skip(4);
            }
            if (!makeRoom()) {
                return;
            }
            pending_.push_back(child);
        }
        std::reverse(pending_.begin() + static_cast<std::ptrdiff_t>(base), pending_.end());
    }

    bool makeRoom() {
        full_ = full_ || room_ == 0;
        room_ -= full_ ? 0 : 1;
        return !full_;
    }

    const BomStore& store_;
    TreeHeader header_;
    std::vector<bool> seen_;
    std::size_t room_;  // for entries and children
    bool full_ = false;
    std::vector<std::uint32_t> pending_;  // pages; the next one last
    std::size_t skippedPages_ = 0;
    std::size_t skippedEntries_ = 0;
    Tree tree_;
};

}  // namespace

Result<Tree> readTree(const BomStore& store, std::uint32_t block) {
    const std::optional<Bytes> bytes = store.block(block);
    const std::optional<TreeHeader> header = bytes ? readHeader(*bytes) : std::nullopt;
    if (!header) {
        return tl::unexpected(
            Problem{.message = "it is no tree",
                    .path = {},
                    .offset = bytes ? std::optional(store.offsetOf(*bytes)) : std::nullopt});
    }
    const std::optional<Bytes> root = store.block(header->root);
    if (!root || !readPage(*root)) {
        return tl::unexpected(Problem{.message = "its first page cannot be read",
                                      .path = {},
                                      .offset = store.offsetOf(*bytes)});
    }
    return TreeWalk(store, *header).run();
}

}  // namespace velmoranth::catalog
