#include "simulator/home_screen/platform_classes.h"

#include "platform/springboard.h"
#include "simulator/home_screen/icon_views.h"
#include "simulator/toolkit/base_classes.h"

#include "bare_process.h"
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::simulator::platform_classes_test {
namespace {

using platform::Class;
using platform::ImageRef;
using platform::Implementation;
using platform::NullableString;
using platform::SBIconRef;

constexpr const char* kIconImageOfUIImage =
    "_applicationIconImageForBundleIdentifier:format:scale:";
constexpr App kApp{"com.apple.Maps", "Maps", "SBApplicationIcon"};

// The platform of one system, nothing replaced.
struct SystemUnderTest : BareProcess {
    explicit SystemUnderTest(const SystemVersion& system, DeviceKind kind = DeviceKind::phone)
        : BareProcess({.system = system, .kind = kind, .screen = {}, .date = platform::Date{0}}) {
        registerBaseClasses(context);
        registerPlatformClasses(context);
    }

    ImageRef contentsImage() { return runtime.send<ImageRef>(*view, "contentsImage"); }

    std::shared_ptr<ApplicationIcon> icon = std::make_shared<ApplicationIcon>(kApp);
    std::shared_ptr<IconImageView> view = std::make_shared<IconImageView>(icon);
};

bool answers(desktop::Runtime& runtime, const std::string& name, const std::string& selector) {
    return static_cast<bool>(runtime.methodOf(runtime.getClass(name), selector));
}

TEST(PlatformClasses, SystemsDifferInTheIconCache) {
    SystemUnderTest on12(kSystem12);
    EXPECT_TRUE(answers(on12.runtime, "SBApplicationIcon", "getUnmaskedIconImage:"));
    SystemUnderTest on13(kSystem13);
    EXPECT_TRUE(answers(on13.runtime, "SBHIconImageCache", "imageForIcon:"));
    EXPECT_TRUE(answers(on13.runtime, "SBHIconImageCache", "unmaskedImageForIcon:"));
    EXPECT_FALSE(answers(on13.runtime, "SBApplicationIcon", "getUnmaskedIconImage:"));
    for (SystemUnderTest* const system : {&on12, &on13}) {
        EXPECT_TRUE(answers(system->runtime, "SBIconImageView", "contentsImage"));
        EXPECT_TRUE(answers(system->runtime, "SBIconView", "layoutSubviews"));
        EXPECT_TRUE(system->runtime.methodOf(
            system->runtime.getMetaclass(system->runtime.getClass("UIImage")),
            kIconImageOfUIImage));
    }
}

TEST(PlatformClasses, EveryClassHasItsSuperclasses) {
    for (const SystemVersion& system : {kSystem12, kSystem13}) {
        SystemUnderTest under(system);
        for (const char* const name :
             {"SBIconView", "SBIconImageView", "SBIconLegibilityLabelView", "SBDockView",
              "SBDockIconListView", "SBFloatingDockView", "SBFloatingDockPlatterView",
              "SBIconListPageControl", "UIImageView", "UILabel"}) {
            EXPECT_TRUE(under.runtime.isKindOf(under.runtime.getClass(name), "UIView")) << name;
        }
        for (const App* const app : homeScreenApps()) {
            EXPECT_TRUE(under.runtime.isKindOf(under.runtime.getClass(std::string(app->iconClass)),
                                               "SBApplicationIcon"));
        }
        EXPECT_TRUE(under.warnings.empty());
    }
}

TEST(PlatformClasses, IconViewShowsTheMaskedIconAtHomeScreenSize) {
    for (const SystemVersion& system : {kSystem12, kSystem13}) {
        SystemUnderTest under(system);
        const ImageRef image = under.contentsImage();
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->size(), (platform::Size{60, 60}));
        EXPECT_EQ(image->scale(), 3);
        const auto pixels = desktop::DesktopBitmapImage::of(image->bitmap())->pixels();
        EXPECT_EQ(pixels.row(0)[3], 0);              // the corner is cut off
        EXPECT_EQ(pixels.row(90)[90 * 4 + 3], 255);  // the middle is not
        EXPECT_TRUE(under.warnings.empty());
    }
}

TEST(PlatformClasses, OneRequestAsksThePlatformOnce) {
    for (const SystemVersion& system : {kSystem12, kSystem13}) {
        SystemUnderTest under(system);
        const ImageRef first = under.contentsImage();
        EXPECT_EQ(under.stock.requests("com.apple.Maps"), 1);
        // The same picture again, not a new drawing.
        EXPECT_EQ(under.contentsImage(), first);
        EXPECT_EQ(under.stock.requests("com.apple.Maps"), 2);
        EXPECT_EQ(under.stock.requests("com.apple.news"), 0);
    }
}

TEST(PlatformClasses, UnmaskedImagesAreSquare) {
    SystemUnderTest on12(kSystem12);
    SystemUnderTest on13(kSystem13);
    const ImageRef images[] = {
        on12.runtime.send<ImageRef, int>(*on12.icon, "getUnmaskedIconImage:", 2),
        on13.runtime.send<ImageRef, SBIconRef>(*on13.context.iconImageCache,
                                               "unmaskedImageForIcon:", on13.icon)};
    for (const ImageRef& image : images) {
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->size(), (platform::Size{60, 60}));
        EXPECT_EQ(desktop::DesktopBitmapImage::of(image->bitmap())->pixels().row(0)[3], 255);
    }
}

TEST(PlatformClasses, NoIconHasNoImage) {
    SystemUnderTest under(kSystem13);
    EXPECT_EQ((under.runtime.send<ImageRef, SBIconRef>(*under.context.iconImageCache,
                                                       "imageForIcon:", nullptr)),
              nullptr);
    for (const SystemVersion& system : {kSystem12, kSystem13}) {
        SystemUnderTest with(system);
        with.view = std::make_shared<IconImageView>(nullptr);
        EXPECT_EQ(with.contentsImage(), nullptr);
    }
}

TEST(PlatformClasses, ToolkitGivesIconsByFormatAndScale) {
    SystemUnderTest under(kSystem12, DeviceKind::pad);
    const auto ask = [&](NullableString identifier, int format, double scale) {
        return under.runtime.sendToClass<ImageRef, NullableString, int, double>(
            "UIImage", kIconImageOfUIImage, std::move(identifier), format, scale);
    };
    EXPECT_EQ(ask("com.apple.Maps", 2, 2)->size(), (platform::Size{76, 76}));
    EXPECT_EQ(ask("com.apple.Maps", 0, 2)->size(), (platform::Size{29, 29}));
    EXPECT_EQ(ask("com.apple.Maps", 2, 1)->scale(), 1);
    EXPECT_EQ(ask("com.apple.Maps", 2, 0)->scale(), 3);  // the screen's
    EXPECT_NE(ask("no.such.app", 2, 2), nullptr);
    EXPECT_EQ(ask(std::nullopt, 2, 2), nullptr);
    EXPECT_EQ(ask("com.apple.Maps", 2, -1), nullptr);
    EXPECT_EQ(ask("com.apple.Maps", 2, 1e9), nullptr);
}

TEST(PlatformClasses, ReplacedMethodIsWhatTheViewShows) {
    SystemUnderTest on13(kSystem13);
    Implementation original;
    int calls = 0;
    on13.runtime.hookMessageEx(
        on13.runtime.getClass("SBHIconImageCache"), "imageForIcon:",
        platform::makeImplementation(
            std::function<ImageRef(platform::SBHIconImageCache&, SBIconRef)>(
                [&](platform::SBHIconImageCache&, const SBIconRef& icon) -> ImageRef {
                    EXPECT_EQ(icon->nodeIdentifier(), "com.apple.Maps");
                    ++calls;
                    return nullptr;
                })),
        &original);
    on13.runtime.send<void>(*on13.view, "layoutSubviews");
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(on13.view->contents(), nullptr);
    EXPECT_TRUE(on13.warnings.empty());
}

TEST(PlatformClasses, ReplacedMethodOfTheToolkitIsWhatThePhoneOfTwelveShows) {
    SystemUnderTest on12(kSystem12);
    Implementation original;
    std::vector<int> formats;
    on12.runtime.hookMessageEx(
        on12.runtime.getMetaclass(on12.runtime.getClass("UIImage")), kIconImageOfUIImage,
        platform::makeImplementation(std::function<ImageRef(Class&, NullableString, int, double)>(
            [&](Class&, const NullableString&, int format, double scale) -> ImageRef {
                EXPECT_EQ(scale, 3);
                formats.push_back(format);
                return nullptr;
            })),
        &original);
    EXPECT_EQ(on12.contentsImage(), nullptr);
    EXPECT_EQ(formats, std::vector<int>{kHomeScreenIconFormat});
    EXPECT_TRUE(on12.warnings.empty());
}

}  // namespace
}  // namespace velmoranth::simulator::platform_classes_test
