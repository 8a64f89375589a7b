// Draws the vector files (PDF, SVG) and decodes the image files (HEIF, JPEG) that asset catalogs
// hold.
//
// The libraries that read PDF, SVG and HEIF are large, and their input comes from strangers. So
// each call does that work in a process of its own, forked for it: a file that makes a library
// crash, loop or eat memory costs that process and comes back as a problem. What this leaves open
// stands in drawing_process.h. PDF is drawn by a program of its own besides, pdftocairo, in a
// sandbox (sandbox.h); it is looked for in PATH with every file, and need not be there.
//
// Every function may be called by several threads at a time. The one condition: no other thread of
// the program is inside cairo, pango, fontconfig or GLib meanwhile (a fork would copy their locks
// as held, and the call would end in the problem that drawing took too long).
//
// A file refers to nothing outside itself: references to other files and to the network draw
// nothing. Text in fonts that the file does not embed is drawn in fonts of this machine.
//
// Each library is optional when this is built. Without it, or without the program, the functions
// give a problem that names it.
#pragma once

#include "desktop/result/result.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::desktop {

// Premultiplied B, G, R, A, 8 bits each, `width * 4` bytes a row, top row first.
struct DrawnImage {
    std::uint32_t width = 0;   // pixels
    std::uint32_t height = 0;  // pixels
    std::vector<std::uint8_t> bgra;
};

struct PointSize {
    double width = 0;
    double height = 0;

    friend bool operator==(const PointSize&, const PointSize&) = default;
};

// Beyond these a file is refused. Sizes are checked before anything of that size is allocated.
struct DrawLimits {
    std::size_t maxFileBytes = std::size_t{64} * 1024 * 1024;
    std::uint32_t maxWidth = 16384;                         // pixels
    std::uint32_t maxHeight = 16384;                        // pixels
    std::size_t maxBytes = std::size_t{256} * 1024 * 1024;  // of the drawn picture
    // What a library may take besides the file and the picture.
    std::size_t maxWorkingBytes = std::size_t{1024} * 1024 * 1024;
    // Of the clock on the wall, and of the processor.
    std::chrono::milliseconds maxTime{10000};
};

// The size of a PDF's first page (its crop box, turned as the page says) or of an SVG. A unit of
// the file is a point: 1/72 inch of a PDF, a user unit ("px") of an SVG. An SVG without width or
// height takes what is missing from its viewBox; without that too it is a problem. PDF and SVG are
// told apart by their content. A PDF's size has six digits.
[[nodiscard]] Result<PointSize> vectorSize(std::span<const std::uint8_t> file,
                                           const DrawLimits& limits = {});

// Draws that page on nothing (transparent). `scale` is pixels per point. A size that is no whole
// number of pixels is rounded up, so that nothing is cut off; the drawing itself is not stretched
// to it. A PDF then stands on the bottom left corner of the picture and an SVG hangs from its top
// left one, where their coordinates begin, so that lines on whole pixels stay on them.
[[nodiscard]] Result<DrawnImage> drawVector(std::span<const std::uint8_t> file, double scale,
                                            const DrawLimits& limits = {});

// The primary picture of a HEIF file, turned and mirrored as the file says.
[[nodiscard]] Result<DrawnImage> decodeHeif(std::span<const std::uint8_t> file,
                                            const DrawLimits& limits = {});

// An image file as a catalog's record has it: JPEG, HEIF, or what else image_io reads. The result
// is upright: `orientation` is the record's, in EXIF's numbers 1 to 8; every other number means
// that the picture is stored upright. For HEIF, numbers 2 to 8 replace what the file itself says
// (the record repeats it), the others leave it in force. Colour profiles are not applied.
[[nodiscard]] Result<DrawnImage> decodeImageFile(std::span<const std::uint8_t> file,
                                                 std::uint32_t orientation,
                                                 const DrawLimits& limits = {});

// What is optional with its versions, the program of this machine and the libraries of this build;
// what is missing is named as such: "pdftocairo 22.12.0, librsvg 2.54.7, no libheif".
[[nodiscard]] std::string vectorLibraries();

}  // namespace velmoranth::desktop
