// How the methods of the library's classes take their arguments to the engine's functions and bring
// the results back. What a method gives lives as long as its caller's pool.
#pragma once

#include "platform/core_graphics.h"

#include "device/hooks/arguments.h"
#include "device/platform/text.h"
#include "device/platform/uikit_handles.h"
#import <Foundation/Foundation.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace velmoranth::device {

// A string that becomes part of a path or of a line is there as the platform prints it, whatever it
// is: nil as "(null)".
template <>
struct Argument<std::string> {
    using Native = id;

    static std::string fromNative(id object) { return descriptionOf(object); }

    static id toNative(const std::string& text, id /*given*/) { return stringOf(text); }
};

template <>
struct Argument<std::vector<std::string>> {
    using Native = id;

    // None for what is no array.
    static std::vector<std::string> fromNative(id array) {
        std::vector<std::string> texts;
        forEach(array, [&texts](id element) { texts.push_back(descriptionOf(element)); });
        return texts;
    }
};

template <>
struct Argument<platform::Color> {
    using Native = id;

    static id toNative(const platform::Color& color, id /*given*/) {
        return static_cast<id>(device::toNative(color));
    }
};

template <>
struct Argument<platform::Data> {
    using Native = id;

    // Only the beginning, which is what is asked about.
    static platform::Data fromNative(id data) {
        if (![data isKindOfClass:[NSData class]] || [static_cast<NSData*>(data) length] == 0) {
            return {};
        }
        return {
            *static_cast<const platform::Data::value_type*>([static_cast<NSData*>(data) bytes])};
    }
};

template <class T>
[[nodiscard]] id handOver(const std::shared_ptr<T>& object) {
    return [[nativeOf(object) retain] autorelease];
}

// What the function gives for a message's arguments.
template <class R, class... Args>
auto answer(R (*function)(Args...), typename Argument<std::decay_t<Args>>::Native... arguments) {
    if constexpr (std::is_void_v<R>) {
        function(Argument<std::decay_t<Args>>::fromNative(arguments)...);
    } else {
        using Native = typename Argument<R>::Native;
        // Holds the platform's object until it is the caller's pool's.
        const R value = function(Argument<std::decay_t<Args>>::fromNative(arguments)...);
        const Native result = Argument<R>::toNative(value, Native{});
        if constexpr (std::is_same_v<Native, id>) {
            return static_cast<id>([[result retain] autorelease]);
        } else {
            return result;
        }
    }
}

}  // namespace velmoranth::device
