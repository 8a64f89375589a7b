// The container of a compiled catalog: numbered blocks of bytes, some of which have names. Its
// numbers are big-endian. Nothing is copied, and every block is checked when it is asked for.
#pragma once

#include "desktop/catalog/catalog.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace velmoranth::catalog {

class BomStore {
  public:
    // Fails when the bytes are no such container, or its tables lie outside them. `file` must
    // outlive the store.
    [[nodiscard]] static Result<BomStore> parse(Bytes file);

    [[nodiscard]] Bytes file() const { return file_; }

    // Of the table, the unused ones among them.
    [[nodiscard]] std::uint32_t blockCount() const { return blockCount_; }

    // Nothing for a number that has no block, and for a block that is not wholly within the file.
    [[nodiscard]] std::optional<Bytes> block(std::uint32_t number) const;

    // The number of the block with the name.
    [[nodiscard]] std::optional<std::uint32_t> named(std::string_view name) const;

    // From the start of the file, for the texts of problems. `part` must be of the file.
    [[nodiscard]] std::uint64_t offsetOf(Bytes part) const {
        return static_cast<std::uint64_t>(part.data() - file_.data());
    }

  private:
    struct Variable {
        std::string_view name;
        std::uint32_t block = 0;
    };

    BomStore() = default;

    [[nodiscard]] bool readBlockTable(Bytes area);
    [[nodiscard]] bool readVariables(Bytes area);

    Bytes file_;
    Bytes blocks_;  // pairs of offset and length, as stored
    std::uint32_t blockCount_ = 0;
    std::vector<Variable> variables_;
};

}  // namespace velmoranth::catalog
