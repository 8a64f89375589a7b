#include "desktop/audio/sound_kinds.h"

#include <algorithm>
#include <array>

namespace velmoranth::desktop {

namespace {

struct Container {
    const char* name;
    std::string_view magic;  // a dot is any byte
};

constexpr std::array<Container, 6> kContainers{{{"caf", "caff"},
                                                {"aiff", "FORM....AIFF"},
                                                {"aiff", "FORM....AIFC"},
                                                {"wav", "RIFF....WAVE"},
                                                {"mov", "....ftyp"},
                                                {"mp3", "ID3"}}};

bool beginsWith(std::span<const std::uint8_t> head, std::string_view magic) {
    return head.size() >= magic.size() &&
           std::equal(magic.begin(), magic.end(), head.begin(), [](char wanted, std::uint8_t byte) {
               return wanted == '.' || static_cast<std::uint8_t>(wanted) == byte;
           });
}

// Those whose decoder has their own name.
constexpr std::array<std::string_view, 20> kCodecs{
    "pcm_s8",        "pcm_u8",    "pcm_s16be", "pcm_s16le", "pcm_s24be",
    "pcm_s24le",     "pcm_s32be", "pcm_s32le", "pcm_f32be", "pcm_f32le",
    "pcm_f64be",     "pcm_f64le", "pcm_alaw",  "pcm_mulaw", "adpcm_ima_qt",
    "adpcm_ima_wav", "adpcm_ms",  "aac",       "alac",      "ilbc"};

}  // namespace

const char* containerOf(std::span<const std::uint8_t> head) {
    for (const Container& container : kContainers) {
        if (beginsWith(head, container.magic)) {
            return container.name;
        }
    }
    // The first frame of a bare stream: eleven bits of synchronisation; then two of a version of
    // which one does not exist, and two of a layer, which are 0 in ADTS and 1 in MP3.
    if (head.size() >= 2 && head[0] == 0xFF && (head[1] & 0xE0) == 0xE0) {
        const int version = (head[1] >> 3) & 3;
        const int layer = (head[1] >> 1) & 3;
        if (layer == 0 && version >= 2) {
            return "aac";
        }
        if (layer == 1 && version != 1) {
            return "mp3";
        }
    }
    return nullptr;
}

const char* decoderOf(std::string_view codec) {
    if (codec == "mp3") {
        return "mp3float";
    }
    const auto* const found = std::find(kCodecs.begin(), kCodecs.end(), codec);
    return found == kCodecs.end() ? nullptr : found->data();
}

std::optional<std::string> objectionTo(int channels, int sampleRate) {
    if (channels < 1 || channels > kMaxChannels) {
        return "the sound has " + std::to_string(channels) + " channels; 1 to " +
               std::to_string(kMaxChannels) + " can be played";
    }
    if (sampleRate < kMinSampleRate || sampleRate > kMaxSampleRate) {
        return "the sound's sample rate is " + std::to_string(sampleRate) + " Hz; " +
               std::to_string(kMinSampleRate) + " to " + std::to_string(kMaxSampleRate) +
               " can be played";
    }
    return std::nullopt;
}

}  // namespace velmoranth::desktop
