// What is found by looking at what devices make of a theme: masks, the calendar, sounds, images of
// one name.
#pragma once

#include "cli/lint_device.h"
#include "desktop/result/result.h"

#include "makers/conversion/found_themes.h"
#include "makers/lint/answers.h"
#include "makers/lint/lint.h"

#include <vector>

namespace velmoranth::cli {

using Observed = desktop::Result<std::vector<makers::Finding>>;

// An opaque icon is cut out with each mask that the devices have asked for. Of the others that a
// conversion makes anew the samples are looked at.
[[nodiscard]] Observed maskFindings(LintDevices& devices, const makers::Answers& answers,
                                    const makers::FoundTheme& theme, const makers::Plan& plan);

// The calendar's icon is drawn, when the theme says how.
[[nodiscard]] Observed calendarFindingsOf(LintDevices& devices, const DeviceOfRun& device,
                                          const makers::Answers& answers);

// Every sound that is asked for is decoded; nothing where sounds cannot be.
[[nodiscard]] std::vector<makers::Finding> soundFindings(const makers::FoundTheme& theme,
                                                         const makers::Answers& answers);

// Images of one name that differ, in places that one process may ask for.
[[nodiscard]] Observed sharedNameFindings(LintDevices& devices, const makers::FoundTheme& theme,
                                          const makers::Answers& answers);

}  // namespace velmoranth::cli
