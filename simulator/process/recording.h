// A process that takes down what it does (record/): its platform, and the methods that the engine
// replaces, by the signatures of the engine's own table.
#pragma once

#include "record/recorded_services.h"
#include "record/recorder.h"

namespace velmoranth::simulator {

class ProcessRecording {
  public:
    // Takes the place of the platform that the process has set; nothing of the engine is there yet.
    // The listener hears of every entry from now on, and lives as long as the process; null keeps
    // them here.
    explicit ProcessRecording(record::RecordListener* listener = nullptr);

    // What was kept since the last time.
    [[nodiscard]] record::Record take() { return recorder_.take(); }

  private:
    record::Recorder recorder_;
    record::RecordedServices services_;
};

}  // namespace velmoranth::simulator
