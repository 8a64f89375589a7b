// The home screen's own objects behind the classes that replacements receive, and its views.
// Positions come from the layout; which image a view shows is decided by the messages that
// platform_classes.cpp answers.
#pragma once

#include "desktop/views/views.h"
#include "platform/springboard.h"
#include "simulator/apps.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {

// SBApplicationIcon and its subclasses. All three identifiers of an app's icon are the app's.
class ApplicationIcon final : public platform::SBApplicationIcon {
  public:
    explicit ApplicationIcon(const App& app) : app_(app) {}

    [[nodiscard]] std::string className() const override { return std::string(app_.iconClass); }

    [[nodiscard]] platform::NullableString leafIdentifier() const override { return identifier(); }

    [[nodiscard]] platform::NullableString nodeIdentifier() const override { return identifier(); }

    [[nodiscard]] platform::NullableString uniqueIdentifier() const override {
        return identifier();
    }

    [[nodiscard]] const App& app() const { return app_; }

  private:
    [[nodiscard]] std::string identifier() const { return std::string(app_.bundleIdentifier); }

    App app_;
};

using ApplicationIconRef = std::shared_ptr<ApplicationIcon>;

// SBHIconImageCache (iOS 13).
class IconImageCache final : public platform::SBHIconImageCache {
  public:
    [[nodiscard]] std::string className() const override { return "SBHIconImageCache"; }
};

// SBIconImageView.
class IconImageView final : public desktop::ViewImplementation<platform::SBIconImageView> {
  public:
    explicit IconImageView(ApplicationIconRef icon) : icon_(std::move(icon)) {}

    [[nodiscard]] std::string className() const override { return "SBIconImageView"; }

    [[nodiscard]] platform::SBIconRef icon() const override { return icon_; }

  private:
    ApplicationIconRef icon_;
};

// SBIconLegibilityLabelView.
class IconLabelView final : public desktop::DesktopLabel {
  public:
    using DesktopLabel::DesktopLabel;

    [[nodiscard]] std::string className() const override { return "SBIconLegibilityLabelView"; }
};

// A view of a class that only groups others: lists, the dock, the page control.
class NamedView final : public desktop::DesktopView {
  public:
    NamedView(std::string_view className, const platform::Rect& frame)
        : DesktopView(frame), className_(className) {}

    [[nodiscard]] std::string className() const override { return className_; }

  private:
    std::string className_;
};

// An image view of a class of its own: wallpaper, dock background.
class NamedImageView final : public desktop::DesktopImageView {
  public:
    NamedImageView(std::string_view className, const platform::Rect& frame,
                   const platform::ImageRef& image)
        : DesktopImageView(frame), className_(className) {
        setImage(image);
    }

    [[nodiscard]] std::string className() const override { return className_; }

  private:
    std::string className_;
};

// SBIconView: an icon's image with its label. The label is nil in a dock that has none.
class IconView final : public desktop::DesktopView {
  public:
    // Frames in the icon view's coordinates.
    struct Frames {
        platform::Rect image;
        platform::Rect label;
    };

    // Makes the view with its subviews. `frame` in the superview's coordinates.
    [[nodiscard]] static std::shared_ptr<IconView> create(const platform::Rect& frame,
                                                          const Frames& frames,
                                                          const ApplicationIconRef& icon,
                                                          std::shared_ptr<IconLabelView> label);

    [[nodiscard]] std::string className() const override { return "SBIconView"; }

    [[nodiscard]] const std::shared_ptr<IconImageView>& imageView() const { return imageView_; }

    [[nodiscard]] const ApplicationIconRef& icon() const { return icon_; }

    // What the platform's layoutSubviews does: puts image and label in their places.
    void placeSubviews();

  private:
    IconView(const platform::Rect& frame, const Frames& frames, ApplicationIconRef icon,
             std::shared_ptr<IconLabelView> label);

    Frames frames_;
    ApplicationIconRef icon_;
    std::shared_ptr<IconImageView> imageView_;
    std::shared_ptr<IconLabelView> label_;
};

}  // namespace velmoranth::simulator
