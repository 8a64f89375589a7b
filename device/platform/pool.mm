#include "device/platform/pool.h"

#import <Foundation/Foundation.h>

namespace velmoranth::device {

void withPool(void (*work)()) {
    @autoreleasepool {
        work();
    }
}

}  // namespace velmoranth::device
