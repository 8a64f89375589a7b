// Where a theme's picture does not show as the device's own does, though it is the same.
#pragma once

#include "simulator/device.h"
#include "simulator/screens/question_rows.h"

#include <string_view>

namespace velmoranth::makers {

inline constexpr std::string_view kFilledWithColor =
    "the system fills it with a colour, and a theme's picture shows as it is";

// In what way the answer to that question differs; "" when it does not.
[[nodiscard]] std::string_view whyUnlike(const simulator::Question& question,
                                         const simulator::DeviceConfiguration& device);

// Whether the question is for the home screen's icon of the calendar, which is written on.
[[nodiscard]] bool isCalendar(const simulator::Question& question);

}  // namespace velmoranth::makers
