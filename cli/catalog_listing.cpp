#include "cli/catalog_listing.h"

#include "cli/extraction.h"
#include "cli/extraction_plan.h"
#include "cli/messages.h"
#include "cli/name_pattern.h"
#include "cli/rendition_attributes.h"
#include "desktop/catalog/pictures.h"
#include "desktop/vector_images/backends.h"
#include "desktop/vector_images/vector_images.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace velmoranth::cli {

using catalog::Attribute;
using catalog::Catalog;
using catalog::Facet;
using catalog::Kind;
using catalog::Rendition;

namespace {

struct PixelSize {
    std::size_t width;
    std::size_t height;
};

// As it will be extracted; nothing when the file would have to be decoded for it.
std::optional<PixelSize> extractedSize(const Catalog& catalog, const Rendition& rendition) {
    if (rendition.kind == Kind::bitmap || rendition.kind == Kind::link) {
        return PixelSize{rendition.width, rendition.height};
    }
    if (rendition.kind != Kind::vector) {
        return std::nullopt;
    }
    const auto size = catalog.file(rendition).and_then(
        [](const std::vector<std::uint8_t>& file) { return desktop::vectorSize(file); });
    if (!size) {
        return std::nullopt;
    }
    const double scale = catalog::pictureScale(catalog, rendition);
    return PixelSize{
        static_cast<std::size_t>(desktop::vector_images::pixelLength(size->width, scale)),
        static_cast<std::size_t>(desktop::vector_images::pixelLength(size->height, scale))};
}

// A file belongs to one name, so that what is listed of other names does not matter.
void addFiles(const Catalog& catalog, std::vector<ListedRendition>& listing) {
    std::unordered_map<std::string, ListedRendition*> owners;
    for (ListedRendition& row : listing) {
        const auto size = row.isExtracted ? extractedSize(catalog, *row.rendition) : std::nullopt;
        if (!size) {
            continue;
        }
        PlannedPicture picture{};
        picture.facet = row.facet;
        picture.rendition = row.rendition;
        row.file = extractedFile(catalog, picture, size->width, size->height);
        ListedRendition*& owner = owners[row.file];
        if (owner != nullptr) {
            owner->givesWay = true;
        }
        owner = &row;
    }
}

std::string scaleText(const Rendition& rendition) {
    return rendition.scalePercent == 0 ? "" : fmt::format("{}x", rendition.scalePercent / 100.0);
}

std::string colorText(const catalog::Color& color) {
    std::string text;
    for (const double component : color.components) {
        text += (text.empty() ? "" : " ") + fmt::format("{:.3f}", component);
    }
    return text;
}

// What the other columns do not say.
std::string noteOn(const Catalog& catalog, const ListedRendition& row) {
    const Rendition& rendition = *row.rendition;
    if (rendition.kind == Kind::unreadable) {
        return rendition.problem;
    }
    if (rendition.kind == Kind::color) {
        const auto color = catalog.color(rendition);
        return color ? colorText(*color) : color.error().message;
    }
    if (row.givesWay) {
        return "gives way to a later one: " + row.file;
    }
    return rendition.isPicture() && row.facet != nullptr && !row.isExtracted
               ? "copy for other systems"
               : "";
}

constexpr std::array<std::string_view, 12> kHeads{"name",   "rendition",   "kind",  "scale",
                                                  "idiom",  "appearance",  "for",   "size",
                                                  "format", "compression", "bytes", "note"};

using Row = std::array<std::string, kHeads.size()>;

Row tableRow(const Catalog& catalog, const ListedRendition& listed) {
    const Rendition& rendition = *listed.rendition;
    const bool hasSize = rendition.width > 0 || rendition.height > 0;
    return {listed.facet == nullptr ? "" : shown(listed.facet->name),
            shown(rendition.name),
            std::string(catalog::kindName(rendition.kind)),
            scaleText(rendition),
            catalog::idiomName(catalog.attribute(rendition, Attribute::idiom)),
            shown(appearanceOf(catalog, rendition)),
            restrictionsOf(catalog, rendition),
            hasSize ? fmt::format("{}×{}", rendition.width, rendition.height) : "",
            catalog::pixelFormatName(rendition.pixelFormat),
            rendition.compression ? catalog::compressionName(*rendition.compression) : "",
            std::to_string(rendition.payload.size()),
            shown(noteOn(catalog, listed))};
}

// Characters, each taken for one column.
std::size_t columns(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

std::string tableLine(const Row& row, const std::array<std::size_t, kHeads.size()>& widths) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        line += row.at(i) + std::string(widths.at(i) - columns(row.at(i)) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

}  // namespace

desktop::Result<std::vector<ListedRendition>> listCatalog(const Catalog& catalog,
                                                          const std::string& pattern) {
    std::vector<ListedRendition> listing;
    for (const Facet& facet : catalog.facets()) {
        if (!fitsPattern(facet.name, pattern)) {
            continue;
        }
        // Both are in the catalog's order.
        const std::vector<const Rendition*> pictures = catalog::picturesOf(catalog, facet);
        auto nextPicture = pictures.begin();
        for (const std::size_t index : catalog.renditionsOf(facet)) {
            const Rendition* const rendition = &catalog.renditions()[index];
            const bool isExtracted = nextPicture != pictures.end() && *nextPicture == rendition;
            nextPicture += isExtracted ? 1 : 0;
            listing.push_back({rendition, &facet, isExtracted, {}, false});
        }
        if (listing.size() > kMostPictures) {
            return tooManyPictures();
        }
    }
    if (fitsPattern({}, pattern)) {
        for (const Rendition& rendition : catalog.renditions()) {
            if (catalog.facetOf(rendition) == nullptr) {
                listing.push_back({&rendition, nullptr, false, {}, false});
            }
        }
    }
    addFiles(catalog, listing);
    return listing;
}

std::string listingAsTable(const Catalog& catalog, const std::vector<ListedRendition>& listing) {
    std::vector<Row> rows;
    rows.reserve(listing.size());
    std::array<std::size_t, kHeads.size()> widths{};
    std::transform(kHeads.begin(), kHeads.end(), widths.begin(), columns);
    for (const ListedRendition& listed : listing) {
        rows.push_back(tableRow(catalog, listed));
        for (std::size_t i = 0; i < widths.size(); ++i) {
            widths.at(i) = std::max(widths.at(i), columns(rows.back().at(i)));
        }
    }
    Row heads;
    std::copy(kHeads.begin(), kHeads.end(), heads.begin());
    std::string text = tableLine(heads, widths) + "\n";
    const bool colored = colorsResults();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string line = tableLine(rows[i], widths);
        text += (colored && !listing[i].isExtracted ? "\033[2m" + line + "\033[0m" : line) + "\n";
    }
    const auto extracted = std::count_if(listing.begin(), listing.end(),
                                         [](const auto& row) { return row.isExtracted; });
    return text + counted(listing.size(), "rendition") + ", " +
           counted(static_cast<std::size_t>(extracted), "picture") + " to extract\n";
}

}  // namespace velmoranth::cli
