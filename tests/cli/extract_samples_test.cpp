// velmoranth extract over real catalogs where they are: ../shared/samples, or the folder that
// VELMORANTH_SAMPLES names.
#include "desktop/catalog/pictures.h"
#include "tests/cli/extract_fixture.h"
#include "tests/support/places.h"
#include "tools/catalog_extraction.h"

#include <cstdlib>

namespace velmoranth::cli::extract_samples_test {
namespace {

namespace fs = std::filesystem;

using catalog::Catalog;
using catalog::Rendition;

std::vector<std::string> samples() {
    const fs::path start = tests::samples("car");
    std::vector<std::string> found;
    std::error_code ignored;
    for (fs::recursive_directory_iterator entry(start, ignored), end; !ignored && entry != end;
         entry.increment(ignored)) {
        if (entry->path().extension() == ".car") {
            found.push_back(entry->path().string());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

// What the file of each picture shows in the end, but for vectors.
std::map<std::string, const Rendition*> expectedFiles(const Catalog& catalog) {
    std::map<std::string, const Rendition*> files;
    for (const catalog::Facet& facet : catalog.facets()) {
        for (const Rendition* const rendition : catalog::picturesOf(catalog, facet)) {
            if (rendition->kind == catalog::Kind::bitmap ||
                rendition->kind == catalog::Kind::link) {
                files[tools::extractedFileName(std::string(facet.name),
                                               catalog::pictureScale(catalog, *rendition),
                                               rendition->width, rendition->height)] = rendition;
            }
        }
    }
    return files;
}

TEST_F(ExtractTest, SamplesComeOutPixelForPixel) {
    const std::vector<std::string> catalogs = samples();
    if (catalogs.empty()) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    for (const std::string& path : catalogs) {
        const auto catalog = Catalog::open(path);
        ASSERT_TRUE(catalog) << path;
        const CommandResult result = extract({path, "out"});
        EXPECT_EQ(result.code, 0) << path << result.errors;
        const std::string out = tools::extractionFolder(path, "out");
        const auto expected = expectedFiles(*catalog);
        for (const auto& [name, rendition] : expected) {
            const auto pixels = catalog->decode(*rendition);
            ASSERT_TRUE(pixels) << name;
            expectPicture(out + "/" + name,
                          {pixels->width, pixels->height, catalog::toRgba(*pixels)});
        }
        const auto written = files(out);
        EXPECT_GE(written.size(), expected.size());
        for (const auto& [name, contents] : written) {
            EXPECT_GT(picture(out + "/" + name).width, 0U) << name;
        }
        EXPECT_NE(result.output.find("(" + std::to_string(written.size()) + " file"),
                  std::string::npos)
            << result.output;
    }
}

}  // namespace
}  // namespace velmoranth::cli::extract_samples_test
