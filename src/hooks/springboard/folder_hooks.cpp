#include "hooks/springboard/folder_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "imaging/chrome_images.h"
#include "platform/platform.h"
#include "theme/icon_theming.h"
#include "theme/themed_icons.h"

#include <memory>
#include <optional>

namespace velmoranth::hooks {

using core::NSLog;
using core::OriginalImplementation;
using core::settings;
using imaging::ChromeImages;
using platform::ImageRef;
using platform::ImageViewRef;
using platform::platform;
using platform::ViewRef;

namespace {

void hidePlate(platform::SBFolderIconImageView& view) {
    const auto plate = std::dynamic_pointer_cast<platform::View>(
        platform().objc.instanceVariable(view, "_backgroundView"));
    if (plate != nullptr) {
        if (const platform::LayerRef layer = plate->layer()) {
            layer->setOpacity(0);
        }
    }
}

void removeImageViews(platform::View& view) {
    const platform::ClassRef imageViewClass = platform().objc.getClass("UIImageView");
    for (const ViewRef& subview : view.subviews()) {
        if (platform().objc.isKindOfClass(*subview, imageViewClass)) {
            subview->removeFromSuperview();
            subview->removeFromSuperview();
        }
    }
}

}  // namespace

ViewRef SBFolderIconImageViewHooks::initWithFrame(
    const OriginalImplementation<InitWithFrame>& original, platform::SBFolderIconImageView& self,
    platform::Rect frame) {
    ViewRef view = original(self, frame);
    if (view != nullptr && settings().enable) {
        if (const ImageViewRef image = ChromeImages::FolderImage()) {
            view->insertSubviewAtIndex(image, 0);
            image->setAlpha(1);
            image->setTag(FolderImageViewTag);
            view->setTag(FolderIconTag);
        }
    }
    return view;
}

void SBFolderIconImageViewHooks::layoutSubviews(
    const OriginalImplementation<void(platform::SBFolderIconImageView&)>& original,
    platform::SBFolderIconImageView& self) {
    original(self);
    if (!settings().enable) {
        return;
    }
    hidePlate(self);
    const bool isAnimating = self.isAnimating();
    if (isAnimating && self.tag() == FolderIconTag) {
        removeImageViews(self);
    }
    if (!isAnimating && self.tag() != FolderIconTag) {
        const ImageViewRef image = ChromeImages::FolderImage();
        self.insertSubviewAtIndex(image, 0);
        image->setAlpha(1);
        self.setTag(FolderIconTag);
    }
}

ImageRef SBFolderIconImageCacheHooks::gridCellImageForIcon(
    const OriginalImplementation<Signature>& original, platform::SBFolderIconImageCache& self,
    platform::SBIconRef icon) {
    const auto orig = [&] { return original(self, icon); };
    orig();
    if (!settings().enable || icon == nullptr) {
        return orig();
    }
    if (settings().enableLogging) {
        const ImageRef image = orig();
        NSLog("VELMORANTH MainIcons, %@  With Identifier: %@", image, icon->nodeIdentifier());
    }
    const platform::NullableString identifier = icon->nodeIdentifier();
    if (const std::optional<ImageRef> kept = theme::findThemedIcon(identifier)) {
        return *kept;
    }
    ImageRef image = theme::themedIcon(identifier, orig());
    return image != nullptr ? image : orig();
}

}  // namespace velmoranth::hooks
