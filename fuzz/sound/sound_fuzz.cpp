// Any bytes as a sound file, played as far as a sound of a few seconds goes.
#include "desktop/audio/sound_decoder.h"
#include "desktop/audio/sound_file.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

namespace {

using namespace velmoranth::desktop;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    constexpr int kSampleRate = 44100;
    constexpr std::size_t kMostFrames = 400'000;
    constexpr std::size_t kBlockFrames = 1000;
    const SoundFile file = SoundFile::ofData({bytes, bytes + size}, "sound");
    const auto decoder = SoundDecoder::open(file, kSampleRate);
    if (!decoder) {
        require(!decoder.error().message.empty() && decoder.error().path == "sound");
        return 0;
    }
    const SoundFormat& format = (*decoder)->format();
    require(format.channels >= 1 && format.channels <= 8 && format.sampleRate >= 1000);
    require(!format.seconds || *format.seconds >= 0);
    std::vector<float> samples(kBlockFrames * kChannels);
    std::size_t played = 0;
    for (std::size_t got = kBlockFrames; got == kBlockFrames && played < kMostFrames;) {
        got = (*decoder)->read(samples);
        require(got <= kBlockFrames);
        played += got;
    }
    // What opens has something to play.
    require(played > 0);
    return 0;
}
