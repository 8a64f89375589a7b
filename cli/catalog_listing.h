// What `velmoranth extract --list` says of a catalog: every rendition, for people or for programs;
// and the same of an extraction.
#pragma once

#include "cli/catalog_selection.h"
#include "cli/extraction.h"
#include "cli/extraction_plan.h"
#include "desktop/catalog/catalog.h"
#include "desktop/result/result.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

struct ListedRendition {
    const catalog::Rendition* rendition = nullptr;  // the catalog's
    const catalog::Facet* facet = nullptr;          // the catalog's; null when it has no name
    // Its place in the plan; nothing for data, a colour, a picture that is not extracted.
    std::optional<std::size_t> planned = {};
    std::string_view leftOut = {};  // why it is not, for a picture
    std::string file = {};          // that it is extracted to; empty when that is not known
    bool isMarked = false;          // the file's name tells it apart from another picture's
    bool givesWay = false;          // a later one has the same file, which shows that one
    std::string path = {};          // of the file that was written, as it can be opened
    std::string problem = {};       // why none could be written

    [[nodiscard]] bool isExtracted() const { return planned && rendition->isPicture(); }
};

// The renditions that are selected, in the order of the names and of the catalog, then those
// without a name if they are. `plan` is that of the same selection. Files that take decoding to be
// known are those whose size the plan has. A problem when they are more than kMostPictures.
[[nodiscard]] desktop::Result<std::vector<ListedRendition>> listCatalog(
    const catalog::Catalog& catalog, const Selection& selection,
    std::span<const PlannedPicture> plan, FileLayout layout);

// What is there in the end of what was listed: files and paths as they were written, and what was
// lost.
void addExtraction(std::vector<ListedRendition>& listing, const Extraction& extraction,
                   const std::string& folder);

[[nodiscard]] std::string listingAsTable(const catalog::Catalog& catalog,
                                         const std::vector<ListedRendition>& listing);

// Of what the object is, besides the catalog.
struct ListingFrame {
    std::string catalog;                // its path
    std::optional<std::string> output;  // the folder that was written into
};

// An object, always in UTF-8. What names hold of other bytes is replaced.
[[nodiscard]] std::string listingAsJson(const catalog::Catalog& catalog,
                                        const std::vector<ListedRendition>& listing,
                                        const ListingFrame& frame);

}  // namespace velmoranth::cli
