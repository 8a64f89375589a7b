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

platform::NullableString IconMessages::leafIdentifier(id icon) {
    return textOf(
        [ifUnderstood(static_cast<SBIcon*>(icon), @selector(leafIdentifier)) leafIdentifier]);
}

platform::NullableString IconMessages::nodeIdentifier(id icon) {
    return textOf(
        [ifUnderstood(static_cast<SBIcon*>(icon), @selector(nodeIdentifier)) nodeIdentifier]);
}

platform::NullableString IconMessages::uniqueIdentifier(id icon) {
    return textOf(
        [ifUnderstood(static_cast<SBIcon*>(icon), @selector(uniqueIdentifier)) uniqueIdentifier]);
}

platform::SBIconRef IconMessages::icon(id view) {
    return wrap<platform::SBIcon>(
        [ifUnderstood(static_cast<::SBIconView*>(view), @selector(icon)) icon]);
}

// In the handles' own methods the bare name of a class is that of their interface.
bool SBFolderIconImageViewHandle::isAnimating() const {
    return [ifUnderstood(static_cast<::SBFolderIconImageView*>(object()), @selector(isAnimating))
               isAnimating] != 0;
}

std::vector<platform::SBIconRef> SBIconListViewHandle::icons() const {
    return membersOf<platform::SBIcon>(
        [ifUnderstood(static_cast<::SBIconListView*>(object()), @selector(icons)) icons]);
}

platform::Rect SBDockViewHandle::dockListViewFrame() const {
    return fromNative([ifUnderstood(static_cast<::SBDockView*>(object()),
                                    @selector(dockListViewFrame)) dockListViewFrame]);
}

void SBDockViewHandle::setBackgroundView(const platform::ViewRef& view) {
    [ifUnderstood(static_cast<::SBDockView*>(object()), @selector(setBackgroundView:))
        setBackgroundView:static_cast<UIView*>(nativeOf(view))];
}

platform::ViewRef SBFloatingDockViewHandle::backgroundView() const {
    return viewOf([ifUnderstood(static_cast<::SBFloatingDockView*>(object()),
                                @selector(backgroundView)) backgroundView]);
}

platform::ImageRef SBIconListPageControlHandle::_searchIndicatorImage(bool isCurrent) {
    return wrap<platform::Image>(
        [ifUnderstood(static_cast<::SBIconListPageControl*>(object()),
                      @selector(_searchIndicatorImage:)) _searchIndicatorImage:isCurrent]);
}

void SBIconControllerHandle::_closeFolderControllerAnimatedWithCompletion(
    platform::Object& folderController, bool animated) {
    [ifUnderstood(static_cast<::SBIconController*>(object()),
                  @selector(_closeFolderController:animated:withCompletion:))
        _closeFolderController:nativeOf(folderController)
                      animated:animated
                withCompletion:nil];
}

platform::NullableString WGWidgetInfoHandle::widgetIdentifier() const {
    return textOf([ifUnderstood(static_cast<::WGWidgetInfo*>(object()), @selector(widgetIdentifier))
        widgetIdentifier]);
}

platform::SpringBoard& springBoard() {
    static PhoneSpringBoard instance;
    return instance;
}

}  // namespace velmoranth::device
