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

// The variables tap and blurEffect: the recognizer last added to a folder view, and an effect that
// nothing sets or reads. Exported here as functions that give the variable.
[[nodiscard, gnu::visibility("default")]] platform::GestureRecognizerRef& tap();
[[nodiscard, gnu::visibility("default")]] platform::ObjectRef& blurEffect();

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
