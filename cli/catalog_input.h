// What a user means by the INPUT of `velmoranth extract`: a catalog file, or the folder of a bundle
// that has one.
#pragma once

#include "cli/extraction_plan.h"
#include "desktop/catalog/catalog.h"
#include "desktop/result/result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct CatalogInput {
    std::string file;   // the catalog; what messages call it, for standard input
    std::string below;  // the folders that its pictures go into, below the output folder
    std::string note;   // what was assumed, when the name says otherwise; else empty
    std::optional<std::vector<std::uint8_t>> bytes;  // of standard input

    [[nodiscard]] desktop::Result<catalog::Catalog> open() const;
};

// A name that ends in "car" is a catalog file's by the system's rule and every other one a
// bundle's; what is really there wins. "-" is a catalog on standard input, which is read whole and
// has a limit of its own. The pictures of a bundle go into a folder of its name and others into
// none, whatever the working folder is; the system's layout has the system's folders, the flat one
// none.
[[nodiscard]] desktop::Result<CatalogInput> findCatalog(const std::string& input,
                                                        FileLayout layout);

}  // namespace velmoranth::cli
