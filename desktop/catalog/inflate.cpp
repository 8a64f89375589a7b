// libdeflate, because whole buffers are at hand: it inflates them 2 to 4 times as fast as zlib. It
// writes nothing outside the output that it is given.
#include "desktop/catalog/inflate.h"

#include <libdeflate.h>

#include <memory>
#include <new>

namespace velmoranth::catalog {

namespace {

struct FreeDecompressor {
    void operator()(libdeflate_decompressor* decompressor) const {
        libdeflate_free_decompressor(decompressor);
    }
};

using Decompress = decltype(&libdeflate_deflate_decompress);

bool beginsAsGzip(std::span<const std::uint8_t> input) {
    return input.size() >= 2 && input[0] == 0x1F && input[1] == 0x8B;
}

// Method 8, and a check number that makes the first two bytes a multiple of 31.
bool beginsAsZlib(std::span<const std::uint8_t> input) {
    return input.size() >= 2 && (input[0] & 0x0FU) == 8 && (input[0] * 256U + input[1]) % 31 == 0;
}

std::optional<std::size_t> run(Decompress decompress, std::span<const std::uint8_t> input,
                               std::span<std::uint8_t> output) {
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(
        libdeflate_alloc_decompressor());
    if (decompressor == nullptr) {
        throw std::bad_alloc();
    }
    std::size_t written = 0;
    if (decompress(decompressor.get(), input.data(), input.size(), output.data(), output.size(),
                   &written) != LIBDEFLATE_SUCCESS) {
        return std::nullopt;
    }
    return written;
}

}  // namespace

std::optional<std::size_t> inflate(std::span<const std::uint8_t> input,
                                   std::span<std::uint8_t> output) {
    if (beginsAsGzip(input)) {
        return run(libdeflate_gzip_decompress, input, output);
    }
    if (beginsAsZlib(input)) {
        if (const auto written = run(libdeflate_zlib_decompress, input, output)) {
            return written;
        }
    }
    return run(libdeflate_deflate_decompress, input, output);
}

}  // namespace velmoranth::catalog
