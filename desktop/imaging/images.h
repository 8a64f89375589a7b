// UIImage's class methods and drawing on Linux.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/image_io/image_io.h"
#include "desktop/imaging/image.h"
#include "desktop/imaging/image_contexts.h"
#include "platform/uikit.h"

#include <compare>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::desktop {

// Whether loading "name.png" looks for "name@3x.png" and "name@2x.png" beside it.
enum class ScaledSiblings { off, on };

// The paths that loading `path` tries, in order. With siblings, on a screen of scale 3 or more:
// @3x, @2x, the path; of scale 2: @2x, the path. A path that names a scale itself, or has no file
// name, is tried alone.
[[nodiscard]] std::vector<std::string> imageCandidates(const std::string& path, double screenScale,
                                                       ScaledSiblings siblings);
// 2 or 3 for a name that ends in "@2x" or "@3x" before its extension, otherwise 1.
[[nodiscard]] double scaleFromPath(const std::string& path);

class DesktopImages final : public platform::Images {
  public:
    struct Configuration {
        std::shared_ptr<const DeviceRoot> root;  // nil: no file is found
        double screenScale = 2;
        ScaledSiblings siblings = ScaledSiblings::on;
        ImageDescription description = ImageDescription::ios13;
        std::size_t maxFileBytes = std::size_t{64} * 1024 * 1024;
        DecodeLimits decodeLimits = {};
    };

    // Sends _applicationIconImageForBundleIdentifier:format:scale: to the class UIImage.
    using SendApplicationIconImage = std::function<platform::ImageRef(
        const platform::NullableString& bundleIdentifier, int format, double scale)>;

    // `contexts` must outlive this object.
    DesktopImages(Configuration configuration, const DesktopImageContexts& contexts);

    // Without one the answer is nil.
    void setSendApplicationIconImage(SendApplicationIconImage send);

    // A sibling that is missing or no image is passed over. The file is read each time; while an
    // image of the same bytes is somewhere, its bitmap is given again, so that a picture that many
    // views show is decoded and held once. Safe to call from several threads.
    [[nodiscard]] platform::ImageRef imageWithContentsOfFile(const std::string& path) override;
    [[nodiscard]] platform::ImageRef imageWithCGImage(
        const platform::BitmapImageRef& bitmap) override;
    void drawInRect(const platform::ImageRef& image, const platform::Rect& rect) override;
    [[nodiscard]] std::optional<platform::Data> pngRepresentation(
        const platform::ImageRef& image) override;
    platform::ImageRef applicationIconImageForBundleIdentifierFormatScale(
        const platform::NullableString& bundleIdentifier, int format, double scale) override;

    // An image of this process's kind with a scale of its own.
    [[nodiscard]] platform::ImageRef makeImage(const platform::BitmapImageRef& bitmap,
                                               double scale) const;

  private:
    // What stands for the bytes of a file.
    struct Content {
        std::size_t size = 0;
        std::size_t hash = 0;

        friend auto operator<=>(const Content&, const Content&) = default;
    };

    [[nodiscard]] std::shared_ptr<DesktopBitmapImage> heldBitmap(const Content& content);
    void hold(const Content& content, const std::shared_ptr<DesktopBitmapImage>& bitmap);

    Configuration configuration_;
    const DesktopImageContexts& contexts_;
    SendApplicationIconImage send_;
    std::mutex holding_;
    std::map<Content, std::weak_ptr<DesktopBitmapImage>> held_;
    std::size_t mostHeld_ = 64;  // then those that are gone are let go
};

}  // namespace velmoranth::desktop
