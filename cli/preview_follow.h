// `velmoranth preview --follow`: the picture again at every change, until the user ends it.
#pragma once

#include "cli/messages.h"
#include "cli/preview_options.h"
#include "cli/throw_away_device.h"

namespace velmoranth::cli {

// Draws, again at every notice, and anew, as after a respring, once a file is saved and at a
// respring; says what the themes do whenever that is another matter than before. Ends with a
// problem of the first picture or of writing one; a signal ends the process. Themes that are no
// themes for a while are waited for.
[[nodiscard]] ExitCode follow(const PreviewOptions& options, const DeviceOfRun& device);

}  // namespace velmoranth::cli
