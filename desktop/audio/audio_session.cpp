#include "desktop/audio/audio_session.h"

#include "record/operations.h"
#include "record/recorder.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace velmoranth::desktop {
namespace {

constexpr std::string_view kMixingCategory = "AVAudioSessionCategoryAmbient";

constexpr std::string_view kCategories[] = {
    kMixingCategory,
    "AVAudioSessionCategorySoloAmbient",
    "AVAudioSessionCategoryPlayback",
    "AVAudioSessionCategoryRecord",
    "AVAudioSessionCategoryPlayAndRecord",
    "AVAudioSessionCategoryMultiRoute",
    "AVAudioSessionCategoryAudioProcessing",
};

}  // namespace

bool RecordedAudioSession::setCategory(const std::string& category) {
    const record::Told told =
        record::tell(*this, record::messageOf("AudioSession", "setCategory"), category);
    requests_.push_back(category);
    if (std::find(std::begin(kCategories), std::end(kCategories), category) ==
        std::end(kCategories)) {
        return told.answered(false);
    }
    category_ = category;
    apply();
    return told.answered(true);
}

bool RecordedAudioSession::setActive(bool active) {
    const record::Told told =
        record::tell(*this, record::messageOf("AudioSession", "setActive"), active);
    if (!active && active_ && device_.isPlaying && device_.isPlaying()) {
        return told.answered(false);
    }
    active_ = active;
    apply();
    return told.answered(true);
}

void RecordedAudioSession::apply() {
    if (active_ && category_ != kMixingCategory && device_.interruptOthers) {
        device_.interruptOthers();
    }
}

}  // namespace velmoranth::desktop
