// Whether a theme's mask leaves anything of an icon, or takes anything from it.
#pragma once

#include "cli/explanation.h"

#include <string>
#include <vector>

namespace velmoranth::cli {

// What the mask among these effects does to an opaque icon: a line that says that it hides
// everything or nothing, "" otherwise, and where it is switched off. Changes the device's themes
// and preferences meanwhile.
[[nodiscard]] std::string judgeMask(const Investigation& investigation,
                                    const std::vector<Effect>& effects);

}  // namespace velmoranth::cli
