// The readers behind decodeImage, a file each, and what they share. A reader is given the whole
// file, which already has the first bytes of its format, and checks everything else itself: sizes
// against the limits before anything of that size is allocated.
#pragma once

#include "desktop/image_io/image_io.h"
#include "desktop/result/result.h"
#include "platform/core_graphics.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace velmoranth::desktop::image_io {

using Bytes = std::span<const std::uint8_t>;

// A failure with this clause.
[[nodiscard]] tl::unexpected<Problem> refuse(std::string message,
                                             std::optional<std::uint64_t> offset = {});

// The layout with bytesPerRow as tight as whole bytes allow. Fails when it has no pixels or
// exceeds the limits.
[[nodiscard]] Result<platform::BitmapLayout> fitted(platform::BitmapLayout layout,
                                                    const DecodeLimits& limits);

// Every colour type, bit depth and interlacing, in the layout that image_io.h describes.
[[nodiscard]] Result<DecodedImage> decodePng(Bytes file, const DecodeLimits& limits);
// The phone's own variant of PNG, as premultiplied B, G, R, A.
[[nodiscard]] Result<DecodedImage> decodePhonePng(Bytes file, const DecodeLimits& limits);
// Gray or RGB.
[[nodiscard]] Result<DecodedImage> decodeJpeg(Bytes file, const DecodeLimits& limits);
// The first frame: indexed when it is opaque and fills the canvas, otherwise RGBA.
[[nodiscard]] Result<DecodedImage> decodeGif(Bytes file, const DecodeLimits& limits);
// The first picture: 8-bit gray, RGB and their kinds with alpha as stored, all else as RGBA.
[[nodiscard]] Result<DecodedImage> decodeTiff(Bytes file, const DecodeLimits& limits);

}  // namespace velmoranth::desktop::image_io
