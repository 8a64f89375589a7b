// How large pictures of a catalog come out.
#pragma once

#include "cli/extraction_plan.h"
#include "desktop/catalog/catalog.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

namespace velmoranth::cli {

// As the record has it; nothing for a picture that has to be drawn or decoded for it.
[[nodiscard]] std::optional<PixelSize> recordedSize(const catalog::Rendition& rendition);

// Finds the sizes of those pictures, by several threads, and fills them in; a picture whose size
// cannot be found has 0 by 0. `progress`, which may be none, is told now and then, in the calling
// thread, how many are done.
void findSizes(const catalog::Catalog& catalog, std::span<PlannedPicture* const> pictures,
               std::size_t jobs,
               const std::function<void(std::size_t done, std::size_t all)>& progress);

}  // namespace velmoranth::cli
