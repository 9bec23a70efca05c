#!/usr/bin/python3
"""Makes the fonts beside it, with python3-fonttools. In place of a letter each has a box, as wide and as high as the font
is large: whatever draws it, it is the same pixels, as long as font and place are the same. The box of the bold font fills
that square, the one of the plain font leaves a border, and the one of the monospaced font is a frame."""
from pathlib import Path

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen

SIZE = 1000
LETTERS = range(0x21, 0x7F)


def glyph(*boxes):
    """Each box within the one before is a hole in it."""
    pen = TTGlyphPen(None)
    for number, (left, bottom, right, top) in enumerate(boxes):
        corners = [(left, bottom), (left, top), (right, top), (right, bottom)]
        corners = corners[::-1] if number % 2 else corners
        pen.moveTo(corners[0])
        for corner in corners[1:]:
            pen.lineTo(corner)
        pen.closePath()
    return pen.glyph()


def make(name, family, style, *boxes):
    font = FontBuilder(SIZE)
    font.setupGlyphOrder([".notdef", "space", "letter"])
    font.setupCharacterMap({0x20: "space"} | {letter: "letter" for letter in LETTERS})
    font.setupGlyf({".notdef": glyph(), "space": glyph(), "letter": glyph(*boxes)})
    font.setupHorizontalMetrics({each: (SIZE, 0) for each in (".notdef", "space")} | {"letter": (SIZE, boxes[0][0])})
    font.setupHorizontalHeader(ascent=SIZE, descent=0)
    font.setupNameTable({"familyName": family, "styleName": style, "psName": f"{family}-{style}".replace(" ", "")})
    bold = style == "Bold"
    font.setupOS2(sTypoAscender=SIZE, sTypoDescender=0, usWinAscent=SIZE, usWinDescent=0,
                  usWeightClass=700 if bold else 400, fsSelection=0x20 if bold else 0x40)
    font.setupPost(isFixedPitch=int("Mono" in family))
    font.setupHead(unitsPerEm=SIZE, macStyle=int(bold), created=0, modified=0)
    font.font.recalcTimestamp = False
    font.save(Path(__file__).with_name(name))


make("boxes.ttf", "Boxes", "Regular", (100, 100, 900, 800))
make("boxes-bold.ttf", "Boxes", "Bold", (0, 0, 1000, 1000))
make("boxes-mono.ttf", "Boxes Mono", "Regular", (100, 100, 900, 800), (300, 300, 700, 600))
