#include "desktop/catalog/rendition_record.h"

#include "tests/support/catalog/car_writer.h"

#include <gtest/gtest.h>

#include <concepts>
#include <utility>

namespace velmoranth::catalog::rendition_record_test {
namespace {

using tests::ByteVector;
using tests::ByteWriter;
using tests::CarPixels;
using tests::CarRendition;
using tests::CarWriter;

constexpr std::size_t kBudget = 100'000;

// A rendition and the bytes that it looks into.
struct Read {
    ByteVector record;
    Rendition rendition;

    explicit Read(const CarRendition& description) {
        take(CarWriter::record(description), kBudget);
    }

    // From the record's bytes.
    template <class Stored>
        requires std::same_as<Stored, ByteVector>
    explicit Read(Stored bytes, std::size_t budget = kBudget) {
        take(std::move(bytes), budget);
    }

    void take(ByteVector bytes, std::size_t bytesLeft) {
        record = std::move(bytes);
        Budget budget(bytesLeft);
        rendition = readRendition(record, budget);
    }

    const Rendition* operator->() const { return &rendition; }
};

ByteVector somePixels() {
    return tests::bitmapPayload(Compression::lzfse, ByteVector{1, 2, 3});
}

TEST(RenditionRecord, ReadsTheFields) {
    const Read read({.scale = 2,
                     .name = "icon@2x.png",
                     .flags = 0x0C,
                     .width = 58,
                     .height = 40,
                     .colorSpace = 0x12345673,
                     .rowBytes = 256,
                     .orientation = 6,
                     .slices = {{1, 2, 3, 4}, {5, 6, 7, 8}},
                     .metrics = Metrics{-1, 2, 3, 4, 50, 60},
                     .typeIdentifier = "public.png",
                     .opaque = true,
                     .payload = tests::bitmapPayload(Compression::lzvn, ByteVector{9}, true)});
    EXPECT_EQ(read->problem, "");
    EXPECT_EQ(read->kind, Kind::bitmap);
    EXPECT_EQ(read->name, "icon@2x.png");
    EXPECT_EQ(read->flags, 0x0CU);
    EXPECT_TRUE(read->isTemplate());
    EXPECT_TRUE(read->isVectorBased());
    EXPECT_EQ(read->width, 58U);
    EXPECT_EQ(read->height, 40U);
    EXPECT_EQ(read->scalePercent, 200U);
    EXPECT_EQ(read->pixelFormat, fourCharacterCode("ARGB"));
    EXPECT_EQ(read->colorSpace, 3U);
    EXPECT_EQ(read->layout, 12);
    EXPECT_EQ(read->rowBytes, 256U);
    EXPECT_EQ(read->orientation, 6U);
    EXPECT_EQ(read->slices, (std::vector<Rectangle>{{1, 2, 3, 4}, {5, 6, 7, 8}}));
    EXPECT_EQ(read->metrics, (Metrics{-1, 2, 3, 4, 50, 60}));
    EXPECT_EQ(read->typeIdentifier, "public.png");
    EXPECT_EQ(read->compression, Compression::lzvn);
    EXPECT_TRUE(read->opaque);
    EXPECT_EQ(read->payload.size(), 17U);
}

TEST(RenditionRecord, CompositingIsKeptAsStored) {
    // Multiply, half opaque.
    const Read read({.properties = {{1004, {1, 0, 0, 0, 0, 0, 0, 0x3F}}}});
    EXPECT_EQ(read->compositing, (Compositing{.blendMode = 1, .opacity = 0.5F}));
    EXPECT_FALSE(Read({})->compositing);
}

TEST(RenditionRecord, TellsKinds) {
    const auto kindOf = [](std::uint16_t layout, const char(&format)[5], ByteVector payload) {
        return Read({.width = 1,
                     .height = 1,
                     .pixelFormat = fourCharacterCode(format),
                     .layout = layout,
                     .payload = std::move(payload)})
            ->kind;
    };
    const ByteVector file = tests::filePayload(ByteVector{1});
    EXPECT_EQ(kindOf(10, "ARGB", somePixels()), Kind::bitmap);
    EXPECT_EQ(kindOf(50, "GA8 ", somePixels()), Kind::bitmap);
    EXPECT_EQ(kindOf(1004, "ARGB", somePixels()), Kind::atlas);
    EXPECT_EQ(kindOf(9, "PDF ", file), Kind::vector);
    EXPECT_EQ(kindOf(9, "SVG ", file), Kind::vector);
    EXPECT_EQ(kindOf(1017, "SVG ", file), Kind::vector);
    EXPECT_EQ(kindOf(12, "JPEG", file), Kind::imageFile);
    EXPECT_EQ(kindOf(12, "HEIF", file), Kind::imageFile);
    EXPECT_EQ(kindOf(12, "WEBP", file), Kind::imageFile);
    EXPECT_EQ(kindOf(1000, "DATA", file), Kind::data);
    EXPECT_EQ(kindOf(1019, "DATA", file), Kind::other);
    EXPECT_EQ(kindOf(1002, "DATA", file), Kind::other);
    EXPECT_EQ(kindOf(6, "ARGB", {'D', 'A', 'R', 'G'}), Kind::other);
    EXPECT_EQ(kindOf(1007, "ARGB", {}), Kind::other);
    EXPECT_EQ(kindOf(1009, "ARGB", {}), Kind::color);
    EXPECT_EQ(kindOf(1010, "ARGB", {}), Kind::iconSizes);
}

TEST(RenditionRecord, ReadsLinks) {
    const Link link{.part = {.x = 1, .y = 2, .width = 3, .height = 4},
                    .layout = 32,
                    .atlasKey = {{1, 9}, {8, 2}}};
    const Read read({.layout = 1003, .link = link});
    EXPECT_EQ(read->kind, Kind::link);
    ASSERT_TRUE(read->link);
    EXPECT_EQ(read->link->part, link.part);
    EXPECT_EQ(read->link->layout, 32);
    EXPECT_EQ(read->link->atlasKey, link.atlasKey);
    EXPECT_TRUE(read->payload.empty());
    Link toData = link;
    toData.layout = 1000;
    EXPECT_EQ(Read({.layout = 1003, .link = toData})->kind, Kind::data);
    EXPECT_EQ(Read({.layout = 1003})->problem, "its link is missing");
}

TEST(RenditionRecord, LinksOfOtherLayoutsDoNotCount) {
    const Read read({.width = 1, .height = 1, .link = Link{}, .payload = somePixels()});
    EXPECT_EQ(read->kind, Kind::bitmap);
    EXPECT_FALSE(read->link);
}

TEST(RenditionRecord, ColorSpaceIsOfPixelsOnly) {
    EXPECT_EQ(Read({.colorSpace = 5, .layout = 1009})->colorSpace, 0U);
    EXPECT_EQ(Read({.width = 1, .height = 1, .colorSpace = 5, .payload = somePixels()})->colorSpace,
              5U);
}

TEST(RenditionRecord, NameEndsAtItsNulOrItsField) {
    EXPECT_EQ(Read({.name = std::string("a/../\xFF\0b", 8)})->name, "a/../\xFF");
    EXPECT_EQ(Read({.name = std::string(200, 'x')})->name, std::string(128, 'x'));
}

TEST(RenditionRecord, UnknownPropertiesArePassedOver) {
    const Read read({.width = 1,
                     .height = 1,
                     .properties = {{4711, {1, 2, 3}}, {1007, {8, 0, 0, 0}}},
                     .payload = somePixels()});
    EXPECT_EQ(read->kind, Kind::bitmap);
    EXPECT_EQ(read->rowBytes, 8U);
}

TEST(RenditionRecord, OrientationsBeyondEightDoNotCount) {
    EXPECT_EQ(Read({.orientation = 8})->orientation, 8U);
    EXPECT_EQ(Read({.orientation = 9})->orientation, 0U);
}

struct Damage {
    const char* problem;
    CarRendition rendition;
};

TEST(RenditionRecord, SaysWhatIsDamaged) {
    const ByteVector none;
    const std::vector<Damage> damages{
        {"its slices are damaged", {.properties = {{1001, {2, 0, 0, 0, 1, 2}}}}},
        {"its slices are damaged", {.properties = {{1001, {255, 255, 255, 255}}}}},
        {"its slices are damaged", {.properties = {{1001, {1}}}}},
        {"its alignment is damaged", {.properties = {{1003, {1, 0, 0, 0, 1, 2}}}}},
        {"its type identifier is damaged", {.properties = {{1005, {9, 0, 0, 0, 0, 0, 0, 0, 1}}}}},
        {"its compositing is damaged", {.properties = {{1004, ByteVector(7)}}}},
        {"its orientation is damaged", {.properties = {{1006, {}}}}},
        {"its number of bytes a row is damaged", {.properties = {{1007, {1, 2, 3}}}}},
        {"its link is damaged", {.layout = 1003, .properties = {{1010, {'K', 'L', 'N', 'I'}}}}},
        {"its link is damaged", {.layout = 1003, .properties = {{1010, ByteVector(40)}}}},
        {"its bitmap has no pixels", {.width = 0, .height = 1, .payload = somePixels()}},
        {"its bitmap has no pixels", {.width = 1, .height = 0, .payload = somePixels()}},
        {"the bitmap does not begin as one", {.width = 1, .height = 1}},
    };
    for (const Damage& damage : damages) {
        const Read read(damage.rendition);
        EXPECT_EQ(read->problem, damage.problem);
        EXPECT_EQ(read->kind, Kind::unreadable) << damage.problem;
        EXPECT_FALSE(read->link) << damage.problem;
    }
}

TEST(RenditionRecord, EveryCutIsUnreadable) {
    const ByteVector record =
        CarWriter::record({.width = 1,
                           .height = 1,
                           .rowBytes = 8,
                           .slices = {{1, 2, 3, 4}},
                           .payload = tests::bitmapPayload(Compression::lzfse, ByteVector(9))});
    ASSERT_EQ(Read(record)->problem, "");
    for (std::size_t size = 0; size < record.size(); ++size) {
        const Read read(ByteVector(record.begin(), record.begin() + std::ptrdiff_t(size)));
        EXPECT_EQ(read->kind, Kind::unreadable) << size;
        EXPECT_NE(read->problem, "") << size;
    }
}

TEST(RenditionRecord, RefusesCountsAndVersionsThatLie) {
    const ByteVector sound = CarWriter::record({.width = 1, .height = 1, .payload = somePixels()});
    const auto problemWith = [&](std::size_t offset, std::uint8_t byte) {
        ByteVector record = sound;
        record[offset] = byte;
        return Read(record)->problem;
    };
    EXPECT_EQ(problemWith(0, 'X'), "its record is damaged");
    EXPECT_EQ(problemWith(4, 0), "");
    EXPECT_EQ(problemWith(4, 2), "its record is of an unknown version");
    EXPECT_EQ(problemWith(171, 0x80), "its record is truncated");
    EXPECT_EQ(problemWith(175, 0xFF), "its record is truncated");
    EXPECT_EQ(problemWith(183, 0xFF), "its payload is truncated");
}

TEST(RenditionRecord, PayloadIsTheSumOfItsLengths) {
    ByteVector record = CarWriter::record({.width = 1, .height = 1, .payload = somePixels()});
    record.insert(record.end(), {1, 2, 3});
    EXPECT_EQ(Read(record)->payload.size(), somePixels().size());
    // An effect's payload runs to its record's end, whatever its lengths say.
    ByteVector effect = CarWriter::record({.layout = 7, .payload = {1, 2}});
    effect.insert(effect.end(), {3, 4});
    EXPECT_EQ(Read(effect)->payload.size(), 4U);
}

TEST(RenditionRecord, ListsAreChargedToTheBudget) {
    const CarRendition rendition{
        .width = 1, .height = 1, .slices = {{1, 2, 3, 4}}, .payload = somePixels()};
    const ByteVector record = CarWriter::record(rendition);
    EXPECT_EQ(Read(record, 28)->problem, "");
    EXPECT_EQ(Read(record, 27)->problem, "its list of properties is shared by too many renditions");
}

}  // namespace
}  // namespace velmoranth::catalog::rendition_record_test
