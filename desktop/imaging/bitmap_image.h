// A bitmap image on Linux: layout and samples as they are stored, and beside them, made on first
// drawing and kept, the same picture as premultiplied B, G, R, A.
#pragma once

#include "desktop/image_io/image_io.h"
#include "desktop/imaging/data_provider.h"
#include "desktop/imaging/pixels.h"
#include "platform/core_graphics.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace velmoranth::desktop {

enum class Interpolation { none, smooth };

class DesktopBitmapImage final : public platform::BitmapImage {
    struct Key {};

  public:
    // A picture. Nil when the layout is impossible, a row is shorter than its pixels, the samples
    // are nil or too short, or the drawn form would be larger than a bitmap may be.
    [[nodiscard]] static std::shared_ptr<DesktopBitmapImage> create(DecodedImage image);
    // A picture whose samples are premultiplied B, G, R, A already (with `opaque`, A is 255
    // everywhere and the image has no alpha). Nil as above.
    [[nodiscard]] static std::shared_ptr<DesktopBitmapImage> createPremultiplied(
        Samples samples, PixelSize size, std::size_t bytesPerRow, bool opaque = false);
    // An image mask with its raw parameters. Nil as CoreGraphics::imageMaskCreate says.
    [[nodiscard]] static std::shared_ptr<DesktopBitmapImage> createMask(
        const platform::BitmapLayout& layout, Samples samples, Interpolation interpolation);
    // The image itself, or one that shares the samples of another kind of bitmap image. Nil for
    // nil.
    [[nodiscard]] static std::shared_ptr<const DesktopBitmapImage> of(
        const platform::BitmapImageRef& image);

    DesktopBitmapImage(Key key, DecodedImage image, bool mask, bool premultiplied,
                       Interpolation interpolation);

    [[nodiscard]] std::string className() const override { return "__NSCFType"; }

    [[nodiscard]] std::string description() const override;

    [[nodiscard]] const platform::BitmapLayout& layout() const override { return image_.layout; }

    [[nodiscard]] platform::DataProviderRef dataProvider() const override {
        return DesktopDataProvider::of(image_.samples);
    }

    [[nodiscard]] const Samples& samples() const { return image_.samples; }

    [[nodiscard]] bool isMask() const override { return mask_; }

    [[nodiscard]] Interpolation interpolation() const { return interpolation_; }

    [[nodiscard]] PixelSize size() const { return {image_.layout.width, image_.layout.height}; }

    // The drawn form; valid as long as the image. A mask is drawn as black with alpha 1 - S. Empty
    // when the samples cannot be drawn. Safe to call from several threads.
    [[nodiscard]] PixelView pixels() const;

    // The drawn form stretched over so many pixels, tight rows, as Resampler makes it. It is made
    // and kept when the same size is asked for twice in a row, so that a picture that is drawn once
    // takes no memory for it: null the first time, and when it would take more than
    // kMostStretchedBytes. Of the image's own size it is none. Safe to call from several threads.
    [[nodiscard]] Samples stretched(PixelSize size) const;

    static constexpr std::size_t kMostStretchedBytes = std::size_t{4} * 1024 * 1024;

  private:
    DecodedImage image_;
    bool mask_;
    bool premultiplied_;
    Interpolation interpolation_;
    mutable std::once_flag converted_;
    mutable std::vector<std::uint8_t> pixels_;
    mutable std::mutex stretching_;
    mutable PixelSize askedSize_;
    mutable PixelSize stretchedSize_;
    mutable Samples stretched_;
};

}  // namespace velmoranth::desktop
