// The font files that text may be drawn with: those of named packages and no others, so that
// pictures do not follow what else a machine has installed. A file that is missing is left out.
#pragma once

#include <string>
#include <vector>

namespace velmoranth::desktop {

// Paths, in a fixed order: of the folders given to setFontFolders (text.h) every font, else those
// of the packages.
[[nodiscard]] std::vector<std::string> fontFiles();

// The family that the system face is drawn in.
[[nodiscard]] const std::string& systemFamily();

// For what the asked for family has no letters of; the first that has them is taken. With commas
// between.
[[nodiscard]] const char* fallbackFamilies();

}  // namespace velmoranth::desktop
