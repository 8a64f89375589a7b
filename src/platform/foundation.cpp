#include "platform/foundation.h"

#include "platform/code_points.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace velmoranth::platform {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBareCharacter(char c) {
    return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

template <class... Arguments>
std::string formatted(const char* format, Arguments... arguments) {
    std::array<char, 64> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), format, arguments...);
    return {buffer.data(), static_cast<std::size_t>(length > 0 ? length : 0)};
}

std::string numberDescription(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value > 0 ? "+infinity" : "-infinity";
    }
    return formatted("%0.16g", value);
}

// "2019-01-01 00:00:00 +0000". Days to a civil date after Howard Hinnant's public derivation.
std::string dateDescription(Date date) {
    constexpr std::int64_t kReferenceDay = 11323;  // 2001-01-01 in days since 1970-01-01
    constexpr double kFarthest = 1e13;             // seconds; keeps the arithmetic in range
    const double clamped =
        std::isnan(date.secondsSinceReferenceDate)
            ? 0
            : std::fmin(std::fmax(date.secondsSinceReferenceDate, -kFarthest), kFarthest);
    const auto seconds = static_cast<std::int64_t>(std::floor(clamped));
    const std::int64_t day = (seconds >= 0 ? seconds : seconds - 86399) / 86400;
    const std::int64_t second = seconds - day * 86400;
    const std::int64_t shifted = day + kReferenceDay + 719468;
    const std::int64_t era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
    const std::int64_t dayOfEra = shifted - era * 146097;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t month = (5 * dayOfYear + 2) / 153;
    const std::int64_t dayOfMonth = dayOfYear - (153 * month + 2) / 5 + 1;
    const std::int64_t civilMonth = month < 10 ? month + 3 : month - 9;
    const std::int64_t year = yearOfEra + era * 400 + (civilMonth <= 2 ? 1 : 0);
    return formatted("%04lld-%02lld-%02lld %02lld:%02lld:%02lld +0000",
                     static_cast<long long>(year), static_cast<long long>(civilMonth),
                     static_cast<long long>(dayOfMonth), static_cast<long long>(second / 3600),
                     static_cast<long long>(second / 60 % 60), static_cast<long long>(second % 60));
}

std::string dataDescription(const Data& data) {
    std::string text = "<";
    for (std::size_t i = 0; i < data.size() && text.size() <= kLongestDescription; ++i) {
        if (i > 0 && i % 4 == 0) {
            text += ' ';
        }
        text += formatted("%02x", static_cast<unsigned>(data[i]));
    }
    return text + ">";
}

// A string inside a container: bare when it is all ASCII letters and digits, else in quotes.
std::string quoted(std::string_view text) {
    bool bare = !text.empty();
    for (const char c : text) {
        bare = bare && isBareCharacter(c);
    }
    if (bare) {
        return std::string(text);
    }
    std::string result = "\"";
    for (std::size_t i = 0; i < text.size();) {
        const CodePoint c = codePointAt(text, i);
        i += c.length;
        if (c.value == '"' || c.value == '\\') {
            result += '\\';
            result += static_cast<char>(c.value);
        } else if (c.value == '\n') {
            result += "\\n";
        } else if (c.value < 0x80) {
            result += static_cast<char>(c.value);
        } else if (c.value >= 0x10000) {
            const std::uint32_t offset = c.value - 0x10000;
            result +=
                formatted("\\U%04x\\U%04x", 0xD800 + (offset >> 10U), 0xDC00 + (offset & 0x3FFU));
        } else {
            result += formatted("\\U%04x", c.value);
        }
    }
    return result + "\"";
}

void appendNested(std::string& text, const PropertyList& value, std::size_t level);

// The indentation makes a deep container's text far longer than the container, so the text ends
// here.
bool isFull(const std::string& text) {
    return text.size() > kLongestDescription;
}

void appendContainer(std::string& text, const PropertyList& value, std::size_t level) {
    const std::string indent(level * 4, ' ');
    const std::string inner(level * 4 + 4, ' ');
    if (const auto* array = value.as<PropertyList::Array>()) {
        text += "(\n";
        for (std::size_t i = 0; i < array->size() && !isFull(text); ++i) {
            text += inner;
            appendNested(text, (*array)[i], level + 1);
            text += i + 1 < array->size() ? ",\n" : "\n";
        }
        text += indent + ")";
    } else if (const auto* dictionary = value.as<Dictionary>()) {
        text += "{\n";
        for (const auto& [key, entry] : *dictionary) {
            if (isFull(text)) {
                break;
            }
            text += inner + quoted(key) + " = ";
            appendNested(text, entry, level + 1);
            text += ";\n";
        }
        text += indent + "}";
    }
}

bool isContainer(const PropertyList& value) {
    return value.as<PropertyList::Array>() != nullptr || value.as<Dictionary>() != nullptr;
}

void appendNested(std::string& text, const PropertyList& value, std::size_t level) {
    if (isContainer(value)) {
        text.append(level * 4, ' ');
        appendContainer(text, value, level);
    } else if (value.as<Data>() != nullptr) {
        text += description(value);
    } else {
        text += quoted(description(value));
    }
}

// Moves the containers that a value holds out of it. Those that hold nothing stay.
void takeContainers(PropertyList::Value& value, std::vector<PropertyList>& taken) {
    const auto take = [&taken](PropertyList& member) {
        const auto* const array = member.as<PropertyList::Array>();
        const auto* const dictionary = member.as<Dictionary>();
        if ((array != nullptr && !array->empty()) ||
            (dictionary != nullptr && !dictionary->empty())) {
            taken.push_back(std::move(member));
        }
    };
    if (auto* const array = std::get_if<PropertyList::Array>(&value)) {
        std::ranges::for_each(*array, take);
    } else if (auto* const dictionary = std::get_if<Dictionary>(&value)) {
        std::ranges::for_each(*dictionary, take, &Dictionary::value_type::second);
    }
}

}  // namespace

void PropertyList::dismantle() {
    std::vector<PropertyList> ending;
    takeContainers(value_, ending);
    while (!ending.empty()) {
        PropertyList next = std::move(ending.back());
        ending.pop_back();
        takeContainers(next.value_, ending);
    }
}

const PropertyList* objectForKey(const Dictionary& dictionary, std::string_view key) {
    const auto entry = dictionary.find(key);
    return entry == dictionary.end() ? nullptr : &entry->second;
}

bool boolValue(std::string_view text) {
    text = skipLeading(text, isWhitespaceOrNewline);
    if (text.empty()) {
        return false;
    }
    if (std::string_view("YyTt").find(text.front()) != std::string_view::npos) {
        return true;
    }
    if (text.front() == '+' || text.front() == '-') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.front() == '0') {
        text.remove_prefix(1);
    }
    return !text.empty() && isDigit(text.front());
}

bool boolValue(const PropertyList* value) {
    if (value == nullptr) {
        return false;
    }
    if (const auto* boolean = value->as<bool>()) {
        return *boolean;
    }
    if (const auto* integer = value->as<std::int64_t>()) {
        return *integer != 0;
    }
    if (const auto* real = value->as<double>()) {
        return *real != 0;
    }
    if (const auto* text = value->as<std::string>()) {
        return boolValue(std::string_view(*text));
    }
    return false;
}

float floatValue(std::string_view text) {
    text = skipLeading(text, isSkippedBeforeNumber);
    std::size_t length = 0;
    while (length < text.size() &&
           (isDigit(text[length]) ||
            std::string_view("+-.eE").find(text[length]) != std::string_view::npos)) {
        ++length;
    }
    // The run holds no letter but e and E, so strtod can see neither hexadecimal nor a named value.
    const std::string run(text.substr(0, length));
    return static_cast<float>(std::strtod(run.c_str(), nullptr));
}

float floatValue(const PropertyList* value) {
    if (value == nullptr) {
        return 0;
    }
    if (const auto* boolean = value->as<bool>()) {
        return *boolean ? 1.0F : 0.0F;
    }
    if (const auto* integer = value->as<std::int64_t>()) {
        return static_cast<float>(*integer);
    }
    if (const auto* real = value->as<double>()) {
        return static_cast<float>(*real);
    }
    if (const auto* text = value->as<std::string>()) {
        return floatValue(std::string_view(*text));
    }
    return 0;
}

std::string description(const PropertyList& value) {
    if (const auto* text = value.as<std::string>()) {
        return *text;
    }
    if (const auto* boolean = value.as<bool>()) {
        return *boolean ? "1" : "0";
    }
    if (const auto* integer = value.as<std::int64_t>()) {
        return formatted("%lld", static_cast<long long>(*integer));
    }
    if (const auto* real = value.as<double>()) {
        return numberDescription(*real);
    }
    if (const auto* date = value.as<Date>()) {
        return dateDescription(*date);
    }
    if (const auto* data = value.as<Data>()) {
        return dataDescription(*data);
    }
    std::string text;
    appendContainer(text, value, 0);
    return text;
}

std::string description(const PrintableDictionary& dictionary) {
    return dictionary.object == nullptr ? description(PropertyList(dictionary.values))
                                        : dictionary.object->description();
}

std::string description(const Error& error) {
    if (error.object != nullptr) {
        return error.object->description();
    }
    std::string text = "Error Domain=";
    text += error.domain;
    text += " Code=";
    text += std::to_string(error.code);
    text += " \"";
    text += error.localizedDescription;
    text += '"';
    return text;
}

std::string stringByAppendingPathComponent(std::string_view path, std::string_view component) {
    std::string result;
    result.reserve(path.size() + component.size() + 1);
    const auto append = [&result](std::string_view text) {
        for (const char c : text) {
            if (c != '/' || result.empty() || result.back() != '/') {
                result += c;
            }
        }
    };
    append(path);
    if (!path.empty() && !component.empty()) {
        append("/");
    }
    append(component);
    if (result.size() > 1 && result.back() == '/') {
        result.pop_back();
    }
    return result;
}

NullableString bundleIdentifierOf(const BundleRef& bundle) {
    return bundle ? bundle->bundleIdentifier() : std::nullopt;
}

}  // namespace velmoranth::platform
