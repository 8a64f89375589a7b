#include "desktop/catalog/index.h"

#include "desktop/catalog/text.h"

#include <algorithm>
#include <numeric>

namespace velmoranth::catalog {

namespace {

constexpr auto kIdentifier = static_cast<std::uint16_t>(Attribute::identifier);

// What of a stored key counts, in the order of its bytes.
std::string_view keyText(const Tables& tables, Bytes key) {
    return asText(key).substr(0, tables.keyFormat.keySize());
}

// The places 0 … count - 1 by ascending text, equal ones as they stand.
template <class TextAt>
std::vector<std::size_t> sortedPlaces(std::size_t count, TextAt textAt) {
    std::vector<std::size_t> places(count);
    std::iota(places.begin(), places.end(), std::size_t{0});
    const auto order = [&](std::size_t place) { return std::pair(textAt(place), place); };
    if (!std::ranges::is_sorted(places, {}, order)) {
        std::ranges::sort(places, {}, order);
    }
    return places;
}

template <class TextAt>
std::optional<std::size_t> find(const std::vector<std::size_t>& places, std::string_view text,
                                TextAt textAt) {
    const auto found = std::ranges::lower_bound(places, text, {}, textAt);
    return found != places.end() && textAt(*found) == text ? std::optional(*found) : std::nullopt;
}

}  // namespace

Index::Index(const Tables& tables) {
    renditionsByKey_ = sortedPlaces(tables.renditions.size(), [&](std::size_t place) {
        return keyText(tables, tables.renditions[place].key);
    });
    facetsByName_ = sortedPlaces(tables.facets.size(),
                                 [&](std::size_t place) { return tables.facets[place].name; });
    renditionsByIdentifier_.reserve(tables.renditions.size());
    for (std::size_t i = 0; i < tables.renditions.size(); ++i) {
        renditionsByIdentifier_.emplace_back(
            tables.keyFormat.value(tables.renditions[i].key, kIdentifier), i);
    }
    std::ranges::sort(renditionsByIdentifier_);
    facetsByIdentifier_.reserve(tables.facets.size());
    for (std::size_t i = 0; i < tables.facets.size(); ++i) {
        facetsByIdentifier_.emplace_back(tables.facets[i].identifier, i);
    }
    std::ranges::sort(facetsByIdentifier_);
}

std::optional<std::size_t> Index::rendition(const Tables& tables, Bytes key) const {
    return find(renditionsByKey_, asText(key),
                [&](std::size_t place) { return keyText(tables, tables.renditions[place].key); });
}

std::optional<std::size_t> Index::facet(const Tables& tables, std::string_view name) const {
    return find(facetsByName_, name, [&](std::size_t place) { return tables.facets[place].name; });
}

std::optional<std::size_t> Index::facet(std::uint16_t identifier) const {
    const auto found =
        std::ranges::lower_bound(facetsByIdentifier_, std::pair(identifier, std::size_t{0}));
    const bool exists = found != facetsByIdentifier_.end() && found->first == identifier;
    return exists ? std::optional(found->second) : std::nullopt;
}

std::vector<std::size_t> Index::renditions(std::uint16_t identifier) const {
    const auto range = std::ranges::equal_range(renditionsByIdentifier_, identifier, {},
                                                &ByIdentifier::value_type::first);
    std::vector<std::size_t> places;
    places.reserve(range.size());
    for (const auto& [unused, place] : range) {
        places.push_back(place);
    }
    return places;
}

}  // namespace velmoranth::catalog
