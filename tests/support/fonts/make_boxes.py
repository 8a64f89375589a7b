#!/usr/bin/env python3
"""Draws Boxes.ttf, a font whose glyphs are plain boxes, so that a test can compute every pixel of a text.

Run it in this folder after a change; it needs python3-fonttools. In units of a thousandth of the size:
ascent 800, descent 200, no line gap. Each glyph stands 100 from the start and the end of its advance.
"""
from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen

# Character: name, advance, bottom, top. Letters of 0 height are blank.
GLYPHS = {
    None: (".notdef", 1000, 0, 1000),
    " ": ("space", 500, 0, 0),
    "H": ("H", 600, 0, 700),
    "l": ("l", 300, 0, 700),
    "x": ("x", 600, 0, 500),
    "g": ("g", 600, -200, 500),
    "\u2026": ("ellipsis", 900, 0, 100),
    "\u05d0": ("alef", 600, 0, 700),
    "\u05d5": ("vav", 300, 0, 700),
}
SIDE = 100


def box(advance, bottom, top):
    pen = TTGlyphPen(None)
    if top > bottom:
        left, right = SIDE, advance - SIDE
        pen.moveTo((left, bottom))
        for corner in ((left, top), (right, top), (right, bottom)):
            pen.lineTo(corner)
        pen.closePath()
    return pen.glyph()


def main():
    builder = FontBuilder(1000, isTTF=True)
    builder.setupGlyphOrder([name for name, *_ in GLYPHS.values()])
    builder.setupCharacterMap({ord(char): glyph[0] for char, glyph in GLYPHS.items() if char})
    builder.setupGlyf({name: box(*shape) for name, *shape in GLYPHS.values()})
    builder.setupHorizontalMetrics(
        {name: (advance, SIDE if top > bottom else 0) for name, advance, bottom, top in GLYPHS.values()})
    builder.setupHorizontalHeader(ascent=800, descent=-200, lineGap=0)
    builder.setupNameTable({"familyName": "Boxes", "styleName": "Regular", "psName": "Boxes-Regular"})
    builder.setupOS2(sTypoAscender=800, sTypoDescender=-200, sTypoLineGap=0, usWinAscent=800, usWinDescent=200)
    builder.setupPost()
    builder.setupHead(unitsPerEm=1000, created=0, modified=0)
    builder.font.recalcTimestamp = False
    builder.save("Boxes.ttf")


if __name__ == "__main__":
    main()
