// Which sound files are played: the containers by their first bytes, the codecs by name, and the
// channels and sample rates within which a file is taken at its word.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::desktop {

inline constexpr int kMaxChannels = 8;
inline constexpr int kMinSampleRate = 1000;    // Hz
inline constexpr int kMaxSampleRate = 384000;  // Hz

// How many bytes of a file's start containerOf() looks at.
inline constexpr std::size_t kSniffedBytes = 12;

// The decoding library's name of the container that begins like this; null for what is no sound
// file.
[[nodiscard]] const char* containerOf(std::span<const std::uint8_t> head);

// The one decoder for sound of that codec, null when it is not played. Both are the decoding
// library's names.
[[nodiscard]] const char* decoderOf(std::string_view codec);

// Why sound of so many channels and Hz is not played; none when it is.
[[nodiscard]] std::optional<std::string> objectionTo(int channels, int sampleRate);

}  // namespace velmoranth::desktop
