// Letters of our own, each a few strokes of one width in a box of 20 by 28, so that no font is
// needed.
#include "simulator/artwork/glyphs.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace velmoranth::simulator {
namespace {

constexpr std::string_view kRing =
    "M10 0 C3 0 0 6 0 14 C0 22 3 28 10 28 C17 28 20 22 20 14 C20 6 17 0 10 0 Z";

constexpr std::array<std::string_view, 26> kCapitals{
    "M0 28 L10 0 L20 28 M4 18.5 H16",
    "M2 13 H10.5 C18 13 18 0 10.5 0 H2 V28 H11.5 C20.5 28 20.5 13 11 13",
    "M20 5.5 C18 2 15 0 11 0 C3.5 0 0 6 0 14 C0 22 3.5 28 11 28 C15 28 18 26 20 22.5",
    "M2 0 V28 H8.5 C17 28 20 22 20 14 C20 6 17 0 8.5 0 Z",
    "M17.5 0 H2.5 V28 H17.5 M2.5 14 H15",
    "M18 0 H3 V28 M3 14 H15",
    "M20 5.5 C18 2 15 0 11 0 C3.5 0 0 6 0 14 C0 22 3.5 28 11 28 C16.5 28 20 25 20 20 V15.5 H12",
    "M1 0 V28 M19 0 V28 M1 14 H19",
    "M10 0 V28",
    "M15 0 V20 C15 25.5 12 28 8.5 28 C5.5 28 3 26 2 23",
    "M2 0 V28 M18.5 0 L2 16 M8 10.5 L19.5 28",
    "M4 0 V28 H18",
    "M-1 28 V0 L10 17 L21 0 V28",
    "M1.5 28 V0 L18.5 28 V0",
    kRing,
    "M2.5 28 V0 H11 C21 0 21 15.5 11 15.5 H2.5",
    "M10 0 C3 0 0 6 0 14 C0 22 3 28 10 28 C17 28 20 22 20 14 C20 6 17 0 10 0 Z M13 21 L20 29",
    "M2 28 V0 H11 C20.5 0 20.5 15 11 15 H2 M10.5 15 L19 28",
    "M18 5 C16.5 2 13.5 0 10 0 C5 0 2 3 2 7 C2 11.5 6 13 10 14 C14.5 15 19 16.5 19 21 "
    "C19 25.5 15 28 10 28 C6 28 2.5 26 1 22.5",
    "M0 0 H20 M10 0 V28",
    "M1.5 0 V18 C1.5 25 5 28 10 28 C15 28 18.5 25 18.5 18 V0",
    "M0 0 L10 28 L20 0",
    "M-4 0 L3 28 L10 8 L17 28 L24 0",
    "M1 0 L19 28 M19 0 L1 28",
    "M0 0 L10 14 L20 0 M10 14 V28",
    "M2 0 H18 L2 28 H18",
};

constexpr std::array<std::string_view, 10> kDigits{
    kRing,
    "M5 5 L11.5 0 V28",
    "M2 7 C2 2.5 5.5 0 10 0 C15 0 18 3 18 7.5 C18 14 8 19 2 28 H18.5",
    "M2 5 C4 1.5 7 0 10 0 C14.5 0 17.5 2.5 17.5 6.5 C17.5 11 14 13 9 13 C14.5 13 18.5 15.5 "
    "18.5 20 C18.5 25 14.5 28 10 28 C6 28 3 26 1 23",
    "M14.5 28 V0 L0.5 20 H20",
    "M17 0 H5 L3.5 12.5 C5 11 7.5 10 10 10 C15 10 18.5 13.5 18.5 19 C18.5 24.5 15 28 10 28 C6 28 3 "
    "26 "
    "1.5 23.5",
    "M16 0 C8 5 2 12 2 19.5 C2 25 5.5 28 10 28 C15 28 18.5 25 18.5 19.5 C18.5 14.5 15 11.5 10.5 "
    "11.5 C7 11.5 4 13 2.5 16",
    "M1.5 0 H18.5 L7.5 28",
    "M10 13 C5.5 13 2.5 10.5 2.5 6.5 C2.5 2.5 5.5 0 10 0 C14.5 0 17.5 2.5 17.5 6.5 C17.5 10.5 "
    "14.5 13 10 13 C5 13 1.5 16 1.5 20.5 C1.5 25 5 28 10 28 C15 28 18.5 25 18.5 20.5 C18.5 16 15 "
    "13 10 13",
    "M4 28 C12 23 18 16 18 8.5 C18 3 14.5 0 10 0 C5 0 1.5 3 1.5 8.5 C1.5 13.5 5 16.5 9.5 16.5 C13 "
    "16.5 "
    "16 15 17.5 12",
};

std::string_view strokesOf(char letter) {
    if (letter >= 'A' && letter <= 'Z') {
        return kCapitals[static_cast<std::size_t>(letter - 'A')];
    }
    if (letter >= '0' && letter <= '9') {
        return kDigits[static_cast<std::size_t>(letter - '0')];
    }
    return kRing;
}

}  // namespace

void letterGlyph(Pen& pen, char letter, Ink ink) {
    constexpr double kScale = 1.3;
    pen.save();
    pen.shift(50 - 10 * kScale, 50 - 14 * kScale);
    pen.grow(kScale, 0, 0);
    pen.path(strokesOf(letter)).stroke(ink, 6 / kScale);
    pen.restore();
}

}  // namespace velmoranth::simulator
