// The starter's sound. Private to the folder.
#pragma once

#include "platform/foundation.h"

namespace velmoranth::makers {

// A short wooden click: a CAF file, one channel of 16 bits at 44.1 kHz.
[[nodiscard]] platform::Data drawClick();

}  // namespace velmoranth::makers
