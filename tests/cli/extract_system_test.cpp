// velmoranth extract --system-names: what comes out is what the system's own extraction leaves on a
// device.
#include "cli/extraction_plan.h"
#include "desktop/core_ui/bundles.h"
#include "desktop/core_ui/catalogs.h"
#include "tests/cli/extract_fixture.h"
#include "tests/support/places.h"
#include "tests/support/test_device.h"
#include "tools/catalog_extraction.h"

#include <fstream>
#include <iterator>
#include <memory>

namespace velmoranth::cli::extract_system_test {
namespace {

namespace fs = std::filesystem;

class ExtractSystem : public ExtractTest {
  protected:
    ExtractSystem() {
        device.runtime.addClass("CUICatalog");
        device.runtime.addClass("CUINamedImage");
        device.bundles.real = &bundles;
        device.catalogClass.real = &catalogs;
    }

    // The pictures below the folder by their paths.
    [[nodiscard]] static std::map<std::string, std::vector<std::uint8_t>> pictures(
        const std::string& folder) {
        std::map<std::string, std::vector<std::uint8_t>> found;
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.is_directory()) {
                continue;
            }
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            const auto image = desktop::decodeImage(
                {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
            EXPECT_TRUE(image) << entry.path();
            found[fs::relative(entry.path(), folder).string()] =
                image ? desktop::toPremultipliedBgra(*image) : std::vector<std::uint8_t>{};
        }
        return found;
    }

    // Extracts it there and here; gives the command's output.
    std::string expectTheSame(const std::string& file) {
        SCOPED_TRACE(file);
        const std::string name = fs::path(file).filename().string();
        const std::string parent = fs::path(file).parent_path().filename().string();
        fs::remove_all(device.hostFolder() + "/out");
        fs::remove_all(folder / "out");
        device.folder("/" + parent);
        fs::copy_file(file, device.hostFolder() + "/" + parent + "/" + name,
                      fs::copy_options::overwrite_existing);
        tools::CatalogExtraction::imageFromBundlePathExtractExtractionPath(
            "/" + parent + "/" + name, true, "/out");
        const CommandResult result = extract({file, "out", "--system-names"});
        fs::create_directories(folder / "out");  // the command makes none for no pictures
        const auto expected = pictures(device.hostFolder() + "/out");
        EXPECT_TRUE(pictures(folder / "out") == expected) << fileNames("out");
        EXPECT_TRUE(!expected.empty() || result.code == 1) << result.errors;
        return result.output;
    }

    tests::TestDevice device;
    std::shared_ptr<desktop::DeviceRoot> root =
        desktop::DeviceRoot::open(device.hostFolder()).value();
    desktop::DesktopBundles bundles{root};
    desktop::DesktopCatalogClass catalogs{root};
};

TEST_F(ExtractSystem, LastOfAFileAndEveryCopyAndPhonesPicturesAlone) {
    CarWriter car;
    for (std::uint16_t i = 1; i <= 9; ++i) {
        const std::vector<std::string> names{"Both", "Car",  "Copies", "Dir/Icon", "Odd \x01%41",
                                             "Pad",  "icon", "ICON",   "Broken"};
        car.facet(names.at(i - 1U), i);
    }
    const auto picture = [](std::uint8_t number) {
        return CarPixels::filled(4, 4, {number, 0, 0, 255});
    };
    car.bitmap({.identifier = 1, .idiom = 1}, picture(1));
    car.bitmap({.identifier = 1, .idiom = 2}, picture(2));
    car.bitmap({.identifier = 2, .idiom = 4}, picture(3));
    car.bitmap({.identifier = 2, .scale = 2, .idiom = 4}, picture(4));
    for (const std::uint16_t target : {std::uint16_t{0}, std::uint16_t{5}}) {
        car.bitmap({.identifier = 3, .attributes = {{Attribute::deploymentTarget, target}}},
                   picture(static_cast<std::uint8_t>(5 + target)));
    }
    car.bitmap({.identifier = 4}, picture(11));
    car.bitmap({.identifier = 5}, picture(12));
    car.bitmap({.identifier = 6, .idiom = 2}, picture(13));
    car.bitmap({.identifier = 7}, picture(14));
    car.bitmap({.identifier = 8}, picture(15));
    car.bitmap({.identifier = 9, .idiom = 1}, picture(16));
    car.bitmap({.identifier = 9, .idiom = 2, .width = 4, .height = 4}, Compression::astc,
               tests::ByteVector(16, 1));
    catalog(car);
    const std::string output = expectTheSame(folder / "Maps.app/Assets.car");
    EXPECT_EQ(output,
              "Extracted 9 pictures (7 files) into out/Maps.app/Assets.car; 1 could not be "
              "extracted\n"
              "2 pictures gave way to a later one of the same file name, as on a phone; without "
              "--system-names each has a file\n");
    EXPECT_EQ(fileNames("out/Maps.app/Assets.car"),
              "Both-4-4.png Broken-4-4.png Car-4-4.png Copies-4-4.png ICON-4-4.png "
              "Odd \x01%41-4-4.png icon-4-4.png");
    expectPicture("out/Maps.app/Assets.car/Copies-4-4.png", picture(10));
}

TEST_F(ExtractSystem, ListSaysWhichGiveWayAndWhichAreNotAPhones) {
    CarWriter car;
    car.facet("Icon", 7);
    car.facet("Pad", 8);
    car.bitmap({.identifier = 7, .idiom = 1}, CarPixels::filled(4, 4, kRed));
    car.bitmap({.identifier = 7, .idiom = 2}, CarPixels::filled(4, 4, kGreen));
    car.bitmap({.identifier = 8, .idiom = 2}, CarPixels::filled(4, 4, kGreen));
    catalog(car);
    const std::string table = extract({"Maps.app", "--list", "--system-names"}).output;
    EXPECT_NE(table.find("  gives way to a later one: Icon-4-4.png\n"), std::string::npos) << table;
    EXPECT_NE(table.find("  a phone does not extract it\n"), std::string::npos) << table;
    EXPECT_NE(table.find("3 renditions, 2 pictures to extract\n"), std::string::npos) << table;
    // No names but these are asked of it.
    expectFailure(
        {"Maps.app", "out", "--system-names", "--idiom", "car"}, 1,
        "Maps.app/Assets.car: nothing fits --idiom as it is given; --list alone shows what "
        "there is");
    expectFailure({"Maps.app", "out", "--appearance", "dark"}, 1,
                  "Maps.app/Assets.car: nothing is for the appearance \"dark\"; --appearance takes "
                  "any alone for this catalog, or leave it out");
}

TEST_F(ExtractSystem, CatalogOfOtherDevicesPicturesIsNothingFound) {
    CarWriter car;
    car.facet("Pad", 8);
    car.bitmap({.identifier = 8, .idiom = 2}, CarPixels::filled(4, 4, kGreen));
    catalog(car);
    expectFailure({"Maps.app", "out", "--system-names"}, 1,
                  "Maps.app/Assets.car: a phone extracts no pictures of this catalog");
}

TEST_F(ExtractSystem, RealCatalogs) {
    std::size_t count = 0;
    std::error_code ignored;
    for (fs::recursive_directory_iterator entry(tests::samples("car"), ignored), end;
         !ignored && entry != end; entry.increment(ignored)) {
        if (entry->path().extension() == ".car") {
            expectTheSame(entry->path());
            ++count;
        }
    }
    if (count == 0) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
}

}  // namespace
}  // namespace velmoranth::cli::extract_system_test
