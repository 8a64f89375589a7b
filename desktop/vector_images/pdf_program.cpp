// PDF by poppler's own programs: the reader of PDF on Linux that is best kept. Its library is under
// a licence that would be the whole command's; a program that is run is not part of it.
//
// pdfinfo says how large the page is, pdftocairo draws it: on nothing, by cairo, with pixels that
// are whole at the page's top left corner. A page that is no whole number of pixels high stands on
// the bottom of its picture, where the program cannot put it: it writes that page as SVG, which is
// drawn here.
#include "desktop/image_io/image_io.h"
#include "desktop/vector_images/backends.h"
#include "desktop/vector_images/confined_program.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

namespace velmoranth::desktop::vector_images {
namespace {

constexpr double kPointsPerInch = 72;

Problem problem(std::string message) {
    return Problem{.message = std::move(message)};
}

tl::unexpected<Problem> refuse(std::string message) {
    return tl::unexpected(problem(std::move(message)));
}

ProgramLimits limitsOf(const DrawLimits& limits, std::size_t maxOutput) {
    // Who waits for the drawing process stops it when time is up.
    return {.maxOutput = maxOutput,
            .maxMemory = limits.maxWorkingBytes + limits.maxBytes,
            .maxTime = limits.maxTime * 2};
}

// What went wrong with a file that the program has given up, by its own words.
Problem givenUp(std::string_view complaints) {
    if (complaints.find("Incorrect password") != std::string_view::npos) {
        return problem("the PDF file is encrypted");
    }
    if (complaints.find("the last page (0)") != std::string_view::npos) {
        return problem("the PDF file has no page");
    }
    return problem("the PDF file is damaged");
}

// What the program writes about the file.
Result<std::vector<std::uint8_t>> outputOf(std::string_view name,
                                           const std::vector<std::string>& arguments, Bytes file,
                                           const ProgramLimits& limits) {
    const auto path = findProgram(name);
    if (!path) {
        return refuse(fmt::format(
            "PDF files cannot be drawn: there is no {}; install the package poppler-utils", name));
    }
    ProgramResult result = runConfined(*path, arguments, file, limits);
    switch (result.ending) {
        case ProgramEnding::notStarted:
            return refuse(fmt::format("PDF files cannot be drawn: {} cannot be started", *path));
        case ProgramEnding::killed:
            return refuse(fmt::format(
                "{} stopped: the file is damaged, or drawing it takes too much memory", name));
        case ProgramEnding::timeUp:
            return refuse("drawing it takes too long");
        case ProgramEnding::tooMuchOutput:
            return refuse(fmt::format("{} wrote more than a picture of its size can take", name));
        case ProgramEnding::exited:
            break;
    }
    if (result.exitCode != 0) {
        return tl::unexpected(givenUp(result.complaints));
    }
    return std::move(result.output);
}

// What stands behind "KEY:" on a line of its own. The file's own words come first, and may look the
// same: the last line is the program's.
std::string valueOf(std::string_view text, std::string_view key) {
    std::string value;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.size() > key.size() && line.starts_with(key) && line[key.size()] == ':') {
            line.remove_prefix(key.size() + 1);
            value = line.substr(std::min(line.find_first_not_of(' '), line.size()));
        }
    }
    return value;
}

// "10.5 x 8.25 pts (A4)".
PointSize parseSize(const std::string& text) {
    char* end = nullptr;
    const double width = std::strtod(text.c_str(), &end);
    if (std::strncmp(end, " x ", 3) != 0) {
        return {};
    }
    return {.width = width, .height = std::strtod(end + 3, nullptr)};
}

Result<PointSize> pageSize(Bytes file, const DrawLimits& limits) {
    constexpr std::size_t kMaxText = std::size_t{1} << 20U;  // the document's own words are in it
    const auto output = outputOf("pdfinfo", {"-"}, file, limitsOf(limits, kMaxText));
    if (!output) {
        return tl::unexpected(output.error());
    }
    const std::string_view text(reinterpret_cast<const char*>(output->data()), output->size());
    if (valueOf(text, "Pages") == "0") {
        return refuse("the PDF file has no page");
    }
    PointSize size = parseSize(valueOf(text, "Page size"));
    if (!std::isfinite(size.width) || !std::isfinite(size.height) || size.width <= 0 ||
        size.height <= 0) {
        return refuse("the page of the PDF file has no size");
    }
    if (std::lround(std::strtod(valueOf(text, "Page rot").c_str(), nullptr)) % 180 != 0) {
        std::swap(size.width, size.height);
    }
    return size;
}

// The program's picture may have a row and a column more, of what is less than a thousandth of a
// pixel.
std::optional<Problem> copyPixels(const DecodedImage& image, std::size_t width, std::size_t height,
                                  std::uint8_t* pixels) {
    if (image.layout.width < width || image.layout.height < height ||
        image.layout.width > width + 1 || image.layout.height > height + 1) {
        return problem(fmt::format("pdftocairo drew {} × {} pixels in place of {} × {}",
                                   image.layout.width, image.layout.height, width, height));
    }
    const std::vector<std::uint8_t> bgra = toPremultipliedBgra(image);
    for (std::size_t row = 0; row < height; ++row) {
        std::memcpy(pixels + row * width * 4, bgra.data() + row * image.layout.width * 4,
                    width * 4);
    }
    return std::nullopt;
}

std::optional<Problem> drawPage(Bytes file, double width, double height, double scale,
                                Sheet& sheet) {
    const auto pixels = sheet.picture(width, height);
    if (!pixels) {
        return pixels.error();
    }
    constexpr std::size_t kSlack = std::size_t{1} << 20U;
    const auto bytes = static_cast<std::size_t>(width * height) * 4;
    const auto output = outputOf("pdftocairo",
                                 {"-png", "-singlefile", "-transp", "-cropbox", "-r",
                                  fmt::format("{:.9g}", scale * kPointsPerInch), "-", "-"},
                                 file, limitsOf(sheet.limits(), bytes + bytes / 8 + kSlack));
    if (!output) {
        return output.error();
    }
    const auto image = decodeImage(*output, {.maxWidth = std::size_t{sheet.limits().maxWidth} + 1,
                                             .maxHeight = std::size_t{sheet.limits().maxHeight} + 1,
                                             .maxBytes = bytes + bytes / 8 + kSlack});
    if (!image) {
        return problem("the picture that pdftocairo made cannot be read: " + image.error().message);
    }
    return copyPixels(*image, static_cast<std::size_t>(width), static_cast<std::size_t>(height),
                      *pixels);
}

std::optional<Problem> drawPageAsSvg(Bytes file, PointSize size, double scale, Sheet& sheet) {
    // Before it is drawn: the size that the file states.
    const auto pixels =
        sheet.picture(pixelLength(size.width, scale), pixelLength(size.height, scale));
    if (!pixels) {
        return pixels.error();
    }
    const auto output =
        outputOf("pdftocairo", {"-svg", "-f", "1", "-l", "1", "-noshrink", "-nocenter", "-", "-"},
                 file, limitsOf(sheet.limits(), sheet.limits().maxFileBytes));
    return output ? drawSvgOfPage(*output, size, scale, sheet) : output.error();
}

}  // namespace

std::optional<Problem> drawPdf(Bytes file, std::optional<double> scale, Sheet& sheet) {
    const auto size = pageSize(file, sheet.limits());
    if (!size) {
        return size.error();
    }
    sheet.setSize(*size);
    if (!scale) {
        return std::nullopt;
    }
    constexpr double kNegligible = 0.001;
    const double width = pixelLength(size->width, *scale);
    const double height = pixelLength(size->height, *scale);
    return std::abs(height - size->height * *scale) > kNegligible
               ? drawPageAsSvg(file, *size, *scale, sheet)
               : drawPage(file, width, height, *scale, sheet);
}

std::string pdfProgram() {
    constexpr std::string_view kName = "pdftocairo";
    const auto path = findProgram(kName);
    if (!path) {
        return fmt::format("no {}", kName);
    }
    const std::string said = runConfined(*path, {"-v"}, {}, {}).complaints;
    const std::string before = fmt::format("{} version ", kName);
    if (!said.starts_with(before)) {
        return fmt::format("no {}", kName);
    }
    const std::size_t end = said.find_first_not_of("0123456789.", before.size());
    return fmt::format("{} {}", kName, said.substr(before.size(), end - before.size()));
}

}  // namespace velmoranth::desktop::vector_images
