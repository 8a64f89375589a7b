// Mask and overlay on an icon as large as the largest of a phone, against copying as many bytes as
// have to be touched: those of the icon, of the mask or overlay, and of the result. The goal is at
// most 6 times.
#include "desktop/imaging/bitmap_image.h"
#include "imaging/icon_effects.h"
#include "tests/support/test_device.h"

#include "timing.h"

#include <cstring>
#include <memory>

namespace velmoranth::benchmarks {

namespace {

using desktop::DesktopBitmapImage;
using imaging::IconEffects;
using platform::AlphaInfo;
using platform::ColorSpace;
using platform::ImageRef;

constexpr std::size_t kSide = 180;  // pixels
constexpr std::size_t kPixels = kSide * kSide;

tests::Pixels translucent() {
    tests::Pixels pixels = tests::pattern(kSide, kSide);
    for (std::size_t i = 0; i < pixels.values.size(); ++i) {
        pixels.values[i].alpha = static_cast<std::uint8_t>(i * 7);
    }
    return pixels;
}

// A mask whose pixels take that many bytes: 1 is gray, 4 is red, green, blue and alpha.
ImageRef mask(const tests::TestDevice& device, std::size_t bytesPerPixel) {
    auto samples = std::make_shared<platform::Data>(kPixels * bytesPerPixel);
    for (std::size_t i = 0; i < samples->size(); ++i) {
        (*samples)[i] = static_cast<std::uint8_t>(i * 13);
    }
    const bool gray = bytesPerPixel == 1;
    return device.images().makeImage(
        DesktopBitmapImage::create(
            {{.width = kSide,
              .height = kSide,
              .bitsPerComponent = 8,
              .bitsPerPixel = 8 * bytesPerPixel,
              .bytesPerRow = kSide * bytesPerPixel,
              .colorSpace = gray ? ColorSpace::deviceGray : ColorSpace::deviceRGB,
              .alphaInfo = gray ? AlphaInfo::none : AlphaInfo::last},
             samples,
             {}}),
        1);
}

// Copies so many bytes.
class Copying {
  public:
    explicit Copying(std::size_t count) : from_(count, 1), to_(count) {}

    void operator()() {
        std::memcpy(to_.data(), from_.data(), from_.size());
        benchmark::DoNotOptimize(to_.data());
        benchmark::ClobberMemory();
    }

  private:
    platform::Data from_;
    platform::Data to_;
};

void maskImage(benchmark::State& state) {
    const tests::TestDevice device;
    const auto bytesPerPixel = static_cast<std::size_t>(state.range(0));
    const ImageRef icon = device.image(translucent());
    const ImageRef through = mask(device, bytesPerPixel);
    Copying copy(kPixels * (4 + bytesPerPixel + 4));
    compare(
        state, [&] { benchmark::DoNotOptimize(IconEffects::maskImageWithMask(icon, through)); },
        [&] { copy(); });
}

void overlayIcon(benchmark::State& state) {
    const tests::TestDevice device(3);
    device.activeThemes({"A"});
    device.png("/Library/Themes/A/Velmoranth/iPhoneOverlay.png", translucent());
    IconEffects::clearIconOverlay();
    const ImageRef icon = device.image(translucent(), 3);
    Copying copy(kPixels * (4 + 4 + 4));
    compare(
        state, [&] { benchmark::DoNotOptimize(IconEffects::redrawIconWithOverlay(icon)); },
        [&] { copy(); });
    IconEffects::clearIconOverlay();
}

}  // namespace

BENCHMARK(maskImage)->Name("mask 180x180, bytes a mask pixel")->Arg(1)->Arg(4)->UseManualTime();
BENCHMARK(overlayIcon)->Name("overlay 180x180")->UseManualTime();

}  // namespace velmoranth::benchmarks
