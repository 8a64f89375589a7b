// Where the stock pictures come from that questions are answered with, and what the screens do with
// them.
#pragma once

#include "simulator/screens/question_rows.h"

#include <string_view>

namespace velmoranth::simulator {

// The identifier of the bundle in whose catalog the picture lies under the question's argument; ""
// for what is no picture of a catalog.
[[nodiscard]] std::string_view catalogOf(const Question& question);

// Whether the screens fill that picture with a colour of their own.
[[nodiscard]] bool takesTint(const Question& question);

}  // namespace velmoranth::simulator
