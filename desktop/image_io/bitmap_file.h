// The phone's stored wallpapers (".cpbitmap"): rows of pixels as they lie in memory, and after them
// a trailer of little-endian 32-bit numbers. The format is not published. What is assumed here:
//   pixels   premultiplied B, G, R, A, 8 bits each, top row first, no header before them: certain,
//            since many converters read them so.
//   rows     padded to a whole number of pixels that is at least the width. How far they are padded
//            is uncertain (it has changed with the hardware): taken from the length of the file.
//   trailer  six numbers, the second and the third of which are width and height in pixels: nearly
//            certain. What the others mean is not known: they are ignored.
// The bytes have no mark of their own, so such a file is not told by its content.
#pragma once

#include "desktop/image_io/image_io.h"
#include "desktop/result/result.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace velmoranth::desktop {

// Rows that are longer than the width by more pixels than this are taken for damage.
inline constexpr std::size_t kLongestBitmapFilePadding = 63;

// The picture, with tight rows in the layout of the phone's own PNG variant (`premultipliedFirst`,
// `little32`). Fails, with a clause that says why, when the sizes are zero or beyond the limits, or
// the length of the file does not fit them. Never throws.
[[nodiscard]] Result<DecodedImage> decodeBitmapFile(std::span<const std::uint8_t> file,
                                                    const DecodeLimits& limits = {});

}  // namespace velmoranth::desktop
