// Whether what is done leaves objects of the stand-ins behind.
#pragma once

#include "device/standins/standin.h"
#import <Foundation/Foundation.h>

#include <string>
#include <vector>

namespace velmoranth::standins {

// The objects that live before and after the work, with a pool around it. It has been done once
// before: what is made once a process stays.
struct Living {
    std::vector<std::string> before;
    std::vector<std::string> after;
};

template <class Work>
[[nodiscard]] Living livingAround(Work work) {
    @autoreleasepool {
        work();
    }
    Living living;
    living.before = allLiving();
    @autoreleasepool {
        work();
    }
    living.after = allLiving();
    return living;
}

}  // namespace velmoranth::standins
