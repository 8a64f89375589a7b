// Methods that take down each call: a replacement, or the platform's implementation that it
// replaces.
#pragma once

#include "platform/objc_runtime.h"

#include "record/recorder.h"

#include <functional>
#include <string>
#include <type_traits>
#include <utility>

namespace velmoranth::record {

// The same method, each call of which is an entry of that kind. The implementation is one of
// exactly this signature; otherwise it comes back as it is.
template <class R, class... Args>
[[nodiscard]] platform::Implementation recordedMethod(const platform::Implementation& method,
                                                      EntryKind kind, const std::string& message) {
    const auto* const function = method.as<R(platform::Object&, Args...)>();
    if (function == nullptr) {
        return method;
    }
    return platform::Implementation(std::function<R(platform::Object&, Args...)>(
        [call = *function, kind, message](platform::Object& receiver, Args... args) -> R {
            if (Recorder::current() == nullptr) {
                return call(receiver, std::move(args)...);
            }
            Frame frame({.kind = kind,
                         .message = message,
                         .subject = words(receiver),
                         .arguments = {words(args)...}});
            if constexpr (std::is_void_v<R>) {
                call(receiver, std::move(args)...);
            } else {
                R result = call(receiver, std::move(args)...);
                frame.answer(words(result));
                return result;
            }
        }));
}

// Signatures of methods, as R(Receiver&, Args...).
template <class... Signatures>
struct Methods;

template <>
struct Methods<> {
    static platform::Implementation recorded(const platform::Implementation& method, EntryKind,
                                             const std::string&) {
        return method;
    }
};

template <class R, class Receiver, class... Args, class... Others>
struct Methods<R(Receiver&, Args...), Others...> {
    // The method when its signature is among these, its calls taken down; otherwise as it is.
    static platform::Implementation recorded(const platform::Implementation& method, EntryKind kind,
                                             const std::string& message) {
        if (method.as<R(platform::Object&, Args...)>() != nullptr) {
            return recordedMethod<R, Args...>(method, kind, message);
        }
        return Methods<Others...>::recorded(method, kind, message);
    }
};

// "-[Class selector]", "+[Class selector]" for a metaclass.
[[nodiscard]] inline std::string messageTo(const platform::Class& cls,
                                           const platform::Selector& selector) {
    return (cls.isMetaclass() ? "+[" : "-[") + cls.name() + " " + selector + "]";
}

}  // namespace velmoranth::record
