// HEIF by libheif, the only reader of it in Debian. Off by default: it brings several codecs. Asked
// for interleaved 8-bit R, G, B, A, top row first; what comes with straight alpha is premultiplied
// here.
#include "desktop/image_io/packed_samples.h"
#include "desktop/vector_images/backends.h"

#include <fmt/core.h>
#include <libheif/heif.h>

#include <memory>

namespace velmoranth::desktop::vector_images {
namespace {

struct Release {
    void operator()(heif_context* context) const { heif_context_free(context); }

    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }

    void operator()(heif_image* image) const { heif_image_release(image); }

    void operator()(heif_decoding_options* options) const { heif_decoding_options_free(options); }
};

template <class T>
using Owned = std::unique_ptr<T, Release>;

Problem problem(const heif_error& error) {
    return Problem{.message = fmt::format("the HEIF file cannot be read: {}",
                                          error.message != nullptr ? error.message : "no reason")};
}

std::optional<Problem> copy(const heif_image* image, bool isPremultiplied, Sheet& sheet) {
    using image_io::multiplied;
    const int width = heif_image_get_width(image, heif_channel_interleaved);
    const int height = heif_image_get_height(image, heif_channel_interleaved);
    int stride = 0;
    const std::uint8_t* plane =
        heif_image_get_plane_readonly(image, heif_channel_interleaved, &stride);
    if (plane == nullptr) {
        return Problem{.message = "the HEIF file has no pixels"};
    }
    const auto pixels = sheet.picture(width, height);
    if (!pixels) {
        return pixels.error();
    }
    std::uint8_t* target = *pixels;
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* source = plane + std::ptrdiff_t{y} * stride;
        for (int x = 0; x < width; ++x, source += 4, target += 4) {
            const unsigned alpha = source[3];
            const unsigned factor = isPremultiplied ? 255 : alpha;
            target[0] = multiplied(source[2], factor);
            target[1] = multiplied(source[1], factor);
            target[2] = multiplied(source[0], factor);
            target[3] = source[3];
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<Problem> drawHeif(Bytes file, HeifTurns turns, Sheet& sheet) {
    const Owned<heif_context> context(heif_context_alloc());
    heif_error error = heif_context_read_from_memory_without_copy(context.get(), file.data(),
                                                                  file.size(), nullptr);
    if (error.code != heif_error_Ok) {
        return problem(error);
    }
    heif_image_handle* rawHandle = nullptr;
    error = heif_context_get_primary_image_handle(context.get(), &rawHandle);
    const Owned<heif_image_handle> handle(rawHandle);
    if (error.code != heif_error_Ok) {
        return problem(error);
    }
    // Before it decodes: the size that the file states.
    if (const auto room = sheet.picture(heif_image_handle_get_width(handle.get()),
                                        heif_image_handle_get_height(handle.get()));
        !room) {
        return room.error();
    }
    const Owned<heif_decoding_options> options(heif_decoding_options_alloc());
    options->ignore_transformations = turns == HeifTurns::asStored ? 1 : 0;
    options->convert_hdr_to_8bit = 1;
    heif_image* rawImage = nullptr;
    error = heif_decode_image(handle.get(), &rawImage, heif_colorspace_RGB,
                              heif_chroma_interleaved_RGBA, options.get());
    const Owned<heif_image> image(rawImage);
    if (error.code != heif_error_Ok) {
        return problem(error);
    }
    return copy(image.get(), heif_image_handle_is_premultiplied_alpha(handle.get()) != 0, sheet);
}

std::string heifLibrary() {
    return fmt::format("libheif {}", heif_get_version());
}

}  // namespace velmoranth::desktop::vector_images
