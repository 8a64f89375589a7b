// The texts of numbers, dates and data in XML property lists. Nothing when the text is none.
#pragma once

#include "platform/foundation.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmoranth::desktop {

// Optional sign, decimal or 0x hexadecimal, white space around. From 2^63 up to 2^64 - 1 it is
// 2^63 - 1, beyond nothing.
[[nodiscard]] std::optional<std::int64_t> integerOfText(std::string_view text);

// A decimal number that is the whole text, white space before it allowed; or nan, inf, infinity
// (the latter two with a sign or none) in any case.
[[nodiscard]] std::optional<double> realOfText(const std::string& text);

// YYYY-MM-DDThh:mm:ssZ, a minus before the year allowed. A date that no calendar has is none.
[[nodiscard]] std::optional<platform::Date> dateOfText(std::string_view text);
// The same text; fractions of a second are left out.
[[nodiscard]] std::string textOfDate(platform::Date date);

// Characters outside the alphabet are passed over.
[[nodiscard]] platform::Data dataOfBase64(std::string_view text);
[[nodiscard]] std::string base64OfData(const platform::Data& data);

// The shortest text that reads as the same number.
[[nodiscard]] std::string textOfReal(double value);

}  // namespace velmoranth::desktop
