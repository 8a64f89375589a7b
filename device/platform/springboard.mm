// The home screen's objects.
#include "device/platform/geometry.h"
#include "device/platform/services.h"
#include "device/platform/springboard_handles.h"
#import <SpringBoard/SpringBoard.h>

namespace velmoranth::device {
namespace {

class PhoneSpringBoard final : public platform::SpringBoard {
  public:
    platform::SBIconControllerRef sharedInstance(
        const platform::ClassRef& iconController) override {
        return wrap<platform::SBIconController>(
            [static_cast<Class>(nativeOf(iconController)) sharedInstance]);
    }
};

}  // namespace

platform::NullableString IconMessages::leafIdentifier(id icon) {
    return textOf([static_cast<SBIcon*>(icon) leafIdentifier]);
}

platform::NullableString IconMessages::nodeIdentifier(id icon) {
    return textOf([static_cast<SBIcon*>(icon) nodeIdentifier]);
}

platform::NullableString IconMessages::uniqueIdentifier(id icon) {
    return textOf([static_cast<SBIcon*>(icon) uniqueIdentifier]);
}

platform::SBIconRef IconMessages::icon(id view) {
    return wrap<platform::SBIcon>([static_cast<::SBIconView*>(view) icon]);
}

// In the handles' own methods the bare name of a class is that of their interface.
bool SBFolderIconImageViewHandle::isAnimating() const {
    return [static_cast<::SBFolderIconImageView*>(object()) isAnimating] != 0;
}

std::vector<platform::SBIconRef> SBIconListViewHandle::icons() const {
    return membersOf<platform::SBIcon>([static_cast<::SBIconListView*>(object()) icons]);
}

platform::Rect SBDockViewHandle::dockListViewFrame() const {
    return fromNative([static_cast<::SBDockView*>(object()) dockListViewFrame]);
}

void SBDockViewHandle::setBackgroundView(const platform::ViewRef& view) {
    [static_cast<::SBDockView*>(object()) setBackgroundView:static_cast<UIView*>(nativeOf(view))];
}

platform::ViewRef SBFloatingDockViewHandle::backgroundView() const {
    return viewOf([static_cast<::SBFloatingDockView*>(object()) backgroundView]);
}

platform::ImageRef SBIconListPageControlHandle::_searchIndicatorImage(bool isCurrent) {
    return wrap<platform::Image>(
        [static_cast<::SBIconListPageControl*>(object()) _searchIndicatorImage:isCurrent]);
}

void SBIconControllerHandle::_closeFolderControllerAnimatedWithCompletion(
    platform::Object& folderController, bool animated) {
    [static_cast<::SBIconController*>(object()) _closeFolderController:nativeOf(folderController)
                                                              animated:animated
                                                        withCompletion:nil];
}

platform::NullableString WGWidgetInfoHandle::widgetIdentifier() const {
    return textOf([static_cast<::WGWidgetInfo*>(object()) widgetIdentifier]);
}

platform::SpringBoard& springBoard() {
    static PhoneSpringBoard instance;
    return instance;
}

}  // namespace velmoranth::device
