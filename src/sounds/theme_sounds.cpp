#include "sounds/theme_sounds.h"

#include "core/format.h"
#include "platform/platform.h"
#include "sounds/sound_files.h"
#include "theme/theme_selection.h"

#include <optional>
#include <string>
#include <vector>

namespace velmoranth::sounds {

using core::stringWithFormat;
using platform::platform;

namespace {

// Of the first active theme that has the folder.
std::optional<std::string> soundFolder() {
    for (const theme::ThemeName& themeName : theme::activeThemes()) {
        std::string folder = stringWithFormat("/Library/Themes/%@/UISounds", themeName);
        if (platform().fileManager.fileExistsAtPath(folder)) {
            return folder;
        }
    }
    return std::nullopt;
}

// The folder itself when there is no file to take from it: no player can be made of that.
std::string pathInFolder(const std::string& folder, const char* file) {
    return file == nullptr ? folder : platform::stringByAppendingPathComponent(folder, file);
}

const char* fileOfSystemSound(std::int64_t number) {
    for (const SystemSound& sound : kSystemSounds) {
        if (sound.number == number) {
            return sound.file;
        }
    }
    return nullptr;
}

const char* fileOfFeedback(std::uint64_t eventType) {
    const std::uint64_t index = eventType - kFirstEventType;  // Wraps below the first.
    return index < kFeedbackSounds.size() ? kFeedbackSounds[index] : nullptr;
}

}  // namespace

void ThemeSounds::playUISound(std::int64_t systemSoundID) {
    if (const auto folder = soundFolder()) {
        play(pathInFolder(*folder, fileOfSystemSound(systemSoundID)));
    }
}

void ThemeSounds::playsystemSound(std::uint64_t feedbackEventType) {
    if (const auto folder = soundFolder()) {
        play(pathInFolder(*folder, fileOfFeedback(feedbackEventType)));
    }
}

void ThemeSounds::play(const std::string& path) {
    audiosession_ = platform().audio.sharedInstance();
    audiosession_->setCategory(platform::kAudioSessionCategoryAmbient);
    audiosession_->setActive(true);
    soundToPlay_ = platform().audio.audioPlayerWithContentsOfURL(path);
    if (soundToPlay_ != nullptr) {
        soundToPlay_->prepareToPlay();
        soundToPlay_->play();
    }
}

}  // namespace velmoranth::sounds
