#include "core/settings.h"
#include "hooks/images/named_image_hooks.h"
#include "hooks/images/wallpaper_names.h"
#include "tests/core/forgotten_steps.h"

#include "named_images_fixture.h"
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace velmoranth::tests::named_images_test {
namespace {

using platform::BundleRef;
using platform::ImageRef;

constexpr const char* kHomeWallpaper =
    "/var/mobile/Library/SpringBoard/OriginalHomeBackground.cpbitmap";
constexpr const char* kLockWallpaper =
    "/var/mobile/Library/SpringBoard/OriginalLockBackground.cpbitmap";
constexpr const char* kWeatherFramework = "com.apple.weather-framework";

// What holds for each of the eight.
class EveryNamedImage : public NamedImages, public testing::WithParamInterface<Method> {
  protected:
    EveryNamedImage() = default;

    explicit EveryNamedImage(double versionNumber) : NamedImages(versionNumber) {}

    [[nodiscard]] bool isLookedUp() const { return method.shape != Shape::bitmapFile; }

    const Method& method = GetParam();
    Request request;
    std::string orig = call(method, request);
};

class EveryNamedImageOniOS12 : public EveryNamedImage {
  protected:
    EveryNamedImageOniOS12() : EveryNamedImage(kiOS12) {}
};

std::string caseName(const testing::TestParamInfo<Method>& info) {
    std::string name = info.param.selector;
    std::erase(name, ':');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Of, EveryNamedImage, testing::ValuesIn(kMethods), caseName);
INSTANTIATE_TEST_SUITE_P(Of, EveryNamedImageOniOS12, testing::ValuesIn(kMethods), caseName);

TEST_P(EveryNamedImage, WithoutThemingIsThePlatformsSecondAnswer) {
    switches(false, false);
    themePng(lookup(method, request).file());
    EXPECT_EQ(answeredBy(send(method, request)), 1);
    EXPECT_EQ(taken(), (Lines{orig, orig}));
}

TEST_P(EveryNamedImage, WithoutThemingLogsOnceAndCallsThreeTimes) {
    switches(false, true);
    themePng(lookup(method, request).file());
    EXPECT_EQ(answeredBy(send(method, request)), 2);
    EXPECT_EQ(taken(), (Lines{orig, orig, logLine(method, request, given.at(1)), orig}));
}

TEST_P(EveryNamedImage, WithoutPreferencesIsThePlatforms) {
    EXPECT_EQ(answeredBy(send(method, request)), 1);
    EXPECT_EQ(taken(), (Lines{orig, orig}));
}

TEST_P(EveryNamedImage, IsLookedUpWithThePlatformsLastAnswer) {
    if (isLookedUp()) {
        expectLookup(method, request);
    } else {
        expectLeftToPlatform(method, request);
    }
}

TEST_P(EveryNamedImage, IsTheThemesWhenItHasOne) {
    const Lookup wanted = lookup(method, request);
    switches(true, true);
    themePng(wanted.file());
    const ImageRef found = send(method, request);
    if (!isLookedUp()) {
        EXPECT_EQ(found, given.at(2));
        return;
    }
    EXPECT_EQ(drawnPixels(found), solid(6, 6, kRed));
    ASSERT_EQ(given.size(), 3U);
    EXPECT_EQ(taken(), joined({{orig, orig, logLine(method, request, given.at(1)), orig},
                               wanted.lines(given.at(2), LookupLogging::on, LookupResult::found)}));

    switches(true, false);
    EXPECT_EQ(sendAnew(method, request), found);
    EXPECT_EQ(taken(), (Lines{orig, orig, kDictHasImg})) << "served without a file";
}

TEST_P(EveryNamedImageOniOS12, IsReplacedToo) {
    switches(true, false);
    themePng(lookup(method, request).file());
    const ImageRef image = send(method, request);
    ASSERT_EQ(given.size(), 2U);
    EXPECT_EQ(drawnPixels(image), isLookedUp() ? solid(6, 6, kRed) : solid(6, 9, kGreen));
}

TEST_P(EveryNamedImage, NilOfThePlatformIsPassedOn) {
    isNilAnswer = [](std::size_t) { return true; };
    for (const bool enable : {false, true}) {
        switches(enable, true);
        EXPECT_EQ(sendAnew(method, request), nullptr);
        EXPECT_EQ(given.size(), 3U);
        EXPECT_EQ(device.journal.lines().at(2), logLine(method, request, nullptr));
    }
    if (isLookedUp()) {
        EXPECT_EQ(taken(), joined({{orig, orig, logLine(method, request, nullptr), orig},
                                   lookup(method, request).lines(nullptr, LookupLogging::on)}));
    }
}

TEST_P(EveryNamedImage, NilOfThePlatformIsThemedAllTheSame) {
    isNilAnswer = [](std::size_t) { return true; };
    switches(true, false);
    themePng(lookup(method, request).file());
    EXPECT_EQ(drawnPixels(send(method, request)), isLookedUp() ? solid(6, 6, kRed) : Pixels{});
}

TEST_P(EveryNamedImage, NilNameReachesThePlatform) {
    request.name = std::nullopt;
    if (isLookedUp() && method.selector != std::string_view(kInBundle.selector)) {
        expectLookup(method, request);
    } else {
        expectLeftToPlatform(method, request);
    }
}

TEST_P(EveryNamedImage, NilObjectsReachThePlatform) {
    request.bundle = nullptr;
    request.extra = nullptr;
    request.flags = -1;
    if (isLookedUp()) {
        expectLookup(method, request, {"back", std::nullopt});
    } else {
        expectLeftToPlatform(method, request);
    }
}

TEST_P(EveryNamedImage, SubclassThatIsAskedStaysTheReceiver) {
    for (const bool enable : {false, true}) {
        switches(enable, true);
        send(method, request, "AppImage");
        const std::string inherited = call(method, request, "AppImage");
        EXPECT_EQ(takenCalls(), (Lines{inherited, inherited, inherited}));
    }
}

TEST_P(EveryNamedImage, NamesOfAnyKindStayAsTheyAre) {
    device.folder("/Library/Themes/A/UIImages");
    device.folder("/Library/Themes/A/Bundles/com.x.kit");
    for (const std::string& name :
         {std::string(), std::string(std::size_t{64} * 1024, 'n'), std::string("a/b/c"),
          std::string("../../../../../../../../etc/passwd"), std::string("/etc/passwd"),
          std::string("%@ %s %d%%"), std::string("a\nb\0c", 5), std::string("\xff\xfe")}) {
        request.name = name;
        if (isLookedUp()) {
            expectLookup(method, request);
        } else {
            expectLeftToPlatform(method, request);
        }
    }
}

TEST_P(EveryNamedImage, NothingOutsideTheDeviceIsRead) {
    // A picture beside the device's folder, and another where the same path leads inside.
    const std::string outside = device.hostFolder() + "-outside";
    device.png("/picture@3x.png", solid(6, 6, kBlue));
    std::filesystem::copy_file(device.hostFolder() + "/picture@3x.png", outside + "@3x.png");
    device.png(outside + "@3x.png", solid(6, 6, kRed));
    device.folder("/Library/Themes/A/UIImages");
    device.folder("/Library/Themes/A/Bundles/com.x.kit");
    switches(true, false);
    request.name = "../../../../../../../../../.." + outside;
    const ImageRef image = send(method, request);
    std::filesystem::remove(outside + "@3x.png");
    EXPECT_EQ(drawnPixels(image), isLookedUp() ? solid(6, 6, kRed) : solid(6, 9, kGreen));
    orig = call(method, request);
    EXPECT_EQ(takenCalls(), (Lines{orig, orig}));
}

TEST_P(EveryNamedImage, IsDumpedOnceAndOnlyByALookup) {
    const Lookup wanted = lookup(method, request);
    switches(false, true, true);
    send(method, request);
    EXPECT_FALSE(device.exists(kDumpFolder));
    switches(true, true, false);
    send(method, request);
    EXPECT_FALSE(device.exists(kDumpFolder));

    switches(true, true, true);
    sendAnew(method, request);
    EXPECT_EQ(device.exists(wanted.dump()), isLookedUp());
    const Lines log = device.journal.linesWith("log ");
    ASSERT_EQ(device.journal.count("log VelmoranthImageDump imgToDump"), isLookedUp() ? 1U : 0U);
    EXPECT_EQ(log.at(0), logLine(method, request, given.at(1)));
    if (isLookedUp()) {
        EXPECT_EQ(log.at(1), logged("VelmoranthImageDump imgToDump: %@    Imgnamed: %@   inBundle: "
                                    "%@",
                                    {textOf(given.at(2)), "back", textOf(wanted.bundle)}));
        EXPECT_EQ(drawnPixels(device.images().imageWithContentsOfFile(wanted.dump())),
                  solid(6, 9, kGreen));
    }
}

TEST_P(EveryNamedImage, SwitchesAreReadAfterTheFirstCall) {
    whenCalled = [this](std::size_t number) {
        if (number == 0) {
            device.activeThemes({"A"}, {{"enable", true}, {"enableLogging", true}});
            core::loadSettings();
        }
    };
    EXPECT_EQ(answeredBy(send(method, request)), 2);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "),
              !isLookedUp()                    ? 0U
              : lookup(method, request).bundle ? 3U
                                               : 4U);
}

TEST_P(EveryNamedImage, ThemingIsTestedAfterTheLogLine) {
    switches(true, true);
    whenCalled = [this](std::size_t number) {
        if (number == 1) {
            device.activeThemes({"A"}, {{"enable", false}});
            core::loadSettings();
        }
    };
    EXPECT_EQ(answeredBy(send(method, request)), 2);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 0U);
}

TEST_P(EveryNamedImage, IsServedOnAnotherThread) {
    switches(true, false);
    themePng(lookup(method, request).file());
    ImageRef image;
    std::thread([&] { image = send(method, request); }).join();
    EXPECT_EQ(drawnPixels(image), isLookedUp() ? solid(6, 6, kRed) : solid(6, 9, kGreen));
}

TEST_F(NamedImages, CircleFillOfTheSystemIsThePlatforms) {
    themePng("A/UIImages/circle.fill@3x.png");
    expectLeftToPlatform(kSystemImageNamed, {.name = "circle.fill"});
    for (const char* name : {"circle.fil", "circle.fill2", "xcircle.fill", "Circle.fill"}) {
        expectLookup(kSystemImageNamed, {.name = name});
    }
}

TEST_F(NamedImages, CircleFillByAnotherMethodIsLookedUp) {
    for (const Method& method : kMethods) {
        if (method.selector != std::string_view(kSystemImageNamed.selector) &&
            method.shape != Shape::bitmapFile) {
            expectLookup(method, {.name = "circle.fill"});
        }
    }
}

TEST_F(NamedImages, ImagesOfTheWeatherFrameworkAreThePlatforms) {
    themePng("A/UIImages/back@3x.png");
    themePng("A/Bundles/com.apple.weather-framework/back@3x.png");
    for (const Method& method : kBundleMethods) {
        expectLeftToPlatform(method, {.bundle = bundleNamed(kWeatherFramework)});
    }
}

TEST_F(NamedImages, ABundleIsAskedForItsIdentifierOnlyWhereTheNameMayBeThemed) {
    for (const Method& method : kMethods) {
        if (!hasBundle(method)) {
            continue;
        }
        const auto bundle = std::make_shared<NamedBundle>("com.x.kit");
        for (const bool enableLogging : {false, true}) {
            bundle->questions = 0;
            switches(false, enableLogging);
            sendAnew(method, {.bundle = bundle});
            EXPECT_EQ(bundle->questions, 0) << method.selector;
            switches(true, enableLogging);
            sendAnew(method, {.bundle = bundle});
            EXPECT_EQ(bundle->questions, 1) << method.selector;
        }
    }
}

TEST_F(NamedImages, OnlyThatBundleIsTheWeatherFramework) {
    for (const char* identifier : {"com.apple.weather", "com.apple.weather-framework.x",
                                   "com.apple.Weather-framework", "x"}) {
        for (const Method& method : kBundleMethods) {
            expectLookup(method, {.bundle = bundleNamed(identifier)});
        }
    }
}

TEST_F(NamedImages, BundleWithoutIdentifierIsNoBundle) {
    for (const Method& method : kBundleMethods) {
        expectLookup(method, {.bundle = bundleNamed(std::nullopt)}, {"back", std::nullopt});
        expectLookup(method, {.bundle = nullptr}, {"back", std::nullopt});
    }
}

TEST_F(NamedImages, EmptyIdentifierIsOne) {
    for (const Method& method : kBundleMethods) {
        expectLookup(method, {.bundle = bundleNamed("")}, {"back", ""});
    }
}

TEST_F(NamedImages, ClockBackgroundOfABundleIsThePlatforms) {
    themePng("A/Bundles/com.x.kit/ClockIconBackgroundSquare@3x.png");
    expectLeftToPlatform(kWithTraitCollection, {.name = "ClockIconBackgroundSquare"});
}

TEST_F(NamedImages, ClockBackgroundOfNoBundleIsLookedUp) {
    const Lookup loose{"ClockIconBackgroundSquare", std::nullopt};
    for (const BundleRef& bundle : {BundleRef(), bundleNamed(std::nullopt)}) {
        expectLookup(kWithTraitCollection, {.name = loose.name, .bundle = bundle}, loose);
    }
    themePng(loose.file());
    EXPECT_EQ(drawnPixels(send(kWithTraitCollection, {.name = loose.name, .bundle = nullptr})),
              solid(6, 6, kRed));
}

TEST_F(NamedImages, ClockBackgroundIsLookedUpByTheOthers) {
    for (const Method& method : {kSystemImageNamed, kWithConfiguration, kInBundle,
                                 kImageNamedWithTrait, kKitImageNamed, kKitImageNamedWithTrait}) {
        expectLookup(method, {.name = "ClockIconBackgroundSquare"});
    }
    for (const char* name : {"ClockIconBackgroundSquar", "ClockIconBackgroundSquare2"}) {
        expectLookup(kWithTraitCollection, {.name = name});
    }
}

TEST_F(NamedImages, DescriptionOfAnAssetIsThePlatformsInABundle) {
    themePng("A/Bundles/com.x.kit/<image asset@3x.png");
    themePng("A/UIImages/<image asset@3x.png");
    for (const char* name : {"<image asset", "<image asset: 0x1>", "<image assets"}) {
        expectLeftToPlatform(kInBundle, {.name = name});
        expectLeftToPlatform(kInBundle, {.name = name, .bundle = nullptr});
    }
    for (const char* name : {"<image asse", " <image asset", "<Image asset"}) {
        expectLookup(kInBundle, {.name = name});
    }
}

TEST_F(NamedImages, DescriptionOfAnAssetIsLookedUpByTheOthers) {
    for (const Method& method : {kSystemImageNamed, kWithConfiguration, kWithTraitCollection,
                                 kImageNamedWithTrait, kKitImageNamed, kKitImageNamedWithTrait}) {
        expectLookup(method, {.name = "<image asset: 0x1>"});
    }
}

TEST_F(NamedImages, NilNameInNoBundleIsThePlatforms) {
    themePng("A/UIImages/(null)@3x.png");
    expectLeftToPlatform(kInBundle, {.name = std::nullopt, .bundle = nullptr});
}

TEST_F(NamedImages, StoredWallpapersAreThePlatforms) {
    for (const char* name : {"OriginalHomeBackground", "LockBackground"}) {
        themePng(std::string("A/UIImages/") + name + "@3x.png");
        themePng(std::string("A/UIImages/") + name + ".png");
    }
    for (const char* path : {kHomeWallpaper, kLockWallpaper, "/x.cpbitmap"}) {
        for (const int flags : {0, 1, -2147483647}) {
            expectLeftToPlatform(kBitmapFile, {.name = path, .flags = flags});
        }
    }
}

// The name is made and forgotten: nothing looks for that file in this version.
TEST_F(NamedImages, StoredWallpapersAreMappedOnlyWithThemingOn) {
    for (const char* path : {kHomeWallpaper, kLockWallpaper, "/x.cpbitmap"}) {
        const Request request{.name = path};
        const std::string orig = call(kBitmapFile, request);
        const std::string mapped = std::string("wallpaperFileName ") + path;
        const auto sent = [&](bool enable, bool enableLogging) {
            switches(enable, enableLogging);
            const WatchedSteps watched(device.journal);
            sendAnew(kBitmapFile, request);
            return taken();
        };
        EXPECT_EQ(sent(false, false), (Lines{orig, orig}));
        EXPECT_EQ(sent(true, false), (Lines{orig, mapped, orig}));
        const Lines off = sent(false, true);
        EXPECT_EQ(off, (Lines{orig, orig, logLine(kBitmapFile, request, given.at(1)), orig}));
        const Lines on = sent(true, true);
        EXPECT_EQ(on,
                  (Lines{orig, orig, logLine(kBitmapFile, request, given.at(1)), mapped, orig}));
    }
}

TEST(WallpaperFileName, IsTheThemesForTheStoredWallpapers) {
    EXPECT_EQ(hooks::wallpaperFileName(kHomeWallpaper), "OriginalHomeBackground.png");
    EXPECT_EQ(hooks::wallpaperFileName(kLockWallpaper), "LockBackground.png");
}

TEST(WallpaperFileName, IsThePathItselfForAnyOther) {
    for (const std::string path :
         {"", "OriginalHomeBackground.cpbitmap", "/var/mobile/Library/SpringBoard/",
          "/var/mobile/Library/SpringBoard/HomeBackground.cpbitmap",
          "/var/mobile/Library/SpringBoard/LockBackground.cpbitmap",
          "/private/var/mobile/Library/SpringBoard/OriginalHomeBackground.cpbitmap"}) {
        EXPECT_EQ(hooks::wallpaperFileName(path), path);
    }
    EXPECT_EQ(hooks::wallpaperFileName(std::nullopt), std::nullopt);
}

}  // namespace
}  // namespace velmoranth::tests::named_images_test
