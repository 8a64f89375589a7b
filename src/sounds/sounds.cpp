#include "sounds/sounds.h"

#include "platform/platform.h"

namespace velmoranth::sounds {

using platform::ObjectRef;
using platform::platform;

namespace {

// The sounds that come often are kept very quiet.
constexpr float kQuiet = 0.05F;
constexpr float kSwoosh = 0.8F;
constexpr float kHalf = 0.5F;
constexpr float kFull = 1.0F;

}  // namespace

void Sounds::initClass(const ObjectRef& object) {
    if (object != nullptr) {
        platform().audio.sharedInstance()->setCategory(platform::kAudioSessionCategoryAmbient);
    }
}

void Sounds::PlayButtonClick(const ObjectRef& /*sender*/) {
    play("/User/Library/VelMoranth/Sounds/button_click.caf", kQuiet);
}

void Sounds::PlaySlide(const ObjectRef& /*sender*/) {
    play("/User/Library/VelMoranth/Sounds/cell_swoosh.caf", kSwoosh);
}

void Sounds::PlaySlideWithClick(const ObjectRef& /*sender*/) {
    play("/User/Library/VelMoranth/Sounds/SlideClick.caf", kQuiet);
}

void Sounds::PlayError(const ObjectRef& /*sender*/) {
    play("/User/Library/VelMoranth/Sounds/Error.caf", kHalf);
}

void Sounds::PlayReboot(const ObjectRef& /*sender*/) {
    play("/User/Library/VelMoranth/Sounds/Reboot.caf", kHalf);
}

void Sounds::PlaySuccess(const ObjectRef& /*sender*/) {
    play("/User/Library/VelMoranth/Sounds/success.aif", kHalf);
}

void Sounds::PlayOn(const ObjectRef& /*sender*/) {
    play("/User/Library/VelMoranth/Sounds/beepShortOn.aif", kFull);
}

void Sounds::PlayOff(const ObjectRef& /*sender*/) {
    play("/User/Library/VelMoranth/Sounds/beepShortOff.aif", kFull);
}

void Sounds::play(const char* path, float volume) {
    const platform::AudioPlayerRef player =
        platform().audio.audioPlayerWithData(platform().fileManager.dataWithContentsOfFile(path));
    setSoundToPlay(player);
    if (player != nullptr) {
        player->setDelegate(*this);
        player->setVolume(volume);
        player->play();
    }
}

}  // namespace velmoranth::sounds
