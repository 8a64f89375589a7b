// What the key of a rendition says it is for, in words.
#pragma once

#include "desktop/catalog/catalog.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

// The attributes that are not 0, each once, in the order of the catalog's key format:
// "horizontalSizeClass" and its value. One without a name goes by its number.
[[nodiscard]] std::vector<std::pair<std::string, std::uint16_t>> attributesOf(
    const catalog::Catalog& catalog, const catalog::Rendition& rendition);

// For which devices and settings alone it is, but for idiom, scale and appearance: "compact width,
// 2 GB, P3"; empty when it is for all. Values without a name come as "subtype 568".
[[nodiscard]] std::string restrictionsOf(const catalog::Catalog& catalog,
                                         const catalog::Rendition& rendition);

// "UIAppearanceDark"; the number for one that the catalog does not name, empty for 0.
[[nodiscard]] std::string appearanceOf(const catalog::Catalog& catalog,
                                       const catalog::Rendition& rendition);

}  // namespace velmoranth::cli
