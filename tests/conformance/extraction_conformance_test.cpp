// The system's own extraction of real catalogs, where they are: its log has a line for each picture
// that NAME.decoded.tsv lists under a name that a phone has, name by name, and its folder those
// files.
#include "desktop/catalog/catalog.h"
#include "desktop/core_ui/bundles.h"
#include "desktop/core_ui/catalogs.h"
#include "tests/support/places.h"
#include "tests/support/test_device.h"
#include "tools/catalog_extraction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::extraction_conformance_test {
namespace {

namespace fs = std::filesystem;

using catalog::Attribute;
using Lines = std::vector<std::string>;

enum Column { key, facet, rendition, layout, format, width, height, scale, payload };

std::vector<fs::path> catalogFiles() {
    std::vector<fs::path> found;
    std::error_code none;
    for (const auto& entry : fs::recursive_directory_iterator(tests::samples("car"), none)) {
        if (entry.path().extension() == ".car") {
            found.push_back(entry.path());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

bool isPicture(const Lines& row) {
    return row[payload].starts_with("compression") || row[payload].starts_with("link") ||
           row[format] == "PDF" || row[format] == "SVG";
}

// The pictures' rows by name, in the order of the file.
std::map<std::string, std::vector<Lines>> picturesByName(const fs::path& file) {
    std::map<std::string, std::vector<Lines>> names;
    std::ifstream text(fs::path(file).replace_extension(".decoded.tsv"));
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with('#')) {
            continue;
        }
        Lines row;
        std::istringstream cells(line);
        for (std::string cell; std::getline(cells, cell, '\t');) {
            row.push_back(cell);
        }
        if (row.size() > payload && !row[facet].empty() && row[facet] != "-" && isPicture(row)) {
            names[row[facet]].push_back(row);
        }
    }
    return names;
}

// The kind of device that a row's key, in hexadecimal, is for.
int idiomOf(const Lines& row, const std::vector<std::uint16_t>& keyFormat) {
    const auto slot = std::ranges::find(keyFormat, static_cast<std::uint16_t>(Attribute::idiom));
    if (slot == keyFormat.end()) {
        return 0;
    }
    const auto place = static_cast<std::size_t>(slot - keyFormat.begin()) * 4;
    return std::stoi(row[key].substr(place, 2), nullptr, 16);
}

// The file's name, or for a vector, which has no size, how it begins.
std::string fileOf(const Lines& row) {
    if (row[width] == "0") {
        return row[facet] + "-";
    }
    const std::string size = row[facet] + "-" + row[width] + "-" + row[height];
    return row[scale] == "100" ? size + ".png"
                               : size + "-@" + std::string(1, row[scale].front()) + "x.png";
}

class ExtractionConformance : public testing::Test {
  protected:
    ExtractionConformance() {
        device.runtime.addClass("CUICatalog");
        device.runtime.addClass("CUINamedImage");
        device.bundles.real = &bundles;
        device.catalogClass.real = &catalogs;
    }

    tests::TestDevice device;
    std::shared_ptr<desktop::DeviceRoot> root =
        desktop::DeviceRoot::open(device.hostFolder()).value();
    desktop::DesktopBundles bundles{root};
    desktop::DesktopCatalogClass catalogs{root};
};

TEST_F(ExtractionConformance, EveryPictureThatAPhoneHas) {
    const std::vector<fs::path> files = catalogFiles();
    if (files.empty()) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    for (const fs::path& file : files) {
        SCOPED_TRACE(file.string());
        device.folder("/App");
        fs::copy_file(file, device.hostFolder() + "/App/Assets.car",
                      fs::copy_options::overwrite_existing);
        device.journal.clear();
        const std::string folder =
            "/out/" + file.parent_path().filename().string() + "/" + file.stem().string();
        tools::CatalogExtraction::imageFromBundlePathExtractExtractionPath("/App/Assets.car", true,
                                                                           folder);
        const Lines log = device.journal.log();

        const auto keyFormat = catalog::Catalog::open(file)->keyFormat();
        Lines expected;
        for (const auto& [name, rows] : picturesByName(file)) {
            if (std::ranges::any_of(
                    rows, [&](const Lines& row) { return idiomOf(row, keyFormat) <= 1; })) {
                std::ranges::transform(rows, std::back_inserter(expected), fileOf);
            }
        }
        ASSERT_EQ(log.size(), expected.size() + 1);
        std::set<std::string> written;
        const std::string start = "Extracting " + folder + "/App/Assets.car/";
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_TRUE(log[i].starts_with(start + expected[i])) << log[i];
            const std::string name = log[i].substr(start.size(), log[i].size() - start.size() - 1);
            // A name with a slash leads into a folder that is not made.
            if (name.find('/') == std::string::npos) {
                written.insert(name);
            }
        }
        EXPECT_EQ(log.back(),
                  "Velmoranth Assets Extracted " + std::to_string(expected.size()) + " files.\n");
        std::set<std::string> found;
        for (const auto& entry :
             fs::directory_iterator(device.hostFolder() + folder + "/App/Assets.car")) {
            found.insert(entry.path().filename().string());
        }
        EXPECT_EQ(found, written);
    }
}

}  // namespace
}  // namespace velmoranth::extraction_conformance_test
