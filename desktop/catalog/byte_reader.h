// Reads numbers out of bytes that may be cut off anywhere: every read is checked, and a read past
// the end gives zero and marks the reader, so that a row of fields is checked once, at its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace velmoranth::catalog {

class ByteReader {
  public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    // Whether every read so far was within the bytes.
    [[nodiscard]] bool ok() const { return ok_; }

    [[nodiscard]] std::size_t position() const { return position_; }

    [[nodiscard]] std::size_t remaining() const { return bytes_.size() - position_; }

    std::uint8_t u8() { return static_cast<std::uint8_t>(little(1)); }

    // Little-endian, as everything within a block.
    std::uint16_t u16() { return static_cast<std::uint16_t>(little(2)); }

    std::uint32_t u32() { return static_cast<std::uint32_t>(little(4)); }

    std::int32_t i32() { return static_cast<std::int32_t>(u32()); }

    std::uint64_t u64() { return little(8); }

    float f32() {
        const std::uint32_t bits = u32();
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    double f64() {
        const std::uint64_t bits = u64();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    // Big-endian, as the container.
    std::uint16_t u16Big() { return static_cast<std::uint16_t>(big(2)); }

    std::uint32_t u32Big() { return static_cast<std::uint32_t>(big(4)); }

    // The next bytes; empty, and the reader marked, when there are fewer.
    std::span<const std::uint8_t> take(std::size_t count) {
        if (count > remaining()) {
            ok_ = false;
            position_ = bytes_.size();
            return {};
        }
        const std::span<const std::uint8_t> taken = bytes_.subspan(position_, count);
        position_ += count;
        return taken;
    }

    void skip(std::size_t count) { take(count); }

    // Whether the next bytes are these; takes them either way.
    bool expect(std::string_view text) {
        const std::span<const std::uint8_t> taken = take(text.size());
        return taken.size() == text.size() &&
               (text.empty() || std::memcmp(taken.data(), text.data(), text.size()) == 0);
    }

  private:
    std::uint64_t little(std::size_t count) {
        const std::span<const std::uint8_t> taken = take(count);
        std::uint64_t value = 0;
        for (std::size_t i = taken.size(); i > 0; --i) {
            value = value << 8U | taken[i - 1];
        }
        return value;
    }

    std::uint64_t big(std::size_t count) {
        std::uint64_t value = 0;
        for (const std::uint8_t byte : take(count)) {
            value = value << 8U | byte;
        }
        return value;
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t position_ = 0;
    bool ok_ = true;
};

}  // namespace velmoranth::catalog
