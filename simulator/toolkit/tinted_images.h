// Which images of a bundle's catalog are filled with a colour of the screen's: glyphs, and what the
// toolkit has for tab bars.
#pragma once

#include "simulator/toolkit/device_bundles.h"

#include <string_view>

namespace velmoranth::simulator {

[[nodiscard]] bool takesTint(const BundleCatalog& catalog, std::string_view name);

}  // namespace velmoranth::simulator
