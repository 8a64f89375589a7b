// What the engine does on the desktop's services for one step of a scenario, taken down: a process
// of its own, in which nothing has been asked before.
#pragma once

#include "device/equality/requests.h"
#include "record/entry.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace velmoranth::cli {

struct RecordedStep {
    // The step's alone: the start of the process is left out.
    record::Record record;
    // In the words of the comparison with the phone's side.
    std::string result;
};

// The steps that change files are carried out up to that one. `given` is what the platform's own
// method answers, whatever the step has; `furnish` adds to the phone's files. Nothing when the
// process ended early.
[[nodiscard]] std::optional<RecordedStep> recordStep(
    const equality::Scenario& scenario, std::size_t step, equality::Given given,
    const std::function<void(const std::string& root)>& furnish);

}  // namespace velmoranth::cli
