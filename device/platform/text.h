// Between the platform's strings, data, arrays and errors and the engine's.
#pragma once

#include "platform/foundation.h"

#import <Foundation/Foundation.h>

#include <concepts>
#include <optional>
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

// A copy of the bytes; nothing for nil.
[[nodiscard]] std::optional<platform::Data> dataOf(NSData* data);

// Each element in the array's order; nothing for nil and for what is no array.
template <class Take>
void forEach(id array, const Take& take) {
    if (![array isKindOfClass:[NSArray class]]) {
        return;
    }
    NSArray* const elements = static_cast<NSArray*>(array);
    const NSUInteger count = [elements count];
    for (NSUInteger i = 0; i < count; ++i) {
        take([elements objectAtIndex:i]);
    }
}

// The name of the object's class, and what "%@" prints for it.
[[nodiscard]] std::string classNameOf(id object);
[[nodiscard]] std::string descriptionOf(id object);

// What an operation that may fail reported; `error` is looked at only when it did not succeed. A
// failure without an error is one of the platform's without a text. What is no error has neither
// text nor number; all print as they are.
[[nodiscard]] platform::Failure failureOf(bool succeeded, NSError* error);
[[nodiscard]] platform::Error errorOf(NSError* error);

}  // namespace velmoranth::device
