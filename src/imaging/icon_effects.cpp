#include "imaging/icon_effects.h"

#include "core/format.h"
#include "imaging/bitmap_functions.h"
#include "imaging/rendered_layer.h"
#include "imaging/view_tags.h"
#include "platform/numbers.h"
#include "platform/platform.h"
#include "theme/interface_image_lookup.h"
#include "theme/kept_image.h"
#include "theme/theme_selection.h"

#include <cstdint>
#include <string>

namespace velmoranth::imaging {

using core::NSLog;
using platform::BitmapImageRef;
using platform::BitmapLayout;
using platform::ImageRef;
using platform::ImageViewRef;
using platform::platform;
using platform::Rect;
using platform::ViewRef;
using theme::deviceIsPad;

namespace {

struct State {
    theme::KeptImage OverlayCache;  // drawn over icons on several threads
    // The main thread's, as all views are.
    ImageRef ShadowImageCache;
    ImageViewRef ShadowView;  // the newest; every icon view receives its own
};

State& state() {
    static State instance;
    return instance;
}

ImageRef search(const char* folder, const char* file) {
    return theme::InterfaceImageLookup::searchFolderForImageStr(folder, file);
}

// Points; a shadow begins 10 points above and to the left of its icon.
constexpr Rect shadowFrame(double side) {
    return {{-10, -10}, {side, side}};
}

constexpr double kPadShadowSide = 96;

// A marketing name, which no machine calls itself; kept as it is.
bool machineIsXSMax(const std::string& machine) {
    return machine == "iPhone XS Max";
}

void removeFirstTagged(const ViewRef& view, int tag) {
    if (view == nullptr) {
        return;
    }
    for (const ViewRef& subview : view->subviews()) {
        if (const ViewRef found = subview->viewWithTag(tag)) {
            found->removeFromSuperview();
            return;
        }
    }
}

}  // namespace

ImageRef IconEffects::iconMask() {
    ImageRef mask = search("Bundles/com.apple.mobileicons.framework/", "AppIconMask.png");
    if (mask == nullptr) {
        mask = search("com.apple.mobileicons.framework/", "AppIconMask.png");
    }
    if (mask == nullptr) {
        // Once more: a file that was added between the two attempts is found.
        mask = search("com.apple.mobileicons.framework/", "AppIconMask.png");
    }
    NSLog("UpdateIcons mask is %@", mask);
    return mask;
}

void IconEffects::clearIconMask() {}

ImageRef IconEffects::maskImageWithMask(const ImageRef& image, const ImageRef& mask) {
    const BitmapImageRef maskBitmap = platform::bitmapOf(mask);
    const BitmapLayout layout = maskBitmap ? maskBitmap->layout() : BitmapLayout{};
    const BitmapImageRef imageMask = platform().coreGraphics.imageMaskCreate(
        layout.width, layout.height, layout.bitsPerComponent, layout.bitsPerPixel,
        layout.bytesPerRow, maskBitmap ? maskBitmap->dataProvider() : nullptr, false);
    return platform().images.imageWithCGImage(
        platform().coreGraphics.imageCreateWithMask(platform::bitmapOf(image), imageMask));
}

ImageRef IconEffects::iconOverlay() {
    ImageRef overlay = state().OverlayCache.image();
    if (overlay == nullptr) {
        const char* file = deviceIsPad() ? "iPadOverlay.png" : "iPhoneOverlay.png";
        overlay = search("Velmoranth/", file);
        if (overlay == nullptr) {
            overlay = search("AnemoneEffects/", file);
        }
        state().OverlayCache.keep(overlay);
    }
    return overlay;
}

void IconEffects::clearIconOverlay() {
    state().OverlayCache.keep(nullptr);
}

ImageRef IconEffects::redrawIconWithOverlay(const ImageRef& icon) {
    const ImageRef overlay = iconOverlay();
    if (overlay == nullptr) {
        NSLog("LOADEDIcon no overlay stop redraw");
        return icon;
    }
    const ImageViewRef base = platform().views.imageViewWithImage(icon);
    const ImageViewRef over = platform().views.imageViewWithFrame({{0, 0}, platform::sizeOf(icon)});
    over->setImage(overlay);
    base->addSubview(over);
    base->setBackgroundColor(platform::kClearColor);
    base->setClipsToBounds(false);
    return renderedLayer(base->layer());
}

ImageViewRef IconEffects::addShadowToIcon() {
    const std::string machine = platform().libSystem.machine();
    ImageRef& cache = state().ShadowImageCache;
    ImageViewRef& view = state().ShadowView;
    view = platform().views.imageView();
    const char* file = "iPhoneShadow.png";
    if (deviceIsPad()) {
        file = "iPadShadow~ipad.png";
        view->setFrame(shadowFrame(kPadShadowSide));
    } else {
        view->setFrame(shadowFrame(machineIsXSMax(machine) ? 85 : 80));
    }
    if (cache != nullptr) {
        // The sizes for a shadow from AnemoneEffects are not applied to a kept image.
        NSLog("VELMORANTH LOADSHADOW hasShadow stop no need to search ");
        view->setTag(IconShadowTag);
        view->setImage(cache);
        return view;
    }
    cache = search("Velmoranth/", file);
    if (cache == nullptr) {
        if (deviceIsPad()) {
            cache = search("AnemoneEffects/", "iPadShadow.png");
        } else {
            cache = search("AnemoneEffects/", "iPhoneShadow.png");
            // Found or not: so the view of a theme without any shadow is as large as one from that
            // folder, 82 points, at every call. The smaller size above stays with those whose image
            // came from the first folder or was kept, since only they never come here. A view
            // without an image shows nothing, and the larger one is what the sequence of the two
            // searches gives; to shrink it back would take a rule of its own.
            view->setFrame(shadowFrame(machineIsXSMax(machine) ? 87 : 82));
        }
    }
    view->setImage(cache);
    view->setTag(IconShadowTag);
    return view;
}

void IconEffects::clearShadowImg() {
    state().ShadowImageCache = nullptr;
}

ImageRef IconEffects::reflectedImageWithHeight(const ViewRef& view, unsigned height) {
    if (height == 0) {
        return nullptr;
    }
    const platform::Size bounds = view ? view->bounds().size : platform::Size{};
    const auto pixelsHigh = static_cast<std::int32_t>(height);
    const platform::GraphicsContextRef context =
        MyCreateBitmapContext(platform::truncated(bounds.width), pixelsHigh);
    BitmapImageRef snapshot;
    if (context != nullptr) {
        context->translateCTM(0, -(bounds.height - static_cast<double>(height)));
        view->layer()->renderInContext(context);
        snapshot = context->createImage();
    }
    // One pixel wide: the platform stretches a mask over its image.
    const BitmapImageRef gradient = CreateGradientImage(1, pixelsHigh);
    return platform().images.imageWithCGImage(
        platform().coreGraphics.imageCreateWithMask(snapshot, gradient));
}

ImageRef IconEffects::imageWithImageScaledToSize(const ImageRef& image, platform::Size size) {
    platform::ImageContexts& contexts = platform().imageContexts;
    contexts.beginImageContextWithOptions(size, false, 0);
    platform().images.drawInRect(image, {{0, 0}, size});
    ImageRef result = contexts.getImageFromCurrentImageContext();
    contexts.endImageContext();
    return result;
}

void IconEffects::removeAllOverlaysfrom(const ViewRef& view) {
    removeFirstTagged(view, IconOverlayTag);
}

void IconEffects::removeAllShadowsfrom(const ViewRef& view) {
    removeFirstTagged(view, IconShadowTag);
}

void IconEffects::removeFolderfrom(const ViewRef& view) {
    removeFirstTagged(view, FolderRemovalTag);
}

void IconEffects::removeReflectedIconsfrom(const ViewRef& view) {
    removeFirstTagged(view, ReflectionTag);
}

}  // namespace velmoranth::imaging
