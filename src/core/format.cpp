#include "core/format.h"

#include "platform/platform.h"

#include <cstdio>

namespace velmoranth::core {

FormatArgument formatArgument(const std::string& text) {
    return text;
}

FormatArgument formatArgument(const platform::NullableString& text) {
    return text.value_or("(null)");
}

FormatArgument formatArgument(const platform::PropertyList& value) {
    return platform::description(value);
}

FormatArgument formatArgument(const char* text) {
    return std::string(text == nullptr ? "(null)" : text);
}

FormatArgument formatArgument(int number) {
    return static_cast<long long>(number);
}

FormatArgument formatArgument(unsigned number) {
    return static_cast<unsigned long long>(number);
}

FormatArgument formatArgument(long number) {
    return static_cast<long long>(number);
}

FormatArgument formatArgument(long long number) {
    return number;
}

FormatArgument formatArgument(unsigned long long number) {
    return number;
}

FormatArgument formatArgument(double number) {
    return number;
}

namespace {

// Long enough for "%f" of the largest double: 309 digits, a point and 6 decimals.
using NumberText = std::array<char, 352>;

void append(std::string& result, const FormatArgument& argument) {
    NumberText text{};
    if (const auto* string = std::get_if<std::string>(&argument)) {
        result += *string;
        return;
    }
    if (const auto* number = std::get_if<long long>(&argument)) {
        std::snprintf(text.data(), text.size(), "%lld", *number);
    } else if (const auto* magnitude = std::get_if<unsigned long long>(&argument)) {
        std::snprintf(text.data(), text.size(), "%llu", *magnitude);
    } else if (const auto* real = std::get_if<double>(&argument)) {
        std::snprintf(text.data(), text.size(), "%f", *real);
    }
    result += text.data();
}

}  // namespace

std::string fill(const char* format, std::span<const FormatArgument> arguments) {
    std::string result;
    std::string_view rest(format);
    for (const FormatArgument& argument : arguments) {
        const std::size_t next = rest.find('%');
        result += rest.substr(0, next);
        rest.remove_prefix(next);
        append(result, argument);
        rest.remove_prefix(detail::placeholderAt(rest).text.size());
    }
    result += rest;
    return result;
}

void writeLogLine(const std::string& line) {
    platform::platform().log.write(line);
}

}  // namespace velmoranth::core
