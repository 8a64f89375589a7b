#include "desktop/catalog/catalog.h"

#include "tests/support/catalog/car_writer.h"
#include "tests/support/temporary_folder.h"

#include "opened_catalog.h"
#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace velmoranth::catalog::catalog_test {
namespace {

using tests::ByteVector;
using tests::CarPixels;
using tests::CarRendition;
using tests::CarWriter;

std::vector<std::string> facetNames(const Catalog& catalog) {
    std::vector<std::string> names;
    for (const Facet& facet : catalog.facets()) {
        names.emplace_back(facet.name);
    }
    return names;
}

// Empty when there is a picture.
std::string messageOf(const Result<Picture>& picture) {
    return picture ? "" : picture.error().message;
}

TEST(Catalog, ReadsHeaderAndMetadata) {
    CarWriter car;
    car.color({.identifier = 1}, 1, {0, 1});
    const Opened catalog(car);
    EXPECT_EQ(catalog->header().coreUIVersion, 498U);
    EXPECT_EQ(catalog->header().storageVersion, 15U);
    EXPECT_EQ(catalog->header().renditionCount, 1U);
    EXPECT_EQ(catalog->header().schemaVersion, 2U);
    EXPECT_EQ(catalog->header().keySemantics, 2U);
    EXPECT_EQ(catalog->header().coreUIText, "@(#)PROGRAM:CoreUI  PROJECT:CoreUI-498.40.1");
    EXPECT_EQ(catalog->header().tool, "a test");
    EXPECT_EQ(catalog->header().platform, "ios");
    EXPECT_EQ(catalog->header().deploymentVersion, "12.0");
    EXPECT_EQ(catalog->keyFormat(), CarWriter::kKeyFormat);
    EXPECT_TRUE(catalog->warnings().empty());
}

TEST(Catalog, DoesWithoutMetadataAndAppearances) {
    CarWriter car;
    car.platform = "";
    const Opened catalog(car);
    EXPECT_EQ(catalog->header().platform, "");
    EXPECT_TRUE(catalog->appearances().empty());
    EXPECT_TRUE(catalog->warnings().empty());
}

TEST(Catalog, ListsFacetsByName) {
    CarWriter car;
    car.facet("b", 2, {{16, 568}});
    car.facet("Folder/a", 1);
    car.facet(std::string("../\0\xFF", 5), 3);
    const Opened catalog(car);
    EXPECT_EQ(facetNames(*catalog),
              (std::vector<std::string>{std::string("../\0\xFF", 5), "Folder/a", "b"}));
    const Facet* facet = catalog->facet("b");
    ASSERT_NE(facet, nullptr);
    EXPECT_EQ(facet->identifier, 2);
    EXPECT_EQ(facet->attributes,
              (std::vector<AttributeValue>{{1, 85}, {2, 181}, {17, 2}, {16, 568}}));
    EXPECT_EQ(catalog->facet("c"), nullptr);
    EXPECT_EQ(catalog->facet(""), nullptr);
    EXPECT_NE(catalog->facet(std::string("../\0\xFF", 5)), nullptr);
    EXPECT_EQ(catalog->facet("../"), nullptr);
}

TEST(Catalog, JoinsFacetsAndRenditionsByIdentifier) {
    CarWriter car;
    car.facet("a", 7);
    car.facet("b", 9);
    car.facet("none", 0);
    car.bitmap({.identifier = 7, .scale = 2, .name = "a2"}, CarPixels::pattern(2, 2));
    car.bitmap({.identifier = 9, .name = "b1"}, CarPixels::pattern(1, 1));
    car.bitmap({.identifier = 7, .name = "a1"}, CarPixels::pattern(1, 1));
    car.bitmap({.identifier = 0, .name = "0"}, CarPixels::pattern(1, 1));
    car.bitmap({.identifier = 8, .scale = 3, .name = "8"}, CarPixels::pattern(1, 1));
    const Opened catalog(car);
    const auto& renditions = catalog->renditions();
    ASSERT_EQ(renditions.size(), 5U);
    EXPECT_EQ(renditions.back().name, "8");
    EXPECT_EQ(catalog->facetOf(renditions.back()), nullptr);
    const auto places = catalog->renditionsOf(*catalog->facet("a"));
    ASSERT_EQ(places.size(), 2U);
    EXPECT_EQ(renditions[places[0]].name, "a1");
    EXPECT_EQ(renditions[places[1]].name, "a2");
    EXPECT_EQ(catalog->attribute(renditions[places[1]], Attribute::scale), 2);
    EXPECT_EQ(catalog->attribute(renditions[places[1]], Attribute::look), 0);
    EXPECT_EQ(catalog->facetOf(renditions[places[1]]), catalog->facet("a"));
    EXPECT_EQ(renditions.front().name, "0");
    EXPECT_EQ(catalog->facetOf(renditions.front()), nullptr);
    EXPECT_TRUE(catalog->renditionsOf(*catalog->facet("none")).empty());
}

TEST(Catalog, ReadsTreesOfSeveralLevels) {
    CarWriter car;
    car.entriesPerPage = 3;
    for (std::uint16_t i = 1; i <= 200; ++i) {
        car.facet("name" + std::to_string(i), i);
        car.color({.identifier = i}, 1, {i / 200.0, 1});
        car.appearance("appearance" + std::to_string(i), i);
    }
    const Opened catalog(car);
    EXPECT_EQ(catalog->facets().size(), 200U);
    EXPECT_EQ(catalog->renditions().size(), 200U);
    EXPECT_EQ(catalog->appearances().size(), 200U);
    EXPECT_TRUE(catalog->warnings().empty());
    EXPECT_EQ(catalog->color(catalog.only("name100"))->components, (std::vector<double>{0.5, 1}));
}

TEST(Catalog, ListsAppearances) {
    CarWriter car;
    car.appearance("UIAppearanceDark", 1);
    car.appearance("UIAppearanceAny", 0);
    const Opened catalog(car);
    ASSERT_EQ(catalog->appearances().size(), 2U);
    EXPECT_EQ(catalog->appearances()[0].name, "UIAppearanceAny");
    EXPECT_EQ(catalog->appearances()[1].name, "UIAppearanceDark");
    EXPECT_EQ(catalog->appearances()[1].number, 1);
}

TEST(Catalog, CorrectsTheKeyFormat) {
    CarWriter car;
    car.keyFormat = {12, 5, 17, 1, 2, 8};
    car.keyFormatCorrections = {0, 25, 0, 0, 0, 0};
    car.facet("a", 7);
    car.bitmap({.identifier = 7, .attributes = {{Attribute::deploymentTarget, 3}}},
               CarPixels::pattern(1, 1));
    const Opened catalog(car);
    EXPECT_EQ(catalog->keyFormat(), (std::vector<std::uint16_t>{12, 25, 17, 1, 2, 8}));
    EXPECT_EQ(catalog->attribute(catalog.only("a"), Attribute::deploymentTarget), 3);
}

TEST(Catalog, DecodesBitmaps) {
    CarWriter car;
    car.facet("a", 7);
    const CarPixels pixels = CarPixels::pattern(5, 3);
    car.bitmap({.identifier = 7, .rowBytes = 64}, pixels);
    const Opened catalog(car);
    const auto picture = catalog->decode(catalog.only("a"));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 5U);
    EXPECT_EQ(picture->height, 3U);
    EXPECT_EQ(toRgba(*picture), pixels.rgba);
}

TEST(Catalog, CutsLinksOutOfTheirAtlas) {
    CarWriter car;
    car.facet("a", 7);
    const CarPixels pixels = CarPixels::pattern(10, 8);
    car.atlas(1, CarPixels::filled(10, 8, {1, 1, 1, 1}));
    car.atlas(2, pixels);
    car.link({.identifier = 7}, {.x = 2, .y = 1, .width = 3, .height = 2}, 2);
    const Opened catalog(car);
    const Rendition& link = catalog.only("a");
    const Rendition* atlas = catalog->source(link);
    ASSERT_NE(atlas, nullptr);
    EXPECT_EQ(atlas->kind, Kind::atlas);
    EXPECT_EQ(atlas->name, "ZZZZPackedAsset-1.2.0");
    const auto picture = catalog->decode(link);
    ASSERT_TRUE(picture);
    ByteVector expected;
    // A row above the bottom row, so rows 5 and 6 of 0 to 7.
    for (const std::size_t y : {std::size_t{5}, std::size_t{6}}) {
        const auto row = pixels.rgba.begin() + static_cast<std::ptrdiff_t>((y * 10 + 2) * 4);
        expected.insert(expected.end(), row, row + 12);
    }
    EXPECT_EQ(toRgba(*picture), expected);
    EXPECT_EQ(picture->width, 3U);
    EXPECT_EQ(picture->height, 2U);
}

TEST(Catalog, LinksHaveThePixelFormatOfTheirAtlas) {
    CarWriter car;
    car.facet("a", 7);
    car.atlas(1, CarPixels::filled(4, 4, {50, 50, 50, 200}),
              {.pixelFormat = fourCharacterCode("GA8 ")});
    car.link({.identifier = 7}, {.x = 0, .y = 0, .width = 1, .height = 1});
    const Opened catalog(car);
    const auto picture = catalog->decode(catalog.only("a"));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->format, Picture::Format::grayAlpha);
    EXPECT_EQ(picture->pixels, (ByteVector{50, 200}));
}

TEST(Catalog, ResolvesLinksByTheCorrectedKeyFormat) {
    CarWriter car;
    car.keyFormat = {12, 5, 17, 1, 2, 8};
    car.keyFormatCorrections = {0, 25, 0, 0, 0, 0};
    car.facet("a", 7);
    const CarPixels pixels = CarPixels::pattern(2, 2);
    car.atlas(1, CarPixels::filled(2, 2, {9, 9, 9, 9}));
    car.atlas(1, pixels, {.attributes = {{Attribute::deploymentTarget, 3}}});
    Link link{.part = {.x = 0, .y = 0, .width = 2, .height = 2},
              .layout = 12,
              .atlasKey = CarWriter::atlasKey(1)};
    link.atlasKey.emplace_back(25, 3);
    car.rendition({.identifier = 7, .width = 2, .height = 2, .layout = 1003, .link = link});
    const Opened catalog(car);
    const auto picture = catalog->decode(catalog.only("a"));
    ASSERT_TRUE(picture) << picture.error().message;
    EXPECT_EQ(toRgba(*picture), pixels.rgba);
}

TEST(Catalog, FollowsChainsOfLinks) {
    CarWriter car;
    car.facet("inner", 7);
    car.facet("outer", 8);
    const CarPixels pixels = CarPixels::pattern(10, 10);
    car.atlas(1, pixels);
    car.link({.identifier = 7}, {.x = 2, .y = 2, .width = 6, .height = 6});
    const Link link{.part = {.x = 1, .y = 1, .width = 1, .height = 1},
                    .layout = 12,
                    .atlasKey = {{1, 85}, {2, 181}, {12, 1}, {17, 7}}};
    car.rendition({.identifier = 8, .layout = 1003, .link = link});
    const Opened catalog(car);
    EXPECT_EQ(catalog->source(catalog.only("outer")), &catalog.only("inner"));
    const auto picture = catalog->decode(catalog.only("outer"));
    ASSERT_TRUE(picture) << picture.error().message;
    // Column 2 + 1, row 9 - 2 - 1 from the top.
    EXPECT_EQ(toRgba(*picture), (ByteVector{6, 12, 3 ^ 6, 255}));
}

TEST(Catalog, LinksThatLeadNowhereAreProblems) {
    CarWriter car;
    car.facet("lost", 1);
    car.facet("itself", 2);
    car.facet("outside", 3);
    car.facet("empty", 4);
    car.facet("to a color", 5);
    car.facet("color", 6);
    car.facet("slotless", 7);
    car.atlas(1, CarPixels::pattern(4, 4));
    car.link({.identifier = 1}, {.x = 0, .y = 0, .width = 1, .height = 1}, 9);
    const auto linkTo = [&](std::uint16_t from, const std::vector<AttributeValue>& key) {
        const Link link{
            .part = {.x = 0, .y = 0, .width = 1, .height = 1}, .layout = 12, .atlasKey = key};
        car.rendition({.identifier = from, .layout = 1003, .link = link});
    };
    linkTo(2, {{1, 85}, {2, 181}, {12, 1}, {17, 2}});
    car.link({.identifier = 3}, {.x = 0xFFFFFFFF, .y = 0, .width = 2, .height = 1});
    car.link({.identifier = 4}, {.x = 0, .y = 0, .width = 0, .height = 1});
    linkTo(5, {{1, 85}, {2, 217}, {12, 1}, {17, 6}});
    car.color({.identifier = 6}, 1, {0, 1});
    linkTo(7, {{1, 9}, {2, 181}, {8, 1}, {12, 1}, {27, 1}});
    const Opened catalog(car);
    const auto message = [&](const std::string& name) {
        return messageOf(catalog->decode(catalog.only(name)));
    };
    EXPECT_EQ(catalog->source(catalog.only("lost")), nullptr);
    EXPECT_EQ(message("lost"), "the link leads to no rendition of the catalog");
    EXPECT_EQ(message("itself"), "the link leads to another link, and so on");
    EXPECT_EQ(message("outside"), "the link shows a part that lies outside its atlas");
    EXPECT_EQ(message("empty"), "the link shows a part that lies outside its atlas");
    EXPECT_EQ(message("to a color"), "the rendition has no pixels: it is of the kind \"color\"");
    EXPECT_EQ(message("slotless"), "the link leads to no rendition of the catalog");
    EXPECT_EQ(catalog->decode(catalog.only("outside")).error().path, "Assets.car");
}

TEST(Catalog, CompressionsThatNobodyHasDescribedAreNamed) {
    const std::vector<std::pair<std::uint32_t, std::string>> names{
        {5, "the compression JPEG with LZFSE is not supported"},
        {6, "the compression blurred is not supported"},
        {7, "the compression ASTC is not supported"},
        {9, "the compression HEVC is not supported"},
        {12, "the compression DXTC is not supported"},
        {77, "compression 77 is not supported"},
    };
    for (const auto& [number, message] : names) {
        CarWriter car;
        car.facet("a", 1);
        car.bitmap({.identifier = 1, .width = 1, .height = 1}, static_cast<Compression>(number),
                   ByteVector(4));
        const Opened catalog(car);
        const auto picture = catalog->decode(catalog.only("a"));
        EXPECT_EQ(messageOf(picture), message);
        EXPECT_EQ(picture.error().path, "Assets.car");
        EXPECT_TRUE(picture.error().offset);
    }
}

TEST(Catalog, DecodesNothingElse) {
    CarWriter car;
    car.facet("pdf", 1);
    car.file({.identifier = 1, .pixelFormat = fourCharacterCode("PDF "), .layout = 9}, "%PDF");
    const Opened catalog(car);
    EXPECT_EQ(messageOf(catalog->decode(catalog.only("pdf"))),
              "the rendition has no pixels: it is of the kind \"vector\"");
}

TEST(Catalog, DamagedRenditionsAreListed) {
    CarWriter car;
    car.facet("damaged", 1);
    car.facet("sound", 2);
    car.record(car.key({.identifier = 1}), {'I', 'S', 'T', 'C'});
    car.color({.identifier = 2}, 1, {0, 1});
    car.record({1, 2, 3}, CarWriter::record({.layout = 1009}));
    const Opened catalog(car);
    ASSERT_EQ(catalog->renditions().size(), 3U);
    const Rendition& damaged = catalog.only("damaged");
    EXPECT_EQ(damaged.kind, Kind::unreadable);
    EXPECT_EQ(damaged.problem, "its record is truncated");
    EXPECT_EQ(messageOf(catalog->decode(damaged)), "its record is truncated");
    EXPECT_FALSE(catalog->file(damaged));
    EXPECT_FALSE(catalog->color(damaged));
    EXPECT_TRUE(catalog->color(catalog.only("sound")));
    EXPECT_EQ(catalog->renditions()[2].key.size(), 3U);
    EXPECT_EQ(catalog->renditions()[2].kind, Kind::unreadable);
    EXPECT_EQ(catalog->renditions()[2].problem, "its key is too short");
    EXPECT_TRUE(catalog->warnings().empty());
}

TEST(Catalog, RestOfLongKeysDoesNotCount) {
    CarWriter car;
    car.facet("a", 7);
    ByteVector key = car.key({.element = 9, .attributes = {{Attribute::dimension1, 1}}});
    key.insert(key.end(), {0, 0});
    const CarPixels pixels = CarPixels::pattern(1, 1);
    car.record(key, CarWriter::record({.width = 1,
                                       .height = 1,
                                       .layout = 1004,
                                       .payload = tests::bitmapPayload(
                                           Compression::uncompressed,
                                           tests::storedRows(pixels, fourCharacterCode("ARGB")))}));
    car.link({.identifier = 7}, {.x = 0, .y = 0, .width = 1, .height = 1});
    const Opened catalog(car);
    const auto picture = catalog->decode(catalog.only("a"));
    ASSERT_TRUE(picture) << picture.error().message;
    EXPECT_EQ(toRgba(*picture), pixels.rgba);
}

TEST(Catalog, FindsThingsInTreesThatAreNotSorted) {
    CarWriter car;
    tests::BomWriter container = car.container();
    const auto facet = [](std::uint8_t identifier) {
        return ByteVector{0, 0, 0, 0, 1, 0, 17, 0, identifier, 0};
    };
    container.name("FACETKEYS",
                   container.addTree({{{'c'}, facet(3)}, {{'a'}, facet(1)}, {{'b'}, facet(2)}}));
    const ByteVector record = CarWriter::record({.layout = 1009});
    container.name("RENDITIONS", container.addTree({{car.key({.identifier = 2}), record},
                                                    {car.key({.identifier = 1}), record}}));
    const Opened catalog(container.build());
    EXPECT_EQ(facetNames(*catalog), (std::vector<std::string>{"c", "a", "b"}));
    ASSERT_NE(catalog->facet("a"), nullptr);
    EXPECT_EQ(catalog->facet("a")->identifier, 1);
    EXPECT_EQ(&catalog.only("a"), &catalog->renditions()[1]);
    EXPECT_EQ(&catalog.only("b"), &catalog->renditions()[0]);
}

TEST(Catalog, OpensFiles) {
    const tests::TemporaryFolder folder;
    CarWriter car;
    car.facet("a", 7);
    const CarPixels pixels = CarPixels::pattern(3, 3);
    car.bitmap({.identifier = 7}, pixels);
    const ByteVector bytes = car.build();
    folder.file("Assets.car", std::string(bytes.begin(), bytes.end()));
    auto opened = Catalog::open(folder / "Assets.car");
    ASSERT_TRUE(opened);
    // What was handed out stays good when the catalog moves.
    const Rendition& rendition = opened->renditions().front();
    const Catalog catalog = std::move(*opened);
    const auto picture = catalog.decode(rendition);
    ASSERT_TRUE(picture);
    EXPECT_EQ(toRgba(*picture), pixels.rgba);
}

TEST(Catalog, FilesThatCannotBeOpenedAreProblems) {
    const tests::TemporaryFolder folder;
    folder.file("empty", "");
    folder.file("text", "hello");
    const auto problem = [&](const std::string& name, const Limits& limits = {}) {
        const auto catalog = Catalog::open(folder / name, limits);
        EXPECT_EQ(catalog.error().path, folder / name);
        return catalog.error().message;
    };
    EXPECT_EQ(problem("none"), "the file cannot be opened: no such file or directory");
    EXPECT_EQ(problem("."), "it is not a regular file");
    EXPECT_EQ(problem("empty"), "the file is empty");
    EXPECT_EQ(problem("text"), "it is not a compiled asset catalog");
    EXPECT_EQ(problem("text", {.maxFileBytes = 4}), "the file has more than 4 bytes, the limit");
    EXPECT_EQ(Catalog::fromBytes(ByteVector(5), "x", {.maxFileBytes = 4}).error().message,
              "the file has more than 4 bytes, the limit");
}

}  // namespace
}  // namespace velmoranth::catalog::catalog_test
