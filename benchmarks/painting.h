// What nothing that shows a screen can do without: painting as many pixels twice, here with cairo.
#pragma once

#include <cairo.h>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace velmoranth::benchmarks {

// Paints a picture, premultiplied B, G, R, A, over another of the same size.
class Painting {
  public:
    Painting(std::vector<std::uint8_t> pixels, std::size_t width, std::size_t height)
        : pixels_(std::move(pixels)),
          source_(cairo_image_surface_create_for_data(
              pixels_.data(), CAIRO_FORMAT_ARGB32, static_cast<int>(width),
              static_cast<int>(height), static_cast<int>(width * 4))),
          target_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width),
                                             static_cast<int>(height))),
          context_(cairo_create(target_)) {
        cairo_set_source_surface(context_, source_, 0, 0);
    }

    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;

    ~Painting() {
        cairo_destroy(context_);
        cairo_surface_destroy(target_);
        cairo_surface_destroy(source_);
    }

    // The rows lie without a gap; they are this painting's.
    const std::uint8_t* twice() {
        cairo_paint(context_);
        cairo_paint(context_);
        cairo_surface_flush(target_);
        return cairo_image_surface_get_data(target_);
    }

  private:
    std::vector<std::uint8_t> pixels_;
    cairo_surface_t* source_;
    cairo_surface_t* target_;
    cairo_t* context_;
};

}  // namespace velmoranth::benchmarks
