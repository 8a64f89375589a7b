// Folders that are no theme but hold some: what a package has in Library/Themes, a collection.
#pragma once

#include "makers/conversion/found_themes.h"

#include <string>
#include <vector>

namespace velmoranth::cli {

// The paths of the themes in a folder that is none itself, in order; none for a theme, for what
// holds no theme, and for what cannot be read.
[[nodiscard]] std::vector<std::string> themesWithin(const std::string& folder);

// The same words, each such folder replaced by the themes in it.
[[nodiscard]] std::vector<std::string> withThemesWithin(const std::vector<std::string>& paths);

// "this is no theme, but holds A.theme, B.theme; give one of them" of such a folder, with the first
// of them, so that a command with more to offer can go on; the like of an empty Library/Themes and
// of a folder that a theme around it has. "" of any other path.
[[nodiscard]] std::string whyNoTheme(const std::string& path);

// "NAME: 3 icons lie under names that nothing looks for; velmoranth convert PATH -o FOLDER makes a
// theme that shows them": what converting would bring to light, by the names of the theme's files;
// "" for nothing. `path` is the user's word for it.
[[nodiscard]] std::string hiddenPicturesIn(const std::string& path,
                                           const makers::FoundTheme& theme);

}  // namespace velmoranth::cli
