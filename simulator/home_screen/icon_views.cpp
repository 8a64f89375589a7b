#include "simulator/home_screen/icon_views.h"

#include "desktop/imaging/bitmap_image.h"
#include "desktop/text/text.h"
#include "simulator/artwork/artwork.h"
#include "simulator/home_screen/folder_icon_views.h"
#include "simulator/home_screen/live_icons.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace velmoranth::simulator {

using platform::BitmapImageRef;
using platform::ImageRef;
using platform::ObjectRef;
using platform::Point;
using platform::Rect;

namespace {

// The icon view of a 60-point icon is 60 × 74; its label reaches beyond it. Frames in log lines of
// the platform.
constexpr double kIconViewExtraHeight = 14;
// White over a soft shadow: estimates of the platform's legibility style.
constexpr desktop::TextShadow kLabelShadow{{0, 0, 0, 0.3}, {0, 0.5}, 1.5};
// Around the label's box, for the shadow.
constexpr double kLabelMargin = 8;
constexpr std::int64_t kImageOrientationUp = 0;

// A real screenshot measured by pixel, and a public re-creation: 24 points for a 60-point icon, 10
// over its top and right edges. Larger icons: an estimate.
constexpr double kLargeBadgeHeight = 26;
constexpr double kLargestIconOfSmallBadge = 60;
constexpr double kBadgeOverhang = 10;
constexpr double kBadgePadding = 6;
constexpr double kBadgeTextShare = 16.0 / 24;

// The look of a re-creation of the platform's pressed icon.
constexpr double kDarkening = 0.4;
constexpr double kBadgeDarkening = 0.2;  // an estimate

// The text in its box with the margin around it, at `scale` pixels per point.
BitmapImageRef drawLabel(const std::string& text, const desktop::TextStyle& style,
                         platform::Size box, double scale) {
    const auto pixels = [&](double points) {
        return static_cast<std::size_t>(std::ceil((points + 2 * kLabelMargin) * scale - 1e-6));
    };
    const desktop::PixelSize size{pixels(box.width), pixels(box.height)};
    auto memory = std::make_shared<platform::Data>(size.width * size.height * 4);
    desktop::drawText({memory->data(), size.width, size.height, size.width * 4}, text, style,
                      {{kLabelMargin, kLabelMargin}, box}, scale);
    return desktop::DesktopBitmapImage::createPremultiplied(std::move(memory), size,
                                                            size.width * 4);
}

double badgeHeight(const HomeScreenMetrics& metrics) {
    return metrics.iconSide > kLargestIconOfSmallBadge ? kLargeBadgeHeight : kBadgeHeight;
}

// Black where the image shows something.
BitmapImageRef blackened(const ImageRef& image) {
    const auto bitmap =
        image == nullptr ? nullptr : desktop::DesktopBitmapImage::of(image->bitmap());
    const desktop::PixelView pixels = bitmap == nullptr ? desktop::PixelView{} : bitmap->pixels();
    if (pixels.empty()) {
        return nullptr;
    }
    constexpr std::size_t kChannels = 4;
    auto memory = std::make_shared<platform::Data>(pixels.width * pixels.height * kChannels);
    for (std::size_t y = 0; y < pixels.height; ++y) {
        for (std::size_t i = kChannels - 1; i < pixels.width * kChannels; i += kChannels) {
            (*memory)[y * pixels.width * kChannels + i] = pixels.row(y)[i];
        }
    }
    return desktop::DesktopBitmapImage::createPremultiplied(
        std::move(memory), {pixels.width, pixels.height}, pixels.width * kChannels);
}

}  // namespace

void DarkeningOverlay::show(platform::View& owner, const ImageRef& image) {
    if (image == nullptr) {
        if (view_ != nullptr) {
            view_->removeFromSuperview();
            view_ = nullptr;
        }
        return;
    }
    if (view_ == nullptr) {
        view_ = std::make_shared<desktop::DesktopImageView>();
        view_->setAlpha(kDarkening);
        owner.addSubview(view_);
    }
    view_->setFrame(owner.bounds());
    view_->setImage(image);
}

ImageRef IconLabelImage::init(BitmapImageRef bitmap, double scale) {
    bitmap_ = std::move(bitmap);
    scale_ = scale;
    return shared_from_this();
}

platform::Size IconLabelImage::size() const {
    if (bitmap_ == nullptr) {
        return {};
    }
    const platform::BitmapLayout& layout = bitmap_->layout();
    return {static_cast<double>(layout.width) / scale_,
            static_cast<double>(layout.height) / scale_};
}

std::shared_ptr<IconBadgeView> IconBadgeView::create(const ScreenContext& context,
                                                     const std::string& text) {
    if (text.empty()) {
        return nullptr;
    }
    const double height = badgeHeight(context.metrics);
    const desktop::TextStyle style{.size = height * kBadgeTextShare,
                                   .color = {1, 1, 1, 1},
                                   .alignment = desktop::TextAlignment::center};
    const auto maxTextWidth =
        context.runtime.sendToClass<double>("SBIconBadgeView", "_maxTextWidth");
    const double textWidth =
        std::min(maxTextWidth, std::ceil(desktop::measureText(text, style).width));
    const double width = std::max(height, textWidth + 2 * kBadgePadding);
    // Its right edge stays, however wide it is.
    const Rect frame{{context.metrics.iconSide + kBadgeOverhang - width, -kBadgeOverhang},
                     {width, height}};
    const std::shared_ptr<IconBadgeView> badge(new IconBadgeView);
    badge->setFrame(frame);
    badge->background_ = std::make_shared<NamedImageView>(
        "SBDarkeningImageView", Rect{{0, 0}, frame.size},
        context.picture(drawBadgeBackground(width, context.scale(), height)));
    badge->text_ = std::make_shared<desktop::DesktopLabel>(text, style);
    badge->addSubview(badge->background_);
    badge->addSubview(badge->text_);
    return badge;
}

void IconBadgeView::placeSubviews() {
    const Rect bounds = this->bounds();
    background_->setFrame(bounds);
    text_->setFrame(
        {{kBadgePadding / 2, 0}, {bounds.size.width - kBadgePadding, bounds.size.height}});
}

void IconBadgeView::setHighlighted(const ScreenContext& context, bool highlighted) {
    if (darkening_ != nullptr) {
        darkening_->removeFromSuperview();
        darkening_ = nullptr;
    }
    if (const BitmapImageRef black = highlighted ? blackened(background_->image()) : nullptr) {
        darkening_ = std::make_shared<desktop::DesktopImageView>(bounds());
        darkening_->setImage(context.images.makeImage(black, context.scale()));
        darkening_->setAlpha(kBadgeDarkening);
        insertSubviewAtIndex(darkening_, 1);
    }
}

std::shared_ptr<IconView> IconView::create(const ScreenContext& context, const HomeScreenItem& item,
                                           const Point& origin, bool withLabel) {
    const std::shared_ptr<IconView> view(new IconView(context, item));
    const double side = context.metrics.iconSide;
    view->setFrame({origin, {side, side + kIconViewExtraHeight}});
    const Rect imageFrame{{0, 0}, {side, side}};
    if (item.folder != nullptr) {
        view->imageView_ = FolderIconImageView::create(context, view->icon_, imageFrame);
    } else {
        view->imageView_ = makeIconImageView(view->icon_, *item.app, context.device.system);
    }
    view->addSubview(view->imageView_);
    if (withLabel) {
        view->makeLabel(nameOf(item));
    }
    view->badge_ = IconBadgeView::create(context, badgeOf(item));
    view->addSubview(view->badge_);
    return view;
}

void IconView::makeLabel(const std::string& text) {
    const desktop::TextStyle style{.size = context_.metrics.labelSize,
                                   .color = {1, 1, 1, 1},
                                   .shadow = kLabelShadow,
                                   .alignment = desktop::TextAlignment::center};
    const LabelPlace place = labelPlace(context_.metrics, context_.scale());
    const auto image = std::make_shared<IconLabelImage>();
    // The image does not keep its text: the parameters that the platform passes are its own.
    label_ = std::make_shared<IconLabelView>();
    label_->setContents(
        context_.runtime.send<ImageRef, BitmapImageRef, double, std::int64_t, ObjectRef, Point>(
            *image, "_initWithCGImage:scale:orientation:parameters:maxSizeOffset:",
            drawLabel(text, style, {place.width, place.height}, context_.scale()), context_.scale(),
            kImageOrientationUp, nullptr, Point{}));
    addSubview(label_);
}

void IconView::placeLabel() {
    desktop::Runtime& runtime = context_.runtime;
    runtime.send<void, bool>(*label_, "setHidden:", false);
    runtime.send<void, double>(*label_, "setAlpha:", 1.0);
    if (runtime.send<bool>(*label_, "isHidden") || runtime.send<double>(*label_, "alpha") <= 0) {
        return;
    }
    const double side = context_.metrics.iconSide;
    const LabelPlace place = labelPlace(context_.metrics, context_.scale());
    // As large as the image, so that the text is copied, not stretched.
    label_->setFrame({{snapToPixels((side - place.width) / 2, context_.scale()) - kLabelMargin,
                       side + place.top - kLabelMargin},
                      platform::sizeOf(label_->contents())});
}

void IconView::placeSubviews() {
    const double side = context_.metrics.iconSide;
    imageView_->setFrame({{0, 0}, {side, side}});
    if (label_ != nullptr) {
        placeLabel();
    }
}

void IconView::setHighlighted(bool highlighted) {
    const ImageRef image =
        highlighted ? context_.runtime.send<ImageRef>(*imageView_, "darkeningOverlayImage")
                    : nullptr;
    if (const auto folder = std::dynamic_pointer_cast<FolderIconImageView>(imageView_)) {
        folder->overlay.show(*folder, image);
    } else if (const auto app = std::dynamic_pointer_cast<IconImageView>(imageView_)) {
        app->overlay.show(*app, image);
    }
    if (badge_ != nullptr) {
        badge_->setHighlighted(context_, highlighted);
    }
}

}  // namespace velmoranth::simulator
