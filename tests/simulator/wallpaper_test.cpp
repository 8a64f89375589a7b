// A picture of this machine's behind the home screen: how it is fitted, what is refused, and where
// it shows.
#include "simulator/home_screen/wallpaper.h"

#include "themed_device.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::simulator::wallpaper_test {
namespace {

constexpr Pixel kRed{0, 0, 255, 255};

class Wallpaper : public testing::Test {
  public:
    // A picture of columns (or, with `isUpright`, rows) of these colours, each as wide as others.
    void picture(const std::string& name, std::size_t width, std::size_t height,
                 const std::vector<Pixel>& colors, bool isUpright = false) const {
        std::vector<std::uint8_t> pixels;
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < width; ++x) {
                const std::size_t part =
                    isUpright ? y * colors.size() / height : x * colors.size() / width;
                pixels.insert(pixels.end(), colors[part].begin(), colors[part].end());
            }
        }
        const platform::Data bytes = desktop::encodePng(pixels, width, height, width * 4);
        device.folder.file(name, std::string(bytes.begin(), bytes.end()));
    }

    // On a screen of 40 × 80 pixels.
    [[nodiscard]] desktop::Result<std::shared_ptr<desktop::DesktopBitmapImage>> load(
        const std::string& name) const {
        return loadWallpaper(device.folder / name, {.width = 20, .height = 40, .scale = 2});
    }

    [[nodiscard]] static Pixel at(const desktop::DesktopBitmapImage& image, std::size_t x,
                                  std::size_t y) {
        Pixel pixel{};
        std::copy_n(image.pixels().row(y) + x * 4, 4, pixel.begin());
        return pixel;
    }

    void expectRefused(const std::string& name, const std::string& message) const {
        const auto loaded = load(name);
        ASSERT_FALSE(loaded) << name;
        EXPECT_EQ(loaded.error().message, message);
        EXPECT_EQ(loaded.error().path, device.folder / name);
    }

    ThemedDevice device;
};

TEST_F(Wallpaper, OfTheScreensSizeIsCopied) {
    picture("w.png", 40, 80, {kRed, kGreen, kBlue, kMagenta});
    const auto loaded = load("w.png");
    ASSERT_TRUE(loaded) << toLine(loaded.error());
    EXPECT_EQ((*loaded)->size(), (desktop::PixelSize{40, 80}));
    for (std::size_t x = 0; x < 40; ++x) {
        EXPECT_EQ(at(**loaded, x, 79), (std::vector{kRed, kGreen, kBlue, kMagenta}[x / 10])) << x;
    }
}

TEST_F(Wallpaper, FillsTheScreenFromItsMiddle) {
    // Wider than the screen is: four of its eight columns show.
    picture("wide.png", 80, 80, {kWhite, kWhite, kRed, kGreen, kBlue, kMagenta, kWhite, kWhite});
    const auto wide = load("wide.png");
    ASSERT_TRUE(wide);
    EXPECT_EQ(at(**wide, 0, 0), kRed);
    EXPECT_EQ(at(**wide, 9, 40), kRed);
    EXPECT_EQ(at(**wide, 10, 40), kGreen);
    EXPECT_EQ(at(**wide, 29, 40), kBlue);
    EXPECT_EQ(at(**wide, 39, 79), kMagenta);
    // Higher, and half the size: the middle two of its four rows.
    picture("high.png", 20, 80, {kWhite, kRed, kGreen, kWhite}, true);
    const auto high = load("high.png");
    ASSERT_TRUE(high);
    EXPECT_EQ(at(**high, 0, 3), kRed);
    EXPECT_EQ(at(**high, 39, 36), kRed);
    EXPECT_EQ(at(**high, 20, 43), kGreen);
    EXPECT_EQ(at(**high, 20, 76), kGreen);
}

TEST_F(Wallpaper, IsBlackWhereItIsTransparent) {
    picture("clear.png", 40, 80, {{0, 0, 0, 0}, {0, 0, 128, 128}});
    const auto loaded = load("clear.png");
    ASSERT_TRUE(loaded);
    EXPECT_EQ(at(**loaded, 5, 5), kBlack);
    EXPECT_EQ(at(**loaded, 35, 5), (Pixel{0, 0, 128, 255}));
}

TEST_F(Wallpaper, OfOnePixelFillsTheScreen) {
    picture("one.png", 1, 1, {kGreen});
    const auto loaded = load("one.png");
    ASSERT_TRUE(loaded);
    EXPECT_EQ(at(**loaded, 0, 0), kGreen);
    EXPECT_EQ(at(**loaded, 39, 79), kGreen);
}

TEST_F(Wallpaper, ThatIsNoneIsRefused) {
    device.folder.folder("folder");
    device.folder.file("empty");
    device.folder.file("text", "a text");
    ASSERT_EQ(::mkfifo((device.folder / "pipe").c_str(), 0600), 0);
    picture("cut.png", 40, 80, {kRed});
    std::filesystem::resize_file(device.folder / "cut.png", 60);
    device.folder.file("large");
    std::filesystem::resize_file(device.folder / "large", std::uintmax_t{64} * 1024 * 1024 + 1);
    expectRefused("none", "no such file or directory");
    expectRefused("text/x", "not a directory");
    expectRefused("folder", "is a directory");
    expectRefused("pipe", "is no plain file");
    expectRefused("empty", "the file is empty");
    expectRefused("text", "the file is not an image (PNG, JPEG, GIF or TIFF)");
    expectRefused("large", "the file is larger than 64 MiB");
    const auto cut = load("cut.png");
    ASSERT_FALSE(cut);
    EXPECT_EQ(cut.error().path, device.folder / "cut.png");
}

void append(std::string& to, std::uint32_t number, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        to += static_cast<char>(number >> (8 * i) & 0xFFU);
    }
}

// A TIFF file of one bit a pixel, all in one strip that is not compressed.
std::string bilevelTiff(std::uint32_t width, std::uint32_t height) {
    constexpr std::uint32_t kEntries = 8;
    constexpr std::uint32_t kPixels = 8 + 2 + kEntries * 12 + 4;
    const std::uint32_t strip = (width + 7) / 8 * height;
    std::string file("II*\0\x08\0\0\0", 8);
    append(file, kEntries, 2);
    // Width, height, bits a sample, no compression, black is zero, the strip's place, rows, bytes.
    for (const auto& [tag, value] : {std::pair<std::uint32_t, std::uint32_t>{256, width},
                                     {257, height},
                                     {258, 1},
                                     {259, 1},
                                     {262, 1},
                                     {273, kPixels},
                                     {278, height},
                                     {279, strip}}) {
        append(file, tag, 2);
        append(file, 4, 2);  // of 32 bits
        append(file, 1, 4);
        append(file, value, 4);
    }
    append(file, 0, 4);
    return file + std::string(strip, '\0');
}

TEST_F(Wallpaper, OfMorePixelsThanAPhotographHasIsRefused) {
    device.folder.file("fits.tif", bilevelTiff(64, 32));
    EXPECT_TRUE(load("fits.tif"));
    device.folder.file("many.tif", bilevelTiff(16000, 4001));
    expectRefused("many.tif",
                  "the image is 16000 x 4001 pixels, more than the 64 million of a wallpaper");
}

TEST_F(Wallpaper, StandsBehindTheHomeScreenAndColorsWhatIsBlurred) {
    picture("w.png", 8, 8, {kGreen});
    for (const char* const model : {"phone", "phone-667", "pad"}) {
        ScreenRequest request = device.request(model, 13, {});
        request.loadEngine = false;
        const Look drawn(renderScreen(request).value());
        request.wallpaperFile = device.folder / "w.png";
        const Look own(renderScreen(request).value());
        const double width = request.device.screen.width;
        const double height = request.device.screen.height;
        EXPECT_EQ(own.at(2, height / 2), kGreen) << model;
        EXPECT_EQ(own.at(width - 3, height / 2), kGreen) << model;
        EXPECT_NE(drawn.at(2, height / 2), kGreen) << model;
        // Of the dock, between its first two icons: green under the material's white.
        const platform::Point phone = own.icon("com.apple.mobilephone");
        const platform::Point safari = own.icon("com.apple.mobilesafari");
        const Pixel dock = own.at((phone.x + safari.x) / 2 + 33, phone.y + 20);
        EXPECT_EQ(dock[1], 255) << model;
        EXPECT_NEAR(dock[0], 0.22 * 255, 2) << model;
        EXPECT_NEAR(dock[2], 0.22 * 255, 2) << model;
        // Of a folder's plate, left of its miniatures.
        const platform::Point folder = own.icon("folder.utilities");
        const Pixel plate = own.at(folder.x + 4, folder.y + 30);
        EXPECT_EQ(plate[1], 255) << model;
        EXPECT_NEAR(plate[2], 0.35 * 255, 2) << model;
    }
}

TEST_F(Wallpaper, ShowsThroughWhatIsDrawnOverTheHomeScreen) {
    picture("w.png", 8, 8, {kGreen});
    for (const ScreenKind kind : {ScreenKind::folder, ScreenKind::pressed, ScreenKind::today,
                                  ScreenKind::switcher, ScreenKind::notification}) {
        ScreenRequest request = device.request("phone-667", 13, {});
        request.loadEngine = false;
        request.screen = kind;
        request.wallpaperFile = device.folder / "w.png";
        const Look own(renderScreen(request).value());
        // Green is strongest in more than a third of it, whatever is laid over it.
        const std::vector<std::uint8_t>& pixels = own.screen().picture.pixels;
        std::size_t green = 0;
        for (std::size_t i = 0; i < pixels.size(); i += 4) {
            green += pixels[i + 1] > pixels[i] + 20 && pixels[i + 1] > pixels[i + 2] + 20 ? 1 : 0;
        }
        EXPECT_GT(green * 3, pixels.size() / 4) << definitionOf(kind).name;
    }
}

TEST_F(Wallpaper, ThatCannotBeLoadedIsAProblemOfTheProcess) {
    ScreenRequest request = device.request("phone-667", 13, {});
    request.wallpaperFile = device.folder / "none \xff";
    const auto screen = renderScreen(request);
    ASSERT_FALSE(screen);
    EXPECT_EQ(screen.error().message, "no such file or directory");
}

}  // namespace
}  // namespace velmoranth::simulator::wallpaper_test
