// Numbers on the command line: in the C locale, whole text or nothing.
#pragma once

#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <system_error>

namespace velmoranth::cli {

// A finite decimal number ("1674.102", "-2", "1e3").
[[nodiscard]] inline std::optional<double> parseNumber(std::string_view text) {
    double number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || stop != text.data() + text.size() || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

// A whole decimal number within the bounds.
[[nodiscard]] inline std::optional<int> parseInteger(std::string_view text, int least,
                                                     int greatest) {
    int number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || stop != text.data() + text.size() || number < least ||
        number > greatest) {
        return std::nullopt;
    }
    return number;
}

}  // namespace velmoranth::cli
