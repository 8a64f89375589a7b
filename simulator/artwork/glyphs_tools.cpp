// Glyphs of tools and everyday things.
#include "simulator/artwork/glyphs.h"

#include <cmath>
#include <numbers>

namespace velmoranth::simulator {

void gearGlyph(Pen& pen, const GlyphInks& inks) {
    pen.save();
    pen.circle(50, 50, 9.5).clipAway();
    pen.turnRound(8, 45, 50, 50, [&](int) {
        pen.path("M45.2 22 H54.8 L57 32 H43 Z").fillRounded(inks.glyph, 3.5);
    });
    pen.circle(50, 50, 22).fill(inks.glyph);
    pen.restore();
}

void calculatorGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(28, 19.5, 44, 61, 8).fill(inks.glyph);
    pen.roundRect(34, 26, 32, 12.5, 3).fill({0x49515E});
    for (const double y : {47.5, 58.5, 69.5}) {
        for (const double x : {39.0, 50.0, 61.0}) {
            pen.circle(x, y, 3.8).fill(x > 60 ? inks.detail : Ink{0x8B94A2});
        }
    }
}

void calendarGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(22, 25, 56, 52, 8).fill(faded(inks.detail, 0.14));
    pen.path("M22 42 V33 Q22 25 30 25 H70 Q78 25 78 33 V42 Z").fill(inks.glyph);
    pen.line(36, 20.5, 36, 29).line(64, 20.5, 64, 29).stroke(inks.detail, kLine);
    for (const double y : {51.5, 60.0, 68.5}) {
        for (const double x : {33.0, 44.3, 55.7, 67.0}) {
            const bool today = x > 50 && x < 60 && y > 55 && y < 65;
            pen.circle(x, y, today ? 4.6 : 2.8).fill(today ? inks.glyph : faded(inks.detail, 0.6));
        }
    }
}

void checklistGlyph(Pen& pen, const GlyphInks& inks) {
    for (const double y : {31.5, 50.0, 68.5}) {
        pen.line(46, y, 77, y).stroke(faded(inks.glyph, y < 40 ? 0.45 : 1), kLine);
    }
    pen.circle(30, 50, 5.8).stroke(inks.detail, kFineLine);
    pen.circle(30, 68.5, 5.8).stroke(inks.detail, kFineLine);
    pen.circle(30, 31.5, 7.6).fill(inks.detail);
    pen.path("M26.6 31.8 L29.2 34.3 L33.6 29").stroke({0xFFFFFF}, 2.6);
}

void notepadGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(0, 0, 100, 24, 0).fillGradient({0xEFC266}, {0xE3AE4A}, 0, 24);
    for (int hole = 0; hole < 8; ++hole) {
        pen.circle(6.25 + hole * 12.5, 30.5, 1.7).fill(faded(inks.glyph, 0.45));
    }
    pen.line(22, 45, 78, 45).line(22, 58.5, 78, 58.5).line(22, 72, 56, 72).stroke(inks.glyph, 4.2);
}

void walletGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(25, 24, 50, 30, 6).fill({0xF2B66D});
    pen.roundRect(25, 32, 50, 30, 6).fill({0x79B8D9});
    pen.roundRect(25, 40, 50, 30, 6).fill({0x86C79C});
    pen.path(
           "M20 48 H36.5 Q39.5 48 40.7 50.5 C44 57.5 56 57.5 59.3 50.5 Q60.5 48 63.5 48 H80 V69 "
           "Q80 76 73 76 "
           "H27 Q20 76 20 69 Z")
        .fill(inks.glyph);
}

void chartGlyph(Pen& pen, const GlyphInks& inks) {
    for (const double y : {32.0, 50.0, 68.0}) {
        pen.line(20, y, 80, y).stroke(faded(inks.detail, 0.16), 1.4);
    }
    pen.path("M20 65 L33 55 L44 61 L57 41 L66 47 L80 29 V78 H20 Z")
        .fillGradient(faded(inks.glyph, 0.35), faded(inks.glyph, 0), 29, 78);
    pen.path("M20 65 L33 55 L44 61 L57 41 L66 47 L77 32.5").stroke(inks.glyph, kLine - 0.5);
    pen.circle(78, 31, 4.6).fill(inks.detail);
}

void bagGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M39 42 V35 C39 20.5 61 20.5 61 35 V42").stroke(inks.glyph, kLine);
    pen.path("M28 39 H72 L75.5 74 H24.5 Z").fillRounded(inks.glyph, 6);
    pen.line(50, 49, 50, 65).stroke(inks.detail, kLine - 0.5);
    pen.path("M43 59 L50 66 L57 59").stroke(inks.detail, kLine - 0.5);
}

void heartGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path(
           "M50 75.5 C30 61.5 20.5 51 20.5 40.5 C20.5 31 27.5 24.5 35.8 24.5 C41.8 24.5 47.3 28 50 "
           "33.5 "
           "C52.7 28 58.2 24.5 64.2 24.5 C72.5 24.5 79.5 31 79.5 40.5 C79.5 51 70 61.5 50 75.5 Z")
        .fill(inks.glyph);
}

void watchGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(39, 17, 22, 66, 6).fill(faded(inks.glyph, 0.5));
    pen.roundRect(29, 28.5, 42, 43, 13).fill(inks.glyph);
    pen.roundRect(34, 33.5, 32, 33, 9).fill({0x2F3A44});
    pen.path("M50 40.5 V50.5 L57 54.5").stroke(inks.detail, kFineLine);
    pen.roundRect(72.2, 44, 3.6, 10, 1.8).fill(inks.glyph);
}

void clockFaceGlyph(Pen& pen, const GlyphInks& inks) {
    pen.circle(50, 50, 42.5).fill(inks.glyph);
    for (int hour = 0; hour < 12; ++hour) {
        const bool quarter = hour % 3 == 0;
        const double angle = hour * std::numbers::pi / 6;
        const double inner = quarter ? 33 : 35.5;
        pen.line(50 + inner * std::sin(angle), 50 - inner * std::cos(angle),
                 50 + 37.5 * std::sin(angle), 50 - 37.5 * std::cos(angle))
            .stroke(quarter ? Ink{0x2A2F3A} : Ink{0xA9AFBA}, quarter ? 3 : 2.2);
    }
}

void clockHands(Pen& pen, const GlyphInks& inks, int hour, int minute, int second) {
    constexpr Ink kHands{0x2A2F3A};
    const auto hand = [&pen](double turnDegrees, double length, double tail, Ink ink,
                             double width) {
        pen.save();
        pen.turn(turnDegrees, 50, 50);
        pen.line(50, 50 + tail, 50, 50 - length).stroke(ink, width);
        pen.restore();
    };
    hand(hour % 12 * 30 + minute % 60 * 0.5, 19, 0, kHands, 4.2);
    hand(minute % 60 * 6, 28, 0, kHands, 3.2);
    hand(second % 60 * 6, 31, 7, inks.detail, 1.5);
    pen.circle(50, 50, 3).fill(inks.detail);
}

void clockGlyph(Pen& pen, const GlyphInks& inks) {
    clockFaceGlyph(pen, inks);
    clockHands(pen, inks, 9, 41, 0);
}

void folderGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M20 35 Q20 28 27 28 H41 Q44 28 46 30.5 L49 34 H73 Q80 34 80 41 V68 H20 Z")
        .fill(faded(inks.glyph, 0.65));
    pen.roundRect(20, 40, 60, 35, 7).fillGradient({0x6BA8E0}, inks.glyph, 40, 75);
}

void bulbGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path(
           "M40 61 C40 54 29.5 52 29.5 40.5 C29.5 29 38.5 21 50 21 C61.5 21 70.5 29 70.5 40.5 "
           "C70.5 52 60 54 60 61 Z")
        .fillRounded(inks.glyph, 2);
    pen.line(43, 69, 57, 69).stroke(inks.glyph, kLine - 0.5);
    pen.line(46.5, 76.5, 53.5, 76.5).stroke(inks.glyph, kLine - 0.5);
    pen.path("M38.5 41 C38.5 34.5 43 30.5 49 30").stroke(inks.detail, kFineLine);
}

void rulerGlyph(Pen& pen, const GlyphInks& inks) {
    pen.save();
    pen.turn(-45, 50, 50);
    pen.roundRect(15, 38, 70, 24, 5).fill(inks.glyph);
    for (int tick = 0; tick < 8; ++tick) {
        const double x = 22 + tick * 8;
        pen.line(x, 40, x, tick % 2 == 0 ? 50 : 46);
    }
    pen.stroke(inks.detail, 2.8);
    pen.restore();
}

void puzzleGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path(
           "M24 40 Q24 36 28 36 H39 C34 24 56 24 51 36 H62 Q66 36 66 40 V50 C78 45 78 67 66 62 V74 "
           "Q66 78 62 78 "
           "H51.5 C56 66 34 66 38.5 78 H28 Q24 78 24 74 V62 C36 67 36 45 24 50 Z")
        .fill(inks.glyph);
}

void layersGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M50 25 L75 38 L50 51 L25 38 Z").fillRounded(inks.glyph, 5);
    pen.path("M24.5 51.5 L50 64.5 L75.5 51.5").stroke(inks.glyph, kLine);
    pen.path("M24.5 63.5 L50 76.5 L75.5 63.5").stroke(inks.glyph, kLine);
}

}  // namespace velmoranth::simulator
