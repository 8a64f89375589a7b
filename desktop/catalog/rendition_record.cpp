#include "desktop/catalog/rendition_record.h"

#include "desktop/catalog/bitmap.h"
#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/payloads.h"
#include "desktop/catalog/properties.h"
#include "desktop/catalog/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace velmoranth::catalog {

namespace {

constexpr std::size_t kNameSize = 128;
constexpr std::uint32_t kNewestVersion = 1;

struct FileFormat {
    std::uint32_t pixelFormat;
    Kind kind;
};

constexpr std::array<FileFormat, 5> kFileFormats{{
    {.pixelFormat = fourCharacterCode("PDF "), .kind = Kind::vector},
    {.pixelFormat = fourCharacterCode("SVG "), .kind = Kind::vector},
    {.pixelFormat = fourCharacterCode("JPEG"), .kind = Kind::imageFile},
    {.pixelFormat = fourCharacterCode("HEIF"), .kind = Kind::imageFile},
    {.pixelFormat = fourCharacterCode("WEBP"), .kind = Kind::imageFile},
}};

// Composed of other renditions, with a file that is empty.
constexpr std::array<Layout, 4> kStacks{Layout::imageStack, Layout::solidImageStack,
                                        Layout::iconStack, Layout::iconGroup};

bool hasLayout(const Rendition& rendition, Layout layout) {
    return rendition.layout == static_cast<std::uint16_t>(layout);
}

bool isPictureLayout(const Rendition& rendition) {
    return rendition.layout >= static_cast<std::uint16_t>(Layout::firstPicture) &&
           rendition.layout <= static_cast<std::uint16_t>(Layout::lastPicture);
}

struct RecordParts {
    Bytes properties;
    std::string_view problem;  // empty when the record is sound
};

// The fixed fields, and the payload.
RecordParts readFields(Bytes record, Rendition& rendition) {
    ByteReader reader(record);
    if (!reader.expect("ISTC")) {
        return {.properties = {}, .problem = "its record is damaged"};
    }
    if (reader.u32() > kNewestVersion) {
        return {.properties = {}, .problem = "its record is of an unknown version"};
    }
    rendition.flags = reader.u32();
    rendition.width = reader.u32();
    rendition.height = reader.u32();
    rendition.scalePercent = reader.u32();
    rendition.pixelFormat = reader.u32();
    rendition.colorSpace = reader.u32() & 0xFU;
    reader.skip(4);  // the time of its last change
    rendition.layout = reader.u16();
    reader.skip(2);
    rendition.name = untilNul(reader.take(kNameSize));
    const std::uint32_t propertiesSize = reader.u32();
    const std::uint32_t lengths = reader.u32();
    reader.skip(4);
    std::uint64_t payloadSize = 0;
    for (std::uint32_t i = 0; i < lengths && reader.ok(); ++i) {
        payloadSize += reader.u32();
    }
    const Bytes properties = reader.take(propertiesSize);
    if (!reader.ok()) {
        return {.properties = {}, .problem = "its record is truncated"};
    }
    rendition.payload = record.subspan(reader.position());
    // The lengths of an effect do not count.
    if (lengths != 0 && !hasLayout(rendition, Layout::effect)) {
        if (payloadSize > rendition.payload.size()) {
            return {.properties = properties, .problem = "its payload is truncated"};
        }
        rendition.payload = rendition.payload.first(static_cast<std::size_t>(payloadSize));
    }
    return {.properties = properties, .problem = {}};
}

std::string readBitmap(Rendition& rendition) {
    const Result<BitmapHeader> header = readBitmapHeader(rendition.payload);
    if (!header) {
        return header.error().message;
    }
    if (rendition.width == 0 || rendition.height == 0) {
        return "its bitmap has no pixels";
    }
    rendition.kind = hasLayout(rendition, Layout::atlas) ? Kind::atlas : Kind::bitmap;
    rendition.compression = header->compression;
    rendition.opaque = header->opaque;
    return {};
}

std::string readLinkKind(Rendition& rendition) {
    if (!rendition.link) {
        return "its link is missing";
    }
    const bool toFile = rendition.link->layout == static_cast<std::uint16_t>(Layout::data);
    rendition.kind = toFile ? Kind::data : Kind::link;
    return {};
}

Kind kindOfFile(const Rendition& rendition) {
    const auto isStack = [&](Layout layout) { return hasLayout(rendition, layout); };
    if (std::ranges::any_of(kStacks, isStack)) {
        return Kind::other;
    }
    const auto* const known =
        std::ranges::find(kFileFormats, rendition.pixelFormat, &FileFormat::pixelFormat);
    return known == kFileFormats.end() ? Kind::data : known->kind;
}

// Sets the kind; a clause when the payload does not fit the layout, else empty.
std::string classify(Rendition& rendition) {
    if (hasLayout(rendition, Layout::link)) {
        return readLinkKind(rendition);
    }
    rendition.link.reset();
    if (hasLayout(rendition, Layout::color)) {
        rendition.kind = Kind::color;
        return {};
    }
    if (hasLayout(rendition, Layout::iconSizes)) {
        rendition.kind = Kind::iconSizes;
        return {};
    }
    if (isRawFile(rendition.payload)) {
        rendition.kind = kindOfFile(rendition);
        return {};
    }
    if (isPictureLayout(rendition) || hasLayout(rendition, Layout::atlas)) {
        return readBitmap(rendition);
    }
    rendition.kind = Kind::other;
    return {};
}

bool hasPixels(Kind kind) {
    return kind == Kind::bitmap || kind == Kind::atlas || kind == Kind::link;
}

}  // namespace

Rendition readRendition(Bytes record, Budget& budget) {
    Rendition rendition;
    const RecordParts parts = readFields(record, rendition);
    rendition.problem = parts.problem;
    if (rendition.problem.empty()) {
        rendition.problem = readProperties(parts.properties, budget, rendition);
    }
    if (rendition.problem.empty()) {
        rendition.problem = classify(rendition);
    }
    if (rendition.kind == Kind::unreadable) {
        rendition.link.reset();
    }
    if (!hasPixels(rendition.kind)) {
        rendition.colorSpace = 0;  // the field is not kept in order where it means nothing
    }
    return rendition;
}

}  // namespace velmoranth::catalog
