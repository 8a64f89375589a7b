#include "device/platform/text.h"

#include "platform/code_points.h"

#include "device/platform/handle.h"
#include <objc/runtime.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace velmoranth::device {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isSurrogate(std::uint32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

void appendUtf8(std::string& text, std::uint32_t c) {
    const auto continuation = [c](unsigned shift) {
        return static_cast<char>(0x80U | ((c >> shift) & 0x3FU));
    };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += {static_cast<char>(0xC0U | (c >> 6U)), continuation(0)};
    } else if (c < 0x10000) {
        text += {static_cast<char>(0xE0U | (c >> 12U)), continuation(6), continuation(0)};
    } else {
        text += {static_cast<char>(0xF0U | (c >> 18U)), continuation(12), continuation(6),
                 continuation(0)};
    }
}

std::string utf8Of(const unichar* units, std::size_t count) {
    unsigned allBits = 0;
    for (std::size_t i = 0; i < count; ++i) {
        allBits |= units[i];
    }
    if (allBits < 0x80) {
        return std::string(units, units + count);
    }
    std::string text;
    text.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t c = units[i];
        if (isSurrogate(c)) {
            const bool isPair =
                c < 0xDC00 && i + 1 < count && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF;
            c = isPair ? 0x10000 + ((c - 0xD800) << 10U) + (units[++i] - 0xDC00U) : kReplacement;
        }
        appendUtf8(text, c);
    }
    return text;
}

// The least that is written in so many bytes.
constexpr std::array<std::uint32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};

bool isCharacter(const platform::CodePoint& point) {
    // A byte of its own that is no ASCII begins no valid sequence.
    return (point.length == 1 ? point.value < 0x80 : point.value >= kLeast.at(point.length)) &&
           point.value <= 0x10FFFF && !isSurrogate(point.value);
}

std::vector<unichar> utf16Of(std::string_view text) {
    std::vector<unichar> units;
    units.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const platform::CodePoint point = platform::codePointAt(text, i);
        const bool isValid = isCharacter(point);
        const std::uint32_t c = isValid ? point.value : kReplacement;
        i += isValid ? point.length : 1;
        if (c < 0x10000) {
            units.push_back(static_cast<unichar>(c));
        } else {
            units.push_back(static_cast<unichar>(0xD7C0U + (c >> 10U)));
            units.push_back(static_cast<unichar>(0xDC00U + (c & 0x3FFU)));
        }
    }
    return units;
}

bool derivesFrom(Class cls, Class ancestor) {
    while (cls != Nil && cls != ancestor) {
        cls = class_getSuperclass(cls);
    }
    return cls == ancestor;
}

// Nearly all strings are of one class, whose objects are not asked again. A class that only answers
// for others, as proxies do, is asked each time.
bool isString(id object) {
    static constinit std::atomic<const void*> known = nullptr;
    const Class cls = object_getClass(object);
    if (static_cast<const void*>(cls) == known.load(std::memory_order_relaxed)) {
        return true;
    }
    static const Class kString = [NSString class];
    if (![object isKindOfClass:kString]) {
        return false;
    }
    if (derivesFrom(cls, kString)) {
        known.store(static_cast<const void*>(cls), std::memory_order_relaxed);
    }
    return true;
}

}  // namespace

platform::NullableString textOf(id string) {
    if (string == nil || !isString(string)) {
        return std::nullopt;
    }
    // The characters, not a copy in UTF-8 made by the platform: one conversion less, and the
    // platform has none for a half of a surrogate pair.
    const NSUInteger length = [string length];
    constexpr std::size_t kShort = 256;
    if (length <= kShort) {
        std::array<unichar, kShort> units;
        [string getCharacters:units.data() range:NSMakeRange(0, length)];
        return utf8Of(units.data(), length);
    }
    std::vector<unichar> units(length);
    [string getCharacters:units.data() range:NSMakeRange(0, length)];
    return utf8Of(units.data(), length);
}

NSString* stringOf(std::string_view text) {
    if (isAscii(text)) {
        return [[[NSString alloc] initWithBytes:text.data()
                                         length:text.size()
                                       encoding:NSASCIIStringEncoding] autorelease];
    }
    // Decoded here: the platform gives nil for what is no UTF-8, and drops a byte-order mark.
    const std::vector<unichar> units = utf16Of(text);
    return [[[NSString alloc] initWithCharacters:units.data() length:units.size()] autorelease];
}

std::optional<platform::Data> dataOf(NSData* data) {
    if (data == nil) {
        return std::nullopt;
    }
    const auto* const bytes = static_cast<const std::uint8_t*>([data bytes]);
    return platform::Data(bytes, bytes + [data length]);
}

std::string classNameOf(id object) {
    return object_getClassName(object);
}

std::string descriptionOf(id object) {
    return textOf([object description]).value_or("(null)");
}

platform::Failure failureOf(bool succeeded, NSError* error) {
    return succeeded ? platform::Failure() : errorOf(error);
}

platform::Error errorOf(NSError* error) {
    // Of nil too, which prints as itself.
    platform::Error result;
    result.object = std::make_shared<Handle<platform::Object>>(error, Hold::retain);
    if ([error isKindOfClass:classNamed("NSError")]) {
        const NSInteger code = std::clamp<NSInteger>([error code], std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max());
        result.localizedDescription = textOf([error localizedDescription]).value_or("");
        result.domain = textOf([error domain]).value_or("");
        result.code = static_cast<int>(code);
    }
    return result;
}

}  // namespace velmoranth::device
