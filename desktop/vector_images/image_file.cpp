// Image files: HEIF in a process of its own, all others by image_io; and the turns of EXIF.
#include "desktop/image_io/image_io.h"
#include "desktop/vector_images/backends.h"
#include "desktop/vector_images/drawing_process.h"
#include "desktop/vector_images/vector_images.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace velmoranth::desktop {
namespace {

using vector_images::Bytes;
using vector_images::HeifTurns;
using vector_images::Room;
using vector_images::Sheet;

constexpr std::size_t kPixelBytes = 4;

// Where the pixels of the upright picture are in the stored one.
struct Turn {
    bool transposed;  // rows are stored as columns
    bool fromRight;   // stored columns are taken from the right
    bool fromBottom;  // stored rows are taken from the bottom
};

// Numbers 1 to 8 of the tag Orientation (Exif 2.3, section 4.6.4).
constexpr std::array<Turn, 8> kTurns = {{{false, false, false},
                                         {false, true, false},
                                         {false, true, true},
                                         {false, false, true},
                                         {true, false, false},
                                         {true, false, true},
                                         {true, true, true},
                                         {true, true, false}}};

DrawnImage upright(DrawnImage image, std::uint32_t orientation) {
    if (orientation <= 1 || orientation > kTurns.size()) {
        return image;
    }
    const Turn turn = kTurns.at(orientation - 1);
    DrawnImage result{.width = turn.transposed ? image.height : image.width,
                      .height = turn.transposed ? image.width : image.height,
                      .bgra = std::vector<std::uint8_t>(image.bgra.size())};
    std::uint8_t* target = result.bgra.data();
    for (std::size_t y = 0; y < result.height; ++y) {
        for (std::size_t x = 0; x < result.width; ++x) {
            const std::size_t column = turn.transposed ? y : x;
            const std::size_t row = turn.transposed ? x : y;
            const std::size_t pixel =
                (turn.fromBottom ? image.height - 1 - row : row) * image.width +
                (turn.fromRight ? image.width - 1 - column : column);
            std::memcpy(target, image.bgra.data() + pixel * kPixelBytes, kPixelBytes);
            target += kPixelBytes;
        }
    }
    return result;
}

// ISO base media with a brand of HEIF (ISO 23008-12, section 10) or of the AV1 kind.
bool isHeif(Bytes file) {
    static constexpr std::array<std::string_view, 10> kBrands{
        "heic", "heix", "heim", "heis", "hevc", "hevx", "mif1", "msf1", "avif", "avis"};
    const std::string_view text{reinterpret_cast<const char*>(file.data()), file.size()};
    return text.size() >= 12 && text.substr(4, 4) == "ftyp" &&
           std::find(kBrands.begin(), kBrands.end(), text.substr(8, 4)) != kBrands.end();
}

Result<DrawnImage> readHeif(Bytes file, HeifTurns turns, const DrawLimits& limits) {
    if (!isHeif(file)) {
        return tl::unexpected(Problem{.message = "this is no HEIF file"});
    }
    if (file.size() > limits.maxFileBytes) {
        return tl::unexpected(Problem{
            .message = fmt::format("an image file of {} bytes is beyond the limit", file.size())});
    }
    return vector_images::drawInProcess(
               limits, Room::picture,
               [&](Sheet& sheet) { return vector_images::drawHeif(file, turns, sheet); })
        .map([](vector_images::Drawn&& drawn) { return std::move(drawn.image); });
}

Result<DrawnImage> readWithImageIo(Bytes file, const DrawLimits& limits) {
    const auto decoded = decodeImage(
        file,
        {.maxWidth = limits.maxWidth, .maxHeight = limits.maxHeight, .maxBytes = limits.maxBytes});
    if (!decoded) {
        return tl::unexpected(decoded.error());
    }
    // Gray samples are a quarter of what they become.
    const std::size_t bytes = decoded->layout.width * decoded->layout.height * kPixelBytes;
    if (bytes > limits.maxBytes) {
        return tl::unexpected(
            Problem{.message = fmt::format("a picture of {} × {} pixels is beyond the limit",
                                           decoded->layout.width, decoded->layout.height)});
    }
    DrawnImage image{.width = static_cast<std::uint32_t>(decoded->layout.width),
                     .height = static_cast<std::uint32_t>(decoded->layout.height),
                     .bgra = toPremultipliedBgra(*decoded)};
    if (image.bgra.size() != bytes) {
        return tl::unexpected(Problem{.message = "the image has too few samples"});
    }
    return image;
}

}  // namespace

Result<DrawnImage> decodeHeif(std::span<const std::uint8_t> file, const DrawLimits& limits) {
    return readHeif(file, HeifTurns::applied, limits);
}

Result<DrawnImage> decodeImageFile(std::span<const std::uint8_t> file, std::uint32_t orientation,
                                   const DrawLimits& limits) {
    const bool turned = orientation >= 2 && orientation <= kTurns.size();
    auto image = isHeif(file)
                     ? readHeif(file, turned ? HeifTurns::asStored : HeifTurns::applied, limits)
                     : readWithImageIo(file, limits);
    return std::move(image).map(
        [&](DrawnImage&& stored) { return upright(std::move(stored), orientation); });
}

}  // namespace velmoranth::desktop
