// PDF by poppler through its GLib interface: the reader of PDF on Linux that is best kept, and one
// of few that draw straight into cairo, whose ARGB32 pixels are, on a little-endian machine,
// premultiplied B, G, R, A with the top row first: ours. (Its core C++ classes are no stable
// interface, and its other front ends draw on paper, not on nothing.)
#include "desktop/vector_images/backends.h"

#include <cairo.h>
#include <fmt/core.h>
#include <poppler.h>

#include <bit>
#include <cmath>
#include <memory>

namespace velmoranth::desktop::vector_images {
namespace {

static_assert(std::endian::native == std::endian::little);

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }

    void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }

    void operator()(GError* error) const { g_error_free(error); }

    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }

    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

template <class T>
using Owned = std::unique_ptr<T, Unref>;

Problem problem(std::string message) {
    return Problem{.message = std::move(message)};
}

Problem openingProblem(const GError* error) {
    if (error != nullptr && g_error_matches(error, POPPLER_ERROR, POPPLER_ERROR_ENCRYPTED)) {
        return problem("the PDF file is encrypted");
    }
    return problem("the PDF file is damaged");
}

std::optional<Problem> draw(PopplerPage* page, PointSize size, double scale, Sheet& sheet) {
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
    // The page's bottom on the picture's: what is left over by rounding up is at the top.
    cairo_translate(context.get(), 0, height - size.height * scale);
    cairo_scale(context.get(), scale, scale);
    poppler_page_render(page, context.get());
    cairo_surface_flush(surface.get());
    if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) {
        return problem(fmt::format("the PDF page cannot be drawn: {}",
                                   cairo_status_to_string(cairo_status(context.get()))));
    }
    return std::nullopt;
}

}  // namespace

std::optional<Problem> drawPdf(Bytes file, std::optional<double> scale, Sheet& sheet) {
    const Owned<GBytes> bytes(g_bytes_new_static(file.data(), file.size()));
    GError* rawError = nullptr;
    const Owned<PopplerDocument> document(
        poppler_document_new_from_bytes(bytes.get(), nullptr, &rawError));
    const Owned<GError> error(rawError);
    if (document == nullptr) {
        return openingProblem(error.get());
    }
    const Owned<PopplerPage> page(poppler_document_get_n_pages(document.get()) > 0
                                      ? poppler_document_get_page(document.get(), 0)
                                      : nullptr);
    if (page == nullptr) {
        return problem("the PDF file has no page");
    }
    PointSize size;
    poppler_page_get_size(page.get(), &size.width, &size.height);
    if (!std::isfinite(size.width) || !std::isfinite(size.height) || size.width <= 0 ||
        size.height <= 0) {
        return problem("the page of the PDF file has no size");
    }
    sheet.setSize(size);
    return scale ? draw(page.get(), size, *scale, sheet) : std::nullopt;
}

std::string pdfLibrary() {
    return fmt::format("poppler {}", poppler_get_version());
}

}  // namespace velmoranth::desktop::vector_images
