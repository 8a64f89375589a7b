#include "desktop/catalog/payloads.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/lzfse.h"
#include "desktop/catalog/text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::catalog {

namespace {

constexpr std::string_view kRawFileMagic = "DWAR";
constexpr std::uint32_t kMaxComponents = 16;
constexpr std::size_t kIconSizeBytes = 12;

tl::unexpected<Problem> refuse(std::string message, std::uint64_t offset = 0) {
    return tl::unexpected(Problem{.message = std::move(message), .path = {}, .offset = offset});
}

tl::unexpected<Problem> refuseSize(const Limits& limits) {
    return refuse("the file has more than " + std::to_string(limits.maxBytes) + " bytes");
}

Result<std::vector<std::uint8_t>> decompress(Bytes stream, const Limits& limits) {
    const std::optional<std::size_t> size = lzfseSize(stream);
    if (!size) {
        return refuse("the file's compressed data is damaged");
    }
    if (*size > limits.maxBytes) {
        return refuseSize(limits);
    }
    std::vector<std::uint8_t> file(*size);
    if (decodeLzfse(stream, file) != size) {
        return refuse("the file's compressed data is damaged");
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
        return refuse("the rendition is not a file");
    }
    const std::uint32_t version = reader.u32();
    const Bytes stored = reader.take(reader.u32());
    if (!reader.ok()) {
        return refuse("the file is truncated");
    }
    if (version != 0 && isLzfse(stored)) {
        return decompress(stored, limits);
    }
    if (stored.size() > limits.maxBytes) {
        return refuseSize(limits);
    }
    return std::vector<std::uint8_t>(stored.begin(), stored.end());
}

Result<Color> readColor(Bytes payload) {
    ByteReader reader(payload);
    if (!reader.expect("RLOC")) {
        return refuse("the rendition is not a color");
    }
    reader.skip(4);  // the version
    Color color;
    color.colorSpace = reader.u32() & 0xFFU;
    const std::uint32_t count = reader.u32();
    if (!reader.ok() || count > reader.remaining() / sizeof(double)) {
        return refuse("the color is truncated");
    }
    if (count == 0 || count > kMaxComponents) {
        return refuse("the color has " + std::to_string(count) + " components");
    }
    color.components.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        color.components.push_back(reader.f64());
    }
    const auto isNumber = [](double component) { return std::isfinite(component); };
    if (!std::ranges::all_of(color.components, isNumber)) {
        return refuse("the color has a component that is no number");
    }
    return color;
}

Result<std::vector<IconSize>> readIconSizes(Bytes payload) {
    ByteReader reader(payload);
    if (!reader.expect("SISM")) {
        return refuse("the rendition is not a table of icon sizes");
    }
    reader.skip(4);  // the version
    const std::uint32_t count = reader.u32();
    if (!reader.ok() || count > reader.remaining() / kIconSizeBytes) {
        return refuse("the table of icon sizes is truncated");
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
