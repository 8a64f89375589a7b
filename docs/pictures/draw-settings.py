#!/usr/bin/python3
"""Draws docs/pictures/settings: for each setting the same piece of the example theme's home screen
with one value and with another. Needs build/velmoranth (./dev build) and Debian's python3-cairo.

usage: docs/pictures/draw-settings.py [KEY...]"""
import pathlib
import subprocess
import sys
import tempfile

import cairo

ROOT = pathlib.Path(__file__).resolve().parents[2]
COMMAND = ROOT / "build/velmoranth"
THEME = ROOT / "examples/themes/Kilnware.theme"
OUT = ROOT / "docs/pictures/settings"
SCALE = 2  # pixels per point of the device below
DEVICE = "phone-667"

# Pieces of the screen in points: x, y, width, height.
ICONS = (184, 18, 180, 97)
ICON_WITH_BADGE = (10, 104, 180, 98)
DOTS_AND_DOCK = (0, 548, 375, 119)
DOTS = (97, 548, 180, 30)

SHADOW = {"dynamicShadow": "yes", "opacityVal": "0.7", "shadowRadiusVal": "3", "xAxisVal": "0",
          "yAxisVal": "5", "shadowWidthVal": "60", "shadowHeightVal": "60"}

# Key: what is seen, the two values, what else is set.
SETTINGS = {
    "enable": (ICONS, "no", "yes", {}),
    "enableIconMask": (ICONS, "no", "yes", {"enableOverlay": "no"}),
    "enableOverlay": (ICONS, "no", "yes", {}),
    "enableShadow": (ICONS, "no", "yes", {}),
    "dynamicShadow": (ICONS, "no", "yes", SHADOW),
    "opacityVal": (ICONS, "0.2", "0.9", SHADOW),
    "shadowRadiusVal": (ICONS, "0", "8", SHADOW),
    "xAxisVal": (ICONS, "-10", "10", SHADOW),
    "yAxisVal": (ICONS, "-10", "10", SHADOW),
    "shadowWidthVal": (ICONS, "40", "80", {**SHADOW, "xAxisVal": "6"}),
    "shadowHeightVal": (ICONS, "40", "80", {**SHADOW, "removeLabels": "yes"}),
    "removeDock": (DOTS_AND_DOCK, "no", "yes", {}),
    "removeLabels": (ICON_WITH_BADGE, "no", "yes", {}),
    "removeIconBadges": (ICON_WITH_BADGE, "no", "yes", {}),
    "removePageDots": (DOTS, "no", "yes", {}),
}


def screen(folder, settings):
    path = folder / "screen.png"
    arguments = [str(COMMAND), "preview", str(THEME), "--device", DEVICE,
                 "--date", "2019-12-24T09:41", "-o", str(path)]
    for key, value in settings.items():
        arguments += ["--set", f"{key}={value}"]
    subprocess.run(arguments, check=True, stdout=subprocess.DEVNULL)
    return cairo.ImageSurface.create_from_png(str(path))


def draw(folder, key):
    area, first, second, others = SETTINGS[key]
    x, y, width, height = (v * SCALE for v in area)
    caption, gap = 34, 12
    stacked = width > 400
    total = (width, 2 * (height + caption)) if stacked else (2 * width + gap, height + caption)
    picture = cairo.ImageSurface(cairo.FORMAT_RGB24, *total)
    context = cairo.Context(picture)
    context.set_source_rgb(1, 1, 1)
    context.paint()
    context.select_font_face("Inter")
    context.set_font_size(20)
    for number, value in enumerate((first, second)):
        left, top = (0, number * (height + caption)) if stacked else (number * (width + gap), 0)
        context.set_source_rgb(0.2, 0.2, 0.22)
        context.move_to(left + 2, top + caption - 11)
        context.show_text(f"{key} = {value}")
        context.rectangle(left, top + caption, width, height)
        context.save()
        context.clip()
        context.set_source_surface(screen(folder, {**others, key: value}),
                                   left - x, top + caption - y)
        context.paint()
        context.restore()
    OUT.mkdir(parents=True, exist_ok=True)
    picture.write_to_png(str(OUT / f"{key}.png"))


def main():
    keys = sys.argv[1:] or list(SETTINGS)
    with tempfile.TemporaryDirectory() as folder:
        for key in keys:
            draw(pathlib.Path(folder), key)
            print(OUT.relative_to(ROOT) / f"{key}.png")


main()
