#include "desktop/system/audio_session.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace velmoranth::desktop {
namespace {

constexpr std::string_view kCategories[] = {
    "AVAudioSessionCategoryAmbient",         "AVAudioSessionCategorySoloAmbient",
    "AVAudioSessionCategoryPlayback",        "AVAudioSessionCategoryRecord",
    "AVAudioSessionCategoryPlayAndRecord",   "AVAudioSessionCategoryMultiRoute",
    "AVAudioSessionCategoryAudioProcessing",
};

}  // namespace

bool RecordedAudioSession::setCategory(const std::string& category) {
    requests_.push_back(category);
    if (std::find(std::begin(kCategories), std::end(kCategories), category) ==
        std::end(kCategories)) {
        return false;
    }
    category_ = category;
    return true;
}

}  // namespace velmoranth::desktop
