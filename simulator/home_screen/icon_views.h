// The views of one icon: the icon view and in it the image, the label and the badge. Which image
// each of them shows, and whether it shows at all, is decided by messages to them.
#pragma once

#include "desktop/views/views.h"
#include "platform/springboard.h"
#include "simulator/home_screen/icons.h"
#include "simulator/screen_context.h"
#include "simulator/toolkit/named_views.h"

#include <memory>
#include <string>
#include <utility>

namespace velmoranth::simulator {

// What a pressed icon shows over its image: "_overlayView", made when it is first needed.
class DarkeningOverlay {
  public:
    // Shows the image over all of `owner`; nil takes the overlay away.
    void show(platform::View& owner, const platform::ImageRef& image);

  private:
    platform::ImageViewRef view_;
};

// SBIconImageView.
class IconImageView : public NamedAs<"SBIconImageView", platform::SBIconImageView> {
  public:
    explicit IconImageView(platform::SBIconRef icon) : icon_(std::move(icon)) {}

    [[nodiscard]] platform::SBIconRef icon() const override { return icon_; }

    DarkeningOverlay overlay;

  private:
    platform::SBIconRef icon_;
};

// SBIconLabelImage: the drawn text. Empty until its initialiser has run.
class IconLabelImage final : public Named<"SBIconLabelImage", platform::SBIconLabelImage>,
                             public std::enable_shared_from_this<IconLabelImage> {
  public:
    // The platform's initialiser.
    platform::ImageRef init(platform::BitmapImageRef bitmap, double scale);

    [[nodiscard]] platform::Size size() const override;

    [[nodiscard]] double scale() const override { return scale_; }

    [[nodiscard]] platform::BitmapImageRef bitmap() const override { return bitmap_; }

    [[nodiscard]] bool hasCIImage() const override { return false; }

  private:
    platform::BitmapImageRef bitmap_;
    double scale_ = 1;
};

// SBIconLegibilityLabelView.
using IconLabelView = NamedAs<"SBIconLegibilityLabelView", platform::SBIconLegibilityLabelView>;

// SBIconBadgeView.
class IconBadgeView final : public NamedAs<"SBIconBadgeView", platform::SBIconBadgeView> {
  public:
    // Nil when the text is empty.
    [[nodiscard]] static std::shared_ptr<IconBadgeView> create(const ScreenContext& context,
                                                               const std::string& text);

    // "_backgroundView".
    [[nodiscard]] const std::shared_ptr<NamedImageView>& backgroundView() const {
        return background_;
    }

    // What the platform's layoutSubviews does.
    void placeSubviews();

    // Darkens the background, whatever it shows then, in its own shape.
    void setHighlighted(const ScreenContext& context, bool highlighted);

  private:
    IconBadgeView() = default;

    std::shared_ptr<NamedImageView> background_;
    platform::ImageViewRef darkening_;  // over the background while a finger is on the icon
    std::shared_ptr<desktop::DesktopLabel> text_;
};

// SBIconView.
class IconView final : public NamedAs<"SBIconView", platform::SBIconView> {
  public:
    // `origin` is the icon's top left in the superview's coordinates. Without a label, as in a dock
    // that has none, `withLabel` is off.
    [[nodiscard]] static std::shared_ptr<IconView> create(const ScreenContext& context,
                                                          const HomeScreenItem& item,
                                                          const platform::Point& origin,
                                                          bool withLabel);

    [[nodiscard]] platform::SBIconRef icon() const override { return icon_; }

    [[nodiscard]] const HomeScreenItem& item() const { return item_; }

    // An IconImageView or a FolderIconImageView.
    [[nodiscard]] const platform::ViewRef& imageView() const { return imageView_; }

    [[nodiscard]] const std::shared_ptr<IconLabelView>& labelView() const { return label_; }

    [[nodiscard]] const std::shared_ptr<IconBadgeView>& badgeView() const { return badge_; }

    // What the platform's layoutSubviews does: puts image, label and badge in their places.
    void placeSubviews();

    // Darkens image and badge as the platform does while a finger is on the icon: asks the image
    // view for its darkeningOverlayImage. The view has been laid out.
    void setHighlighted(bool highlighted);

  private:
    IconView(const ScreenContext& context, const HomeScreenItem& item)
        : context_(context), item_(item), icon_(makeIcon(item)) {}

    void makeLabel(const std::string& text);
    void placeLabel();

    const ScreenContext& context_;
    HomeScreenItem item_;
    platform::SBIconRef icon_;
    platform::ViewRef imageView_;
    std::shared_ptr<IconLabelView> label_;
    std::shared_ptr<IconBadgeView> badge_;
};

}  // namespace velmoranth::simulator
