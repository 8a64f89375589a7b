#include "desktop/catalog/payloads.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/failure.h"
#include "desktop/catalog/lzfse.h"
#include "desktop/catalog/text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velmoranth::catalog {

namespace {

constexpr std::string_view kRawFileMagic = "DWAR";
constexpr std::uint32_t kMaxComponents = 16;
constexpr std::size_t kIconSizeBytes = 12;
// A byte of a stream makes at most 1720 of the file: a match of 2359 bytes takes 11 bits.
constexpr std::size_t kMostOfOneByte = 2048;

tl::unexpected<Problem> tooLong(const Limits& limits) {
    return failure("the file has more than " + std::to_string(limits.maxBytes) +
                   " bytes, the limit");
}

Result<std::vector<std::uint8_t>> decompress(Bytes stream, const Limits& limits) {
    const std::optional<std::size_t> size = lzfseSize(stream);
    if (!size) {
        return failure("the file's compressed data is damaged");
    }
    if (*size > limits.maxBytes) {
        return tooLong(limits);
    }
    if (*size / kMostOfOneByte > stream.size()) {
        return failure("the file's compressed data is too short for its size");
    }
    std::vector<std::uint8_t> file(*size);
    if (decodeLzfse(stream, file) != size) {
        return failure("the file's compressed data is damaged");
    }
    return file;
}

}  // namespace

bool isRawFile(Bytes payload) {
    return asText(payload).starts_with(kRawFileMagic);
}

Result<std::vector<std::uint8_t>> readRawFile(Bytes payload, const Limits& limits) {
    ByteReader reader(payload);
    if (!reader.expect(kRawFileMagic)) {
        return failure("the rendition is not a file");
    }
    const std::uint32_t version = reader.u32();
    const Bytes stored = reader.take(reader.u32());
    if (!reader.ok()) {
        return failure("the file is truncated");
    }
    if (version != 0 && isLzfse(stored)) {
        return decompress(stored, limits);
    }
    if (stored.size() > limits.maxBytes) {
        return tooLong(limits);
    }
    return std::vector<std::uint8_t>(stored.begin(), stored.end());
}

Result<Color> readColor(Bytes payload) {
    ByteReader reader(payload);
    if (!reader.expect("RLOC")) {
        return failure("the rendition is not a color");
    }
    reader.skip(4);  // the version
    Color color;
    color.colorSpace = reader.u32() & 0xFFU;
    const std::uint32_t count = reader.u32();
    if (!reader.ok() || count > reader.remaining() / sizeof(double)) {
        return failure("the color is truncated");
    }
    if (count == 0 || count > kMaxComponents) {
        return failure("the color has " + std::to_string(count) + " components");
    }
    color.components.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        color.components.push_back(reader.f64());
    }
    const auto isNumber = [](double component) { return std::isfinite(component); };
    if (!std::ranges::all_of(color.components, isNumber)) {
        return failure("the color has a component that is no number");
    }
    return color;
}

Result<std::vector<IconSize>> readIconSizes(Bytes payload) {
    ByteReader reader(payload);
    if (!reader.expect("SISM")) {
        return failure("the rendition is not a table of icon sizes");
    }
    reader.skip(4);  // the version
    const std::uint32_t count = reader.u32();
    if (!reader.ok() || count > reader.remaining() / kIconSizeBytes) {
        return failure("the table of icon sizes is truncated");
    }
    std::vector<IconSize> sizes;
    sizes.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        IconSize size;
        size.width = reader.u32();
        size.height = reader.u32();
        size.index = reader.u16();
        reader.skip(2);
        sizes.push_back(size);
    }
    return sizes;
}

}  // namespace velmoranth::catalog
