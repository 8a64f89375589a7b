// Bundles, places and the process.
#pragma once

#import <Foundation/NSObject.h>

@interface NSBundle : NSObject
+ (NSBundle*)mainBundle;
+ (NSBundle*)bundleWithPath:(NSString*)path;
- (NSString*)bundleIdentifier;
- (NSString*)bundlePath;
- (BOOL)load;
@end

@interface NSURL : NSObject <NSCopying>
+ (NSURL*)URLWithString:(NSString*)text;
+ (NSURL*)fileURLWithPath:(NSString*)path;
- (NSString*)absoluteString;
- (NSString*)path;
@end

@interface NSProcessInfo : NSObject
+ (NSProcessInfo*)processInfo;
- (NSString*)processName;
@end
