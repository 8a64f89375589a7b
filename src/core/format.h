// Filling the system's format strings, for log lines and paths. The literal is the system's own
// text with the platform's placeholders; kinds and number of the arguments are checked against it
// at compile time.
//
//     NSLog("Velmoranth useIconFromDict : %@", key);
//     stringWithFormat("/Library/Themes/%@/Info.plist", theme);
#pragma once

#include "platform/foundation.h"
#include "platform/objc_runtime.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace velmoranth::core {

// What a placeholder takes: %@ an object (a string, a property-list value, a handle; nil prints
// "(null)"), %s a C string, %i and %d an int, %u an unsigned int, %ld a long, %lld and %llu 64
// bits, %f a double.
enum class FormatKind {
    object,
    cString,
    intNumber,
    unsignedNumber,
    longNumber,
    int64Number,
    uint64Number,
    real,
    unsupported
};

namespace detail {

template <class T>
struct IsObjectHandle : std::false_type {};

template <class T>
struct IsObjectHandle<std::shared_ptr<T>> : std::is_convertible<T*, const platform::Object*> {};

template <class T>
consteval FormatKind kindOf() {
    using Plain = std::remove_cvref_t<T>;
    if constexpr (std::same_as<Plain, std::string> ||
                  std::same_as<Plain, platform::NullableString> ||
                  std::same_as<Plain, platform::PropertyList> || IsObjectHandle<Plain>::value) {
        return FormatKind::object;
    } else if constexpr (std::convertible_to<T, const char*>) {
        return FormatKind::cString;
    } else if constexpr (std::same_as<Plain, int>) {
        return FormatKind::intNumber;
    } else if constexpr (std::same_as<Plain, unsigned>) {
        return FormatKind::unsignedNumber;
    } else if constexpr (std::same_as<Plain, long>) {
        return FormatKind::longNumber;
    } else if constexpr (std::same_as<Plain, long long>) {
        return FormatKind::int64Number;
    } else if constexpr (std::same_as<Plain, unsigned long long>) {
        return FormatKind::uint64Number;
    } else if constexpr (std::same_as<Plain, double> || std::same_as<Plain, float>) {
        return FormatKind::real;
    } else {
        return FormatKind::unsupported;
    }
}

struct Placeholder {
    std::string_view text;
    FormatKind kind;
};

// "%@" comes before any other; "%%" is no placeholder and is not used by the system's texts.
inline constexpr std::array<Placeholder, 9> kPlaceholders{{
    {"%@", FormatKind::object},
    {"%s", FormatKind::cString},
    {"%i", FormatKind::intNumber},
    {"%d", FormatKind::intNumber},
    {"%u", FormatKind::unsignedNumber},
    {"%f", FormatKind::real},
    {"%ld", FormatKind::longNumber},
    {"%lld", FormatKind::int64Number},
    {"%llu", FormatKind::uint64Number},
}};

// The placeholder at the start of `text`, one with no text when there is none.
constexpr Placeholder placeholderAt(std::string_view text) {
    for (const Placeholder& placeholder : kPlaceholders) {
        if (text.starts_with(placeholder.text)) {
            return placeholder;
        }
    }
    return {.text = {}, .kind = FormatKind::unsupported};
}

}  // namespace detail

// A format string that was checked against the types of its arguments.
template <class... Arguments>
class FormatString {
  public:
    // The literal must take exactly these arguments; anything else does not compile.
    // NOLINTNEXTLINE(google-explicit-constructor): a literal is passed as it stands.
    consteval FormatString(const char* text) : text_(text) {
        constexpr std::array<FormatKind, sizeof...(Arguments) + 1> kKinds{
            detail::kindOf<Arguments>()..., FormatKind::unsupported};
        std::size_t next = 0;
        std::string_view rest(text);
        while (!rest.empty()) {
            if (rest.front() != '%') {
                rest.remove_prefix(1);
                continue;
            }
            const detail::Placeholder placeholder = detail::placeholderAt(rest);
            if (placeholder.text.empty() || kKinds[next] != placeholder.kind) {
                placeholderAndArgumentDiffer();
            }
            ++next;
            rest.remove_prefix(placeholder.text.size());
        }
        if (next != sizeof...(Arguments)) {
            placeholderAndArgumentDiffer();
        }
    }

    [[nodiscard]] const char* text() const { return text_; }

  private:
    // Not constexpr: reaching it makes the format string no constant, which the compiler reports
    // here.
    [[noreturn]] static void placeholderAndArgumentDiffer();

    const char* text_;
};

// One argument, ready to be printed: objects as their description.
using FormatArgument = std::variant<std::string, long long, unsigned long long, double>;

[[nodiscard]] FormatArgument formatArgument(const std::string& text);
[[nodiscard]] FormatArgument formatArgument(const platform::NullableString& text);
[[nodiscard]] FormatArgument formatArgument(const platform::PropertyList& value);
[[nodiscard]] FormatArgument formatArgument(const char* text);
[[nodiscard]] FormatArgument formatArgument(int number);
[[nodiscard]] FormatArgument formatArgument(unsigned number);
[[nodiscard]] FormatArgument formatArgument(long number);
[[nodiscard]] FormatArgument formatArgument(long long number);
[[nodiscard]] FormatArgument formatArgument(unsigned long long number);
[[nodiscard]] FormatArgument formatArgument(double number);

template <std::derived_from<platform::Object> T>
[[nodiscard]] FormatArgument formatArgument(const std::shared_ptr<T>& object) {
    return object ? object->description() : std::string("(null)");
}

// `format` with its placeholders filled from `arguments` in order. Both fit: the callers below
// checked.
[[nodiscard]] std::string fill(const char* format, std::span<const FormatArgument> arguments);

// +[NSString stringWithFormat:].
template <class... Arguments>
[[nodiscard]] std::string stringWithFormat(FormatString<std::type_identity_t<Arguments>...> format,
                                           const Arguments&... arguments) {
    const std::array<FormatArgument, sizeof...(Arguments)> list{formatArgument(arguments)...};
    return fill(format.text(), list);
}

// Writes one line to the system log.
void writeLogLine(const std::string& line);

// NSLog.
template <class... Arguments>
void NSLog(FormatString<std::type_identity_t<Arguments>...> format, const Arguments&... arguments) {
    writeLogLine(stringWithFormat(format, arguments...));
}

}  // namespace velmoranth::core
