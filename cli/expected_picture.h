// Whether a picture is the one that its maker expects: pixel by pixel, each component by itself.
#pragma once

#include "simulator/picture.h"

#include <cstddef>
#include <string>

namespace velmoranth::cli {

struct Deviation {
    // Otherwise nothing else was compared.
    bool isSameSize = true;
    std::size_t expectedWidth = 0;  // pixels
    std::size_t expectedHeight = 0;
    std::size_t pixels = 0;  // that differ by more than is tolerated
    int largest = 0;         // difference of a component, 0 to 255

    [[nodiscard]] bool isNone() const { return isSameSize && pixels == 0; }

    // "12 pixels differ, by up to 40 of 255"; of a drawn picture of that size.
    [[nodiscard]] std::string text(std::size_t width, std::size_t height) const;
};

// `tolerance`: how much a component may differ, 0 to 255.
[[nodiscard]] Deviation deviationOf(const simulator::Picture& drawn,
                                    const simulator::Picture& expected, int tolerance);

// The drawn picture, pale, with every pixel that deviates in red. Both are of one size.
[[nodiscard]] simulator::Picture differencePicture(const simulator::Picture& drawn,
                                                   const simulator::Picture& expected,
                                                   int tolerance);

// The file that it goes to: "out/preview.png" has "out/preview-difference.png".
[[nodiscard]] std::string differenceFile(const std::string& output);

}  // namespace velmoranth::cli
