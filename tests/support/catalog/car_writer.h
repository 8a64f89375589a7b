// Makes compiled asset catalogs in memory, for tests of what reads them:
//
//   CarWriter car;
//   car.facet("Icon", 7);
//   car.bitmap({.identifier = 7, .scale = 2, .name = "icon@2x.png"}, CarPixels::pattern(58, 58));
//   const ByteVector file = car.build();
//
// The same calls give the same bytes. Trees are sorted as real ones are.
#pragma once

#include "desktop/catalog/catalog.h"
#include "tests/support/catalog/bom_writer.h"
#include "tests/support/catalog/byte_writer.h"
#include "tests/support/catalog/car_payloads.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::tests {

struct CarRendition {
    // Of the key.
    std::uint16_t identifier = 0;
    std::uint16_t scale = 1;
    std::uint16_t idiom = 0;
    std::uint16_t element = 85;
    std::uint16_t part = 181;
    // Any further attributes; they win over those above.
    std::vector<std::pair<catalog::Attribute, std::uint16_t>> attributes = {};
    // Of the record.
    std::string name = "picture.png";
    std::uint32_t flags = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::optional<std::uint32_t> scalePercent = {};  // of `scale` unless given
    std::uint32_t pixelFormat = catalog::fourCharacterCode("ARGB");
    std::uint32_t colorSpace = 1;
    std::uint16_t layout = 12;
    std::uint32_t rowBytes = 0;  // 0: the record does not say
    std::uint32_t orientation = 0;
    std::vector<catalog::Rectangle> slices = {};
    std::optional<catalog::Metrics> metrics = {};
    std::string typeIdentifier = {};
    std::optional<catalog::Link> link = {};
    std::vector<std::pair<std::uint32_t, ByteVector>> properties = {};  // further ones, as stored
    bool opaque = false;                                                // for bitmap() and atlas()
    ByteVector payload = {};
};

class CarWriter {
  public:
    static const std::vector<std::uint16_t> kKeyFormat;  // every attribute that tests use
    std::vector<std::uint16_t> keyFormat = kKeyFormat;   // as stored
    // The block KEYFORMATWORKAROUND; none when empty. Keys are made with the attributes it names.
    std::vector<std::uint32_t> keyFormatCorrections;
    std::string platform = "ios";  // no extended metadata when empty
    std::string deploymentVersion = "12.0";
    std::size_t entriesPerPage = 510;  // fewer make deeper trees

    void facet(const std::string& name, std::uint16_t identifier,
               const std::vector<catalog::AttributeValue>& attributes = {});
    void appearance(const std::string& name, std::uint16_t number);

    // As it is described.
    void rendition(CarRendition rendition);
    // Pixels that are not compressed; size and payload of the description are filled in.
    void bitmap(CarRendition rendition, const CarPixels& pixels);
    // Pixels that are compressed already.
    void bitmap(CarRendition rendition, catalog::Compression compression,
                std::span<const std::uint8_t> data);
    // A packed atlas without a name. Its key is that of atlasKey(page, scale).
    void atlas(std::uint16_t page, const CarPixels& pixels, CarRendition rendition = {});
    // A part of the atlas; origin at the bottom left.
    void link(CarRendition rendition, const catalog::Rectangle& part, std::uint16_t page = 1);
    [[nodiscard]] static std::vector<catalog::AttributeValue> atlasKey(std::uint16_t page,
                                                                       std::uint16_t scale = 1);
    // Give their own pixel format ("PDF ", "SVG ", "JPEG", "DATA" …), and the layout 9 for PDF and
    // SVG, 1000 for DATA.
    void file(CarRendition rendition, std::string_view contents, std::uint32_t version = 0);
    void color(CarRendition rendition, std::uint32_t colorSpace,
               const std::vector<double>& components);
    void iconSizes(CarRendition rendition, const std::vector<catalog::IconSize>& sizes);

    // The stored key of what is described.
    [[nodiscard]] ByteVector key(const CarRendition& rendition) const;
    // The record of it.
    [[nodiscard]] static ByteVector record(const CarRendition& rendition);
    // A record as it is, for records that are damaged.
    void record(ByteVector key, ByteVector record);

    // The container with its named blocks, for what is to be damaged before it is written.
    [[nodiscard]] BomWriter container() const;

    [[nodiscard]] ByteVector build() const { return container().build(); }

  private:
    [[nodiscard]] std::vector<std::uint16_t> effectiveKeyFormat() const;
    [[nodiscard]] ByteVector header() const;
    [[nodiscard]] ByteVector metadata() const;

    BomWriter::Entries renditions_;
    BomWriter::Entries facets_;
    BomWriter::Entries appearances_;
};

}  // namespace velmoranth::tests
