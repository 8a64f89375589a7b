// What the library asks of files, the log, sounds, alerts, views, layers and fonts, taken down as
// the desktop's recorder takes it down: the same entries in the same words.
#pragma once

#include "record/entry.h"

namespace velmoranth::standins {

// From now on. What a method asks for by itself on the way to its answer is left out, as on the
// desktop.
void startRecording();
// What came since the last time.
[[nodiscard]] record::Record takeRecord();

// While this lives nothing is taken down on its thread: what a test does itself.
class Unrecorded {
  public:
    Unrecorded();
    ~Unrecorded();
    Unrecorded(const Unrecorded&) = delete;
    Unrecorded& operator=(const Unrecorded&) = delete;

  protected:
    const bool isOutermost_;
};

}  // namespace velmoranth::standins
