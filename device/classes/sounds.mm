// The fixed sounds of the settings panel.
#include "sounds/sounds.h"

#include "device/classes/answer.h"
#include "device/classes/engine_object.h"
#include "device/platform/handles.h"
#import <Foundation/Foundation.h>

#include <memory>

@class AVAudioPlayer;

using velmoranth::device::EngineObject;
using velmoranth::device::handOver;
using velmoranth::device::wrap;
using velmoranth::device::wrapAny;
using Engine = velmoranth::sounds::Sounds;

@interface Sounds : NSObject {
  @private
    EngineObject<Engine>* engine_;
}
@end

@implementation Sounds

- (id)init {
    self = [super init];
    if (self != nil && engine_ == nullptr) {
        engine_ = new EngineObject<Engine>(std::make_shared<Engine>(), self);
    }
    return self;
}

- (void)dealloc {
    delete engine_;
    [super dealloc];
}

- (void)initClass:(id)object {
    (*engine_)->initClass(wrapAny(object));
}

// The engine does not look at the sender of an action.
- (void)PlayButtonClick:(id)sender {
    (*engine_)->PlayButtonClick(nullptr);
}

- (void)PlaySlide:(id)sender {
    (*engine_)->PlaySlide(nullptr);
}

- (void)PlaySlideWithClick:(id)sender {
    (*engine_)->PlaySlideWithClick(nullptr);
}

- (void)PlayError:(id)sender {
    (*engine_)->PlayError(nullptr);
}

- (void)PlayReboot:(id)sender {
    (*engine_)->PlayReboot(nullptr);
}

- (void)PlaySuccess:(id)sender {
    (*engine_)->PlaySuccess(nullptr);
}

- (void)PlayOn:(id)sender {
    (*engine_)->PlayOn(nullptr);
}

- (void)PlayOff:(id)sender {
    (*engine_)->PlayOff(nullptr);
}

- (AVAudioPlayer*)soundToPlay {
    return handOver((*engine_)->soundToPlay());
}

- (void)setSoundToPlay:(AVAudioPlayer*)player {
    (*engine_)->setSoundToPlay(wrap<velmoranth::platform::AudioPlayer>(player));
}

@end
