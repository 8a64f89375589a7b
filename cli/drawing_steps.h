// What was done to a picture, step by step, as a record has it.
#pragma once

#include "record/entry.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// A picture that was made of others. Sizes are in a record's words: "60×60 @3x" of an image,
// "180×180 pixels" of a bitmap, "180×180 mask" of a mask.
struct DrawingStep {
    std::string_view what;            // "cut out"
    std::string_view message;         // that made it
    std::vector<std::string> before;  // sizes of the pictures that it was made of, none twice
    std::string after;                // its size; "nil" when nothing came of it

    friend bool operator==(const DrawingStep&, const DrawingStep&) = default;
};

[[nodiscard]] std::vector<DrawingStep> drawingSteps(const record::Record& record);

// Steps, and how often they stand there one after the other.
struct RepeatedSteps {
    std::span<const DrawingStep> steps;
    std::size_t times = 1;
};

// How a list that is not empty begins: with the fewest steps that follow again at once, or with its
// first one.
[[nodiscard]] RepeatedSteps repeatedSteps(std::span<const DrawingStep> steps);

}  // namespace velmoranth::cli
