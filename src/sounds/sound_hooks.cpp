#include "sounds/sound_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "core/velmoranth.h"

namespace velmoranth::sounds {

using core::NSLog;
using core::settings;
using core::VelMoranth;
using platform::SBUISoundRef;

void UIFeedbackHooks::play(
    const core::OriginalImplementation<void(platform::UIFeedback&)>& original,
    platform::UIFeedback& self) {
    if (settings().enableLogging) {
        NSLog("VELMORANTH UIDevice _playSystemSound:_effectiveSystemSoundID : %u",
              self._effectiveSystemSoundID());
    }
    if (settings().enable) {
        const std::uint32_t systemSoundID = self._effectiveSystemSoundID();
        if (const auto manager = VelMoranth::sharedIconManager()) {
            manager->playUISound(systemSoundID);
        }
    }
    original(self);
}

SBUISoundRef SBUISoundHooks::soundWithFeedbackEventType(
    const core::OriginalImplementation<SBUISoundRef(platform::Class&, std::uint64_t)>& original,
    platform::Class& self, std::uint64_t feedbackEventType) {
    original(self, feedbackEventType);
    if (settings().enableLogging) {
        NSLog("VELMORANTH SBUISounds soundWithFeedbackEventType:%llu  %@",
              static_cast<unsigned long long>(feedbackEventType),
              original(self, feedbackEventType));
    }
    if (settings().enable) {
        if (const auto manager = VelMoranth::sharedIconManager()) {
            manager->playsystemSound(feedbackEventType);
        }
        return nullptr;
    }
    return original(self, feedbackEventType);
}

}  // namespace velmoranth::sounds
