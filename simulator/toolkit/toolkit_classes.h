// The toolkit's classes that make interface images, as every process with an interface has them:
// UIImage's loaders by name, what asset catalogs hold, switches, and the views of bars and lists.
// What a method does here is what the platform does before anything is replaced; methods reach each
// other by messages only:
//     an image by name    -> its catalog entry's UIImageWithAsset:… -> CGImage of its content
//     … of a glyph        -> image of the glyph
//     kitImageNamed:      -> _kitImageNamed:withTrait:
#pragma once

#include "simulator/screen_context.h"

namespace velmoranth::simulator {

// Makes the classes and methods known, after the base classes.
void registerToolkitClasses(const ScreenContext& context);

}  // namespace velmoranth::simulator
