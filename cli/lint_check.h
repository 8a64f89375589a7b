// Checks one theme: decodes its pictures, asks devices about its files, and brings what was found
// in order.
#pragma once

#include "cli/late_progress.h"
#include "cli/lint_device.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include "makers/conversion/found_themes.h"
#include "makers/lint/lint.h"

#include <vector>

namespace velmoranth::cli {

// `calendar` is installedCalendar(). A problem when no device can be made or asked; nothing that is
// wrong with the theme is one.
[[nodiscard]] desktop::Result<std::vector<makers::Finding>> checkTheme(
    const makers::FoundTheme& theme, const platform::Dictionary& calendar, LateProgress& progress);

}  // namespace velmoranth::cli
