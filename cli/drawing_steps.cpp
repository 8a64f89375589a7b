#include "cli/drawing_steps.h"

#include "record/operations.h"
#include "record/words.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velmoranth::cli {

using record::Entry;
using record::EntryKind;
using record::messageOf;

namespace {

struct StepRow {
    std::string_view message;
    std::string_view what;
};

constexpr std::array kSteps{
    StepRow{messageOf("CoreGraphics", "imageMaskCreate"), "made a mask"},
    StepRow{messageOf("CoreGraphics", "imageCreateWithMask"), "cut out"},
    StepRow{messageOf("GraphicsContext", "createImage"), "drawn"},
    StepRow{messageOf("ImageContexts", "getImageFromCurrentImageContext"), "redrawn"},
};

// Whether a record's words are the size of a picture.
bool isPictureSize(std::string_view words) {
    return words.find("×") != std::string_view::npos &&
           (words.find(" @") != std::string_view::npos || words.ends_with(" pixels") ||
            words.ends_with(" mask"));
}

void addSize(const std::string& words, std::vector<std::string>& sizes) {
    if (isPictureSize(words) && std::ranges::find(sizes, words) == sizes.end()) {
        sizes.push_back(words);
    }
}

}  // namespace

std::vector<DrawingStep> drawingSteps(const record::Record& record) {
    std::vector<DrawingStep> steps;
    std::vector<std::string> used;  // since the last step
    for (const Entry& entry : record) {
        if (entry.kind != EntryKind::call && entry.kind != EntryKind::message &&
            entry.kind != EntryKind::found) {
            continue;
        }
        const auto* const row = std::ranges::find(kSteps, entry.message, &StepRow::message);
        addSize(entry.subject, used);
        for (const std::string& argument : entry.arguments) {
            addSize(argument, used);
        }
        if (row != kSteps.end()) {
            steps.push_back({row->what, row->message, std::exchange(used, {}), entry.answer});
        } else if (entry.kind == EntryKind::found) {
            addSize(entry.answer, used);
        }
    }
    return steps;
}

RepeatedSteps repeatedSteps(std::span<const DrawingStep> steps) {
    for (std::size_t count = 1; count <= steps.size() / 2; ++count) {
        const auto first = steps.first(count);
        std::size_t times = 1;
        while ((times + 1) * count <= steps.size() &&
               std::ranges::equal(first, steps.subspan(times * count, count))) {
            ++times;
        }
        if (times > 1) {
            return {first, times};
        }
    }
    return {steps.first(1), 1};
}

}  // namespace velmoranth::cli
