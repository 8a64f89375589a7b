#include "cli/folded_name.h"

#include "desktop/plist/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace velmoranth::cli {
namespace {

// Capital letters of two bytes in UTF-8, `step` apart, and how far behind each its small one is.
struct Capitals {
    std::uint32_t first;
    std::uint32_t last;
    std::uint32_t step;
    std::int32_t distance;
};

constexpr std::array<Capitals, 22> kCapitals{{
    {0x00C0, 0x00D6, 1, 32},   {0x00D8, 0x00DE, 1, 32}, {0x0100, 0x012E, 2, 1},
    {0x0132, 0x0136, 2, 1},    {0x0139, 0x0147, 2, 1},  {0x014A, 0x0176, 2, 1},
    {0x0178, 0x0178, 1, -121}, {0x0179, 0x017D, 2, 1},  {0x0386, 0x0386, 1, 38},
    {0x0388, 0x038A, 1, 37},   {0x038C, 0x038C, 1, 64}, {0x038E, 0x038F, 1, 63},
    {0x0391, 0x03A1, 1, 32},   {0x03A3, 0x03AB, 1, 32}, {0x03C2, 0x03C2, 1, 1},
    {0x0400, 0x040F, 1, 80},   {0x0410, 0x042F, 1, 32}, {0x0460, 0x0480, 2, 1},
    {0x048A, 0x04BE, 2, 1},    {0x04C1, 0x04CD, 2, 1},  {0x04D0, 0x052E, 2, 1},
    {0x0531, 0x0556, 1, 48},
}};

std::uint32_t smallLetter(std::uint32_t letter) {
    const auto* const found = std::ranges::find_if(kCapitals, [&](const Capitals& capitals) {
        return capitals.first <= letter && letter <= capitals.last &&
               (letter - capitals.first) % capitals.step == 0;
    });
    return found == kCapitals.end()
               ? letter
               : static_cast<std::uint32_t>(static_cast<std::int32_t>(letter) + found->distance);
}

}  // namespace

std::string folded(std::string_view name) {
    std::string text;
    text.reserve(name.size());
    while (!name.empty()) {
        const std::size_t length = std::max<std::size_t>(desktop::characterLength(name), 1);
        const std::string_view character = name.substr(0, length);
        name.remove_prefix(length);
        const auto first = static_cast<unsigned char>(character.front());
        if (length == 1 && first >= 'A' && first <= 'Z') {
            text += static_cast<char>(first + ('a' - 'A'));
        } else if (length == 2) {
            const auto second = static_cast<unsigned char>(character[1]);
            const std::uint32_t letter = smallLetter((first & 0x1FU) << 6U | (second & 0x3FU));
            text += static_cast<char>(0xC0U | letter >> 6U);
            text += static_cast<char>(0x80U | (letter & 0x3FU));
        } else {
            text += character;
        }
    }
    return text;
}

}  // namespace velmoranth::cli
