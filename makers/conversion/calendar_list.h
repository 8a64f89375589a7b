// Info.plist: how the calendar's icon is written, and what else it may say.
#pragma once

#include "platform/foundation.h"

#include "makers/conversion/plan.h"

namespace velmoranth::makers {

// After the icons: of those it is told which are there.
void makeCalendarList(Draft& draft, const platform::Dictionary& calendar);

}  // namespace velmoranth::makers
