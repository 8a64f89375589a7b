#include "hooks/springboard/open_folder_hooks.h"

#include "core/settings.h"
#include "platform/platform.h"
#include "theme/interface_image_lookup.h"

#include <memory>

namespace velmoranth::hooks {

using core::OriginalImplementation;
using core::settings;
using platform::ImageViewRef;
using platform::platform;
using platform::ViewRef;

namespace {

ImageViewRef& backgroundImageView() {
    static ImageViewRef instance;
    return instance;
}

ImageViewRef makeBackgroundImageView(const platform::Rect& frame) {
    ImageViewRef view = platform().views.imageViewWithFrame(frame);
    view->setImage(theme::InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
        "ANEMFolderBackground.png", "com.apple.springboard", nullptr));
    return view;
}

}  // namespace

const ImageViewRef& FolderBackgroundImageView() {
    return backgroundImageView();
}

bool SBFloatyFolderViewHooks::_showsTitle(
    const OriginalImplementation<bool(platform::SBFloatyFolderView&)>& original,
    platform::SBFloatyFolderView& self) {
    original(self);
    return original(self);
}

// NOLINTBEGIN(performance-unnecessary-value-param): a replacement's arguments are values.
ViewRef SBFloatyFolderViewHooks::initWithFolderOrientationViewMapContext(
    const OriginalImplementation<InitWithFolder>& original, platform::SBFloatyFolderView& self,
    platform::ObjectRef folder, std::int64_t orientation, platform::ObjectRef viewMap,
    platform::ObjectRef context) {
    const ViewRef view = original(self, folder, orientation, viewMap, context);
    if (view != nullptr && settings().enable && settings().removeFolderBG) {
        const platform::GestureRecognizerRef recognizer =
            platform().views.tapGestureRecognizer(*view, "handleTap");
        storeTap(recognizer);
        view->addGestureRecognizer(recognizer);
    }
    return original(self, folder, orientation, viewMap, context);
}

bool SBFloatyFolderViewHooks::_tapToCloseGestureRecognizerShouldReceiveTouch(
    const OriginalImplementation<ShouldReceiveTouch>& original, platform::SBFloatyFolderView& self,
    platform::GestureRecognizerRef recognizer, platform::ObjectRef touch) {
    original(self, recognizer, touch);
    const bool answer = original(self, recognizer, touch);
    if (settings().enable && answer) {
        const ImageViewRef& background = FolderBackgroundImageView();
        platform().views.animateWithDurationAnimationsCompletion(
            kFolderFadeDuration,
            [background] {
                if (background != nullptr) {
                    background->setAlpha(0);
                }
            },
            [background](bool /*finished*/) {
                if (background != nullptr) {
                    background->removeFromSuperview();
                }
            });
    }
    return answer;
}

// NOLINTEND(performance-unnecessary-value-param)

void SBFloatyFolderViewHooks::handleTap(platform::SBFloatyFolderView& self) {
    const platform::ClassRef cls = platform().objc.getClass("SBIconController");
    if (const platform::SBIconControllerRef controller =
            platform().springBoard.sharedInstance(cls)) {
        controller->_closeFolderControllerAnimatedWithCompletion(self, true);
    }
}

ViewRef SBFolderControllerBackgroundViewHooks::initWithFrame(
    const OriginalImplementation<InitWithFrame>& original,
    platform::SBFolderControllerBackgroundView& self, platform::Rect frame) {
    ViewRef view = original(self, frame);
    if (view != nullptr && settings().enable) {
        if (backgroundImageView() == nullptr) {
            backgroundImageView() = makeBackgroundImageView(frame);
        }
        const ImageViewRef background = backgroundImageView();
        background->setAlpha(0);
        view->addSubview(background);
        platform().views.animateWithDurationAnimationsCompletion(
            kFolderFadeDuration, [background] { background->setAlpha(1); },
            [](bool /*finished*/) {});
    }
    return view;
}

void SBFolderBackgroundViewHooks::layoutSubviews(
    const OriginalImplementation<void(platform::SBFolderBackgroundView&)>& original,
    platform::SBFolderBackgroundView& self) {
    original(self);
    if (!settings().enable) {
        return;
    }
    const auto blur = std::dynamic_pointer_cast<platform::View>(
        platform().objc.instanceVariable(self, "_blurView"));
    if (blur != nullptr) {
        blur->setAlpha(0);
    }
}

}  // namespace velmoranth::hooks
