#!/usr/bin/python3
"""Draws Kilnware, an icon theme after glazed stoneware: every picture of Kilnware.theme comes from here.

    python3 draw.py [FOLDER]      writes Kilnware.theme into FOLDER, by default beside this script

Needs python3-cairo and nothing else: no fonts, no clock, no chance. Chance-like things (specks) come from a small
generator seeded by the icon's name, so a picture comes out the same on every run.
"""
import math
import os
import plistlib
import sys

import cairo

sys.dont_write_bytecode = True
from furniture import badge, dock, folder, folder_backdrop, page_dot, search_dot  # noqa: E402
from glyphs import GLYPHS, SIGNS, TOOLKIT  # noqa: E402
from interface import TILES, WEATHER, knob, settings_icon, sign, toolkit_image, weather  # noqa: E402
from materials import (  # noqa: E402
    CLAY, CLAY_DARK, CLAY_LIGHT, GLAZES, IRON, MASK_HALF, SLIP, Chance, canvas, dip_line, glaze, mixed, pebble, rgb,
    specks, write,
)
from pen import draw_marks  # noqa: E402

NAME = "Kilnware"
SIDE = 180  # an icon of 60 points on a screen of scale 3

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

LINE = 4.6  # width of the drawings' lines


def laid_in(c, marks, ink, body, line=LINE):
    """The drawing in slip: a groove's shade above it, so that it lies in the glaze and not on it."""
    c.push_group()
    c.set_source_rgb(*mixed(body, 0x1E1410, 0.55))
    c.save()
    c.translate(0, -0.55)
    draw_marks(c, marks, line + 0.5)
    c.restore()
    c.pop_group_to_source()
    c.paint_with_alpha(0.34 if ink == SLIP else 0.18)
    c.set_source_rgb(*rgb(ink))
    draw_marks(c, marks, line)


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
        c.arc(50 + 31 * math.sin(angle), 50 - 31 * math.cos(angle), 2.1 if quarter else 1.2, 0, 2 * math.pi)
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


# Texts of the calendar icon, in points on an icon of 60: weekday on the brick, day on the salt, each with the line of
# light or shade that a stamp leaves. A label is 12 points high for the weekday and 30 for the day, and cuts off what
# is higher; both have to end above the foot, at 50.
CALENDAR = {
    "CalendarIconDaySettings": {
        "FontName": "AvenirNext-DemiBold", "FontSize": 7.6, "TextColor": "FBF4E8", "TextXoffset": 0.0, "TextYoffset": 4.6,
        "ShadowColor": "7E3C28", "ShadowXoffset": 0.0, "ShadowYoffset": -0.5, "ShadowBlurRadius": 0.0,
    },
    "CalendarIconDateSettings": {
        "FontName": "AvenirNext-Medium", "FontSize": 24.0, "TextColor": "54392E", "TextXoffset": 0.0, "TextYoffset": 19.2,
        "ShadowColor": "FFFBF2", "ShadowXoffset": 0.0, "ShadowYoffset": 0.7, "ShadowBlurRadius": 0.0,
    },
}

INFO = {"PackageName": NAME, "IB-MaskIcons": True, **CALENDAR}


def main():
    beside = os.path.dirname(os.path.abspath(__file__))
    theme = os.path.join(sys.argv[1] if len(sys.argv) > 1 else beside, NAME + ".theme")
    for identifier in ICONS:
        write(icon(identifier), theme, "IconBundles", identifier + "-large.png")
    write(calendar(), theme, "IconBundles", "com.apple.mobilecal-large.png")
    write(mask(), theme, "Bundles", "com.apple.mobileicons.framework", "AppIconMask.png")
    springboard = os.path.join(theme, "Bundles", "com.apple.springboard")
    write(clock_background(), theme, "Bundles", "com.apple.SpringBoardHome", "ClockIconBackgroundSquare@3x.png")
    write(folder(SIDE), springboard, "ANEMFolderIconBG.png")
    write(folder(152), theme, "Velmoranth", "ipadFolder.png")
    write(folder_backdrop(), springboard, "ANEMFolderBackground.png")
    write(badge(), springboard, "SBBadgeBG.png")
    for scale, suffix in ((1, ""), (2, "@2x"), (3, "@3x")):
        write(page_dot(scale, current=True), springboard, f"SBPageDotCurrent{suffix}.png")
        write(page_dot(scale, current=False), springboard, f"SBPageDot{suffix}.png")
        write(search_dot(scale), springboard, f"Spotlight_Pages{suffix}.png")
        write(knob(scale), theme, "UIImages", f"UISwitchKnob{suffix}.png")
    # A phone's icons end 64 to 67 points below the picture's top, a pad's 80: that is where the boards lie.
    write(dock(375, 95, 3, 55, 69), theme, "Velmoranth", "SBDockBGiphone.png")
    write(dock(768, 104, 2, 67, 83), springboard, "SBDockBG-Portrait@2x~ipad.png")
    write(dock(1024, 104, 2, 67, 83), springboard, "SBDockBG-Landscape@2x~ipad.png")
    for device in ("iPhone", "iPad"):
        write(overlay(), theme, "Velmoranth", device + "Overlay.png")
    write(shadow(240, 80, 60), theme, "Velmoranth", "iPhoneShadow.png")
    write(shadow(192, 96, 76), theme, "Velmoranth", "iPadShadow~ipad.png")
    for key in TILES:
        write(settings_icon(key, laid_in), theme, "Bundles", "com.apple.Preferences", key + "@3x.png")
    for condition in WEATHER:
        write(weather(condition), theme, "Bundles", "com.apple.weather-framework", condition + "@3x.png")
    for name in SIGNS:
        write(sign(name), theme, "UIImages", name + "@3x.png")
    for name in TOOLKIT:
        write(toolkit_image(name), theme, "UIImages", name + "@3x.png")
    with open(os.path.join(theme, "Info.plist"), "wb") as file:
        plistlib.dump(INFO, file, sort_keys=False)


if __name__ == "__main__":
    main()
