// Decorators of the services that draw and make views. Private to this folder.
#pragma once

#include "platform/platform.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace velmoranth::record {

class RecordedCoreGraphics final : public platform::CoreGraphics {
  public:
    explicit RecordedCoreGraphics(platform::CoreGraphics& real) : real_(real) {}

    [[nodiscard]] platform::BitmapImageRef imageMaskCreate(
        std::size_t width, std::size_t height, std::size_t bitsPerComponent,
        std::size_t bitsPerPixel, std::size_t bytesPerRow,
        const platform::DataProviderRef& provider, bool shouldInterpolate) override;
    [[nodiscard]] platform::BitmapImageRef imageCreateWithMask(
        const platform::BitmapImageRef& image, const platform::BitmapImageRef& mask) override;
    [[nodiscard]] platform::GraphicsContextRef bitmapContextCreate(
        std::int64_t width, std::int64_t height, std::size_t bitsPerComponent,
        std::size_t bytesPerRow, platform::ColorSpace space, std::uint32_t bitmapInfo) override;
    [[nodiscard]] platform::GradientRef gradientCreateWithColorComponents(
        platform::ColorSpace space, const std::vector<double>& components,
        const std::optional<std::vector<double>>& locations) override;

  private:
    platform::CoreGraphics& real_;
};

class RecordedImageContexts final : public platform::ImageContexts {
  public:
    explicit RecordedImageContexts(platform::ImageContexts& real) : real_(real) {}

    void beginImageContextWithOptions(platform::Size size, bool opaque, double scale) override;
    [[nodiscard]] platform::GraphicsContextRef getCurrentContext() override;
    [[nodiscard]] platform::ImageRef getImageFromCurrentImageContext() override;
    void endImageContext() override;

  private:
    platform::ImageContexts& real_;
};

class RecordedFonts final : public platform::Fonts {
  public:
    explicit RecordedFonts(platform::Fonts& real) : real_(real) {}

    [[nodiscard]] platform::FontRef fontWithNameSize(const platform::NullableString& name,
                                                     double size) override;

  private:
    platform::Fonts& real_;
};

class RecordedViews final : public platform::Views {
  public:
    explicit RecordedViews(platform::Views& real) : real_(real) {}

    [[nodiscard]] platform::ViewRef viewWithFrame(const platform::Rect& frame) override;
    [[nodiscard]] platform::LabelRef labelWithFrame(const platform::Rect& frame) override;
    [[nodiscard]] platform::ImageViewRef imageView() override;
    [[nodiscard]] platform::ImageViewRef imageViewWithImage(
        const platform::ImageRef& image) override;
    [[nodiscard]] platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override;
    [[nodiscard]] platform::GestureRecognizerRef tapGestureRecognizer(
        platform::Object& target, const platform::Selector& action) override;
    void animateWithDurationAnimationsCompletion(
        double duration, const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override;
    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double duration, double delay, double damping, double initialVelocity, unsigned options,
        const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override;

  private:
    platform::Views& real_;
};

}  // namespace velmoranth::record
