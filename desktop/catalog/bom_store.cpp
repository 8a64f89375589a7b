#include "desktop/catalog/bom_store.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/text.h"

#include <algorithm>
#include <string>
#include <utility>

namespace velmoranth::catalog {

namespace {

constexpr std::string_view kMagic = "BOMStore";
constexpr std::size_t kBlockEntrySize = 8;
constexpr std::uint64_t kHeaderSize = 32;

tl::unexpected<Problem> refuse(std::string message, std::uint64_t offset) {
    return tl::unexpected(Problem{.message = std::move(message), .path = {}, .offset = offset});
}

// `what` ends there, by what the file itself says.
tl::unexpected<Problem> refuseCutOff(Bytes file, std::string_view what, std::uint64_t end) {
    return tl::unexpected(Problem{
        "the file is cut off: its " + std::string(what) + " ends at byte " + std::to_string(end) +
        ", and the file at byte " + std::to_string(file.size()) + "; get a whole copy"});
}

// The part of the file, nothing when it is not wholly within.
std::optional<Bytes> within(Bytes file, std::uint32_t offset, std::uint32_t length) {
    if (std::uint64_t{offset} + length > file.size()) {
        return std::nullopt;
    }
    return file.subspan(offset, length);
}

}  // namespace

Result<BomStore> BomStore::parse(Bytes file) {
    ByteReader reader(file);
    if (!reader.expect(kMagic)) {
        return refuse("it is not a compiled asset catalog", 0);
    }
    reader.skip(8);  // the version and a number of blocks that is not the table's
    const std::uint32_t tableOffset = reader.u32Big();
    const std::uint32_t tableLength = reader.u32Big();
    const std::uint32_t variablesOffset = reader.u32Big();
    const std::uint32_t variablesLength = reader.u32Big();
    if (!reader.ok()) {
        return refuseCutOff(file, "header", kHeaderSize);
    }
    BomStore store;
    store.file_ = file;
    const std::optional<Bytes> table = within(file, tableOffset, tableLength);
    if (!table) {
        return refuseCutOff(file, "table of blocks", std::uint64_t{tableOffset} + tableLength);
    }
    const std::optional<Bytes> variables = within(file, variablesOffset, variablesLength);
    if (!variables) {
        return refuseCutOff(file, "table of names",
                            std::uint64_t{variablesOffset} + variablesLength);
    }
    if (!store.readBlockTable(*table)) {
        return refuse("the table of blocks is truncated", tableOffset);
    }
    if (!store.readVariables(*variables)) {
        return refuse("the table of names is damaged", variablesOffset);
    }
    return store;
}

bool BomStore::readBlockTable(Bytes area) {
    ByteReader reader(area);
    const std::uint32_t count = reader.u32Big();
    if (!reader.ok() || count > reader.remaining() / kBlockEntrySize) {
        return false;
    }
    blockCount_ = count;
    blocks_ = reader.take(count * kBlockEntrySize);
    return true;
}

bool BomStore::readVariables(Bytes area) {
    ByteReader reader(area);
    const std::uint32_t count = reader.u32Big();
    for (std::uint32_t i = 0; i < count && reader.ok(); ++i) {
        const std::uint32_t block = reader.u32Big();
        const Bytes name = reader.take(reader.u8());
        variables_.push_back({.name = asText(name), .block = block});
    }
    return reader.ok();
}

std::optional<Bytes> BomStore::block(std::uint32_t number) const {
    if (number == 0 || number >= blockCount_) {
        return std::nullopt;
    }
    ByteReader entry(blocks_.subspan(number * kBlockEntrySize, kBlockEntrySize));
    const std::uint32_t offset = entry.u32Big();
    const std::uint32_t length = entry.u32Big();
    return offset == 0 ? std::nullopt : within(file_, offset, length);
}

std::optional<std::uint32_t> BomStore::named(std::string_view name) const {
    const auto found = std::ranges::find(variables_, name, &Variable::name);
    return found == variables_.end() ? std::nullopt : std::optional(found->block);
}

}  // namespace velmoranth::catalog
