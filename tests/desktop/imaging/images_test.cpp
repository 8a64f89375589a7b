// Loading images and what images say about themselves.
#include "desktop/imaging/images.h"

#include "desktop/files/device_root.h"
#include "desktop/image_io/image_io.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::desktop::images_test {
namespace {

using Paths = std::vector<std::string>;

TEST(ImageCandidates, SiblingsByTheScaleOfTheScreen) {
    EXPECT_EQ(imageCandidates("/a/n.png", 3, ScaledSiblings::on),
              (Paths{"/a/n@3x.png", "/a/n@2x.png", "/a/n.png"}));
    EXPECT_EQ(imageCandidates("/a/n.png", 2, ScaledSiblings::on),
              (Paths{"/a/n@2x.png", "/a/n.png"}));
    EXPECT_EQ(imageCandidates("/a/n.png", 1, ScaledSiblings::on), Paths{"/a/n.png"});
    EXPECT_EQ(imageCandidates("/a/n.png", 3, ScaledSiblings::off), Paths{"/a/n.png"});
    EXPECT_EQ(imageCandidates("/a/n@2x.png", 3, ScaledSiblings::on), Paths{"/a/n@2x.png"});
    EXPECT_EQ(imageCandidates("/a.b/n", 2, ScaledSiblings::on), (Paths{"/a.b/n@2x", "/a.b/n"}));
    EXPECT_EQ(imageCandidates("/a/", 2, ScaledSiblings::on), Paths{"/a/"});
    EXPECT_EQ(imageCandidates("", 2, ScaledSiblings::on), Paths{""});
}

TEST(ScaleFromPath, OnlyBeforeTheExtensionOfTheName) {
    EXPECT_EQ(scaleFromPath("/a/n@2x.png"), 2);
    EXPECT_EQ(scaleFromPath("/a/n@3x.png"), 3);
    EXPECT_EQ(scaleFromPath("/a/n@2x"), 2);
    EXPECT_EQ(scaleFromPath("/a/n@2x~ipad.png"), 1);
    EXPECT_EQ(scaleFromPath("/a@2x/n.png"), 1);
    EXPECT_EQ(scaleFromPath("/a/n@4x.png"), 1);
}

class LoadImage : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = std::filesystem::temp_directory_path() / "images_test_XXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
    }

    void TearDown() override { std::filesystem::remove_all(folder_); }

    // A picture of `width` × 1 pixels.
    void addImage(const std::string& name, std::size_t width) const {
        const std::vector<std::uint8_t> pixels(width * 4, 255);
        const platform::Data file = encodePng(pixels, width, 1, width * 4);
        addFile(name, {file.begin(), file.end()});
    }

    void addFile(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
    }

    // Width in pixels and scale of what loading gives; 0 and 0 for nil.
    [[nodiscard]] std::pair<std::size_t, double> load(
        const std::string& path, double screenScale,
        ScaledSiblings siblings = ScaledSiblings::on) const {
        DesktopImageContexts contexts(screenScale, ImageDescription::ios13);
        DesktopImages images({.root = *DeviceRoot::open(folder_.string()),
                              .screenScale = screenScale,
                              .siblings = siblings},
                             contexts);
        const auto image = images.imageWithContentsOfFile(path);
        return image == nullptr ? std::pair<std::size_t, double>{0, 0}
                                : std::pair{image->bitmap()->layout().width, image->scale()};
    }

    std::filesystem::path folder_;
};

using Loaded = std::pair<std::size_t, double>;

TEST_F(LoadImage, TakesTheBestSiblingAndItsScale) {
    addImage("n.png", 1);
    addImage("n@2x.png", 2);
    addImage("n@3x.png", 3);
    EXPECT_EQ(load("/n.png", 3), (Loaded{3, 3}));
    EXPECT_EQ(load("/n.png", 2), (Loaded{2, 2}));
    EXPECT_EQ(load("/n.png", 1), (Loaded{1, 1}));
    EXPECT_EQ(load("/n.png", 3, ScaledSiblings::off), (Loaded{1, 1}));
    EXPECT_EQ(load("/n@2x.png", 3), (Loaded{2, 2}));
    EXPECT_EQ(load("/n@3x.png", 2, ScaledSiblings::off), (Loaded{3, 3}));
}

TEST_F(LoadImage, ASiblingWorksWithoutThePlainFile) {
    addImage("n@2x.png", 2);
    EXPECT_EQ(load("/n.png", 3), (Loaded{2, 2}));
    EXPECT_EQ(load("/n.png", 3, ScaledSiblings::off), (Loaded{0, 0}));
}

TEST_F(LoadImage, ABrokenSiblingIsPassedOver) {
    addFile("n@3x.png", "no image");
    addFile("n@2x.png", "");
    addImage("n.png", 1);
    EXPECT_EQ(load("/n.png", 3), (Loaded{1, 1}));
}

TEST_F(LoadImage, MissingAndBrokenFilesAreNil) {
    addFile("broken.png", "no image");
    EXPECT_EQ(load("/broken.png", 2), (Loaded{0, 0}));
    EXPECT_EQ(load("/missing.png", 2), (Loaded{0, 0}));
    EXPECT_EQ(load("/", 2), (Loaded{0, 0}));
}

TEST_F(LoadImage, ReadsAgainEveryTime) {
    addImage("n.png", 1);
    DesktopImageContexts contexts(1, ImageDescription::ios13);
    DesktopImages images({.root = *DeviceRoot::open(folder_.string()), .screenScale = 1}, contexts);
    EXPECT_EQ(images.imageWithContentsOfFile("/n.png")->size().width, 1);
    addImage("n.png", 5);
    EXPECT_EQ(images.imageWithContentsOfFile("/n.png")->size().width, 5);
}

TEST(Image, DescriptionFollowsTheRelease) {
    const auto bitmap = DesktopBitmapImage::createPremultiplied(
        std::make_shared<const platform::Data>(3 * 4), {3, 1}, 12);
    const DesktopImage older(bitmap, 2, ImageDescription::ios12);
    const DesktopImage newer(bitmap, 1, ImageDescription::ios13);
    char pointer[32];
    std::snprintf(pointer, sizeof pointer, "%p", static_cast<const void*>(&older));
    EXPECT_EQ(older.description(), "<UIImage: " + std::string(pointer) + ">, {1.5, 0.5}");
    std::snprintf(pointer, sizeof pointer, "%p", static_cast<const void*>(&newer));
    EXPECT_EQ(newer.description(), "<UIImage:" + std::string(pointer) + " anonymous {3, 1}>");
}

TEST(Image, OfACGImageHasScaleOneAndNilGivesNil) {
    DesktopImageContexts contexts(3, ImageDescription::ios13);
    DesktopImages images({.root = nullptr, .screenScale = 3}, contexts);
    const auto bitmap = DesktopBitmapImage::createPremultiplied(
        std::make_shared<const platform::Data>(3 * 4), {3, 1}, 12);
    EXPECT_EQ(images.imageWithCGImage(bitmap)->size(), (platform::Size{3, 1}));
    EXPECT_EQ(images.imageWithCGImage(nullptr), nullptr);
    EXPECT_EQ(images.pngRepresentation(nullptr), std::nullopt);
    const auto png = images.pngRepresentation(images.imageWithCGImage(bitmap));
    ASSERT_TRUE(png);
    EXPECT_EQ(decodeImage(*png)->layout.width, 3U);
}

}  // namespace
}  // namespace velmoranth::desktop::images_test
