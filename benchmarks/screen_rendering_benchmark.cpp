// A home screen drawn as a frame: wallpaper, the dock's blurred material, 24 icons with the shadows
// of their paths, on a phone's 1125 × 2436 pixels. Against painting as many pixels twice with
// cairo, which is here for that alone. The goal is at most 4 times.
#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/image.h"
#include "desktop/views/views.h"
#include "simulator/home_screen/backdrop.h"

#include "painting.h"
#include "timing.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace velmoranth::benchmarks {

namespace {

using desktop::DesktopBitmapImage;
using desktop::DesktopImageView;
using desktop::DesktopView;
using desktop::PixelSize;
using platform::Rect;

constexpr double kScale = 3;
constexpr PixelSize kPixels{1125, 2436};
constexpr Rect kScreen{{0, 0}, {375, 812}};
constexpr Rect kDock{{0, 716}, {375, 96}};
constexpr double kIconSide = 60;
constexpr PixelSize kIconPixels{180, 180};
constexpr int kIcons = 24;
constexpr int kColumns = 4;

// Premultiplied B, G, R, A; alpha(x, y) is 0 to 1.
std::shared_ptr<DesktopBitmapImage> bitmap(PixelSize size, bool opaque, const auto& alpha) {
    auto samples = std::make_shared<platform::Data>();
    for (std::size_t y = 0; y < size.height; ++y) {
        for (std::size_t x = 0; x < size.width; ++x) {
            const double share = alpha(static_cast<double>(x), static_cast<double>(y));
            const auto part = [&](std::size_t value) {
                return static_cast<std::uint8_t>(
                    std::lround(static_cast<double>(value % 256) * share));
            };
            samples->insert(samples->end(), {part(x), part(y), part(x + y), part(255)});
        }
    }
    return DesktopBitmapImage::createPremultiplied(samples, size, size.width * 4, opaque);
}

// Round corners, as icons have them: most pixels are opaque, the corners clear, few between.
std::shared_ptr<DesktopBitmapImage> icon() {
    constexpr double kRadius = 40;
    const auto side = static_cast<double>(kIconPixels.width);
    return bitmap(kIconPixels, false, [&](double x, double y) {
        const auto beyond = [&](double at) {
            return std::max({kRadius - at - 0.5, at + 0.5 - (side - kRadius), 0.0});
        };
        return std::clamp(kRadius - std::hypot(beyond(x), beyond(y)) + 0.5, 0.0, 1.0);
    });
}

platform::ImageRef image(const std::shared_ptr<DesktopBitmapImage>& pixels) {
    return std::make_shared<desktop::DesktopImage>(pixels, kScale,
                                                   desktop::ImageDescription::ios13);
}

class Screen {
  public:
    Screen() {
        const auto background = std::make_shared<DesktopImageView>(kScreen);
        background->setImage(image(wallpaper_));
        window_->addSubview(background);
        window_->addSubview(dock_);
        const auto picture = image(icon());
        for (int i = 0; i < kIcons; ++i) {
            const int column = i % kColumns;
            const int row = i / kColumns;
            const Rect frame{{27.0 + column * 87, 71.0 + row * 103}, {kIconSide, kIconSide}};
            const auto some = std::make_shared<DesktopImageView>(frame);
            some->setImage(picture);
            const platform::LayerRef layer = some->layer();
            layer->setShadowColor(platform::kBlackColor);
            layer->setShadowOpacity(0.5F);
            layer->setShadowOffset({0, 3});
            layer->setShadowRadius(4);
            layer->setShadowPathRect(some->bounds());
            window_->addSubview(some);
        }
    }

    [[nodiscard]] std::shared_ptr<DesktopBitmapImage> frame(double blurRadius) {
        dock_->setImage(image(simulator::makeBackdrop(wallpaper_->pixels(), kDock, kScale,
                                                      {.blurRadius = blurRadius})));
        return desktop::renderTree(window_, kPixels, kScale);
    }

    [[nodiscard]] std::shared_ptr<DesktopBitmapImage> frameWithTheMaterialOfTheLast() {
        return desktop::renderTree(window_, kPixels, kScale);
    }

  private:
    std::shared_ptr<DesktopBitmapImage> wallpaper_ =
        bitmap(kPixels, true, [](double /*x*/, double /*y*/) { return 1.0; });
    std::shared_ptr<DesktopView> window_ = std::make_shared<DesktopView>(kScreen);
    std::shared_ptr<DesktopImageView> dock_ = std::make_shared<DesktopImageView>(kDock);
};

Painting paintingOfThatSize() {
    return {std::vector<std::uint8_t>(kPixels.width * kPixels.height * 4, 255), kPixels.width,
            kPixels.height};
}

void screen(benchmark::State& state) {
    Screen some;
    Painting painting = paintingOfThatSize();
    const auto radius = static_cast<double>(state.range(0));
    compare(
        state, [&] { benchmark::DoNotOptimize(some.frame(radius)); },
        [&] { benchmark::DoNotOptimize(painting.twice()); });
}

void screenBare(benchmark::State& state) {
    Painting painting = paintingOfThatSize();
    for (auto _ : state) {
        state.SetIterationTime(secondsOf([&] { benchmark::DoNotOptimize(painting.twice()); }));
    }
}

void screenWithoutBlur(benchmark::State& state) {
    Screen some;
    Painting painting = paintingOfThatSize();
    benchmark::DoNotOptimize(some.frame(20));
    compare(
        state, [&] { benchmark::DoNotOptimize(some.frameWithTheMaterialOfTheLast()); },
        [&] { benchmark::DoNotOptimize(painting.twice()); });
}

}  // namespace

BENCHMARK(screen)
    ->Name("screen/dock's blur, points")
    ->Arg(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(screenBare)
    ->Name("screenBare/dock's blur, points")
    ->Arg(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(screenWithoutBlur)
    ->Name("screen with its material at hand")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace velmoranth::benchmarks
