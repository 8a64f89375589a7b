// NSString's operations and NSScanner's hexadecimal one, on UTF-8 text. The platform counts UTF-16
// units, and so do these; a byte that begins no valid sequence counts as one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmoranth::platform {

// -[NSString length].
[[nodiscard]] std::size_t length(std::string_view text);

// -[NSString substringWithRange:]. What lies past the end is left out, where the platform raises;
// half of a character outside the basic plane gives U+FFFD.
[[nodiscard]] std::string substringWithRange(std::string_view text, std::size_t location,
                                             std::size_t length);

// -[NSString stringByTrimmingCharactersInSet:] with whitespaceAndNewlineCharacterSet.
[[nodiscard]] std::string stringByTrimmingWhitespaceAndNewlines(std::string_view text);

// -[NSString uppercaseString], for ASCII letters and for every character whose upper case is longer
// than itself (ß, ﬀ, ẚ, …); the others, none of whose upper case is an ASCII digit or one of A to
// F, stay as they are.
[[nodiscard]] std::string uppercaseString(std::string_view text);

// 0 to 9, a to f and A to F.
[[nodiscard]] bool isHexDigit(char c);

// -[NSScanner scanHexInt:] from the start of the text: white space and line ends are skipped, then
// an optional 0x, then as many hexadecimal digits as there are; too many give the greatest value.
// Nothing when there is no digit.
[[nodiscard]] std::optional<std::uint32_t> scanHexInt(std::string_view text);

// -[NSString lastPathComponent]: "tmp" of "/tmp/", "/" of "/", "" of "".
[[nodiscard]] std::string lastPathComponent(std::string_view path);

// -[NSString stringByDeletingLastPathComponent]: "/" of "/tmp", "" of "a".
[[nodiscard]] std::string stringByDeletingLastPathComponent(std::string_view path);

// -[NSString stringByDeletingPathExtension]: removes the last extension alone, trailing slashes
// first; a name that begins with its only full stop has none.
[[nodiscard]] std::string stringByDeletingPathExtension(std::string_view path);

}  // namespace velmoranth::platform
