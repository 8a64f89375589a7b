// The links of a theme, each as what it leads to.
#pragma once

#include "makers/conversion/found_themes.h"

#include <map>
#include <string>

namespace velmoranth::makers {

struct FollowedTheme {
    // With a file for each link that leads to one of the theme's own files, and for each file of a
    // folder of the theme that a link leads to; leftOut has the others, and why.
    FoundTheme theme;
    // The files that these are, by the names that the links give them.
    std::map<std::string, std::string> links;
};

// Links mean what they mean on a device, where the theme is /Library/Themes/NAME.
[[nodiscard]] FollowedTheme followLinks(const FoundTheme& theme);

}  // namespace velmoranth::makers
