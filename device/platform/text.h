// Between the platform's strings and errors and the engine's.
#pragma once

#include "platform/foundation.h"

#import <Foundation/Foundation.h>

#include <concepts>
#include <string>
#include <string_view>

namespace velmoranth::device {

// The UTF-8 text of a string, U+0000 included; half of a surrogate pair becomes U+FFFD. Nothing for
// nil and for what is no string.
[[nodiscard]] platform::NullableString textOf(id string);

// An autoreleased string; what is no UTF-8 becomes U+FFFD. Nil for nothing.
[[nodiscard]] NSString* stringOf(std::string_view text);

template <std::same_as<platform::NullableString> Text>
[[nodiscard]] NSString* stringOf(const Text& text) {
    return text ? stringOf(std::string_view(*text)) : nil;
}

// The name of the object's class, and what "%@" prints for it.
[[nodiscard]] std::string classNameOf(id object);
[[nodiscard]] std::string descriptionOf(id object);

// What an operation that may fail reported; `error` is looked at only when it did not succeed. A
// failure without an error is one of the platform's without a text.
[[nodiscard]] platform::Failure failureOf(bool succeeded, NSError* error);
[[nodiscard]] platform::Error errorOf(NSError* error);

}  // namespace velmoranth::device
