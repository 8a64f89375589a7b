// How a calendar's text is written, as style sheets say it, and colours in their notations.
#pragma once

#include "platform/foundation.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::makers {

struct CssColor {
    std::string digits;  // RRGGBB
    double alpha = 1;    // 0 to 1
};

// "#RGB", "#RRGGBB", "rgb(…)", "rgba(…)" or a name; nothing for another text.
[[nodiscard]] std::optional<CssColor> cssColor(std::string_view text);

struct StyledText {
    platform::Dictionary settings;
    std::vector<std::string> lost;  // what could not be carried over, a clause each
};

// The settings that the style says, and for what it does not say those of `otherwise`; a shadow's
// only when it says one. Its margins count from where `otherwise` has the text.
[[nodiscard]] StyledText styledText(std::string_view css, const platform::Dictionary& otherwise);

}  // namespace velmoranth::makers
