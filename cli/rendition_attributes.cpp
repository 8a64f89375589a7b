#include "cli/rendition_attributes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace velmoranth::cli {

using catalog::Attribute;
using catalog::Catalog;
using catalog::Rendition;

namespace {

constexpr std::array<std::string_view, 28> kNames{
    "look",
    "element",
    "part",
    "size",
    "direction",
    "placeholder",
    "value",
    "appearance",
    "dimension1",
    "dimension2",
    "state",
    "layer",
    "scale",
    "localization",
    "presentationState",
    "idiom",
    "subtype",
    "identifier",
    "previousValue",
    "previousState",
    "horizontalSizeClass",
    "verticalSizeClass",
    "memoryClass",
    "graphicsClass",
    "displayGamut",
    "deploymentTarget",
    "glyphWeight",
    "glyphSize",
};

struct Restriction {
    Attribute attribute;
    std::string_view name;                     // of values without one of their own
    std::array<std::string_view, 3> values{};  // from 1 on
};

// The numbers of the values are the format's.
constexpr std::array<Restriction, 11> kRestrictions{{
    {Attribute::horizontalSizeClass, "width class", {"compact width", "regular width"}},
    {Attribute::verticalSizeClass, "height class", {"compact height", "regular height"}},
    {Attribute::memoryClass, "memory class", {"1 GB", "2 GB", "4 GB"}},
    {Attribute::graphicsClass, "graphics class"},
    {Attribute::subtype, "subtype"},
    {Attribute::displayGamut, "gamut", {"P3"}},
    {Attribute::direction, "direction"},
    {Attribute::localization, "localization"},
    {Attribute::glyphWeight, "weight"},
    {Attribute::glyphSize, "glyph size"},
    {Attribute::deploymentTarget, "target"},
}};

std::string valueText(const Restriction& restriction, std::uint16_t value) {
    const bool isNamed =
        value <= restriction.values.size() && !restriction.values.at(value - 1U).empty();
    return isNamed ? std::string(restriction.values.at(value - 1U))
                   : std::string(restriction.name) + " " + std::to_string(value);
}

}  // namespace

std::vector<std::pair<std::string, std::uint16_t>> attributesOf(const Catalog& catalog,
                                                                const Rendition& rendition) {
    std::vector<std::pair<std::string, std::uint16_t>> attributes;
    for (const std::uint16_t number : catalog.keyFormat()) {
        const std::uint16_t value = catalog.attribute(rendition, static_cast<Attribute>(number));
        std::string name =
            number < kNames.size() ? std::string(kNames.at(number)) : std::to_string(number);
        const bool isKnown = std::any_of(attributes.begin(), attributes.end(),
                                         [&](const auto& known) { return known.first == name; });
        if (value != 0 && !isKnown) {
            attributes.emplace_back(std::move(name), value);
        }
    }
    return attributes;
}

std::string restrictionsOf(const Catalog& catalog, const Rendition& rendition) {
    std::string text;
    for (const Restriction& restriction : kRestrictions) {
        if (const std::uint16_t value = catalog.attribute(rendition, restriction.attribute)) {
            text += (text.empty() ? "" : ", ") + valueText(restriction, value);
        }
    }
    return text;
}

std::string appearanceOf(const Catalog& catalog, const Rendition& rendition) {
    const std::uint16_t number = catalog.attribute(rendition, Attribute::appearance);
    for (const catalog::Appearance& appearance : catalog.appearances()) {
        if (appearance.number == number) {
            return std::string(appearance.name);
        }
    }
    return number == 0 ? "" : std::to_string(number);
}

}  // namespace velmoranth::cli
