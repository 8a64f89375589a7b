#include "sounds/theme_sounds.h"

#include "core/format.h"
#include "platform/platform.h"
#include "theme/theme_selection.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::sounds {

using core::stringWithFormat;
using platform::platform;

namespace {

struct SystemSound {
    std::int64_t number;
    const char* file;
};

constexpr std::array<SystemSound, 8> kSystemSounds{{
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
constexpr std::uint64_t kFirstEventType = 1002;
constexpr std::array<const char*, 7> kFeedbackSounds{
    "lock.caf", "Anticipate.caf", "key_press_click.caf", nullptr,
    nullptr,    nullptr,          "photoShutter.caf"};

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
