// Which attribute each slot of a rendition's key stands for.
#pragma once

#include "desktop/catalog/catalog.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace velmoranth::catalog {

class KeyFormat {
  public:
    KeyFormat() = default;

    explicit KeyFormat(std::vector<std::uint16_t> attributes)
        : attributes_(std::move(attributes)) {}

    // From the block KEYFORMAT.
    [[nodiscard]] static Result<KeyFormat> parse(Bytes block);

    // The true attributes of slots that hold the placeholder, from the block KEYFORMATWORKAROUND.
    // False, and nothing changed, when the block has fewer numbers than there are slots.
    [[nodiscard]] bool correct(Bytes block);

    [[nodiscard]] const std::vector<std::uint16_t>& attributes() const { return attributes_; }

    // The bytes of a key; a stored key may have more, which do not count.
    [[nodiscard]] std::size_t keySize() const { return attributes_.size() * 2; }

    // 0 when no slot has the attribute, or the key ends before it.
    [[nodiscard]] std::uint16_t value(Bytes key, std::uint16_t attribute) const;

    // The key with these values and 0 for all others, as stored. Nothing when a value other than 0
    // has no slot.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> key(
        const std::vector<AttributeValue>& values) const;

  private:
    std::vector<std::uint16_t> attributes_;
};

}  // namespace velmoranth::catalog
