// Errors of the file manager as the platform words them: from errno, what was tried, and the paths.
#pragma once

#include "platform/foundation.h"

#include <string>

namespace velmoranth::desktop {

// What was being done; the same code reads differently for each.
enum class FileOperation { read, write, copy, move, remove };

// The error in NSCocoaErrorDomain for `error` (an errno). `path` is the item, `destination` where
// it was to go (of copy and move alone).
[[nodiscard]] platform::Error fileError(FileOperation operation, int error, const std::string& path,
                                        const std::string& destination = {});

}  // namespace velmoranth::desktop
