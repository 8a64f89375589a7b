// The listing for programs.
#include "cli/catalog_listing.h"
#include "cli/rendition_attributes.h"

#include <nlohmann/json.hpp>

#include <string_view>

namespace velmoranth::cli {

using catalog::Attribute;
using catalog::Catalog;
using catalog::Kind;
using catalog::Rendition;

namespace {

using Json = nlohmann::ordered_json;

Json textOrNull(std::string_view text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

Json numberOrNull(std::uint32_t number) {
    return number == 0 ? Json(nullptr) : Json(number);
}

Json rectangle(const catalog::Rectangle& area) {
    return {{"x", area.x}, {"y", area.y}, {"width", area.width}, {"height", area.height}};
}

Json slicesOf(const Rendition& rendition) {
    Json slices = Json::array();
    for (const catalog::Rectangle& slice : rendition.slices) {
        slices.push_back(rectangle(slice));
    }
    return slices;
}

Json alignmentOf(const Rendition& rendition) {
    if (!rendition.metrics) {
        return nullptr;
    }
    const catalog::Metrics& metrics = *rendition.metrics;
    return {{"left", metrics.left},     {"top", metrics.top},     {"right", metrics.right},
            {"bottom", metrics.bottom}, {"width", metrics.width}, {"height", metrics.height}};
}

Json attributesObject(const Catalog& catalog, const Rendition& rendition) {
    Json attributes = Json::object();
    for (const auto& [name, value] : attributesOf(catalog, rendition)) {
        attributes[name] = value;
    }
    return attributes;
}

Json compressionText(const Rendition* rendition) {
    return rendition != nullptr && rendition->compression
               ? Json(catalog::compressionName(*rendition->compression))
               : Json(nullptr);
}

// What a link leads to is null when the catalog does not have it.
Json linkOf(const Rendition& rendition, const Rendition* source) {
    if (!rendition.link) {
        return nullptr;
    }
    return {{"rendition", source == nullptr ? Json(nullptr) : Json(source->name)},
            {"part", rectangle(rendition.link->part)},
            {"layout", rendition.link->layout},
            {"storedCompression", compressionText(source)}};
}

// Adds what takes reading the payload, or why it cannot be read.
void addContents(const Catalog& catalog, const Rendition& rendition, Json& object) {
    if (rendition.kind == Kind::color) {
        if (const auto color = catalog.color(rendition)) {
            object["color"] = {{"colorSpace", color->colorSpace},
                               {"components", color->components}};
        } else {
            object["problem"] = color.error().message;
        }
    }
    if (rendition.kind == Kind::iconSizes) {
        if (const auto sizes = catalog.iconSizes(rendition)) {
            object["iconSizes"] = Json::array();
            for (const catalog::IconSize& size : *sizes) {
                object["iconSizes"].push_back(
                    {{"width", size.width}, {"height", size.height}, {"index", size.index}});
            }
        } else {
            object["problem"] = sizes.error().message;
        }
    }
}

Json asObject(const Catalog& catalog, const ListedRendition& row) {
    const Rendition& rendition = *row.rendition;
    const Rendition* const source = rendition.link ? catalog.source(rendition) : nullptr;
    Json object{
        {"name", row.facet == nullptr ? Json(nullptr) : Json(row.facet->name)},
        {"rendition", rendition.name},
        {"kind", catalog::kindName(rendition.kind)},
        {"scale", rendition.scalePercent / 100.0},
        {"idiom", catalog::idiomName(catalog.attribute(rendition, Attribute::idiom))},
        {"appearance", textOrNull(appearanceOf(catalog, rendition))},
        {"width", rendition.width},
        {"height", rendition.height},
        {"pixelFormat", textOrNull(catalog::pixelFormatName(rendition.pixelFormat))},
        {"colorSpace", rendition.colorSpace},
        {"compression", compressionText(&rendition)},
        {"bytes", rendition.payload.size()},
        {"layout", rendition.layout},
        {"template", rendition.isTemplate()},
        {"vectorBased", rendition.isVectorBased()},
        {"orientation", numberOrNull(rendition.orientation)},
        {"slices", slicesOf(rendition)},
        {"alignment", alignmentOf(rendition)},
        {"link", linkOf(rendition, source)},
        {"attributes", attributesObject(catalog, rendition)},
        {"color", nullptr},
        {"iconSizes", nullptr},
        {"extracted", row.isExtracted()},
        {"file", textOrNull(row.file)},
        {"path", textOrNull(row.path)},
        {"givesWay", row.givesWay},
        {"type", textOrNull(rendition.typeIdentifier)},
        {"problem", textOrNull(row.problem.empty() ? rendition.problem : row.problem)},
    };
    addContents(catalog, rendition, object);
    return object;
}

}  // namespace

std::string listingAsJson(const Catalog& catalog, const std::vector<ListedRendition>& listing,
                          const ListingFrame& frame) {
    const catalog::Header& header = catalog.header();
    Json object{{"catalog", frame.catalog},
                {"output", frame.output ? Json(*frame.output) : Json(nullptr)},
                {"platform", textOrNull(header.platform)},
                {"deploymentVersion", textOrNull(header.deploymentVersion)},
                {"renditions", Json::array()},
                {"warnings", catalog.warnings()}};
    for (const ListedRendition& row : listing) {
        object["renditions"].push_back(asObject(catalog, row));
    }
    return object.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace velmoranth::cli
