#include "tests/support/catalog/bom_writer.h"

#include <algorithm>

namespace velmoranth::tests {

namespace {

constexpr std::size_t kDataStart = 512;
constexpr std::size_t kPageSize = 4096;

}  // namespace

std::uint32_t BomWriter::add(ByteVector block) {
    blocks_.push_back({.bytes = std::move(block), .place = {}});
    return static_cast<std::uint32_t>(blocks_.size() - 1);
}

std::uint32_t BomWriter::addAt(std::uint32_t offset, std::uint32_t length) {
    blocks_.push_back({.bytes = {}, .place = std::pair(offset, length)});
    return static_cast<std::uint32_t>(blocks_.size() - 1);
}

void BomWriter::replace(std::uint32_t number, ByteVector block) {
    blocks_.at(number) = {.bytes = std::move(block), .place = {}};
}

const ByteVector& BomWriter::block(std::uint32_t number) const {
    return blocks_.at(number).bytes;
}

void BomWriter::name(const std::string& name, std::uint32_t number) {
    forget(name);
    names_.emplace_back(name, number);
}

void BomWriter::forget(const std::string& name) {
    std::erase_if(names_, [&](const auto& entry) { return entry.first == name; });
}

std::uint32_t BomWriter::named(const std::string& name) const {
    const auto found =
        std::ranges::find(names_, name, &std::pair<std::string, std::uint32_t>::first);
    return found == names_.end() ? 0 : found->second;
}

ByteVector BomWriter::page(const Page& page) {
    ByteWriter writer;
    writer.u16Big(page.leaf ? 1 : 0).u16Big(page.entries.size());
    writer.u32Big(page.forward).u32Big(page.backward);
    for (const auto& [first, key] : page.entries) {
        writer.u32Big(first).u32Big(key);
    }
    if (!page.leaf) {
        writer.u32Big(page.lastChild);
    }
    return writer.take();
}

ByteVector BomWriter::treeHeader(std::uint32_t root, std::size_t count, bool numbers) {
    ByteWriter writer;
    writer.text("tree").u32Big(1).u32Big(root).u32Big(kPageSize).u32Big(count);
    return writer.u8(numbers ? 1 : 0).zeros(8).take();
}

std::vector<std::uint32_t> BomWriter::addLeaves(const Entries& entries, const TreeOptions& options,
                                                std::vector<std::uint32_t>& firstKeys) {
    std::vector<Page> pages;
    for (std::size_t start = 0; start == 0 || start < entries.size();
         start += options.entriesPerPage) {
        Page leaf;
        for (std::size_t i = start; i < std::min(entries.size(), start + options.entriesPerPage);
             ++i) {
            const auto& [key, value] = entries[i];
            std::uint32_t number = 0;
            for (const std::uint8_t byte : options.numbers ? key : ByteVector()) {
                number = number << 8U | byte;
            }
            const std::uint32_t valueBlock = add(value);
            leaf.entries.emplace_back(valueBlock, options.numbers ? number : add(key));
        }
        firstKeys.push_back(leaf.entries.empty() ? 0 : leaf.entries.front().second);
        pages.push_back(std::move(leaf));
    }
    const auto first = static_cast<std::uint32_t>(blocks_.size());
    std::vector<std::uint32_t> numbers;
    for (std::uint32_t i = 0; i < pages.size(); ++i) {
        pages[i].backward = i == 0 ? 0 : first + i - 1;
        pages[i].forward = i + 1 == pages.size() ? 0 : first + i + 1;
        numbers.push_back(add(page(pages[i])));
    }
    return numbers;
}

std::uint32_t BomWriter::addTree(const Entries& entries, const TreeOptions& options) {
    std::vector<std::uint32_t> keys;
    std::vector<std::uint32_t> level = addLeaves(entries, options, keys);
    // A page of n keys has n + 1 children.
    const std::size_t children = options.entriesPerPage + 1;
    while (level.size() > 1) {
        std::vector<std::uint32_t> nextLevel;
        std::vector<std::uint32_t> nextKeys;
        for (std::size_t start = 0; start < level.size(); start += children) {
            const std::size_t end = std::min(level.size(), start + children);
            Page branch{.leaf = false, .lastChild = level[end - 1]};
            for (std::size_t i = start; i + 1 < end; ++i) {
                branch.entries.emplace_back(level[i], keys[i + 1]);
            }
            nextKeys.push_back(keys[start]);
            nextLevel.push_back(add(page(branch)));
        }
        level = std::move(nextLevel);
        keys = std::move(nextKeys);
    }
    return add(treeHeader(level.front(), options.count.value_or(entries.size()), options.numbers));
}

ByteVector BomWriter::build() const {
    ByteWriter data;
    ByteWriter table;
    table.u32Big(blocks_.size()).zeros(8);
    for (std::size_t i = 1; i < blocks_.size(); ++i) {
        const Block& block = blocks_[i];
        const std::size_t offset = block.place ? block.place->first : kDataStart + data.size();
        table.u32Big(offset).u32Big(block.place ? block.place->second : block.bytes.size());
        data.bytes(block.bytes);
    }
    table.u32Big(0);  // nothing free
    ByteWriter names;
    names.u32Big(names_.size());
    for (const auto& [name, number] : names_) {
        names.u32Big(number).u8(name.size()).text(name);
    }
    const std::size_t tableStart = kDataStart + data.size();
    ByteWriter file;
    file.text("BOMStore").u32Big(1).u32Big(blocks_.size() - 1);
    file.u32Big(tableStart).u32Big(table.size());
    file.u32Big(tableStart + table.size()).u32Big(names.size());
    file.zeros(kDataStart - file.size());
    return file.bytes(data.take()).bytes(table.take()).bytes(names.take()).take();
}

}  // namespace velmoranth::tests
