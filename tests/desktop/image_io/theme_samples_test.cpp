// Pictures of real themes, when they are at hand: in the folder that the environment variable
// VELMORANTH_SAMPLES names.
#include "desktop/image_io/image_io.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace velmoranth::desktop::test_images::theme_samples_test {
namespace {

namespace fs = std::filesystem;

std::vector<std::uint8_t> contentsOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// What is wrong with files that their makers shipped broken.
const std::set<std::string> kKnownProblems = {
    "the file is empty",
    "the PNG file is damaged (Not enough image data)",
};

TEST(ThemeSamples, EveryImageDecodes) {
    const fs::path themes = tests::samples("themes");
    std::error_code none;
    if (!fs::is_directory(themes, none)) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    const std::set<std::string> endings = {".png", ".PNG", ".jpg", ".jpeg", ".gif", ".tif"};
    std::size_t decoded = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(themes)) {
        if (!entry.is_regular_file() || !endings.contains(entry.path().extension().string())) {
            continue;
        }
        const auto image = decodeImage(contentsOf(entry.path()));
        if (!image) {
            EXPECT_TRUE(kKnownProblems.contains(image.error().message))
                << entry.path() << ": " << toLine(image.error());
            continue;
        }
        ++decoded;
        const auto pixels = toPremultipliedBgra(*image);
        EXPECT_EQ(pixels.size(), image->layout.width * image->layout.height * 4) << entry.path();
        // What is written is the same picture.
        const auto again = decodeImage(
            encodePng(pixels, image->layout.width, image->layout.height, image->layout.width * 4));
        ASSERT_TRUE(again) << entry.path();
        EXPECT_EQ(toPremultipliedBgra(*again), pixels) << entry.path();
    }
    EXPECT_GT(decoded, 0U) << "no images below " << themes;
}

}  // namespace
}  // namespace velmoranth::desktop::test_images::theme_samples_test
