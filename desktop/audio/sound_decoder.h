// Decodes the sound files that the phone plays: linear PCM, IMA4, µ-law, A-law, ALAC, AAC, MP3 and
// iLBC in CAF, AIFF, WAV, M4A, MP3 and ADTS files. A file is read while it is played, so that a
// long one starts as soon as a short one and takes no more memory.
#pragma once

#include "desktop/audio/sound_file.h"
#include "desktop/audio/sound_stream.h"
#include "desktop/result/result.h"

#include <memory>
#include <optional>
#include <string>

namespace velmoranth::desktop {

// What a file holds, as far as its head says.
struct SoundFormat {
    std::string container;  // "caf", "aiff", "wav", "mov", "mp3", "aac"
    std::string codec;      // "pcm_s16le", "adpcm_ima_qt", "aac", ...
    int channels = 0;
    int sampleRate = 0;             // Hz
    std::optional<double> seconds;  // what the file declares, which nothing has checked
};

// Whether the library that decodes is installed; without it no sound can be opened.
[[nodiscard]] bool canDecodeSounds();

class SoundDecoder : public SoundStream {
  public:
    // Reads the head of the file and decodes its first samples, so that what cannot be played fails
    // here. `sampleRate` is that of the frames that come out, Hz. The problem names the file.
    [[nodiscard]] static Result<std::unique_ptr<SoundDecoder>> open(const SoundFile& file,
                                                                    int sampleRate);

    [[nodiscard]] virtual const SoundFormat& format() const = 0;

    // Whether the sound ended, or ended early, because of what is wrong with the file.
    [[nodiscard]] virtual const std::optional<Problem>& problem() const = 0;
};

}  // namespace velmoranth::desktop
