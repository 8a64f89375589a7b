// How the calendar's icon is written on, in points of an icon of 60: two lines, each centred, its
// box around a height.
#pragma once

#include "desktop/text/text.h"
#include "platform/uikit.h"

namespace velmoranth::simulator {

struct CalendarLine {
    double size = 0;  // of the type
    double middle = 0;
    desktop::FontWeight weight = desktop::FontWeight::regular;
    platform::Color color;
};

[[nodiscard]] CalendarLine calendarWeekday();
[[nodiscard]] CalendarLine calendarDay();

}  // namespace velmoranth::simulator
