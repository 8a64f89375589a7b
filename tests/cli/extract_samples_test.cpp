// velmoranth extract over real catalogs where they are: ../shared/samples, or the folder that
// VELMORANTH_SAMPLES names.
#include "desktop/catalog/pictures.h"
#include "tests/cli/extract_fixture.h"
#include "tests/support/places.h"
#include "tools/catalog_extraction.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <set>

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

std::size_t countPictures(const Catalog& catalog) {
    std::size_t count = 0;
    for (const catalog::Facet& facet : catalog.facets()) {
        count += catalog::picturesOf(catalog, facet).size();
    }
    return count;
}

class ExtractSamples : public ExtractTest {
  protected:
    // By the report of an extraction: each rendition that has a name and pixels is in a file of its
    // own, which shows it, or is another copy of one that is.
    void expectEveryRendition(const std::string& path, const Catalog& catalog) const {
        const auto report = nlohmann::json::parse(extract({path, "report", "--json"}).output);
        std::set<std::string> paths;
        std::size_t row = 0;
        for (const catalog::Facet& facet : catalog.facets()) {
            std::set<const Rendition*> firsts;
            for (const Rendition* const first : catalog::picturesOf(catalog, facet)) {
                firsts.insert(first);
            }
            for (const std::size_t index : catalog.renditionsOf(facet)) {
                const Rendition& rendition = catalog.renditions()[index];
                const auto& reported = report["renditions"].at(row++);
                EXPECT_EQ(reported["rendition"], rendition.name);
                ASSERT_EQ(reported["path"].is_string(), firsts.contains(&rendition)) << reported;
                if (!reported["path"].is_string()) {
                    continue;
                }
                EXPECT_TRUE(paths.insert(reported["path"]).second) << reported["path"];
                if (rendition.kind != catalog::Kind::vector) {
                    const auto pixels = catalog.decode(rendition);
                    ASSERT_TRUE(pixels) << reported;
                    expectPicture(reported["path"],
                                  {pixels->width, pixels->height, catalog::toRgba(*pixels)});
                }
            }
        }
        EXPECT_EQ(paths.size(), countPictures(catalog));
    }
};

TEST_F(ExtractSamples, SamplesComeOutPixelForPixel) {
    const std::vector<std::string> catalogs = samples();
    if (catalogs.empty()) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    for (const std::string& path : catalogs) {
        const auto catalog = Catalog::open(path);
        ASSERT_TRUE(catalog) << path;
        fs::remove_all(folder / "out");
        const CommandResult result = extract({path, "out"});
        EXPECT_EQ(result.code, 0) << path << result.errors;
        const std::string out = "out";
        const auto expected = expectedFiles(*catalog);
        for (const auto& [name, rendition] : expected) {
            const auto pixels = catalog->decode(*rendition);
            ASSERT_TRUE(pixels) << name;
            expectPicture(out + "/" + name,
                          {pixels->width, pixels->height, catalog::toRgba(*pixels)});
        }
        const auto written = files(out);
        EXPECT_EQ(written.size(), countPictures(*catalog));
        for (const auto& [name, contents] : written) {
            EXPECT_GT(picture(out + "/" + name).width, 0U) << name;
        }
        EXPECT_NE(result.output.find("(" + std::to_string(written.size()) + " file"),
                  std::string::npos)
            << result.output;
        expectEveryRendition(path, *catalog);
    }
}

}  // namespace
}  // namespace velmoranth::cli::extract_samples_test
