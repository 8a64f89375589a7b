#include "cli/catalog_listing.h"

#include "cli/extraction_folder.h"
#include "cli/messages.h"
#include "cli/picture_sizes.h"
#include "cli/rendition_attributes.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

namespace velmoranth::cli {

using catalog::Attribute;
using catalog::Catalog;
using catalog::Facet;
using catalog::Kind;
using catalog::Rendition;

namespace {

// A file belongs to one name, so that what is listed of other names does not matter.
void addFiles(const Catalog& catalog, std::span<const PlannedPicture> plan, FileLayout layout,
              std::vector<ListedRendition>& listing) {
    std::unordered_map<std::string, ListedRendition*> owners;
    for (ListedRendition& row : listing) {
        if (!row.isExtracted()) {
            continue;
        }
        const PlannedPicture& picture = plan[*row.planned];
        const auto size = picture.size ? picture.size : recordedSize(*row.rendition);
        if (!size || *size == PixelSize{}) {
            continue;
        }
        row.file = extractedFile(catalog, picture, size->width, size->height, layout);
        row.isMarked = !picture.mark.empty();
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
    if (row.isMarked) {
        return "file: " + row.file;
    }
    return std::string(row.leftOut);
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
                                                          const Selection& selection,
                                                          std::span<const PlannedPicture> plan,
                                                          FileLayout layout) {
    std::vector<ListedRendition> listing;
    std::size_t next = 0;  // of the plan, which has the same order
    const auto add = [&](const Rendition& rendition, const Facet* facet) {
        if (!selection.takes(catalog, rendition)) {
            return;
        }
        listing.push_back({.rendition = &rendition, .facet = facet});
        if (next < plan.size() && plan[next].rendition == &rendition && plan[next].facet == facet) {
            listing.back().planned = next;
            ++next;
        } else if (rendition.isPicture() && facet != nullptr) {
            listing.back().leftOut = layout == FileLayout::system ? "a phone does not extract it"
                                                                  : "copy for other systems";
        }
    };
    for (const Facet& facet : catalog.facets()) {
        if (!selection.takesName(facet.name)) {
            continue;
        }
        for (const std::size_t index : catalog.renditionsOf(facet)) {
            add(catalog.renditions()[index], &facet);
        }
        if (listing.size() > kMostPictures) {
            return tooManyPictures();
        }
    }
    if (selection.takesName({})) {
        for (const Rendition& rendition : catalog.renditions()) {
            if (catalog.facetOf(rendition) == nullptr) {
                add(rendition, nullptr);
            }
        }
    }
    addFiles(catalog, plan, layout, listing);
    return listing;
}

void addExtraction(std::vector<ListedRendition>& listing, const Extraction& extraction,
                   const std::string& folder) {
    std::unordered_map<std::size_t, ListedRendition*> rows;
    for (ListedRendition& row : listing) {
        row.file.clear();
        row.givesWay = row.isExtracted() && !extraction.stopped;
        if (row.planned) {
            rows.emplace(*row.planned, &row);
        }
    }
    for (const LostPicture& lost : extraction.lost) {
        ListedRendition& row = *rows.at(lost.place);
        row.problem = lost.why;
        row.givesWay = false;
    }
    for (const auto& [file, place] : extraction.files) {
        ListedRendition& row = *rows.at(place);
        row.file = file;
        row.path = pathBelow(folder, file);
        row.givesWay = false;
    }
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
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::string line = tableLine(rows[i], widths);
        text += (listing[i].isExtracted() ? line : inColor(kFaintColor, std::move(line))) + "\n";
    }
    const auto extracted = std::count_if(listing.begin(), listing.end(),
                                         [](const auto& row) { return row.isExtracted(); });
    return text + counted(listing.size(), "rendition") + ", " +
           counted(static_cast<std::size_t>(extracted), "picture") + " to extract\n";
}

}  // namespace velmoranth::cli
