// Many requests to a device in few processes: one of each kind.
#pragma once

#include "cli/explanation.h"
#include "desktop/result/result.h"
#include "simulator/process/launcher.h"
#include "simulator/screens/question_rows.h"

#include <map>
#include <memory>

namespace velmoranth::cli {

class Asking {
  public:
    // `investigation` outlives this object.
    explicit Asking(const Investigation& investigation) : investigation_(investigation) {}

    [[nodiscard]] desktop::Result<simulator::Answer> ask(const simulator::Question& question);

    // Ends the process that answers such questions, and with it all that it keeps; the next one is
    // sent to a new process.
    void forget(const simulator::Question& question);

  private:
    const Investigation& investigation_;
    std::map<simulator::ProcessKind, std::unique_ptr<simulator::RunningScreen>> processes_;
};

}  // namespace velmoranth::cli
