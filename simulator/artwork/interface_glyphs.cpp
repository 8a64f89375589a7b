// Interface glyphs: plain signs in one colour, of one line width, as symbols of text are.
#include "simulator/artwork/interface_glyphs.h"

#include "simulator/artwork/blank_picture.h"
#include "simulator/artwork/glyphs.h"
#include "simulator/artwork/toolkit_artwork.h"

#include <array>

namespace velmoranth::simulator {
namespace {

constexpr double kMark = 9;  // width of lines
constexpr double kDisc = 44;

// Half the width of what is cut out of a disc.
constexpr double kArm = 4.5;

// A stock icon's glyph, whose live area reaches from 20 to 80, grown to the margin of these.
void grown(Pen& pen, Glyph glyph, Ink ink, double factor = 1.42) {
    pen.save();
    pen.grow(factor, 50, 50);
    glyph(pen, {ink, ink});
    pen.restore();
}

// Keeps what follows off a bar through the middle, until the next `restore`.
void cutBar(Pen& pen, double degrees, double reach) {
    pen.turn(degrees, 50, 50);
    pen.roundRect(50 - kArm, 50 - reach, 2 * kArm, 2 * reach, kArm).clipAway();
    pen.turn(-degrees, 50, 50);
}

void chevronLeftMark(Pen& pen, Ink ink) {
    pen.path("M62 14 L26 50 L62 86").stroke(ink, kMark + 1);
}

void plusMark(Pen& pen, Ink ink) {
    pen.line(50, 14, 50, 86).line(14, 50, 86, 50).stroke(ink, kMark);
}

void plusDiscMark(Pen& pen, Ink ink) {
    pen.save();
    cutBar(pen, 0, 23);
    cutBar(pen, 90, 23);
    pen.circle(50, 50, kDisc).fill(ink);
    pen.restore();
}

void arrowUpDiscMark(Pen& pen, Ink ink) {
    pen.save();
    pen.path("M50 21.5 L71.5 43 L65.2 49.3 L54.5 38.6 V75 H45.5 V38.6 L34.8 49.3 L28.5 43 Z")
        .clipAway();
    pen.circle(50, 50, kDisc).fill(ink);
    pen.restore();
}

void discMark(Pen& pen, Ink ink) {
    pen.circle(50, 50, kDisc).fill(ink);
}

void ringMark(Pen& pen, Ink ink) {
    pen.circle(50, 50, kDisc - 3.5).stroke(ink, 7);
}

void heartMark(Pen& pen, Ink ink) {
    grown(pen, heartGlyph, ink);
}

void personDiscMark(Pen& pen, Ink ink) {
    pen.save();
    pen.circle(50, 38.5, 16).clipAway();
    pen.path("M16 92 C17 71 31 60 50 60 C69 60 83 71 84 92 Z").clipAway();
    pen.circle(50, 50, kDisc).fill(ink);
    pen.restore();
    pen.circle(50, 50, kDisc - 2).stroke(ink, 4);
}

void ellipsisRingMark(Pen& pen, Ink ink) {
    ringMark(pen, ink);
    for (const double x : {29.0, 50.0, 71.0}) {
        pen.circle(x, 50, 6.2).fill(ink);
    }
}

void locationMark(Pen& pen, Ink ink) {
    pen.path("M88 12 L55 86 L49 51 L14 45 Z").fillRounded(ink, 6);
}

void bulletsMark(Pen& pen, Ink ink) {
    for (const double y : {24.0, 50.0, 76.0}) {
        pen.circle(15, y, 6).fill(ink);
        pen.line(34, y, 90, y).stroke(ink, kMark);
    }
}

struct NamedGlyph {
    std::string_view name;
    InterfaceGlyph draw;
};

constexpr std::array kGlyphs{
    NamedGlyph{"chevron.right", chevronRightMark},
    NamedGlyph{"chevron.left", chevronLeftMark},
    NamedGlyph{"plus", plusMark},
    NamedGlyph{"plus.circle.fill", plusDiscMark},
    NamedGlyph{"arrow.up.circle.fill", arrowUpDiscMark},
    NamedGlyph{"circle.fill", discMark},
    NamedGlyph{"circle", ringMark},
    NamedGlyph{"checkmark", checkMark},
    NamedGlyph{"magnifyingglass", magnifierMark},
    NamedGlyph{"square.and.arrow.up", shareMark},
    NamedGlyph{"trash", trashMark},
    NamedGlyph{"gear", gearMark},
    NamedGlyph{"heart.fill", heartMark},
    NamedGlyph{"star.fill", starMark},
    NamedGlyph{"person.crop.circle.fill", personDiscMark},
    NamedGlyph{"ellipsis.circle", ellipsisRingMark},
    NamedGlyph{"xmark.circle.fill", crossDiscMark},
    NamedGlyph{"bell.fill", bellMark},
    NamedGlyph{"moon.fill", moonMark},
    NamedGlyph{"wifi", wifiMark},
    NamedGlyph{"location.fill", locationMark},
    NamedGlyph{"list.bullet", bulletsMark},
};

constexpr auto kNames = namesOf(kGlyphs);

}  // namespace

void chevronRightMark(Pen& pen, Ink ink) {
    pen.path("M38 14 L74 50 L38 86").stroke(ink, kMark + 1);
}

void magnifierMark(Pen& pen, Ink ink) {
    pen.circle(42, 42, 29).line(63.5, 63.5, 87, 87).stroke(ink, kMark);
}

void shareMark(Pen& pen, Ink ink) {
    pen.path("M36 37 H27 Q20 37 20 44 V84 Q20 91 27 91 H73 Q80 91 80 84 V44 Q80 37 73 37 H64")
        .stroke(ink, 7);
    pen.path("M50 62 V10 M33 26 L50 9.5 L67 26").stroke(ink, 7);
}

void trashMark(Pen& pen, Ink ink) {
    pen.path("M13 23 H87 M36 21 V15 Q36 9 42 9 H58 Q64 9 64 15 V21").stroke(ink, 7);
    pen.path("M22 25 L26 84 Q26.5 91 33 91 H67 Q73.5 91 74 84 L78 25").stroke(ink, 7);
    pen.path("M39 40 L40.5 76 M50 40 V76 M61 40 L59.5 76").stroke(ink, 5.5);
}

void gearMark(Pen& pen, Ink ink) {
    grown(pen, gearGlyph, ink);
}

void starMark(Pen& pen, Ink ink) {
    grown(pen, starGlyph, ink, 1.6);
}

void checkMark(Pen& pen, Ink ink) {
    pen.path("M16 54 L38 78 L84 20").stroke(ink, kMark + 2);
}

void crossDiscMark(Pen& pen, Ink ink) {
    pen.save();
    cutBar(pen, 45, 22);
    cutBar(pen, -45, 22);
    pen.circle(50, 50, kDisc).fill(ink);
    pen.restore();
}

void bellMark(Pen& pen, Ink ink) {
    pen.path(
           "M50 11 C33 11 27 24 27 38 C27 58 20 62 15 69 Q13 73 18 73 H82 Q87 73 85 69 "
           "C80 62 73 58 73 38 C73 24 67 11 50 11 Z")
        .fill(ink);
    pen.circle(50, 12, 5).fill(ink);
    pen.path("M38 79 H62 C61 94 39 94 38 79 Z").fill(ink);
}

void moonMark(Pen& pen, Ink ink) {
    pen.path("M40 11 C14 20 3 51 20 74 C37 96 72 95 88 70 C60 80 29 57 40 11 Z")
        .fillRounded(ink, 4);
}

void wifiMark(Pen& pen, Ink ink) {
    for (const double radius : {24.0, 43.0, 62.0}) {
        pen.arc(50, 81, radius, -134, -46).stroke(ink, kMark + 1);
    }
    pen.circle(50, 80, 8.5).fill(ink);
}

void drawMark(Pen& pen, InterfaceGlyph glyph, double x, double y, double side, Ink ink) {
    pen.save();
    pen.shift(x, y);
    pen.grow(side / 100, 0, 0);
    glyph(pen, ink);
    pen.restore();
}

FurniturePicture drawGlyph(std::string_view name, double pointSize, double scale,
                           std::uint32_t rgb) {
    const NamedGlyph* glyph = rowNamed(kGlyphs, name);
    if (glyph == nullptr) {
        return {};
    }
    return drawnPicture(pointSize, pointSize, scale, 100, 100,
                        [&](Pen& pen) { glyph->draw(pen, {rgb}); });
}

std::span<const std::string_view> glyphNames() {
    return kNames;
}

}  // namespace velmoranth::simulator
