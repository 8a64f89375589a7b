#include "desktop/vector_images/vector_images.h"

#include "desktop/vector_images/backends.h"
#include "desktop/vector_images/drawing_process.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

namespace velmoranth::desktop {

namespace vector_images {

double pixelLength(double points, double scale) {
    constexpr double kNegligible = 0.001;
    return std::max(1.0, std::ceil(points * scale - kNegligible));
}

}  // namespace vector_images

namespace {

using vector_images::Bytes;
using vector_images::Drawn;
using vector_images::Room;
using vector_images::Sheet;

using DrawVector = std::optional<Problem> (*)(Bytes, std::optional<double>, Sheet&);

tl::unexpected<Problem> refuse(std::string message) {
    return tl::unexpected(Problem{.message = std::move(message)});
}

std::string_view beginning(Bytes file, std::size_t most) {
    return {reinterpret_cast<const char*>(file.data()), std::min(file.size(), most)};
}

// Readers take a mark that is preceded by something else within the first kilobyte (ISO 32000-1,
// annex H, implementation note 13).
bool isPdf(Bytes file) {
    return beginning(file, 1024).find("%PDF-") != std::string_view::npos;
}

// Markup, in which comments and a long document type may come before the root element. Of 16-bit
// text only the byte-order mark is looked at.
bool isSvg(Bytes file) {
    std::string_view text = beginning(file, std::size_t{64} * 1024);
    if (text.starts_with("\xFF\xFE<") || text.starts_with(std::string_view("\xFE\xFF\0<", 4))) {
        return true;
    }
    if (text.starts_with("\xEF\xBB\xBF")) {
        text.remove_prefix(3);
    }
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && text[first] == '<' &&
           (text.find("<svg") != std::string_view::npos ||
            text.find(":svg") != std::string_view::npos);
}

Result<DrawVector> readerOf(Bytes file, const DrawLimits& limits) {
    if (file.empty()) {
        return refuse("the file is empty");
    }
    if (file.size() > limits.maxFileBytes) {
        return refuse(fmt::format("a vector file of {} bytes is beyond the limit", file.size()));
    }
    if (isPdf(file)) {
        return &vector_images::drawPdf;
    }
    if (isSvg(file)) {
        return &vector_images::drawSvg;
    }
    return refuse("this is neither a PDF nor an SVG file");
}

Result<Drawn> draw(Bytes file, std::optional<double> scale, const DrawLimits& limits) {
    const auto reader = readerOf(file, limits);
    if (!reader) {
        return tl::unexpected(reader.error());
    }
    return vector_images::drawInProcess(
        limits, scale ? Room::picture : Room::none,
        [&](Sheet& sheet) { return (*reader)(file, scale, sheet); });
}

}  // namespace

Result<PointSize> vectorSize(std::span<const std::uint8_t> file, const DrawLimits& limits) {
    return draw(file, std::nullopt, limits).map([](const Drawn& drawn) { return drawn.size; });
}

Result<DrawnImage> drawVector(std::span<const std::uint8_t> file, double scale,
                              const DrawLimits& limits) {
    if (!std::isfinite(scale) || scale <= 0) {
        return refuse("the scale is no positive number");
    }
    return draw(file, scale, limits).map([](Drawn&& drawn) { return std::move(drawn.image); });
}

std::string vectorLibraries() {
    return fmt::format("{}, {}, {}", vector_images::pdfProgram(), vector_images::svgLibrary(),
                       vector_images::heifLibrary());
}

}  // namespace velmoranth::desktop
