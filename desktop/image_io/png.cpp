// libpng, the reference reader: every colour type, depth and interlacing, and mended for decades.
// Results are the file's own samples (16-bit ones with the most significant byte first), except
// that transparency kept apart from the pixels becomes an alpha component: palettes turn into
// R, G, B, A, and gray with fewer than 8 bits into 8. Gamma and colour profiles are not applied.
#include "desktop/image_io/formats.h"
#include "desktop/image_io/png_structure.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace velmoranth::desktop::image_io {

namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ColorSpace;

// One reading of a file. The steps below work on it and nothing else.
struct Session {
    explicit Session(Bytes file) : rest(file) {}

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    ~Session() { png_destroy_read_struct(&png, &info, nullptr); }

    png_structp png = nullptr;
    png_infop info = nullptr;
    Bytes rest;  // not read yet
    std::array<char, 128> error = {};
    // Found by readInfo.
    bool hasTransparency = false;
    std::array<PaletteEntry, 256> palette = {};
    std::size_t paletteSize = 0;
    // Filled by readRows.
    std::uint8_t* samples = nullptr;
    std::size_t bytesPerRow = 0;
    std::uint32_t height = 0;
};

[[noreturn]] void fail(png_structp png, png_const_charp text) {
    auto& session = *static_cast<Session*>(png_get_error_ptr(png));
    std::strncpy(session.error.data(), text, session.error.size() - 1);
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

void readBytes(png_structp png, png_bytep destination, std::size_t count) {
    auto& session = *static_cast<Session*>(png_get_io_ptr(png));
    if (count > session.rest.size()) {
        png_error(png, "cut off");
    }
    std::copy_n(session.rest.begin(), count, destination);
    session.rest = session.rest.subspan(count);
}

// On an error libpng jumps out of a step, so nothing in a step may have a destructor.
using Step = void (*)(Session& session);

[[nodiscard]] bool succeeds(Session& session, Step step) {
    if (setjmp(png_jmpbuf(session.png)) != 0) {
        return false;
    }
    step(session);
    return true;
}

void readInfo(Session& session) {
    png_structp png = session.png;
    // What only describes the picture (text, profiles, dates) is skipped unread.
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    // The chunks of consequence have been checked.
    png_set_crc_action(png, PNG_CRC_QUIET_USE, PNG_CRC_DEFAULT);
    png_read_info(png, session.info);

    session.hasTransparency = png_get_valid(png, session.info, PNG_INFO_tRNS) != 0;
    png_colorp colors = nullptr;
    int count = 0;
    if (png_get_PLTE(png, session.info, &colors, &count) != 0) {
        session.paletteSize = std::min(static_cast<std::size_t>(count), session.palette.size());
        std::transform(colors, colors + session.paletteSize, session.palette.begin(),
                       [](const png_color& color) {
                           return PaletteEntry{color.red, color.green, color.blue};
                       });
    }
    if (session.hasTransparency) {
        // Palettes to R, G, B, gray to 8 bits, and what is transparent to alpha.
        png_set_expand(png);
    }
}

void readRows(Session& session) {
    const int passes = png_set_interlace_handling(session.png);
    png_read_update_info(session.png, session.info);
    if (png_get_rowbytes(session.png, session.info) != session.bytesPerRow) {
        png_error(session.png, "rows of an unexpected size");
    }
    for (int pass = 0; pass < passes; ++pass) {
        std::uint8_t* row = session.samples;
        for (std::uint32_t y = 0; y < session.height; ++y) {
            png_read_row(session.png, row, nullptr);
            row += session.bytesPerRow;
        }
    }
}

BitmapLayout layoutOf(const PngHeader& header, bool hasTransparency) {
    BitmapLayout layout{.width = header.width,
                        .height = header.height,
                        .bitsPerComponent = header.bitDepth,
                        .bitsPerPixel = header.bitsPerPixel()};
    switch (header.color) {
        case PngColor::gray:
        case PngColor::grayAlpha:
            layout.colorSpace = ColorSpace::deviceGray;
            break;
        case PngColor::palette:
            layout.colorSpace = hasTransparency ? ColorSpace::deviceRGB : ColorSpace::indexed;
            break;
        case PngColor::rgb:
        case PngColor::rgba:
            layout.colorSpace = ColorSpace::deviceRGB;
            break;
    }
    if (hasTransparency) {
        layout.bitsPerComponent = std::max<std::size_t>(header.bitDepth, 8);
        const std::size_t components = layout.colorSpace == ColorSpace::deviceGray ? 2 : 4;
        layout.bitsPerPixel = layout.bitsPerComponent * components;
    }
    const bool hasAlpha =
        hasTransparency || header.color == PngColor::grayAlpha || header.color == PngColor::rgba;
    layout.alphaInfo = hasAlpha ? AlphaInfo::last : AlphaInfo::none;
    return layout;
}

tl::unexpected<Problem> damaged(const Session& session) {
    return refuse("the PNG file is damaged (" + std::string(session.error.data()) + ")");
}

}  // namespace

Result<DecodedImage> decodePng(Bytes file, const DecodeLimits& limits) {
    const auto structure = readPngStructure(file, limits);
    if (!structure) {
        return tl::make_unexpected(structure.error());
    }
    Session session(file);
    session.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &session, fail, ignoreWarning);
    session.info = session.png != nullptr ? png_create_info_struct(session.png) : nullptr;
    if (session.info == nullptr) {
        throw std::bad_alloc();
    }
    png_set_read_fn(session.png, &session, readBytes);
    if (!succeeds(session, readInfo)) {
        return damaged(session);
    }
    const auto layout = fitted(layoutOf(structure->header, session.hasTransparency), limits);
    if (!layout) {
        return tl::make_unexpected(layout.error());
    }
    auto samples = std::make_shared<platform::Data>(layout->bytesPerRow * layout->height);
    session.samples = samples->data();
    session.bytesPerRow = layout->bytesPerRow;
    session.height = structure->header.height;
    if (!succeeds(session, readRows)) {
        return damaged(session);
    }
    DecodedImage image{.layout = *layout, .samples = std::move(samples), .palette = {}};
    if (layout->colorSpace == ColorSpace::indexed) {
        image.palette.assign(
            session.palette.begin(),
            session.palette.begin() + static_cast<std::ptrdiff_t>(session.paletteSize));
    }
    return image;
}

}  // namespace velmoranth::desktop::image_io
