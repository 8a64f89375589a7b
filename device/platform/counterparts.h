// Objects of the engine that the platform is to see, each with the Objective-C object that stands
// for it there.
#pragma once

#include "platform/objc_runtime.h"

#import <Foundation/Foundation.h>

namespace velmoranth::device {

// `counterpart` is not held; it takes itself away before it ends.
void addCounterpart(const platform::Object& object, id counterpart);
void removeCounterpart(const platform::Object& object);

// Nil when the object has none.
[[nodiscard]] id counterpartOf(const platform::Object& object);

}  // namespace velmoranth::device
