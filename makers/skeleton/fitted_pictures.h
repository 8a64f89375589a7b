// The parts of a skeleton that are no picture of the device's as it stands, since something is done
// to them before they show: the mask, and the calendar's icon with the list that it is written by.
#pragma once

#include "platform/foundation.h"

#include <cstddef>

namespace velmoranth::makers {

// A gray mask of that many pixels a side that cuts nothing off the device's own icons, which have
// the shape already: it hides what lies well outside of it and leaves their soft edges alone, in
// whatever size it is laid over one.
[[nodiscard]] platform::Data widenedMask(std::size_t side);

// The calendar's icon without weekday and day, which are written on it, as a PNG file.
[[nodiscard]] platform::Data bareCalendar(std::size_t side);

// The list of the skeleton, by which an icon of `side` points is written on as the device does it,
// at `scale` pixels per point.
[[nodiscard]] platform::Dictionary skeletonInfo(double side, double scale);

}  // namespace velmoranth::makers
