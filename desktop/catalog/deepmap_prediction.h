// The predicted planes of a deepmap segment: what is left of every pixel once its neighbours
// foretold it.
#pragma once

#include "desktop/catalog/catalog.h"

namespace velmoranth::catalog {

// The planes of a segment, one behind the other: alpha if there is one, a predictor for each row,
// the high bytes of what is left of each component, the low bytes.
struct PlanesShape {
    std::size_t width = 0;  // pixels
    std::size_t rows = 0;
    std::size_t components = 3;  // 1 for gray, 3 for brightness and two differences of colour
    bool hasAlpha = true;
    bool halvedChroma = true;  // the differences of colour are stored halved

    [[nodiscard]] std::size_t alphaSize() const { return hasAlpha ? width * rows : 0; }

    [[nodiscard]] std::size_t valuesSize() const { return width * rows * components; }

    [[nodiscard]] std::size_t size() const { return alphaSize() + rows + 2 * valuesSize(); }
};

// Writes the rows as a picture's pixels, gray and alpha for one component, blue, green, red and
// alpha for three; `stride` bytes lie between the beginnings of two rows. `planes` has the shape's
// size at least. False when a row asks for a predictor that nobody knows.
[[nodiscard]] bool decodePlanes(Bytes planes, const PlanesShape& shape,
                                std::span<std::uint8_t> pixels, std::size_t stride);

}  // namespace velmoranth::catalog
