// Writes the pictures of a catalog into a folder, by several threads. What comes out does not
// depend on how many they are.
#pragma once

#include "cli/extraction_folder.h"
#include "cli/extraction_plan.h"
#include "desktop/catalog/catalog.h"
#include "desktop/result/result.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::cli {

// A picture that could not be decoded or drawn.
struct LostPicture {
    PlannedPicture picture;
    std::string why;  // a clause
};

struct Extraction {
    std::size_t pictures = 0;       // whose file is there
    std::size_t files = 0;          // fewer where pictures have a file's name in common
    std::vector<LostPicture> lost;  // in the order of the plan
};

// The file of a picture that has a name, with its size in pixels; relative to the folder.
[[nodiscard]] std::string extractedFile(const catalog::Catalog& catalog,
                                        const PlannedPicture& picture, std::size_t width,
                                        std::size_t height);

// Of pictures with the same file the last of the plan has it in the end. Stops at the first file
// that cannot be written, with that problem. `progress` is told, in the calling thread and from
// time to time, how many pictures are done.
[[nodiscard]] desktop::Result<Extraction> extractPictures(
    const catalog::Catalog& catalog, std::span<const PlannedPicture> plan, ExtractionFolder& folder,
    std::size_t jobs, const std::function<void(std::size_t done)>& progress);

}  // namespace velmoranth::cli
