// The platform's values in words, the same on every side: "nil", "YES", "60×60 @3x", "UIView #7".
#pragma once

#include "platform/core_graphics.h"
#include "platform/core_ui.h"
#include "platform/foundation.h"
#include "platform/objc_runtime.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velmoranth::record {

inline constexpr const char* kNil = "nil";

// An object that records call by a name of its own: one of several that are alike.
class Named {
  public:
    Named() = default;
    Named(const Named&) = delete;
    Named& operator=(const Named&) = delete;
    virtual ~Named() = default;

    // "" for none.
    [[nodiscard]] virtual std::string nameInRecords() const = 0;
};

// The shortest text that reads back as the same number: "60", "0.5".
[[nodiscard]] std::string words(double number);
[[nodiscard]] std::string words(float number);
// In double quotes; quotes, backslashes and control characters are escaped, and a long one is cut
// off with "…".
[[nodiscard]] std::string words(std::string_view text);
// Points are told to six digits.
[[nodiscard]] std::string words(const platform::Size& size);
[[nodiscard]] std::string words(const platform::Point& point);
[[nodiscard]] std::string words(const platform::Rect& rect);
// "#RRGGBB", with the alpha's two digits where it is not opaque.
[[nodiscard]] std::string words(const platform::Color& color);
[[nodiscard]] std::string words(const platform::Data& data);
[[nodiscard]] std::string words(const platform::Dictionary& dictionary);
[[nodiscard]] std::string words(const platform::PrintableDictionary& dictionary);
[[nodiscard]] std::string words(const platform::Date& date);
[[nodiscard]] std::string words(const platform::FileExistence& existence);
[[nodiscard]] std::string words(const platform::SBIconImageInfo& info);
[[nodiscard]] std::string words(const platform::OpenedCatalog& opened);
// An object that has a name by that, an image by its size in points and its scale, a bitmap by its
// pixels, a view by its class and tag, an icon by its identifier, a class by its name, a bundle by
// its identifier, and every other object by its class.
[[nodiscard]] std::string words(const platform::Object& object);

// Whether there is what a pointer of no type leads to: "set" or "nil".
[[nodiscard]] inline std::string wordsOfPointer(const void* pointer) {
    return pointer == nullptr ? kNil : "set";
}

// A file's mode: "0755".
[[nodiscard]] std::string wordsOfMode(unsigned mode);

[[nodiscard]] inline std::string words(bool value) {
    return value ? "YES" : "NO";
}

[[nodiscard]] inline std::string words(const char* text) {
    return text == nullptr ? std::string(kNil) : words(std::string_view(text));
}

[[nodiscard]] inline std::string words(const std::string& text) {
    return words(std::string_view(text));
}

template <class Integer>
    requires(std::is_integral_v<Integer> && !std::is_same_v<Integer, bool>)
[[nodiscard]] std::string words(Integer value) {
    return std::to_string(value);
}

template <class Enumeration>
    requires std::is_enum_v<Enumeration>
[[nodiscard]] std::string words(Enumeration value) {
    return std::to_string(static_cast<std::underlying_type_t<Enumeration>>(value));
}

template <class T>
[[nodiscard]] std::string words(const std::vector<T>& values);

template <class T>
[[nodiscard]] std::string words(const std::shared_ptr<T>& handle) {
    if (handle == nullptr) {
        return kNil;
    }
    if constexpr (std::is_base_of_v<platform::Object, T>) {
        return words(static_cast<const platform::Object&>(*handle));
    } else {
        return words(*handle);
    }
}

template <class T>
[[nodiscard]] std::string words(const std::optional<T>& value) {
    return value ? words(*value) : std::string(kNil);
}

template <class T>
std::string words(const std::vector<T>& values) {
    std::string text = "(";
    for (const auto& value : values) {
        text += (text.size() > 1 ? ", " : "") + words(value);
    }
    return text + ")";
}

}  // namespace velmoranth::record
