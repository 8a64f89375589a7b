// The look-ups, the imaging and the tools of the main class, as messages to it.
#include "core/entry_points.h"
#include "platform/platform.h"
#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::core::main_class_messages_test {
namespace {

using platform::ImageRef;
using platform::ImageViewRef;
using platform::NullableString;
using platform::ViewRef;
using Lines = std::vector<std::string>;

// The main class as whoever knows only its name asks it.
class MainClassMessages : public ::testing::Test {
  protected:
    MainClassMessages() {
        registerClasses();
        device.journal.clear();
        device.activeThemes({"A", "B"});
    }

    ~MainClassMessages() override {
        // No message was refused.
        EXPECT_EQ(device.journal.linesWith("warning: "), Lines{});
    }

    template <class R, class... Args>
    R ask(const std::string& selector, Args... arguments) {
        return device.runtime.sendToClass<R, Args...>("VelMoranth", selector,
                                                      std::move(arguments)...);
    }

    // The size of a theme's image says which file it is.
    void themeImage(const std::string& path, std::size_t side) const {
        device.png("/Library/Themes/" + path, tests::solid(side, side, {200, 100, 50, 255}));
    }

    [[nodiscard]] static double sideOf(const ImageRef& image) {
        return platform::sizeOf(image).width;
    }

    [[nodiscard]] static ViewRef taggedTree(int tag) {
        ViewRef root = platform::platform().views.viewWithFrame({});
        const ViewRef branch = platform::platform().views.viewWithFrame({});
        const ViewRef leaf = platform::platform().views.viewWithFrame({});
        leaf->setTag(tag);
        branch->addSubview(leaf);
        root->addSubview(branch);
        return root;
    }

    tests::TestDevice device;
    ImageRef original = device.image(tests::pattern(4, 4), 1);
};

TEST_F(MainClassMessages, TellOfTheSelectedTheme) {
    device.file("/Library/Themes/B/Info.plist", "");
    EXPECT_EQ(ask<NullableString>("selectedTheme"), "/Library/Themes/A/Velmoranth");
    EXPECT_EQ(ask<NullableString>("currentThemePlist"), "/Library/Themes/B/Info.plist");
    EXPECT_FALSE(ask<bool>("userChangedThemes"));
    EXPECT_EQ(ask<NullableString>("DetectUserDevice"), "iphone");
    device.idiom.idiom = platform::kUserInterfaceIdiomPad;
    EXPECT_EQ(ask<NullableString>("DetectUserDevice"), "ipad");
}

TEST_F(MainClassMessages, FindAnAppsIconOrGiveTheFallBack) {
    themeImage("B/IconBundles/com.example.app-large.png", 11);
    const auto find = [&](const NullableString& identifier) {
        return ask<ImageRef, NullableString, ImageRef>(
            "searchforIconInIconBundlesWithLeafIdentifier:forImg:", identifier, original);
    };
    EXPECT_EQ(sideOf(find("com.example.app")), 11);
    EXPECT_EQ(find("com.example.other"), original);
    EXPECT_EQ(find(std::nullopt), original);
}

TEST_F(MainClassMessages, FindInterfaceImagesByNameAndBundle) {
    themeImage("A/Bundles/com.example/first.png", 5);
    themeImage("A/UIImages/second.png", 6);
    const auto inBundle = [&](const NullableString& name, const NullableString& bundle) {
        return ask<ImageRef, NullableString, NullableString, ImageRef>(
            "deviceUIImageNamed:fromBundle:originalUIImage:", name, bundle, original);
    };
    const auto loose = [&](const NullableString& name) {
        return ask<ImageRef, NullableString, ImageRef>("deviceUIImageNamed:originalUIImage:", name,
                                                       original);
    };
    EXPECT_EQ(sideOf(inBundle("first", "com.example")), 5);
    EXPECT_EQ(sideOf(loose("second")), 6);
    EXPECT_EQ(inBundle("third", std::nullopt), original);
    EXPECT_EQ(loose(std::nullopt), original);
}

TEST_F(MainClassMessages, SearchFoldersOfThemes) {
    themeImage("B/two/x.png", 7);
    themeImage("B/(null)x.png", 8);
    const auto search = [&](const NullableString& folder, const NullableString& file) {
        return ask<ImageRef, NullableString, NullableString>("searchFolder:forImageStr:", folder,
                                                             file);
    };
    const auto searchAll = [&](const std::vector<std::string>& folders,
                               const NullableString& file) {
        return ask<ImageRef, std::vector<std::string>, NullableString>(
            "searchFolders:forImageString:", folders, file);
    };
    EXPECT_EQ(sideOf(search("two/", "x.png")), 7);
    EXPECT_EQ(search("one/", "x.png"), nullptr);
    EXPECT_EQ(sideOf(searchAll({"one/", "two/"}, "x.png")), 7);
    EXPECT_EQ(searchAll({}, "x.png"), nullptr);
    // As the platform prints nil into a path.
    EXPECT_EQ(sideOf(search(std::nullopt, "x.png")), 8);
    EXPECT_EQ(search(std::nullopt, std::nullopt), nullptr);
    EXPECT_EQ(searchAll({"two/"}, std::nullopt), nullptr);
}

TEST_F(MainClassMessages, RememberWhichNamesWereAsked) {
    const auto seen = [&](const NullableString& name) {
        return ask<bool, NullableString, ImageRef>("hasSearchForImageNamedOrBundle:forImg:", name,
                                                   original);
    };
    EXPECT_FALSE(seen("x"));
    EXPECT_TRUE(seen("x"));
    EXPECT_FALSE(seen(std::nullopt));
    EXPECT_EQ(device.journal.log(),
              (Lines{"Velmoranth UIDictHasImg : x", "Velmoranth UIDictHasImg : (null)"}));
}

TEST_F(MainClassMessages, MaskAndOverlayIcons) {
    themeImage("A/Bundles/com.apple.mobileicons.framework/AppIconMask.png", 4);
    themeImage("A/Velmoranth/iPhoneOverlay.png", 9);
    const auto mask = ask<ImageRef>("iconMask");
    EXPECT_EQ(sideOf(mask), 4);
    ask<void>("clearIconMask");
    const auto masked = ask<ImageRef, ImageRef, ImageRef>("maskImage:withMask:", original, mask);
    ASSERT_NE(masked, nullptr);
    EXPECT_NE(masked, original);
    const auto overlay = ask<ImageRef>("iconOverlay");
    EXPECT_EQ(sideOf(overlay), 9);
    EXPECT_EQ(ask<ImageRef>("iconOverlay"), overlay);
    const auto redrawn = ask<ImageRef, ImageRef>("redrawIconWithOverlay:", original);
    EXPECT_EQ(sideOf(redrawn), 4);
    EXPECT_NE(redrawn, original);
    device.remove("/Library/Themes/A/Velmoranth/iPhoneOverlay.png");
    ask<void>("clearIconOverlay");
    EXPECT_EQ(ask<ImageRef>("iconOverlay"), nullptr);
    EXPECT_EQ((ask<ImageRef, ImageRef>("redrawIconWithOverlay:", original)), original);
}

TEST_F(MainClassMessages, MakeShadowsReflectionsAndSizes) {
    themeImage("A/Velmoranth/iPhoneShadow.png", 12);
    const auto shadow = ask<ImageViewRef>("addShadowToIcon");
    ASSERT_NE(shadow, nullptr);
    EXPECT_EQ(sideOf(shadow->image()), 12);
    device.remove("/Library/Themes/A/Velmoranth/iPhoneShadow.png");
    EXPECT_EQ(ask<ImageViewRef>("addShadowToIcon")->image(), shadow->image());
    ask<void>("clearShadowImg");
    EXPECT_EQ(ask<ImageViewRef>("addShadowToIcon")->image(), nullptr);

    const ViewRef view = platform::platform().views.imageViewWithImage(original);
    const auto reflect = [&](const ViewRef& reflected, unsigned height) {
        return ask<ImageRef, ViewRef, unsigned>("reflectedImage:withHeight:", reflected, height);
    };
    EXPECT_EQ(platform::sizeOf(reflect(view, 3)), (platform::Size{4, 3}));
    EXPECT_EQ(reflect(view, 0), nullptr);
    EXPECT_EQ(reflect(nullptr, 3), nullptr);
    const auto scaled = ask<ImageRef, ImageRef, platform::Size>(
        "imageWithImage:scaledToSize:", original, platform::Size{8, 2});
    EXPECT_EQ(platform::sizeOf(scaled), (platform::Size{8, 2}));
}

TEST_F(MainClassMessages, StripTaggedViews) {
    for (const auto& [selector, tag] : {std::pair{"removeAllOverlaysfrom:", 547},
                                        {"removeAllShadowsfrom:", 478},
                                        {"removeFolderfrom:", 2232},
                                        {"removeReflectedIconsfrom:", 777}}) {
        for (const int tagOfView : {547, 478, 2232, 777}) {
            const ViewRef tree = taggedTree(tagOfView);
            ask<void, ViewRef>(selector, tree);
            EXPECT_EQ(tree->viewWithTag(tagOfView) == nullptr, tagOfView == tag) << selector;
        }
        ask<void, ViewRef>(selector, nullptr);
    }
}

TEST_F(MainClassMessages, GiveTheHomeScreensFurniture) {
    const std::string springBoard = "A/Bundles/com.apple.springboard/";
    themeImage("A/Velmoranth/Folder.png", 21);
    themeImage(springBoard + "SBBadgeBG.png", 22);
    themeImage(springBoard + "SBPageDotCurrent.png", 23);
    themeImage(springBoard + "SBPageDot.png", 24);
    themeImage(springBoard + "Spotlight_Pages.png", 25);
    themeImage("A/Velmoranth/SBDockBGiphone.png", 26);
    EXPECT_EQ(sideOf(ask<ImageViewRef>("FolderImage")->image()), 21);
    EXPECT_EQ(sideOf(ask<ImageViewRef>("badgeImage")->image()), 22);
    EXPECT_EQ(sideOf(ask<ImageRef, bool>("pageDots:", true)), 23);
    EXPECT_EQ(sideOf(ask<ImageRef, bool>("pageDots:", false)), 24);
    EXPECT_EQ(sideOf(ask<ImageRef>("spotlightPageDot")), 25);
    const auto dock = ask<ImageViewRef, platform::Rect>("SBDockImgWithFrame:", {{1, 2}, {375, 96}});
    EXPECT_EQ(sideOf(dock->image()), 26);
    EXPECT_EQ(dock->frame(), (platform::Rect{{1, 12}, {375, 96}}));
    const auto color = [&](const NullableString& text) {
        return ask<platform::Color, NullableString>("colorWithHexString:", text);
    };
    EXPECT_EQ(color("FF0000"), (platform::Color{1, 0, 0, 1}));
    EXPECT_EQ(color("#FF0000"), platform::kGrayColor);
    EXPECT_EQ(color(std::nullopt), platform::kGrayColor);
}

TEST_F(MainClassMessages, ServeThemeMakers) {
    ask<void, ImageRef, NullableString, NullableString>(
        "VelmoranthImageDump:named:inBundle:", original, "x", std::nullopt);
    EXPECT_TRUE(device.exists("/var/mobile/Library/VelmoranthImageDump/UIImages/x@3x.png"));
    const auto contentType = [&](const std::optional<platform::Data>& data) {
        return ask<NullableString, std::optional<platform::Data>>("contentTypeForImageData:", data);
    };
    EXPECT_EQ(contentType(platform::Data{0x89, 'P'}), "image/png");
    EXPECT_EQ(contentType(platform::Data{}), std::nullopt);
    EXPECT_EQ(contentType(std::nullopt), std::nullopt);
    EXPECT_EQ((ask<ImageRef, NullableString, bool, NullableString>(
                  "imageFromBundlePath:extract:extractionPath:", "/none/Assets.car", true, "/out")),
              nullptr);
    EXPECT_EQ(device.journal.log().back(), "Velmoranth Assets Bundle /none/Assets.car not found");
}

}  // namespace
}  // namespace velmoranth::core::main_class_messages_test
