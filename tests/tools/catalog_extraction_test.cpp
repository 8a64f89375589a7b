#include "tools/catalog_extraction.h"

#include "core/velmoranth.h"
#include "tests/support/test_device.h"

#include "catalog_doubles.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace velmoranth::tools::catalog_extraction_test {
namespace {

using platform::BitmapImageRef;
using platform::ClassRef;
using platform::ObjectRef;
using platform::OpenedCatalog;
using tests::solid;
using tests::text;
using Lines = std::vector<std::string>;

class Extraction : public testing::Test {
  protected:
    Extraction() {
        device.bundles.real = &bundles;
        device.catalogClass.real = &catalogClass;
        device.runtime.addClass("CUICatalog");
        device.runtime.addClass("CUINamedImage");
        device.runtime.addClass("CUINamedMultisizeImageSet");
    }

    // A catalog file that opens to `catalog`.
    void catalogFile() {
        device.file(kFile, "a catalog");
        catalogClass.fromFile.catalog = catalog;
    }

    // Which images are asked for and wrapped.
    Lines imageLines() const {
        Lines lines = device.journal.lines();
        std::erase_if(lines, [](const std::string& line) {
            return line.find("CUICatalog image") == std::string::npos &&
                   !line.starts_with("-[CUINamedImage image]") &&
                   !line.starts_with("+[UIImage imageWithCGImage:]");
        });
        return lines;
    }

    std::shared_ptr<Rendition> rendition(const std::string& name, double scale, std::size_t width,
                                         std::size_t height) {
        auto made = std::make_shared<Rendition>(name, scale);
        made->bitmap = device.image(solid(width, height, {255, 0, 0}), 1)->bitmap();
        return made;
    }

    // A name that the phone has.
    void named(const std::string& name, std::vector<ObjectRef> renditions) {
        catalog->names.push_back(name);
        catalog->single[{-1, name}] = renditions.front();
        catalog->renditions[name] = std::move(renditions);
    }

    void extract(const std::string& path = kFile, const std::string& to = "/tmp/x") {
        device.journal.clear();
        EXPECT_EQ(CatalogExtraction::imageFromBundlePathExtractExtractionPath(path, true, to),
                  nullptr);
    }

    // The device's folder, names sorted.
    [[nodiscard]] Lines files(const std::string& folder) const {
        Lines found;
        const std::filesystem::path host(device.hostFolder() + folder);
        if (std::filesystem::exists(host)) {
            for (const auto& entry : std::filesystem::directory_iterator(host)) {
                found.push_back(entry.path().filename().string());
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    [[nodiscard]] Lines log() const { return device.journal.log(); }

    static inline const std::string kFile = "/A/B/Assets.car";
    static inline const std::string kBundle = "/Applications/Clock.app";

    tests::TestDevice device;
    Bundles bundles;
    CatalogClass catalogClass;
    std::shared_ptr<Catalog> catalog = std::make_shared<Catalog>();
};

TEST_F(Extraction, IsAMessageToTheMainClass) {
    EXPECT_EQ(core::VelMoranth::imageFromBundlePathExtractExtractionPath("/none.car", false, "/x"),
              nullptr);
    EXPECT_EQ(log(), Lines{"Velmoranth Assets Bundle /none.car not found"});
}

TEST_F(Extraction, EveryStepOfACatalogFileInOrder) {
    catalogFile();
    named("Star", {rendition("Star", 2, 20, 30), rendition("Star", 3, 30, 45)});
    extract();
    const std::string two = "/tmp/x/B/Assets.car/Star-20-30-@2x.png";
    const std::string three = "/tmp/x/B/Assets.car/Star-30-45-@3x.png";
    Lines lines;
    for (const std::string& line : device.journal.lines()) {
        if (line != "objc_getClass CUINamedImage" &&
            !line.starts_with("-[NSObject isKindOfClass:] ")) {
            lines.push_back(line);
        }
    }
    Lines expected{
        "+[NSBundle bundleWithPath:] \"/System/Library/PrivateFrameworks/CoreUI.framework\"",
        "-[NSBundle load] NSBundle a.bundle",
        "+[NSBundle bundleWithPath:] \"/A/B/Assets.car\"",
        "-[NSFileManager fileExistsAtPath:] /A/B/Assets.car",
        "objc_getClass CUICatalog",
        "-[CUICatalog initWithURL:error:] \"/A/B/Assets.car\"",
        "-[NSFileManager createDirectoryAtPath:withIntermediateDirectories:attributes:error:] "
        "/tmp/x/B/Assets.car",
        "-[CUICatalog imageWithName:scaleFactor:] CUICatalog \"Star\" 0",
        "-[CUICatalog imagesWithName:] CUICatalog \"Star\""};
    for (const auto& [path, size, scale] :
         {std::tuple{two, "20×30", "2"}, std::tuple{three, "30×45", "3"}}) {
        for (const std::string& line :
             {std::string("-[CUINamedImage name] CUINamedImage Star"),
              std::string("-[CUINamedImage createImageFromPDFRenditionWithScale:] "
                          "CUINamedImage Star ") +
                  scale,
              std::string("-[CUINamedImage image] CUINamedImage Star"),
              "log Extracting " + path + "\n",
              std::string("+[UIImage imageWithCGImage:] ") + size + " pixels",
              std::string("UIImagePNGRepresentation ") + size + " @1x",
              "-[NSData writeToFile:atomically:] " + path}) {
            expected.push_back(line);
        }
    }
    expected.emplace_back("log Velmoranth Assets Extracted 2 files.\n");
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(files("/tmp/x/B/Assets.car"), (Lines{"Star-20-30-@2x.png", "Star-30-45-@3x.png"}));
    EXPECT_EQ(tests::drawnPixels(device.images().imageWithContentsOfFile(two)),
              solid(20, 30, {255, 0, 0}));
}

TEST_F(Extraction, SameWhetherLoggingIsOnOrOffAndWhateverExtractSays) {
    catalogFile();
    named("Star", {rendition("Star", 1, 2, 2)});
    device.preferences({{"enableLogging", false}});
    CatalogExtraction::imageFromBundlePathExtractExtractionPath(kFile, false, "/tmp/x");
    EXPECT_EQ(log(), (Lines{"Extracting /tmp/x/B/Assets.car/Star-2-2.png\n",
                            "Velmoranth Assets Extracted 1 files.\n"}));
    EXPECT_EQ(files("/tmp/x/B/Assets.car"), Lines{"Star-2-2.png"});
}

TEST_F(Extraction, MissingPathHasItsKindWordsCrossed) {
    extract("/path/Assets.car");
    EXPECT_EQ(log(), Lines{"Velmoranth Assets Bundle /path/Assets.car not found"});
    extract("/path/Clock.app");
    EXPECT_EQ(log(), Lines{"Velmoranth Assets car file /path/Clock.app not found"});
    EXPECT_TRUE(catalogClass.classes.empty());
}

TEST_F(Extraction, NilPathIsNotFound) {
    CatalogExtraction::imageFromBundlePathExtractExtractionPath(std::nullopt, true, "/tmp/x");
    EXPECT_EQ(log(), Lines{"Velmoranth Assets car file (null) not found"});
}

TEST_F(Extraction, FailureToLoadCoreUIIsIgnored) {
    bundles.loads = false;
    catalogFile();
    named("Star", {rendition("Star", 1, 2, 2)});
    extract();
    EXPECT_EQ(log().back(), "Velmoranth Assets Extracted 1 files.\n");
}

TEST_F(Extraction, BundleIsAskedForItsDefaultCatalog) {
    device.folder(kBundle);
    catalogClass.ofBundle = catalog;
    named("Star", {rendition("Star", 1, 2, 2)});
    extract(kBundle);
    EXPECT_EQ(device.journal.linesWith("+[CUICatalog defaultUICatalogForBundle:]"),
              Lines{"+[CUICatalog defaultUICatalogForBundle:] NSBundle a.bundle"});
    EXPECT_EQ(device.journal.count("-[CUICatalog initWith"), 0U);
    EXPECT_EQ(files("/tmp/x/Clock.app"), Lines{"Star-2-2.png"});
}

TEST_F(Extraction, CatalogThatDoesNotOpenIsOpenedAgainByName) {
    device.folder(kBundle);
    catalogClass.named.catalog = catalog;
    named("Star", {rendition("Star", 1, 2, 2)});
    extract(kBundle);
    EXPECT_EQ(device.journal.linesWith("-[CUICatalog initWith"),
              Lines{"-[CUICatalog initWithName:fromBundle:error:] \"Clock\" NSBundle a.bundle"});
    EXPECT_EQ(log().back(), "Velmoranth Assets Extracted 1 files.\n");

    catalogFile();
    catalogClass.fromFile.catalog = nullptr;
    extract();
    EXPECT_EQ(device.journal.linesWith("-[CUICatalog initWith"),
              (Lines{"-[CUICatalog initWithURL:error:] \"/A/B/Assets.car\"",
                     "-[CUICatalog initWithName:fromBundle:error:] \"Assets\" NSBundle a.bundle"}));
    EXPECT_EQ(log().back(), "Velmoranth Assets Extracted 1 files.\n");
}

TEST_F(Extraction, CatalogThatReportsAnErrorIsOpenedAgainByName) {
    catalogFile();
    catalogClass.fromFile.error = platform::Error{"It is odd.", "Odd", 7};
    catalogClass.named.catalog = std::make_shared<Catalog>();
    named("Star", {rendition("Star", 1, 2, 2)});
    extract();
    EXPECT_EQ(device.journal.linesWith("-[CUICatalog initWithName:"),
              Lines{"-[CUICatalog initWithName:fromBundle:error:] \"Assets\" NSBundle a.bundle"});
    // The second catalog counts, and it has no names.
    EXPECT_EQ(log(), Lines{"Velmoranth Assets Bundle Assets.car does not contain any .car "
                           "assets.\n"});
}

TEST_F(Extraction, ErrorOfTheSecondOpeningIsLogged) {
    device.file(kFile, "");
    catalogClass.fromFile.error = platform::Error{"It is odd.", "Odd", 7};
    extract();
    EXPECT_EQ(log(), Lines{"Velmoranth Assets Error Domain=Odd Code=7 \"It is odd.\""});
    catalogClass.named.error = platform::Error{"It is missing.", "NSCocoaErrorDomain", 260};
    extract();
    EXPECT_EQ(log(), Lines{"Velmoranth Assets Error Domain=NSCocoaErrorDomain Code=260 \"It is "
                           "missing.\""});
    EXPECT_EQ(
        device.journal.count(
            "-[NSFileManager createDirectoryAtPath:withIntermediateDirectories:attributes:error:]"),
        0U);
}

TEST_F(Extraction, NoErrorPrintsAsNull) {
    device.file(kFile, "");
    extract();
    EXPECT_EQ(log(), Lines{"Velmoranth Assets (null)"});
}

TEST_F(Extraction, ClassIsLookedUpByName) {
    device.file(kFile, "");
    extract();
    const ClassRef catalogs = device.runtime.getClass("CUICatalog");
    EXPECT_EQ(catalogClass.classes, (std::vector<ClassRef>{catalogs, catalogs}));
}

TEST_F(Extraction, CatalogWithoutNamesWritesNothing) {
    catalogFile();
    extract();
    EXPECT_EQ(log(), Lines{"Velmoranth Assets Bundle Assets.car does not contain any .car "
                           "assets.\n"});
    EXPECT_EQ(
        device.journal.count(
            "-[NSFileManager createDirectoryAtPath:withIntermediateDirectories:attributes:error:]"),
        0U);
    EXPECT_FALSE(device.exists("/tmp/x"));
}

TEST_F(Extraction, FolderThatCannotBeMadeEndsIt) {
    catalogFile();
    named("Star", {rendition("Star", 1, 2, 2)});
    device.file("/tmp/x", "in the way");
    extract();
    ASSERT_EQ(log().size(), 1U);
    EXPECT_TRUE(log()[0].starts_with("Velmoranth Assets Error Domain=NSCocoaErrorDomain Code="));
    EXPECT_EQ(device.journal.count("-[CUICatalog imageWithName:"), 0U);
    EXPECT_EQ(device.contents("/tmp/x"), "in the way");
}

TEST_F(Extraction, NamesInTheCatalogsOrder) {
    catalogFile();
    named("b", {rendition("b", 1, 1, 1)});
    named("a", {rendition("a", 1, 1, 1)});
    named("c", {rendition("c", 1, 1, 1)});
    extract();
    EXPECT_EQ(log(), (Lines{"Extracting /tmp/x/B/Assets.car/b-1-1.png\n",
                            "Extracting /tmp/x/B/Assets.car/a-1-1.png\n",
                            "Extracting /tmp/x/B/Assets.car/c-1-1.png\n",
                            "Velmoranth Assets Extracted 3 files.\n"}));
}

TEST_F(Extraction, PhoneIsAskedForSecondAndThenAllRenditionsAreTaken) {
    catalogFile();
    catalog->names = {"Dial"};
    catalog->single[{1, "Dial"}] = rendition("Dial", 1, 1, 1);
    catalog->renditions["Dial"] = {rendition("Dial", 2, 2, 2), rendition("Dial", 3, 3, 3)};
    extract();
    EXPECT_EQ(imageLines(),
              (Lines{"-[CUICatalog imageWithName:scaleFactor:] CUICatalog \"Dial\" 0",
                     "-[CUICatalog imageWithName:scaleFactor:deviceIdiom:] CUICatalog \"Dial\" 0 1",
                     "-[CUICatalog imagesWithName:] CUICatalog \"Dial\"",
                     "-[CUINamedImage image] CUINamedImage Dial",
                     "+[UIImage imageWithCGImage:] 2×2 pixels",
                     "-[CUINamedImage image] CUINamedImage Dial",
                     "+[UIImage imageWithCGImage:] 3×3 pixels"}));
    EXPECT_EQ(log().back(), "Velmoranth Assets Extracted 2 files.\n");
}

TEST_F(Extraction, IdiomFourGivesThatOneImageAlone) {
    catalogFile();
    catalog->names = {"Map"};
    catalog->single[{4, "Map"}] = rendition("Map", 2, 8, 8);
    catalog->renditions["Map"] = {rendition("Map", 3, 9, 9)};
    extract();
    EXPECT_EQ(
        device.journal.linesWith("-[CUICatalog imageWithName:"),
        (Lines{"-[CUICatalog imageWithName:scaleFactor:] CUICatalog \"Map\" 0",
               "-[CUICatalog imageWithName:scaleFactor:deviceIdiom:] CUICatalog \"Map\" 0 1",
               "-[CUICatalog imageWithName:scaleFactor:deviceIdiom:] CUICatalog \"Map\" 0 4"}));
    EXPECT_EQ(device.journal.count("-[CUICatalog imagesWithName:"), 0U);
    EXPECT_EQ(files("/tmp/x/B/Assets.car"), Lines{"Map-8-8-@2x.png"});
}

TEST_F(Extraction, NameWithoutAnImageIsPassedOver) {
    catalogFile();
    catalog->names = {"Nothing"};
    named("Star", {rendition("Star", 1, 2, 2)});
    extract();
    EXPECT_EQ(log(), (Lines{"Extracting /tmp/x/B/Assets.car/Star-2-2.png\n",
                            "Velmoranth Assets Extracted 1 files.\n"}));
}

TEST_F(Extraction, RenditionOfAnotherClassIsPassedOver) {
    catalogFile();
    auto set = rendition("Icon", 1, 4, 4);
    set->kind = "CUINamedMultisizeImageSet";
    named("Icon", {set, nullptr, rendition("Icon", 1, 2, 2)});
    extract();
    EXPECT_EQ(files("/tmp/x/B/Assets.car"), Lines{"Icon-2-2.png"});
    EXPECT_EQ(log().back(), "Velmoranth Assets Extracted 1 files.\n");
}

TEST_F(Extraction, PDFRenditionIsDrawnAtItsOwnScaleAndTheStoredBitmapNotAskedFor) {
    catalogFile();
    auto vector = rendition("Glyph", 3, 4, 4);
    vector->pdf = device.image(solid(9, 12, {0, 0, 255}), 1)->bitmap();
    named("Glyph", {vector});
    extract();
    EXPECT_EQ(
        device.journal.linesWith("-[CUINamedImage createImageFromPDF"),
        Lines{"-[CUINamedImage createImageFromPDFRenditionWithScale:] CUINamedImage Glyph 3"});
    EXPECT_EQ(device.journal.count("-[CUINamedImage image]"), 0U);
    EXPECT_EQ(files("/tmp/x/B/Assets.car"), Lines{"Glyph-9-12-@3x.png"});
}

TEST_F(Extraction, RenditionWithoutABitmapIsNeitherLoggedNorCounted) {
    catalogFile();
    auto empty = rendition("Star", 1, 2, 2);
    empty->bitmap = nullptr;
    named("Star", {empty});
    extract();
    EXPECT_EQ(log(), Lines{"Velmoranth Assets Extracted 0 files.\n"});
    EXPECT_TRUE(device.exists("/tmp/x/B/Assets.car"));
}

TEST_F(Extraction, ScaleOfOneAndAHalfIsWrittenWithoutOne) {
    catalogFile();
    named("Star", {rendition("Star", 1.5, 15, 15)});
    extract();
    EXPECT_EQ(
        device.journal.linesWith("-[CUINamedImage createImageFromPDF"),
        Lines{"-[CUINamedImage createImageFromPDFRenditionWithScale:] CUINamedImage Star 1.5"});
    EXPECT_EQ(files("/tmp/x/B/Assets.car"), Lines{"Star-15-15.png"});
}

TEST_F(Extraction, LaterRenditionOfTheSameScaleAndSizeOverwrites) {
    catalogFile();
    auto later = rendition("Star", 2, 4, 4);
    later->bitmap = device.image(solid(4, 4, {0, 255, 0}), 1)->bitmap();
    named("Star", {rendition("Star", 2, 4, 4), later});
    extract();
    EXPECT_EQ(files("/tmp/x/B/Assets.car"), Lines{"Star-4-4-@2x.png"});
    EXPECT_EQ(tests::drawnPixels(
                  device.images().imageWithContentsOfFile("/tmp/x/B/Assets.car/Star-4-4-@2x.png")),
              solid(4, 4, {0, 255, 0}));
    EXPECT_EQ(log().back(), "Velmoranth Assets Extracted 2 files.\n");
}

TEST_F(Extraction, WriteThatFailsIsCountedAndTheRestGoesOn) {
    catalogFile();
    named("a", {rendition("a", 1, 1, 1)});
    named("b", {rendition("b", 1, 1, 1)});
    device.fileManager().failingWrites = 1;
    extract();
    EXPECT_EQ(files("/tmp/x/B/Assets.car"), Lines{"b-1-1.png"});
    EXPECT_EQ(log().back(), "Velmoranth Assets Extracted 2 files.\n");
}

TEST_F(Extraction, NameWithASlashLeadsIntoAFolderThatIsNotMade) {
    catalogFile();
    named("Set/Star", {rendition("Set/Star", 1, 1, 1)});
    extract();
    EXPECT_EQ(log(), (Lines{"Extracting /tmp/x/B/Assets.car/Set/Star-1-1.png\n",
                            "Velmoranth Assets Extracted 1 files.\n"}));
    EXPECT_EQ(files("/tmp/x/B/Assets.car"), Lines{});
}

}  // namespace
}  // namespace velmoranth::tools::catalog_extraction_test
