// Folders that are no theme but hold some: what a package has in Library/Themes, a collection.
#pragma once

#include <string>
#include <vector>

namespace velmoranth::cli {

// The paths of the themes in a folder that is none itself, in order; none for a theme, for what
// holds no theme, and for what cannot be read.
[[nodiscard]] std::vector<std::string> themesWithin(const std::string& folder);

// The same words, each such folder replaced by the themes in it.
[[nodiscard]] std::vector<std::string> withThemesWithin(const std::vector<std::string>& paths);

}  // namespace velmoranth::cli
