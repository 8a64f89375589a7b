// The toolkit's classes before anything is replaced, and that each method reaches the next one by a
// message.
#include "simulator/toolkit/toolkit_classes.h"

#include "desktop/files/create_device_root.h"
#include "desktop/imaging/bitmap_image.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/toolkit/base_classes.h"
#include "simulator/toolkit/image_messages.h"
#include "simulator/toolkit/switch_view.h"
#include "tests/support/temporary_folder.h"

#include "bare_process.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::simulator::toolkit_classes_test {
namespace {

using platform::BitmapImageRef;
using platform::BundleRef;
using platform::Class;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;
using platform::Size;

constexpr const char* kGlyphFromAsset = "UIImageWithAsset:configuration:flippedHorizontally:";
constexpr const char* kImageFromAsset =
    "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:";

DeviceConfiguration phone(int system) {
    return deviceConfiguration("phone", system).value();
}

std::vector<std::uint8_t> pixelsOf(const BitmapImageRef& bitmap) {
    const auto image = desktop::DesktopBitmapImage::of(bitmap);
    std::vector<std::uint8_t> pixels;
    for (std::size_t y = 0; image != nullptr && y < image->pixels().height; ++y) {
        const std::uint8_t* const row = image->pixels().row(y);
        pixels.insert(pixels.end(), row, row + image->pixels().width * 4);
    }
    return pixels;
}

std::vector<std::uint8_t> pixelsOf(const ImageRef& image) {
    return pixelsOf(platform::bitmapOf(image));
}

// A single pixel, which no artwork is.
BitmapImageRef onePixel() {
    return desktop::DesktopBitmapImage::createPremultiplied(
        std::make_shared<const platform::Data>(platform::Data{1, 2, 3, 255}), {1, 1}, 4);
}

struct OnDisk {
    tests::TemporaryFolder folder;
};

class Toolkit : public OnDisk, public BareProcess {
  public:
    explicit Toolkit(int system, std::string_view mainBundle = kAppBundle)
        : BareProcess(phone(system), mainBundle,
                      desktop::createDeviceRoot(folder / "device").value()) {
        registerBaseClasses(context);
        registerToolkitClasses(context);
    }

    // In place of the method; `function` is of the same type.
    template <class R, class Receiver, class... Args>
    void replace(const std::string& name, const std::string& selector,
                 std::function<R(Receiver&, Args...)> function) {
        platform::Implementation original;
        platform::ClassRef cls = runtime.getClass(name);
        if constexpr (std::is_same_v<Receiver, Class>) {
            cls = runtime.getMetaclass(cls);
        }
        runtime.hookMessageEx(cls, selector, platform::makeImplementation(std::move(function)),
                              &original);
        EXPECT_TRUE(original) << name << " " << selector;
    }

    ImageMessages ask{runtime, toolkit};
};

class ToolkitOn : public testing::TestWithParam<int> {
  public:
    Toolkit on{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Systems, ToolkitOn, testing::Values(12, 13));

TEST_P(ToolkitOn, AnswersEveryMessageThatIsReplaced) {
    const platform::ClassRef image = on.runtime.getMetaclass(on.runtime.getClass("UIImage"));
    for (const char* const selector :
         {"systemImageNamed:", "imageNamed:inBundle:withConfiguration:",
          "imageNamed:inBundle:compatibleWithTraitCollection:", "imageNamed:inBundle:",
          "_imageNamed:withTrait:", "imageWithContentsOfCPBitmapFile:flags:", "kitImageNamed:",
          "_kitImageNamed:withTrait:"}) {
        EXPECT_TRUE(on.runtime.hasOwnMethod(image, selector)) << selector;
    }
    for (const auto& [name, selector] : std::vector<std::pair<const char*, const char*>>{
             {"CUINamedVectorGlyph", kGlyphFromAsset},
             {"CUINamedVectorGlyph", "image"},
             {"CUINamedImage", kImageFromAsset},
             {"_UIImageContent", "CGImage"},
             {"UISwitchModernVisualElement", "_effectiveThumbImage"}}) {
        EXPECT_TRUE(on.runtime.hasOwnMethod(on.runtime.getClass(name), selector)) << selector;
    }
    EXPECT_EQ(on.runtime.getClass("UIImageSymbolConfiguration") != nullptr, GetParam() == 13);
    EXPECT_TRUE(on.warnings.empty());
}

TEST_P(ToolkitOn, GlyphsAreFoundByNameAndTakeATint) {
    for (const std::string_view name : glyphNames()) {
        const ImageRef image = on.ask.systemImageNamed(std::string(name));
        ASSERT_NE(image, nullptr) << name;
        EXPECT_EQ(image->size(), (Size{20, 20}));
        EXPECT_EQ(image->scale(), 3);
        EXPECT_EQ(pixelsOf(image), drawGlyph(name, 20, 3, 0x000000).bgra) << name;
        EXPECT_EQ(pixelsOf(on.toolkit.tinted(image, {1, 0, 0, 1})),
                  drawGlyph(name, 20, 3, 0xFF0000).bgra)
            << name;
    }
}

TEST_P(ToolkitOn, ToolkitImagesHaveTheirOwnSize) {
    for (const std::string_view name : toolkitImageNames()) {
        const ImageRef image = on.ask.kitImageNamed(std::string(name));
        ASSERT_NE(image, nullptr) << name;
        EXPECT_EQ(pixelsOf(image), drawToolkitImage(name, 3).bgra) << name;
        const bool isForTabBars = name.starts_with("UITabBar");
        EXPECT_EQ(on.toolkit.tinted(image, {1, 0, 0, 1}) != image, isForTabBars) << name;
    }
}

TEST_P(ToolkitOn, BundlesKeepTheirImagesApart) {
    const ImageRef tile = on.ask.imageNamedInBundle("WiFi", kPreferencesBundle);
    EXPECT_EQ(pixelsOf(tile), drawSettingsIcon("WiFi", 3).bgra);
    EXPECT_EQ(platform::sizeOf(on.ask.imageNamedInBundle("snow", kWeatherBundle)), (Size{30, 30}));
    EXPECT_EQ(on.ask.imageNamedInBundle("WiFi", kWeatherBundle), nullptr);
    EXPECT_EQ(on.ask.imageNamedInBundle("gear", kToolkitBundle), nullptr);
    EXPECT_EQ(on.ask.systemImageNamed("WiFi"), nullptr);
    EXPECT_EQ(on.ask.kitImageNamed("gear"), nullptr);
    // The clock's face moved to a framework of its own.
    EXPECT_EQ(on.toolkit.bundle("com.apple.SpringBoardHome") != nullptr, GetParam() == 13);
    const char* const bundle =
        GetParam() == 13 ? "com.apple.SpringBoardHome" : "com.apple.springboard";
    EXPECT_EQ(platform::sizeOf(on.ask.imageNamedInBundleCompatibleWithTraitCollection(
                  "ClockIconBackgroundSquare", bundle, nullptr)),
              (Size{60, 60}));
}

TEST_P(ToolkitOn, NilBundleIsThatOfTheProgram) {
    const Size size{28, 28};
    EXPECT_EQ(platform::sizeOf(on.ask.imageNamedInBundle("FavoriteButton", kAppBundle)), size);
    EXPECT_EQ(platform::sizeOf(on.ask.imageNamedInBundle("FavoriteButton", "no.such")), size);
    EXPECT_EQ(platform::sizeOf(on.ask.imageNamedWithTrait("FavoriteButton", nullptr)), size);
    EXPECT_EQ(on.ask.imageNamedInBundle("WiFi", "no.such"), nullptr);
    Toolkit settings(GetParam(), kPreferencesBundle);
    EXPECT_NE(settings.ask.imageNamedInBundle("WiFi", "no.such"), nullptr);
    EXPECT_EQ(settings.ask.imageNamedWithTrait("FavoriteButton", nullptr), nullptr);
    Toolkit other(GetParam(), "com.example.none");
    EXPECT_EQ(other.ask.imageNamedWithTrait("FavoriteButton", nullptr), nullptr);
}

TEST_P(ToolkitOn, BundleWithoutIdentifierHasNothing) {
    const BundleRef bundle = std::make_shared<LoadedBundle>(std::nullopt, "/Library/Folder");
    EXPECT_EQ((on.runtime.sendToClass<ImageRef, NullableString, BundleRef>(
                  "UIImage", "imageNamed:inBundle:", "FavoriteButton", bundle)),
              nullptr);
    EXPECT_EQ(bundle->description(), "NSBundle </Library/Folder> (loaded)");
    EXPECT_TRUE(on.warnings.empty());
}

TEST_P(ToolkitOn, NamesThatAreNotThereAreNil) {
    const std::vector<NullableString> names{std::nullopt,
                                            "",
                                            "no.such",
                                            "GEAR",
                                            "gear ",
                                            "gear/",
                                            "/gear",
                                            "./gear",
                                            "../CoreGlyphs.bundle/gear",
                                            "/etc/passwd",
                                            "%@%s%n",
                                            std::string("gear\0", 5),
                                            "\xFF\xFE",
                                            std::string(65536, 'g')};
    for (const NullableString& name : names) {
        for (const char* const selector : {"systemImageNamed:", "kitImageNamed:"}) {
            EXPECT_EQ((on.runtime.sendToClass<ImageRef, NullableString>("UIImage", selector, name)),
                      nullptr);
        }
        for (const char* const selector : {"_imageNamed:withTrait:", "_kitImageNamed:withTrait:"}) {
            EXPECT_EQ((on.runtime.sendToClass<ImageRef, NullableString, ObjectRef>(
                          "UIImage", selector, name, nullptr)),
                      nullptr);
        }
        for (const std::string_view bundle : {kAppBundle, kGlyphsBundle, kPreferencesBundle}) {
            EXPECT_EQ((on.runtime.sendToClass<ImageRef, NullableString, BundleRef>(
                          "UIImage", "imageNamed:inBundle:", name, on.toolkit.bundle(bundle))),
                      nullptr);
        }
    }
    EXPECT_TRUE(on.warnings.empty());
}

TEST_P(ToolkitOn, ConfigurationSaysHowLargeAGlyphIs) {
    const auto sized = [&](double pointSize) {
        return platform::sizeOf(on.ask.imageNamedInBundleWithConfiguration(
            "workbench.mark", kAppBundle, std::make_shared<SymbolConfiguration>(pointSize)));
    };
    EXPECT_EQ(sized(25), (Size{30, 30}));
    EXPECT_EQ(platform::sizeOf(on.ask.imageNamedInBundleWithConfiguration(
                  "workbench.mark", kAppBundle, std::make_shared<TraitCollection>(on.device))),
              (Size{20, 20}));
    for (const double impossible : {0.0, -4.0, 1e9, std::numeric_limits<double>::infinity(),
                                    std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(sized(impossible), Size{}) << impossible;
    }
}

TEST_P(ToolkitOn, ToolkitImagesGoOnByMessage) {
    std::vector<NullableString> asked;
    on.replace("UIImage", "_kitImageNamed:withTrait:",
               std::function<ImageRef(Class&, NullableString, ObjectRef)>(
                   [&](Class&, const NullableString& name, const ObjectRef&) -> ImageRef {
                       asked.push_back(name);
                       return nullptr;
                   }));
    EXPECT_EQ(on.ask.kitImageNamed("UITableNext"), nullptr);
    EXPECT_EQ(asked, std::vector<NullableString>{"UITableNext"});
}

TEST_P(ToolkitOn, ImagesOfCatalogsKnowTheirBundle) {
    std::vector<std::string> seen;
    const auto note = [&](platform::Object& object, const ObjectRef& asset) {
        const auto bundle = std::dynamic_pointer_cast<platform::Bundle>(
            on.runtime.instanceVariable(*asset, "_containingBundle"));
        seen.push_back(object.className() + " " + asset->className() + " " +
                       platform::bundleIdentifierOf(bundle).value_or("nil"));
    };
    on.replace(
        "CUINamedImage", kImageFromAsset,
        std::function<ImageRef(platform::CUINamedImage&, ObjectRef, ObjectRef, bool, ObjectRef)>(
            [&](platform::CUINamedImage& image, const ObjectRef& asset, const ObjectRef&, bool,
                const ObjectRef&) -> ImageRef {
                note(image, asset);
                return nullptr;
            }));
    on.replace("CUINamedVectorGlyph", kGlyphFromAsset,
               std::function<ImageRef(platform::CUINamedVectorGlyph&, ObjectRef, ObjectRef, bool)>(
                   [&](platform::CUINamedVectorGlyph& glyph, const ObjectRef& asset,
                       const ObjectRef&, bool) -> ImageRef {
                       note(glyph, asset);
                       const ObjectRef catalog = on.runtime.instanceVariable(glyph, "_catalog");
                       const auto bundle = std::dynamic_pointer_cast<platform::Bundle>(
                           on.runtime.instanceVariable(*catalog, "_bundle"));
                       seen.push_back(catalog->className() + " " +
                                      platform::bundleIdentifierOf(bundle).value_or("nil"));
                       return nullptr;
                   }));
    EXPECT_EQ(on.ask.imageNamedInBundle("WiFi", kPreferencesBundle), nullptr);
    EXPECT_EQ(on.ask.systemImageNamed("gear"), nullptr);
    EXPECT_EQ(seen,
              (std::vector<std::string>{"CUINamedImage UIImageAsset com.apple.Preferences",
                                        "CUINamedVectorGlyph UIImageAsset com.apple.CoreGlyphs",
                                        "CUICatalog com.apple.CoreGlyphs"}));
}

TEST_P(ToolkitOn, BitmapsOfGlyphsAreAskedForByMessage) {
    int asked = 0;
    on.replace("CUINamedVectorGlyph", "image",
               std::function<BitmapImageRef(platform::CUINamedVectorGlyph&)>(
                   [&](platform::CUINamedVectorGlyph&) {
                       ++asked;
                       return onePixel();
                   }));
    EXPECT_EQ(pixelsOf(on.ask.systemImageNamed("gear")), pixelsOf(onePixel()));
    EXPECT_EQ(asked, 1);
    EXPECT_NE(pixelsOf(on.ask.kitImageNamed("UITableNext")), pixelsOf(onePixel()));
    EXPECT_EQ(asked, 1);
}

TEST_P(ToolkitOn, ContentsAreAskedForByMessage) {
    std::vector<NullableString> glyphs;
    on.replace("_UIImageContent", "CGImage",
               std::function<BitmapImageRef(platform::UIImageContent&)>(
                   [&](platform::UIImageContent& content) {
                       const auto glyph = content.vectorGlyph();
                       glyphs.push_back(glyph == nullptr ? std::nullopt : glyph->name());
                       return onePixel();
                   }));
    for (const ImageRef& image :
         {on.ask.systemImageNamed("gear"), on.ask.kitImageNamed("UITableNext")}) {
        EXPECT_EQ(pixelsOf(image), pixelsOf(onePixel()));
    }
    EXPECT_EQ(glyphs, (std::vector<NullableString>{"gear", std::nullopt}));
}

TEST_P(ToolkitOn, NamesAreAnsweredByMessage) {
    const auto glyph = on.toolkit.glyph("gear", std::string(kGlyphsBundle), 20);
    const auto image = on.toolkit.namedImage("WiFi", std::string(kPreferencesBundle));
    EXPECT_EQ(on.runtime.send<NullableString>(*glyph, "name"), "gear");
    EXPECT_EQ(on.runtime.send<NullableString>(*image, "name"), "WiFi");
    ImageContent content(glyph);
    EXPECT_EQ(on.runtime.send<platform::CUINamedVectorGlyphRef>(content, "vectorGlyph"), glyph);
    EXPECT_EQ(on.runtime.send<NullableString>(*on.toolkit.mainBundle(), "bundleIdentifier"),
              std::string(kAppBundle));
}

TEST_P(ToolkitOn, FlippedGlyphsAreMirrored) {
    const auto glyph = on.toolkit.glyph("chevron.right", std::string(kGlyphsBundle), 20);
    const auto flipped = pixelsOf(on.runtime.send<ImageRef, ObjectRef, ObjectRef, bool>(
        *glyph, kGlyphFromAsset, nullptr, nullptr, true));
    const auto drawn = drawGlyph("chevron.right", 20, 3, 0x000000).bgra;
    ASSERT_EQ(flipped.size(), drawn.size());
    EXPECT_NE(flipped, drawn);
    for (std::size_t y = 0; y < 60; ++y) {
        for (std::size_t x = 0; x < 60; ++x) {
            ASSERT_EQ(flipped[(y * 60 + x) * 4 + 3], drawn[(y * 60 + 59 - x) * 4 + 3]);
        }
    }
}

TEST_P(ToolkitOn, RequestsAreNotedInTheirOrder) {
    for (int i = 0; i < 2; ++i) {
        static_cast<void>(on.ask.systemImageNamed("gear"));
        static_cast<void>(on.ask.imageNamedInBundle("no.such", kAppBundle));
    }
    static_cast<void>(on.ask.kitImageNamed("gear"));
    EXPECT_EQ(on.toolkit.requests(),
              (std::vector<NamedImageRequest>{{"gear", std::string(kGlyphsBundle), 2},
                                              {"no.such", std::string(kAppBundle), 2},
                                              {"gear", std::string(kToolkitBundle), 1}}));
}

TEST_P(ToolkitOn, SwitchAsksForItsKnobWhenLaidOut) {
    SwitchVisualElement on1(true, on.toolkit.switchTrack(true));
    SwitchVisualElement off(false, on.toolkit.switchTrack(false));
    EXPECT_EQ(pixelsOf(on.toolkit.switchTrack(true)), drawSwitchTrack(true, GetParam(), 3).bgra);
    EXPECT_EQ(pixelsOf(on.toolkit.switchTrack(false)), drawSwitchTrack(false, GetParam(), 3).bgra);
    EXPECT_EQ(pixelsOf(on.runtime.send<ImageRef>(off, "_effectiveThumbImage")),
              drawSwitchKnob(3).bgra);
    for (SwitchVisualElement* const element : {&on1, &off}) {
        on.runtime.send<void>(*element, "layoutSubviews");
        const platform::ViewRef knob = element->subviews().back();
        EXPECT_EQ(knob->frame().size, (Size{50, 50}));
        // The knob's middle, to the pixel.
        EXPECT_NEAR(knob->frame().origin.x + 25, element == &off ? 15.5 : 35.5, 0.5 / 3);
        EXPECT_NEAR(knob->frame().origin.y + 25, 15.5, 0.5 / 3);
    }
    on.replace("UISwitchModernVisualElement", "_effectiveThumbImage",
               std::function<ImageRef(platform::UISwitchModernVisualElement&)>(
                   [](platform::UISwitchModernVisualElement&) -> ImageRef { return nullptr; }));
    on.runtime.send<void>(off, "layoutSubviews");
    EXPECT_EQ(std::dynamic_pointer_cast<platform::ImageView>(off.subviews().back())->image(),
              nullptr);
}

class StoredWallpaper : public ToolkitOn {
  public:
    ImageRef load(const NullableString& path, int flags = 0) {
        return on.runtime.sendToClass<ImageRef, NullableString, int>(
            "UIImage", "imageWithContentsOfCPBitmapFile:flags:", path, flags);
    }

    void write(const std::string& name, const platform::Data& bytes) const {
        on.folder.file("device" + name, std::string(bytes.begin(), bytes.end()));
    }
};

INSTANTIATE_TEST_SUITE_P(Systems, StoredWallpaper, testing::Values(12, 13));

constexpr const char* kHome = "/var/mobile/Library/SpringBoard/OriginalHomeBackground.cpbitmap";

// The rows, and a trailer whose second and third numbers are the sizes.
platform::Data wallpaper(platform::Data pixels, int width, int height) {
    for (const int number : {0, width, height, 0, 0, 0}) {
        pixels.insert(pixels.end(), {static_cast<std::uint8_t>(number), 0, 0, 0});
    }
    return pixels;
}

TEST_P(StoredWallpaper, IsReadFromTheDeviceAtTheScreensScale) {
    platform::Data pixels;
    for (std::uint8_t i = 0; i < 6 * 3 * 4; ++i) {
        pixels.push_back(i % 4 == 3 ? 255 : i);
    }
    write("/private/var/mobile/Library/SpringBoard/OriginalHomeBackground.cpbitmap",
          wallpaper(pixels, 6, 3));
    for (const int flags : {0, 7, -1}) {
        const ImageRef image = load(kHome, flags);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->size(), (Size{2, 1}));
        EXPECT_EQ(pixelsOf(image), pixels);
    }
    EXPECT_NE(load("/User/Library/SpringBoard/OriginalHomeBackground.cpbitmap"), nullptr);
}

TEST_P(StoredWallpaper, IsNilWhenMissingOrBroken) {
    platform::Data file = wallpaper(platform::Data(64), 4, 4);
    write("/whole.cpbitmap", file);
    EXPECT_NE(load("/whole.cpbitmap"), nullptr);
    EXPECT_NE(load("/../../whole.cpbitmap"), nullptr);  // the root's parent is the root
    file.pop_back();
    write("/cut.cpbitmap", file);
    write("/empty.cpbitmap", {});
    write("/text.cpbitmap", platform::Data(200, 'x'));
    on.folder.folder("device/folder.cpbitmap");
    for (const NullableString& path : std::vector<NullableString>{
             std::nullopt, "", kHome, "/cut.cpbitmap", "/empty.cpbitmap", "/text.cpbitmap",
             "/folder.cpbitmap", "/", on.folder / "device/whole.cpbitmap",
             "/" + std::string(65536, 'a'), std::string("/whole.cpbitmap\0x", 17)}) {
        EXPECT_EQ(load(path), nullptr) << path.value_or("nil").substr(0, 60);
    }
    EXPECT_TRUE(on.warnings.empty());
}

TEST(ToolkitObjects, DescribeThemselvesAsTheSystemDoes) {
    const std::string old = TraitCollection(phone(12)).description();
    EXPECT_TRUE(old.starts_with("<UITraitCollection: 0x"));
    EXPECT_TRUE(old.ends_with(
        "; _UITraitNameUserInterfaceIdiom = Phone, _UITraitNameDisplayScale = 3.000000>"));
    const std::string pad = TraitCollection(deviceConfiguration("pad", 13).value()).description();
    EXPECT_TRUE(
        pad.ends_with("; UserInterfaceIdiom = Pad, DisplayScale = 2, UserInterfaceStyle = Light>"));
    const SymbolConfiguration configuration(17);
    EXPECT_TRUE(configuration.description().starts_with("<UIImageSymbolConfiguration:0x"));
    EXPECT_TRUE(configuration.description().ends_with(" size=17>"));
    EXPECT_TRUE(ImageAsset(nullptr).description().starts_with("<UIImageAsset: 0x"));
}

}  // namespace
}  // namespace velmoranth::simulator::toolkit_classes_test
