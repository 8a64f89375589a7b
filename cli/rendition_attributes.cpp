#include "cli/rendition_attributes.h"

#include "desktop/catalog/pictures.h"

#include <algorithm>
#include <array>
#include <cmath>
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

// Of the key, behind what files are named after first. What else a key may hold has no name.
constexpr std::array kLastTraits{
    Attribute::look,          Attribute::element,       Attribute::part,
    Attribute::size,          Attribute::placeholder,   Attribute::value,
    Attribute::dimension1,    Attribute::dimension2,    Attribute::state,
    Attribute::layer,         Attribute::scale,         Attribute::presentationState,
    Attribute::previousValue, Attribute::previousState, Attribute::identifier,
};

constexpr std::size_t kAppearanceTrait = kIdiomTrait + 1;
constexpr std::size_t kFirstRestriction = kAppearanceTrait + 1;

constexpr std::size_t kKindTrait = kFirstRestriction + kRestrictions.size();
constexpr std::size_t kScaleTrait = kKindTrait + 1;
constexpr std::size_t kFirstOfLast = kScaleTrait + 1;
static_assert(kFirstOfLast + kLastTraits.size() == kTraits);

std::string_view kindText(const Rendition& rendition) {
    return rendition.kind == catalog::Kind::vector || rendition.kind == catalog::Kind::imageFile
               ? catalog::kindName(rendition.kind)
               : "bitmap";
}

// "UIAppearanceDark" is "dark".
std::string_view withoutPrefix(std::string_view name) {
    for (const std::string_view prefix : {"UIAppearance", "NSAppearanceName"}) {
        if (name.starts_with(prefix)) {
            return name.substr(prefix.size());
        }
    }
    return name;
}

// Small letters and digits alone.
std::string wordOf(std::string_view text) {
    std::string word;
    for (const char letter : text) {
        if (letter >= 'A' && letter <= 'Z') {
            word += static_cast<char>(letter - 'A' + 'a');
        } else if ((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9')) {
            word += letter;
        }
    }
    return word;
}

bool hasLetter(std::string_view word) {
    return word.find_first_not_of("0123456789") != std::string_view::npos;
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

std::string appearanceWord(std::string_view name) {
    return wordOf(withoutPrefix(name));
}

std::string appearanceWord(const Catalog& catalog, const Rendition& rendition) {
    const std::string word = appearanceWord(appearanceOf(catalog, rendition));
    const std::uint16_t number = catalog.attribute(rendition, Attribute::appearance);
    return hasLetter(word) ? word : number == 0 ? "any" : "appearance" + std::to_string(number);
}

std::uint32_t traitValue(const Catalog& catalog, const Rendition& rendition, std::size_t trait) {
    if (trait == kKindTrait) {
        return kindText(rendition) == "bitmap" ? 0 : static_cast<std::uint32_t>(rendition.kind);
    }
    if (trait == kScaleTrait) {
        const double scale = catalog::pictureScale(catalog, rendition);
        return scale == std::trunc(scale) ? 0 : rendition.scalePercent;
    }
    return catalog.attribute(rendition, trait == kIdiomTrait        ? Attribute::idiom
                                        : trait == kAppearanceTrait ? Attribute::appearance
                                        : trait < kKindTrait
                                            ? kRestrictions.at(trait - kFirstRestriction).attribute
                                            : kLastTraits.at(trait - kFirstOfLast));
}

std::string traitWord(const Catalog& catalog, const Rendition& rendition, std::size_t trait) {
    const std::uint32_t value = traitValue(catalog, rendition, trait);
    if (trait == kIdiomTrait) {
        const std::string word = catalog::idiomName(static_cast<std::uint16_t>(value));
        return hasLetter(word) ? word : "idiom" + word;
    }
    if (trait == kAppearanceTrait) {
        return appearanceWord(catalog, rendition);
    }
    if (trait == kKindTrait) {
        return wordOf(kindText(rendition));
    }
    if (trait == kScaleTrait) {
        return value == 0 ? "wholescale" : std::to_string(value) + "percent";
    }
    if (trait < kKindTrait) {
        const Restriction& restriction = kRestrictions.at(trait - kFirstRestriction);
        return value == 0 ? "any" + wordOf(restriction.name)
                          : wordOf(valueText(restriction, static_cast<std::uint16_t>(value)));
    }
    const auto number = static_cast<std::size_t>(kLastTraits.at(trait - kFirstOfLast));
    return wordOf(kNames.at(number)) + std::to_string(value);
}

}  // namespace velmoranth::cli
