// Which renditions of a catalog `velmoranth extract` is about.
#pragma once

#include "desktop/catalog/catalog.h"
#include "desktop/result/result.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// What is taken has one value of each list that is not empty.
struct Selection {
    std::vector<std::string> names = {};        // patterns
    std::vector<int> scales = {};               // whole ones, as files are named after them
    std::vector<std::uint16_t> idioms = {};     // the format's numbers
    std::vector<std::string> appearances = {};  // as appearanceWord() has them

    [[nodiscard]] bool takesAll() const {
        return names.empty() && scales.empty() && idioms.empty() && appearances.empty();
    }

    [[nodiscard]] bool takesName(std::string_view name) const;

    // Whether scale, idiom and appearance are wanted. What has no scale has none of those asked
    // for.
    [[nodiscard]] bool takes(const catalog::Catalog& catalog,
                             const catalog::Rendition& rendition) const;
};

// The number of "phone", "pad" and so on, or of a number. A problem of usage names those there are.
[[nodiscard]] desktop::Result<std::uint16_t> idiomNumber(std::string_view name);

}  // namespace velmoranth::cli
