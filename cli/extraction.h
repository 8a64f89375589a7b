// Writes the pictures of a catalog into a folder, by several threads. What comes out does not
// depend on how many they are.
#pragma once

#include "cli/extraction_folder.h"
#include "cli/extraction_plan.h"
#include "desktop/catalog/catalog.h"
#include "desktop/result/result.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace velmoranth::cli {

// A picture of which there is no file.
struct LostPicture {
    std::size_t place;  // in the plan
    PlannedPicture picture;
    std::string why;  // a clause
};

struct Extraction {
    std::size_t pictures = 0;  // whose file is there
    // The files, and the place in the plan of the picture that each shows. Fewer than the pictures
    // where these have a file's name in common, in the system's layout.
    std::unordered_map<std::string, std::size_t> files;
    std::vector<LostPicture> lost;  // in the order of the plan
    // Why nothing more was written; pictures that are not in `lost` may have no file then.
    std::optional<desktop::Problem> stopped;
};

// The file of a picture that has a name, with its size in pixels; relative to the folder. A size
// that its mark was not chosen for costs it a further one.
[[nodiscard]] std::string extractedFile(const catalog::Catalog& catalog,
                                        const PlannedPicture& picture, std::uint32_t width,
                                        std::uint32_t height, FileLayout layout);

// How the work is done.
struct ExtractionWay {
    FileLayout layout = FileLayout::apart;  // that of the plan
    std::size_t jobs = 1;
    // Told, in the calling thread and from time to time while others work, how many pictures are
    // done.
    std::function<void(std::size_t done)> progress = [](std::size_t) {};
};

// Of pictures with the same file the last of the plan has it in the end. A picture whose copy
// cannot be decoded is taken from its next one; the reason of a lost one is its first copy's.
//
// A picture is lost when none of its copies can be decoded, and when something is in the way of its
// file alone: a folder of that name, a link or a file where it needs a folder. What concerns the
// disk or the folder as a whole (no space, no right to write) stops the extraction.
//
// Takes fewer threads when so many cannot be started, and with none works in the calling one.
[[nodiscard]] Extraction extractPictures(const catalog::Catalog& catalog,
                                         std::span<const PlannedPicture> plan,
                                         ExtractionFolder& folder, const ExtractionWay& way);

}  // namespace velmoranth::cli
