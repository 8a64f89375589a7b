#include "desktop/imaging/image_contexts.h"

#include <atomic>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

namespace {

struct Entry {
    std::uint64_t owner = 0;
    std::shared_ptr<DesktopGraphicsContext> context;  // nil: begun with an impossible size
};

// The calling thread's contexts of every owner, the newest last.
std::vector<Entry>& entries() {
    static thread_local std::vector<Entry> stack;
    return stack;
}

std::vector<Entry>::iterator newestOf(std::uint64_t owner) {
    std::vector<Entry>& stack = entries();
    auto found = stack.end();
    while (found != stack.begin()) {
        --found;
        if (found->owner == owner) {
            return found;
        }
    }
    return stack.end();
}

bool isUsable(double number) {
    return std::isfinite(number) && number > 0;
}

// A size in points that is a whole number of pixels but for its last bits is that number.
constexpr double kSizeTolerance = 1e-6;

double pixelsFor(double points, double scale) {
    return std::ceil(points * scale - kSizeTolerance);
}

std::atomic<std::uint64_t> nextId{1};

}  // namespace

DesktopImageContexts::DesktopImageContexts(double screenScale, ImageDescription description)
    : id_(nextId.fetch_add(1)),
      screenScale_(isUsable(screenScale) ? screenScale : 1),
      description_(description) {}

void DesktopImageContexts::beginImageContextWithOptions(platform::Size size, bool opaque,
                                                        double scale) {
    const double used = isUsable(scale) ? scale : screenScale_;
    Entry entry{.owner = id_, .context = nullptr};
    const double width = pixelsFor(size.width, used);
    const double height = pixelsFor(size.height, used);
    const auto limit = static_cast<double>(kMaxBitmapSide);
    if (isUsable(size.width) && isUsable(size.height) && width <= limit && height <= limit) {
        // Less than the tolerance of a pixel is still a pixel.
        entry.context = DesktopGraphicsContext::create(
            {.size = {static_cast<std::size_t>(std::fmax(width, 1)),
                      static_cast<std::size_t>(std::fmax(height, 1))},
             .scale = used,
             .origin = DesktopGraphicsContext::Origin::topLeft,
             .content = opaque ? DesktopGraphicsContext::Content::opaque
                               : DesktopGraphicsContext::Content::premultiplied});
    }
    entries().push_back(std::move(entry));
}

platform::GraphicsContextRef DesktopImageContexts::getCurrentContext() {
    return current();
}

std::shared_ptr<DesktopGraphicsContext> DesktopImageContexts::current() const {
    const auto newest = newestOf(id_);
    return newest == entries().end() ? nullptr : newest->context;
}

platform::ImageRef DesktopImageContexts::getImageFromCurrentImageContext() {
    const auto context = current();
    if (context == nullptr) {
        return nullptr;
    }
    const platform::BitmapImageRef picture = context->createImage();
    if (picture == nullptr) {
        return nullptr;
    }
    return std::make_shared<DesktopImage>(picture, context->scale(), description_);
}

void DesktopImageContexts::endImageContext() {
    const auto newest = newestOf(id_);
    if (newest != entries().end()) {
        entries().erase(newest);
    }
}

}  // namespace velmoranth::desktop
