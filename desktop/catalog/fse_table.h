// The decoding tables of LZFSE's entropy coder. A table has an entry a state: the symbol that the
// state stands for, and where the bits that follow lead to.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace velmoranth::catalog {

inline constexpr std::size_t kLengthSymbols = 20;  // of literal runs, and of matches
inline constexpr std::size_t kDistanceSymbols = 64;
inline constexpr std::size_t kLiteralSymbols = 256;
inline constexpr std::size_t kLengthStates = 64;
inline constexpr std::size_t kDistanceStates = 256;
inline constexpr std::size_t kLiteralStates = 1024;

// The next state is `base` plus the next `bits` bits. A mask saves the decoder a shift by a number
// that it must load. No initial values: tables are filled whole, for each block.
struct LiteralEntry {
    std::uint16_t base;
    std::uint16_t mask;  // of `bits` bits
    std::uint8_t bits;
    std::uint8_t symbol;
};

// The next `stateBits` bits are the step to the next state; the `extraBits` behind them, up to
// `bits` in all, are what the value is larger by. Of 8 bytes, which a state finds without a
// multiplication: that is on the way from one state to the next.
struct ValueEntry {
    std::uint32_t value;
    std::uint8_t bits;
    std::uint8_t stateBits;
    std::uint8_t extraBits;
    std::uint8_t base;
};

using LiteralTable = std::array<LiteralEntry, kLiteralStates>;
using LengthTable = std::array<ValueEntry, kLengthStates>;
using DistanceTable = std::array<ValueEntry, kDistanceStates>;

// A symbol's value is its base plus so many bits.
struct ValueCode {
    std::uint32_t base = 0;
    std::uint8_t extraBits = 0;
};

// The base of each symbol is where the values of the one before end.
template <std::size_t Symbols>
[[nodiscard]] constexpr std::array<ValueCode, Symbols> valueCodes(
    const std::array<std::uint8_t, Symbols>& extraBits) {
    std::array<ValueCode, Symbols> codes;
    std::uint32_t base = 0;
    for (std::size_t i = 0; i < Symbols; ++i) {
        codes[i] = {.base = base, .extraBits = extraBits[i]};
        base += 1U << extraBits[i];
    }
    return codes;
}

inline constexpr auto kLiteralRunCodes =
    valueCodes<kLengthSymbols>({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 3, 5, 8});
inline constexpr auto kMatchCodes =
    valueCodes<kLengthSymbols>({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 5, 8, 11});
inline constexpr auto kDistanceCodes = [] {
    std::array<std::uint8_t, kDistanceSymbols> extraBits = {};
    for (std::size_t i = 0; i < kDistanceSymbols; ++i) {
        extraBits[i] = static_cast<std::uint8_t>(i / 4);
    }
    return valueCodes(extraBits);
}();

// Fill a table from how many states each symbol has. The number of states that have a symbol;
// states from there on lead to themselves, so that a decoder that came to one is still there at
// its end. 0 as well when the frequencies are more than there are states.
[[nodiscard]] std::size_t fillTable(std::span<const std::uint16_t, kLiteralSymbols> frequencies,
                                    LiteralTable& table);
[[nodiscard]] std::size_t fillTable(std::span<const std::uint16_t, kLengthSymbols> frequencies,
                                    const std::array<ValueCode, kLengthSymbols>& codes,
                                    LengthTable& table);
[[nodiscard]] std::size_t fillTable(std::span<const std::uint16_t, kDistanceSymbols> frequencies,
                                    const std::array<ValueCode, kDistanceSymbols>& codes,
                                    DistanceTable& table);

}  // namespace velmoranth::catalog
