// Finds renditions by key and by identifier, and facets by name and by identifier. Tables of sound
// catalogs are sorted already; the index does not rely on it.
#pragma once

#include "desktop/catalog/tables.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::catalog {

class Index {
  public:
    Index() = default;
    explicit Index(const Tables& tables);

    // Places in the tables that the index was made from. Of several with the same key or name, the
    // first.
    [[nodiscard]] std::optional<std::size_t> rendition(const Tables& tables, Bytes key) const;
    [[nodiscard]] std::optional<std::size_t> facet(const Tables& tables,
                                                   std::string_view name) const;
    [[nodiscard]] std::optional<std::size_t> facet(std::uint16_t identifier) const;
    // Ascending.
    [[nodiscard]] std::vector<std::size_t> renditions(std::uint16_t identifier) const;

  private:
    using ByIdentifier = std::vector<std::pair<std::uint16_t, std::size_t>>;

    std::vector<std::size_t> renditionsByKey_;
    ByIdentifier renditionsByIdentifier_;
    std::vector<std::size_t> facetsByName_;
    ByIdentifier facetsByIdentifier_;
};

}  // namespace velmoranth::catalog
