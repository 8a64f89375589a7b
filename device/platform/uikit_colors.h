// The engine's colours as UIKit's.
#pragma once

#include "platform/core_graphics.h"

#import <Foundation/Foundation.h>

@class UIColor;

namespace velmoranth::device {

// Autoreleased; one of the platform's own where the colour has a name there.
[[nodiscard]] UIColor* toNative(const platform::Color& color);

}  // namespace velmoranth::device
