// From the small program to the one that does the work, which is loaded only when there is work: it
// is velmoranth-device, beside this program or in ../libexec/velmoranth.
#pragma once

#include "cli/arguments.h"

namespace velmoranth::cli {

// The words that this program was started with, as main has them; they must outlive it.
void keepProgramArguments(char** arguments);

// Makes this process that program, started with the same words: what waits for this one, or
// interrupts it, has that one from then on. Comes back when there is none, having said where it was
// looked for.
ExitCode becomeDevice(const Arguments& arguments);
ExitCode becomeDevice();

}  // namespace velmoranth::cli
