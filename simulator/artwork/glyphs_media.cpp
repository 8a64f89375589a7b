// Glyphs of sound, pictures and reading.
#include "simulator/artwork/glyphs.h"

#include <array>

namespace velmoranth::simulator {

void notesGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M41 34 L71.5 27 V36 L41 43 Z").fillRounded(inks.glyph, 4);
    pen.line(41, 36, 41, 68).line(71.5, 30, 71.5, 61).stroke(inks.glyph, kLine);
    for (const auto& [x, y] : {std::array{33.5, 68.5}, std::array{64.0, 61.5}}) {
        pen.save();
        pen.turn(-18, x, y);
        pen.ellipse(x, y, 10, 7.8).fill(inks.glyph);
        pen.restore();
    }
}

void playGlyph(Pen& pen, const GlyphInks& inks) {
    pen.circle(50, 50, 27).stroke(inks.glyph, kLine);
    pen.path("M44.5 39.5 L61 50 L44.5 60.5 Z").fillRounded(inks.glyph, 5);
}

void cameraGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M36 37 L41.5 27.5 H58.5 L64 37 Z").fillRounded(inks.glyph, 5);
    pen.roundRect(19, 33, 62, 41.5, 9).fill(inks.glyph);
    pen.circle(50, 53, 14).fill(inks.detail);
    pen.circle(50, 53, 9.5).fill(inks.glyph);
    pen.circle(72, 42, 2.6).fill(inks.detail);
}

void pictureGlyph(Pen& pen, const GlyphInks& inks) {
    pen.save();
    pen.roundRect(20, 24, 60, 52, 9).clip();
    pen.roundRect(20, 24, 60, 52, 0).fillGradient({0x8CCBEA}, inks.glyph, 24, 76);
    pen.circle(37, 41, 7).fill(inks.detail);
    pen.path("M44 80 L64 49 L92 80 Z").fillRounded({0x3E86A6}, 4);
    pen.path("M12 80 L37 56 L62 80 Z").fillRounded({0xF4FAFD}, 4);
    pen.restore();
}

void waveformGlyph(Pen& pen, const GlyphInks& inks) {
    constexpr std::array kHalfHeights{4.0, 12.0, 22.0, 9.0, 27.0, 15.0, 20.0, 8.0, 3.5};
    double x = 22;
    for (const double half : kHalfHeights) {
        pen.line(x, 50 - half, x, 50 + half);
        x += 7;
    }
    pen.stroke(inks.glyph, 3.8);
}

void microphoneGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(40, 20.5, 20, 36, 10).fill(inks.glyph);
    pen.path("M30.5 47 C30.5 73 69.5 73 69.5 47").stroke(inks.glyph, kLine);
    pen.line(50, 67, 50, 78).line(40, 78, 60, 78).stroke(inks.glyph, kLine);
}

void headphonesGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M24.5 62 V51 C24.5 17 75.5 17 75.5 51 V62").stroke(inks.glyph, kLine);
    pen.roundRect(22, 52, 14.5, 23, 6).roundRect(63.5, 52, 14.5, 23, 6).fill(inks.glyph);
}

void bookGlyph(Pen& pen, const GlyphInks& inks) {
    pen.path("M48.2 35 C41 28.5 32 27 21.5 28 V68 C32 67 41 68.5 48.2 74 Z")
        .fillRounded(inks.glyph, 3);
    pen.path("M51.8 35 C59 28.5 68 27 78.5 28 V68 C68 67 59 68.5 51.8 74 Z")
        .fillRounded(inks.glyph, 3);
    for (const double y : {39.0, 48.0}) {
        pen.path(y < 40 ? "M28 38 Q36 37.5 42 41" : "M28 47 Q36 46.5 42 50")
            .stroke(inks.detail, 2.8);
        pen.path(y < 40 ? "M72 38 Q64 37.5 58 41" : "M72 47 Q64 46.5 58 50")
            .stroke(inks.detail, 2.8);
    }
}

void newspaperGlyph(Pen& pen, const GlyphInks& inks) {
    pen.save();
    pen.roundRect(17, 22, 56.5, 57, 9).clipAway();
    pen.roundRect(56, 35, 24, 41, 6).fill(faded(inks.glyph, 0.7));
    pen.restore();
    pen.roundRect(20, 25, 50.5, 51, 7).fill(inks.glyph);
    pen.line(28.5, 35.5, 62, 35.5).stroke(inks.detail, kLine);
    pen.roundRect(26.5, 44, 16, 14, 2.5).fill(inks.detail);
    pen.line(50, 46, 62, 46)
        .line(50, 56, 62, 56)
        .line(28.3, 66.5, 62, 66.5)
        .stroke(inks.detail, kFineLine);
}

void screenGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(21.5, 29, 57, 36, 6).stroke(inks.glyph, kLine);
    pen.path("M46.5 40.5 L57.5 47 L46.5 53.5 Z").fillRounded(inks.detail, 3.5);
    pen.line(38, 75.5, 62, 75.5).stroke(inks.glyph, kLine);
}

void starGlyph(Pen& pen, const GlyphInks& inks) {
    pen.star(50, 52, 5, 28, 13).fillRounded(inks.glyph, 5);
}

void clapperGlyph(Pen& pen, const GlyphInks& inks) {
    pen.roundRect(22, 45, 56, 32, 5).fill(inks.glyph);
    pen.save();
    pen.turn(-13, 24, 42);
    pen.roundRect(22, 30, 56, 11.5, 3).clip();
    pen.roundRect(22, 30, 56, 11.5, 0).fill(inks.glyph);
    for (const double x : {31.0, 48.0, 65.0}) {
        pen.line(x, 44, x + 8, 28);
    }
    pen.stroke(inks.detail, kLine);
    pen.restore();
    pen.path("M45 54.5 L57 61 L45 67.5 Z").fillRounded(inks.detail, 3);
}

void printsGlyph(Pen& pen, const GlyphInks& inks) {
    pen.save();
    pen.turn(-7, 50, 50);
    pen.roundRect(22, 25, 46, 55, 7).clipAway();
    pen.turn(19, 50, 50);
    pen.roundRect(36, 22, 40, 48, 5).fill(faded(inks.glyph, 0.7));
    pen.restore();
    pen.save();
    pen.turn(-7, 50, 50);
    pen.roundRect(25, 28, 40, 49, 5).fill(inks.glyph);
    pen.roundRect(30, 33, 30, 29, 3).fill(inks.detail);
    pen.path("M45 54 C35 47 38 40 42 40.5 Q44 40.8 45 43 Q46 40.8 48 40.5 C52 40 55 47 45 54 Z")
        .fill(inks.glyph);
    pen.restore();
}

}  // namespace velmoranth::simulator
