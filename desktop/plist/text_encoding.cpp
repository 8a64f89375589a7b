#include "desktop/plist/text_encoding.h"

#include "platform/code_points.h"

#include <array>

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

std::size_t characterLength(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    // Longer than need be (a byte that begins no character, for one), half of a pair, or beyond the
    // last character.
    constexpr std::array<char32_t, 5> kLeast{0, 0, 0x80, 0x800, 0x10000};
    const auto [value, length] = platform::codePointAt(text, 0);
    const bool isWrong = value < kLeast.at(length) || (length == 1 && value >= 0x80) ||
                         (value >= 0xD800 && value < 0xE000) || value > kLastCharacter;
    return isWrong ? 0 : length;
}

std::optional<std::size_t> firstInvalidUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const bool isAscii = static_cast<unsigned char>(text[i]) < 0x80;
        const std::size_t length = isAscii ? 1 : characterLength(text.substr(i));
        if (length == 0) {
            return i;
        }
        i += length;
    }
    return {};
}

}  // namespace velmoranth::desktop
