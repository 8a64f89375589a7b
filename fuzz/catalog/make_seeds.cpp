// Writes small catalogs for the fuzz targets: one a compression, and one of everything else.
//
//   catalog_seeds fuzz/catalog/corpus fuzz/catalog_container/corpus
#include "tests/support/catalog/bitmap_writer.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/catalog/lzfse_writer.h"

#include <cstdio>
#include <fstream>
#include <span>
#include <string>

namespace velmoranth::tests {
namespace {

using catalog::Compression;
using catalog::fourCharacterCode;

constexpr std::uint32_t kSide = 8;

void write(const std::string& path, const ByteVector& bytes) {
    const std::string text(bytes.begin(), bytes.end());
    std::ofstream(path, std::ios::binary) << text;
}

StoredPixels pixels() {
    const CarPixels pattern = CarPixels::pattern(kSide, kSide);
    return {.width = kSide,
            .rows = kSide,
            .bytesPerPixel = 4,
            .bytes = storedRows(pattern, fourCharacterCode("ARGB"))};
}

struct Stored {
    std::string name;
    Compression compression;
    ByteVector data;
};

ByteVector map(DeepmapVersion version, std::size_t method) {
    return deepmap(pixels(), {.version = version, .method = method});
}

std::vector<Stored> storedPictures() {
    const ByteVector rows = pixels().bytes;
    std::vector<Stored> pictures{
        {"uncompressed", Compression::uncompressed, rows},
        {"rle", Compression::rle, rle(pixels(), 4)},
        {"zip", Compression::zip, deflated(rows, DeflateWrapping::gzip)},
        {"lzvn", Compression::lzvn, lzvn(rows)},
        {"lzfse", Compression::lzfse, lzfse(rows)},
        {"palette", Compression::paletteImage, lzfse(paletteImage(pixels()))},
    };
    for (const std::size_t method :
         {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{4}}) {
        const std::string suffix = std::to_string(method);
        pictures.push_back(
            {"deepmap_" + suffix, Compression::deepmap, map(DeepmapVersion::first, method)});
        pictures.push_back(
            {"deepmap2_" + suffix, Compression::deepmap2, map(DeepmapVersion::second, method)});
    }
    return pictures;
}

CarWriter smallCatalog() {
    CarWriter car;
    car.keyFormat = {12, 17, 1, 2, 8};
    car.platform = "";
    return car;
}

ByteVector catalogOf(const Stored& picture) {
    CarWriter car = smallCatalog();
    car.facet("a", 1);
    car.rendition(
        {.identifier = 1,
         .width = kSide,
         .height = kSide,
         .payload = bandedPayload(picture.compression, {{.rows = kSide, .data = picture.data}})});
    return car.build();
}

ByteVector catalogOfOtherKinds() {
    CarWriter car;
    car.keyFormat = {7, 12, 5, 17, 1, 2, 8, 9};
    car.keyFormatCorrections = {0, 0, 25, 0, 0, 0, 0, 0};
    car.facet("Folder/link", 1);
    car.facet("color", 2);
    car.facet("icon", 3);
    car.facet("file", 4);
    car.appearance("UIAppearanceDark", 1);
    car.atlas(1, CarPixels::pattern(kSide, kSide));
    car.link({.identifier = 1,
              .slices = {{0, 0, 1, 2}, {1, 0, 1, 2}},
              .metrics = catalog::Metrics{1, 1, 1, 1, 2, 2}},
             {.x = 1, .y = 1, .width = 3, .height = 2});
    car.color({.identifier = 2}, 1, {1, 0.5, 0, 1});
    car.iconSizes({.identifier = 3}, {{20, 20, 0}, {60, 60, 1}});
    car.bitmap({.identifier = 3,
                .attributes = {{catalog::Attribute::dimension2, 1}},
                .pixelFormat = fourCharacterCode("GA8 "),
                .rowBytes = 32},
               CarPixels::pattern(3, 3));
    car.file({.identifier = 4,
              .pixelFormat = fourCharacterCode("DATA"),
              .layout = 1000,
              .typeIdentifier = "public.text"},
             "text");
    const ByteVector svg = lzfse(ByteVector(200, 'x'));
    car.file({.identifier = 4, .pixelFormat = fourCharacterCode("SVG "), .layout = 9},
             std::string(svg.begin(), svg.end()), 1);
    return car.build();
}

ByteVector deepTree() {
    CarWriter car = smallCatalog();
    car.entriesPerPage = 1;
    for (std::uint16_t i = 1; i <= 5; ++i) {
        car.facet(std::to_string(i), i);
    }
    return car.build();
}

// A loop, two leaves on the same bytes, and a tree whose keys are numbers.
ByteVector oddTrees() {
    BomWriter writer;
    const std::uint32_t key = writer.add({1});
    const std::uint32_t leaf = writer.add(BomWriter::page({.entries = {{key, key}}}));
    const std::uint32_t root = writer.add({});
    writer.replace(
        root,
        BomWriter::page({.leaf = false, .entries = {{root, key}, {leaf, key}}, .lastChild = leaf}));
    writer.name("LOOP", writer.add(BomWriter::treeHeader(root, 1)));
    writer.name("NUMBERS", writer.addTree({{{0, 0, 0, 1}, {9}}}, {.numbers = true}));
    return writer.build();
}

}  // namespace
}  // namespace velmoranth::tests

int main(int argc, char** argv) {
    using namespace velmoranth::tests;
    const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() != 3) {
        std::fputs("usage: catalog_seeds CATALOGS CONTAINERS\n", stderr);
        return 2;
    }
    const std::string catalogs = arguments[1];
    const std::string containers = arguments[2];
    for (const Stored& picture : storedPictures()) {
        write(catalogs + "/" + picture.name + ".car", catalogOf(picture));
    }
    write(catalogs + "/other_kinds.car", catalogOfOtherKinds());
    write(catalogs + "/deep_tree.car", deepTree());
    write(containers + "/deep_tree.car", deepTree());
    write(containers + "/odd_trees.bom", oddTrees());
    return 0;
}
