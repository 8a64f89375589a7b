// What plays the sounds of the platform itself: _UIFeedback, which every process with an interface
// has, and SBUISound, which the home screen has. Both are reached by messages, so a replaced
// method takes effect; whoever made the classes is told what the platform's own methods play.
//     registerFeedbackClasses(runtime, [](std::uint64_t number) { … });
//     runtime.send<void>(*makeFeedback(runtime, 1104), "play");
#pragma once

#include "desktop/runtime/runtime.h"
#include "platform/springboard.h"
#include "platform/uikit.h"
#include "simulator/toolkit/class_names.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace velmoranth::simulator {

// The platform's own sound of that number plays: a feedback's system sound, or the event that the
// home screen asked a sound for.
using PlaysSystemSound = std::function<void(std::uint64_t number)>;

enum class FeedbackProcess { homeScreen, other };

// Makes the classes known that such a process has. `plays` may be empty.
//     -[_UIFeedback play]                              void(platform::UIFeedback&)
//     -[_UIFeedback _effectiveSystemSoundID]           std::uint32_t(platform::UIFeedback&)
//     +[SBUISound soundWithFeedbackEventType:]         platform::SBUISoundRef(platform::Class&,
//                                                                             std::uint64_t)
// The first sends the second to its feedback and tells `plays` the answer. The third gives a
// SystemSound and plays nothing: who has asked for a sound plays it (playFeedbackEvent).
void registerFeedbackClasses(desktop::Runtime& runtime, PlaysSystemSound plays,
                             FeedbackProcess process = FeedbackProcess::homeScreen);

// A feedback whose sound has that number. It sends messages by `runtime`, which outlives it.
[[nodiscard]] std::shared_ptr<platform::UIFeedback> makeFeedback(desktop::Runtime& runtime,
                                                                 std::uint32_t systemSoundID);

// The event that it goes with.
using SystemSound = ObjectWith<"SBUISound", std::uint64_t, platform::SBUISound>;

// What the home screen does on such an event: sends soundWithFeedbackEventType: to SBUISound, and
// plays the sound that it is given, if any. Whether it was given one; `plays` may be empty.
bool playFeedbackEvent(desktop::Runtime& runtime, std::uint64_t feedbackEventType,
                       const PlaysSystemSound& plays);

}  // namespace velmoranth::simulator
