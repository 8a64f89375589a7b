// What the key of a rendition says it is for, in words.
#pragma once

#include "desktop/catalog/catalog.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
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

// The same as one word, "dark"; "any" for 0 without a name, "appearance3" for others without.
[[nodiscard]] std::string appearanceWord(const catalog::Catalog& catalog,
                                         const catalog::Rendition& rendition);
// The word for a name that a user gives, whole or in short: "UIAppearanceDark", "Dark", "dark".
[[nodiscard]] std::string appearanceWord(std::string_view name);

// In what two pictures of one name may differ, in the order in which files are named after it:
// idiom, appearance, the restrictions above in theirs, whether it is a vector or an image file, the
// scale when that is no whole number, then what is left of the key.
inline constexpr std::size_t kTraits = 30;
inline constexpr std::size_t kIdiomTrait = 0;

// The value of a trait below kTraits; 0 is what is for all.
[[nodiscard]] std::uint32_t traitValue(const catalog::Catalog& catalog,
                                       const catalog::Rendition& rendition, std::size_t trait);

// That value as one word of small ASCII letters and digits, a letter among them: "pad", "dark",
// "compactwidth", "2gb", "p3", "subtype568"; of 0 "universal", "anywidthclass" and so on.
[[nodiscard]] std::string traitWord(const catalog::Catalog& catalog,
                                    const catalog::Rendition& rendition, std::size_t trait);

}  // namespace velmoranth::cli
