// velmoranth extract: which pictures come out, and in which files.
#include "desktop/vector_images/vector_images.h"
#include "tests/cli/extract_fixture.h"

namespace velmoranth::cli::extract_test {
namespace {

const CarPixels kPattern = CarPixels::pattern(5, 3);

TEST_F(ExtractTest, WritesEveryPictureOfABundle) {
    CarWriter car;
    car.facet("Icon", 7);
    car.facet("Other", 8);
    car.bitmap({.identifier = 7, .scale = 1}, kPattern);
    car.bitmap({.identifier = 7, .scale = 2}, CarPixels::filled(10, 6, {20, 40, 60, 80}));
    car.bitmap({.identifier = 8, .scale = 3}, CarPixels::filled(2, 9, kRed));
    catalog(car);
    const CommandResult result = extract({"Maps.app", "out"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "Extracted 3 pictures (3 files) into out/Maps.app\n");
    EXPECT_EQ(fileNames("out"),
              "Maps.app/Icon-10-6-@2x.png Maps.app/Icon-5-3.png Maps.app/Other-2-9-@3x.png");
    expectPicture("out/Maps.app/Icon-5-3.png", kPattern);
    expectPicture("out/Maps.app/Icon-10-6-@2x.png", CarPixels::filled(10, 6, {20, 40, 60, 80}));
    expectPicture("out/Maps.app/Other-2-9-@3x.png", CarPixels::filled(2, 9, kRed));
}

TEST_F(ExtractTest, CatalogOfABundleMayLieInItsResources) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap({.identifier = 7}, kPattern);
    catalog(car, "Mac.app/Contents/Resources/Assets.car");
    catalog(car, "Kit.framework/Resources/Assets.car");
    EXPECT_EQ(extract({"Mac.app", "out"}).code, 0);
    EXPECT_EQ(extract({"Kit.framework", "out"}).code, 0);
    EXPECT_EQ(fileNames("out"), "Kit.framework/Icon-5-3.png Mac.app/Icon-5-3.png");
}

// The catalog is known by the name that its picture has.
TEST_F(ExtractTest, CatalogOfABundlesOwnNameComesAfterAssets) {
    const auto catalogWith = [&](const std::string& name, const std::string& path) {
        CarWriter car;
        car.facet(name, 7);
        car.bitmap({.identifier = 7}, kPattern);
        catalog(car, path);
    };
    catalogWith("Deep", "Clock.bundle/Contents/Resources/Clock.car");
    folder.folder("Clock.bundle/Clock.car");  // not a file
    EXPECT_EQ(extract({"Clock.bundle", "deep"}).code, 0);
    EXPECT_EQ(fileNames("deep"), "Clock.bundle/Deep-5-3.png");
    catalogWith("Own", "Clock.bundle/Resources/Clock.car");
    const CommandResult inside =
        runCommand({"extract", ".", folder / "own"}, {.folder = folder / "Clock.bundle"});
    EXPECT_EQ(inside.code, 0) << inside.errors;
    EXPECT_EQ(fileNames("own"), "Clock.bundle/Own-5-3.png");
    catalogWith("Assets", "Clock.bundle/Contents/Resources/Assets.car");
    EXPECT_EQ(extract({"Clock.bundle", "assets"}).code, 0);
    EXPECT_EQ(fileNames("assets"), "Clock.bundle/Assets-5-3.png");
}

TEST_F(ExtractTest, WhatIsThereWinsOverItsNameAndIsSaid) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap({.identifier = 7}, kPattern);
    catalog(car, "Oscar/Assets.car");
    catalog(car, "Maps.app/Assets.bin");
    CommandResult result = extract({"Oscar", "out"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors,
              "velmoranth: Oscar ends in \"car\" but is a folder: taken for a bundle\n");
    result = extract({"Maps.app/Assets.bin", "out"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors,
              "velmoranth: Maps.app/Assets.bin does not end in \"car\" but is a file: taken for a "
              "catalog\n");
    EXPECT_EQ(files("out").size(), 2U);
}

TEST_F(ExtractTest, PartsOfAtlasesAreCutOut) {
    CarWriter car;
    CarPixels atlas = CarPixels::pattern(16, 8);
    car.atlas(1, atlas);
    car.facet("Part", 7);
    car.facet("Whole", 8);
    car.link({.identifier = 7}, {2, 1, 3, 2});  // origin at the bottom left
    car.link({.identifier = 8}, {0, 0, 16, 8});
    catalog(car);
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    CarPixels part{3, 2, {}};
    for (std::size_t y = 5; y < 7; ++y) {
        const auto row = atlas.rgba.begin() + static_cast<std::ptrdiff_t>((y * 16 + 2) * 4);
        part.rgba.insert(part.rgba.end(), row, row + 12);
    }
    EXPECT_EQ(fileNames("out/Maps.app"), "Part-3-2.png Whole-16-8.png");
    expectPicture("out/Maps.app/Part-3-2.png", part);
    expectPicture("out/Maps.app/Whole-16-8.png", atlas);
}

TEST_F(ExtractTest, GrayPicturesAndImageFilesComeOutAsWell) {
    CarWriter car;
    car.facet("Gray", 7);
    car.facet("File", 8);
    car.bitmap({.identifier = 7, .pixelFormat = fourCharacterCode("GA8 ")},
               CarPixels::filled(3, 3, {100, 100, 100, 200}));
    const std::vector<std::uint8_t> bgra(2UL * 4 * 4, 255);
    const platform::Data png = desktop::encodePng(bgra, 2, 4, 8);
    car.file({.identifier = 8,
              .width = 4,
              .height = 2,
              .pixelFormat = fourCharacterCode("JPEG"),
              .orientation = 6},
             {reinterpret_cast<const char*>(png.data()), png.size()});
    catalog(car);
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    expectPicture("out/Maps.app/Gray-3-3.png", CarPixels::filled(3, 3, {100, 100, 100, 200}));
    // Turned, as the record has it.
    expectPicture("out/Maps.app/File-4-2.png", CarPixels::filled(4, 2, {255, 255, 255, 255}));
}

TEST_F(ExtractTest, VectorsAreDrawnAtTheirScale) {
    if (desktop::vectorLibraries().find("no librsvg") != std::string::npos) {
        GTEST_SKIP() << "built without SVG";
    }
    CarWriter car;
    car.facet("Vector", 7);
    const auto vector = [](std::uint16_t scale) {
        return CarRendition{.identifier = 7,
                            .scale = scale,
                            .scalePercent = 0,
                            .pixelFormat = fourCharacterCode("SVG "),
                            .layout = 9};
    };
    car.file(vector(1), kSvg);
    car.file(vector(2), kSvg);
    catalog(car);
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    expectPicture("out/Maps.app/Vector-10-6.png", CarPixels::filled(10, 6, kGreen));
    expectPicture("out/Maps.app/Vector-20-12-@2x.png", CarPixels::filled(20, 12, kGreen));
}

TEST_F(ExtractTest, OldestCopyOfAPictureIsWritten) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap({.identifier = 7, .attributes = {{Attribute::deploymentTarget, 5}}},
               CarPixels::filled(4, 4, kGreen));
    car.bitmap({.identifier = 7, .attributes = {{Attribute::deploymentTarget, 0}}},
               CarPixels::filled(4, 4, kRed));
    catalog(car);
    EXPECT_EQ(extract({"Maps.app", "out"}).output,
              "Extracted 1 picture (1 file) into out/Maps.app\n");
    expectPicture("out/Maps.app/Icon-4-4.png", CarPixels::filled(4, 4, kRed));
}

TEST_F(ExtractTest, LaterPictureOfTheSameFileNameKeepsItForEveryNumberOfJobs) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap({.identifier = 7, .idiom = 2}, CarPixels::filled(4, 4, kRed));
    car.bitmap({.identifier = 7, .idiom = 1}, CarPixels::filled(4, 4, kGreen));
    catalog(car);
    for (const char* const jobs : {"1", "2"}) {
        const CommandResult result = extract({"Maps.app", "out", "--jobs", jobs});
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.output, "Extracted 2 pictures (2 files) into out/Maps.app\n");
        EXPECT_EQ(fileNames("out/Maps.app"), "Icon-4-4.png Icon-4-4~phone.png");
        expectPicture("out/Maps.app/Icon-4-4.png", CarPixels::filled(4, 4, kRed));
        expectPicture("out/Maps.app/Icon-4-4~phone.png", CarPixels::filled(4, 4, kGreen));
    }
}

TEST_F(ExtractTest, ScaleIsTruncatedInNames) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap({.identifier = 7, .scale = 1, .scalePercent = 150}, CarPixels::filled(1, 1, kRed));
    car.bitmap({.identifier = 7, .scale = 2, .scalePercent = 250}, CarPixels::filled(2, 2, kRed));
    catalog(car);
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    EXPECT_EQ(fileNames("out/Maps.app"), "Icon-1-1.png Icon-2-2-@2x.png");
}

TEST_F(ExtractTest, PatternTakesSomeOfTheNames) {
    CarWriter car;
    std::uint16_t identifier = 1;
    for (const char* const name : {"Bar", "Bar/Button", "Button", "Knob"}) {
        car.facet(name, identifier);
        car.bitmap({.identifier = identifier}, kPattern);
        ++identifier;
    }
    catalog(car);
    EXPECT_EQ(extract({"Maps.app", "out", "--name", "*B*n"}).output,
              "Extracted 2 pictures (2 files) into out/Maps.app\n");
    EXPECT_EQ(fileNames("out/Maps.app"), "Bar/Button-5-3.png Button-5-3.png");
    expectFailure({"Maps.app", "none", "--name", "knob"}, 1,
                  "Maps.app/Assets.car: nothing has a name that fits \"knob\"; without --name, "
                  "--list shows the names");
    EXPECT_FALSE(std::filesystem::exists(folder / "none"));
}

// Atlases, single pictures, a vector that cannot be drawn, pictures that share names.
CarWriter mixedCatalog() {
    CarWriter car;
    for (std::uint16_t page = 1; page <= 3; ++page) {
        car.atlas(page, CarPixels::pattern(64, 64));
    }
    for (std::uint16_t i = 1; i <= 40; ++i) {
        car.facet("Part " + std::to_string(i), i);
        const std::uint32_t place = i;
        const auto page = static_cast<std::uint16_t>(1 + i % 3);
        car.link({.identifier = i, .idiom = 1}, {place, place, 8, 8}, page);
        car.link({.identifier = i, .idiom = 2}, {0, place, 8, 8}, page);
        const auto alone = static_cast<std::uint16_t>(100 + i);
        car.facet("Folder/Alone " + std::to_string(i), alone);
        car.bitmap({.identifier = alone}, CarPixels::pattern(place, 9));
    }
    car.facet("Broken", 200);
    car.file({.identifier = 200, .pixelFormat = fourCharacterCode("SVG "), .layout = 9}, "text");
    return car;
}

TEST_F(ExtractTest, FilesAndMessagesDoNotDependOnTheNumberOfJobs) {
    catalog(mixedCatalog());
    const CommandResult one = extract({"Maps.app", "one", "--jobs", "1"});
    const CommandResult four = extract({"Maps.app", "four", "--jobs", "4"});
    EXPECT_EQ(one.code, 1);
    EXPECT_EQ(four.code, 1);
    EXPECT_EQ(one.errors, four.errors);
    EXPECT_EQ(one.output,
              "Extracted 120 pictures (120 files) into one/Maps.app; 1 could not be extracted\n");
    EXPECT_EQ(files("one").size(), 120U);
    EXPECT_TRUE(files("one") == files("four"));
}

TEST_F(ExtractTest, WhatCannotBeDecodedIsNamedAndTheRestIsWritten) {
    CarWriter car;
    car.facet("Damaged", 1);
    car.facet("Odd", 2);
    car.facet("Record", 3);
    car.facet("Sound", 4);
    car.facet("Torn", 5);
    const tests::ByteVector junk(100, 0xAB);
    car.bitmap({.identifier = 1, .name = "damaged.png", .width = 8, .height = 8},
               Compression::lzfse, junk);
    car.bitmap({.identifier = 2, .name = "odd.png", .width = 8, .height = 8}, Compression::blurred,
               junk);
    car.record(car.key({.identifier = 3}), tests::ByteVector(10, 1));
    car.bitmap({.identifier = 4}, kPattern);
    car.link({.identifier = 5, .name = "torn.png"}, {0, 0, 4, 4}, 9);  // there is no such atlas
    catalog(car);
    const CommandResult result = extract({"Maps.app", "out"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output,
              "Extracted 1 picture (1 file) into out/Maps.app; 4 could not be extracted\n");
    EXPECT_EQ(fileNames("out"), "Maps.app/Sound-5-3.png");
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 4) << result.errors;
    std::size_t last = 0;
    for (const char* const text :
         {"warning: \"Damaged\", rendition \"damaged.png\": ",
          "warning: \"Odd\", rendition \"odd.png\": ", "warning: \"Record\", rendition \"\": ",
          "warning: \"Torn\", rendition \"torn.png\": "}) {
        const std::size_t place = result.errors.find(text, last);
        ASSERT_NE(place, std::string::npos) << text << result.errors;
        last = place;
    }
}

TEST_F(ExtractTest, DamagedAtlasIsTheReasonForEachOfItsPictures) {
    CarWriter car;
    car.rendition({.element = 9,
                   .attributes = {{Attribute::dimension1, 1}},
                   .name = "ZZZZPackedAsset-1.1.0",
                   .width = 8,
                   .height = 8,
                   .layout = 1004,
                   .payload = tests::bitmapPayload(Compression::lzfse, tests::ByteVector(50, 3))});
    for (std::uint16_t i = 1; i <= 3; ++i) {
        car.facet("Part " + std::to_string(i), i);
        car.link({.identifier = i, .name = "part.png"}, {0, 0, 4, 4});
    }
    catalog(car);
    const CommandResult result = extract({"Maps.app", "out"});
    EXPECT_EQ(result.code, 1);
    for (const char* const name : {"Part 1", "Part 2", "Part 3"}) {
        EXPECT_NE(result.errors.find(std::string("\"") + name +
                                     "\", rendition \"part.png\": its atlas: "),
                  std::string::npos)
            << result.errors;
    }
    EXPECT_EQ(result.output,
              "Extracted 0 pictures (0 files) into out/Maps.app; 3 could not be extracted\n");
}

TEST_F(ExtractTest, InputThatIsNoCatalogIsOneLine) {
    folder.file("text.car", "text");
    folder.file("empty.car");
    folder.folder("Empty.app");
    expectFailure({"none.car", "out"}, 3, "none.car: no such file or directory");
    expectFailure({"text.car", "out"}, 3,
                  "text.car: it is not a compiled asset catalog (at byte 0)");
    expectFailure({"empty.car", "out"}, 3, "empty.car: the file is empty");
    expectFailure(
        {"Empty.app", "out"}, 3,
        "Empty.app: there is no Assets.car or Empty.car in this folder, in its Resources or "
        "its Contents/Resources: give the folder that has one, or another .car file");
    expectFailure({"text.car", "--list"}, 3,
                  "text.car: it is not a compiled asset catalog (at byte 0)");
    EXPECT_FALSE(std::filesystem::exists(folder / "out"));
}

TEST_F(ExtractTest, CatalogWithoutPicturesIsNothingFound) {
    CarWriter car;
    car.facet("Tint", 7);
    car.color({.identifier = 7}, 1, {1, 0, 0, 1});
    catalog(car);
    expectFailure({"Maps.app", "out"}, 1,
                  "Maps.app/Assets.car: there are no pictures in this catalog");
    EXPECT_EQ(extract({"Maps.app", "--list"}).code, 0);
}

}  // namespace
}  // namespace velmoranth::cli::extract_test
