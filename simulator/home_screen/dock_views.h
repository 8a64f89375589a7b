// The two docks: the phone's, and the pad's floating one with its platter, divider and suggested
// apps.
#pragma once

#include "desktop/views/views.h"
#include "platform/springboard.h"
#include "simulator/home_screen/icon_views.h"
#include "simulator/screen_context.h"
#include "simulator/toolkit/named_views.h"

#include <memory>
#include <optional>
#include <vector>

namespace velmoranth::simulator {

// SBDockIconListView and the other lists of icons.
class IconListView final : public NamedViewOf<platform::SBIconListView> {
  public:
    using NamedViewOf::NamedViewOf;

    [[nodiscard]] std::vector<platform::SBIconRef> icons() const override;

    // Takes the view in, in front of the others.
    void addIconView(const std::shared_ptr<IconView>& view);

    [[nodiscard]] const std::vector<std::shared_ptr<IconView>>& iconViews() const {
        return iconViews_;
    }

  private:
    std::vector<std::shared_ptr<IconView>> iconViews_;
};

// SBDockView.
class DockView final : public NamedAs<"SBDockView", platform::SBDockView> {
  public:
    // `frame` on the screen: the whole width, down to the screen's bottom. `background` (what the
    // platform shows) fills `backgroundFrame` (in the dock).
    [[nodiscard]] static std::shared_ptr<DockView> create(const ScreenContext& context,
                                                          const platform::Rect& frame,
                                                          const platform::Rect& backgroundFrame,
                                                          const platform::ImageRef& background);

    [[nodiscard]] platform::Rect dockListViewFrame() const override { return bounds(); }

    void setBackgroundView(const platform::ViewRef& view) override;

    [[nodiscard]] const platform::ViewRef& backgroundView() const { return background_; }

    [[nodiscard]] const platform::ViewRef& highlightView() const { return highlight_; }

    [[nodiscard]] const std::shared_ptr<IconListView>& iconListView() const { return list_; }

    // What the platform's layoutSubviews does.
    void placeSubviews();

  private:
    DockView() = default;

    platform::Rect backgroundFrame_;
    double hairline_ = 1;
    platform::ViewRef background_;
    platform::ViewRef highlight_;
    std::shared_ptr<IconListView> list_;
};

// SBFloatingDockPlatterView.
class FloatingDockPlatterView final
    : public NamedAs<"SBFloatingDockPlatterView", platform::SBFloatingDockPlatterView> {
  public:
    // `size` is the one that its layout will give it (points).
    [[nodiscard]] static std::shared_ptr<FloatingDockPlatterView> create(
        const ScreenContext& context, platform::Size size, const platform::ImageRef& background);

    [[nodiscard]] const platform::ViewRef& backgroundView() const { return background_; }

    [[nodiscard]] const platform::ViewRef& shadowView() const { return shadow_; }

    // What the platform's layoutSubviews does.
    void placeSubviews();

  private:
    FloatingDockPlatterView() = default;

    platform::ViewRef background_;
    platform::ViewRef shadow_;
};

// SBFloatingDockView: as wide as the screen, as high as its platter.
class FloatingDockView final : public NamedAs<"SBFloatingDockView", platform::SBFloatingDockView> {
  public:
    // Frames on the screen. Without a place the divider is hidden.
    [[nodiscard]] static std::shared_ptr<FloatingDockView> create(
        const ScreenContext& context, const platform::Rect& platterFrame,
        const std::optional<double>& dividerX, const platform::ImageRef& background);

    [[nodiscard]] platform::ViewRef backgroundView() const override {
        return platter_->backgroundView();
    }

    [[nodiscard]] const std::shared_ptr<FloatingDockPlatterView>& platter() const {
        return platter_;
    }

    [[nodiscard]] const std::shared_ptr<IconListView>& userList() const { return userList_; }

    [[nodiscard]] const std::shared_ptr<IconListView>& recentList() const { return recentList_; }

    [[nodiscard]] const platform::ViewRef& divider() const { return divider_; }

    // What the platform's layoutSubviews does; asks itself for its list and its divider.
    void placeSubviews();

  private:
    explicit FloatingDockView(const ScreenContext& context) : context_(context) {}

    const ScreenContext& context_;
    platform::Rect platterFrame_;  // in the dock
    platform::Rect dividerFrame_;
    std::shared_ptr<FloatingDockPlatterView> platter_;
    platform::ViewRef divider_;
    std::shared_ptr<IconListView> userList_;
    std::shared_ptr<IconListView> recentList_;
};

}  // namespace velmoranth::simulator
