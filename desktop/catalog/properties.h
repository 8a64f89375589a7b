// The list of properties of a rendition's record: a tag, a length and bytes each.
#pragma once

#include "desktop/catalog/budget.h"
#include "desktop/catalog/catalog.h"

#include <string_view>

namespace velmoranth::catalog {

// Puts what the list says into the rendition. A clause when the list is damaged, else empty;
// unknown properties are passed over.
[[nodiscard]] std::string_view readProperties(Bytes list, Budget& budget, Rendition& rendition);

}  // namespace velmoranth::catalog
