#include "cli/expected_picture.h"

#include "cli/messages.h"
#include "simulator/picture_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

namespace velmoranth::cli {

namespace {

// B, G, R, A.
constexpr std::array<std::uint8_t, 4> kMark{0x1A, 0x10, 0xE0, 0xFF};

// The largest difference of a component of the pixel that begins at this byte.
int differenceAt(const simulator::Picture& a, const simulator::Picture& b, std::size_t byte) {
    int largest = 0;
    for (std::size_t i = byte; i < byte + 4; ++i) {
        largest = std::max(largest, std::abs(int{a.pixels[i]} - int{b.pixels[i]}));
    }
    return largest;
}

}  // namespace

std::string Deviation::text(std::size_t width, std::size_t height) const {
    if (!isSameSize) {
        return fmt::format("it is {} × {} pixels, not {} × {}", width, height, expectedWidth,
                           expectedHeight);
    }
    return fmt::format("{} {}, by up to {} of 255", counted(pixels, "pixel"),
                       pixels == 1 ? "differs" : "differ", largest);
}

Deviation deviationOf(const simulator::Picture& drawn, const simulator::Picture& expected,
                      int tolerance) {
    Deviation deviation{
        .isSameSize = drawn.width == expected.width && drawn.height == expected.height,
        .expectedWidth = expected.width,
        .expectedHeight = expected.height};
    for (std::size_t i = 0; deviation.isSameSize && i < drawn.pixels.size(); i += 4) {
        const int difference = differenceAt(drawn, expected, i);
        deviation.pixels += difference > tolerance ? 1 : 0;
        deviation.largest = std::max(deviation.largest, difference);
    }
    return deviation;
}

simulator::Picture differencePicture(const simulator::Picture& drawn,
                                     const simulator::Picture& expected, int tolerance) {
    simulator::Picture marked = drawn;
    for (std::size_t i = 0; i < drawn.pixels.size(); i += 4) {
        const bool differs = differenceAt(drawn, expected, i) > tolerance;
        for (std::size_t component = 0; component < 4; ++component) {
            std::uint8_t& value = marked.pixels[i + component];
            // A quarter of it on white.
            value = differs ? kMark.at(component) : static_cast<std::uint8_t>(191 + value / 4);
        }
    }
    return marked;
}

std::string differenceFile(const std::string& output) {
    const std::filesystem::path path(output);
    std::filesystem::path file = path;
    file.replace_filename(path.stem().string() + "-difference" + path.extension().string());
    return file.string();
}

}  // namespace velmoranth::cli
