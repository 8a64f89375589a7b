#include "desktop/imaging/images.h"

#include "desktop/imaging/bitmap_image.h"

#include "record/recorder.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

namespace velmoranth::desktop {

namespace {

struct ScaleSuffix {
    std::string_view text;
    double scale;
};

constexpr ScaleSuffix kScaleSuffixes[] = {{"@3x", 3}, {"@2x", 2}};

// Where the extension of the last component begins: its dot, or the end. A name that begins with
// its only dot has no extension.
std::size_t extensionStart(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t name = slash == std::string_view::npos ? 0 : slash + 1;
    const std::size_t dot = path.rfind('.');
    return dot == std::string_view::npos || dot <= name ? path.size() : dot;
}

bool hasFileName(std::string_view path) {
    return !path.empty() && path.back() != '/';
}

}  // namespace

double scaleFromPath(const std::string& path) {
    const std::string_view stem = std::string_view(path).substr(0, extensionStart(path));
    for (const ScaleSuffix& suffix : kScaleSuffixes) {
        if (stem.ends_with(suffix.text)) {
            return suffix.scale;
        }
    }
    return 1;
}

std::vector<std::string> imageCandidates(const std::string& path, double screenScale,
                                         ScaledSiblings siblings) {
    std::vector<std::string> result;
    if (siblings == ScaledSiblings::on && hasFileName(path) && scaleFromPath(path) == 1) {
        for (const ScaleSuffix& suffix : kScaleSuffixes) {
            if (screenScale >= suffix.scale) {
                result.push_back(std::string(path).insert(extensionStart(path), suffix.text));
            }
        }
    }
    result.push_back(path);
    return result;
}

DesktopImages::DesktopImages(Configuration configuration, const DesktopImageContexts& contexts)
    : configuration_(std::move(configuration)), contexts_(contexts) {}

void DesktopImages::setSendApplicationIconImage(SendApplicationIconImage send) {
    send_ = std::move(send);
}

platform::ImageRef DesktopImages::imageWithContentsOfFile(const std::string& path) {
    if (configuration_.root == nullptr) {
        return nullptr;
    }
    for (const std::string& candidate :
         imageCandidates(path, configuration_.screenScale, configuration_.siblings)) {
        const Result<platform::Data> file =
            configuration_.root->readFile(candidate, configuration_.maxFileBytes);
        if (!file) {
            record::noteTried(candidate, file.error().message);
            continue;
        }
        const Content content = {file->size(),
                                 std::hash<std::string_view>{}(
                                     {reinterpret_cast<const char*>(file->data()), file->size()})};
        if (const auto bitmap = heldBitmap(content)) {
            record::noteTried(candidate, "");
            return makeImage(bitmap, scaleFromPath(candidate));
        }
        Result<DecodedImage> decoded = decodeImage(*file, configuration_.decodeLimits);
        if (!decoded) {
            record::noteTried(candidate, decoded.error().message);
            continue;
        }
        if (const auto bitmap = DesktopBitmapImage::create(std::move(*decoded))) {
            hold(content, bitmap);
            record::noteTried(candidate, "");
            return makeImage(bitmap, scaleFromPath(candidate));
        }
        record::noteTried(candidate, "the image is too large");
    }
    return nullptr;
}

std::shared_ptr<DesktopBitmapImage> DesktopImages::heldBitmap(const Content& content) {
    const std::scoped_lock lock(holding_);
    const auto held = held_.find(content);
    return held == held_.end() ? nullptr : held->second.lock();
}

void DesktopImages::hold(const Content& content,
                         const std::shared_ptr<DesktopBitmapImage>& bitmap) {
    const std::scoped_lock lock(holding_);
    if (held_.size() >= mostHeld_) {
        std::erase_if(held_, [](const auto& entry) { return entry.second.expired(); });
        mostHeld_ = std::max(mostHeld_, 2 * held_.size());
    }
    held_[content] = bitmap;
}

platform::ImageRef DesktopImages::imageWithCGImage(const platform::BitmapImageRef& bitmap) {
    return bitmap == nullptr ? nullptr : makeImage(bitmap, 1);
}

void DesktopImages::drawInRect(const platform::ImageRef& image, const platform::Rect& rect) {
    const auto context = contexts_.current();
    if (context != nullptr) {
        context->drawImage(platform::bitmapOf(image), rect);
    }
}

std::optional<platform::Data> DesktopImages::pngRepresentation(const platform::ImageRef& image) {
    const auto bitmap = DesktopBitmapImage::of(platform::bitmapOf(image));
    if (bitmap == nullptr) {
        return std::nullopt;
    }
    const PixelView pixels = bitmap->pixels();
    if (pixels.empty()) {
        return std::nullopt;
    }
    return encodePng({pixels.data, pixels.height * pixels.bytesPerRow}, pixels.width, pixels.height,
                     pixels.bytesPerRow);
}

platform::ImageRef DesktopImages::applicationIconImageForBundleIdentifierFormatScale(
    const platform::NullableString& bundleIdentifier, int format, double scale) {
    return send_ ? send_(bundleIdentifier, format, scale) : nullptr;
}

platform::ImageRef DesktopImages::makeImage(const platform::BitmapImageRef& bitmap,
                                            double scale) const {
    return std::make_shared<DesktopImage>(bitmap, scale, configuration_.description);
}

}  // namespace velmoranth::desktop
