// libjpeg-turbo through its TurboJPEG interface: fast, kept up, and errors come back as values.
// Results are 8-bit gray or R, G, B; CMYK pictures are converted, with the inverted inks that every
// tool in use writes. Orientation notes and colour profiles are not applied: rows are as stored.
#include "desktop/image_io/formats.h"

#include <turbojpeg.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

namespace velmoranth::desktop::image_io {

namespace {

using platform::ColorSpace;

// Marker codes, from ITU-T T.81, table B.1.
constexpr std::uint8_t kFirstRestart = 0xD0;
constexpr std::uint8_t kStartOfImage = 0xD8;
constexpr std::uint8_t kEndOfImage = 0xD9;

struct CloseHandle {
    void operator()(void* handle) const { tjDestroy(handle); }
};

using Handle = std::unique_ptr<std::remove_pointer_t<tjhandle>, CloseHandle>;

// The decoder fills in what a cut-off file lacks and only warns, so the markers are walked first.
bool reachesItsEnd(Bytes file) {
    std::size_t at = 2;
    while (at + 1 < file.size()) {
        if (file[at] != 0xFF) {  // within a scan, or bytes that belong to nothing
            ++at;
            continue;
        }
        const std::uint8_t marker = file[at + 1];
        if (marker == kEndOfImage) {
            return true;
        }
        if (marker == 0xFF) {  // padding
            ++at;
            continue;
        }
        at += 2;
        const bool hasLength = marker > kStartOfImage || (marker > 1 && marker < kFirstRestart);
        if (!hasLength) {
            continue;
        }
        if (at + 2 > file.size()) {
            return false;
        }
        at += std::max<std::size_t>(2, std::size_t{file[at]} << 8 | file[at + 1]);
    }
    return false;
}

tl::unexpected<Problem> damaged(const Handle& handle) {
    return refuse("the JPEG file is damaged (" + std::string(tjGetErrorStr2(handle.get())) + ")");
}

// The inks are stored inverted: 255 is none.
void convertInks(Bytes cmyk, std::uint8_t* rgb) {
    for (; !cmyk.empty(); cmyk = cmyk.subspan(4)) {
        for (std::size_t ink = 0; ink < 3; ++ink) {
            *rgb++ = static_cast<std::uint8_t>((cmyk[ink] * cmyk[3] + 127) / 255);
        }
    }
}

}  // namespace

Result<DecodedImage> decodeJpeg(Bytes file, const DecodeLimits& limits) {
    const Handle handle(tjInitDecompress());
    if (!handle) {
        throw std::bad_alloc();
    }
    int width = 0;
    int height = 0;
    int subsampling = -1;
    int colorSpace = -1;
    const int header = tjDecompressHeader3(handle.get(), file.data(), file.size(), &width, &height,
                                           &subsampling, &colorSpace);
    // An uncommon subsampling is reported as an error, but decodes.
    if (header != 0 && (width <= 0 || height <= 0 || colorSpace < 0)) {
        return damaged(handle);
    }
    const bool isGray = colorSpace == TJCS_GRAY;
    const bool hasInks = colorSpace == TJCS_CMYK || colorSpace == TJCS_YCCK;
    const auto layout =
        fitted({.width = static_cast<std::size_t>(width),
                .height = static_cast<std::size_t>(height),
                .bitsPerComponent = 8,
                .bitsPerPixel = isGray ? std::size_t{8} : std::size_t{24},
                .colorSpace = isGray ? ColorSpace::deviceGray : ColorSpace::deviceRGB,
                .alphaInfo = platform::AlphaInfo::none},
               limits);
    if (!layout) {
        return tl::make_unexpected(layout.error());
    }
    if (!reachesItsEnd(file)) {
        return refuse("the JPEG file is cut off");
    }
    auto samples = std::make_shared<platform::Data>(layout->bytesPerRow * layout->height);
    platform::Data inks(hasInks ? layout->width * layout->height * 4 : 0);
    const int format = isGray ? TJPF_GRAY : hasInks ? TJPF_CMYK : TJPF_RGB;
    // A file with hundreds of refining scans is made to keep its reader busy.
    if (tjDecompress2(handle.get(), file.data(), file.size(),
                      hasInks ? inks.data() : samples->data(), width, 0, height, format,
                      TJFLAG_LIMITSCANS) != 0 &&
        tjGetErrorCode(handle.get()) != TJERR_WARNING) {
        return damaged(handle);
    }
    convertInks(inks, samples->data());
    return DecodedImage{.layout = *layout, .samples = std::move(samples), .palette = {}};
}

}  // namespace velmoranth::desktop::image_io
