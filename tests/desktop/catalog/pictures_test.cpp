#include "desktop/catalog/pictures.h"

#include "tests/support/catalog/car_writer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmoranth::catalog::pictures_test {
namespace {

using tests::ByteVector;
using tests::CarPixels;
using tests::CarRendition;
using tests::CarWriter;

const CarPixels kPixels = CarPixels::pattern(4, 4);

CarRendition copyFor(std::uint16_t target, const std::string& name, std::uint16_t scale = 1) {
    return {.identifier = 7,
            .scale = scale,
            .attributes = {{Attribute::deploymentTarget, target}},
            .name = name};
}

// The names of the pictures of the facet "Icon".
std::vector<std::string> names(const CarWriter& car) {
    const ByteVector bytes = car.build();
    const auto catalog = Catalog::fromBytes(bytes);
    std::vector<std::string> found;
    for (const Rendition* const rendition : picturesOf(*catalog, *catalog->facet("Icon"))) {
        found.emplace_back(rendition->name);
    }
    return found;
}

TEST(CatalogPictures, AreThoseOfTheNameInTheCatalogsOrder) {
    CarWriter car;
    car.facet("Icon", 7);
    car.facet("Other", 8);
    car.bitmap({.identifier = 7, .scale = 3, .name = "c"}, kPixels);
    car.bitmap({.identifier = 8, .scale = 1, .name = "other"}, kPixels);
    car.bitmap({.identifier = 7, .scale = 1, .name = "a"}, kPixels);
    car.bitmap({.identifier = 7, .scale = 2, .name = "b"}, kPixels);
    EXPECT_EQ(names(car), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(CatalogPictures, AreNoColorsDataOrDamagedRecords) {
    CarWriter car;
    car.facet("Icon", 7);
    car.color({.identifier = 7, .scale = 1, .name = "color"}, 1, {0, 1});
    car.file({.identifier = 7,
              .scale = 2,
              .name = "data",
              .pixelFormat = fourCharacterCode("DATA"),
              .layout = 1000},
             "text");
    car.record(car.key({.identifier = 7, .scale = 3}), ByteVector{1, 2, 3});
    EXPECT_EQ(names(car), std::vector<std::string>());
    car.file({.identifier = 7,
              .scale = 4,
              .name = "vector",
              .pixelFormat = fourCharacterCode("PDF "),
              .layout = 9},
             "text");
    EXPECT_EQ(names(car), std::vector<std::string>{"vector"});
}

TEST(CatalogPictures, OldestCopyStandsForThoseOfAllTargets) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap(copyFor(5, "newest"), kPixels);
    car.bitmap(copyFor(3, "newer"), kPixels);
    car.bitmap(copyFor(0, "oldest"), kPixels);
    car.bitmap(copyFor(5, "only new", 2), kPixels);
    EXPECT_EQ(names(car), (std::vector<std::string>{"oldest", "only new"}));
}

TEST(CatalogPictures, TargetIsKnownByTheCorrectedKeyFormat) {
    CarWriter car;
    car.keyFormat = {5, 12, 17, 1, 2};
    car.keyFormatCorrections = {25, 0, 0, 0, 0};
    car.facet("Icon", 7);
    car.bitmap(copyFor(3, "newer"), kPixels);
    car.bitmap(copyFor(0, "oldest"), kPixels);
    EXPECT_EQ(names(car), std::vector<std::string>{"oldest"});
}

TEST(CatalogPictures, AnyOtherDifferenceMakesAPictureOfItsOwn) {
    CarWriter car;
    car.facet("Icon", 7);
    car.appearance("UIAppearanceDark", 1);
    car.bitmap(copyFor(0, "any"), kPixels);
    CarRendition dark = copyFor(3, "dark");
    dark.attributes.emplace_back(Attribute::appearance, std::uint16_t{1});
    car.bitmap(dark, kPixels);
    EXPECT_EQ(names(car), (std::vector<std::string>{"any", "dark"}));
}

TEST(CatalogPictures, DamagedCopyIsNotTaken) {
    CarWriter car;
    car.facet("Icon", 7);
    car.record(car.key(copyFor(0, "")), ByteVector{1, 2, 3});
    car.bitmap(copyFor(3, "newer"), kPixels);
    EXPECT_EQ(names(car), std::vector<std::string>{"newer"});
}

TEST(CatalogPictures, CopyThatNothingDecodesIsTheLastChoice) {
    const ByteVector data(16, 1);
    CarWriter car;
    car.facet("Icon", 7);
    CarRendition oldest = copyFor(0, "oldest");
    oldest.width = 4;
    oldest.height = 4;
    car.bitmap(oldest, Compression::astc, data);
    car.bitmap(copyFor(5, "newest"), kPixels);
    car.bitmap(copyFor(3, "newer"), kPixels);
    // Of these no copy can be decoded.
    for (const std::uint16_t target : {std::uint16_t{0}, std::uint16_t{3}}) {
        CarRendition copy = copyFor(target, "blurred " + std::to_string(target), 2);
        copy.width = 4;
        copy.height = 4;
        car.bitmap(copy, Compression::blurred, data);
    }
    EXPECT_EQ(names(car), (std::vector<std::string>{"newer", "blurred 0"}));
    const ByteVector bytes = car.build();
    const auto catalog = Catalog::fromBytes(bytes);
    std::vector<std::vector<std::string>> copies;
    for (const PictureCopies& picture : copiesOf(*catalog, *catalog->facet("Icon"))) {
        copies.emplace_back();
        for (const Rendition* const copy : picture) {
            copies.back().emplace_back(copy->name);
        }
    }
    EXPECT_EQ(copies, (std::vector<std::vector<std::string>>{{"newer", "newest", "oldest"},
                                                             {"blurred 0", "blurred 3"}}));
}

TEST(CatalogPictures, PartOfAnAtlasThatNothingDecodesIsTheLastChoice) {
    CarWriter car;
    car.facet("Icon", 7);
    car.rendition({.element = 9,
                   .attributes = {{Attribute::dimension1, 1}},
                   .width = 8,
                   .height = 8,
                   .layout = 1004,
                   .payload = tests::bitmapPayload(Compression::astc, ByteVector(16, 1))});
    car.atlas(2, CarPixels::pattern(8, 8));
    car.link(copyFor(0, "oldest"), {0, 0, 4, 4}, 1);
    car.link(copyFor(3, "newer"), {0, 0, 4, 4}, 2);
    EXPECT_EQ(names(car), std::vector<std::string>{"newer"});
}

double scaleOf(std::optional<std::uint32_t> percent, std::uint16_t scale) {
    CarWriter car;
    car.bitmap({.identifier = 7, .scale = scale, .scalePercent = percent}, kPixels);
    const ByteVector bytes = car.build();
    const auto catalog = Catalog::fromBytes(bytes);
    return pictureScale(*catalog, catalog->renditions().front());
}

TEST(PictureScale, IsTheRecordsThenThatOfTheKeyThenOne) {
    EXPECT_EQ(scaleOf(200, 3), 2);
    EXPECT_EQ(scaleOf(150, 1), 1.5);
    EXPECT_EQ(scaleOf(0, 1), 1);
    EXPECT_EQ(scaleOf(0, 3), 3);
    EXPECT_EQ(scaleOf(0, 0), 1);
    EXPECT_EQ(scaleOf(0, 4), 1);
}

}  // namespace
}  // namespace velmoranth::catalog::pictures_test
