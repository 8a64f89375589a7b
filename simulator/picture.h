// A finished picture of a screen.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoranth::simulator {

struct Picture {
    std::size_t width = 0;   // pixels
    std::size_t height = 0;  // pixels
    double scale = 1;        // pixels per point
    // Premultiplied B, G, R, A, 8 bits each, width × 4 bytes a row, top row first.
    std::vector<std::uint8_t> pixels;

    friend bool operator==(const Picture&, const Picture&) = default;
};

}  // namespace velmoranth::simulator
