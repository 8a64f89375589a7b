// What Foundation is asked of files and bundles, taken down as the desktop's recorder takes it
// down; the stand-ins' own classes take down what they are told in any case (journal.h).
#pragma once

namespace velmoranth::standins {

// From now on, to the end of the process; what was taken down before is forgotten.
void startRecording();

}  // namespace velmoranth::standins
