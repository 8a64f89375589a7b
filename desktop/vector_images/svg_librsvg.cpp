// SVG by librsvg: complete, well kept, written in a memory-safe language, and drawing into cairo,
// whose ARGB32 pixels are, on a little-endian machine, premultiplied B, G, R, A with the top row
// first: ours. A document without a base address gets no other file and nothing from the network
// (only "data:" addresses); the library itself bounds the number of elements and of references.
#include "desktop/vector_images/backends.h"

#include <cairo.h>
#include <fmt/core.h>
#include <librsvg/rsvg.h>

#include <bit>
#include <cmath>
#include <memory>

namespace velmoranth::desktop::vector_images {
namespace {

static_assert(std::endian::native == std::endian::little);

constexpr double kUnitsPerInch = 96;  // of CSS, which SVG's lengths are

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }

    void operator()(GError* error) const { g_error_free(error); }

    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }

    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

template <class T>
using Owned = std::unique_ptr<T, Unref>;

// The library's words as one clause: those about XML come with numbers that mean nothing to a user
// before them ("XML parse error: Error domain 1 code 9 on line 2 column 41 of data: WHAT"), and may
// go on in further lines.
std::string clauseOf(std::string_view text) {
    constexpr std::string_view kBeforePlace = " on line ";
    constexpr std::string_view kBehindPlace = " of data: ";
    text = text.substr(0, text.find('\n'));
    std::string place;
    const std::size_t start = text.find(kBeforePlace);
    const std::size_t end = text.find(kBehindPlace);
    if (start != std::string_view::npos && end != std::string_view::npos && start < end) {
        constexpr std::size_t kOn = std::string_view(" on ").size();
        place = std::string(text.substr(start + kOn, end - start - kOn)) + ": ";
        text.remove_prefix(end + kBehindPlace.size());
    }
    return place + std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

Problem problem(std::string_view what, const GError* error = nullptr) {
    std::string message(what);
    if (error != nullptr && error->message != nullptr) {
        message += fmt::format(" ({})", clauseOf(error->message));
    }
    return Problem{.message = std::move(message)};
}

// In user units; 0 for a length that is a part of something unknown.
double userUnits(const RsvgLength& length) {
    constexpr double kFontSize = 12;  // that librsvg begins with
    switch (length.unit) {
        case RSVG_UNIT_PX:
            return length.length;
        case RSVG_UNIT_EM:
            return length.length * kFontSize;
        case RSVG_UNIT_EX:
            return length.length * kFontSize / 2;
        case RSVG_UNIT_IN:
            return length.length * kUnitsPerInch;
        case RSVG_UNIT_CM:
            return length.length * kUnitsPerInch / 2.54;
        case RSVG_UNIT_MM:
            return length.length * kUnitsPerInch / 25.4;
        case RSVG_UNIT_PT:
            return length.length * kUnitsPerInch / 72;
        case RSVG_UNIT_PC:
            return length.length * kUnitsPerInch / 6;
        default:  // a percentage; units that only later versions know
            return 0;
    }
}

// Width and height; what is missing comes from the other and the viewBox, as a browser has it. 0
// where nothing says.
PointSize sizeOf(RsvgHandle* handle) {
    gboolean hasWidth = FALSE;
    gboolean hasHeight = FALSE;
    gboolean hasBox = FALSE;
    RsvgLength width{};
    RsvgLength height{};
    RsvgRectangle box{};
    rsvg_handle_get_intrinsic_dimensions(handle, &hasWidth, &width, &hasHeight, &height, &hasBox,
                                         &box);
    PointSize size{.width = hasWidth != FALSE ? userUnits(width) : 0,
                   .height = hasHeight != FALSE ? userUnits(height) : 0};
    if (hasBox != FALSE && box.width > 0 && box.height > 0) {
        if (size.width == 0) {
            size.width = size.height > 0 ? size.height * box.width / box.height : box.width;
        }
        if (size.height == 0) {
            size.height = size.width * box.height / box.width;
        }
    }
    return size;
}

enum class Corner { topLeft, bottomLeft };  // of the picture, where the drawing begins

std::optional<Problem> draw(RsvgHandle* handle, PointSize size, double scale, Corner corner,
                            Sheet& sheet) {
    const double width = pixelLength(size.width, scale);
    const double height = pixelLength(size.height, scale);
    const auto pixels = sheet.picture(width, height);
    if (!pixels) {
        return pixels.error();
    }
    const Owned<cairo_surface_t> surface(
        cairo_image_surface_create_for_data(*pixels, CAIRO_FORMAT_ARGB32, static_cast<int>(width),
                                            static_cast<int>(height), static_cast<int>(width) * 4));
    const Owned<cairo_t> context(cairo_create(surface.get()));
    const RsvgRectangle viewport{.x = 0,
                                 .y = corner == Corner::topLeft ? 0 : height - size.height * scale,
                                 .width = size.width * scale,
                                 .height = size.height * scale};
    GError* rawError = nullptr;
    const gboolean drawn = rsvg_handle_render_document(handle, context.get(), &viewport, &rawError);
    const Owned<GError> error(rawError);
    cairo_surface_flush(surface.get());
    if (drawn == FALSE || cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) {
        return problem("the SVG file cannot be drawn", error.get());
    }
    return std::nullopt;
}

Result<Owned<RsvgHandle>> read(Bytes file) {
    GError* rawError = nullptr;
    Owned<RsvgHandle> handle(rsvg_handle_new_from_data(file.data(), file.size(), &rawError));
    const Owned<GError> error(rawError);
    if (handle == nullptr) {
        return tl::unexpected(problem("the SVG file is damaged", error.get()));
    }
    rsvg_handle_set_dpi(handle.get(), kUnitsPerInch);
    return handle;
}

}  // namespace

std::optional<Problem> drawSvg(Bytes file, std::optional<double> scale, Sheet& sheet) {
    const auto handle = read(file);
    if (!handle) {
        return handle.error();
    }
    const PointSize size = sizeOf(handle->get());
    if (!std::isfinite(size.width) || !std::isfinite(size.height) || size.width <= 0 ||
        size.height <= 0) {
        return problem("the SVG file has no size");
    }
    sheet.setSize(size);
    return scale ? draw(handle->get(), size, *scale, Corner::topLeft, sheet) : std::nullopt;
}

std::optional<Problem> drawSvgOfPage(Bytes file, PointSize size, double scale, Sheet& sheet) {
    const auto handle = read(file);
    return handle ? draw(handle->get(), size, scale, Corner::bottomLeft, sheet) : handle.error();
}

std::string svgLibrary() {
    return fmt::format("librsvg {}.{}.{}", rsvg_major_version, rsvg_minor_version,
                       rsvg_micro_version);
}

}  // namespace velmoranth::desktop::vector_images
