#include "tests/support/catalog/fse_encoder.h"

#include <algorithm>
#include <numeric>

namespace velmoranth::tests {

void BackwardBits::put(std::uint64_t value, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i, ++bits_) {
        if (bits_ % 8 == 0) {
            bytes_.push_back(0);
        }
        bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | (value >> i & 1U) << bits_ % 8);
    }
}

std::int32_t BackwardBits::filled() const {
    return static_cast<std::int32_t>(bits_) - static_cast<std::int32_t>(bytes_.size() * 8);
}

std::vector<std::uint16_t> scaledFrequencies(std::span<const std::size_t> counts,
                                             std::uint32_t total) {
    const std::size_t sum = std::accumulate(counts.begin(), counts.end(), std::size_t{0});
    std::vector<std::uint16_t> scaled(counts.size(), 0);
    if (sum == 0) {
        return scaled;
    }
    std::uint32_t given = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] > 0) {
            scaled[i] =
                static_cast<std::uint16_t>(std::max<std::size_t>(counts[i] * total / sum, 1));
            given += scaled[i];
        }
    }
    // What rounding left over, or took too much, falls on the most frequent.
    while (given != total) {
        std::uint16_t& largest = *std::max_element(scaled.begin(), scaled.end());
        if (given < total) {
            largest = static_cast<std::uint16_t>(largest + (total - given));
            given = total;
        } else {
            --largest;
            --given;
        }
    }
    return scaled;
}

FseEncoder::FseEncoder(std::span<const std::uint16_t> frequencies, std::uint32_t states)
    : frequencies_(frequencies.begin(), frequencies.end()), states_(states) {
    std::uint32_t first = 0;
    firstStates_.reserve(frequencies_.size());
    for (const std::uint16_t frequency : frequencies_) {
        firstStates_.push_back(first);
        first += frequency;
    }
}

void FseEncoder::put(BackwardBits& bits, std::size_t symbol, std::uint16_t& state) const {
    // As many bits are taken off as bring the state into the symbol's own range.
    const std::uint32_t frequency = frequencies_[symbol];
    const std::uint32_t shifted = state + states_;
    std::uint32_t count = 0;
    while (shifted >> count >= 2 * frequency) {
        ++count;
    }
    bits.put(shifted & ((1U << count) - 1U), count);
    state = static_cast<std::uint16_t>(firstStates_[symbol] + (shifted >> count) - frequency);
}

ValueCode::ValueCode(std::vector<std::uint32_t> extraBits) : extraBits_(std::move(extraBits)) {
    std::uint32_t base = 0;
    bases_.reserve(extraBits_.size());
    for (const std::uint32_t bits : extraBits_) {
        bases_.push_back(base);
        base += 1U << bits;
    }
}

ValueCode::Coded ValueCode::code(std::uint32_t value) const {
    const auto above = std::upper_bound(bases_.begin(), bases_.end(), value);
    const auto symbol = static_cast<std::size_t>(above - bases_.begin()) - 1;
    return {.symbol = symbol, .extra = value - bases_[symbol], .extraBits = extraBits_[symbol]};
}

const ValueCode& ValueCode::literals() {
    static const ValueCode code({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 3, 5, 8});
    return code;
}

const ValueCode& ValueCode::matches() {
    static const ValueCode code({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 5, 8, 11});
    return code;
}

const ValueCode& ValueCode::distances() {
    static const ValueCode code = [] {
        std::vector<std::uint32_t> bits(64);
        for (std::size_t i = 0; i < bits.size(); ++i) {
            bits[i] = static_cast<std::uint32_t>(i / 4);
        }
        return ValueCode(bits);
    }();
    return code;
}

}  // namespace velmoranth::tests
