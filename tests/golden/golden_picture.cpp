#include "tests/golden/golden_picture.h"

#include "desktop/image_io/image_io.h"
#include "tests/support/places.h"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace velmoranth::tests {

namespace {

namespace fs = std::filesystem;

// What the letters of the kept pictures are drawn with: 3.19 (Debian 12's), 16.16.
constexpr const char* kFace = "Inter";
constexpr int kReleaseOfFace = 197853;

void write(const fs::path& path, const std::vector<std::uint8_t>& pixels,
           const GoldenPicture& size) {
    fs::create_directories(path.parent_path());
    const platform::Data bytes =
        desktop::encodePng(pixels, size.width, size.height, size.width * 4);
    std::ofstream file(path, std::ios::binary);
    std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
    ASSERT_TRUE(file.good()) << path;
}

// Premultiplied B, G, R, A of a picture of that size; empty when there is none.
std::vector<std::uint8_t> kept(const fs::path& path, const GoldenPicture& size) {
    std::ifstream file(path, std::ios::binary);
    const platform::Data bytes{std::istreambuf_iterator<char>(file), {}};
    const auto decoded = desktop::decodeImage(bytes);
    if (!decoded || decoded->layout.width != size.width || decoded->layout.height != size.height) {
        return {};
    }
    return desktop::toPremultipliedBgra(*decoded);
}

// The release of the interface's face here, 16.16; 0 without that face.
int releaseOfFace() {
    FcPattern* const wanted =
        FcPatternBuild(nullptr, FC_FAMILY, FcTypeString, kFace, static_cast<char*>(nullptr));
    FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultMatch;
    FcPattern* const found = FcFontMatch(nullptr, wanted, &result);
    FcPatternDestroy(wanted);
    int release = 0;
    if (found != nullptr) {
        FcChar8* family = nullptr;
        if (FcPatternGetString(found, FC_FAMILY, 0, &family) != FcResultMatch ||
            std::string(reinterpret_cast<const char*>(family)) != kFace ||
            FcPatternGetInteger(found, FC_FONTVERSION, 0, &release) != FcResultMatch) {
            release = 0;
        }
        FcPatternDestroy(found);
    }
    return release;
}

}  // namespace

void expectGolden(const std::string& name, const GoldenPicture& picture) {
    if (releaseOfFace() != kReleaseOfFace) {
        GTEST_SKIP() << "the kept pictures have the letters of another release of " << kFace;
    }
    const fs::path path = fs::path(kSourceFolder) / "tests/golden/pictures" / (name + ".png");
    if (std::getenv("VELMORANTH_KEEP_PICTURES") != nullptr) {
        write(path, picture.pixels, picture);
        return;
    }
    const std::vector<std::uint8_t> expected = kept(path, picture);
    ASSERT_EQ(expected.size(), picture.pixels.size()) << path << ": no picture of this size";
    std::vector<std::uint8_t> difference(expected.size(), 255);
    std::size_t odd = 0;
    const std::size_t tilesAcross = (picture.width + kTile - 1) / kTile;
    std::vector<std::size_t> oddOfTile(tilesAcross * ((picture.height + kTile - 1) / kTile));
    for (std::size_t i = 0; i < expected.size(); i += 4) {
        int greatest = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            greatest = std::max(greatest, std::abs(expected[i + c] - picture.pixels[i + c]));
        }
        if (greatest > kSmallDifference) {
            const std::size_t pixel = i / 4;
            ++odd;
            ++oddOfTile[pixel / picture.width / kTile * tilesAcross +
                        pixel % picture.width / kTile];
        }
        const int shown = greatest == 0 ? 60 : 128 + greatest / 2;
        std::fill_n(difference.begin() + static_cast<std::ptrdiff_t>(i), 3,
                    static_cast<std::uint8_t>(shown));
    }
    const double most = kMostOddPixels * static_cast<double>(expected.size() / 4);
    const std::size_t oddest = *std::max_element(oddOfTile.begin(), oddOfTile.end());
    if (static_cast<double>(odd) > most || oddest > kMostOddOfTile) {
        const fs::path out = fs::path(kBuildFolder) / "golden-differences" / path.filename();
        write(out, difference, picture);
        ADD_FAILURE() << odd << " pixels differ from " << path << ", " << oddest
                      << " of them in one tile; where: " << out;
    }
}

}  // namespace velmoranth::tests
