// The home screen's objects.
#include "device/platform/geometry.h"
#include "device/platform/private_messages.h"
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
            [ifUnderstood(static_cast<Class>(nativeOf(iconController)), @selector(sharedInstance))
                sharedInstance]);
    }
};

}  // namespace

platform::NullableString IconMessages::leafIdentifier(SBIcon* icon) {
    return textOf([ifUnderstood(icon, @selector(leafIdentifier)) leafIdentifier]);
}

platform::NullableString IconMessages::nodeIdentifier(SBIcon* icon) {
    return textOf([ifUnderstood(icon, @selector(nodeIdentifier)) nodeIdentifier]);
}

platform::NullableString IconMessages::uniqueIdentifier(SBIcon* icon) {
    return textOf([ifUnderstood(icon, @selector(uniqueIdentifier)) uniqueIdentifier]);
}

platform::SBIconRef IconMessages::icon(SBIconView* view) {
    return wrap<platform::SBIcon>([ifUnderstood(view, @selector(icon)) icon]);
}

bool HandleFor<platform::SBFolderIconImageView>::isAnimating() const {
    return [ifUnderstood(object(), @selector(isAnimating)) isAnimating] != 0;
}

std::vector<platform::SBIconRef> HandleFor<platform::SBIconListView>::icons() const {
    return membersOf<platform::SBIcon>([ifUnderstood(object(), @selector(icons)) icons]);
}

platform::Rect HandleFor<platform::SBDockView>::dockListViewFrame() const {
    return fromNative([ifUnderstood(object(), @selector(dockListViewFrame)) dockListViewFrame]);
}

void HandleFor<platform::SBDockView>::setBackgroundView(const platform::ViewRef& view) {
    [ifUnderstood(object(), @selector(setBackgroundView:)) setBackgroundView:nativeOf(view)];
}

platform::ViewRef HandleFor<platform::SBFloatingDockView>::backgroundView() const {
    return viewOf([ifUnderstood(object(), @selector(backgroundView)) backgroundView]);
}

platform::ImageRef HandleFor<platform::SBIconListPageControl>::_searchIndicatorImage(
    bool isCurrent) {
    return wrap<platform::Image>([ifUnderstood(object(), @selector(_searchIndicatorImage:))
        _searchIndicatorImage:isCurrent]);
}

void HandleFor<platform::SBIconController>::_closeFolderControllerAnimatedWithCompletion(
    platform::Object& folderController, bool animated) {
    [ifUnderstood(object(), @selector(_closeFolderController:animated:withCompletion:))
        _closeFolderController:nativeOf(folderController)
                      animated:animated
                withCompletion:nil];
}

platform::NullableString HandleFor<platform::WGWidgetInfo>::widgetIdentifier() const {
    return textOf([ifUnderstood(object(), @selector(widgetIdentifier)) widgetIdentifier]);
}

platform::SpringBoard& springBoard() {
    return theOne<PhoneSpringBoard>();
}

}  // namespace velmoranth::device
