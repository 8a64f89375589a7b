// Glyphs of people and messages.
#include "simulator/artwork/glyphs.h"

namespace velmoranth::simulator {

void handsetGlyph(Pen& pen, const GlyphInks& inks) {
    // Drawn lying, hollow side down, then turned so that the hollow looks up and to the right.
    pen.save();
    pen.turn(-135, 50, 50);
    pen.shift(0, 2);
    pen.path(
           "M20.5 52 C20.5 30 79.5 30 79.5 52 V57 Q79.5 61 75.5 61 H65.5 Q61.5 61 61.5 57 V52 "
           "Q61.5 49.5 59 48.5 C54 46.3 46 46.3 41 48.5 Q38.5 49.5 38.5 52 V57 Q38.5 61 34.5 61 "
           "H24.5 Q20.5 61 20.5 57 Z")
        .fill(inks.glyph);
    pen.restore();
}

void bubbleGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M33 58 C34 66 31.5 72.5 26.5 76.5 C36 76.5 43 73.5 48 67 Z")
        .fillRounded(inks.glyph, 2);
    pen.ellipse(50, 46.5, 30, 24).fill(inks.glyph);
    for (const double x : {37.5, 50.0, 62.5}) {
        pen.circle(x, 46.5, 3.9).fill(inks.detail);
    }
}

void twoBubblesGlyph(Pen& pen, const GlyphInks& inks) {
    pen.save();
    pen.roundRect(15, 37, 53, 41, 18).clipAway();
    pen.path("M70 56 L76 66.5 L61 60 Z").fillRounded(inks.glyph, 3);
    pen.roundRect(36, 23, 44, 37, 15).fill(inks.glyph);
    pen.restore();
    pen.roundRect(18, 40, 47, 33, 14).fill(inks.glyph);
    pen.path("M27 67 L23.5 78 L40 72 Z").fillRounded(inks.glyph, 3);
    pen.line(31, 52.5, 52, 52.5).line(31, 61, 44, 61).stroke(inks.detail, kFineLine);
}

void envelopeGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(20, 29.5, 60, 41, 7).fill(inks.glyph);
    pen.path("M25.5 36.5 L45.5 52 Q50 55.5 54.5 52 L74.5 36.5").stroke(inks.detail, kFineLine);
}

void atSignGlyph(Pen& pen, const GlyphInks& inks) {
    pen.circle(50, 50, 10.5).stroke(inks.glyph, kLine);
    pen.path(
           "M60.5 39.5 V53 C60.5 63.5 76 63 76 50 C76 35.5 64.4 24 50 24 C35.6 24 24 35.6 24 50 "
           "C24 64.4 35.6 76 50 76 C56 76 61.5 74 66 70.5")
        .stroke(inks.glyph, kLine);
}

void hashGlyph(Pen& pen, const GlyphInks& inks) {
    pen.line(44, 26, 37, 74).line(63, 26, 56, 74).stroke(inks.glyph, kLine + 1);
    pen.line(29, 41, 74, 41).line(26, 59, 71, 59).stroke(inks.glyph, kLine + 1);
}

void videoCameraGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(19, 32.5, 42, 35, 9).fill(inks.glyph);
    pen.path("M68 47 L79 39.5 V60.5 L68 53 Z").fillRounded(inks.glyph, 5);
}

void personCardGlyph(Pen& pen, const GlyphInks& inks) {
    for (const double y : {33.0, 46.0, 59.0}) {
        pen.roundRect(70, y, 10, 8, 3).fill(faded(inks.glyph, 0.7));
    }
    pen.roundRect(23, 21, 50, 58, 8).fill(inks.glyph);
    pen.circle(48, 42, 8.5).fill(inks.detail);
    pen.path("M32 66 C32 50.5 64 50.5 64 66 Q64 67.5 62.5 67.5 H33.5 Q32 67.5 32 66 Z")
        .fill(inks.detail);
}

void peopleGlyph(Pen& pen, const GlyphInks& inks) {
    pen.save();
    pen.circle(42, 36, 13.5).clipAway();
    pen.path("M17 78 V70 C17 42 67 42 67 70 V78 Z").clipAway();
    pen.circle(65, 39.5, 8.5).fill(faded(inks.glyph, 0.7));
    pen.path("M56 73 H80 Q83 73 83 70 C83 49 65 46 56 53 Z").fill(faded(inks.glyph, 0.7));
    pen.restore();
    pen.circle(42, 36, 10.5).fill(inks.glyph);
    pen.path("M20 70 C20 46 64 46 64 70 Q64 73 61 73 H23 Q20 73 20 70 Z").fill(inks.glyph);
}

void boltGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M55.5 23 L32 54.5 H47 L44 77 L68 45 H52.5 Z").fillRounded(inks.glyph, 4.5);
}

}  // namespace velmoranth::simulator
