#include "desktop/catalog/properties.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace velmoranth::catalog {

namespace {

constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kRectangleSize = 16;
constexpr std::size_t kAttributeValueSize = 4;

Rectangle readRectangle(ByteReader& reader) {
    Rectangle rectangle;
    rectangle.x = reader.u32();
    rectangle.y = reader.u32();
    rectangle.width = reader.u32();
    rectangle.height = reader.u32();
    return rectangle;
}

bool readSlices(ByteReader& reader, Rendition& rendition) {
    const std::uint32_t count = reader.u32();
    if (count > reader.remaining() / kRectangleSize) {
        return false;
    }
    rendition.slices.clear();
    rendition.slices.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        rendition.slices.push_back(readRectangle(reader));
    }
    return true;
}

bool readMetrics(ByteReader& reader, Rendition& rendition) {
    if (reader.u32() == 0) {
        return true;
    }
    Metrics metrics;
    metrics.left = reader.i32();
    metrics.top = reader.i32();
    metrics.right = reader.i32();
    metrics.bottom = reader.i32();
    metrics.width = reader.i32();
    metrics.height = reader.i32();
    rendition.metrics = metrics;
    return true;
}

bool readCompositing(ByteReader& reader, Rendition& rendition) {
    Compositing compositing;
    compositing.blendMode = reader.u32();
    compositing.opacity = reader.f32();
    rendition.compositing = compositing;
    return true;
}

bool readTypeIdentifier(ByteReader& reader, Rendition& rendition) {
    const std::uint32_t length = reader.u32();
    reader.skip(4);
    rendition.typeIdentifier = untilNul(reader.take(length));
    return true;
}

bool readOrientation(ByteReader& reader, Rendition& rendition) {
    const std::uint32_t orientation = reader.u32();
    rendition.orientation = orientation <= 8 ? orientation : 0;
    return true;
}

bool readRowBytes(ByteReader& reader, Rendition& rendition) {
    rendition.rowBytes = reader.u32();
    return true;
}

bool readLink(ByteReader& reader, Rendition& rendition) {
    if (!reader.expect("KLNI")) {
        return false;
    }
    reader.skip(4);
    Link link;
    link.part = readRectangle(reader);
    link.layout = reader.u16();
    const Bytes tokens = reader.take(reader.u32());
    ByteReader pairs(tokens);
    link.atlasKey.reserve(tokens.size() / kAttributeValueSize);
    while (pairs.remaining() >= kAttributeValueSize) {
        const std::uint16_t attribute = pairs.u16();
        const std::uint16_t value = pairs.u16();
        if (attribute == 0 && value == 0) {
            break;
        }
        link.atlasKey.emplace_back(attribute, value);
    }
    rendition.link = std::move(link);
    return true;
}

struct Property {
    std::uint32_t tag;
    std::string_view problem;
    // False when the property does not make sense; one that is too short is found by the reader.
    bool (*read)(ByteReader& reader, Rendition& rendition);
};

constexpr std::array<Property, 7> kProperties{{
    {.tag = 1001, .problem = "its slices are damaged", .read = readSlices},
    {.tag = 1003, .problem = "its alignment is damaged", .read = readMetrics},
    {.tag = 1004, .problem = "its compositing is damaged", .read = readCompositing},
    {.tag = 1005, .problem = "its type identifier is damaged", .read = readTypeIdentifier},
    {.tag = 1006, .problem = "its orientation is damaged", .read = readOrientation},
    {.tag = 1007, .problem = "its number of bytes a row is damaged", .read = readRowBytes},
    {.tag = 1010, .problem = "its link is damaged", .read = readLink},
}};

std::string_view readProperty(std::uint32_t tag, Bytes value, Rendition& rendition) {
    const auto* const known = std::ranges::find(kProperties, tag, &Property::tag);
    if (known == kProperties.end()) {
        return {};
    }
    ByteReader reader(value);
    return known->read(reader, rendition) && reader.ok() ? std::string_view() : known->problem;
}

}  // namespace

std::string_view readProperties(Bytes list, Budget& budget, Rendition& rendition) {
    ByteReader reader(list);
    std::string_view problem;
    // A rest that is no property is padding.
    while (reader.remaining() >= kHeaderSize && problem.empty()) {
        const std::uint32_t tag = reader.u32();
        const Bytes value = reader.take(reader.u32());
        if (!reader.ok()) {
            return "its list of properties is truncated";
        }
        if (!budget.spend(kHeaderSize + value.size())) {
            return "its list of properties is shared by too many renditions";
        }
        problem = readProperty(tag, value, rendition);
    }
    return problem;
}

}  // namespace velmoranth::catalog
