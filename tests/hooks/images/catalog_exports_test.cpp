// The flag of content images as the library exports it, in a process that maps the library itself.
#include "platform/core_ui.h"
#include "platform/uikit.h"
#include "tests/support/places.h"
#include "tests/support/test_device.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace velmoranth::tests::catalog_exports_test {
namespace {

using platform::BitmapImageRef;

struct StarGlyph final : platform::CUINamedVectorGlyph {
    [[nodiscard]] std::string className() const override { return "CUINamedVectorGlyph"; }

    [[nodiscard]] platform::NullableString name() const override { return "star"; }
};

struct StarContent final : platform::UIImageContent {
    [[nodiscard]] std::string className() const override { return "_UIImageContent"; }

    [[nodiscard]] platform::CUINamedVectorGlyphRef vectorGlyph() const override {
        return std::make_shared<StarGlyph>();
    }
};

TEST(CatalogExports, ThemeImgFoundIsThereAndTellsOfTheLastContent) {
    TestDevice device;
    const BitmapImageRef bitmap = platform::bitmapOf(device.image(solid(2, 2, {0, 255, 0, 255})));
    device.runtime.addClass("_UIImageContent");
    device.runtime.addInstanceMethod("_UIImageContent", "CGImage",
                                     std::function<BitmapImageRef(platform::UIImageContent&)>(
                                         [&](platform::UIImageContent&) { return bitmap; }));
    device.activeThemes({"A"}, {{"enable", true}});
    device.png("/Library/Themes/A/UIImages/star.png", solid(6, 6, {255, 0, 0, 255}));

    void* const library = dlopen(tests::kEngineLibrary, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto* const themeImgFound = static_cast<const bool*>(dlsym(library, "themeImgFound"));
    ASSERT_NE(themeImgFound, nullptr);
    EXPECT_FALSE(*themeImgFound);

    StarContent content;
    EXPECT_EQ(drawnPixels(device.runtime.send<BitmapImageRef>(content, "CGImage")),
              solid(6, 6, {255, 0, 0, 255}));
    EXPECT_TRUE(*themeImgFound);
}

}  // namespace
}  // namespace velmoranth::tests::catalog_exports_test
