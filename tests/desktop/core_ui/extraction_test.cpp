// The system's extraction tool over real catalogs of a device.
#include "desktop/core_ui/bundles.h"
#include "desktop/core_ui/catalogs.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/test_device.h"
#include "tools/catalog_extraction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::desktop::extraction_test {
namespace {

using tests::CarPixels;
using tests::CarWriter;
using tests::Pixel;
using tests::solid;
using Lines = std::vector<std::string>;

class ExtractedCatalog : public testing::Test {
  protected:
    ExtractedCatalog() {
        device.runtime.addClass("CUICatalog");
        device.runtime.addClass("CUINamedImage");
        device.bundles.real = &bundles;
        device.catalogClass.real = &catalogs;
    }

    void write(const std::string& path, const CarWriter& car) const {
        const tests::ByteVector bytes = car.build();
        device.file(path, std::string(bytes.begin(), bytes.end()));
    }

    Lines extract(const std::string& path) {
        device.journal.clear();
        tools::CatalogExtraction::imageFromBundlePathExtractExtractionPath(path, true, "/tmp/x");
        return device.journal.log();
    }

    [[nodiscard]] Lines files(const std::string& folder) const {
        Lines found;
        for (const auto& entry :
             std::filesystem::directory_iterator(device.hostFolder() + folder)) {
            found.push_back(entry.path().filename().string());
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    [[nodiscard]] tests::Pixels shown(const std::string& path) const {
        return tests::drawnPixels(device.images().imageWithContentsOfFile(path));
    }

    tests::TestDevice device;
    std::shared_ptr<DeviceRoot> root = DeviceRoot::open(device.hostFolder()).value();
    DesktopBundles bundles{root};
    DesktopCatalogClass catalogs{root};
};

CarWriter icons() {
    CarWriter car;
    car.facet("AppIcon60x60", 1);
    car.facet("Phone", 2);
    car.facet("Pad", 3);
    car.bitmap({.identifier = 1, .scale = 2}, CarPixels::filled(120, 120, {255, 0, 0, 255}));
    car.bitmap({.identifier = 1, .scale = 3}, CarPixels::filled(180, 180, {0, 0, 255, 255}));
    car.bitmap({.identifier = 2, .idiom = 1}, CarPixels::filled(2, 2, {0, 255, 0, 255}));
    car.bitmap({.identifier = 3, .idiom = 2}, CarPixels::filled(3, 3, {0, 255, 0, 255}));
    return car;
}

TEST_F(ExtractedCatalog, FileOfACatalog) {
    write("/A/B/Assets.car", icons());
    EXPECT_EQ(extract("/A/B/Assets.car"),
              (Lines{"Extracting /tmp/x/B/Assets.car/AppIcon60x60-120-120-@2x.png\n",
                     "Extracting /tmp/x/B/Assets.car/AppIcon60x60-180-180-@3x.png\n",
                     "Extracting /tmp/x/B/Assets.car/Phone-2-2.png\n",
                     "Velmoranth Assets Extracted 3 files.\n"}));
    EXPECT_EQ(
        files("/tmp/x/B/Assets.car"),
        (Lines{"AppIcon60x60-120-120-@2x.png", "AppIcon60x60-180-180-@3x.png", "Phone-2-2.png"}));
    EXPECT_EQ(shown("/tmp/x/B/Assets.car/Phone-2-2.png"), solid(2, 2, Pixel{0, 255, 0}));
}

TEST_F(ExtractedCatalog, Bundle) {
    write("/Applications/Clock.app/Assets.car", icons());
    EXPECT_EQ(extract("/Applications/Clock.app").back(), "Velmoranth Assets Extracted 3 files.\n");
    EXPECT_EQ(files("/tmp/x/Clock.app").size(), 3U);
}

TEST_F(ExtractedCatalog, BundleWhoseCatalogHasItsName) {
    write("/Library/Clock.bundle/Clock.car", icons());
    EXPECT_EQ(extract("/Library/Clock.bundle").back(), "Velmoranth Assets Extracted 3 files.\n");
    EXPECT_EQ(files("/tmp/x/Clock.bundle").size(), 3U);
}

TEST_F(ExtractedCatalog, BundleWithoutOne) {
    device.folder("/Applications/Clock.app");
    EXPECT_EQ(extract("/Applications/Clock.app"),
              Lines{"Velmoranth Assets Error Domain=NSCocoaErrorDomain Code=260 \"The file "
                    "“Clock.car” couldn’t be opened because there is no such file.\""});
    EXPECT_FALSE(device.exists("/tmp/x"));
}

TEST_F(ExtractedCatalog, CatalogOfColorsAlone) {
    CarWriter car;
    car.facet("Accent", 1);
    car.color({.identifier = 1}, 1, {1, 0, 0, 1});
    write("/A/B/Assets.car", car);
    EXPECT_EQ(extract("/A/B/Assets.car"),
              Lines{"Velmoranth Assets Bundle Assets.car does not contain any .car assets.\n"});
    EXPECT_FALSE(device.exists("/tmp/x"));
}

TEST_F(ExtractedCatalog, EveryCopyOfAPictureIsExtractedAndTheLastOneStays) {
    CarWriter car;
    car.facet("Star", 1);
    car.bitmap({.identifier = 1}, CarPixels::filled(2, 2, {255, 0, 0, 255}));
    car.bitmap({.identifier = 1, .attributes = {{catalog::Attribute::deploymentTarget, 5}}},
               CarPixels::filled(2, 2, {0, 0, 255, 255}));
    write("/A/B/Assets.car", car);
    const std::string path = "/tmp/x/B/Assets.car/Star-2-2.png";
    EXPECT_EQ(extract("/A/B/Assets.car"),
              (Lines{"Extracting " + path + "\n", "Extracting " + path + "\n",
                     "Velmoranth Assets Extracted 2 files.\n"}));
    EXPECT_EQ(shown(path), solid(2, 2, Pixel{0, 0, 255}));
}

TEST_F(ExtractedCatalog, FileThatIsNoCatalog) {
    device.file("/A/B/Assets.car", "no catalog");
    EXPECT_EQ(extract("/A/B/Assets.car"),
              Lines{"Velmoranth Assets Error Domain=NSCocoaErrorDomain Code=260 \"The file "
                    "“Assets.car” couldn’t be opened because there is no such file.\""});
    EXPECT_FALSE(device.exists("/tmp/x"));
}

TEST_F(ExtractedCatalog, DamagedPictureIsPassedOver) {
    CarWriter car = icons();
    car.facet("Odd", 9);
    car.bitmap({.identifier = 9, .width = 4, .height = 4}, catalog::Compression::rle,
               tests::ByteVector(3));
    write("/A/B/Assets.car", car);
    EXPECT_EQ(extract("/A/B/Assets.car").back(), "Velmoranth Assets Extracted 3 files.\n");
}

}  // namespace
}  // namespace velmoranth::desktop::extraction_test
