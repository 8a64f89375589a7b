// What a CAF file says of its packets: how much of what is decoded is the sound itself. Encoders
// work in whole packets and begin early; the phone plays neither the lead nor the padding. The
// decoding library leaves them in.
#pragma once

#include "desktop/audio/sound_file.h"

#include <cstdint>
#include <limits>

namespace velmoranth::desktop {

struct CafTrim {
    std::int64_t skipped = 0;                                        // frames before the sound
    std::int64_t frames = std::numeric_limits<std::int64_t>::max();  // frames of the sound
};

// Nothing is trimmed when the file has no such table, or one that makes no sense.
[[nodiscard]] CafTrim cafTrimOf(const SoundFile& file);

}  // namespace velmoranth::desktop
