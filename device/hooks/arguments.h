// How the arguments and results of a replaced method pass between the phone's calling convention
// and the engine's types.
#pragma once

#include "platform/springboard.h"

#include "device/platform/core_graphics_handles.h"
#include "device/platform/geometry.h"
#include "device/platform/handle.h"
#include "device/platform/text.h"

#include <memory>

namespace velmoranth::device {

// SBIconImageInfo as the phone passes it: four doubles, in four registers.
struct NativeIconImageInfo {
    CGFloat width;
    CGFloat height;
    CGFloat scale;
    CGFloat continuousCornerRadius;
};

// What stands for the engine's type T in a method's true signature, and the ways there and back.
// `toNative` is also told what the caller gave: an argument that comes back as it went in is passed
// on as the caller's own object. Numbers are as wide on both sides.
template <class T>
struct Argument {
    using Native = T;

    static T fromNative(T value) { return value; }

    static T toNative(T value, T /*given*/) { return value; }
};

template <>
struct Argument<bool> {
    using Native = BOOL;

    static bool fromNative(BOOL value) { return value != 0; }

    // BOOL has more values than two where it is a char.
    static BOOL toNative(bool value, BOOL given) { return value == (given != 0) ? given : value; }
};

template <class T, class NativeT>
struct GeometryArgument {
    using Native = NativeT;

    static T fromNative(NativeT value) { return device::fromNative(value); }

    static NativeT toNative(const T& value, NativeT /*given*/) { return device::toNative(value); }
};

template <>
struct Argument<platform::Point> : GeometryArgument<platform::Point, CGPoint> {};

template <>
struct Argument<platform::Size> : GeometryArgument<platform::Size, CGSize> {};

template <>
struct Argument<platform::Rect> : GeometryArgument<platform::Rect, CGRect> {};

template <>
struct Argument<platform::SBIconImageInfo> {
    using Native = NativeIconImageInfo;

    static platform::SBIconImageInfo fromNative(const Native& info) {
        return {{info.width, info.height}, info.scale, info.continuousCornerRadius};
    }

    static Native toNative(const platform::SBIconImageInfo& info, const Native& /*given*/) {
        return {info.size.width, info.size.height, info.scale, info.continuousCornerRadius};
    }
};

template <>
struct Argument<platform::NullableString> {
    using Native = id;

    static platform::NullableString fromNative(id string) { return textOf(string); }

    // What is no string is nothing to the engine, and the platform's method is given it all the
    // same.
    static id toNative(const platform::NullableString& text, id given) {
        return text == textOf(given) ? given : stringOf(text);
    }
};

// Handles.
template <class T>
struct Argument<std::shared_ptr<T>> {
    using Native = id;

    static std::shared_ptr<T> fromNative(id object) { return wrap<T>(object); }

    static id toNative(const std::shared_ptr<T>& object, id /*given*/) { return nativeOf(object); }
};

// What the engine only passes on, whatever its class.
template <>
struct Argument<platform::ObjectRef> {
    using Native = id;

    static platform::ObjectRef fromNative(id object) {
        return object == nil ? nullptr
                             : std::make_shared<Handle<platform::Object>>(object, Hold::retain);
    }

    static id toNative(const platform::ObjectRef& object, id /*given*/) { return nativeOf(object); }
};

template <>
struct Argument<platform::BitmapImageRef> {
    using Native = void*;

    static platform::BitmapImageRef fromNative(void* image) {
        return wrap<platform::BitmapImage>(image);
    }

    static void* toNative(const platform::BitmapImageRef& image, void* /*given*/) {
        return image == nullptr ? nullptr : image->native();
    }
};

}  // namespace velmoranth::device
