// Writing a picture as a PNG file that is whole or as it was.
#pragma once

#include "desktop/result/result.h"
#include "simulator/picture.h"

#include <string>

namespace velmoranth::cli {

// Whether the file could be written, asked before the work: its folder is there and it is no folder
// itself. "-" always can.
[[nodiscard]] desktop::Result<void> checkOutput(const std::string& path);

// Writes beside the file and puts the finished one in its place; a link is followed, what is no
// plain file (a pipe, a device) is written to as it is. "-" is standard output.
[[nodiscard]] desktop::Result<void> writePicture(const simulator::Picture& picture,
                                                 const std::string& path);

}  // namespace velmoranth::cli
