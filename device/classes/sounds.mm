// The fixed sounds of the settings panel.
#include "sounds/sounds.h"

#include "device/classes/answer.h"
#include "device/classes/engine_object.h"
#include "device/platform/handles.h"
#import <Foundation/Foundation.h>

#include <memory>

@class AVAudioPlayer;

using velmoranth::device::EngineObject;
using velmoranth::device::engineOf;
using velmoranth::device::handOver;
using velmoranth::device::nativeOf;
using velmoranth::device::wrap;
using velmoranth::device::wrapAny;
using Engine = velmoranth::sounds::Sounds;

namespace {

// The engine's sounds, with the player also in a variable of the instance.
class PanelSounds final : public Engine {
  public:
    // `player` is the instance's, which this ends before.
    explicit PanelSounds(AVAudioPlayer** player) : player_(player) {}

    void setSoundToPlay(const velmoranth::platform::AudioPlayerRef& player) override {
        Engine::setSoundToPlay(player);
        const id previous = static_cast<id>(*player_);
        *player_ = [nativeOf(player) retain];
        [previous release];
    }

  private:
    AVAudioPlayer** player_;
};

}  // namespace

@interface Sounds : NSObject {
  @private
    // By these names, which are keys as well. Nothing sets or reads the second.
    AVAudioPlayer* soundToPlay;
    NSString* themeName;
    EngineObject<PanelSounds>* engine_;
}
@end

@implementation Sounds

static Engine& engineBehind(Sounds* sounds) {
    return engineOf(sounds->engine_, sounds, &sounds->soundToPlay);
}

- (void)dealloc {
    delete engine_;
    [static_cast<id>(soundToPlay) release];
    [themeName release];
    [super dealloc];
}

- (void)initClass:(id)object {
    engineBehind(self).initClass(wrapAny(object));
}

// The engine does not look at the sender of an action.
- (void)PlayButtonClick:(id)sender {
    engineBehind(self).PlayButtonClick(nullptr);
}

- (void)PlaySlide:(id)sender {
    engineBehind(self).PlaySlide(nullptr);
}

- (void)PlaySlideWithClick:(id)sender {
    engineBehind(self).PlaySlideWithClick(nullptr);
}

- (void)PlayError:(id)sender {
    engineBehind(self).PlayError(nullptr);
}

- (void)PlayReboot:(id)sender {
    engineBehind(self).PlayReboot(nullptr);
}

- (void)PlaySuccess:(id)sender {
    engineBehind(self).PlaySuccess(nullptr);
}

- (void)PlayOn:(id)sender {
    engineBehind(self).PlayOn(nullptr);
}

- (void)PlayOff:(id)sender {
    engineBehind(self).PlayOff(nullptr);
}

- (AVAudioPlayer*)soundToPlay {
    return handOver(engineBehind(self).soundToPlay());
}

- (void)setSoundToPlay:(AVAudioPlayer*)player {
    engineBehind(self).setSoundToPlay(wrap<velmoranth::platform::AudioPlayer>(player));
}

@end
