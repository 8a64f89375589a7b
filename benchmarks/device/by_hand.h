// The two replacements as somebody would write them by hand in plain Objective-C++, with the same
// calls of the platform's methods as the library's.
#pragma once

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

namespace velmoranth::benchmarks {

// Replaces -alpha and -imageForIcon:, with theming on.
void hookByHand(Class labelView, Class imageCache);

}  // namespace velmoranth::benchmarks
