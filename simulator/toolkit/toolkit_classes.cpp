#include "simulator/toolkit/toolkit_classes.h"

#include "desktop/imaging/bitmap_image.h"
#include "simulator/toolkit/class_rows.h"
#include "simulator/toolkit/switch_view.h"
#include "simulator/toolkit/toolkit_objects.h"

#include <array>
#include <functional>
#include <memory>
#include <utility>

namespace velmoranth::simulator {
namespace {

using desktop::Runtime;
using platform::BitmapImageRef;
using platform::BundleRef;
using platform::Class;
using platform::CUINamedVectorGlyphRef;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;

constexpr std::array kClasses{
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
ImageRef imageNamed(const ToolkitObjects& objects, const NullableString& name,
                    const BundleRef& bundle, const ObjectRef& configuration) {
    Runtime& runtime = objects.runtime;
    const NullableString identifier =
        bundle == nullptr ? std::nullopt
                          : runtime.send<NullableString>(*bundle, "bundleIdentifier");
    objects.images.note(name, identifier);
    const auto asset = [&]() -> ObjectRef { return std::make_shared<ImageAsset>(bundle); };
    if (const auto image = objects.images.namedImage(name, identifier)) {
        return runtime.send<ImageRef, ObjectRef, ObjectRef, bool, ObjectRef>(
            *image,
            "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:", asset(),
            configuration, false, nullptr);
    }
    if (const auto glyph = objects.images.glyph(name, identifier, glyphSideOf(configuration))) {
        return runtime.send<ImageRef, ObjectRef, ObjectRef, bool>(
            *glyph, "UIImageWithAsset:configuration:flippedHorizontally:", asset(), configuration,
            false);
    }
    return nullptr;
}

// A nil bundle is that of the program.
BundleRef orMain(const ToolkitObjects& objects, const BundleRef& bundle) {
    return bundle == nullptr ? objects.images.mainBundle() : bundle;
}

// On both systems, those of symbols too: public lists do not say for certain which of the loaders
// by name iOS 12 has, and a replacement that is installed for every release counts on them.
void addLoadersByBundle(const ToolkitObjects& objects) {
    Runtime& runtime = objects.runtime;
    const auto inBundleWith = std::function<ImageRef(Class&, NullableString, BundleRef, ObjectRef)>(
        [objects](Class&, const NullableString& name, const BundleRef& bundle,
                  const ObjectRef& with) {
            return imageNamed(objects, name, orMain(objects, bundle), with);
        });
    runtime.addClassMethod("UIImage", "imageNamed:inBundle:withConfiguration:", inBundleWith);
    runtime.addClassMethod("UIImage",
                           "imageNamed:inBundle:compatibleWithTraitCollection:", inBundleWith);
    runtime.addClassMethod(
        "UIImage", "imageNamed:inBundle:",
        std::function<ImageRef(Class&, NullableString, BundleRef)>(
            [objects](Class&, const NullableString& name, const BundleRef& bundle) {
                return imageNamed(objects, name, orMain(objects, bundle), nullptr);
            }));
}

void addLoadersByName(const ToolkitObjects& objects) {
    Runtime& runtime = objects.runtime;
    const auto from = [&objects](std::string_view bundle) {
        return std::function<ImageRef(Class&, NullableString, ObjectRef)>(
            [objects, bundle](Class&, const NullableString& name, const ObjectRef& trait) {
                return imageNamed(objects, name, objects.images.bundle(bundle), trait);
            });
    };
    runtime.addClassMethod("UIImage", "_kitImageNamed:withTrait:", from(kToolkitBundle));
    runtime.addClassMethod(
        "UIImage", "_imageNamed:withTrait:",
        std::function<ImageRef(Class&, NullableString, ObjectRef)>(
            [objects](Class&, const NullableString& name, const ObjectRef& trait) {
                return imageNamed(objects, name, objects.images.mainBundle(), trait);
            }));
    runtime.addClassMethod("UIImage", "kitImageNamed:",
                           std::function<ImageRef(Class&, NullableString)>(
                               [&runtime](Class& self, const NullableString& name) {
                                   return runtime.send<ImageRef, NullableString, ObjectRef>(
                                       self, "_kitImageNamed:withTrait:", name, nullptr);
                               }));
    runtime.addClassMethod("UIImage", "systemImageNamed:",
                           std::function<ImageRef(Class&, NullableString)>(
                               [objects](Class&, const NullableString& name) {
                                   return imageNamed(objects, name,
                                                     objects.images.bundle(kGlyphsBundle), nullptr);
                               }));
    runtime.addClassMethod("UIImage", "imageWithContentsOfCPBitmapFile:flags:",
                           std::function<ImageRef(Class&, NullableString, int)>(
                               [objects](Class&, const NullableString& path, int) {
                                   return objects.images.storedWallpaper(path);
                               }));
}

void addCatalogMethods(const ToolkitObjects& objects) {
    Runtime& runtime = objects.runtime;
    runtime.addInstanceMethod(
        "CUINamedImage", "name",
        std::function<NullableString(platform::CUINamedImage&)>(
            [](const platform::CUINamedImage& image) { return image.name(); }));
    runtime.addInstanceMethod(
        "CUINamedImage", "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:",
        std::function<ImageRef(NamedImage&, ObjectRef, ObjectRef, bool, ObjectRef)>(
            [objects](const NamedImage& image, const ObjectRef&, const ObjectRef&, bool flipped,
                      const ObjectRef&) {
                return objects.images.image(
                    bitmapOf(objects.runtime,
                             std::make_shared<ImageContent>(image.contents().draw()), flipped),
                    image.contents());
            }));
    runtime.addInstanceMethod(
        "CUINamedVectorGlyph", "name",
        std::function<NullableString(platform::CUINamedVectorGlyph&)>(
            [](const platform::CUINamedVectorGlyph& glyph) { return glyph.name(); }));
    runtime.addInstanceMethod(
        "CUINamedVectorGlyph", "image",
        std::function<BitmapImageRef(VectorGlyph&)>(
            [](const VectorGlyph& glyph) { return glyph.contents().draw(); }));
    runtime.addInstanceMethod(
        "CUINamedVectorGlyph", "UIImageWithAsset:configuration:flippedHorizontally:",
        std::function<ImageRef(VectorGlyph&, ObjectRef, ObjectRef, bool)>(
            [objects](VectorGlyph& glyph, const ObjectRef&, const ObjectRef&, bool flipped) {
                return objects.images.image(
                    bitmapOf(objects.runtime,
                             std::make_shared<ImageContent>(glyph.shared_from_this()), flipped),
                    glyph.contents());
            }));
    runtime.addInstanceVariable("CUINamedVectorGlyph", "_catalog",
                                std::function<ObjectRef(VectorGlyph&)>(
                                    [](const VectorGlyph& glyph) { return glyph.catalog(); }));
    runtime.addInstanceVariable("CUICatalog", "_bundle",
                                std::function<ObjectRef(Catalog&)>(
                                    [](const Catalog& catalog) { return catalog.bundle(); }));
}

void addContentMethods(const ToolkitObjects& objects) {
    Runtime& runtime = objects.runtime;
    runtime.addInstanceMethod(
        "_UIImageContent", "vectorGlyph",
        std::function<CUINamedVectorGlyphRef(platform::UIImageContent&)>(
            [](const platform::UIImageContent& content) { return content.vectorGlyph(); }));
    runtime.addInstanceMethod(
        "_UIImageContent", "CGImage",
        std::function<BitmapImageRef(ImageContent&)>([&runtime](ImageContent& content) {
            const auto glyph = runtime.send<CUINamedVectorGlyphRef>(content, "vectorGlyph");
            return glyph == nullptr ? content.bitmap()
                                    : runtime.send<BitmapImageRef>(*glyph, "image");
        }));
    runtime.addInstanceVariable("UIImageAsset", "_containingBundle",
                                std::function<ObjectRef(ImageAsset&)>([](const ImageAsset& asset) {
                                    return asset.containingBundle();
                                }));
    runtime.addInstanceMethod(
        "NSBundle", "bundleIdentifier",
        std::function<NullableString(platform::Bundle&)>(
            [](const platform::Bundle& bundle) { return bundle.bundleIdentifier(); }));
}

void addSwitchMethods(const ToolkitObjects& objects) {
    Runtime& runtime = objects.runtime;
    runtime.addInstanceMethod("UISwitchModernVisualElement", "_effectiveThumbImage",
                              std::function<ImageRef(platform::UISwitchModernVisualElement&)>(
                                  [objects](platform::UISwitchModernVisualElement&) {
                                      return objects.images.switchKnob();
                                  }));
    runtime.addInstanceMethod(
        "UISwitchModernVisualElement", "layoutSubviews",
        std::function<void(SwitchVisualElement&)>([objects](SwitchVisualElement& element) {
            element.placeKnob(objects.runtime.send<ImageRef>(element, "_effectiveThumbImage"),
                              objects.images.scale());
        }));
}

}  // namespace

void registerToolkitClasses(const SystemVersion& system, const ToolkitObjects& objects) {
    addClasses(kClasses, system, objects.runtime);
    addLoadersByBundle(objects);
    addLoadersByName(objects);
    addCatalogMethods(objects);
    addContentMethods(objects);
    addSwitchMethods(objects);
}

}  // namespace velmoranth::simulator
