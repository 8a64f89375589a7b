#include "record/words.h"

#include "record/recorder.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace velmoranth::record {
namespace {

// Of a text that is told; what is longer is the content of a file, not a name.
constexpr std::size_t kLongestText = 512;  // bytes

std::string component(double value) {
    std::array<char, 8> digits{};
    const auto byte = static_cast<unsigned>(std::lround(std::fmin(std::fmax(value, 0), 1) * 255));
    std::snprintf(digits.data(), digits.size(), "%02X", byte);
    return digits.data();
}

std::string points(double number) {
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%.6g", number == 0 ? 0.0 : number);
    return digits.data();
}

template <class Number>
std::string shortest(Number number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number == 0 ? 0 : number);
    return {digits.begin(), end.ptr};
}

std::string namedBy(const platform::Object& object, const platform::NullableString& name) {
    return object.className() + " " + (name ? *name : std::string(kNil));
}

}  // namespace

std::string words(double number) {
    return shortest(number);
}

std::string words(float number) {
    return shortest(number);
}

std::string wordsOfMode(unsigned mode) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%04o", mode);
    return digits.data();
}

std::string words(std::string_view text) {
    std::string told = "\"";
    for (const char c : text.substr(0, kLongestText)) {
        if (c == '"' || c == '\\') {
            told += '\\';
            told += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            std::array<char, 8> digits{};
            std::snprintf(digits.data(), digits.size(), "\\x%02X", static_cast<unsigned>(c));
            told += digits.data();
        } else {
            told += c;
        }
    }
    return told + (text.size() > kLongestText ? "…\"" : "\"");
}

std::string words(const platform::Size& size) {
    return points(size.width) + "×" + points(size.height);
}

std::string words(const platform::Point& point) {
    return "(" + points(point.x) + ", " + points(point.y) + ")";
}

std::string words(const platform::Rect& rect) {
    return words(rect.origin) + " " + words(rect.size);
}

std::string words(const platform::Color& color) {
    std::string text = "#" + component(color.red) + component(color.green) + component(color.blue);
    return color.alpha == 1 ? text : text + component(color.alpha);
}

std::string words(const platform::Data& data) {
    return std::to_string(data.size()) + " bytes";
}

std::string words(const platform::Dictionary& dictionary) {
    return "dictionary of " + std::to_string(dictionary.size());
}

std::string words(const platform::PrintableDictionary& dictionary) {
    return words(dictionary.values);
}

std::string words(const platform::Date& date) {
    return words(date.secondsSinceReferenceDate) + " s";
}

std::string words(const platform::FileExistence& existence) {
    return !existence.exists ? "NO" : existence.isDirectory ? "folder" : "file";
}

std::string words(const platform::SBIconImageInfo& info) {
    return words(info.size) + " @" + words(info.scale) + "x, radius " +
           words(info.continuousCornerRadius);
}

std::string words(const platform::OpenedCatalog& opened) {
    return opened.catalog == nullptr ? std::string(kNil) : words(opened.catalog);
}

std::string words(const platform::Object& object) {
    const InPlatform asking;  // is nothing of the engine's
    if (const auto* const named = dynamic_cast<const Named*>(&object)) {
        if (std::string name = named->nameInRecords(); !name.empty()) {
            return name;
        }
    }
    if (const auto* const cls = dynamic_cast<const platform::Class*>(&object)) {
        return cls->name();
    }
    if (const auto* const image = dynamic_cast<const platform::Image*>(&object)) {
        return words(image->size()) + " @" + words(image->scale()) + "x";
    }
    if (const auto* const bitmap = dynamic_cast<const platform::BitmapImage*>(&object)) {
        const platform::BitmapLayout& layout = bitmap->layout();
        return std::to_string(layout.width) + "×" + std::to_string(layout.height) +
               (bitmap->isMask() ? " mask" : " pixels");
    }
    if (const auto* const view = dynamic_cast<const platform::View*>(&object)) {
        const int tag = view->tag();
        return object.className() + (tag == 0 ? "" : " #" + std::to_string(tag));
    }
    if (const auto* const icon = dynamic_cast<const platform::SBIcon*>(&object)) {
        return namedBy(object, icon->leafIdentifier());
    }
    if (const auto* const bundle = dynamic_cast<const platform::Bundle*>(&object)) {
        return namedBy(object, bundle->bundleIdentifier());
    }
    if (const auto* const glyph = dynamic_cast<const platform::CUINamedVectorGlyph*>(&object)) {
        return namedBy(object, glyph->name());
    }
    if (const auto* const image = dynamic_cast<const platform::CUINamedImage*>(&object)) {
        return namedBy(object, image->name());
    }
    return object.className();
}

}  // namespace velmoranth::record
