// CydiaSubstrate: replacing a method and keeping the platform's implementation.
#pragma once

#include "platform/objc_runtime.h"

namespace velmoranth::platform {

class Substrate {
  public:
    Substrate() = default;
    Substrate(const Substrate&) = delete;
    Substrate& operator=(const Substrate&) = delete;
    virtual ~Substrate() = default;

    // MSHookMessageEx: replaces the method `selector` of `cls` (for a class-side method the
    // metaclass) and stores the previous implementation in `*original`, an inherited one included;
    // the parent class stays untouched. With a nil class or a selector that the class does not
    // answer, nothing changes and
    // `*original` is left as it was. `original` must outlive the hook.
    virtual void hookMessageEx(const ClassRef& cls, const Selector& selector,
                               const Implementation& replacement, Implementation* original) = 0;
};

}  // namespace velmoranth::platform
