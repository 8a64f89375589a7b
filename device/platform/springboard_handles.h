// Handles of the home screen's objects. Those that are not named here take messages of a view or
// of an icon only, or none.
#pragma once

#include "platform/springboard.h"

#include "device/platform/handle.h"
#include "device/platform/uikit_handles.h"

#include <concepts>
#include <vector>

@class SBDockView;
@class SBFloatingDockView;
@class SBFolderIconImageView;
@class SBIcon;
@class SBIconController;
@class SBIconListPageControl;
@class SBIconListView;
@class SBIconView;
@class WGWidgetInfo;

namespace velmoranth::device {

struct IconMessages {
    [[nodiscard]] static platform::NullableString leafIdentifier(SBIcon* icon);
    [[nodiscard]] static platform::NullableString nodeIdentifier(SBIcon* icon);
    [[nodiscard]] static platform::NullableString uniqueIdentifier(SBIcon* icon);
    // Of an icon view or an icon's image view.
    [[nodiscard]] static platform::SBIconRef icon(SBIconView* view);
};

// SBIcon and what derives from it.
template <std::derived_from<platform::SBIcon> Interface>
struct HandleFor<Interface> final : Handle<Interface, ::SBIcon> {
    using Handle<Interface, ::SBIcon>::Handle;
    using Handle<Interface, ::SBIcon>::object;

    [[nodiscard]] platform::NullableString leafIdentifier() const override {
        return IconMessages::leafIdentifier(object());
    }

    [[nodiscard]] platform::NullableString nodeIdentifier() const override {
        return IconMessages::nodeIdentifier(object());
    }

    [[nodiscard]] platform::NullableString uniqueIdentifier() const override {
        return IconMessages::uniqueIdentifier(object());
    }
};

// SBIconView, SBIconImageView and what derives from them.
template <class Interface, class Native = ::SBIconView>
struct IconShowingViewHandle : ViewHandle<Interface, Native> {
    using ViewHandle<Interface, Native>::ViewHandle;

    [[nodiscard]] platform::SBIconRef icon() const override {
        return IconMessages::icon(static_cast<::SBIconView*>(this->native()));
    }
};

template <>
struct HandleFor<platform::SBIconView> final : IconShowingViewHandle<platform::SBIconView> {
    using IconShowingViewHandle::IconShowingViewHandle;
};

template <>
struct HandleFor<platform::SBIconImageView> final
    : IconShowingViewHandle<platform::SBIconImageView> {
    using IconShowingViewHandle::IconShowingViewHandle;
};

template <>
struct HandleFor<platform::SBFolderIconImageView> final
    : IconShowingViewHandle<platform::SBFolderIconImageView, ::SBFolderIconImageView> {
    using IconShowingViewHandle::IconShowingViewHandle;

    [[nodiscard]] bool isAnimating() const override;
};

template <>
struct HandleFor<platform::SBIconListView> final
    : ViewHandle<platform::SBIconListView, ::SBIconListView> {
    using ViewHandle::ViewHandle;

    [[nodiscard]] std::vector<platform::SBIconRef> icons() const override;
};

template <>
struct HandleFor<platform::SBDockView> final : ViewHandle<platform::SBDockView, ::SBDockView> {
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::Rect dockListViewFrame() const override;
    void setBackgroundView(const platform::ViewRef& view) override;
};

template <>
struct HandleFor<platform::SBFloatingDockView> final
    : ViewHandle<platform::SBFloatingDockView, ::SBFloatingDockView> {
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::ViewRef backgroundView() const override;
};

template <>
struct HandleFor<platform::SBIconListPageControl> final
    : ViewHandle<platform::SBIconListPageControl, ::SBIconListPageControl> {
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::ImageRef _searchIndicatorImage(bool isCurrent) override;
};

template <>
struct HandleFor<platform::SBIconController> final
    : Handle<platform::SBIconController, ::SBIconController> {
    using Handle::Handle;

    void _closeFolderControllerAnimatedWithCompletion(platform::Object& folderController,
                                                      bool animated) override;
};

template <>
struct HandleFor<platform::WGWidgetInfo> final : Handle<platform::WGWidgetInfo, ::WGWidgetInfo> {
    using Handle::Handle;

    [[nodiscard]] platform::NullableString widgetIdentifier() const override;
};

}  // namespace velmoranth::device
