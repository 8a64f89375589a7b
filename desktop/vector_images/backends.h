// What stands between this folder and each reader of files. For each library there are two sources,
// one over it and one for a build without it; CMake picks. PDF is read by a program, which is there
// or not when it is wanted. All but the versions run in the drawing process (drawing_process.h).
#pragma once

#include "desktop/result/result.h"
#include "desktop/vector_images/drawing_process.h"
#include "desktop/vector_images/vector_images.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace velmoranth::desktop::vector_images {

using Bytes = std::span<const std::uint8_t>;

// Sets the sheet's size; with a scale, draws as well.
[[nodiscard]] std::optional<Problem> drawPdf(Bytes file, std::optional<double> scale, Sheet& sheet);
[[nodiscard]] std::optional<Problem> drawSvg(Bytes file, std::optional<double> scale, Sheet& sheet);
// Of one that stands for a page of this size: on the picture's bottom left corner, as pages do.
[[nodiscard]] std::optional<Problem> drawSvgOfPage(Bytes file, PointSize size, double scale,
                                                   Sheet& sheet);

enum class HeifTurns { asStored, applied };
[[nodiscard]] std::optional<Problem> drawHeif(Bytes file, HeifTurns turns, Sheet& sheet);

// "pdftocairo 22.12.0" or "no pdftocairo": runs the program to ask it.
[[nodiscard]] std::string pdfProgram();
// "librsvg 2.54.7" or "no librsvg".
[[nodiscard]] std::string svgLibrary();
[[nodiscard]] std::string heifLibrary();

// What a length of so many points takes in pixels: rounded up, but for what is less than a
// thousandth of a pixel (lengths of files come in decimals).
[[nodiscard]] double pixelLength(double points, double scale);

}  // namespace velmoranth::desktop::vector_images
