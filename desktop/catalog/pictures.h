// Which renditions of a name are its pictures, and at which scale each stands: what the platform
// goes by when it lists the images of a catalog.
#pragma once

#include "desktop/catalog/catalog.h"

#include <vector>

namespace velmoranth::catalog {

// The pictures of the name, in the catalog's order. A picture that is stored once for every
// deployment target counts once: of renditions whose keys differ in Attribute::deploymentTarget
// alone, the one with the lowest target stands for all, since the copies for newer systems may be
// stored less exactly. Owned by the catalog.
[[nodiscard]] std::vector<const Rendition*> picturesOf(const Catalog& catalog, const Facet& facet);

// Pixels a point: the record's scale; where that is 0, as for vectors, Attribute::scale when it is
// 1, 2 or 3, else 1.
[[nodiscard]] double pictureScale(const Catalog& catalog, const Rendition& rendition);

}  // namespace velmoranth::catalog
