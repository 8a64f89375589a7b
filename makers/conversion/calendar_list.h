// Info.plist: how the calendar's icon is written, and what else it may say.
#pragma once

#include "platform/foundation.h"

#include "makers/conversion/plan.h"

namespace velmoranth::makers {

// After the icons: of those it is told which are there.
void makeCalendarList(Draft& draft, const platform::Dictionary& calendar);

// Whether the list says nothing of where the day of the month stands, which is at the icon's top
// edge then, and has the weekday there as well.
[[nodiscard]] bool writesDayAcrossWeekday(const platform::Dictionary& list);

// Whether the list says nothing of the mask, which is then not used for the calendar.
[[nodiscard]] bool saysNothingOfMask(const platform::Dictionary& list);

}  // namespace velmoranth::makers
