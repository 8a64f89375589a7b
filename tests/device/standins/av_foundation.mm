#import "device/standins/av_foundation.h"

#include <cstring>
#include <mutex>

@protocol PlayerDelegate
- (void)audioPlayerDidFinishPlaying:(AVAudioPlayer*)player successfully:(BOOL)successfully;
@end

namespace velmoranth::standins {
namespace {

struct Playing {
    std::mutex mutex;
    std::vector<AVAudioPlayer*> players;
};

Playing& playing() {
    static auto* const instance = new Playing;
    return *instance;
}

void stop(AVAudioPlayer* player) {
    const std::scoped_lock lock(playing().mutex);
    std::erase(playing().players, player);
    player->_isPlaying = NO;
}

void start(AVAudioPlayer* player) {
    stop(player);
    const std::scoped_lock lock(playing().mutex);
    playing().players.push_back(player);
    player->_isPlaying = YES;
}

// Nil where there is no file.
NSData* dataOf(NSString* path) {
    const Unrecorded reading;
    BOOL isDirectory = NO;
    const BOOL exists = [[NSFileManager defaultManager] fileExistsAtPath:path
                                                             isDirectory:&isDirectory];
    return exists && !isDirectory ? [NSData dataWithContentsOfFile:path] : nil;
}

bool isSound(NSData* data) {
    constexpr const char* kBeginnings[] = {"caff", "FORM", "RIFF"};
    for (const char* const beginning : kBeginnings) {
        if ([data length] >= 4 && std::memcmp([data bytes], beginning, 4) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace

void finishPlaying(AVAudioPlayer* player, bool successfully) {
    [[player retain] autorelease];
    stop(player);
    const id delegate = player->_delegate;
    if ([delegate respondsToSelector:@selector(audioPlayerDidFinishPlaying:successfully:)]) {
        [static_cast<id<PlayerDelegate>>(delegate) audioPlayerDidFinishPlaying:player
                                                                  successfully:successfully];
    }
}

std::vector<AVAudioPlayer*> playingPlayers() {
    const std::scoped_lock lock(playing().mutex);
    return playing().players;
}

}  // namespace velmoranth::standins

using namespace velmoranth::standins;

@implementation AVAudioSession

+ (AVAudioSession*)sharedInstance {
    static AVAudioSession* const kSession = [[AVAudioSession alloc] init];
    const Noted noted = received(self, _cmd);
    return noted.answered(answerSet(self, _cmd).value_or(kSession));
}

- (BOOL)setCategory:(NSString*)category error:(NSError**)error {
    const Noted noted = received(self, _cmd, category, wordsIfSet(error));
    setVariable(self, "_category", category);
    return noted.answered(static_cast<BOOL>(numberAnswer(self, _cmd, 1) != 0));
}

- (BOOL)setActive:(BOOL)active error:(NSError**)error {
    const Noted noted = received(self, _cmd, active, wordsIfSet(error));
    _isActive = active;
    return noted.answered(static_cast<BOOL>(numberAnswer(self, _cmd, 1) != 0));
}

@end

@interface AVAudioPlayer (SettingUp)
- (id)initWithSound:(NSData*)data url:(NSURL*)url;
@end

@implementation AVAudioPlayer (SettingUp)

- (id)initWithSound:(NSData*)data url:(NSURL*)url {
    if (!isSound(data)) {
        [self release];
        return nil;
    }
    if ((self = [super init])) {
        _data = [data retain];
        _url = [url retain];
        _volume = 1;
    }
    return self;
}

@end

@implementation AVAudioPlayer

- (id)initWithContentsOfURL:(NSURL*)url error:(NSError**)error {
    NSString* const path = [url path];
    NSData* const data = dataOf(path);
    readFile(self, _cmd, path, isSound(data) ? self : nil, {wordsIfSet(error).text});
    return [self initWithSound:data url:url];
}

- (id)initWithData:(NSData*)data error:(NSError**)error {
    const Noted noted = received(self, _cmd, data, wordsIfSet(error));
    return noted.answered([self initWithSound:data url:nil]);
}

- (void)dealloc {
    stop(self);
    [_data release];
    [_url release];
    [super dealloc];
}

- (void)setVolume:(float)volume {
    received(self, _cmd, volume);
    _volume = volume;
}

- (id)delegate {
    return _delegate;
}

- (void)setDelegate:(id)delegate {
    received(self, _cmd, delegate);
    _delegate = delegate;
}

- (BOOL)prepareToPlay {
    const Noted noted = received(self, _cmd);
    return noted.answered(static_cast<BOOL>(numberAnswer(self, _cmd, 1) != 0));
}

- (BOOL)play {
    const Noted noted = received(self, _cmd);
    const BOOL plays = numberAnswer(self, _cmd, 1) != 0;
    if (plays) {
        start(self);
    }
    return noted.answered(plays);
}

@end
