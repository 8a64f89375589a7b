#include "desktop/files/device_root.h"
#include "desktop/image_io/image_io.h"
#include "desktop/imaging/images.h"

#include "bitmaps.h"
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace velmoranth::desktop::test_images::image_files_test {

namespace {

using platform::ImageRef;
using Paths = std::vector<std::string>;

constexpr ScaledSiblings kOn = ScaledSiblings::on;
constexpr ScaledSiblings kOff = ScaledSiblings::off;

}  // namespace

TEST(ImageCandidates, AreTheScreensScaleAndLower) {
    EXPECT_EQ(imageCandidates("/a/x.png", 3, kOn),
              (Paths{"/a/x@3x.png", "/a/x@2x.png", "/a/x.png"}));
    EXPECT_EQ(imageCandidates("/a/x.png", 2, kOn), (Paths{"/a/x@2x.png", "/a/x.png"}));
    EXPECT_EQ(imageCandidates("/a/x.png", 1, kOn), Paths{"/a/x.png"});
    EXPECT_EQ(imageCandidates("/a/x.png", 4, kOn).size(), 3U);
    EXPECT_EQ(imageCandidates("/a/x.png", 3, kOff), Paths{"/a/x.png"});
}

TEST(ImageCandidates, ScaleGoesBeforeTheExtensionOfTheName) {
    EXPECT_EQ(imageCandidates("/a.b/x", 2, kOn), (Paths{"/a.b/x@2x", "/a.b/x"}));
    EXPECT_EQ(imageCandidates("/a/x.y.png", 2, kOn), (Paths{"/a/x.y@2x.png", "/a/x.y.png"}));
    EXPECT_EQ(imageCandidates("/a/.png", 2, kOn), (Paths{"/a/.png@2x", "/a/.png"}));
    EXPECT_EQ(imageCandidates("x.png", 2, kOn), (Paths{"x@2x.png", "x.png"}));
}

TEST(ImageCandidates, APathWithAScaleOrWithoutANameIsAlone) {
    for (const char* path : {"/a/x@2x.png", "/a/x@3x.png", "/a/x@2x", "/a/", "/", ""}) {
        EXPECT_EQ(imageCandidates(path, 3, kOn), Paths{path}) << path;
    }
}

TEST(ScaleFromPath, IsWhatTheNameEndsInBeforeItsExtension) {
    const struct {
        const char* path;
        double scale;
    } cases[] = {
        {"/a/x@2x.png", 2},
        {"/a/x@3x.png", 3},
        {"/a/x.png", 1},
        {"/a/x@2x", 2},
        {"/a/x@4x.png", 1},
        {"/a/x@1x.png", 1},
        {"/a/x@2x.y.png", 1},
        {"/a@2x/x.png", 1},
        {"/a@3x.b/x", 1},
        {"/a/@2x.png", 2},
        {"/a/x@2X.png", 1},
        {"/a/x~ipad.png", 1},
        {"/a/x~ipad@2x.png", 2},
        {"/a/iPadShadow~ipad.png", 1},
        {"", 1},
        {"/a/x@2x.", 2},
        {"/a/x@2x.png/", 1},
    };

    for (const auto& one : cases) {
        EXPECT_EQ(scaleFromPath(one.path), one.scale) << one.path;
    }
}

class ImagesInARoot : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = std::filesystem::temp_directory_path() / "velmoranth-images-XXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        folder = name;
        root = *DeviceRoot::open(folder);
    }

    void TearDown() override { std::filesystem::remove_all(folder); }

    void file(const std::string& path, const platform::Data& contents) const {
        std::ofstream(folder + path, std::ios::binary)
            .write(reinterpret_cast<const char*>(contents.data()),
                   static_cast<std::streamsize>(contents.size()));
    }

    void png(const std::string& path, std::size_t side) const {
        const platform::Data bytes(side * side * 4, 255);
        file(path, encodePng(bytes, side, side, side * 4));
    }

    DesktopImages images(double screenScale, ScaledSiblings siblings = kOn,
                         std::size_t maxFileBytes = 1 << 20) {
        return {{.root = root,
                 .screenScale = screenScale,
                 .siblings = siblings,
                 .maxFileBytes = maxFileBytes},
                contexts};
    }

    std::string folder;
    std::shared_ptr<DeviceRoot> root;
    DesktopImageContexts contexts{2, ImageDescription::ios13};
};

TEST_F(ImagesInARoot, LoadTheBestSiblingAtItsScale) {
    png("/x.png", 10);
    png("/x@2x.png", 20);
    png("/x@3x.png", 30);
    for (const double scale : {1.0, 2.0, 3.0}) {
        const ImageRef image = images(scale).imageWithContentsOfFile("/x.png");
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->scale(), scale);
        EXPECT_EQ(image->size(), (platform::Size{10, 10}));
        EXPECT_EQ(image->bitmap()->layout().width, static_cast<std::size_t>(10 * scale));
    }
    EXPECT_EQ(images(3, kOff).imageWithContentsOfFile("/x.png")->scale(), 1);
    EXPECT_EQ(images(1).imageWithContentsOfFile("/x@3x.png")->scale(), 3);
    EXPECT_EQ(images(3).imageWithContentsOfFile("/x@2x.png")->scale(), 2);
}

TEST_F(ImagesInARoot, PassOverSiblingsThatAreNoImages) {
    png("/x.png", 10);
    file("/x@3x.png", {1, 2, 3});
    std::filesystem::create_directory(folder + "/x@2x.png");
    const ImageRef image = images(3).imageWithContentsOfFile("/x.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->scale(), 1);
    png("/only@2x.png", 4);
    EXPECT_EQ(images(3).imageWithContentsOfFile("/only.png")->scale(), 2);
}

TEST_F(ImagesInARoot, AreNilForWhatIsNoImage) {
    png("/x.png", 10);
    file("/text.png", {'n', 'o'});
    file("/empty.png", {});
    DesktopImages service = images(2);
    EXPECT_EQ(service.imageWithContentsOfFile("/missing.png"), nullptr);
    EXPECT_EQ(service.imageWithContentsOfFile("/text.png"), nullptr);
    EXPECT_EQ(service.imageWithContentsOfFile("/empty.png"), nullptr);
    EXPECT_EQ(service.imageWithContentsOfFile("/"), nullptr);
    EXPECT_EQ(service.imageWithContentsOfFile(""), nullptr);
    EXPECT_EQ(images(2, kOn, 8).imageWithContentsOfFile("/x.png"), nullptr);
    DesktopImages noRoot({}, contexts);
    EXPECT_EQ(noRoot.imageWithContentsOfFile("/x.png"), nullptr);
}

TEST_F(ImagesInARoot, AreReadAfreshEveryTime) {
    png("/x.png", 10);
    DesktopImages service = images(1);
    const ImageRef first = service.imageWithContentsOfFile("/x.png");
    png("/x.png", 12);
    EXPECT_EQ(service.imageWithContentsOfFile("/x.png")->size().width, 12);
    EXPECT_EQ(first->size().width, 10);
}

// However many views show a picture, its pixels are there once.
TEST_F(ImagesInARoot, OfTheSameBytesShareTheirBitmap) {
    png("/x.png", 10);
    png("/x@2x.png", 10);
    png("/other.png", 11);
    DesktopImages service = images(1);
    const ImageRef first = service.imageWithContentsOfFile("/x.png");
    const ImageRef again = service.imageWithContentsOfFile("/x.png");
    const ImageRef twice = service.imageWithContentsOfFile("/x@2x.png");
    EXPECT_NE(first, again);
    EXPECT_EQ(first->bitmap(), again->bitmap());
    EXPECT_EQ(first->bitmap(), twice->bitmap());
    EXPECT_EQ(twice->scale(), 2);
    EXPECT_NE(first->bitmap(), service.imageWithContentsOfFile("/other.png")->bitmap());
}

TEST_F(ImagesInARoot, OfOtherBytesAreAnotherBitmapWhateverTheirNumber) {
    DesktopImages service = images(1);
    const auto fileOf = [](std::uint8_t red) {
        return encodePng(platform::Data{0, 0, red, 255}, 1, 1, 4);
    };
    // One file, as long as before, at once.
    file("/x.png", fileOf(1));
    const ImageRef first = service.imageWithContentsOfFile("/x.png");
    file("/x.png", fileOf(2));
    const ImageRef second = service.imageWithContentsOfFile("/x.png");
    EXPECT_EQ(pixelsOf(first->bitmap()), (std::vector<Bgra>{{0, 0, 1, 255}}));
    EXPECT_EQ(pixelsOf(second->bitmap()), (std::vector<Bgra>{{0, 0, 2, 255}}));
}

TEST_F(ImagesInARoot, ShareABitmapAmongManyThatComeAndGo) {
    DesktopImages service = images(1);
    png("/x.png", 300);
    const ImageRef kept = service.imageWithContentsOfFile("/x.png");
    for (std::size_t side = 1; side < 200; ++side) {
        png("/y.png", side);
        EXPECT_EQ(service.imageWithContentsOfFile("/y.png")->size().width,
                  static_cast<double>(side));
    }
    EXPECT_EQ(service.imageWithContentsOfFile("/x.png")->bitmap(), kept->bitmap());
}

TEST_F(ImagesInARoot, FromABitmapAreAtScaleOne) {
    DesktopImages service = images(3);
    const ImageRef image = service.imageWithCGImage(bitmap(4, 2, distinct(8)));
    EXPECT_EQ(image->scale(), 1);
    EXPECT_EQ(image->size(), (platform::Size{4, 2}));
    EXPECT_FALSE(image->hasCIImage());
    EXPECT_EQ(image->className(), "UIImage");
    EXPECT_EQ(service.imageWithCGImage(nullptr), nullptr);
    EXPECT_EQ(service.makeImage(bitmap(4, 2, distinct(8)), 2)->size(), (platform::Size{2, 1}));
}

TEST_F(ImagesInARoot, DrawIntoTheCurrentContextAlone) {
    DesktopImages service = images(2);
    const ImageRef image = service.imageWithCGImage(bitmap(2, 2, distinct(4)));
    service.drawInRect(image, {{0, 0}, {1, 1}});  // nowhere
    contexts.beginImageContextWithOptions({1, 1}, false, 2);
    service.drawInRect(nullptr, {{0, 0}, {1, 1}});
    service.drawInRect(image, {{0, 0}, {0, 1}});
    EXPECT_EQ(pixelsOf(contexts.current()->pixels()), flat(4, kClear));
    service.drawInRect(image, {{0, 0}, {1, 1}});
    EXPECT_EQ(pixelsOf(contexts.current()->pixels()), distinct(4));
    contexts.endImageContext();
}

TEST_F(ImagesInARoot, AsPngKeepTheirPixels) {
    DesktopImages service = images(2);
    const std::vector<Bgra> pixels = {kRed, kBlue, kClear, {10, 20, 30, 40}, kBlack, kRed};
    const auto file = service.pngRepresentation(service.makeImage(bitmap(3, 2, pixels), 3));
    ASSERT_TRUE(file);
    const auto decoded = decodeImage(*file);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->layout.width, 3U);
    EXPECT_EQ(pixelsOf(platform::BitmapImageRef(DesktopBitmapImage::create(*decoded))), pixels);
    EXPECT_EQ(service.pngRepresentation(nullptr), std::nullopt);
    EXPECT_EQ(service.pngRepresentation(service.makeImage(nullptr, 1)), std::nullopt);
}

TEST_F(ImagesInARoot, SendForAnAppsIcon) {
    DesktopImages service = images(2);
    EXPECT_EQ(service.applicationIconImageForBundleIdentifierFormatScale("a.b", 2, 3), nullptr);
    const ImageRef icon = service.makeImage(bitmap(1, 1, {kRed}), 1);
    service.setSendApplicationIconImage(
        [&](const platform::NullableString& identifier, int format, double scale) {
            EXPECT_EQ(identifier, "a.b");
            EXPECT_EQ(format, 2);
            EXPECT_EQ(scale, 3);
            return icon;
        });
    EXPECT_EQ(service.applicationIconImageForBundleIdentifierFormatScale("a.b", 2, 3), icon);
}

TEST(DesktopImage, DescribesItselfAsItsRelease) {
    const auto pixels = bitmap(3, 2, distinct(6));
    const auto pointer = [](const DesktopImage& image) {
        char text[32];
        std::snprintf(text, sizeof text, "%p", static_cast<const void*>(&image));
        return std::string(text);
    };
    const DesktopImage old(pixels, 1, ImageDescription::ios12);
    EXPECT_EQ(old.description(), "<UIImage: " + pointer(old) + ">, {3, 2}");
    const DesktopImage current(pixels, 2, ImageDescription::ios13);
    EXPECT_EQ(current.description(), "<UIImage:" + pointer(current) + " anonymous {1.5, 1}>");
}

TEST(DesktopImage, HasNoSizeWithoutABitmapAndNoScaleBelowOne) {
    const DesktopImage none(nullptr, 2, ImageDescription::ios13);
    EXPECT_EQ(none.size(), (platform::Size{0, 0}));
    EXPECT_EQ(none.bitmap(), nullptr);
    for (const double scale :
         {0.0, -1.0, static_cast<double>(NAN), static_cast<double>(INFINITY)}) {
        EXPECT_EQ(DesktopImage(nullptr, scale, ImageDescription::ios13).scale(), 1) << scale;
    }
}

}  // namespace velmoranth::desktop::test_images::image_files_test
