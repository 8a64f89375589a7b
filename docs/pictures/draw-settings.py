#!/usr/bin/python3
"""Draws the pictures of docs/themes/settings.md: for each setting the same piece of the example theme's
home screen with one value and with another, the settings panel, and an open folder. Needs
build/velmoranth (./dev build) and Debian's python3-cairo.

usage: docs/pictures/draw-settings.py [NAME...]    NAME is a setting's key, panel or open-folder"""
import pathlib
import subprocess
import sys
import tempfile

import cairo

ROOT = pathlib.Path(__file__).resolve().parents[2]
COMMAND = ROOT / "build/velmoranth"
THEME = ROOT / "examples/themes/Kilnware.theme"
OUT = ROOT / "docs/pictures"
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


def preview(path, *arguments):
    subprocess.run([str(COMMAND), "preview", str(THEME), "--device", DEVICE, "-o", str(path),
                    *arguments], check=True, stdout=subprocess.DEVNULL)


def screen(folder, *arguments):
    path = folder / "screen.png"
    preview(path, "--date", "2019-12-24T09:41", *arguments)
    return cairo.ImageSurface.create_from_png(str(path))


def setting_arguments(settings):
    return [argument for key, value in settings.items() for argument in ("--set", f"{key}={value}")]


def draw_setting(folder, key, file):
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
        context.set_source_surface(screen(folder, *setting_arguments({**others, key: value})),
                                   left - x, top + caption - y)
        context.paint()
        context.restore()
    picture.write_to_png(str(file))


def draw_panel(folder, _name, file):
    """What comes over the settings panel, side by side at half the size."""
    screens = [screen(folder, "--screen", name) for name in ("panel-error", "panel-success")]
    width, height, gap = screens[0].get_width() // SCALE, screens[0].get_height() // SCALE, 20
    picture = cairo.ImageSurface(cairo.FORMAT_RGB24, 2 * width + gap, height)
    context = cairo.Context(picture)
    context.set_source_rgb(1, 1, 1)
    context.paint()
    context.scale(1 / SCALE, 1 / SCALE)
    for number, shown in enumerate(screens):
        context.set_source_surface(shown, number * (width + gap) * SCALE, 0)
        context.get_source().set_filter(cairo.FILTER_BEST)
        context.paint()
    picture.write_to_png(str(file))


def draw_open_folder(_folder, _name, file):
    preview(file, "--compare", "--screen", "folder")


# Name: what draws it, and the file.
PICTURES = {
    **{key: (draw_setting, OUT / "settings" / f"{key}.png") for key in SETTINGS},
    "panel": (draw_panel, OUT / "panel.png"),
    "open-folder": (draw_open_folder, OUT / "open-folder.png"),
}


def main():
    names = sys.argv[1:] or list(PICTURES)
    unknown = [name for name in names if name not in PICTURES]
    if unknown:
        sys.exit(f"no picture {', '.join(unknown)}\n\n{__doc__}")
    (OUT / "settings").mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        for name in names:
            draw, file = PICTURES[name]
            draw(pathlib.Path(folder), name, file)
            print(file.relative_to(ROOT))


main()
