"""What all of Kilnware is made of: its colours, its materials, and the canvas."""
import math
import os
import zlib

import cairo

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

CLAY, CLAY_DARK, CLAY_LIGHT = 0xC39472, 0x9A6A4B, 0xDDB694


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
    return prepared(cairo.ImageSurface(kind, pixels, pixels), pixels / units)


def slab(width, height, scale):
    """A canvas in points, that many pixels to each."""
    return prepared(cairo.ImageSurface(cairo.FORMAT_ARGB32, width * scale, height * scale), scale)


def prepared(surface, scale):
    context = cairo.Context(surface)
    context.scale(scale, scale)
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


def write(surface, folder, *names):
    target = os.path.join(folder, *names)
    os.makedirs(os.path.dirname(target), exist_ok=True)
    surface.flush()
    surface.write_to_png(target)
