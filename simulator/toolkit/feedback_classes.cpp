#include "simulator/toolkit/feedback_classes.h"

#include "simulator/toolkit/class_rows.h"

#include <utility>

namespace velmoranth::simulator {

using desktop::Runtime;
using platform::SBUISoundRef;

namespace {

constexpr const char* kFeedback = "_UIFeedback";
constexpr const char* kSystemSound = "SBUISound";
constexpr const char* kEffectiveSystemSoundID = "_effectiveSystemSoundID";
constexpr const char* kSoundWithFeedbackEventType = "soundWithFeedbackEventType:";

class Feedback final : public platform::UIFeedback {
  public:
    Feedback(Runtime& runtime, std::uint32_t systemSoundID)
        : runtime_(runtime), systemSoundID_(systemSoundID) {}

    [[nodiscard]] std::string className() const override { return kFeedback; }

    [[nodiscard]] std::uint32_t _effectiveSystemSoundID() override {
        return runtime_.send<std::uint32_t>(*this, kEffectiveSystemSoundID);
    }

    [[nodiscard]] std::uint32_t systemSoundID() const { return systemSoundID_; }

  private:
    Runtime& runtime_;
    std::uint32_t systemSoundID_;
};

void tell(const PlaysSystemSound& plays, std::uint64_t number) {
    if (plays) {
        plays(number);
    }
}

}  // namespace

void registerFeedbackClasses(Runtime& runtime, PlaysSystemSound plays, FeedbackProcess process) {
    if (runtime.getClass("NSObject") == nullptr) {
        runtime.addClass("NSObject");
    }
    runtime.addClass(kFeedback, "NSObject");
    ClassMethods(runtime, kFeedback)
        .add(kEffectiveSystemSoundID, &Feedback::systemSoundID)
        .add("play", [plays = std::move(plays)](platform::UIFeedback& feedback) {
            tell(plays, feedback._effectiveSystemSoundID());
        });
    if (process != FeedbackProcess::homeScreen) {
        return;
    }
    runtime.addClass(kSystemSound, "NSObject");
    ClassMethods(runtime, kSystemSound)
        .addToClass(kSoundWithFeedbackEventType,
                    [](std::uint64_t feedbackEventType) -> SBUISoundRef {
                        return std::make_shared<SystemSound>(feedbackEventType);
                    });
}

std::shared_ptr<platform::UIFeedback> makeFeedback(Runtime& runtime, std::uint32_t systemSoundID) {
    return std::make_shared<Feedback>(runtime, systemSoundID);
}

bool playFeedbackEvent(Runtime& runtime, std::uint64_t feedbackEventType,
                       const PlaysSystemSound& plays) {
    const auto sound = runtime.sendToClass<SBUISoundRef, std::uint64_t>(
        kSystemSound, kSoundWithFeedbackEventType, feedbackEventType);
    if (sound == nullptr) {
        return false;
    }
    const auto* const own = dynamic_cast<const SystemSound*>(sound.get());
    tell(plays, own == nullptr ? feedbackEventType : own->value());
    return true;
}

}  // namespace velmoranth::simulator
