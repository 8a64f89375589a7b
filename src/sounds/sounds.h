// The fixed sounds of the settings panel: clicks, slides, beeps. They have nothing to do with
// themes; their files come with the system, in /User/Library/VelMoranth/Sounds/. Each method takes
// the sender of an action of the panel, which it does not look at. A file that is not there is
// silent.
#pragma once

#include "platform/av_foundation.h"
#include "platform/objc_runtime.h"

#include <string>

namespace velmoranth::sounds {

class Sounds : public platform::Object {
  public:
    [[nodiscard]] std::string className() const override { return "Sounds"; }

    // initClass: gives the shared audio session the ambient category, unless the argument is nil.
    // Does not activate it.
    void initClass(const platform::ObjectRef& object);

    // PlayButtonClick: and the others.
    void PlayButtonClick(const platform::ObjectRef& sender);
    void PlaySlide(const platform::ObjectRef& sender);
    void PlaySlideWithClick(const platform::ObjectRef& sender);
    void PlayError(const platform::ObjectRef& sender);
    void PlayReboot(const platform::ObjectRef& sender);
    void PlaySuccess(const platform::ObjectRef& sender);
    void PlayOn(const platform::ObjectRef& sender);
    void PlayOff(const platform::ObjectRef& sender);

    // The player of the last sound, which a new one replaces and so stops; nil before the first.
    [[nodiscard]] const platform::AudioPlayerRef& soundToPlay() const { return soundToPlay_; }

    // Also how each of the sounds above stores its player, before the player is sent anything.
    virtual void setSoundToPlay(const platform::AudioPlayerRef& player) { soundToPlay_ = player; }

  private:
    void play(const char* path, float volume);

    platform::AudioPlayerRef soundToPlay_;
    platform::NullableString themeName_;  // never set
};

}  // namespace velmoranth::sounds
