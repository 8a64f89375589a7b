// The glyphs of the stock icons: one function draws one thing, in the middle of the icon, inside a
// live area that reaches from 20 to 80. Round shapes may go a little beyond, square ones stay a
// little inside, so that all of them look equally large. Private to the folder.
#pragma once

#include "simulator/artwork/pen.h"

namespace velmoranth::simulator {

/// What a glyph is drawn with: its own colour, and a second one for what lies on it (or beside it,
/// as an accent).
struct GlyphInks {
    Ink glyph;
    Ink detail;
};

using Glyph = void (*)(Pen& pen, const GlyphInks& inks);

/// Widths of lines, in hundredths of the icon: what is drawn by lines alone, and lines on a filled
/// glyph.
inline constexpr double kLine = 5;
inline constexpr double kFineLine = 3.6;

// People and messages.
void handsetGlyph(Pen& pen, const GlyphInks& inks);
void bubbleGlyph(Pen& pen, const GlyphInks& inks);
void twoBubblesGlyph(Pen& pen, const GlyphInks& inks);
void envelopeGlyph(Pen& pen, const GlyphInks& inks);
void atSignGlyph(Pen& pen, const GlyphInks& inks);
void hashGlyph(Pen& pen, const GlyphInks& inks);
void videoCameraGlyph(Pen& pen, const GlyphInks& inks);
void personCardGlyph(Pen& pen, const GlyphInks& inks);
void peopleGlyph(Pen& pen, const GlyphInks& inks);
void boltGlyph(Pen& pen, const GlyphInks& inks);

// Sound, pictures and reading.
void notesGlyph(Pen& pen, const GlyphInks& inks);
void playGlyph(Pen& pen, const GlyphInks& inks);
void cameraGlyph(Pen& pen, const GlyphInks& inks);
void pictureGlyph(Pen& pen, const GlyphInks& inks);
void waveformGlyph(Pen& pen, const GlyphInks& inks);
void microphoneGlyph(Pen& pen, const GlyphInks& inks);
void headphonesGlyph(Pen& pen, const GlyphInks& inks);
void bookGlyph(Pen& pen, const GlyphInks& inks);
void newspaperGlyph(Pen& pen, const GlyphInks& inks);
void screenGlyph(Pen& pen, const GlyphInks& inks);
void starGlyph(Pen& pen, const GlyphInks& inks);
void clapperGlyph(Pen& pen, const GlyphInks& inks);
void printsGlyph(Pen& pen, const GlyphInks& inks);

// Places and the world outside.
void globeGlyph(Pen& pen, const GlyphInks& inks);
void mapGlyph(Pen& pen, const GlyphInks& inks);
void routeGlyph(Pen& pen, const GlyphInks& inks);
void compassGlyph(Pen& pen, const GlyphInks& inks);
void weatherGlyph(Pen& pen, const GlyphInks& inks);
void houseGlyph(Pen& pen, const GlyphInks& inks);
void browserGlyph(Pen& pen, const GlyphInks& inks);

// Tools and everyday things.
void gearGlyph(Pen& pen, const GlyphInks& inks);
void calculatorGlyph(Pen& pen, const GlyphInks& inks);
void calendarGlyph(Pen& pen, const GlyphInks& inks);
void checklistGlyph(Pen& pen, const GlyphInks& inks);
void notepadGlyph(Pen& pen, const GlyphInks& inks);
void walletGlyph(Pen& pen, const GlyphInks& inks);
void chartGlyph(Pen& pen, const GlyphInks& inks);
void bagGlyph(Pen& pen, const GlyphInks& inks);
void heartGlyph(Pen& pen, const GlyphInks& inks);
void watchGlyph(Pen& pen, const GlyphInks& inks);
void clockFaceGlyph(Pen& pen, const GlyphInks& inks);
void clockGlyph(Pen& pen, const GlyphInks& inks);
/// What lies on the clock's face.
void clockHands(Pen& pen, const GlyphInks& inks, int hour, int minute, int second);
void folderGlyph(Pen& pen, const GlyphInks& inks);
void bulbGlyph(Pen& pen, const GlyphInks& inks);
void rulerGlyph(Pen& pen, const GlyphInks& inks);
void puzzleGlyph(Pen& pen, const GlyphInks& inks);
void layersGlyph(Pen& pen, const GlyphInks& inks);

/// A capital letter or a digit in lines; anything else is drawn as a ring. For apps without
/// artwork.
void letterGlyph(Pen& pen, char letter, Ink ink);

}  // namespace velmoranth::simulator
