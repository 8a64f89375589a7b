// AVFoundation, as far as the library calls it.
#pragma once

#import <Foundation/Foundation.h>

@interface AVAudioSession : NSObject
+ (AVAudioSession*)sharedInstance;
- (BOOL)setCategory:(NSString*)category error:(NSError**)error;
- (BOOL)setActive:(BOOL)active error:(NSError**)error;
@end

@interface AVAudioPlayer : NSObject
- (id)initWithContentsOfURL:(NSURL*)url error:(NSError**)error;
- (id)initWithData:(NSData*)data error:(NSError**)error;
- (void)setVolume:(float)volume;
- (void)setDelegate:(id)delegate;
- (BOOL)prepareToPlay;
- (BOOL)play;
@end
