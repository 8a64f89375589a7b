// A build without librsvg.
#include "desktop/vector_images/backends.h"

namespace velmoranth::desktop::vector_images {

std::optional<Problem> drawSvg(Bytes /*file*/, std::optional<double> /*scale*/, Sheet& /*sheet*/) {
    return Problem{.message = "SVG files cannot be drawn: this build has no librsvg"};
}

std::optional<Problem> drawSvgOfPage(Bytes file, PointSize /*size*/, double scale, Sheet& sheet) {
    return drawSvg(file, scale, sheet);
}

std::string svgLibrary() {
    return "no librsvg";
}

}  // namespace velmoranth::desktop::vector_images
