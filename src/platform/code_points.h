// Text as the platform's scanners walk it: code point by code point.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmoranth::platform {

// A code point of UTF-8 text and its length in bytes. A byte that begins no valid sequence stands
// for itself.
struct CodePoint {
    std::uint32_t value;
    std::size_t length;
};

// `position` is inside the text.
[[nodiscard]] CodePoint codePointAt(std::string_view text, std::size_t position);

// whitespaceAndNewlineCharacterSet.
[[nodiscard]] bool isWhitespaceOrNewline(std::uint32_t c);

// What the platform's decimal scanner skips: all controls, and fewer of the Unicode spaces.
[[nodiscard]] bool isSkippedBeforeNumber(std::uint32_t c);

template <class Predicate>
std::string_view skipLeading(std::string_view text, Predicate skips) {
    while (!text.empty()) {
        const CodePoint c = codePointAt(text, 0);
        if (!skips(c.value)) {
            break;
        }
        text.remove_prefix(c.length);
    }
    return text;
}

}  // namespace velmoranth::platform
