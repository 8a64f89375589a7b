// What is installed on a device, as it comes with this program: the folder `layout` of the sources,
// copied beside the command when it is built.
#pragma once

#include "desktop/files/create_device_root.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <vector>

namespace velmoranth::cli {

// The panel's sounds, the factory preferences, the calendar, and where each lies on this machine:
// in share/velmoranth/layout beside the program, else in ../../share/velmoranth/layout. Fails with
// the places that were tried when neither is there; whether it is complete shows when the files are
// read.
[[nodiscard]] desktop::Result<std::vector<desktop::InstalledFile>> findInstalledFiles();

// How calendars are written of which a theme says nothing, of these files.
[[nodiscard]] desktop::Result<platform::Dictionary> installedCalendar();

}  // namespace velmoranth::cli
