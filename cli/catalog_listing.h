// What `velmoranth extract --list` says of a catalog: every rendition, for people or for programs.
#pragma once

#include "desktop/catalog/catalog.h"
#include "desktop/result/result.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct ListedRendition {
    const catalog::Rendition* rendition;  // the catalog's
    const catalog::Facet* facet;          // the catalog's; null when it has no name
    bool isExtracted = false;             // no data, no colour, no other copy of a picture
    std::string file;                     // that it is extracted to; empty when that is not known
    bool givesWay = false;                // a later one has the same file, which shows that one
};

// The renditions of the names that fit the pattern, in the order of the names and of the catalog,
// then those without a name if the pattern fits an empty one. A problem when they are more than
// kMostPictures.
[[nodiscard]] desktop::Result<std::vector<ListedRendition>> listCatalog(
    const catalog::Catalog& catalog, const std::string& pattern);

[[nodiscard]] std::string listingAsTable(const catalog::Catalog& catalog,
                                         const std::vector<ListedRendition>& listing);
// An object, always in UTF-8; `path` is the catalog's. What names hold of other bytes is replaced.
[[nodiscard]] std::string listingAsJson(const catalog::Catalog& catalog,
                                        const std::vector<ListedRendition>& listing,
                                        const std::string& path);

}  // namespace velmoranth::cli
