#include "platform/platform.h"
#include "tests/desktop/image_io/test_images.h"
#include "tests/support/replaced_services.h"

#include "icon_effects_fixture.h"

#include <functional>
#include <string>
#include <vector>

namespace velmoranth::tests::icon_mask_test {

using desktop::test_images::noise;
using desktop::test_images::noiseRows;
using desktop::test_images::pngFile;
using desktop::test_images::PngSpec;
using imaging::IconEffects;
using platform::ImageRef;

namespace {

const std::string kFirst = "Bundles/com.apple.mobileicons.framework/AppIconMask.png";
const std::string kSecond = "com.apple.mobileicons.framework/AppIconMask.png";

std::string asText(const platform::Data& bytes) {
    return {bytes.begin(), bytes.end()};
}

// Passes on to the real images; runs `afterLoad` after each load.
class WatchedImages final : public platform::Images {
  public:
    explicit WatchedImages(platform::Images& real) : real_(real) {}

    std::function<void(int)> afterLoad;

    ImageRef imageWithContentsOfFile(const std::string& path) override {
        ImageRef image = real_.imageWithContentsOfFile(path);
        afterLoad(++loads_);
        return image;
    }

    ImageRef imageWithCGImage(const platform::BitmapImageRef& bitmap) override {
        return real_.imageWithCGImage(bitmap);
    }

    void drawInRect(const ImageRef& image, const platform::Rect& rect) override {
        real_.drawInRect(image, rect);
    }

    std::optional<platform::Data> pngRepresentation(const ImageRef& image) override {
        return real_.pngRepresentation(image);
    }

    ImageRef applicationIconImageForBundleIdentifierFormatScale(
        const platform::NullableString& identifier, int format, double scale) override {
        return real_.applicationIconImageForBundleIdentifierFormatScale(identifier, format, scale);
    }

  private:
    platform::Images& real_;
    int loads_ = 0;
};

void replaceImages(platform::Images& images) {
    replaceServices({.images = &images});
}

}  // namespace

class IconMask : public IconEffectsOnDevice {};

TEST_F(IconMask, ThreeAttemptsInOrderThenNilAndItsLogLine) {
    EXPECT_EQ(IconEffects::iconMask(), nullptr);
    const std::vector<std::string> expected = {
        "+[UIImage imageWithContentsOfFile:] " + inTheme(kFirst),
        "+[UIImage imageWithContentsOfFile:] " + inTheme(kSecond),
        "+[UIImage imageWithContentsOfFile:] " + inTheme(kSecond)};
    EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "), expected);
    EXPECT_EQ(device.journal.log(), std::vector<std::string>{"UpdateIcons mask is (null)"});
    EXPECT_EQ(device.journal.lines().back(), "log UpdateIcons mask is (null)");
}

TEST_F(IconMask, BundlesFolderComesFirst) {
    device.png(inTheme(kFirst), solid(3, 4, {1, 2, 3}));
    device.png(inTheme(kSecond), solid(5, 6, {4, 5, 6}));
    const ImageRef mask = IconEffects::iconMask();
    ASSERT_NE(mask, nullptr);
    EXPECT_EQ(drawnPixels(mask), solid(3, 4, {1, 2, 3}));
    EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "),
              std::vector<std::string>{"+[UIImage imageWithContentsOfFile:] " + inTheme(kFirst)});
    EXPECT_EQ(device.journal.log(),
              std::vector<std::string>{"UpdateIcons mask is " + mask->description()});
}

TEST_F(IconMask, FoundAtTheSecondAttempt) {
    device.png(inTheme(kSecond), solid(5, 6, {4, 5, 6}));
    EXPECT_EQ(drawnPixels(IconEffects::iconMask()), solid(5, 6, {4, 5, 6}));
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 2U);
}

TEST_F(IconMask, FileAddedBetweenTheLastTwoAttemptsIsFound) {
    WatchedImages images(platform::platform().images);
    images.afterLoad = [this](int loads) {
        if (loads == 2) {
            device.png(inTheme(kSecond), solid(2, 2, {9, 9, 9}));
        }
    };
    replaceImages(images);
    EXPECT_EQ(drawnPixels(IconEffects::iconMask()), solid(2, 2, {9, 9, 9}));
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 3U);
}

TEST_F(IconMask, AnAttemptGoesThroughAllThemesBeforeTheNext) {
    device.activeThemes({"A", "B"});
    device.png(inTheme(kSecond, "A"), solid(2, 2, {}));
    device.png(inTheme(kFirst, "B"), solid(3, 3, {}));
    EXPECT_EQ(drawnPixels(IconEffects::iconMask()).width, 3U);
    const std::vector<std::string> expected = {
        "+[UIImage imageWithContentsOfFile:] " + inTheme(kFirst, "A"),
        "+[UIImage imageWithContentsOfFile:] " + inTheme(kFirst, "B")};
    EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "), expected);
}

TEST_F(IconMask, AFileThatIsNoImageIsPassedOver) {
    device.file(inTheme(kFirst), "no picture");
    device.png(inTheme(kSecond), solid(5, 6, {4, 5, 6}));
    EXPECT_EQ(drawnPixels(IconEffects::iconMask()).width, 5U);
}

TEST_F(IconMask, NoActiveThemeLoadsNothing) {
    device.preferences({});
    EXPECT_EQ(IconEffects::iconMask(), nullptr);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 0U);
    EXPECT_EQ(device.journal.log(), std::vector<std::string>{"UpdateIcons mask is (null)"});
}

TEST_F(IconMask, IsSearchedForOnEveryCallAndClearingDoesNothing) {
    device.png(inTheme(kFirst), solid(3, 3, {}));
    const ImageRef first = IconEffects::iconMask();
    device.journal.clear();
    IconEffects::clearIconMask();
    EXPECT_TRUE(device.journal.lines().empty());
    const ImageRef second = IconEffects::iconMask();
    EXPECT_NE(first, second);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 1U);
    device.remove(inTheme(kFirst));
    EXPECT_EQ(IconEffects::iconMask(), nullptr);
    EXPECT_EQ(device.journal.log().size(), 2U);
}

// A kind of mask file, and its first stored sample of a pixel, 0 to 255.
struct MaskKind {
    const char* name;
    int colorType;  // as in a PNG file
    int bitDepth;

    [[nodiscard]] unsigned sample(const PngSpec& spec, const platform::Data& rows, std::size_t x,
                                  std::size_t y) const {
        const std::size_t bits = bitsPerPixel(spec);
        const std::size_t rowBytes = (spec.width * bits + 7) / 8;
        const std::size_t bit = x * bits;
        const unsigned byte = rows.at(y * rowBytes + bit / 8);
        if (bitDepth == 8) {
            return byte;
        }
        const auto depth = static_cast<std::size_t>(bitDepth);
        const unsigned value = (byte >> (8 - depth - bit % 8)) & ((1U << depth) - 1);
        return value * 255 / ((1U << depth) - 1);
    }
};

std::ostream& operator<<(std::ostream& stream, const MaskKind& kind) {
    return stream << kind.name;
}

class MaskedBy : public IconEffectsOnDevice, public testing::WithParamInterface<MaskKind> {
  protected:
    // Masks a translucent icon of that size by a mask of that size and looks at every pixel.
    void check(std::size_t iconWidth, std::size_t iconHeight, std::size_t maskWidth,
               std::size_t maskHeight) {
        const MaskKind& kind = GetParam();
        PngSpec spec{.width = maskWidth,
                     .height = maskHeight,
                     .colorType = kind.colorType,
                     .bitDepth = kind.bitDepth};
        if (kind.colorType == 3) {
            for (std::size_t i = 0; i < (std::size_t{1} << kind.bitDepth); ++i) {
                const auto value = static_cast<std::uint8_t>(255 - i);
                spec.palette.push_back({value, 7, static_cast<std::uint8_t>(i * 3)});
            }
        }
        const platform::Data rows = noiseRows(maskWidth, maskHeight, bitsPerPixel(spec));
        device.file(inTheme(kFirst), asText(pngFile(spec, rows)));
        const ImageRef mask = IconEffects::iconMask();
        ASSERT_NE(mask, nullptr);
        const Pixels icon = translucentPattern(iconWidth, iconHeight);
        const ImageRef result = IconEffects::maskImageWithMask(device.image(icon), mask);
        ASSERT_NE(result, nullptr);
        EXPECT_EQ(result->scale(), 1);
        const Pixels drawn = drawnPixels(result);
        ASSERT_EQ(drawn.width, iconWidth);
        ASSERT_EQ(drawn.height, iconHeight);
        for (std::size_t y = 0; y < iconHeight; ++y) {
            for (std::size_t x = 0; x < iconWidth; ++x) {
                // Interpolation is off: the sample in which the pixel's centre lies.
                const std::size_t column = (2 * x + 1) * maskWidth / (2 * iconWidth);
                const std::size_t row = (2 * y + 1) * maskHeight / (2 * iconHeight);
                const unsigned hidden = kind.sample(spec, rows, column, row);
                ASSERT_EQ(drawn.at(x, y), times(premultiplied(icon.at(x, y)), 255 - hidden))
                    << x << ", " << y;
            }
        }
    }
};

TEST_P(MaskedBy, TheFirstStoredSampleOfEachPixel) {
    check(67, 5, 67, 5);
}

TEST_P(MaskedBy, ALargerMask) {
    check(13, 11, 37, 29);
}

TEST_P(MaskedBy, ASmallerMask) {
    check(31, 23, 7, 3);
}

INSTANTIATE_TEST_SUITE_P(
    EveryLayout, MaskedBy,
    testing::Values(MaskKind{"gray1", 0, 1}, MaskKind{"gray2", 0, 2}, MaskKind{"gray4", 0, 4},
                    MaskKind{"gray8", 0, 8}, MaskKind{"grayAlpha8", 4, 8}, MaskKind{"rgb8", 2, 8},
                    MaskKind{"rgba8", 6, 8}, MaskKind{"palette1", 3, 1}, MaskKind{"palette2", 3, 2},
                    MaskKind{"palette4", 3, 4}, MaskKind{"palette8", 3, 8}),
    [](const testing::TestParamInfo<MaskKind>& kind) { return std::string(kind.param.name); });

class MaskImageWithMask : public IconEffectsOnDevice {
  protected:
    ImageRef maskOf(int colorType, int bitDepth) {
        const PngSpec spec{.width = 4, .height = 4, .colorType = colorType, .bitDepth = bitDepth};
        device.file("/mask.png", asText(pngFile(spec, noiseRows(4, 4, bitsPerPixel(spec)))));
        return platform::platform().images.imageWithContentsOfFile("/mask.png");
    }
};

TEST_F(MaskImageWithMask, SamplesOf16BitsMakeNoMask) {
    const ImageRef icon = device.image(pattern(4, 4));
    for (const int colorType : {0, 2, 4, 6}) {
        const ImageRef mask = maskOf(colorType, 16);
        ASSERT_NE(mask, nullptr);
        EXPECT_EQ(IconEffects::maskImageWithMask(icon, mask), nullptr) << colorType;
    }
}

TEST_F(MaskImageWithMask, HandsOverTheMasksOwnValuesWithoutInterpolation) {
    const ImageRef icon = device.image(pattern(9, 9));
    const ImageRef mask = maskOf(6, 8);
    device.journal.clear();
    ASSERT_NE(IconEffects::maskImageWithMask(icon, mask), nullptr);
    const std::vector<std::string> expected = {"CGImageMaskCreate 4 4 8 32 16 __NSCFType NO",
                                               "CGImageCreateWithMask 9×9 pixels 4×4 mask",
                                               "+[UIImage imageWithCGImage:] 9×9 pixels"};
    EXPECT_EQ(device.journal.lines(), expected);
}

TEST_F(MaskImageWithMask, WhiteHidesAndBlackShows) {
    const Pixels icon = pattern(6, 6);
    const ImageRef image = device.image(icon);
    EXPECT_EQ(drawnPixels(IconEffects::maskImageWithMask(image, device.image(solid(6, 6, {})))),
              icon);
    const ImageRef white = device.image(solid(6, 6, {255, 255, 255}));
    EXPECT_EQ(drawnPixels(IconEffects::maskImageWithMask(image, white)), solid(6, 6, {0, 0, 0, 0}));
}

TEST_F(MaskImageWithMask, ResultIsInPixelsAtScaleOne) {
    const ImageRef result = IconEffects::maskImageWithMask(device.image(pattern(60, 30), 3),
                                                           device.image(solid(60, 30, {})));
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->size(), (platform::Size{60, 30}));
    EXPECT_EQ(result->scale(), 1);
}

TEST_F(MaskImageWithMask, NilInNilOut) {
    const ImageRef image = device.image(pattern(4, 4));
    EXPECT_EQ(IconEffects::maskImageWithMask(nullptr, image), nullptr);
    EXPECT_EQ(IconEffects::maskImageWithMask(image, nullptr), nullptr);
    EXPECT_EQ(IconEffects::maskImageWithMask(nullptr, nullptr), nullptr);
}

TEST_F(MaskImageWithMask, AMaskedImageCanBeMaskedAgain) {
    const Pixels icon = pattern(8, 8);
    const Pixels gray = solid(8, 8, {100, 100, 100});
    const ImageRef mask = device.image(gray);
    const ImageRef once = IconEffects::maskImageWithMask(device.image(icon), mask);
    const Pixels twice = drawnPixels(IconEffects::maskImageWithMask(once, mask));
    ASSERT_EQ(twice.values.size(), icon.values.size());
    for (std::size_t i = 0; i < icon.values.size(); ++i) {
        EXPECT_EQ(twice.values[i], times(times(icon.values[i], 155), 155));
    }
}

}  // namespace velmoranth::tests::icon_mask_test
