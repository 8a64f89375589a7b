// Names for the files of pictures that would have the same one: the last keeps it, as the system's
// own extraction leaves it, and the others are told apart from it and from each other by what their
// keys say. Files count as the same also where only capital and small letters tell them apart.
#pragma once

#include "cli/extraction_plan.h"
#include "desktop/catalog/catalog.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace velmoranth::cli {

// Of which pictures the size is found out, where only drawing or decoding them tells it.
enum class Sizes {
    whereNeeded,  // those that may have a file's name in common
    all,
};

// Fills in `mark` and `size`. The pictures are all those of their names, in the catalog's order.
// `progress`, which may be none, is told in the calling thread how many of the sizes that take work
// are known.
//
// A mark is made of the traits (rendition_attributes.h) in which the pictures of a file differ. A
// trait that is not needed to tell them all apart is left out, the last first; so is one that is 0,
// what is for all, but for a picture that would have none: this has the first. "~" comes before the
// idiom and "-" before all others: "~pad-dark", "-p3", "~universal". What traits do not tell apart,
// or not in few words, has "%~" and its place in the catalog. No mark can be taken for the end of
// an unmarked file's name, which is a size and a scale.
void tellApart(const catalog::Catalog& catalog, std::span<PlannedPicture> pictures, Sizes sizes,
               std::size_t jobs,
               const std::function<void(std::size_t done, std::size_t all)>& progress);

// "%~" and a number that no other picture has.
[[nodiscard]] std::string placeMark(const catalog::Catalog& catalog, const PlannedPicture& picture);

}  // namespace velmoranth::cli
