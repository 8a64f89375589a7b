// Replacements on folder icons: the theme's picture behind the miniatures in place of the
// platform's plate, and themed miniatures.
#pragma once

#include "core/original_implementation.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

namespace velmoranth::hooks {

// The tag of a folder icon image view that carries the theme's picture, and of the picture that its
// initialiser put there (one that a layout put there keeps FolderImageTag).
inline constexpr int FolderIconTag = 329;
inline constexpr int FolderImageViewTag = 1105;

struct SBFolderIconImageViewHooks {
    using InitWithFrame = platform::ViewRef(platform::SBFolderIconImageView&, platform::Rect);

    static platform::ViewRef initWithFrame(
        const core::OriginalImplementation<InitWithFrame>& original,
        platform::SBFolderIconImageView& self, platform::Rect frame);
    static void layoutSubviews(
        const core::OriginalImplementation<void(platform::SBFolderIconImageView&)>& original,
        platform::SBFolderIconImageView& self);
};

struct SBFolderIconImageCacheHooks {
    using Signature = platform::ImageRef(platform::SBFolderIconImageCache&, platform::SBIconRef);

    static platform::ImageRef gridCellImageForIcon(
        const core::OriginalImplementation<Signature>& original,
        platform::SBFolderIconImageCache& self, platform::SBIconRef icon);
};

}  // namespace velmoranth::hooks
