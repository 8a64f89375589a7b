// How a replacement reaches the platform's own method: it is handed its row's saved implementation
// and calls it with the receiver and the arguments, each time anew.
#pragma once

#include "platform/objc_runtime.h"

namespace velmoranth::core {

template <class Signature>
class OriginalImplementation;

// The platform's implementation of a method R(Receiver&, Args...).
template <class R, class Receiver, class... Args>
class OriginalImplementation<R(Receiver&, Args...)> {
  public:
    // Calls the platform's method without a way through the slot; `call` is what was handed in.
    using Direct = R (*)(const void* call, Receiver& self, const Args&... args);

    // The same, and says whether the result is any object at all.
    using DirectTest = bool (*)(const void* call, Receiver& self, const Args&... args);

    // `saved` is the row's slot; it outlives every call.
    explicit OriginalImplementation(const platform::Implementation& saved) : saved_(&saved) {}

    // `call` outlives this object.
    OriginalImplementation(Direct direct, DirectTest test, const void* call)
        : direct_(direct), test_(test), call_(call) {}

    // Calls the platform's method; the zero value when the slot is empty.
    R operator()(Receiver& self, const Args&... args) const {
        if (direct_ != nullptr) {
            return direct_(call_, self, args...);
        }
        return throughSlot(self, args...);
    }

    // Calls the platform's method all the same where nothing of its result is needed but whether it
    // is nil.
    bool givesObject(Receiver& self, const Args&... args) const {
        return test_ != nullptr ? test_(call_, self, args...) : (*this)(self, args...) != R();
    }

  private:
    // Apart, so that the direct way is small enough to become part of a replacement.
    [[gnu::noinline]] R throughSlot(Receiver& self, const Args&... args) const {
        const auto* function = saved_->template as<R(platform::Object&, Args...)>();
        return function == nullptr ? R() : (*function)(self, args...);
    }

    const platform::Implementation* saved_ = nullptr;
    Direct direct_ = nullptr;
    DirectTest test_ = nullptr;
    const void* call_ = nullptr;
};

}  // namespace velmoranth::core
