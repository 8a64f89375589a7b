// giflib, the format's own reader. Results are the first frame on the file's canvas: 8-bit indexed
// when it is opaque and fills the canvas, else R, G, B, A with straight alpha, clear where the
// frame does not reach.
#include "desktop/image_io/formats.h"

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::desktop::image_io {

namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ColorSpace;

struct CloseGif {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};

using Gif = std::unique_ptr<GifFileType, CloseGif>;

// `UserData` is the part of the file that is not read yet.
int readBytes(GifFileType* gif, GifByteType* destination, int count) {
    auto& rest = *static_cast<Bytes*>(gif->UserData);
    const std::size_t size = std::min(rest.size(), static_cast<std::size_t>(std::max(count, 0)));
    std::copy_n(rest.begin(), size, destination);
    rest = rest.subspan(size);
    return static_cast<int>(size);
}

tl::unexpected<Problem> damaged(int error) {
    const char* text = GifErrorString(error);
    return refuse("the GIF file is damaged (" + std::string(text != nullptr ? text : "unknown") +
                  ")");
}

struct Frame {
    std::size_t left = 0;
    std::size_t top = 0;
    std::size_t width = 0;
    std::size_t height = 0;
    bool isInterlaced = false;
    std::optional<std::uint8_t> transparentIndex;
    std::vector<PaletteEntry> palette;
    platform::Data indices;  // width × height
};

// Goes to the first frame; the extension that names its transparent colour stands before it.
Result<std::optional<std::uint8_t>> findFirstFrame(GifFileType* gif) {
    std::optional<std::uint8_t> transparentIndex;
    while (true) {
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif, &record) != GIF_OK) {
            return damaged(gif->Error);
        }
        if (record == IMAGE_DESC_RECORD_TYPE) {
            break;
        }
        if (record != EXTENSION_RECORD_TYPE) {
            return refuse("the GIF file holds no picture");
        }
        int code = 0;
        GifByteType* block = nullptr;  // its length and then its bytes, owned by `gif`
        int outcome = DGifGetExtension(gif, &code, &block);
        while (outcome == GIF_OK && block != nullptr) {
            GraphicsControlBlock control;
            if (code == GRAPHICS_EXT_FUNC_CODE &&
                DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
                transparentIndex.reset();
                if (control.TransparentColor != NO_TRANSPARENT_COLOR) {
                    transparentIndex = static_cast<std::uint8_t>(control.TransparentColor);
                }
            }
            outcome = DGifGetExtensionNext(gif, &block);
        }
        if (outcome != GIF_OK) {
            return damaged(gif->Error);
        }
    }
    return transparentIndex;
}

// Rows come in four groups when interlaced (GIF89a, appendix E).
std::vector<std::size_t> rowOrder(const Frame& frame) {
    struct Group {
        std::size_t first;
        std::size_t step;
    };

    constexpr std::array<Group, 4> kInterlaced = {{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
    constexpr std::array<Group, 1> kPlain = {{{0, 1}}};
    std::vector<std::size_t> order;
    order.reserve(frame.height);
    for (const Group& group : frame.isInterlaced ? std::span<const Group>(kInterlaced)
                                                 : std::span<const Group>(kPlain)) {
        for (std::size_t y = group.first; y < frame.height; y += group.step) {
            order.push_back(y);
        }
    }
    return order;
}

Result<Frame> readFrame(GifFileType* gif, const DecodeLimits& limits) {
    const auto transparentIndex = findFirstFrame(gif);
    if (!transparentIndex) {
        return tl::make_unexpected(transparentIndex.error());
    }
    if (DGifGetImageDesc(gif) != GIF_OK) {
        return damaged(gif->Error);
    }
    const GifImageDesc& description = gif->Image;
    const ColorMapObject* colors =
        description.ColorMap != nullptr ? description.ColorMap : gif->SColorMap;
    if (colors == nullptr) {
        return refuse("the GIF file has no palette");
    }
    // These fields hold 16 bits of the file each.
    Frame frame{.left = static_cast<std::size_t>(description.Left),
                .top = static_cast<std::size_t>(description.Top),
                .width = static_cast<std::size_t>(description.Width),
                .height = static_cast<std::size_t>(description.Height),
                .isInterlaced = description.Interlace,
                .transparentIndex = *transparentIndex,
                .palette = {},
                .indices = {}};
    const auto size =
        fitted({.width = frame.width, .height = frame.height, .bitsPerPixel = 8}, limits);
    if (!size) {
        return tl::make_unexpected(size.error());
    }
    std::transform(
        colors->Colors, colors->Colors + colors->ColorCount, std::back_inserter(frame.palette),
        [](const GifColorType& color) { return PaletteEntry{color.Red, color.Green, color.Blue}; });
    frame.indices.resize(frame.width * frame.height);
    for (const std::size_t y : rowOrder(frame)) {
        if (DGifGetLine(gif, frame.indices.data() + y * frame.width,
                        static_cast<int>(frame.width)) != GIF_OK) {
            return damaged(gif->Error);
        }
    }
    return frame;
}

// Puts the frame on a clear canvas of R, G, B, A pixels.
platform::Data painted(const Frame& frame, const BitmapLayout& canvas) {
    std::array<std::array<std::uint8_t, 4>, 256> colors = {};
    colors.fill({0, 0, 0, 255});  // an index beyond the palette
    for (std::size_t index = 0; index < std::min<std::size_t>(frame.palette.size(), 256); ++index) {
        const PaletteEntry& entry = frame.palette[index];
        colors[index] = {entry.red, entry.green, entry.blue, 255};
    }
    if (frame.transparentIndex) {
        colors[*frame.transparentIndex] = {};
    }
    platform::Data samples(canvas.bytesPerRow * canvas.height);
    const std::uint8_t* index = frame.indices.data();
    for (std::size_t y = 0; y < frame.height; ++y) {
        std::uint8_t* target =
            samples.data() + (frame.top + y) * canvas.bytesPerRow + frame.left * 4;
        for (std::size_t x = 0; x < frame.width; ++x) {
            std::memcpy(target + 4 * x, colors[*index++].data(), 4);
        }
    }
    return samples;
}

}  // namespace

Result<DecodedImage> decodeGif(Bytes file, const DecodeLimits& limits) {
    Bytes rest = file;
    int error = D_GIF_SUCCEEDED;
    const Gif gif(DGifOpen(&rest, readBytes, &error));
    if (!gif) {
        return damaged(error);
    }
    auto frame = readFrame(gif.get(), limits);
    if (!frame) {
        return tl::make_unexpected(std::move(frame).error());
    }
    if (rest.empty()) {
        return refuse("the GIF file is cut off");
    }
    // A canvas that is too small for the first frame grows.
    BitmapLayout layout{
        .width = std::max(static_cast<std::size_t>(gif->SWidth), frame->left + frame->width),
        .height = std::max(static_cast<std::size_t>(gif->SHeight), frame->top + frame->height),
        .bitsPerComponent = 8,
        .bitsPerPixel = 8,
        .colorSpace = ColorSpace::indexed,
        .alphaInfo = AlphaInfo::none};
    const bool isIndexed =
        !frame->transparentIndex && layout.width == frame->width && layout.height == frame->height;
    if (!isIndexed) {
        layout.bitsPerPixel = 32;
        layout.colorSpace = ColorSpace::deviceRGB;
        layout.alphaInfo = AlphaInfo::last;
    }
    const auto canvas = fitted(layout, limits);
    if (!canvas) {
        return tl::make_unexpected(canvas.error());
    }
    if (!isIndexed) {
        return DecodedImage{.layout = *canvas,
                            .samples = std::make_shared<platform::Data>(painted(*frame, *canvas)),
                            .palette = {}};
    }
    return DecodedImage{.layout = *canvas,
                        .samples = std::make_shared<platform::Data>(std::move(frame->indices)),
                        .palette = std::move(frame->palette)};
}

}  // namespace velmoranth::desktop::image_io
