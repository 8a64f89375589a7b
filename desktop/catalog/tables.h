// Everything that a catalog lists, as read from its container when it is opened.
#pragma once

#include "desktop/catalog/catalog.h"
#include "desktop/catalog/key_format.h"

#include <string>
#include <vector>

namespace velmoranth::catalog {

struct Tables {
    Header header;
    KeyFormat keyFormat;
    std::vector<Facet> facets;
    std::vector<Rendition> renditions;
    std::vector<Appearance> appearances;
    std::vector<std::string> warnings;
};

// Fails when the bytes are no catalog, or its header, key format or renditions cannot be read. The
// views are into `file`.
[[nodiscard]] Result<Tables> readTables(Bytes file);

}  // namespace velmoranth::catalog
