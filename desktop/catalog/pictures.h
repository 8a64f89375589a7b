// Which renditions of a name are its pictures, and at which scale each stands: what the platform
// goes by when it lists the images of a catalog.
#pragma once

#include "desktop/catalog/catalog.h"

#include <vector>

namespace velmoranth::catalog {

// A picture that is stored once for every deployment target, or just once: the renditions whose
// keys differ in Attribute::deploymentTarget alone. The one with the lowest target comes first,
// since the copies for newer systems may be stored less exactly; copies whose compression has no
// decoder come last. Never empty.
using PictureCopies = std::vector<const Rendition*>;

// The pictures of the name with their copies, in the catalog's order of the first ones. Owned by
// the catalog.
[[nodiscard]] std::vector<PictureCopies> copiesOf(const Catalog& catalog, const Facet& facet);

// The first copies, each of which stands for its picture. Owned by the catalog.
[[nodiscard]] std::vector<const Rendition*> picturesOf(const Catalog& catalog, const Facet& facet);

// Pixels a point: the record's scale; where that is 0, as for vectors, Attribute::scale when it is
// 1, 2 or 3, else 1.
[[nodiscard]] double pictureScale(const Catalog& catalog, const Rendition& rendition);

}  // namespace velmoranth::catalog
