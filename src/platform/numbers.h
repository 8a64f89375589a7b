// Conversions of numbers as the device's processor makes them.
#pragma once

#include <cstdint>
#include <limits>

namespace velmoranth::platform {

// A double as an int: toward zero, beyond the range its nearest end, 0 for no number.
[[nodiscard]] inline std::int32_t truncated(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (!(value > Limits::min())) {
        return value < 0 ? Limits::min() : 0;
    }
    return value >= Limits::max() ? Limits::max() : static_cast<std::int32_t>(value);
}

}  // namespace velmoranth::platform
