#include "platform/code_points.h"

namespace velmoranth::platform {

CodePoint codePointAt(std::string_view text, std::size_t position) {
    const auto byteAt = [&](std::size_t index) {
        return index < text.size() ? static_cast<std::uint8_t>(text[index]) : std::uint8_t{0};
    };
    const std::uint32_t lead = byteAt(position);
    std::size_t length = 1;
    std::uint32_t value = lead;
    if ((lead & 0xE0U) == 0xC0U) {
        length = 2;
        value = lead & 0x1FU;
    } else if ((lead & 0xF0U) == 0xE0U) {
        length = 3;
        value = lead & 0x0FU;
    } else if ((lead & 0xF8U) == 0xF0U) {
        length = 4;
        value = lead & 0x07U;
    }
    for (std::size_t i = 1; i < length; ++i) {
        const std::uint32_t next = byteAt(position + i);
        if ((next & 0xC0U) != 0x80U) {
            return {lead, 1};
        }
        value = (value << 6U) | (next & 0x3FU);
    }
    return {value, length};
}

bool isWhitespaceOrNewline(std::uint32_t c) {
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200B) || c == 0x2028 || c == 0x2029 || c == 0x202F ||
           c == 0x205F || c == 0x3000;
}

bool isSkippedBeforeNumber(std::uint32_t c) {
    return c <= 0x20 || (c >= 0x7F && c <= 0xA0) || (c >= 0x2000 && c <= 0x200B) || c == 0x3000;
}

}  // namespace velmoranth::platform
