// libtiff, which knows the format's many kinds. Results: 8-bit gray and R, G, B, each with or
// without alpha, keep their samples; every other kind (tiles, planes, palettes, other depths and
// colour models) comes as premultiplied R, G, B, A of 8 bits. Rows are as stored: an orientation
// note is not applied, nor a colour profile.
#include "desktop/image_io/formats.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace velmoranth::desktop::image_io {

namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ColorSpace;

// The file in memory, as libtiff's callbacks see it.
struct Source {
    Bytes file;
    std::uint64_t position = 0;
    std::array<char, 160> error = {};
};

Source& sourceOf(thandle_t handle) {
    return *static_cast<Source*>(handle);
}

tmsize_t readBytes(thandle_t handle, void* destination, tmsize_t count) {
    Source& source = sourceOf(handle);
    const std::uint64_t start = std::min<std::uint64_t>(source.position, source.file.size());
    const Bytes rest = source.file.subspan(static_cast<std::size_t>(start));
    const std::size_t size =
        std::min(rest.size(), static_cast<std::size_t>(std::max<tmsize_t>(count, 0)));
    std::copy_n(rest.begin(), size, static_cast<std::uint8_t*>(destination));
    source.position = start + size;
    return static_cast<tmsize_t>(size);
}

tmsize_t writeNothing(thandle_t, void*, tmsize_t) {
    return 0;
}

toff_t seek(thandle_t handle, toff_t offset, int whence) {
    Source& source = sourceOf(handle);
    // Unsigned on purpose: libtiff steps back by adding a wrapped offset.
    switch (whence) {
        case SEEK_CUR:
            source.position += offset;
            break;
        case SEEK_END:
            source.position = source.file.size() + offset;
            break;
        default:
            source.position = offset;
            break;
    }
    return source.position;
}

int closeNothing(thandle_t) {
    return 0;
}

toff_t sizeOfFile(thandle_t handle) {
    return sourceOf(handle).file.size();
}

// Keeps the first error, which is the cause of those that follow.
int keepError(TIFF*, void* user, const char*, const char* format, va_list arguments) {
    auto& source = *static_cast<Source*>(user);
    if (source.error[0] == '\0') {
        std::vsnprintf(source.error.data(), source.error.size(), format, arguments);
    }
    return 1;
}

int ignoreWarning(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

// The file is in memory already. libtiff only reads what is mapped. (Without a mapping, version 4.5
// refuses some uncompressed tiles that are in order.)
int mapFile(thandle_t handle, void** base, toff_t* size) {
    Source& source = sourceOf(handle);
    *base = const_cast<std::uint8_t*>(source.file.data());
    *size = source.file.size();
    return 1;
}

void unmapNothing(thandle_t, void*, toff_t) {}

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

using Tiff = std::unique_ptr<TIFF, CloseTiff>;

struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

Tiff open(Source& source, const DecodeLimits& limits) {
    const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
    if (!options) {
        throw std::bad_alloc();
    }
    // What libtiff needs to read directories and strips, beside the samples.
    constexpr std::size_t kWorkingMemory = std::size_t{1} << 20;
    const std::size_t largest = std::max(limits.maxBytes, kWorkingMemory);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(largest));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keepError, &source);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), ignoreWarning, &source);
    return Tiff(TIFFClientOpenExt("image", "r", &source, readBytes, writeNothing, seek,
                                  closeNothing, sizeOfFile, mapFile, unmapNothing, options.get()));
}

tl::unexpected<Problem> damaged(const Source& source) {
    const char* text = source.error[0] != '\0' ? source.error.data() : "no picture";
    return refuse("the TIFF file is damaged or of an unsupported kind (" + std::string(text) + ")");
}

std::uint16_t field(TIFF* tiff, std::uint32_t tag) {
    std::uint16_t value = 0;
    TIFFGetFieldDefaulted(tiff, tag, &value);
    return value;
}

// How the samples lie when they can be taken as they are; nothing when they must be converted.
std::optional<BitmapLayout> plainLayout(TIFF* tiff) {
    const std::uint16_t photometric = field(tiff, TIFFTAG_PHOTOMETRIC);
    const std::uint16_t components = field(tiff, TIFFTAG_SAMPLESPERPIXEL);
    const bool isGray = photometric == PHOTOMETRIC_MINISBLACK;
    const std::uint16_t colors = isGray ? 1 : 3;
    if (TIFFIsTiled(tiff) != 0 || field(tiff, TIFFTAG_PLANARCONFIG) != PLANARCONFIG_CONTIG ||
        field(tiff, TIFFTAG_BITSPERSAMPLE) != 8 ||
        field(tiff, TIFFTAG_SAMPLEFORMAT) != SAMPLEFORMAT_UINT ||
        (!isGray && photometric != PHOTOMETRIC_RGB) || components < colors ||
        components > colors + 1) {
        return std::nullopt;
    }
    BitmapLayout layout{.bitsPerComponent = 8,
                        .bitsPerPixel = std::size_t{8} * components,
                        .colorSpace = isGray ? ColorSpace::deviceGray : ColorSpace::deviceRGB,
                        .alphaInfo = AlphaInfo::none};
    if (components == colors) {
        return layout;
    }
    std::uint16_t extraCount = 0;
    const std::uint16_t* extras = nullptr;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extras);
    if (extraCount != 1 || extras == nullptr || extras[0] == EXTRASAMPLE_UNSPECIFIED) {
        return std::nullopt;
    }
    layout.alphaInfo =
        extras[0] == EXTRASAMPLE_ASSOCALPHA ? AlphaInfo::premultipliedLast : AlphaInfo::last;
    return layout;
}

bool readPlainRows(TIFF* tiff, const BitmapLayout& layout, std::uint8_t* samples) {
    if (static_cast<std::uint64_t>(TIFFScanlineSize(tiff)) != layout.bytesPerRow) {
        return false;
    }
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        if (TIFFReadScanline(tiff, samples + y * layout.bytesPerRow, y) < 0) {
            return false;
        }
    }
    return true;
}

// libtiff converts to words of A, B, G, R from the top bits down: R, G, B, A in memory.
bool readConverted(TIFF* tiff, const BitmapLayout& layout, std::uint8_t* samples) {
    const platform::Data::size_type pixels = layout.width * layout.height;
    const auto words = std::make_unique<std::uint32_t[]>(pixels);
    // Asked for the orientation that it has, the picture is not turned.
    if (TIFFReadRGBAImageOriented(tiff, static_cast<std::uint32_t>(layout.width),
                                  static_cast<std::uint32_t>(layout.height), words.get(),
                                  field(tiff, TIFFTAG_ORIENTATION), 1) == 0) {
        return false;
    }
    for (std::size_t i = 0; i < pixels; ++i) {
        samples[4 * i] = static_cast<std::uint8_t>(TIFFGetR(words[i]));
        samples[4 * i + 1] = static_cast<std::uint8_t>(TIFFGetG(words[i]));
        samples[4 * i + 2] = static_cast<std::uint8_t>(TIFFGetB(words[i]));
        samples[4 * i + 3] = static_cast<std::uint8_t>(TIFFGetA(words[i]));
    }
    return true;
}

}  // namespace

Result<DecodedImage> decodeTiff(Bytes file, const DecodeLimits& limits) {
    Source source{.file = file};
    const Tiff tiff = open(source, limits);
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    if (!tiff || TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width) == 0 ||
        TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height) == 0) {
        return damaged(source);
    }
    const auto plain = plainLayout(tiff.get());
    BitmapLayout wanted = plain.value_or(BitmapLayout{.bitsPerComponent = 8,
                                                      .bitsPerPixel = 32,
                                                      .colorSpace = ColorSpace::deviceRGB,
                                                      .alphaInfo = AlphaInfo::premultipliedLast});
    wanted.width = width;
    wanted.height = height;
    const auto layout = fitted(wanted, limits);
    if (!layout) {
        return tl::make_unexpected(layout.error());
    }
    auto samples = std::make_shared<platform::Data>(layout->bytesPerRow * layout->height);
    const auto read = plain ? readPlainRows : readConverted;
    if (!read(tiff.get(), *layout, samples->data())) {
        return damaged(source);
    }
    return DecodedImage{.layout = *layout, .samples = std::move(samples), .palette = {}};
}

}  // namespace velmoranth::desktop::image_io
