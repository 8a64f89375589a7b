// What a user means by the INPUT of `velmoranth extract`: a catalog file, or the folder of a bundle
// that has one.
#pragma once

#include "desktop/result/result.h"

#include <string>

namespace velmoranth::cli {

struct CatalogInput {
    std::string file;   // the catalog
    std::string below;  // the folders that its pictures go into, below the output folder
    std::string note;   // what was assumed, when the name says otherwise; else empty
};

// A name that ends in "car" is a catalog file's by the system's rule and every other one a
// bundle's; what is really there wins. The folders are those of the system.
[[nodiscard]] desktop::Result<CatalogInput> findCatalog(const std::string& input);

}  // namespace velmoranth::cli
