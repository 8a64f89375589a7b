#include "desktop/catalog/fse_table.h"

#include <bit>

namespace velmoranth::catalog {

namespace {

constexpr std::uint16_t maskOf(int bits) {
    return static_cast<std::uint16_t>((1U << bits) - 1U);
}

static_assert(kLiteralRunCodes[19].base == 60);
static_assert(kMatchCodes[19].base == 312);
static_assert(kDistanceCodes[4].base == 4 && kDistanceCodes[8].base == 12);
static_assert(kDistanceCodes[16].base == 60 && kDistanceCodes[32].base == 1020);
static_assert(kDistanceCodes[48].base == 16380 && kDistanceCodes[63].base == 229372);

// Walks the states in rising order: `set(state, symbol, bits, base)`. How many there are, 0 when
// they are more than `states`.
template <typename Set>
std::size_t walkStates(std::span<const std::uint16_t> frequencies, std::size_t states, Set set) {
    const auto count = static_cast<std::uint32_t>(states);
    std::uint32_t first = 0;
    for (std::size_t symbol = 0; symbol < frequencies.size(); ++symbol) {
        const std::uint32_t frequency = frequencies[symbol];
        if (frequency == 0) {
            continue;
        }
        if (frequency > count - first) {
            return 0;
        }
        // The first states of a symbol take a bit more than the others.
        const int bits = std::countl_zero(frequency) - std::countl_zero(count);
        const std::uint32_t longer = ((2 * count) >> bits) - frequency;
        for (std::uint32_t i = 0; i < longer; ++i) {
            set(first + i, symbol, bits, ((frequency + i) << bits) - count);
        }
        for (std::uint32_t i = longer; i < frequency; ++i) {
            set(first + i, symbol, bits - 1, (i - longer) << (bits - 1));
        }
        first += frequency;
    }
    return first;
}

template <typename Table>
std::size_t fillValues(std::span<const std::uint16_t> frequencies, std::span<const ValueCode> codes,
                       Table& table) {
    const std::size_t known =
        walkStates(frequencies, table.size(),
                   [&](std::uint32_t state, std::size_t symbol, int bits, std::uint32_t base) {
                       const ValueCode& code = codes[symbol];
                       table[state] = {.value = code.base,
                                       .bits = static_cast<std::uint8_t>(bits + code.extraBits),
                                       .stateBits = static_cast<std::uint8_t>(bits),
                                       .extraBits = code.extraBits,
                                       .base = static_cast<std::uint8_t>(base)};
                   });
    for (std::size_t i = known; i < table.size(); ++i) {
        table[i] = {.value = 0,
                    .bits = 0,
                    .stateBits = 0,
                    .extraBits = 0,
                    .base = static_cast<std::uint8_t>(i)};
    }
    return known;
}

}  // namespace

std::size_t fillTable(std::span<const std::uint16_t, kLiteralSymbols> frequencies,
                      LiteralTable& table) {
    const std::size_t known =
        walkStates(frequencies, table.size(),
                   [&](std::uint32_t state, std::size_t symbol, int bits, std::uint32_t base) {
                       table[state] = {.base = static_cast<std::uint16_t>(base),
                                       .mask = maskOf(bits),
                                       .bits = static_cast<std::uint8_t>(bits),
                                       .symbol = static_cast<std::uint8_t>(symbol)};
                   });
    for (std::size_t i = known; i < table.size(); ++i) {
        table[i] = {.base = static_cast<std::uint16_t>(i), .mask = 0, .bits = 0, .symbol = 0};
    }
    return known;
}

std::size_t fillTable(std::span<const std::uint16_t, kLengthSymbols> frequencies,
                      const std::array<ValueCode, kLengthSymbols>& codes, LengthTable& table) {
    return fillValues(frequencies, codes, table);
}

std::size_t fillTable(std::span<const std::uint16_t, kDistanceSymbols> frequencies,
                      const std::array<ValueCode, kDistanceSymbols>& codes, DistanceTable& table) {
    return fillValues(frequencies, codes, table);
}

}  // namespace velmoranth::catalog
