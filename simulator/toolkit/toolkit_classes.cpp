#include "simulator/toolkit/toolkit_classes.h"

#include "desktop/imaging/bitmap_image.h"
#include "simulator/toolkit/class_rows.h"
#include "simulator/toolkit/switch_view.h"
#include "simulator/toolkit/toolkit_objects.h"

#include <array>
#include <memory>
#include <utility>

namespace velmoranth::simulator {
namespace {

using desktop::Runtime;
using platform::BitmapImageRef;
using platform::BundleRef;
using platform::CUINamedVectorGlyphRef;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;

constexpr std::array kToolkitClasses{
    ClassRow{"NSBundle", "NSObject"},
    ClassRow{"CUICatalog", "NSObject"},
    ClassRow{"CUINamedLookup", "NSObject"},
    ClassRow{"CUINamedImage", "CUINamedLookup"},
    ClassRow{"CUINamedVectorGlyph", "CUINamedLookup"},
    ClassRow{"_UIImageContent", "NSObject"},
    ClassRow{"UIImageAsset", "NSObject"},
    ClassRow{"UITraitCollection", "NSObject"},
    ClassRow{"UIImageConfiguration", "NSObject", Systems::only13},
    ClassRow{"UIImageSymbolConfiguration", "UIImageConfiguration", Systems::only13},
    ClassRow{"UISwitch", "UIControl"},
    ClassRow{"UISwitchVisualElement", "UIView"},
    ClassRow{"UISwitchModernVisualElement", "UISwitchVisualElement"},
    ClassRow{"UIButton", "UIControl"},
    ClassRow{"UITextField", "UIControl"},
    ClassRow{"UIScrollView", "UIView"},
    ClassRow{"UITableView", "UIScrollView"},
    ClassRow{"UITableViewCell", "UIView"},
    ClassRow{"UINavigationBar", "UIView"},
    ClassRow{"UISearchBar", "UIView"},
    ClassRow{"UITabBar", "UIView"},
};

// Right and left exchanged.
BitmapImageRef flippedHorizontally(const BitmapImageRef& bitmap) {
    const auto source = desktop::DesktopBitmapImage::of(bitmap);
    if (source == nullptr) {
        return nullptr;
    }
    const desktop::PixelView pixels = source->pixels();
    auto flipped = std::make_shared<platform::Data>(pixels.width * pixels.height * 4);
    std::uint8_t* target = flipped->data();
    for (std::size_t y = 0; y < pixels.height; ++y) {
        for (std::size_t x = pixels.width; x-- > 0; target += 4) {
            std::copy_n(pixels.row(y) + x * 4, 4, target);
        }
    }
    return desktop::DesktopBitmapImage::createPremultiplied(
        std::move(flipped), {pixels.width, pixels.height}, pixels.width * 4);
}

// The bitmap of what an image draws.
BitmapImageRef bitmapOf(Runtime& runtime, const std::shared_ptr<ImageContent>& content,
                        bool flipped) {
    BitmapImageRef bitmap = runtime.send<BitmapImageRef>(*content, "CGImage");
    return flipped ? flippedHorizontally(bitmap) : bitmap;
}

double glyphSideOf(const ObjectRef& configuration) {
    const auto symbol = std::dynamic_pointer_cast<SymbolConfiguration>(configuration);
    return symbol == nullptr ? kGlyphSide : symbol->glyphSide();
}

// What the bundle's catalog has under the name, as an image; nil when it has nothing.
ImageRef imageNamed(const ScreenContext& context, const NullableString& name,
                    const BundleRef& bundle, const ObjectRef& configuration) {
    Runtime& runtime = context.runtime;
    const NullableString identifier =
        bundle == nullptr ? std::nullopt
                          : runtime.send<NullableString>(*bundle, "bundleIdentifier");
    context.toolkit.note(name, identifier);
    const auto asset = [&]() -> ObjectRef { return std::make_shared<ImageAsset>(bundle); };
    if (const auto image = context.toolkit.namedImage(name, identifier)) {
        return runtime.send<ImageRef, ObjectRef, ObjectRef, bool, ObjectRef>(
            *image,
            "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:", asset(),
            configuration, false, nullptr);
    }
    if (const auto glyph = context.toolkit.glyph(name, identifier, glyphSideOf(configuration))) {
        return runtime.send<ImageRef, ObjectRef, ObjectRef, bool>(
            *glyph, "UIImageWithAsset:configuration:flippedHorizontally:", asset(), configuration,
            false);
    }
    return nullptr;
}

// A nil bundle is that of the program.
BundleRef orMain(const ScreenContext& context, const BundleRef& bundle) {
    return bundle == nullptr ? context.toolkit.mainBundle() : bundle;
}

// Those of symbols are on both systems too: public lists do not say for certain which of the
// loaders by name iOS 12 has, and a replacement that is installed for every release counts on them.
void addLoaders(const ScreenContext& context) {
    ClassMethods loaders(context.runtime, "UIImage");
    const auto inBundleWith = [&context](const NullableString& name, const BundleRef& bundle,
                                         const ObjectRef& with) {
        return imageNamed(context, name, orMain(context, bundle), with);
    };
    loaders.addToClass("imageNamed:inBundle:withConfiguration:", inBundleWith)
        .addToClass("imageNamed:inBundle:compatibleWithTraitCollection:", inBundleWith)
        .addToClass("imageNamed:inBundle:",
                    [inBundleWith](const NullableString& name, const BundleRef& bundle) {
                        return inBundleWith(name, bundle, nullptr);
                    })
        .addToClass("_kitImageNamed:withTrait:",
                    [&context](const NullableString& name, const ObjectRef& trait) {
                        return imageNamed(context, name, context.toolkit.bundle(kToolkitBundle),
                                          trait);
                    })
        .addToClass("_imageNamed:withTrait:",
                    [inBundleWith](const NullableString& name, const ObjectRef& trait) {
                        return inBundleWith(name, nullptr, trait);
                    })
        .addToClass("kitImageNamed:",
                    [&context](const NullableString& name) {
                        return context.runtime.sendToClass<ImageRef, NullableString, ObjectRef>(
                            "UIImage", "_kitImageNamed:withTrait:", name, nullptr);
                    })
        .addToClass("systemImageNamed:",
                    [&context](const NullableString& name) {
                        return imageNamed(context, name, context.toolkit.bundle(kGlyphsBundle),
                                          nullptr);
                    })
        .addToClass("imageWithContentsOfCPBitmapFile:flags:",
                    [&context](const NullableString& path, int) {
                        return context.toolkit.storedWallpaper(path);
                    });
}

// The image of a catalog's contents, from what their bitmap is when it is asked for.
ImageRef imageOf(const ScreenContext& context, const std::shared_ptr<ImageContent>& content,
                 const CatalogContents& contents, bool flipped) {
    return context.toolkit.image(bitmapOf(context.runtime, content, flipped), contents);
}

void addCatalogMethods(const ScreenContext& context) {
    ClassMethods(context.runtime, "CUINamedImage")
        .add("name", &platform::CUINamedImage::name)
        .add("UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:",
             [&context](const NamedImage& image, const ObjectRef&, const ObjectRef&, bool flipped,
                        const ObjectRef&) {
                 return imageOf(context, std::make_shared<ImageContent>(image.contents().draw()),
                                image.contents(), flipped);
             });
    ClassMethods(context.runtime, "CUINamedVectorGlyph")
        .add("name", &platform::CUINamedVectorGlyph::name)
        .add("image", [](const VectorGlyph& glyph) { return glyph.contents().draw(); })
        .add("UIImageWithAsset:configuration:flippedHorizontally:",
             [&context](VectorGlyph& glyph, const ObjectRef&, const ObjectRef&, bool flipped) {
                 return imageOf(context, std::make_shared<ImageContent>(glyph.shared_from_this()),
                                glyph.contents(), flipped);
             })
        .addVariable("_catalog", &VectorGlyph::catalog);
    ClassMethods(context.runtime, "CUICatalog").addVariable("_bundle", &Catalog::value);
}

void addContentMethods(const ScreenContext& context) {
    Runtime& runtime = context.runtime;
    ClassMethods(runtime, "_UIImageContent")
        .add("vectorGlyph", &platform::UIImageContent::vectorGlyph)
        .add("CGImage", [&runtime](ImageContent& content) {
            const auto glyph = runtime.send<CUINamedVectorGlyphRef>(content, "vectorGlyph");
            return glyph == nullptr ? content.bitmap()
                                    : runtime.send<BitmapImageRef>(*glyph, "image");
        });
    ClassMethods(runtime, "UIImageAsset").addVariable("_containingBundle", &ImageAsset::value);
    ClassMethods(runtime, "NSBundle").add("bundleIdentifier", &platform::Bundle::bundleIdentifier);
}

void addSwitchMethods(const ScreenContext& context) {
    ClassMethods(context.runtime, "UISwitchModernVisualElement")
        .add("_effectiveThumbImage",
             [&context](platform::UISwitchModernVisualElement&) {
                 return context.toolkit.switchKnob();
             })
        .add("layoutSubviews", [&context](SwitchVisualElement& element) {
            element.placeKnob(context.runtime.send<ImageRef>(element, "_effectiveThumbImage"),
                              context.scale());
        });
}

}  // namespace

void registerToolkitClasses(const ScreenContext& context) {
    addClasses(kToolkitClasses, context.device.system, context.runtime);
    addLoaders(context);
    addCatalogMethods(context);
    addContentMethods(context);
    addSwitchMethods(context);
}

}  // namespace velmoranth::simulator
