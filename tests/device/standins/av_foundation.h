// Stand-ins of AVFoundation: a session, and players that read their sound and play it when told.
#pragma once

#import "device/standins/messages.h"

@interface AVAudioSession : StandIn {
  @public
    NSString* _category;
    BOOL _isActive;
}
+ (AVAudioSession*)sharedInstance;
- (BOOL)setCategory:(NSString*)category error:(NSError**)error;
- (BOOL)setActive:(BOOL)active error:(NSError**)error;
@end

@interface AVAudioPlayer : StandIn {
  @public
    NSData* _data;
    NSURL* _url;
    float _volume;
    id _delegate;  // not held
    BOOL _isPlaying;
}
// Nil for what does not begin as a CAF, AIFF or WAVE file does.
- (id)initWithContentsOfURL:(NSURL*)url error:(NSError**)error;
- (id)initWithData:(NSData*)data error:(NSError**)error;
- (void)setVolume:(float)volume;
- (id)delegate;
- (void)setDelegate:(id)delegate;
- (BOOL)prepareToPlay;
- (BOOL)play;
@end

namespace velmoranth::standins {

// The sound ends, which the delegate is told if it wants to know.
void finishPlaying(AVAudioPlayer* player, bool successfully);

// Players that play, the first to begin first; none that nobody holds any more.
[[nodiscard]] std::vector<AVAudioPlayer*> playingPlayers();

}  // namespace velmoranth::standins
