// The interface glyphs, for pictures that are made of them: each draws in a square from (0, 0) to
// (100, 100). Private to the folder. Inks are opaque: strokes overlap.
#pragma once

#include "simulator/artwork/pen.h"

namespace velmoranth::simulator {

using InterfaceGlyph = void (*)(Pen& pen, Ink ink);

void chevronRightMark(Pen& pen, Ink ink);
void magnifierMark(Pen& pen, Ink ink);
void shareMark(Pen& pen, Ink ink);
void trashMark(Pen& pen, Ink ink);
void gearMark(Pen& pen, Ink ink);
void starMark(Pen& pen, Ink ink);
void checkMark(Pen& pen, Ink ink);
void crossDiscMark(Pen& pen, Ink ink);
void bellMark(Pen& pen, Ink ink);
void moonMark(Pen& pen, Ink ink);
void wifiMark(Pen& pen, Ink ink);

/// The glyph in a square whose upper left corner is at (x, y) of the pen's units.
void drawMark(Pen& pen, InterfaceGlyph glyph, double x, double y, double side, Ink ink);

}  // namespace velmoranth::simulator
