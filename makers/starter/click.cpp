#include "makers/starter/click.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <string_view>

namespace velmoranth::makers {
namespace {

constexpr double kRate = 44100;
constexpr double kSeconds = 0.12;
constexpr double kLoudness = 0.3;  // of full scale

void append(platform::Data& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

// The format's numbers are big-endian.
void append(platform::Data& bytes, std::uint64_t number, int count) {
    for (int i = count - 1; i >= 0; --i) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    }
}

// Two partials of a struck piece of wood; it begins and ends with silence.
std::int16_t sample(double time) {
    constexpr double kAttack = 0.002;
    constexpr double kRelease = 0.01;
    const double rise = std::fmin(time / kAttack, 1) * std::fmin((kSeconds - time) / kRelease, 1);
    const auto partial = [&](double frequency, double decay) {
        return std::sin(2 * std::numbers::pi * frequency * time) * std::exp(-time / decay);
    };
    const double value = rise * (0.7 * partial(880, 0.02) + 0.3 * partial(2210, 0.008));
    return static_cast<std::int16_t>(std::lround(value * kLoudness * INT16_MAX));
}

}  // namespace

platform::Data drawClick() {
    constexpr auto kCount = static_cast<std::size_t>(kRate * kSeconds);
    platform::Data bytes;
    append(bytes, "caff");
    append(bytes, 1, 2);  // version
    append(bytes, 0, 2);
    append(bytes, "desc");
    append(bytes, 32, 8);
    append(bytes, std::bit_cast<std::uint64_t>(kRate), 8);
    append(bytes, "lpcm");
    append(bytes, 0, 4);   // big-endian whole numbers
    append(bytes, 2, 4);   // bytes a packet
    append(bytes, 1, 4);   // frames a packet
    append(bytes, 1, 4);   // channels
    append(bytes, 16, 4);  // bits
    append(bytes, "data");
    append(bytes, 4 + 2 * kCount, 8);
    append(bytes, 0, 4);  // never edited
    for (std::size_t i = 0; i < kCount; ++i) {
        append(bytes, static_cast<std::uint16_t>(sample(static_cast<double>(i) / kRate)), 2);
    }
    return bytes;
}

}  // namespace velmoranth::makers
