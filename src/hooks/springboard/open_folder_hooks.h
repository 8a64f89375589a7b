// Replacements on an open folder: the theme's picture behind it, which fades in and out with the
// folder, in place of the platform's blur, and the tap that closes the folder.
#pragma once

#include "core/original_implementation.h"
#include "platform/objc_runtime.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

#include <cstdint>

namespace velmoranth::hooks {

// Seconds: 0.3 in single precision, widened.
inline constexpr double kFolderFadeDuration = 0.30000001192092896;

// Puts the recognizer into the exported variable tap, which holds it and lets go of the one before.
// The variable is for other code to see, so it is each system's own: of the kind that objects are
// there (exported_variables.h, device/hooks/hook_entries.mm).
void storeTap(const platform::GestureRecognizerRef& recognizer);

// The theme's picture behind open folders: one view, made for the first folder of the process and
// moved into the background of each later one. Nil before that.
[[nodiscard]] const platform::ImageViewRef& FolderBackgroundImageView();

struct SBFloatyFolderViewHooks {
    using InitWithFolder = platform::ViewRef(platform::SBFloatyFolderView&, platform::ObjectRef,
                                             std::int64_t, platform::ObjectRef,
                                             platform::ObjectRef);
    using ShouldReceiveTouch = bool(platform::SBFloatyFolderView&, platform::GestureRecognizerRef,
                                    platform::ObjectRef);

    static bool _showsTitle(
        const core::OriginalImplementation<bool(platform::SBFloatyFolderView&)>& original,
        platform::SBFloatyFolderView& self);
    static platform::ViewRef initWithFolderOrientationViewMapContext(
        const core::OriginalImplementation<InitWithFolder>& original,
        platform::SBFloatyFolderView& self, platform::ObjectRef folder, std::int64_t orientation,
        platform::ObjectRef viewMap, platform::ObjectRef context);
    static bool _tapToCloseGestureRecognizerShouldReceiveTouch(
        const core::OriginalImplementation<ShouldReceiveTouch>& original,
        platform::SBFloatyFolderView& self, platform::GestureRecognizerRef recognizer,
        platform::ObjectRef touch);

    // Added to the class: closes the folder that receives it.
    static void handleTap(platform::SBFloatyFolderView& self);
};

struct SBFolderControllerBackgroundViewHooks {
    using InitWithFrame = platform::ViewRef(platform::SBFolderControllerBackgroundView&,
                                            platform::Rect);

    static platform::ViewRef initWithFrame(
        const core::OriginalImplementation<InitWithFrame>& original,
        platform::SBFolderControllerBackgroundView& self, platform::Rect frame);
};

struct SBFolderBackgroundViewHooks {
    static void layoutSubviews(
        const core::OriginalImplementation<void(platform::SBFolderBackgroundView&)>& original,
        platform::SBFolderBackgroundView& self);
};

}  // namespace velmoranth::hooks
