// Catalogs that were cut, changed or made to deceive: each is refused or read in part, and none
// takes more time or memory than its size warrants.
#include "desktop/catalog/catalog.h"
#include "tests/support/catalog/car_writer.h"

#include <gtest/gtest.h>

#include <string>

namespace velmoranth::catalog::catalog_damage_test {
namespace {

using tests::BomWriter;
using tests::ByteVector;
using tests::CarPixels;
using tests::CarWriter;
using Warnings = std::vector<std::string>;

CarWriter sample() {
    CarWriter car;
    car.keyFormat = {7, 12, 5, 17, 1, 2, 8};
    car.keyFormatCorrections = {0, 0, 25, 0, 0, 0, 0};
    car.entriesPerPage = 2;
    car.facet("bitmap", 1);
    car.facet("link", 2);
    car.facet("color", 3);
    car.facet("icon", 4);
    car.facet("file", 5);
    car.appearance("UIAppearanceAny", 0);
    car.bitmap({.identifier = 1, .slices = {{0, 0, 2, 2}}}, CarPixels::pattern(2, 2));
    car.atlas(1, CarPixels::pattern(4, 4));
    car.link({.identifier = 2}, {.x = 1, .y = 1, .width = 2, .height = 2});
    car.color({.identifier = 3}, 1, {0.5, 1});
    car.iconSizes({.identifier = 4}, {{20, 20, 1}});
    car.file({.identifier = 5, .pixelFormat = fourCharacterCode("DATA"), .layout = 1000}, "text");
    return car;
}

// Asks the catalog for all it has.
void useEverything(const Catalog& catalog) {
    for (const Rendition& rendition : catalog.renditions()) {
        static_cast<void>(catalog.decode(rendition));
        static_cast<void>(catalog.file(rendition));
        static_cast<void>(catalog.color(rendition));
        static_cast<void>(catalog.iconSizes(rendition));
        static_cast<void>(catalog.facetOf(rendition));
    }
    for (const Facet& facet : catalog.facets()) {
        EXPECT_NE(catalog.facet(facet.name), nullptr);
        static_cast<void>(catalog.renditionsOf(facet));
    }
}

constexpr Limits kSmallLimits{
    .maxFileBytes = 1U << 20U, .maxPixels = 1U << 16U, .maxBytes = 1U << 18U};

// What is wrong, empty for a catalog that can be read.
std::string tryEverything(const ByteVector& bytes) {
    const auto catalog = Catalog::fromBytes(bytes, "x", kSmallLimits);
    if (!catalog) {
        EXPECT_EQ(catalog.error().path, "x");
        return catalog.error().message;
    }
    useEverything(*catalog);
    return {};
}

Warnings warningsOf(const BomWriter& container) {
    const ByteVector bytes = container.build();
    const auto catalog = Catalog::fromBytes(bytes);
    EXPECT_TRUE(catalog) << (catalog ? "" : catalog.error().message);
    return catalog ? catalog->warnings() : Warnings();
}

TEST(CatalogDamage, SampleIsSound) {
    EXPECT_EQ(tryEverything(sample().build()), "");
    EXPECT_EQ(warningsOf(sample().container()), Warnings());
}

TEST(CatalogDamage, EveryCutIsRefused) {
    const ByteVector sound = sample().build();
    for (std::size_t size = 0; size < sound.size(); ++size) {
        const ByteVector cut(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(tryEverything(cut), "") << size;
    }
}

TEST(CatalogDamage, NoChangedByteDoesHarm) {
    const ByteVector sound = sample().build();
    for (const std::uint8_t value : ByteVector{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        for (std::size_t i = 0; i < sound.size(); ++i) {
            ByteVector changed = sound;
            changed[i] = value;
            static_cast<void>(tryEverything(changed));
        }
    }
}

TEST(CatalogDamage, WhatACatalogNeedsMustBeThere) {
    const auto without = [](const char* name) {
        BomWriter container = sample().container();
        container.forget(name);
        return tryEverything(container.build());
    };
    EXPECT_EQ(without("CARHEADER"), "it is not a compiled asset catalog: it has no CARHEADER");
    EXPECT_EQ(without("KEYFORMAT"), "the key format is missing");
    EXPECT_EQ(without("RENDITIONS"), "the table of renditions is missing");
    EXPECT_EQ(without("FACETKEYS"), "");
    EXPECT_EQ(without("APPEARANCEKEYS"), "");
    EXPECT_EQ(without("EXTENDED_METADATA"), "");
}

TEST(CatalogDamage, WhatACatalogNeedsMustBeSound) {
    const auto with = [](const char* name, const ByteVector& block) {
        BomWriter container = sample().container();
        container.name(name, container.add(block));
        return tryEverything(container.build());
    };
    EXPECT_EQ(with("CARHEADER", ByteVector(436)), "its CARHEADER is damaged");
    EXPECT_EQ(with("CARHEADER", {'C', 'T', 'A', 'R', 0}),
              "big-endian catalogs (CTAR) are not supported");
    EXPECT_EQ(with("KEYFORMAT", ByteVector(20)), "the key format is damaged");
    EXPECT_EQ(with("RENDITIONS", ByteVector(40)),
              "the table of renditions cannot be read: it is no tree");
    EXPECT_EQ(with("RENDITIONS", BomWriter::treeHeader(0, 1)),
              "the table of renditions cannot be read: its first page cannot be read");
}

TEST(CatalogDamage, ProblemsSayWhere) {
    BomWriter container = sample().container();
    const std::uint32_t block = container.add({'C', 'T', 'A', 'R'});
    container.name("CARHEADER", block);
    const ByteVector bytes = container.build();
    const auto catalog = Catalog::fromBytes(bytes, "big.car");
    ASSERT_FALSE(catalog);
    EXPECT_EQ(catalog.error().path, "big.car");
    ASSERT_TRUE(catalog.error().offset);
    EXPECT_EQ(bytes.at(*catalog.error().offset), 'C');
}

TEST(CatalogDamage, DamageOfOtherTablesIsAWarning) {
    const auto with = [](const char* name, const ByteVector& block) {
        BomWriter container = sample().container();
        container.name(name, container.add(block));
        return warningsOf(container);
    };
    EXPECT_EQ(with("CARHEADER", {'R', 'A', 'T', 'C', 1}), Warnings{"CARHEADER: it is truncated"});
    EXPECT_EQ(with("EXTENDED_METADATA", {'M', 'E', 'T', 'A', 1}),
              Warnings{"EXTENDED_METADATA: it is damaged"});
    EXPECT_EQ(with("KEYFORMATWORKAROUND", ByteVector(20)),
              Warnings{"KEYFORMATWORKAROUND: it is truncated"});
    EXPECT_EQ(with("FACETKEYS", ByteVector(40)), Warnings{"FACETKEYS: it is no tree"});
    EXPECT_EQ(with("APPEARANCEKEYS", ByteVector(40)), Warnings{"APPEARANCEKEYS: it is no tree"});
    BomWriter container = sample().container();
    container.forget("FACETKEYS");
    EXPECT_EQ(warningsOf(container), Warnings{"FACETKEYS: it is missing"});
}

TEST(CatalogDamage, DamagedEntriesAreLeftOut) {
    BomWriter container = sample().container();
    container.name(
        "FACETKEYS",
        container.addTree({{{'a'}, {0, 0, 0, 0, 1, 0}}, {{'b'}, {0, 0, 0, 0, 0, 0}}, {{'c'}, {}}}));
    container.name("APPEARANCEKEYS", container.addTree({{{'a'}, {1}}, {{'b'}, {1, 2}}}));
    const ByteVector bytes = container.build();
    const auto catalog = Catalog::fromBytes(bytes);
    ASSERT_TRUE(catalog);
    ASSERT_EQ(catalog->facets().size(), 1U);
    EXPECT_EQ(catalog->facets().front().name, "b");
    ASSERT_EQ(catalog->appearances().size(), 1U);
    EXPECT_EQ(catalog->appearances().front().number, 0x201);
    EXPECT_EQ(catalog->warnings(), (Warnings{"FACETKEYS: 2 of its entries are damaged",
                                             "APPEARANCEKEYS: 1 of its entries are damaged"}));
}

TEST(CatalogDamage, RecordsOutsideTheFileAreUnreadable) {
    CarWriter car;
    BomWriter container = car.container();
    const std::uint32_t key = container.add(car.key({.identifier = 1}));
    const std::uint32_t value = container.addAt(512, 0x7FFFFFFF);
    const std::uint32_t leaf = container.add(BomWriter::page({.entries = {{value, key}}}));
    container.name("RENDITIONS", container.add(BomWriter::treeHeader(leaf, 1)));
    const ByteVector bytes = container.build();
    const auto catalog = Catalog::fromBytes(bytes);
    ASSERT_TRUE(catalog);
    ASSERT_EQ(catalog->renditions().size(), 1U);
    EXPECT_EQ(catalog->renditions().front().problem, "its record lies outside the file");
}

// A container whose table of renditions has `count` entries with one record.
BomWriter sharedRecord(const CarWriter& car, ByteVector record, std::size_t count) {
    BomWriter container = car.container();
    const std::uint32_t value = container.add(std::move(record));
    BomWriter::Page leaf;
    for (std::size_t i = 0; i < count; ++i) {
        const auto identifier = static_cast<std::uint16_t>(i);
        leaf.entries.emplace_back(value, container.add(car.key({.identifier = identifier})));
    }
    const std::uint32_t page = container.add(BomWriter::page(leaf));
    container.name("RENDITIONS", container.add(BomWriter::treeHeader(page, count)));
    return container;
}

TEST(CatalogDamage, SharedListsTakeNoMoreMemoryThanTheFileHas) {
    const CarWriter car;
    const std::vector<Rectangle> slices(50'000);
    const BomWriter container = sharedRecord(
        car, CarWriter::record({.width = 1, .height = 1, .slices = slices, .payload = {}}), 5000);
    const ByteVector bytes = container.build();
    const auto catalog = Catalog::fromBytes(bytes);
    ASSERT_TRUE(catalog);
    std::size_t slicesInAll = 0;
    for (const Rendition& rendition : catalog->renditions()) {
        slicesInAll += rendition.slices.size();
    }
    EXPECT_EQ(catalog->renditions().size(), 5000U);
    EXPECT_LE(slicesInAll * sizeof(Rectangle), bytes.size());
    EXPECT_EQ(catalog->renditions().back().problem,
              "its list of properties is shared by too many renditions");
}

TEST(CatalogDamage, SharedNamesTakeNoMoreTimeThanTheFileWarrants) {
    const CarWriter car;
    BomWriter container = car.container();
    const std::uint32_t value = container.add({0, 0, 0, 0, 0, 0});
    const std::uint32_t name = container.add(ByteVector(2'000'000, 'a'));
    BomWriter::Page leaf;
    leaf.entries.assign(60'000, {value, name});
    const std::uint32_t page = container.add(BomWriter::page(leaf));
    container.name("FACETKEYS", container.add(BomWriter::treeHeader(page, 60'000)));
    const ByteVector bytes = container.build();
    const auto catalog = Catalog::fromBytes(bytes);
    ASSERT_TRUE(catalog);
    EXPECT_EQ(catalog->facets().size(), 1U);
    EXPECT_EQ(catalog->warnings(), Warnings{"FACETKEYS: 59999 of its entries are damaged"});
}

TEST(CatalogDamage, LinksInALoopEnd) {
    CarWriter car;
    for (std::uint16_t i = 1; i <= 3; ++i) {
        const auto next = static_cast<std::uint16_t>(i % 3 + 1);
        const Link link{.part = {.x = 0, .y = 0, .width = 1, .height = 1},
                        .layout = 12,
                        .atlasKey = {{1, 85}, {2, 181}, {12, 1}, {17, next}}};
        car.rendition({.identifier = i, .layout = 1003, .link = link});
    }
    const ByteVector bytes = car.build();
    const auto catalog = Catalog::fromBytes(bytes);
    ASSERT_TRUE(catalog);
    for (const Rendition& rendition : catalog->renditions()) {
        EXPECT_EQ(catalog->decode(rendition).error().message,
                  "the link leads to another link, and so on");
        EXPECT_FALSE(catalog->file(rendition));
    }
}

TEST(CatalogDamage, PicturesBeyondTheLimitsAreRefused) {
    CarWriter car;
    car.bitmap({.identifier = 1, .width = 0x7FFFFFFF, .height = 0x7FFFFFFF},
               Compression::uncompressed, ByteVector(16));
    const ByteVector bytes = car.build();
    const auto catalog = Catalog::fromBytes(bytes);
    ASSERT_TRUE(catalog);
    EXPECT_FALSE(catalog->decode(catalog->renditions().front()));
}

}  // namespace
}  // namespace velmoranth::catalog::catalog_damage_test
