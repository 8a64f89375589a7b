// The home screen's own classes and methods, as its iOS version has them. What a
// method does here is what the platform does before anything is replaced; methods reach each other
// by messages only.
#pragma once

#include "simulator/screen_context.h"

namespace velmoranth::simulator {

// A miniature's side as a share of the folder icon's: 13 points on 60.
inline constexpr double kGridCellShare = 13.0 / 60;

// Makes the classes and methods known, after the base classes. The device's system decides which.
void registerPlatformClasses(const ScreenContext& context);

}  // namespace velmoranth::simulator
