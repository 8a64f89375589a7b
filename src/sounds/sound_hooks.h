// Replacements where the system is about to play an interface sound: the theme's sound is played
// beside a feedback's own, and in place of a home-screen sound.
#pragma once

#include "core/original_implementation.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

#include <cstdint>

namespace velmoranth::sounds {

struct UIFeedbackHooks {
    // -[_UIFeedback play]: the platform's own plays in any case.
    static void play(const core::OriginalImplementation<void(platform::UIFeedback&)>& original,
                     platform::UIFeedback& self);
};

struct SBUISoundHooks {
    // +[SBUISound soundWithFeedbackEventType:]: nil while theming is on, which keeps the system's
    // own sound from being played, whether the theme has one or not.
    static platform::SBUISoundRef soundWithFeedbackEventType(
        const core::OriginalImplementation<platform::SBUISoundRef(platform::Class&, std::uint64_t)>&
            original,
        platform::Class& self, std::uint64_t feedbackEventType);
};

}  // namespace velmoranth::sounds
