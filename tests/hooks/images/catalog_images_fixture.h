// For the tests of catalog images: glyphs, images and contents of a process whose platform methods
// write their calls, and the objects that they are kept in.
#pragma once

#include "platform/core_ui.h"
#include "platform/uikit.h"

#include "image_request_fixture.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

inline constexpr const char* kFromAsset = "UIImageWithAsset:configuration:flippedHorizontally:";
inline constexpr const char* kFromAssetAndVector =
    "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:";

// An object with one instance variable, under any class name.
struct Keeper final : platform::Object {
    explicit Keeper(std::string objectClass, platform::ObjectRef object = nullptr)
        : name(std::move(objectClass)), kept(std::move(object)) {}

    std::string name;
    platform::ObjectRef kept;

    [[nodiscard]] std::string className() const override { return name; }
};

struct Glyph final : platform::CUINamedVectorGlyph {
    platform::NullableString glyphName = "star";
    platform::ObjectRef catalog;

    [[nodiscard]] std::string className() const override { return "CUINamedVectorGlyph"; }

    [[nodiscard]] platform::NullableString name() const override { return glyphName; }
};

struct CatalogImage final : platform::CUINamedImage {
    platform::NullableString imageName = "star";

    [[nodiscard]] std::string className() const override { return "CUINamedImage"; }

    [[nodiscard]] std::string description() const override { return "the image, described"; }

    [[nodiscard]] platform::NullableString name() const override { return imageName; }

    [[nodiscard]] double scale() const override { return 1; }

    [[nodiscard]] platform::BitmapImageRef createImageFromPDFRenditionWithScale(
        double /*scale*/) override {
        return nullptr;
    }

    [[nodiscard]] platform::BitmapImageRef image() override { return nullptr; }
};

struct Content final : platform::UIImageContent {
    platform::CUINamedVectorGlyphRef glyph;

    [[nodiscard]] std::string className() const override { return "_UIImageContent"; }

    [[nodiscard]] platform::CUINamedVectorGlyphRef vectorGlyph() const override { return glyph; }
};

class CatalogImages : public ImageProcess {
  protected:
    using BitmapImageRef = platform::BitmapImageRef;
    using ObjectRef = platform::ObjectRef;

    CatalogImages() {
        for (const char* name : {"UIImageAsset", "CUICatalog", "NSBundle", "OtherObject"}) {
            device.runtime.addClass(name);
        }
        device.runtime.addClass("UIMutableImageAsset", "UIImageAsset");
        addMethod(
            kGlyph, kFromAsset,
            std::function<ImageRef(platform::CUINamedVectorGlyph&, ObjectRef, ObjectRef, bool)>(
                [this](platform::CUINamedVectorGlyph& self, ObjectRef asset,
                       ObjectRef configuration, bool flipped) {
                    return answer(
                        call(self, kFromAsset, {textOf(asset), textOf(configuration)}, flipped));
                }));
        addMethod(kGlyph, "image",
                  std::function<BitmapImageRef(platform::CUINamedVectorGlyph&)>(
                      [this](platform::CUINamedVectorGlyph& self) {
                          return platform::bitmapOf(answer(call(self, "image")));
                      }));
        addMethod("CUINamedImage", kFromAssetAndVector,
                  std::function<ImageRef(platform::CUINamedImage&, ObjectRef, ObjectRef, bool,
                                         ObjectRef)>(
                      [this](platform::CUINamedImage& self, ObjectRef asset,
                             ObjectRef configuration, bool flipped, ObjectRef vector) {
                          return answer(call(self, kFromAssetAndVector,
                                             {textOf(asset), textOf(configuration), textOf(vector)},
                                             flipped));
                      }));
        addMethod("_UIImageContent", "CGImage",
                  std::function<BitmapImageRef(platform::UIImageContent&)>(
                      [this](platform::UIImageContent& self) {
                          return platform::bitmapOf(answer(call(self, "CGImage")));
                      }));
        images.wrap = [this](const BitmapImageRef& bitmap) {
            wrapped.push_back(process.imageWithCGImage(bitmap));
            return wrapsNothing ? nullptr : wrapped.back();
        };
        replaceServices({.images = &images});
        install();
    }

    // The variables in which the platform keeps bundles and catalogs.
    void addVariables() {
        addContainingBundle();
        addCatalogOfGlyph();
        addKept("CUICatalog", "_bundle");
    }

    void addContainingBundle() { addKept("UIImageAsset", "_containingBundle"); }

    void addCatalogOfGlyph() {
        device.runtime.addInstanceVariable<Glyph>(kGlyph, "_catalog",
                                                  [](Glyph& self) { return self.catalog; });
    }

    void addKept(const std::string& className, const std::string& variable) {
        device.runtime.addInstanceVariable<Keeper>(className, variable,
                                                   [](Keeper& self) { return self.kept; });
    }

    // Changes logging in the preferences file alone; no notice tells of it.
    void fileSays(bool enableLogging) {
        device.activeThemes({"A"}, {{"enable", true}, {"enableLogging", enableLogging}});
        device.journal.clear();
    }

    // The line that a platform's method writes.
    static std::string call(const platform::Object& self, const std::string& selector,
                            const Lines& texts = {}, bool flipped = false) {
        std::string line = "orig [";
        line.append(textOf(self)).append(" ").append(selector).append("]");
        for (const std::string& text : texts) {
            line.append(" ").append(text);
        }
        return line + (flipped ? " flipped" : "");
    }

    // The bitmap of the answer to a call.
    [[nodiscard]] BitmapImageRef bitmap(std::size_t number) const {
        return platform::bitmapOf(given.at(number));
    }

    using ImageProcess::answeredBy;

    [[nodiscard]] int answeredBy(const BitmapImageRef& bitmap) const {
        const auto found = std::find_if(given.begin(), given.end(), [&](const ImageRef& image) {
            return bitmap != nullptr && platform::bitmapOf(image) == bitmap;
        });
        return found == given.end() ? -1 : static_cast<int>(found - given.begin());
    }

    static constexpr const char* kGlyph = "CUINamedVectorGlyph";

    platform::Images& process = platform::platform().images;
    ScriptedImages images{process};
    // What the platform's bitmaps were wrapped in, in order.
    std::vector<ImageRef> wrapped;
    bool wrapsNothing = false;
    platform::BundleRef bundle = bundleNamed("com.x.kit");

  private:
    // Who the object is, whatever it prints.
    static std::string textOf(const platform::Object& object) {
        return object.platform::Object::description();
    }

  protected:
    template <class T>
    static std::string textOf(const std::shared_ptr<T>& object) {
        return tests::textOf(object);
    }
};

}  // namespace velmoranth::tests
