// What the files of a theme's folder UISounds are called, by the sounds that they stand for. Makers
// of themes are told by the same tables.
#pragma once

#include <array>
#include <cstdint>

namespace velmoranth::sounds {

struct SystemSound {
    std::int64_t number;
    const char* file;
};

inline constexpr std::array<SystemSound, 8> kSystemSounds{{
    {1000, "SentMessage.caf"},
    {1002, "lock.caf"},
    {1003, "Anticipate.caf"},
    {1100, "photoShutter.caf"},
    {1104, "key_press_click.caf"},
    {1108, "photoShutter.caf"},
    {1155, "key_press_modifier.caf"},
    {1156, "key_press_delete.caf"},
}};

// By the event type less the first one; null for one without a sound.
inline constexpr std::uint64_t kFirstEventType = 1002;
inline constexpr std::array<const char*, 7> kFeedbackSounds{
    "lock.caf", "Anticipate.caf", "key_press_click.caf", nullptr,
    nullptr,    nullptr,          "photoShutter.caf"};

}  // namespace velmoranth::sounds
