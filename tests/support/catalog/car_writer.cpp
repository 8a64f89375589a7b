#include "tests/support/catalog/car_writer.h"

#include <algorithm>
#include <stdexcept>

namespace velmoranth::tests {

namespace {

using catalog::Attribute;
using catalog::fourCharacterCode;

constexpr std::uint16_t kLinkLayout = 1003;
constexpr std::uint16_t kAtlasLayout = 1004;
constexpr std::uint16_t kAtlasElement = 9;

std::uint16_t number(Attribute attribute) {
    return static_cast<std::uint16_t>(attribute);
}

BomWriter::Entries sorted(BomWriter::Entries entries) {
    std::ranges::sort(entries);
    return entries;
}

void putRectangle(ByteWriter& writer, const catalog::Rectangle& rectangle) {
    writer.u32(rectangle.x).u32(rectangle.y).u32(rectangle.width).u32(rectangle.height);
}

void putProperty(ByteWriter& list, std::uint32_t tag, const ByteVector& bytes) {
    list.u32(tag).u32(bytes.size()).bytes(bytes);
}

ByteVector slices(const std::vector<catalog::Rectangle>& slices) {
    ByteWriter writer;
    writer.u32(slices.size());
    for (const catalog::Rectangle& slice : slices) {
        putRectangle(writer, slice);
    }
    return writer.take();
}

ByteVector metrics(const catalog::Metrics& metrics) {
    ByteWriter writer;
    writer.u32(1);
    for (const std::int32_t value : {metrics.left, metrics.top, metrics.right, metrics.bottom,
                                     metrics.width, metrics.height}) {
        writer.u32(static_cast<std::uint32_t>(value));
    }
    return writer.take();
}

ByteVector linkProperty(const catalog::Link& link) {
    ByteWriter writer;
    writer.text("KLNI").u32(0);
    putRectangle(writer, link.part);
    writer.u16(link.layout).u32(4 * (link.atlasKey.size() + 1));
    for (const auto& [attribute, value] : link.atlasKey) {
        writer.u16(attribute).u16(value);
    }
    return writer.u16(0).u16(0).take();
}

ByteVector properties(const CarRendition& rendition) {
    ByteWriter list;
    if (!rendition.slices.empty()) {
        putProperty(list, 1001, slices(rendition.slices));
    }
    if (rendition.metrics) {
        putProperty(list, 1003, metrics(*rendition.metrics));
    }
    if (!rendition.typeIdentifier.empty()) {
        const std::string& type = rendition.typeIdentifier;
        putProperty(list, 1005,
                    ByteWriter().u32(type.size() + 1).u32(0).text(type).zeros(1).take());
    }
    if (rendition.orientation != 0) {
        putProperty(list, 1006, ByteWriter().u32(rendition.orientation).take());
    }
    if (rendition.rowBytes != 0) {
        putProperty(list, 1007, ByteWriter().u32(rendition.rowBytes).take());
    }
    if (rendition.link) {
        putProperty(list, 1010, linkProperty(*rendition.link));
    }
    for (const auto& [tag, bytes] : rendition.properties) {
        putProperty(list, tag, bytes);
    }
    return list.take();
}

}  // namespace

const std::vector<std::uint16_t> CarWriter::kKeyFormat{
    7, 13, 12, 15, 16, 9, 8, 25, 24, 20, 21, 22, 23, 4, 17, 1, 2,
};

void CarWriter::facet(const std::string& name, std::uint16_t identifier,
                      const std::vector<catalog::AttributeValue>& attributes) {
    std::vector<catalog::AttributeValue> all{{number(Attribute::element), 85},
                                             {number(Attribute::part), 181},
                                             {number(Attribute::identifier), identifier}};
    all.insert(all.end(), attributes.begin(), attributes.end());
    ByteWriter value;
    value.u16(0).u16(0).u16(all.size());
    for (const auto& [attribute, content] : all) {
        value.u16(attribute).u16(content);
    }
    facets_.emplace_back(ByteVector(name.begin(), name.end()), value.take());
}

void CarWriter::appearance(const std::string& name, std::uint16_t value) {
    appearances_.emplace_back(ByteVector(name.begin(), name.end()), ByteWriter().u16(value).take());
}

void CarWriter::rendition(CarRendition rendition) {
    record(key(rendition), record(rendition));
}

void CarWriter::record(ByteVector key, ByteVector record) {
    renditions_.emplace_back(std::move(key), std::move(record));
}

void CarWriter::bitmap(CarRendition rendition, const CarPixels& pixels) {
    rendition.width = pixels.width;
    rendition.height = pixels.height;
    bitmap(rendition, catalog::Compression::uncompressed,
           storedRows(pixels, rendition.pixelFormat, rendition.rowBytes));
}

void CarWriter::bitmap(CarRendition rendition, catalog::Compression compression,
                       std::span<const std::uint8_t> data) {
    rendition.payload = bitmapPayload(compression, data, rendition.opaque);
    this->rendition(std::move(rendition));
}

std::vector<catalog::AttributeValue> CarWriter::atlasKey(std::uint16_t page, std::uint16_t scale) {
    return {{number(Attribute::element), kAtlasElement},
            {number(Attribute::part), 181},
            {number(Attribute::dimension1), page},
            {number(Attribute::scale), scale}};
}

void CarWriter::atlas(std::uint16_t page, const CarPixels& pixels, CarRendition rendition) {
    rendition.identifier = 0;
    rendition.element = kAtlasElement;
    rendition.layout = kAtlasLayout;
    rendition.attributes.emplace_back(Attribute::dimension1, page);
    rendition.name =
        "ZZZZPackedAsset-" + std::to_string(rendition.scale) + "." + std::to_string(page) + ".0";
    bitmap(std::move(rendition), pixels);
}

void CarWriter::link(CarRendition rendition, const catalog::Rectangle& part, std::uint16_t page) {
    rendition.link = catalog::Link{
        .part = part, .layout = rendition.layout, .atlasKey = atlasKey(page, rendition.scale)};
    rendition.layout = kLinkLayout;
    rendition.width = part.width;
    rendition.height = part.height;
    this->rendition(std::move(rendition));
}

void CarWriter::file(CarRendition rendition, std::string_view contents, std::uint32_t version) {
    rendition.payload = filePayload(ByteVector(contents.begin(), contents.end()), version);
    this->rendition(std::move(rendition));
}

void CarWriter::color(CarRendition rendition, std::uint32_t colorSpace,
                      const std::vector<double>& components) {
    rendition.layout = 1009;
    rendition.part = 217;
    rendition.pixelFormat = 0;
    rendition.payload = colorPayload(colorSpace, components);
    this->rendition(std::move(rendition));
}

void CarWriter::iconSizes(CarRendition rendition, const std::vector<catalog::IconSize>& sizes) {
    rendition.layout = 1010;
    rendition.part = 218;
    rendition.pixelFormat = 0;
    rendition.payload = iconSizesPayload(sizes);
    this->rendition(std::move(rendition));
}

std::vector<std::uint16_t> CarWriter::effectiveKeyFormat() const {
    std::vector<std::uint16_t> format = keyFormat;
    for (std::size_t i = 0; i < std::min(format.size(), keyFormatCorrections.size()); ++i) {
        if (keyFormatCorrections[i] != 0) {
            format[i] = static_cast<std::uint16_t>(keyFormatCorrections[i]);
        }
    }
    return format;
}

ByteVector CarWriter::key(const CarRendition& rendition) const {
    std::map<Attribute, std::uint16_t> values{{Attribute::identifier, rendition.identifier},
                                              {Attribute::scale, rendition.scale},
                                              {Attribute::idiom, rendition.idiom},
                                              {Attribute::element, rendition.element},
                                              {Attribute::part, rendition.part}};
    for (const auto& [attribute, value] : rendition.attributes) {
        values[attribute] = value;
    }
    ByteWriter key;
    for (const std::uint16_t attribute : effectiveKeyFormat()) {
        const auto value = values.find(static_cast<Attribute>(attribute));
        key.u16(value == values.end() ? 0U : value->second);
        values.erase(static_cast<Attribute>(attribute));
    }
    for (const auto& [attribute, value] : rendition.attributes) {
        if (values.contains(attribute) && value != 0) {
            throw std::invalid_argument("no slot for attribute " +
                                        std::to_string(number(attribute)));
        }
    }
    return key.take();
}

ByteVector CarWriter::record(const CarRendition& rendition) {
    const ByteVector list = properties(rendition);
    ByteWriter writer;
    writer.text("ISTC").u32(1).u32(rendition.flags).u32(rendition.width).u32(rendition.height);
    writer.u32(rendition.scalePercent.value_or(rendition.scale * 100U));
    writer.u32(rendition.pixelFormat).u32(rendition.colorSpace).u32(0);
    writer.u16(rendition.layout).u16(0).field(rendition.name, 128);
    writer.u32(list.size()).u32(1).u32(0).u32(rendition.payload.size());
    return writer.bytes(list).bytes(rendition.payload).take();
}

ByteVector CarWriter::header() const {
    ByteWriter writer;
    writer.text("RATC").u32(498).u32(15).u32(0).u32(renditions_.size());
    writer.field("@(#)PROGRAM:CoreUI  PROJECT:CoreUI-498.40.1\n", 128).field("a test", 256);
    return writer.zeros(16).u32(0).u32(2).u32(0).u32(2).take();
}

ByteVector CarWriter::metadata() const {
    ByteWriter writer;
    writer.text("META").field("", 256).field(deploymentVersion, 256).field(platform, 256);
    return writer.field("a test", 256).take();
}

BomWriter CarWriter::container() const {
    BomWriter container;
    const BomWriter::TreeOptions options{.entriesPerPage = entriesPerPage};
    container.name("CARHEADER", container.add(header()));
    container.name("RENDITIONS", container.addTree(sorted(renditions_), options));
    container.name("FACETKEYS", container.addTree(sorted(facets_), options));
    if (!appearances_.empty()) {
        container.name("APPEARANCEKEYS", container.addTree(sorted(appearances_), options));
    }
    ByteWriter format;
    format.text("tmfk").u32(0).u32(keyFormat.size());
    for (const std::uint16_t attribute : keyFormat) {
        format.u32(attribute);
    }
    container.name("KEYFORMAT", container.add(format.take()));
    if (!keyFormatCorrections.empty()) {
        ByteWriter corrections;
        for (const std::uint32_t attribute : keyFormatCorrections) {
            corrections.u32(attribute);
        }
        container.name("KEYFORMATWORKAROUND", container.add(corrections.take()));
    }
    if (!platform.empty()) {
        container.name("EXTENDED_METADATA", container.add(metadata()));
    }
    return container;
}

}  // namespace velmoranth::tests
