// What does not come along, by its name, and what comes along without showing.
#pragma once

#include "makers/conversion/plan.h"

namespace velmoranth::makers {

// Clutter, empty pictures, wallpapers, texts of other languages, scripts, the maker's own files.
void leaveOutWhatIsNoTheme(Draft& draft);

// Fonts, sounds of formats that are not asked for, and so on.
void noteWithoutEffect(Draft& draft);

}  // namespace velmoranth::makers
