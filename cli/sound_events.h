// The moments at which a phone makes a sound, as they are named on the command line: system sound
// numbers of interface feedback, events of the home screen, and actions of the settings panel.
#pragma once

#include "desktop/result/result.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::cli {

enum class SoundSource {
    feedback,    // -[_UIFeedback play], with a system sound id
    homeScreen,  // +[SBUISound soundWithFeedbackEventType:]
    panel,       // an action of the settings panel
};

struct SoundEvent {
    SoundSource source = SoundSource::feedback;
    std::uint64_t number = 0;   // 32 bits of it for feedback; 0 for the panel
    std::string_view action{};  // the panel's selector, "PlayError:"
    std::string name;           // as it was given: "event:lock"
};

// A name that stands for a number or an action.
struct SoundName {
    std::string_view name;  // as it is given
    SoundSource source;
    std::uint64_t number;
    std::string_view action;
    std::string_view summary;
};

[[nodiscard]] std::span<const SoundName> soundNames();

// A name of the table, "N" for feedback, or "event:N". The problem names the nearest.
[[nodiscard]] desktop::Result<SoundEvent> parseSoundEvent(const std::string& word);

}  // namespace velmoranth::cli
