// Unicode encodings, as far as property lists and messages need them. What has no meaning in the
// source encoding (half a surrogate pair, a value beyond U+10FFFF) becomes U+FFFD.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::desktop {

enum class ByteOrder { bigEndian, littleEndian };

void appendUtf8(std::string& text, char32_t character);

// Joins UTF-16 units into UTF-8, surrogate pairs across calls included.
class Utf16Joiner {
  public:
    explicit Utf16Joiner(std::string& text) : text_(text) {}

    void append(char16_t unit);
    // Call before anything else is appended to the text, and at the end.
    void flush();

  private:
    std::string& text_;
    char16_t high_ = 0;  // the first half of a pair, 0 when there is none
};

// Left-over bytes at the end are dropped.
[[nodiscard]] std::string utf16ToUtf8(std::span<const std::uint8_t> bytes, ByteOrder order);
[[nodiscard]] std::string utf32ToUtf8(std::span<const std::uint8_t> bytes, ByteOrder order);

// How many bytes the character at the start has when it is UTF-8 (no overlong form, no surrogate),
// else 0.
[[nodiscard]] std::size_t characterLength(std::string_view text);

// Where the text stops being UTF-8; nothing when it is whole.
[[nodiscard]] std::optional<std::size_t> firstInvalidUtf8(std::string_view text);

}  // namespace velmoranth::desktop
