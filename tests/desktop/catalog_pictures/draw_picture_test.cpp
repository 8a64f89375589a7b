#include "desktop/catalog_pictures/draw_picture.h"

#include "desktop/image_io/image_io.h"
#include "tests/support/catalog/car_writer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::desktop::draw_picture_test {
namespace {

using catalog::Catalog;
using catalog::fourCharacterCode;
using tests::ByteVector;
using tests::CarPixels;
using tests::CarWriter;

// Of the catalog's one rendition that has a name.
Result<DrawnImage> drawn(const CarWriter& car, double scale = 1) {
    const ByteVector bytes = car.build();
    const auto catalog = Catalog::fromBytes(bytes);
    const auto renditions = catalog->renditionsOf(*catalog->facet("Icon"));
    return drawPicture(*catalog, catalog->renditions()[renditions.front()], scale);
}

// Blue, green, red, alpha of a picture's first pixel.
std::vector<std::uint8_t> firstPixel(const DrawnImage& image) {
    return {image.bgra.begin(), image.bgra.begin() + 4};
}

CarWriter withName() {
    CarWriter car;
    car.facet("Icon", 7);
    return car;
}

TEST(DrawPicture, BitmapHasItsStoredPixelsAtEveryScale) {
    CarWriter car = withName();
    car.bitmap({.identifier = 7}, CarPixels::filled(3, 2, {10, 20, 30, 255}));
    const auto image = drawn(car, 3);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 3U);
    EXPECT_EQ(image->height, 2U);
    EXPECT_EQ(image->bgra.size(), 3U * 2 * 4);
    EXPECT_EQ(firstPixel(*image), (std::vector<std::uint8_t>{30, 20, 10, 255}));
}

TEST(DrawPicture, GrayComesOutInColorsOrder) {
    CarWriter car = withName();
    car.bitmap({.identifier = 7, .pixelFormat = fourCharacterCode("GA8 ")},
               CarPixels::filled(2, 2, {100, 100, 100, 200}));
    const auto image = drawn(car);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->bgra.size(), 2U * 2 * 4);
    EXPECT_EQ(firstPixel(*image), (std::vector<std::uint8_t>{100, 100, 100, 200}));
}

TEST(DrawPicture, PartOfAnAtlasIsCutOut) {
    CarWriter car = withName();
    car.atlas(1, CarPixels::filled(8, 8, {1, 2, 3, 255}));
    car.link({.identifier = 7}, {2, 2, 3, 4});
    const auto image = drawn(car);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 3U);
    EXPECT_EQ(image->height, 4U);
    EXPECT_EQ(firstPixel(*image), (std::vector<std::uint8_t>{3, 2, 1, 255}));
}

TEST(DrawPicture, VectorIsDrawnAtTheScale) {
    if (vectorLibraries().find("no librsvg") != std::string::npos) {
        GTEST_SKIP() << "built without SVG";
    }
    CarWriter car = withName();
    car.file({.identifier = 7, .pixelFormat = fourCharacterCode("SVG "), .layout = 9},
             R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="6">)"
             R"(<rect width="10" height="6" fill="#00ff00"/></svg>)");
    const auto image = drawn(car, 2);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(image->width, 20U);
    EXPECT_EQ(image->height, 12U);
    EXPECT_EQ(firstPixel(*image), (std::vector<std::uint8_t>{0, 255, 0, 255}));
}

TEST(DrawPicture, ImageFileIsTurnedAsTheRecordHasIt) {
    const std::vector<std::uint8_t> bgra(2UL * 4 * 4, 255);
    const platform::Data png = encodePng(bgra, 2, 4, 8);
    CarWriter car = withName();
    car.file({.identifier = 7,
              .width = 4,
              .height = 2,
              .pixelFormat = fourCharacterCode("JPEG"),
              .orientation = 6},
             {reinterpret_cast<const char*>(png.data()), png.size()});
    const auto image = drawn(car, 2);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(image->width, 4U);
    EXPECT_EQ(image->height, 2U);
}

TEST(DrawPicture, WhatIsNoPictureIsAProblem) {
    CarWriter damaged = withName();
    damaged.record(damaged.key({.identifier = 7}), ByteVector(10, 1));
    const auto unreadable = drawn(damaged);
    ASSERT_FALSE(unreadable);
    EXPECT_NE(unreadable.error().message, "");
    CarWriter color = withName();
    color.color({.identifier = 7}, 1, {1, 0, 0, 1});
    EXPECT_FALSE(drawn(color));
}

}  // namespace
}  // namespace velmoranth::desktop::draw_picture_test
