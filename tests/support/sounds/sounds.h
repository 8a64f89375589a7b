// Makes sound files of every kind that is played, and hears which tone is in a sound.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::tests {

struct Tone {
    double frequency = 440;  // Hz
    double level = 0.5;      // of its peaks
    double seconds = 0.5;
    int sampleRate = 44100;
    int channels = 2;
};

// The tone's samples, interleaved, the same in every channel.
[[nodiscard]] std::vector<float> samplesOf(const Tone& tone);

// The samples as a file, by the names of FFmpeg's muxer and encoder: soundFile("caf", "aac", ...).
// Throws when it cannot be made.
[[nodiscard]] std::string soundFile(const std::string& muxer, const std::string& encoder,
                                    const std::vector<float>& samples, int sampleRate,
                                    int channels);
[[nodiscard]] std::string soundFile(const std::string& muxer, const std::string& encoder,
                                    const Tone& tone);
// The usual kind of an interface sound: 16-bit linear PCM in CAF.
[[nodiscard]] std::string cafFile(const Tone& tone);

// What the table of packets of a CAF file says beside their sizes, frames.
struct CafPackets {
    std::optional<std::int64_t> valid = {};  // all of them unless given
    std::uint32_t priming = 0;
    std::uint32_t remainder = 0;
};

[[nodiscard]] std::string aacCaf(const std::vector<float>& samples, int sampleRate, int channels,
                                 const CafPackets& packets = {});

// A CAF file with the fields given, whatever sense they make.
struct RawCaf {
    double sampleRate = 44100;
    std::string format = "lpcm";
    std::uint32_t flags = 2;  // little-endian integers
    std::uint32_t bytesPerPacket = 4;
    std::uint32_t framesPerPacket = 1;
    std::uint32_t channels = 2;
    std::uint32_t bits = 16;
    std::string chunks = {};     // before the data
    std::int64_t dataSize = -1;  // as declared, the 4 bytes before the samples included
    std::string data = {};
};

[[nodiscard]] std::string rawCaf(const RawCaf& caf);
// A chunk of a CAF file.
[[nodiscard]] std::string cafChunk(std::string_view type, std::int64_t size,
                                   std::string_view contents);
[[nodiscard]] std::string bigEndian(std::uint64_t value, int bytes);

// The level of a frequency in the left or right side of stereo frames: that of its peaks.
[[nodiscard]] double levelOf(std::span<const float> stereo, double frequency, int sampleRate,
                             std::size_t side = 0);
// The frequency of the sound between its first and last upward zero crossing, Hz; 0 for silence.
[[nodiscard]] double frequencyOf(std::span<const float> stereo, int sampleRate,
                                 std::size_t side = 0);
[[nodiscard]] float peakOf(std::span<const float> stereo);

}  // namespace velmoranth::tests
