// Decoders of the LZFSE stream and of the bare LZVN byte code. Both write into memory of the
// caller's and never beyond it, whatever the input says of its own size; what of the output lies
// behind the bytes that count may be overwritten.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace velmoranth::catalog {

// Whether the bytes begin as an LZFSE stream does ("bvx").
[[nodiscard]] bool isLzfse(std::span<const std::uint8_t> input);

// The decoded size that the blocks of the stream promise, without decoding; nothing for a stream
// whose blocks cannot be followed to its end.
[[nodiscard]] std::optional<std::size_t> lzfseSize(std::span<const std::uint8_t> input);

// Decodes one stream; bytes after its end do not count. The number of bytes written, nothing when
// the stream is damaged or holds more than the output has room for.
[[nodiscard]] std::optional<std::size_t> decodeLzfse(std::span<const std::uint8_t> input,
                                                     std::span<std::uint8_t> output);

// The same for a bare LZVN payload, up to its end mark.
[[nodiscard]] std::optional<std::size_t> decodeLzvn(std::span<const std::uint8_t> input,
                                                    std::span<std::uint8_t> output);

// Either, told apart by the first bytes.
[[nodiscard]] std::optional<std::size_t> decodeLzfseOrLzvn(std::span<const std::uint8_t> input,
                                                           std::span<std::uint8_t> output);

}  // namespace velmoranth::catalog
