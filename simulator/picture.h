// A finished picture of a screen, and what it shows where.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
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

// An icon in a picture.
struct ShownIcon {
    std::string bundleIdentifier;
    std::string label;  // "" in a dock without labels
    // Pixels of the picture.
    double x = 0;
    double y = 0;
    double side = 0;
    // How often the platform was asked for the app's stock image since the process started: once a
    // layout when nothing is replaced.
    int stockImageRequests = 0;

    friend bool operator==(const ShownIcon&, const ShownIcon&) = default;
};

// An open folder in a picture, as it lies once it has opened.
struct ShownFolder {
    std::string identifier;
    std::string name;
    int page = 1;
    int pageCount = 1;
    // The panel, pixels of the picture.
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    std::vector<ShownIcon> icons;  // of its page, row by row

    friend bool operator==(const ShownFolder&, const ShownFolder&) = default;
};

}  // namespace velmoranth::simulator
