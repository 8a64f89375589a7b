// Pixels as the drawing code holds them: premultiplied B, G, R, A, 8 bits each, top row first. The
// views here do not own what they show.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace velmoranth::desktop {

struct PixelSize {
    std::size_t width = 0;
    std::size_t height = 0;

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

// Pixels [left, right) × [top, bottom).
struct PixelRect {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t right = 0;
    std::int64_t bottom = 0;

    [[nodiscard]] bool empty() const { return left >= right || top >= bottom; }

    // Pixels; of rectangles that are not empty.
    [[nodiscard]] std::size_t width() const { return static_cast<std::size_t>(right - left); }

    [[nodiscard]] std::size_t height() const { return static_cast<std::size_t>(bottom - top); }

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

[[nodiscard]] inline PixelRect intersection(const PixelRect& a, const PixelRect& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

// The smallest that holds both; an empty one holds nothing.
[[nodiscard]] inline PixelRect united(const PixelRect& a, const PixelRect& b) {
    if (a.empty() || b.empty()) {
        return a.empty() ? b : a;
    }
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

// What one bitmap may need at most; larger ones are not made. A whole screen of the largest pad
// takes 23 MiB.
inline constexpr std::size_t kMaxBitmapBytes = std::size_t{256} * 1024 * 1024;
inline constexpr std::size_t kMaxBitmapSide = 16384;

// height × bytesPerRow, where bytesPerRow 0 means tight rows. Nothing when a side
// is 0 or over kMaxBitmapSide, when a given row is shorter than its pixels, or when the bytes
// exceed kMaxBitmapBytes.
[[nodiscard]] std::optional<std::size_t> bitmapBytes(PixelSize size, std::size_t bytesPerPixel,
                                                     std::size_t bytesPerRow);

// Read access to height × bytesPerRow bytes. Empty when `data` is null.
struct PixelView {
    const std::uint8_t* data = nullptr;
    std::size_t width = 0;   // pixels
    std::size_t height = 0;  // pixels
    std::size_t bytesPerRow = 0;

    [[nodiscard]] const std::uint8_t* row(std::size_t y) const { return data + y * bytesPerRow; }

    [[nodiscard]] bool empty() const { return data == nullptr || width == 0 || height == 0; }
};

// Write access to the same.
struct MutablePixels {
    std::uint8_t* data = nullptr;
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t bytesPerRow = 0;

    [[nodiscard]] std::uint8_t* row(std::size_t y) const { return data + y * bytesPerRow; }

    [[nodiscard]] PixelView view() const { return {data, width, height, bytesPerRow}; }
};

}  // namespace velmoranth::desktop
