// Writing a file that the user has asked for: whole or as it was.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <string>
#include <string_view>

namespace velmoranth::cli {

// What a command writes.
enum class FileFormat { png, wav };

// "--output writes a PNG file, and the name x.jpg is another format's"; "" for a name that says
// nothing of the kind.
[[nodiscard]] std::string whyOtherFormat(const std::string& path, FileFormat format);

// Whether the file could be written, asked before the work: its folder is there or can be made, and
// it is no folder itself. "-" always can. `what` is what a problem calls the contents: "picture".
[[nodiscard]] desktop::Result<void> checkOutputFile(const std::string& path, std::string_view what);

// Makes the folder when it is missing, writes beside the file and puts the finished one in its
// place; a link is followed, what is no
// plain file (a pipe, a device) is written to as it is. "-" is standard output.
[[nodiscard]] desktop::Result<void> writeOutputFile(const platform::Data& bytes,
                                                    const std::string& path, std::string_view what);

}  // namespace velmoranth::cli
