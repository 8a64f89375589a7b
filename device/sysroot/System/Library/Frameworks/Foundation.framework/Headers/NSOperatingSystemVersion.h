// NSProcessInfo, where it compares versions of the system.
#pragma once

#import <Foundation/Foundation.h>

typedef struct {
    NSInteger majorVersion;
    NSInteger minorVersion;
    NSInteger patchVersion;
} NSOperatingSystemVersion;

@interface NSProcessInfo (NSOperatingSystemVersion)
- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version;
@end
