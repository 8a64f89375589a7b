#include "desktop/plist/number_text.h"

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

namespace velmoranth::desktop {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kSpace = " \t\n\v\f\r";

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kSpace), text.size()));
    return text.substr(0, text.find_last_not_of(kSpace) + 1);
}

std::optional<double> specialReal(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    });
    if (lower == "nan") {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const bool isSigned = !lower.empty() && (lower[0] == '+' || lower[0] == '-');
    const std::string_view name = std::string_view(lower).substr(isSigned ? 1 : 0);
    if (name != "inf" && name != "infinity") {
        return std::nullopt;
    }
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    return lower[0] == '-' ? -kInfinity : kInfinity;
}

}  // namespace

std::optional<std::int64_t> integerOfText(std::string_view text) {
    text = trimmed(text);
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
        text = trimmed(text);
    }
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(isHex ? 2 : 0);
    std::uint64_t magnitude = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, isHex ? 16 : 10);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    constexpr std::uint64_t kLimit = std::uint64_t{1} << 63U;
    if (isNegative) {
        return magnitude > kLimit ? std::nullopt
                                  : std::optional(static_cast<std::int64_t>(0 - magnitude));
    }
    return static_cast<std::int64_t>(std::min(magnitude, kLimit - 1));
}

std::optional<double> realOfText(const std::string& text) {
    if (const auto special = specialReal(text)) {
        return special;
    }
    // Only these characters make a number: no hexadecimal, no names.
    const std::size_t start = text.find_first_not_of(kSpace);
    if (start == std::string::npos ||
        text.find_first_not_of("0123456789+-.eE", start) != std::string::npos) {
        return std::nullopt;
    }
    // In the C locale whatever the process has set; too large is infinity, too small 0.
    static const locale_t kPlain = ::newlocale(LC_ALL_MASK, "C", nullptr);
    char* end = nullptr;
    const double value = ::strtod_l(text.c_str(), &end, kPlain);
    return end == text.c_str() + text.size() ? std::optional(value) : std::nullopt;
}

std::optional<platform::Date> dateOfText(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative ? 1 : 0);
    constexpr std::string_view kPattern = "0000-00-00T00:00:00Z";
    if (text.size() != kPattern.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < kPattern.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (kPattern[i] == '0' ? !isDigit : text[i] != kPattern[i]) {
            return std::nullopt;
        }
    }
    const auto number = [&](std::size_t start, std::size_t length) {
        int value = 0;
        std::from_chars(text.data() + start, text.data() + start + length, value);
        return value;
    };
    const int year = isNegative ? -number(0, 4) : number(0, 4);
    const std::chrono::year_month_day day{std::chrono::year(year),
                                          std::chrono::month(static_cast<unsigned>(number(5, 2))),
                                          std::chrono::day(static_cast<unsigned>(number(8, 2)))};
    const std::int64_t hour = number(11, 2);
    const std::int64_t minute = number(14, 2);
    const int second = number(17, 2);
    // The 60th second is a leap second's.
    if (!day.ok() || hour > 23 || minute > 59 || second > 60) {
        return std::nullopt;
    }
    // The platform counts from 2001.
    constexpr std::chrono::sys_days kReference(std::chrono::January / 1 / 2001);
    const std::int64_t hours = (std::chrono::sys_days(day) - kReference).count() * 24 + hour;
    return platform::Date{static_cast<double>((hours * 60 + minute) * 60 + second)};
}

std::string textOfDate(platform::Date date) {
    // The years that four digits hold; a date that is no number is the earliest.
    constexpr double kEarliest = -63'113'904'000.0;  // 0001-01-01
    constexpr double kLatest = 252'423'993'599.0;    // 9999-12-31
    const double seconds = date.secondsSinceReferenceDate;
    std::string text = platform::description(
        platform::Date{seconds >= kEarliest ? std::min(seconds, kLatest) : kEarliest});
    text.replace(text.find(' '), 1, "T");
    return text.replace(text.find(' '), std::string::npos, "Z");
}

platform::Data dataOfBase64(std::string_view text) {
    platform::Data data;
    data.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        const std::size_t value = kAlphabet.find(c);
        if (value == std::string_view::npos) {
            continue;
        }
        bits = bits << 6U | static_cast<std::uint32_t>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            data.push_back(static_cast<std::uint8_t>(bits >> count & 0xFFU));
        }
    }
    return data;
}

std::string base64OfData(const platform::Data& data) {
    std::string text;
    text.reserve((data.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const std::size_t length = std::min<std::size_t>(3, data.size() - i);
        std::uint32_t bits = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            bits = bits << 8U | (k < length ? data[i + k] : 0U);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            text += k <= length ? kAlphabet[bits >> (18 - 6 * k) & 0x3FU] : '=';
        }
    }
    return text;
}

std::string textOfReal(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-infinity" : "+infinity";
    }
    std::array<char, 40> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), result.ptr};
}

}  // namespace velmoranth::desktop
