// How a replacement reaches the platform's own method: it is handed its row's saved implementation
// and calls it with the receiver and the arguments, each time anew.
#pragma once

#include "platform/objc_runtime.h"

#include <utility>

namespace velmoranth::core {

template <class Signature>
class OriginalImplementation;

// The platform's implementation of a method R(Receiver&, Args...).
template <class R, class Receiver, class... Args>
class OriginalImplementation<R(Receiver&, Args...)> {
  public:
    // Calls the platform's method without a way through the slot; `call` is what was handed in.
    using Direct = R (*)(const void* call, Receiver& self, Args... args);

    // `saved` is the row's slot; it outlives every call.
    explicit OriginalImplementation(const platform::Implementation& saved) : saved_(&saved) {}

    // `call` outlives this object.
    OriginalImplementation(Direct direct, const void* call) : direct_(direct), call_(call) {}

    // Calls the platform's method; the zero value when the slot is empty.
    R operator()(Receiver& self, Args... args) const {
        if (direct_ != nullptr) {
            return direct_(call_, self, std::move(args)...);
        }
        const auto* function = saved_->template as<R(platform::Object&, Args...)>();
        return function == nullptr ? R() : (*function)(self, std::move(args)...);
    }

  private:
    const platform::Implementation* saved_ = nullptr;
    Direct direct_ = nullptr;
    const void* call_ = nullptr;
};

}  // namespace velmoranth::core
