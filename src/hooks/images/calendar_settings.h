// What a theme's Info.plist says about the calendar icon.
#pragma once

#include "platform/foundation.h"

namespace velmoranth::hooks {

// How one of the two labels is written; nine keys, each nil or 0 when it is missing.
struct CalendarTextSettings {
    float FontSize = 0;  // points
    platform::NullableString FontName;
    float ShadowBlurRadius = 0;  // not used: a label's shadow is never blurred
    platform::NullableString ShadowColor;
    float ShadowXoffset = 0;  // points, right
    float ShadowYoffset = 0;  // points, down
    platform::NullableString TextColor;
    float TextXoffset = 0;  // points, of the label's left side
    float TextYoffset = 0;  // points, of its upper side
};

struct CalendarSettings {
    CalendarTextSettings date;  // of the day of the month
    CalendarTextSettings day;   // of the weekday
    bool masksIcon = false;
};

// Reads the first active theme's Info.plist, or the user's own file when no theme has one. Values
// of a kind that a key cannot take count as missing, each told in one log line.
[[nodiscard]] CalendarSettings loadCalendarSettings();

}  // namespace velmoranth::hooks
