#include "desktop/plist/text_encoding.h"

namespace velmoranth::desktop {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCharacter = 0x10FFFF;

bool isHigh(char16_t unit) {
    return (unit & 0xFC00U) == 0xD800U;
}

bool isLow(char16_t unit) {
    return (unit & 0xFC00U) == 0xDC00U;
}

}  // namespace

void appendUtf8(std::string& text, char32_t character) {
    if (character > kLastCharacter || (character >= 0xD800 && character <= 0xDFFF)) {
        character = kReplacement;
    }
    const auto put = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    const auto tail = [&](int shift) { put(0x80U | ((character >> shift) & 0x3FU)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0U | (character >> 6));
        tail(0);
    } else if (character < 0x10000) {
        put(0xE0U | (character >> 12));
        tail(6);
        tail(0);
    } else {
        put(0xF0U | (character >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

void Utf16Joiner::append(char16_t unit) {
    if (isLow(unit) && high_ != 0) {
        appendUtf8(text_, 0x10000U + ((static_cast<char32_t>(high_) - 0xD800U) << 10) +
                              (static_cast<char32_t>(unit) - 0xDC00U));
        high_ = 0;
        return;
    }
    flush();
    if (isHigh(unit)) {
        high_ = unit;
    } else {
        appendUtf8(text_, unit);
    }
}

void Utf16Joiner::flush() {
    if (high_ != 0) {
        appendUtf8(text_, kReplacement);
        high_ = 0;
    }
}

std::string utf16ToUtf8(std::span<const std::uint8_t> bytes, ByteOrder order) {
    std::string text;
    text.reserve(bytes.size());
    Utf16Joiner joiner(text);
    const std::size_t high = order == ByteOrder::bigEndian ? 0 : 1;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        joiner.append(static_cast<char16_t>(bytes[i + high] << 8 | bytes[i + 1 - high]));
    }
    joiner.flush();
    return text;
}

std::string utf32ToUtf8(std::span<const std::uint8_t> bytes, ByteOrder order) {
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
        char32_t character = 0;
        for (std::size_t k = 0; k < 4; ++k) {
            character = character << 8 | bytes[i + (order == ByteOrder::bigEndian ? k : 3 - k)];
        }
        appendUtf8(text, character);
    }
    return text;
}

std::optional<std::size_t> firstInvalidUtf8(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    std::size_t i = 0;
    while (i < text.size()) {
        const std::uint8_t lead = byte(i);
        if (lead < 0x80) {
            ++i;
            continue;
        }
        // The least and greatest second byte keep out overlong forms, surrogates and what lies
        // beyond the last character.
        std::size_t length = 0;
        std::uint8_t least = 0x80;
        std::uint8_t greatest = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            least = lead == 0xE0 ? 0xA0 : least;
            greatest = lead == 0xED ? 0x9F : greatest;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            least = lead == 0xF0 ? 0x90 : least;
            greatest = lead == 0xF4 ? 0x8F : greatest;
        }
        if (length == 0 || text.size() - i < length || byte(i + 1) < least ||
            byte(i + 1) > greatest) {
            return i;
        }
        for (std::size_t k = 2; k < length; ++k) {
            if ((byte(i + k) & 0xC0U) != 0x80U) {
                return i;
            }
        }
        i += length;
    }
    return {};
}

}  // namespace velmoranth::desktop
