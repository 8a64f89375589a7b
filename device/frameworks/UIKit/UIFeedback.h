// What is played or felt.
#pragma once

#import <Foundation/Foundation.h>

#include <cstdint>

@interface _UIFeedback : NSObject
- (std::uint32_t)_effectiveSystemSoundID;
@end
