// Replacements on the docks: the classic one of the phone and the floating one of the pad. With the
// dock's background removed, the theme's own takes its place.
#pragma once

#include "core/original_implementation.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

#include <string>
#include <vector>

namespace velmoranth::hooks {

// DockIconIdentifiers: the identifiers of floating-dock icons that have a theme icon, appended at
// every look at the dock, duplicates included. Nothing reads it but whoever inspects it.
[[nodiscard]] const std::vector<std::string>& DockIconIdentifiers();

// Whether the floating dock has received its theme image. Never false again.
[[nodiscard]] bool DockImageInserted();

struct SBFloatingDockPlatterViewHooks {
    static void layoutSubviews(
        const core::OriginalImplementation<void(platform::SBFloatingDockPlatterView&)>& original,
        platform::SBFloatingDockPlatterView& self);
};

struct SBFloatingDockViewHooks {
    static platform::SBIconListViewRef userIconListView(
        const core::OriginalImplementation<
            platform::SBIconListViewRef(platform::SBFloatingDockView&)>& original,
        platform::SBFloatingDockView& self);
    // Nil with the dock's background removed.
    static platform::ViewRef dividerView(
        const core::OriginalImplementation<platform::ViewRef(platform::SBFloatingDockView&)>&
            original,
        platform::SBFloatingDockView& self);
};

struct SBDockViewHooks {
    static void layoutSubviewsOniOS12(
        const core::OriginalImplementation<void(platform::SBDockView&)>& original,
        platform::SBDockView& self);
    static void layoutSubviewsOniOS13(
        const core::OriginalImplementation<void(platform::SBDockView&)>& original,
        platform::SBDockView& self);
};

}  // namespace velmoranth::hooks
