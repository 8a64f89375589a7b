// Handles of the home screen's objects. Those that are not named here take messages of a view or
// of an icon only, or none.
#pragma once

#include "platform/springboard.h"

#include "device/platform/handle.h"
#include "device/platform/uikit_handles.h"

#include <concepts>
#include <vector>

namespace velmoranth::device {

struct IconMessages {
    [[nodiscard]] static platform::NullableString leafIdentifier(id icon);
    [[nodiscard]] static platform::NullableString nodeIdentifier(id icon);
    [[nodiscard]] static platform::NullableString uniqueIdentifier(id icon);
    // Of an icon view or an icon's image view.
    [[nodiscard]] static platform::SBIconRef icon(id view);
};

// SBIcon and what derives from it.
template <class Interface>
class SBIconHandle : public Handle<Interface> {
  public:
    using Handle<Interface>::Handle;
    using Handle<Interface>::object;

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

template <std::derived_from<platform::SBIcon> Interface>
struct HandleFor<Interface> {
    using Type = SBIconHandle<Interface>;
};

// SBIconView, SBIconImageView and what derives from them.
template <class Interface>
class IconShowingViewHandle : public ViewHandle<Interface> {
  public:
    using ViewHandle<Interface>::ViewHandle;

    [[nodiscard]] platform::SBIconRef icon() const override {
        return IconMessages::icon(this->object());
    }
};

template <>
struct HandleFor<platform::SBIconView> {
    using Type = IconShowingViewHandle<platform::SBIconView>;
};

template <>
struct HandleFor<platform::SBIconImageView> {
    using Type = IconShowingViewHandle<platform::SBIconImageView>;
};

class SBFolderIconImageViewHandle final
    : public IconShowingViewHandle<platform::SBFolderIconImageView> {
  public:
    using IconShowingViewHandle::IconShowingViewHandle;

    [[nodiscard]] bool isAnimating() const override;
};

template <>
struct HandleFor<platform::SBFolderIconImageView> {
    using Type = SBFolderIconImageViewHandle;
};

class SBIconListViewHandle final : public ViewHandle<platform::SBIconListView> {
  public:
    using ViewHandle::ViewHandle;

    [[nodiscard]] std::vector<platform::SBIconRef> icons() const override;
};

template <>
struct HandleFor<platform::SBIconListView> {
    using Type = SBIconListViewHandle;
};

class SBDockViewHandle final : public ViewHandle<platform::SBDockView> {
  public:
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::Rect dockListViewFrame() const override;
    void setBackgroundView(const platform::ViewRef& view) override;
};

template <>
struct HandleFor<platform::SBDockView> {
    using Type = SBDockViewHandle;
};

class SBFloatingDockViewHandle final : public ViewHandle<platform::SBFloatingDockView> {
  public:
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::ViewRef backgroundView() const override;
};

template <>
struct HandleFor<platform::SBFloatingDockView> {
    using Type = SBFloatingDockViewHandle;
};

class SBIconListPageControlHandle final : public ViewHandle<platform::SBIconListPageControl> {
  public:
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::ImageRef _searchIndicatorImage(bool isCurrent) override;
};

template <>
struct HandleFor<platform::SBIconListPageControl> {
    using Type = SBIconListPageControlHandle;
};

class SBIconControllerHandle final : public Handle<platform::SBIconController> {
  public:
    using Handle::Handle;

    void _closeFolderControllerAnimatedWithCompletion(platform::Object& folderController,
                                                      bool animated) override;
};

template <>
struct HandleFor<platform::SBIconController> {
    using Type = SBIconControllerHandle;
};

class WGWidgetInfoHandle final : public Handle<platform::WGWidgetInfo> {
  public:
    using Handle::Handle;

    [[nodiscard]] platform::NullableString widgetIdentifier() const override;
};

template <>
struct HandleFor<platform::WGWidgetInfo> {
    using Type = WGWidgetInfoHandle;
};

}  // namespace velmoranth::device
