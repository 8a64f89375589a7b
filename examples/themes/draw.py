#!/usr/bin/python3
"""Draws Kilnware, an icon theme after glazed stoneware: every picture of Kilnware.theme comes from here.

    python3 draw.py [FOLDER]      writes Kilnware.theme into FOLDER, by default beside this script

Needs python3-cairo and nothing else: no fonts, no clock, no chance. Chance-like things (specks) come from a small
generator seeded by the icon's name, so a picture comes out the same on every run.
"""
import math
import os
import sys
import zlib

import cairo

sys.dont_write_bytecode = True
from glyphs import GLYPHS  # noqa: E402
from pen import draw_marks  # noqa: E402

NAME = "Kilnware"
SIDE = 180  # an icon of 60 points on a screen of scale 3

# Glazes: body colour, and the slip that the line drawing is laid in with.
SLIP, IRON = 0xFBF4E8, 0x54392E
GLAZES = {
    "salt": (0xEFE5D3, IRON),
    "butter": (0xE8CB8A, IRON),
    "ochre": (0xD2A050, IRON),
    "celadon": (0xB2CBB6, 0x35504A),
    "sage": (0x7C9276, SLIP),
    "moss": (0x5C7358, SLIP),
    "teal": (0x3E7678, SLIP),
    "slate": (0x6B8698, SLIP),
    "indigo": (0x41547A, SLIP),
    "plum": (0x745369, SLIP),
    "rose": (0xC98F85, SLIP),
    "brick": (0xB96347, SLIP),
    "soot": (0x47423F, SLIP),
}

ICONS = {
    "com.apple.mobilephone": "moss",
    "com.apple.MobileSMS": "sage",
    "com.apple.mobilesafari": "indigo",
    "com.apple.mobilemail": "slate",
    "com.apple.Music": "brick",
    "com.apple.Preferences": "soot",
    "com.apple.camera": "soot",
    "com.apple.mobileslideshow": "butter",
    "com.apple.mobiletimer": "salt",
    "com.apple.weather": "slate",
    "com.apple.Maps": "moss",
    "com.apple.mobilenotes": "butter",
    "com.apple.reminders": "celadon",
    "com.apple.news": "brick",
    "com.apple.Home": "ochre",
    "com.apple.stocks": "teal",
    "com.apple.VoiceMemos": "plum",
    "com.apple.iBooks": "ochre",
    "com.apple.AppStore": "indigo",
    "com.apple.podcasts": "plum",
    "com.apple.tv": "soot",
    "com.apple.Health": "rose",
    "com.apple.Passbook": "teal",
    "com.apple.calculator": "celadon",
    "com.apple.MobileStore": "rose",
    "com.apple.DocumentsApp": "slate",
    "com.apple.facetime": "teal",
    "com.apple.MobileAddressBook": "salt",
    "com.apple.compass": "indigo",
    "com.apple.measure": "butter",
    "com.apple.tips": "ochre",
    "com.apple.Bridge": "soot",
    "com.google.ios.youtube": "plum",
    "com.burbn.instagram": "rose",
    "com.spotify.client": "slate",
    "com.google.Gmail": "salt",
}

CLAY, CLAY_DARK, CLAY_LIGHT = 0xC39472, 0x9A6A4B, 0xDDB694
LINE = 4.6  # width of the drawings' lines


def rgb(colour):
    return tuple(((colour >> shift) & 0xFF) / 255 for shift in (16, 8, 0))


def mixed(a, b, share):
    return tuple(x + (y - x) * share for x, y in zip(rgb(a), rgb(b)))


class Chance:
    """A linear congruential generator (the constants are those of Numerical Recipes), seeded by a name."""

    def __init__(self, name):
        self.state = zlib.crc32(name.encode())

    def between(self, low, high):
        self.state = (self.state * 1664525 + 1013904223) & 0xFFFFFFFF
        return low + (high - low) * self.state / 0x100000000


# Shapes. The unit is a hundredth of the icon's side, whatever its pixels.


def canvas(pixels, kind=cairo.FORMAT_ARGB32, units=100.0):
    surface = cairo.ImageSurface(kind, pixels, pixels)
    context = cairo.Context(surface)
    context.scale(pixels / units, pixels / units)
    context.set_antialias(cairo.ANTIALIAS_BEST)
    context.set_line_cap(cairo.LINE_CAP_ROUND)
    context.set_line_join(cairo.LINE_JOIN_ROUND)
    return surface, context


# The overlay reaches a little beyond the mask, so that the art's soft edge does not shine through at the foot.
OVERLAY_HALF, MASK_HALF = 49.5, 49.1


def pebble(c, half=OVERLAY_HALF, x=50.0, y=50.0):
    """The shape of the set: a superellipse, rounder than the platform's own icon and inside it everywhere."""
    power = 2 / 3.05
    steps = 360
    for step in range(steps):
        angle = 2 * math.pi * step / steps
        across, down = math.cos(angle), math.sin(angle)
        c.line_to(
            x + half * math.copysign(abs(across) ** power, across),
            y + half * math.copysign(abs(down) ** power, down),
        )
    c.close_path()


def dip_line(c):
    """Where the glaze ends: the tile was dipped by hand, a little askew."""
    c.move_to(-2, 84.6)
    c.curve_to(18, 82.2, 30, 87.2, 50, 85.6)
    c.curve_to(68, 84.2, 80, 81.6, 102, 84.4)


# Materials.


def specks(c, chance, count, colour, strength, top=0.0, bottom=100.0, largest=0.75):
    """Iron that has burnt through: many fine grains, few coarse ones."""
    for _ in range(count):
        x, y = chance.between(0, 100), chance.between(top, bottom)
        size = 0.22 + (largest - 0.22) * chance.between(0, 1) ** 4
        c.set_source_rgba(*rgb(colour), strength * chance.between(0.35, 1))
        c.arc(x, y, size, 0, 2 * math.pi)
        c.fill()


def glaze(c, body, name):
    """A coat of glaze: lighter where it lies thin at the top, deeper where it has run down."""
    run = cairo.LinearGradient(0, 0, 0, 100)
    run.add_color_stop_rgb(0, *mixed(body, 0xFFFFFF, 0.17))
    run.add_color_stop_rgb(0.45, *rgb(body))
    run.add_color_stop_rgb(1, *mixed(body, 0x1E1410, 0.20))
    c.set_source(run)
    c.paint()
    chance = Chance(name)
    specks(c, chance, 120, 0x4A2F22, 0.42)
    specks(c, chance, 30, 0xFFFFFF, 0.22)


def laid_in(c, marks, ink, body):
    """The drawing in slip: a groove's shade above it, so that it lies in the glaze and not on it."""
    c.push_group()
    c.set_source_rgb(*mixed(body, 0x1E1410, 0.55))
    c.save()
    c.translate(0, -0.55)
    draw_marks(c, marks, LINE + 0.5)
    c.restore()
    c.pop_group_to_source()
    c.paint_with_alpha(0.34 if ink == SLIP else 0.18)
    c.set_source_rgb(*rgb(ink))
    draw_marks(c, marks, LINE)


def write(surface, folder, *names):
    target = os.path.join(folder, *names)
    os.makedirs(os.path.dirname(target), exist_ok=True)
    surface.flush()
    surface.write_to_png(target)


# The files of the theme.


def icon(identifier):
    body, ink = GLAZES[ICONS[identifier]]
    surface, c = canvas(SIDE, cairo.FORMAT_RGB24)
    glaze(c, body, identifier)
    laid_in(c, GLYPHS[identifier], ink, body)
    return surface


def calendar():
    """Only the tile: the home screen writes weekday and day on it, as Info.plist says."""
    surface, c = canvas(SIDE, cairo.FORMAT_RGB24)
    glaze(c, GLAZES["salt"][0], "com.apple.mobilecal")
    c.move_to(-2, -2)
    c.line_to(102, -2)
    c.line_to(102, 29.5)
    c.curve_to(80, 31.5, 62, 27.8, 46, 29.4)
    c.curve_to(28, 31, 14, 28.6, -2, 30.2)
    c.close_path()
    c.set_source_rgb(*rgb(GLAZES["brick"][0]))
    c.fill()
    return surface


def clock_background():
    """The clock without hands, which the home screen turns as layers of their own."""
    surface, c = canvas(SIDE, cairo.FORMAT_RGB24)
    glaze(c, GLAZES["salt"][0], "clock")
    for hour in range(12):
        angle = hour * math.pi / 6
        quarter = hour % 3 == 0
        c.set_source_rgb(*(rgb(IRON) if quarter else mixed(GLAZES["salt"][0], IRON, 0.55)))
        c.arc(50 + 29 * math.sin(angle), 50 - 29 * math.cos(angle), 2.1 if quarter else 1.2, 0, 2 * math.pi)
        c.fill()
    return surface


def mask():
    """8-bit gray: black shows the icon, white hides it."""
    surface, c = canvas(SIDE, cairo.FORMAT_A8)
    c.set_source_rgba(0, 0, 0, 1)
    c.paint()
    c.set_operator(cairo.OPERATOR_DEST_OUT)
    pebble(c, MASK_HALF)
    c.fill()
    return surface


def overlay():
    """What every icon gets, with art of ours or without: the foot of raw clay, the glaze's edge, rim and gloss."""
    surface, c = canvas(SIDE)
    pebble(c)
    c.clip()

    # The foot.
    dip_line(c)
    c.line_to(102, 102)
    c.line_to(-2, 102)
    c.close_path()
    c.save()
    c.clip()
    clay = cairo.LinearGradient(0, 82, 0, 100)
    clay.add_color_stop_rgb(0, *mixed(CLAY, CLAY_LIGHT, 0.45))
    clay.add_color_stop_rgb(0.4, *rgb(CLAY))
    clay.add_color_stop_rgb(1, *mixed(CLAY, CLAY_DARK, 0.75))
    c.set_source(clay)
    c.paint()
    chance = Chance("foot")
    specks(c, chance, 150, 0x6B4530, 0.45, 80, 100, 0.6)
    specks(c, chance, 70, 0xF3DCC4, 0.4, 80, 100, 0.5)
    c.restore()

    # The glaze ends in a bead: a shadow on the clay, a dark roll, a line of light.
    for shift, width, colour, strength in (
        (1.3, 2.6, 0x4A2A1A, 0.20), (0.6, 1.6, 0x4A2A1A, 0.30), (-0.7, 2.0, 0x140D0A, 0.20), (-1.4, 0.8, 0xFFFFFF, 0.34),
    ):
        c.save()
        c.translate(0, shift)
        dip_line(c)
        c.restore()
        c.set_source_rgba(*rgb(colour), strength)
        c.set_line_width(width)
        c.stroke()

    # Gloss: a window in the upper left that ends in a soft arc.
    c.save()
    c.move_to(-5, -5)
    c.line_to(105, -5)
    c.line_to(105, 16)
    c.curve_to(70, 20, 34, 30, -5, 52)
    c.close_path()
    gloss = cairo.LinearGradient(22, 0, 38, 40)
    gloss.add_color_stop_rgba(0, 1, 1, 1, 0.22)
    gloss.add_color_stop_rgba(1, 1, 1, 1, 0.015)
    c.set_source(gloss)
    c.fill()
    c.restore()

    # The tile is domed: its lower edge turns away from the light, its upper edge catches it.
    for width, strength in ((11, 0.035), (8, 0.04), (5.5, 0.05), (3.2, 0.07)):
        pebble(c)
        shade = cairo.LinearGradient(0, 30, 0, 100)
        shade.add_color_stop_rgba(0, 0.1, 0.06, 0.04, 0)
        shade.add_color_stop_rgba(1, 0.1, 0.06, 0.04, strength * 2)
        c.set_source(shade)
        c.set_line_width(width)
        c.stroke()
    pebble(c)
    rim = cairo.LinearGradient(0, 0, 0, 60)
    rim.add_color_stop_rgba(0, 1, 1, 1, 0.62)
    rim.add_color_stop_rgba(0.5, 1, 1, 1, 0.16)
    rim.add_color_stop_rgba(1, 1, 1, 1, 0)
    c.set_source(rim)
    c.set_line_width(2.4)
    c.stroke()
    return surface


def shadow(pixels, frame, icon_points):
    """A soft shadow for a frame (in points) that lies 10 points around the icon on all sides."""
    surface, c = canvas(pixels, units=frame)
    middle = frame / 2
    half = icon_points / 2 * 0.988
    reach, layers = 8.0, 40
    # Each layer adds what is missing to a bell-shaped fall-off; painted from the widest inwards.
    covered = 0.0
    for layer in range(layers + 1):
        distance = 1 - 2 * layer / layers  # 1 outside, -1 inside
        wanted = 0.5 * (1 - math.sin(distance * math.pi / 2)) * 0.42
        step = (wanted - covered) / (1 - covered)
        covered = wanted
        if step <= 0:
            continue
        c.set_source_rgba(0.11, 0.07, 0.05, step)
        pebble(c, half - 2.0 + distance * reach / 2, middle, middle + 3.2)
        c.fill()
    return surface


def folder():
    """A shallow tray of raw clay."""
    surface, c = canvas(SIDE)
    pebble(c)
    c.clip()
    clay = cairo.LinearGradient(0, 0, 0, 100)
    clay.add_color_stop_rgba(0, *mixed(CLAY_DARK, CLAY, 0.2), 0.92)
    clay.add_color_stop_rgba(1, *mixed(CLAY, CLAY_LIGHT, 0.25), 0.92)
    c.set_source(clay)
    c.paint()
    specks(c, Chance("tray"), 260, 0x5E3B29, 0.30, largest=0.6)
    for width, strength in ((9, 0.05), (6, 0.06), (3, 0.08)):
        pebble(c)
        c.set_source_rgba(0.2, 0.1, 0.05, strength)
        c.set_line_width(width)
        c.stroke()
    pebble(c)
    rim = cairo.LinearGradient(0, 0, 0, 100)
    rim.add_color_stop_rgba(0, 1, 0.92, 0.84, 0.25)
    rim.add_color_stop_rgba(1, 1, 0.92, 0.84, 0.60)
    c.set_source(rim)
    c.set_line_width(2.4)
    c.stroke()
    return surface


def badge():
    surface, c = canvas(72)
    c.arc(50, 50, 48, 0, 2 * math.pi)
    c.clip()
    glaze_run = cairo.LinearGradient(0, 0, 0, 100)
    glaze_run.add_color_stop_rgb(0, *mixed(0xB5482F, 0xFFFFFF, 0.12))
    glaze_run.add_color_stop_rgb(1, *mixed(0xB5482F, 0x1E1410, 0.18))
    c.set_source(glaze_run)
    c.paint()
    c.arc(50, 50, 46.5, 0, 2 * math.pi)
    c.set_source_rgba(*rgb(SLIP), 0.85)
    c.set_line_width(4.5)
    c.stroke()
    return surface


INFO = """<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>PackageName</key>
	<string>Kilnware</string>
	<key>ThemeType</key>
	<string>Icons</string>
	<key>IB-MaskIcons</key>
	<true/>
	<key>CalendarIconDaySettings</key>
	<dict>
		<key>FontName</key>
		<string>HelveticaNeue-Medium</string>
		<key>FontSize</key>
		<real>7.5</real>
		<key>TextColor</key>
		<string>FBF4E8</string>
		<key>TextXoffset</key>
		<real>0</real>
		<key>TextYoffset</key>
		<real>4.8</real>
	</dict>
	<key>CalendarIconDateSettings</key>
	<dict>
		<key>FontName</key>
		<string>HelveticaNeue-Light</string>
		<key>FontSize</key>
		<real>27</real>
		<key>TextColor</key>
		<string>54392E</string>
		<key>TextXoffset</key>
		<real>0</real>
		<key>TextYoffset</key>
		<real>18.5</real>
	</dict>
</dict>
</plist>
"""


def main():
    beside = os.path.dirname(os.path.abspath(__file__))
    theme = os.path.join(sys.argv[1] if len(sys.argv) > 1 else beside, NAME + ".theme")
    for identifier in ICONS:
        write(icon(identifier), theme, "IconBundles", identifier + "-large.png")
    write(calendar(), theme, "IconBundles", "com.apple.mobilecal-large.png")
    write(mask(), theme, "Bundles", "com.apple.mobileicons.framework", "AppIconMask.png")
    springboard = os.path.join(theme, "Bundles", "com.apple.springboard")
    write(clock_background(), springboard, "ClockIconBackgroundSquare.png")
    write(folder(), springboard, "ANEMFolderIconBG.png")
    write(badge(), springboard, "SBBadgeBG.png")
    for device in ("iPhone", "iPad"):
        write(overlay(), theme, "Velmoranth", device + "Overlay.png")
    write(shadow(240, 80, 60), theme, "Velmoranth", "iPhoneShadow.png")
    write(shadow(192, 96, 76), theme, "Velmoranth", "iPadShadow~ipad.png")
    with open(os.path.join(theme, "Info.plist"), "w", encoding="utf-8") as file:
        file.write(INFO)


if __name__ == "__main__":
    main()
