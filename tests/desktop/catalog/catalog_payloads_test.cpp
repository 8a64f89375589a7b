#include "desktop/catalog/catalog.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/catalog/lzfse_writer.h"

#include "opened_catalog.h"
#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace velmoranth::catalog::catalog_payloads_test {
namespace {

using tests::ByteVector;
using tests::CarRendition;
using tests::CarWriter;

TEST(CatalogPayloads, GivesFiles) {
    CarWriter car;
    car.facet("plain", 1);
    car.facet("compressed", 2);
    car.facet("not compressed", 3);
    car.facet("stack", 4);
    car.facet("begins so", 5);
    const std::string text = "%PDF-1.4 and so on, and so on, and so on";
    const ByteVector stream = tests::lzfse(ByteVector(text.begin(), text.end()));
    const CarRendition data{.pixelFormat = fourCharacterCode("DATA"), .layout = 1000};
    const auto add = [&](std::uint16_t identifier, const std::string& contents,
                         std::uint32_t version) {
        CarRendition rendition = data;
        rendition.identifier = identifier;
        car.file(rendition, contents, version);
    };
    add(1, text, 0);
    add(2, std::string(stream.begin(), stream.end()), 1);
    add(3, text, 1);
    car.file({.identifier = 4, .pixelFormat = fourCharacterCode("DATA"), .layout = 1019}, "");
    add(5, "bvx2 is how this file begins", 0);
    const Opened catalog(car);
    const auto file = [&](const std::string& name) {
        const auto bytes = catalog->file(catalog.only(name));
        EXPECT_TRUE(bytes) << name;
        return bytes ? std::string(bytes->begin(), bytes->end()) : "";
    };
    EXPECT_EQ(file("plain"), text);
    EXPECT_EQ(file("compressed"), text);
    EXPECT_EQ(file("not compressed"), text);
    EXPECT_EQ(file("stack"), "");
    EXPECT_EQ(file("begins so"), "bvx2 is how this file begins");
}

TEST(CatalogPayloads, LinksToDataAreTheWholeFile) {
    CarWriter car;
    car.facet("link", 1);
    car.facet("data", 2);
    car.file({.identifier = 2, .pixelFormat = fourCharacterCode("DATA"), .layout = 1000}, "text");
    const Link link{.part = {}, .layout = 1000, .atlasKey = {{1, 85}, {2, 181}, {12, 1}, {17, 2}}};
    car.rendition({.identifier = 1, .layout = 1003, .link = link});
    const Opened catalog(car);
    const Rendition& rendition = catalog.only("link");
    EXPECT_EQ(rendition.kind, Kind::data);
    EXPECT_EQ(catalog->file(rendition), (ByteVector{'t', 'e', 'x', 't'}));
}

TEST(CatalogPayloads, DamagedFilesAreProblems) {
    CarWriter car;
    const std::string text(5000, 'x');
    ByteVector cutStream = tests::lzfse(ByteVector(text.begin(), text.end()));
    cutStream.resize(cutStream.size() - 5);
    // A match that begins before the file does.
    tests::LzfseWriter farAway;
    farAway.appendTriples(ByteVector{'x'}, std::vector<tests::LzfseTriple>{{1, 9, 5}}, 10,
                          tests::LzfseBlock::packedTables);
    const ByteVector damagedStream = farAway.finish();
    const ByteVector boastingStream =
        tests::ByteWriter().text("bvxn").u32(0x10000000).u32(8).zeros(8).text("bvx$").take();
    CarRendition cut{.identifier = 1, .pixelFormat = fourCharacterCode("PDF "), .layout = 9};
    cut.payload = tests::filePayload(ByteVector(10));
    cut.payload.resize(cut.payload.size() - 1);
    car.rendition(cut);
    car.file({.identifier = 2, .pixelFormat = fourCharacterCode("PDF "), .layout = 9},
             std::string(cutStream.begin(), cutStream.end()), 1);
    car.color({.identifier = 3}, 1, {0, 1});
    car.file({.identifier = 4, .pixelFormat = fourCharacterCode("PDF "), .layout = 9},
             std::string(damagedStream.begin(), damagedStream.end()), 1);
    car.file({.identifier = 5, .pixelFormat = fourCharacterCode("PDF "), .layout = 9},
             std::string(boastingStream.begin(), boastingStream.end()), 1);
    car.facet("cut", 1);
    car.facet("cut stream", 2);
    car.facet("color", 3);
    car.facet("damaged", 4);
    car.facet("boasting", 5);
    const Opened catalog(car);
    const auto problem = [&](const std::string& name) {
        return catalog->file(catalog.only(name)).error();
    };
    EXPECT_EQ(problem("cut").message, "the file is truncated");
    EXPECT_EQ(problem("cut").path, "Assets.car");
    EXPECT_EQ(problem("boasting").message, "the file's compressed data is too short for its size");
    EXPECT_EQ(problem("cut stream").message, "the file's compressed data is damaged");
    EXPECT_EQ(problem("damaged").message, "the file's compressed data is damaged");
    EXPECT_EQ(problem("color").message, "the rendition is not a file");
}

TEST(CatalogPayloads, FilesBeyondTheLimitAreRefused) {
    CarWriter car;
    const std::string text(5000, 'x');
    const ByteVector stream = tests::lzfse(ByteVector(text.begin(), text.end()));
    const auto data = fourCharacterCode("DATA");
    car.file({.identifier = 1, .pixelFormat = data, .layout = 1000}, text);
    car.file({.identifier = 2, .pixelFormat = data, .layout = 1000},
             std::string(stream.begin(), stream.end()), 1);
    car.facet("plain", 1);
    car.facet("compressed", 2);
    const Opened enough(car, {.maxBytes = 5000});
    EXPECT_TRUE(enough->file(enough.only("plain")));
    EXPECT_TRUE(enough->file(enough.only("compressed")));
    const Opened less(car, {.maxBytes = 4999});
    for (const char* name : {"plain", "compressed"}) {
        EXPECT_EQ(less->file(less.only(name)).error().message,
                  "the file has more than 4999 bytes, the limit");
    }
}

TEST(CatalogPayloads, ReadsColors) {
    CarWriter car;
    car.facet("gray", 1);
    car.facet("red", 2);
    car.color({.identifier = 1}, 2, {0.25, 1});
    car.color({.identifier = 2}, 0x103, {1.5, 0, -0.25, 0.5});
    const Opened catalog(car);
    const auto gray = catalog->color(catalog.only("gray"));
    ASSERT_TRUE(gray);
    EXPECT_EQ(gray->colorSpace, 2U);
    EXPECT_EQ(gray->components, (std::vector<double>{0.25, 1}));
    const auto red = catalog->color(catalog.only("red"));
    ASSERT_TRUE(red);
    EXPECT_EQ(red->colorSpace, 3U);
    EXPECT_EQ(red->components, (std::vector<double>{1.5, 0, -0.25, 0.5}));
}

TEST(CatalogPayloads, DamagedColorsAreProblems) {
    const auto message = [](const ByteVector& payload) {
        CarWriter car;
        car.facet("a", 1);
        car.rendition({.identifier = 1, .layout = 1009, .payload = payload});
        const Opened catalog(car);
        const auto color = catalog->color(catalog.only("a"));
        return color ? "" : color.error().message;
    };
    ByteVector cut = tests::colorPayload(1, {1, 2});
    cut.pop_back();
    ByteVector endless = tests::colorPayload(1, {1, 2});
    endless[15] = 0xFF;
    EXPECT_EQ(message({}), "the rendition is not a color");
    EXPECT_EQ(message(cut), "the color is truncated");
    EXPECT_EQ(message(endless), "the color is truncated");
    EXPECT_EQ(message(tests::colorPayload(1, {})), "the color has 0 components");
    EXPECT_EQ(message(tests::colorPayload(1, std::vector<double>(17))),
              "the color has 17 components");
    EXPECT_EQ(message(tests::colorPayload(1, {std::numeric_limits<double>::quiet_NaN(), 1})),
              "the color has a component that is no number");
}

TEST(CatalogPayloads, ReadsIconSizes) {
    CarWriter car;
    car.facet("icon", 1);
    car.iconSizes({.identifier = 1}, {{20, 20, 0}, {83, 84, 5}});
    const Opened catalog(car);
    const auto sizes = catalog->iconSizes(catalog.only("icon"));
    ASSERT_TRUE(sizes);
    ASSERT_EQ(sizes->size(), 2U);
    EXPECT_EQ(sizes->at(1).width, 83U);
    EXPECT_EQ(sizes->at(1).height, 84U);
    EXPECT_EQ(sizes->at(1).index, 5);
}

TEST(CatalogPayloads, DamagedIconSizesAreProblems) {
    const auto message = [](const ByteVector& payload) {
        CarWriter car;
        car.facet("a", 1);
        car.rendition({.identifier = 1, .layout = 1010, .payload = payload});
        const Opened catalog(car);
        const auto sizes = catalog->iconSizes(catalog.only("a"));
        return sizes ? "" : sizes.error().message;
    };
    ByteVector cut = tests::iconSizesPayload({{1, 2, 3}});
    cut.pop_back();
    EXPECT_EQ(message({'S', 'I'}), "the rendition is not a table of icon sizes");
    EXPECT_EQ(message(cut), "the table of icon sizes is truncated");
}

}  // namespace
}  // namespace velmoranth::catalog::catalog_payloads_test
