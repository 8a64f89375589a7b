// Writes a short sound of every kind for the fuzz target.
//
//   sound_seeds fuzz/sound/corpus
#include "tests/support/sounds/sounds.h"

#include <array>
#include <cstdio>
#include <exception>
#include <fstream>
#include <string>

namespace {

using velmoranth::tests::soundFile;
using velmoranth::tests::Tone;

struct Seed {
    const char* muxer;
    const char* encoder;
};

constexpr std::array<Seed, 14> kSeeds{{{"caf", "pcm_s16le"},
                                       {"caf", "pcm_f32be"},
                                       {"caf", "pcm_mulaw"},
                                       {"caf", "adpcm_ima_qt"},
                                       {"caf", "aac"},
                                       {"caf", "alac"},
                                       {"aiff", "pcm_s16be"},
                                       {"aiff", "pcm_s16le"},
                                       {"wav", "pcm_u8"},
                                       {"wav", "adpcm_ima_wav"},
                                       {"ipod", "aac"},
                                       {"ipod", "alac"},
                                       {"mp3", "libmp3lame"},
                                       {"adts", "aac"}}};

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: sound_seeds FOLDER\n", stderr);
        return 2;
    }
    try {
        const Tone tone{.seconds = 0.01, .sampleRate = 16000, .channels = 1};
        for (const Seed& seed : kSeeds) {
            std::ofstream(std::string(arguments[1]) + "/" + seed.encoder + "." + seed.muxer,
                          std::ios::binary)
                << soundFile(seed.muxer, seed.encoder, tone);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
