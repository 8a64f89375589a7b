// Puts numbers and texts one after another, for files that tests make.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::tests {

using ByteVector = std::vector<std::uint8_t>;

class ByteWriter {
  public:
    ByteWriter& u8(std::size_t value) { return little(value, 1); }

    // Little-endian.
    ByteWriter& u16(std::size_t value) { return little(value, 2); }

    ByteWriter& u32(std::size_t value) { return little(value, 4); }

    ByteWriter& u64(std::uint64_t value) { return little(value, 8); }

    ByteWriter& f64(double value) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return u64(bits);
    }

    ByteWriter& u16Big(std::size_t value) { return big(value, 2); }

    ByteWriter& u32Big(std::size_t value) { return big(value, 4); }

    ByteWriter& bytes(std::span<const std::uint8_t> bytes) {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }

    ByteWriter& text(std::string_view text) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        return *this;
    }

    // The text, cut off or filled up with zeros.
    ByteWriter& field(std::string_view content, std::size_t size) {
        text(content.substr(0, size));
        return zeros(size - std::min(size, content.size()));
    }

    ByteWriter& zeros(std::size_t count) {
        bytes_.resize(bytes_.size() + count);
        return *this;
    }

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }

    // What was put so far; the writer is empty afterwards.
    [[nodiscard]] ByteVector take() { return std::exchange(bytes_, {}); }

  private:
    ByteWriter& little(std::uint64_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
        return *this;
    }

    ByteWriter& big(std::uint64_t value, std::size_t size) {
        for (std::size_t i = size; i > 0; --i) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * (i - 1))));
        }
        return *this;
    }

    ByteVector bytes_;
};

}  // namespace velmoranth::tests
