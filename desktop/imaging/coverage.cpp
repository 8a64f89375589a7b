// cairo draws the rounded corners here and nothing else of this folder: its rasteriser has exact
// edges, and the result (A8, top row first) goes straight into rows of coverage.
#include "desktop/imaging/coverage.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <numbers>

namespace velmoranth::desktop {

namespace {

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};

struct ContextDeleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

std::vector<std::uint8_t> rectangleCoverage(const RoundedRect& shape, std::size_t width,
                                            std::size_t height) {
    const auto shares = [](double from, double to, std::size_t count) {
        std::vector<double> result(count);
        for (std::size_t i = 0; i < count; ++i) {
            const auto left = static_cast<double>(i);
            result[i] = std::clamp(std::min(left + 1, to) - std::max(left, from), 0.0, 1.0);
        }
        return result;
    };
    const std::vector<double> columns = shares(shape.left, shape.right, width);
    const std::vector<double> rows = shares(shape.top, shape.bottom, height);
    std::vector<std::uint8_t> result(width * height);
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            result[y * width + x] =
                static_cast<std::uint8_t>(std::lround(rows[y] * columns[x] * 255));
        }
    }
    return result;
}

void addRoundedPath(cairo_t* context, const RoundedRect& shape, double radiusX, double radiusY) {
    const struct {
        double x;
        double y;
        double from;
    } corners[] = {
        {shape.right - radiusX, shape.top + radiusY, -std::numbers::pi / 2},
        {shape.right - radiusX, shape.bottom - radiusY, 0},
        {shape.left + radiusX, shape.bottom - radiusY, std::numbers::pi / 2},
        {shape.left + radiusX, shape.top + radiusY, std::numbers::pi},
    };

    for (const auto& corner : corners) {
        cairo_save(context);
        cairo_translate(context, corner.x, corner.y);
        cairo_scale(context, radiusX, radiusY);
        cairo_arc(context, 0, 0, 1, corner.from, corner.from + std::numbers::pi / 2);
        cairo_restore(context);
    }
    cairo_close_path(context);
}

// One pass of a running average over `count` bytes, `stride` apart. `before` + 1 + `after` wide.
void boxPass(std::uint8_t* bytes, std::size_t count, std::size_t stride, std::size_t before,
             std::size_t after, std::vector<std::uint8_t>& line) {
    for (std::size_t i = 0; i < count; ++i) {
        line[i] = bytes[i * stride];
    }
    const auto width = static_cast<std::uint32_t>(before + after + 1);
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < std::min(after, count); ++i) {
        sum += line[i];
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (i + after < count) {
            sum += line[i + after];
        }
        bytes[i * stride] = static_cast<std::uint8_t>((sum + width / 2) / width);
        if (i >= before) {
            sum -= line[i - before];
        }
    }
}

// The three averages of one axis: pixels before and after each.
struct Boxes {
    bool any = false;
    std::size_t before[3] = {};
    std::size_t after[3] = {};
};

Boxes boxesOf(double deviation) {
    if (!(deviation > 0)) {
        return {};
    }
    // Three boxes of this width have the deviation of the Gaussian (the rule of the SVG filter
    // effects recommendation, feGaussianBlur).
    const double scaled =
        std::min(deviation, 256.0) * 3 * std::sqrt(2 * std::numbers::pi) / 4 + 0.5;
    const auto box = std::max<std::size_t>(static_cast<std::size_t>(scaled), 1);
    const std::size_t half = box / 2;
    const std::size_t shorter = box % 2 == 0 ? half - 1 : half;
    // An even box is off by half a pixel: once to either side, then one that is a pixel wider.
    return {.any = true, .before = {half, shorter, half}, .after = {shorter, half, half}};
}

}  // namespace

std::vector<std::uint8_t> coverageOf(const RoundedRect& shape, std::size_t width,
                                     std::size_t height) {
    const double radiusX = std::min(shape.radiusX, (shape.right - shape.left) / 2);
    const double radiusY = std::min(shape.radiusY, (shape.bottom - shape.top) / 2);
    if (!(radiusX > 0) || !(radiusY > 0)) {
        return rectangleCoverage(shape, width, height);
    }
    std::vector<std::uint8_t> result(width * height);
    const std::unique_ptr<cairo_surface_t, SurfaceDeleter> surface(cairo_image_surface_create(
        CAIRO_FORMAT_A8, static_cast<int>(width), static_cast<int>(height)));
    const std::unique_ptr<cairo_t, ContextDeleter> context(cairo_create(surface.get()));
    cairo_set_antialias(context.get(), CAIRO_ANTIALIAS_BEST);
    // cairo's coordinates reach some 8 million pixels: edges whose corners are out of sight come
    // closer.
    RoundedRect near = shape;
    near.left = std::max(near.left, -radiusX - 1);
    near.top = std::max(near.top, -radiusY - 1);
    near.right = std::min(near.right, static_cast<double>(width) + radiusX + 1);
    near.bottom = std::min(near.bottom, static_cast<double>(height) + radiusY + 1);
    addRoundedPath(context.get(), near, radiusX, radiusY);
    cairo_fill(context.get());
    cairo_surface_flush(surface.get());
    const unsigned char* const pixels = cairo_image_surface_get_data(surface.get());
    if (pixels == nullptr || cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) {
        return rectangleCoverage(shape, width, height);
    }
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
    for (std::size_t y = 0; y < height; ++y) {
        std::memcpy(result.data() + y * width, pixels + y * stride, width);
    }
    return result;
}

void blurCoverage(std::vector<std::uint8_t>& coverage, std::size_t width, std::size_t height,
                  double deviation) {
    blurCoverage(coverage, width, height, deviation, deviation);
}

void blurCoverage(std::vector<std::uint8_t>& coverage, std::size_t width, std::size_t height,
                  double deviationX, double deviationY) {
    if (coverage.size() < width * height) {
        return;
    }
    const Boxes horizontal = boxesOf(deviationX);
    const Boxes vertical = boxesOf(deviationY);
    std::vector<std::uint8_t> line(std::max(width, height));
    for (std::size_t pass = 0; pass < 3; ++pass) {
        for (std::size_t y = 0; y < height && horizontal.any; ++y) {
            boxPass(coverage.data() + y * width, width, 1, horizontal.before[pass],
                    horizontal.after[pass], line);
        }
        for (std::size_t x = 0; x < width && vertical.any; ++x) {
            boxPass(coverage.data() + x, height, width, vertical.before[pass], vertical.after[pass],
                    line);
        }
    }
}

}  // namespace velmoranth::desktop
