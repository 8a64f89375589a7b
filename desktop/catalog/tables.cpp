#include "desktop/catalog/tables.h"

#include "desktop/catalog/bom_store.h"
#include "desktop/catalog/budget.h"
#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/rendition_record.h"
#include "desktop/catalog/text.h"
#include "desktop/catalog/tree.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace velmoranth::catalog {

namespace {

constexpr std::string_view kHeaderBlock = "CARHEADER";
constexpr std::string_view kMetadataBlock = "EXTENDED_METADATA";
constexpr std::string_view kKeyFormatBlock = "KEYFORMAT";
constexpr std::string_view kKeyFormatCorrectionBlock = "KEYFORMATWORKAROUND";
constexpr std::string_view kRenditionTree = "RENDITIONS";
constexpr std::string_view kFacetTree = "FACETKEYS";
constexpr std::string_view kAppearanceTree = "APPEARANCEKEYS";

constexpr std::size_t kHeaderTextSize = 128;
constexpr std::size_t kToolTextSize = 256;
constexpr std::size_t kMetadataTextSize = 256;

std::string_view withoutNewline(std::string_view text) {
    return text.substr(0, text.find_last_not_of('\n') + 1);
}

class TablesReader {
  public:
    explicit TablesReader(const BomStore& store) : store_(store), budget_(store.file().size()) {}

    Result<Tables> run() {
        std::optional<Problem> problem = readHeader();
        if (!problem) {
            problem = readKeyFormat();
        }
        if (!problem) {
            problem = readRenditions();
        }
        if (problem) {
            return tl::unexpected(std::move(*problem));
        }
        readMetadata();
        readFacets();
        readAppearances();
        return std::move(tables_);
    }

  private:
    void warn(std::string_view table, std::string_view what) {
        tables_.warnings.push_back(std::string(table) + ": " + std::string(what));
    }

    void warnOfEntries(std::string_view table, std::size_t damaged) {
        if (damaged != 0) {
            warn(table, std::to_string(damaged) + " of its entries are damaged");
        }
    }

    // The named block; nothing where there is none. `problem` says so when it cannot be read.
    std::optional<Bytes> namedBlock(std::string_view name) const {
        const std::optional<std::uint32_t> number = store_.named(name);
        return number ? store_.block(*number) : std::nullopt;
    }

    Problem problemAt(std::string message, Bytes block) const {
        return {.message = std::move(message), .path = {}, .offset = store_.offsetOf(block)};
    }

    std::optional<Problem> readHeader() {
        const std::optional<Bytes> block = namedBlock(kHeaderBlock);
        if (!block) {
            return Problem{.message = "it is not a compiled asset catalog: it has no CARHEADER"};
        }
        const std::string_view magic = asText(*block).substr(0, 4);
        if (magic == "CTAR") {
            return problemAt("big-endian catalogs (CTAR) are not supported", *block);
        }
        if (magic != "RATC") {
            return problemAt("its CARHEADER is damaged", *block);
        }
        ByteReader reader(block->subspan(magic.size()));
        Header& header = tables_.header;
        header.coreUIVersion = reader.u32();
        header.storageVersion = reader.u32();
        reader.skip(4);  // when it was built
        header.renditionCount = reader.u32();
        header.coreUIText = withoutNewline(untilNul(reader.take(kHeaderTextSize)));
        header.tool = withoutNewline(untilNul(reader.take(kToolTextSize)));
        reader.skip(16 + 4);  // identifier of the build, checksum
        header.schemaVersion = reader.u32();
        reader.skip(4);  // colour space
        header.keySemantics = reader.u32();
        if (!reader.ok()) {
            warn(kHeaderBlock, "it is truncated");
        }
        return std::nullopt;
    }

    std::optional<Problem> readKeyFormat() {
        const std::optional<Bytes> block = namedBlock(kKeyFormatBlock);
        if (!block) {
            return Problem{.message = "the key format is missing"};
        }
        Result<KeyFormat> format = KeyFormat::parse(*block);
        if (!format) {
            return problemAt(std::move(format.error().message), *block);
        }
        tables_.keyFormat = std::move(*format);
        if (store_.named(kKeyFormatCorrectionBlock)) {
            const std::optional<Bytes> corrections = namedBlock(kKeyFormatCorrectionBlock);
            if (!corrections || !tables_.keyFormat.correct(*corrections)) {
                warn(kKeyFormatCorrectionBlock, "it is truncated");
            }
        }
        return std::nullopt;
    }

    std::optional<Problem> readRenditions() {
        const std::optional<std::uint32_t> block = store_.named(kRenditionTree);
        if (!block) {
            return Problem{.message = "the table of renditions is missing"};
        }
        Result<Tree> tree = readTree(store_, *block);
        if (!tree) {
            tree.error().message =
                "the table of renditions cannot be read: " + tree.error().message;
            return std::move(tree.error());
        }
        noteProblems(kRenditionTree, *tree);
        tables_.renditions.reserve(tree->entries.size());
        for (const TreeEntry& entry : tree->entries) {
            tables_.renditions.push_back(readEntry(entry));
        }
        return std::nullopt;
    }

    Rendition readEntry(const TreeEntry& entry) {
        Rendition rendition;
        if (entry.value) {
            rendition = readRendition(*entry.value, budget_);
        } else {
            rendition.problem = "its record lies outside the file";
        }
        rendition.key = entry.key;
        if (entry.key.size() < tables_.keyFormat.keySize()) {
            rendition.kind = Kind::unreadable;
            rendition.problem = "its key is too short";
        }
        return rendition;
    }

    // Of a table that one can do without.
    Tree optionalTree(std::string_view name) {
        const std::optional<std::uint32_t> block = store_.named(name);
        if (!block) {
            return {};
        }
        Result<Tree> tree = readTree(store_, *block);
        if (!tree) {
            warn(name, tree.error().message);
            return {};
        }
        noteProblems(name, *tree);
        return std::move(*tree);
    }

    void noteProblems(std::string_view name, const Tree& tree) {
        for (const std::string& problem : tree.problems) {
            warn(name, problem);
        }
    }

    void readMetadata() {
        const std::optional<Bytes> block = namedBlock(kMetadataBlock);
        if (!block) {
            return;
        }
        ByteReader reader(*block);
        const bool magic = reader.expect("META");
        reader.skip(kMetadataTextSize);  // arguments of thinning
        tables_.header.deploymentVersion = untilNul(reader.take(kMetadataTextSize));
        tables_.header.platform = untilNul(reader.take(kMetadataTextSize));
        if (!magic || !reader.ok()) {
            tables_.header.deploymentVersion = {};
            tables_.header.platform = {};
            warn(kMetadataBlock, "it is damaged");
        }
    }

    void readFacets() {
        if (!store_.named(kFacetTree)) {
            warn(kFacetTree, "it is missing");
        }
        const Tree tree = optionalTree(kFacetTree);
        std::size_t damaged = 0;
        for (const TreeEntry& entry : tree.entries) {
            std::optional<Facet> facet = readFacet(entry);
            if (facet) {
                tables_.facets.push_back(std::move(*facet));
            } else {
                ++damaged;
            }
        }
        warnOfEntries(kFacetTree, damaged);
    }

    std::optional<Facet> readFacet(const TreeEntry& entry) {
        if (!entry.value || !budget_.spend(entry.key.size() + entry.value->size())) {
            return std::nullopt;
        }
        ByteReader reader(*entry.value);
        reader.skip(4);  // the hot spot
        const std::uint16_t count = reader.u16();
        if (!reader.ok() || count > reader.remaining() / 4) {
            return std::nullopt;
        }
        Facet facet{.name = asText(entry.key), .attributes = {}, .identifier = 0};
        facet.attributes.reserve(count);
        for (std::uint16_t i = 0; i < count; ++i) {
            const std::uint16_t attribute = reader.u16();
            const std::uint16_t value = reader.u16();
            facet.attributes.emplace_back(attribute, value);
            if (attribute == static_cast<std::uint16_t>(Attribute::identifier)) {
                facet.identifier = value;
            }
        }
        return facet;
    }

    void readAppearances() {
        const Tree tree = optionalTree(kAppearanceTree);
        std::size_t damaged = 0;
        for (const TreeEntry& entry : tree.entries) {
            ByteReader reader(entry.value.value_or(Bytes()));
            const std::uint16_t number = reader.u16();
            if (reader.ok()) {
                tables_.appearances.push_back({.name = asText(entry.key), .number = number});
            } else {
                ++damaged;
            }
        }
        warnOfEntries(kAppearanceTree, damaged);
    }

    const BomStore& store_;
    Budget budget_;
    Tables tables_;
};

}  // namespace

Result<Tables> readTables(Bytes file) {
    const Result<BomStore> store = BomStore::parse(file);
    if (!store) {
        return tl::unexpected(store.error());
    }
    return TablesReader(*store).run();
}

}  // namespace velmoranth::catalog
