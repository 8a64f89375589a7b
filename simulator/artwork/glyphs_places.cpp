// Glyphs of places and of the world outside.
#include "simulator/artwork/glyphs.h"

namespace velmoranth::simulator {

void globeGlyph(Pen& pen, const GlyphInks& inks) {
    pen.circle(50, 50, 27.5).stroke(inks.glyph, kLine);
    pen.ellipse(50, 50, 11.5, 27.5).stroke(inks.glyph, kFineLine);
    pen.line(23, 50, 77, 50).stroke(inks.glyph, kFineLine);
    pen.path("M28.5 34 Q50 43 71.5 34").stroke(inks.glyph, kFineLine);
    pen.path("M28.5 66 Q50 57 71.5 66").stroke(inks.glyph, kFineLine);
}

void mapGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M21.5 36 L40 28.5 V68.5 L21.5 76 Z").fillRounded(inks.glyph, 3);
    pen.path("M40 28.5 L60 36 V76 L40 68.5 Z").fill(faded(inks.glyph, 0.72));
    pen.path("M60 36 L78.5 28.5 V68.5 L60 76 Z").fillRounded(inks.glyph, 3);
    pen.path(
           "M62 61 C52 48 47.5 42 47.5 34.5 C47.5 16.5 76.5 16.5 76.5 34.5 C76.5 42 72 48 62 61 Z")
        .fill({0xF4EFE2});
    pen.path(
           "M62 56.5 C54 46 50.5 40.5 50.5 34.5 C50.5 20.5 73.5 20.5 73.5 34.5 C73.5 40.5 70 46 62 "
           "56.5 Z")
        .fill(inks.detail);
    pen.circle(62, 34, 4.2).fill({0xFFFFFF});
}

void routeGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M36 71 H60 C76 71 76 50 60 50 H42 C26 50 26 29 42 29 H58").stroke(inks.glyph, kLine);
    pen.circle(31, 71, 7.5).stroke(inks.glyph, kLine);
    pen.circle(67, 29, 9.5).fill(inks.glyph);
}

void compassGlyph(Pen& pen, const GlyphInks& inks) {
    pen.circle(50, 50, 27.5).stroke(inks.glyph, kLine);
    pen.save();
    pen.turn(35, 50, 50);
    pen.path("M50 30 L57 50 H43 Z").fillRounded(inks.detail, 2);
    pen.path("M50 70 L57 50 H43 Z").fillRounded(inks.glyph, 2);
    pen.restore();
}

void weatherGlyph(Pen& pen, const GlyphInks& inks) {
    pen.circle(60, 39, 15.5).fill(inks.detail);
    pen.circle(37, 60, 13)
        .circle(52, 53, 16.5)
        .circle(67, 61, 12)
        .roundRect(33, 58, 38, 15, 7)
        .fill(inks.glyph);
}

void houseGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M22.5 49 L50 25.5 L77.5 49").stroke(inks.glyph, kLine + 1);
    pen.path("M30 51.5 L50 34.5 L70 51.5 V73 H30 Z").fillRounded(inks.glyph, 4);
    pen.roundRect(43.5, 55, 13, 21, 3).fill(inks.detail);
}

void browserGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(20, 26, 60, 49, 7).fill(inks.glyph);
    for (const double x : {28.0, 35.5, 43.0}) {
        pen.circle(x, 34, 2.3).fill(inks.detail);
    }
    pen.roundRect(25, 42, 50, 28, 3.5).fill(inks.detail);
    pen.circle(48, 54.5, 7).stroke(inks.glyph, kFineLine);
    pen.line(53.5, 60, 58, 64.5).stroke(inks.glyph, kFineLine);
}

}  // namespace velmoranth::simulator
