// The time that everything on a screen shows: the status bar, the clock's icon, the hours of the
// weather. One device has one.
#pragma once

#include "platform/foundation.h"

#include <optional>

namespace velmoranth::simulator {

struct TimeOfDay {
    int hour;
    int minute;
    int second;

    friend bool operator==(const TimeOfDay&, const TimeOfDay&) = default;
};

// 9:41, as in the platform's own pictures.
inline constexpr TimeOfDay kStillTime{9, 41, 0};

// What a clock shows at that date in the machine's time zone; nothing, and what is no date, is
// kStillTime.
[[nodiscard]] TimeOfDay timeOfDay(const std::optional<platform::Date>& date);

}  // namespace velmoranth::simulator
