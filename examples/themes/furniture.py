"""Kilnware's furniture: what stands around the icons. Sizes are in points unless a name says pixels."""
import math

import cairo

from materials import (
    CLAY, CLAY_DARK, CLAY_LIGHT, IRON, SLIP, Chance, canvas, mixed, pebble, rgb, slab, specks,
)

# A glaze that is nearly black where it lies thick, and breaks to rust where an edge makes it thin.
TENMOKU, TENMOKU_DEEP, RUST = 0x3B2D25, 0x251C17, 0xB0693C


def wave(name, periods=(131, 57, 29), heights=(1.0, 0.6, 0.25)):
    """A line as a hand draws it: the height (-1 to 1, about) at a place, always the same for a name."""
    chance = Chance(name)
    parts = [(chance.between(0, 2 * math.pi), period, height) for period, height in zip(periods, heights)]
    return lambda x: sum(h * math.sin(start + 2 * math.pi * x / period) for start, period, h in parts) / 1.85


def fall(y0, y1, *stops):
    run = cairo.LinearGradient(0, y0, 0, y1)
    for offset, colour, opacity in stops:
        run.add_color_stop_rgba(offset, *(rgb(colour) if isinstance(colour, int) else colour), opacity)
    return run


def folder(pixels):
    """A shallow tray of raw clay."""
    surface, c = canvas(pixels)
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
    """A glazed button.

    The home screen draws it wider for two digits, so it has corners that are round on either and
    no rim, which would grow thicker at its sides alone; light and shade lie along its top and its foot."""
    surface, c = canvas(72)
    radius = 36
    for x, y, turn in ((98 - radius, 2 + radius, -0.5), (98 - radius, 98 - radius, 0),
                       (2 + radius, 98 - radius, 0.5), (2 + radius, 2 + radius, 1)):
        c.arc(x, y, radius, turn * math.pi, (turn + 0.5) * math.pi)
    c.close_path()
    c.clip()
    glaze_run = cairo.LinearGradient(0, 0, 0, 100)
    glaze_run.add_color_stop_rgb(0, *mixed(0xB5482F, 0xFFFFFF, 0.12))
    glaze_run.add_color_stop_rgb(1, *mixed(0xB5482F, 0x1E1410, 0.18))
    c.set_source(glaze_run)
    c.paint()
    c.set_source(fall(0, 100, (0, SLIP, 0.55), (0.14, SLIP, 0), (0.82, 0x1E1410, 0), (1, 0x1E1410, 0.35)))
    c.paint()
    return surface


def dock(width, height, scale, back, lip):
    """A glazed shelf on which the icons stand: its board reaches from `back` to `lip`, below that is its front.

    Above the board there is but the shade that gathers under a shelf's wall."""
    surface, c = slab(width, height, scale)
    name = f"shelf {width}"
    c.set_source(fall(0, back, (0, TENMOKU_DEEP, 0), (0.45, TENMOKU_DEEP, 0.05), (1, TENMOKU_DEEP, 0.30)))
    c.rectangle(0, 0, width, back)
    c.fill()

    # The board, darker towards the wall.
    c.rectangle(0, back, width, lip - back + 1)
    c.set_source(fall(back, lip, (0, mixed(TENMOKU_DEEP, 0, 0.15), 1), (1, mixed(TENMOKU, CLAY_DARK, 0.42), 1)))
    c.fill()
    c.rectangle(0, back, width, 0.7)
    c.set_source_rgba(*rgb(CLAY_LIGHT), 0.22)
    c.fill()

    # The front.
    c.rectangle(0, lip, width, height - lip)
    c.set_source(fall(lip, height, (0, mixed(TENMOKU, 0xFFFFFF, 0.05), 1), (1, TENMOKU_DEEP, 1)))
    c.fill()

    # The lip: thin glaze that breaks to rust and runs out unevenly, then the line where it catches the light.
    edge = wave(name)
    c.move_to(-4, lip)
    c.line_to(width + 4, lip)
    x = width + 4.0
    while x >= -4:
        c.line_to(x, lip + 4.2 + 1.5 * edge(x))
        x -= 1.5
    c.close_path()
    c.set_source(fall(lip, lip + 6, (0, RUST, 0.95), (0.35, RUST, 0.6), (1, RUST, 0.06)))
    c.fill()
    for y, thick, colour, opacity in ((lip - 1.1, 1.2, RUST, 0.55), (lip - 0.15, 1.0, 0xFFE9CF, 0.62)):
        c.rectangle(0, y, width, thick)
        c.set_source_rgba(*rgb(colour), opacity)
        c.fill()

    grains(c, name, width, back + 2, height, width * 0.55)
    return surface


def grains(c, name, width, top, bottom, count):
    """Iron and ash in the glaze."""
    chance = Chance(name + " grains")
    for number in range(int(count)):
        x, y = chance.between(0, width), chance.between(top, bottom)
        size = 0.22 + 0.45 * chance.between(0, 1) ** 4
        ash = number % 3 == 0
        c.set_source_rgba(*rgb(CLAY_LIGHT if ash else 0x140D0A), (0.28 if ash else 0.5) * chance.between(0.3, 1))
        c.arc(x, y, size, 0, 2 * math.pi)
        c.fill()


DOT = 8  # a page dot's side


def page_dot(scale, current):
    """The page that shows is a bead of slip glaze, the others are beads of raw clay."""
    surface, c = canvas(DOT * scale, units=DOT)
    middle = DOT / 2
    radius = 3.6 if current else 2.9
    body = SLIP if current else 0xD0A27E
    c.arc(middle, middle, radius, 0, 2 * math.pi)
    c.clip_preserve()
    light, dark = (0.5, 0.22) if current else (0.12, 0.35)
    c.set_source(fall(
        middle - radius, middle + radius,
        (0, mixed(body, 0xFFFFFF, light), 1), (0.5, body, 1), (1, mixed(body, IRON, dark), 1),
    ))
    c.fill()
    c.arc(middle, middle, radius, 0, 2 * math.pi)
    c.set_source_rgba(*rgb(IRON), 0.30)
    c.set_line_width(0.8)
    c.stroke()
    return surface


def search_dot(scale):
    """A magnifier in raw clay, as the pages beside it."""
    surface, c = canvas(DOT * scale, units=DOT)
    c.arc(3.3, 3.3, 2.4, 0, 2 * math.pi)
    c.move_to(5.0, 5.0)
    c.line_to(7.0, 7.0)
    c.set_line_width(1.5)
    c.set_source(fall(0.5, 7.5, (0, mixed(CLAY, 0xFFFFFF, 0.35), 1), (1, CLAY, 1)))
    c.stroke()
    return surface


# Thresholds of an ordered dither (Bayer's), so that a long dark fall of colour shows no bands.
DITHER = ((0, 8, 2, 10), (12, 4, 14, 6), (3, 11, 1, 9), (15, 7, 13, 5))


def rings(height):
    """The wall's light from top to bottom, about 1: a ridge and a groove for each turn of the wheel."""
    chance = Chance("vessel")
    light = [1.0] * height
    y = -20.0
    while y < height + 20:
        depth, wide = chance.between(0.03, 0.09), chance.between(3.5, 8)
        for row in range(max(0, int(y - 4 * wide)), min(height, int(y + 4 * wide))):
            away = (row - y) / wide
            light[row] -= depth * away * math.exp(0.5 - away * away / 2)
        y += chance.between(10, 24)
    return light


def folder_backdrop():
    """The inside of a thrown vessel, seen close: rings that the fingers left, dim towards the sides.

    Broad and soft only, since it is stretched over screens of every shape, and dark, so that labels stay white on it.
    Every pixel is computed: layers of faint strokes would add up their rounding to bands."""
    width, height, sag = 188, 406, 14
    surface = cairo.ImageSurface(cairo.FORMAT_RGB24, width, height)
    pixels, stride = surface.get_data(), surface.get_stride()
    light = rings(height + sag + 1)
    for y in range(height):
        clay = mixed(0x5E4636, 0x2B211C, y / height)
        for x in range(width):
            across = 2 * (x + 0.5) / width - 1
            place = y + sag * across * across
            row = int(place)
            ring = light[row] + (light[row + 1] - light[row]) * (place - row)
            shade = ring * (1 - 0.48 * abs(across + 0.12) ** 2.2)
            threshold = (DITHER[y % 4][x % 4] + 0.5) / 16
            at = y * stride + x * 4
            for channel, part in enumerate(reversed(clay)):
                pixels[at + channel] = int(min(255.0, part * shade * 255 + threshold))
    surface.mark_dirty()
    return surface
