#include "platform/strings.h"

#include "platform/code_points.h"

#include <algorithm>
#include <array>
#include <limits>

namespace velmoranth::platform {
namespace {

constexpr std::uint32_t kFirstBeyondBasicPlane = 0x10000;
constexpr std::string_view kReplacementCharacter = "\uFFFD";

struct Expansion {
    std::uint32_t character;
    std::string_view upperCase;
};

// Every character whose upper case is several, in their order: SpecialCasing.txt of Unicode 14,
// the rows without a condition.
// clang-format off: as many as fit a line.
constexpr std::array<Expansion, 102> kExpansions{{
    {0x00DF, "SS"}, {0x0149, "\u02BCN"}, {0x01F0, "J\u030C"}, {0x0390, "\u0399\u0308\u0301"},
    {0x03B0, "\u03A5\u0308\u0301"}, {0x0587, "\u0535\u0552"}, {0x1E96, "H\u0331"},
    {0x1E97, "T\u0308"}, {0x1E98, "W\u030A"}, {0x1E99, "Y\u030A"}, {0x1E9A, "A\u02BE"},
    {0x1F50, "\u03A5\u0313"}, {0x1F52, "\u03A5\u0313\u0300"}, {0x1F54, "\u03A5\u0313\u0301"},
    {0x1F56, "\u03A5\u0313\u0342"}, {0x1F80, "\u1F08\u0399"}, {0x1F81, "\u1F09\u0399"},
    {0x1F82, "\u1F0A\u0399"}, {0x1F83, "\u1F0B\u0399"}, {0x1F84, "\u1F0C\u0399"},
    {0x1F85, "\u1F0D\u0399"}, {0x1F86, "\u1F0E\u0399"}, {0x1F87, "\u1F0F\u0399"},
    {0x1F88, "\u1F08\u0399"}, {0x1F89, "\u1F09\u0399"}, {0x1F8A, "\u1F0A\u0399"},
    {0x1F8B, "\u1F0B\u0399"}, {0x1F8C, "\u1F0C\u0399"}, {0x1F8D, "\u1F0D\u0399"},
    {0x1F8E, "\u1F0E\u0399"}, {0x1F8F, "\u1F0F\u0399"}, {0x1F90, "\u1F28\u0399"},
    {0x1F91, "\u1F29\u0399"}, {0x1F92, "\u1F2A\u0399"}, {0x1F93, "\u1F2B\u0399"},
    {0x1F94, "\u1F2C\u0399"}, {0x1F95, "\u1F2D\u0399"}, {0x1F96, "\u1F2E\u0399"},
    {0x1F97, "\u1F2F\u0399"}, {0x1F98, "\u1F28\u0399"}, {0x1F99, "\u1F29\u0399"},
    {0x1F9A, "\u1F2A\u0399"}, {0x1F9B, "\u1F2B\u0399"}, {0x1F9C, "\u1F2C\u0399"},
    {0x1F9D, "\u1F2D\u0399"}, {0x1F9E, "\u1F2E\u0399"}, {0x1F9F, "\u1F2F\u0399"},
    {0x1FA0, "\u1F68\u0399"}, {0x1FA1, "\u1F69\u0399"}, {0x1FA2, "\u1F6A\u0399"},
    {0x1FA3, "\u1F6B\u0399"}, {0x1FA4, "\u1F6C\u0399"}, {0x1FA5, "\u1F6D\u0399"},
    {0x1FA6, "\u1F6E\u0399"}, {0x1FA7, "\u1F6F\u0399"}, {0x1FA8, "\u1F68\u0399"},
    {0x1FA9, "\u1F69\u0399"}, {0x1FAA, "\u1F6A\u0399"}, {0x1FAB, "\u1F6B\u0399"},
    {0x1FAC, "\u1F6C\u0399"}, {0x1FAD, "\u1F6D\u0399"}, {0x1FAE, "\u1F6E\u0399"},
    {0x1FAF, "\u1F6F\u0399"}, {0x1FB2, "\u1FBA\u0399"}, {0x1FB3, "\u0391\u0399"},
    {0x1FB4, "\u0386\u0399"}, {0x1FB6, "\u0391\u0342"}, {0x1FB7, "\u0391\u0342\u0399"},
    {0x1FBC, "\u0391\u0399"}, {0x1FC2, "\u1FCA\u0399"}, {0x1FC3, "\u0397\u0399"},
    {0x1FC4, "\u0389\u0399"}, {0x1FC6, "\u0397\u0342"}, {0x1FC7, "\u0397\u0342\u0399"},
    {0x1FCC, "\u0397\u0399"}, {0x1FD2, "\u0399\u0308\u0300"}, {0x1FD3, "\u0399\u0308\u0301"},
    {0x1FD6, "\u0399\u0342"}, {0x1FD7, "\u0399\u0308\u0342"}, {0x1FE2, "\u03A5\u0308\u0300"},
    {0x1FE3, "\u03A5\u0308\u0301"}, {0x1FE4, "\u03A1\u0313"}, {0x1FE6, "\u03A5\u0342"},
    {0x1FE7, "\u03A5\u0308\u0342"}, {0x1FF2, "\u1FFA\u0399"}, {0x1FF3, "\u03A9\u0399"},
    {0x1FF4, "\u038F\u0399"}, {0x1FF6, "\u03A9\u0342"}, {0x1FF7, "\u03A9\u0342\u0399"},
    {0x1FFC, "\u03A9\u0399"}, {0xFB00, "FF"}, {0xFB01, "FI"}, {0xFB02, "FL"}, {0xFB03, "FFI"},
    {0xFB04, "FFL"}, {0xFB05, "ST"}, {0xFB06, "ST"}, {0xFB13, "\u0544\u0546"},
    {0xFB14, "\u0544\u0535"}, {0xFB15, "\u0544\u053B"}, {0xFB16, "\u054E\u0546"},
    {0xFB17, "\u0544\u053D"},
}};
// clang-format on
static_assert(std::is_sorted(kExpansions.begin(), kExpansions.end(),
                             [](const Expansion& a, const Expansion& b) {
                                 return a.character < b.character;
                             }));

std::size_t unitsOf(const CodePoint& c) {
    return c.value >= kFirstBeyondBasicPlane ? 2 : 1;
}

std::string_view expansionOf(std::uint32_t character) {
    const auto* const found = std::lower_bound(
        kExpansions.begin(), kExpansions.end(), character,
        [](const Expansion& expansion, std::uint32_t c) { return expansion.character < c; });
    return found != kExpansions.end() && found->character == character ? found->upperCase
                                                                       : std::string_view();
}

std::optional<std::uint32_t> hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return static_cast<std::uint32_t>(c - '0');
    }
    if (c >= 'A' && c <= 'F') {
        return static_cast<std::uint32_t>(c - 'A' + 10);
    }
    if (c >= 'a' && c <= 'f') {
        return static_cast<std::uint32_t>(c - 'a' + 10);
    }
    return std::nullopt;
}

}  // namespace

bool isHexDigit(char c) {
    return hexDigit(c).has_value();
}

std::size_t length(std::string_view text) {
    std::size_t units = 0;
    for (std::size_t i = 0; i < text.size();) {
        const CodePoint c = codePointAt(text, i);
        units += unitsOf(c);
        i += c.length;
    }
    return units;
}

std::string substringWithRange(std::string_view text, std::size_t location, std::size_t length) {
    constexpr std::size_t kFarthest = std::numeric_limits<std::size_t>::max();
    const std::size_t end = length > kFarthest - location ? kFarthest : location + length;
    std::string result;
    std::size_t unit = 0;
    for (std::size_t i = 0; i < text.size() && unit < end && location < end;) {
        const CodePoint c = codePointAt(text, i);
        const std::size_t next = unit + unitsOf(c);
        if (unit >= location && next <= end) {
            result += text.substr(i, c.length);
        } else if (next > location) {
            result += kReplacementCharacter;
        }
        unit = next;
        i += c.length;
    }
    return result;
}

std::string stringByTrimmingWhitespaceAndNewlines(std::string_view text) {
    const std::string_view rest = skipLeading(text, isWhitespaceOrNewline);
    std::size_t end = 0;
    for (std::size_t i = 0; i < rest.size();) {
        const CodePoint c = codePointAt(rest, i);
        i += c.length;
        if (!isWhitespaceOrNewline(c.value)) {
            end = i;
        }
    }
    return std::string(rest.substr(0, end));
}

std::string uppercaseString(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const CodePoint c = codePointAt(text, i);
        if (c.value >= 'a' && c.value <= 'z') {
            result += static_cast<char>(c.value - 'a' + 'A');
        } else {
            // A byte that begins no sequence is no character.
            const std::string_view upperCase =
                c.length > 1 ? expansionOf(c.value) : std::string_view();
            result += upperCase.empty() ? text.substr(i, c.length) : upperCase;
        }
        i += c.length;
    }
    return result;
}

std::optional<std::uint32_t> scanHexInt(std::string_view text) {
    std::string_view rest = skipLeading(text, isWhitespaceOrNewline);
    if (rest.size() > 2 && rest[0] == '0' && (rest[1] == 'x' || rest[1] == 'X') &&
        hexDigit(rest[2])) {
        rest.remove_prefix(2);
    }
    if (rest.empty() || !hexDigit(rest[0])) {
        return std::nullopt;
    }
    constexpr std::uint64_t kGreatest = std::numeric_limits<std::uint32_t>::max();
    std::uint64_t value = 0;
    for (const char c : rest) {
        const std::optional<std::uint32_t> digit = hexDigit(c);
        if (!digit) {
            break;
        }
        value = value * 16 + *digit;
        value = value > kGreatest ? kGreatest : value;
    }
    return static_cast<std::uint32_t>(value);
}

std::string lastPathComponent(std::string_view path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string_view::npos) {
        return path.empty() ? "" : "/";
    }
    const std::size_t slash = path.rfind('/', last);
    const std::size_t start = slash == std::string_view::npos ? 0 : slash + 1;
    return std::string(path.substr(start, last + 1 - start));
}

std::string stringByDeletingLastPathComponent(std::string_view path) {
    std::size_t end = path.find_last_not_of('/');
    if (end == std::string_view::npos) {
        return path.empty() ? "" : "/";
    }
    end = path.rfind('/', end);
    if (end == std::string_view::npos) {
        return "";
    }
    end = path.find_last_not_of('/', end);
    return end == std::string_view::npos ? "/" : std::string(path.substr(0, end + 1));
}

std::string stringByDeletingPathExtension(std::string_view path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string_view::npos) {
        return path.empty() ? "" : "/";
    }
    path = path.substr(0, last + 1);
    const std::size_t slash = path.rfind('/');
    const std::size_t start = slash == std::string_view::npos ? 0 : slash + 1;
    const std::size_t dot = path.rfind('.');
    // Without a full stop, before the name's first other character, or with nothing after it.
    if (dot == std::string_view::npos || dot + 1 == path.size() ||
        path.find_first_not_of('.', start) >= dot) {
        return std::string(path);
    }
    return std::string(path.substr(0, dot));
}

}  // namespace velmoranth::platform
