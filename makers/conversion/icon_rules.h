// App icons, in whatever places and under whatever names themes have them, become
// IconBundles/IDENTIFIER-large.png.
#pragma once

#include "makers/conversion/plan.h"

#include <string_view>

namespace velmoranth::makers {

// Whether a file of a folder without any other mark of a theme is an app's icon for certain: its
// name is that of a known app or has two dots in it.
[[nodiscard]] bool isSurelyIcon(std::string_view file);

// Whether it is called as an app is: "Safari@3x.png". Pictures of other things may be, too.
[[nodiscard]] bool isNamedForApp(std::string_view file);

// Whether a bundle has an icon on the home screen, as far as its identifier says.
[[nodiscard]] bool isApp(std::string_view identifier);

void makeIcons(Draft& draft);

// Folders/NAME.app/FILE becomes Bundles/IDENTIFIER/FILE. After the icons, which lie in them.
void moveNamedFolders(Draft& draft);

}  // namespace velmoranth::makers
