"""Kilnware inside apps: settings tiles, the switch's knob, weather, and the toolkit's signs."""
import math

import cairo

from furniture import fall
from glyphs import SETTINGS, SIGNS, TOOLKIT
from materials import CLAY, CLAY_DARK, GLAZES, IRON, Chance, canvas, glaze, mixed, rgb, slab, specks
from pen import draw_marks, path

INK = 0x1E1410


# Settings: small tiles, each cut and footed by mask and overlay as the icons are.

TILES = {
    "AirplaneMode": "ochre",
    "WiFi": "indigo",
    "Bluetooth": "slate",
    "Notifications": "brick",
    "Sounds": "rose",
    "DoNotDisturb": "plum",
    "General": "soot",
    "Wallpaper": "teal",
    "Battery": "moss",
}


def settings_icon(key, laid_in):
    """29 points at scale 3, with bolder lines than an icon's."""
    body, ink = GLAZES[TILES[key]]
    surface, c = canvas(87, cairo.FORMAT_RGB24)
    glaze(c, body, "settings " + key)
    laid_in(c, SETTINGS[key], ink, body, 6.2)
    return surface


# The switch's knob: a bead of salt glaze on a ring of raw clay.

KNOB, KNOB_REACH = 28, 11  # points: the bead, and the room for its shadow on every side


def knob(scale):
    side = KNOB + 2 * KNOB_REACH
    surface, c = canvas(side * scale, units=side)
    middle, radius = side / 2, KNOB / 2

    layers, reach = 24, 7.0
    covered = 0.0
    for layer in range(layers + 1):
        distance = 1 - 2 * layer / layers
        wanted = 0.5 * (1 - math.sin(distance * math.pi / 2)) * 0.30
        step = (wanted - covered) / (1 - covered)
        covered = wanted
        c.arc(middle, middle + 2.2, max(0.1, radius - 1 + distance * reach), 0, 2 * math.pi)
        c.set_source_rgba(0.11, 0.07, 0.05, max(0.0, step))
        c.fill()

    c.arc(middle, middle, radius, 0, 2 * math.pi)
    c.set_source(fall(middle - radius, middle + radius, (0, CLAY, 1), (1, CLAY_DARK, 1)))
    c.fill()
    c.arc(middle, middle, radius - 1.6, 0, 2 * math.pi)
    c.save()
    c.clip()
    body = GLAZES["salt"][0]
    c.set_source(fall(middle - radius, middle + radius, (0, mixed(body, 0xFFFFFF, 0.75), 1), (0.55, body, 1),
                      (1, mixed(body, IRON, 0.20), 1)))
    c.paint()
    chance = Chance("knob")
    for _ in range(22):
        x, y = chance.between(middle - radius, middle + radius), chance.between(middle - radius, middle + radius)
        c.arc(x, y, chance.between(0.15, 0.38), 0, 2 * math.pi)
        c.set_source_rgba(*rgb(IRON), chance.between(0.15, 0.45))
        c.fill()
    c.restore()
    c.arc(middle, middle, radius - 3.4, math.radians(205), math.radians(290))
    c.set_source_rgba(1, 1, 1, 0.8)
    c.set_line_width(1.1)
    c.stroke()
    return surface


# Weather: glazed pieces with a brushed outline of iron, so that they stand on a sky as well as on white.

OUTLINE = 3.6
SALT, RAIN = GLAZES["salt"][0], 0x9CBBCD


def piece(c, shape, place, glaze_name, seed):
    """A shape drawn around (50, 50), moved to a place (x, y, size)."""
    x, y, size = place
    body = GLAZES[glaze_name][0]
    c.save()
    c.translate(x, y)
    c.scale(size, size)
    c.translate(-50, -50)
    shape(c)
    c.save()
    c.clip_preserve()
    c.set_source(fall(20, 80, (0, mixed(body, 0xFFFFFF, 0.35), 1), (0.5, body, 1), (1, mixed(body, INK, 0.20), 1)))
    c.paint()
    outline = c.copy_path()
    c.new_path()
    specks(c, Chance(seed), 46, 0x4A2F22, 0.45, largest=1.4)
    c.restore()
    c.new_path()
    c.append_path(outline)
    c.set_source_rgb(*rgb(IRON))
    c.set_line_width(OUTLINE / size)
    c.stroke()
    c.restore()


def cloud_shape(c):
    path(c, "M29 74 C18 74 10 66.5 10 57 C10 48.5 16.5 41.6 25 40.8 C28.5 31 38 25 48.5 25 "
            "C61.5 25 72 33.5 74.4 44.6 C83.5 45.4 90 51.4 90 59.4 C90 67.6 83.6 74 75 74 Z")


def moon_shape(c):
    path(c, "M43 17 C22 23 11 48 23 67 C36 88 66 88 80 66 C56 72 34 50 43 17 Z")


def sun_shape(c):
    c.arc(50, 50, 20, 0, 2 * math.pi)
    c.close_path()


def bolt_shape(c):
    path(c, "M57 20 L30 56 H47 L40 84 L70 44 H53 L62 20 Z")


def strokes(c, lines, body, width=5.2):
    """Lines in a colour, with the outline that pieces have."""
    for colour, extra in ((IRON, OUTLINE), (body, 0)):
        c.set_source_rgb(*rgb(colour))
        c.set_line_width(width + extra)
        path(c, lines)
        c.stroke()


def sun(c, place, bare=()):
    """Without the rays, counted clockwise from the top, that would end as stubs beside a cloud."""
    x, y, size = place
    rays = []
    for ray in set(range(8)).difference(bare):
        across, down = math.sin(ray * math.pi / 4) * size, -math.cos(ray * math.pi / 4) * size
        rays.append(f"M{x + 30 * across:.3f} {y + 30 * down:.3f} L{x + 38 * across:.3f} {y + 38 * down:.3f}")
    strokes(c, " ".join(rays), GLAZES["ochre"][0], 5.2 * min(1, size + 0.15))
    piece(c, sun_shape, place, "ochre", "sun")


def cloud(c, place, glaze_name="salt"):
    piece(c, cloud_shape, place, glaze_name, "cloud " + glaze_name)


def moon(c, place):
    piece(c, moon_shape, place, "butter", "moon")


def drops(c, xs, top, length):
    strokes(c, " ".join(f"M{x} {top} L{x - length / 3:.3f} {top + length}" for x in xs), RAIN)


def flake(c, x, y):
    arms = []
    for turn in range(3):
        across, down = 8.5 * math.sin(turn * math.pi / 3), 8.5 * math.cos(turn * math.pi / 3)
        arms.append(f"M{x - across:.3f} {y - down:.3f} L{x + across:.3f} {y + down:.3f}")
    strokes(c, " ".join(arms), SALT, 3.6)


RAIN_CLOUD = (50, 39, 0.92)

WEATHER = {
    "clear-day": lambda c: sun(c, (50, 50, 1.1)),
    "clear-night": lambda c: moon(c, (50, 50, 1.05)),
    "mostly-sunny": lambda c: (sun(c, (44, 45, 0.98), bare=(3,)), cloud(c, (73, 74, 0.52))),
    "partly-cloudy-day": lambda c: (sun(c, (63, 36, 0.82), bare=(3, 4, 5, 6)), cloud(c, (48, 60, 0.94))),
    "partly-cloudy-night": lambda c: (moon(c, (68, 34, 0.68)), cloud(c, (48, 60, 0.94))),
    "cloudy": lambda c: (cloud(c, (65, 39, 0.70), "slate"), cloud(c, (45, 58, 0.88))),
    "rain": lambda c: (drops(c, (30, 46, 62, 78), 72, 18), cloud(c, RAIN_CLOUD, "slate")),
    "showers": lambda c: (sun(c, (67, 31, 0.70)), drops(c, (34, 50, 66), 75, 15), cloud(c, (46, 46, 0.84))),
    "thunderstorm": lambda c: (cloud(c, RAIN_CLOUD, "slate"), piece(c, bolt_shape, (52, 68, 0.72), "butter", "bolt")),
    "snow": lambda c: (cloud(c, RAIN_CLOUD), flake(c, 26, 80), flake(c, 50, 85), flake(c, 74, 80)),
    "fog": lambda c: (
        cloud(c, (50, 36, 0.86)), strokes(c, "M18 72 H64 M78 72 H82", SALT), strokes(c, "M26 86 H32 M46 86 H84", SALT),
    ),
    "wind": lambda c: (
        strokes(c, "M12 40 H60 C78 40 78 15 61 15 C53 15 48.5 20.5 49 27", SALT, 5.6),
        strokes(c, "M20 56 H73 C92 56 92 83 74 83 C66.5 83 62 78 62 72", SALT, 5.6),
        strokes(c, "M12 72 H44", SALT, 5.6),
    ),
}


def weather(condition):
    surface, c = canvas(90)
    WEATHER[condition](c)
    return surface


# Signs: brushed in brick glaze.


def brushed(c, marks, width, height):
    """The marks in a coat that runs deeper towards the bottom. Width of lines and height in the canvas's units."""
    body = GLAZES["brick"][0]
    c.push_group()
    draw_marks(c, marks, width)
    coat = c.pop_group()
    c.set_source(fall(0, height, (0, mixed(body, 0xFFFFFF, 0.12), 1), (1, mixed(body, INK, 0.28), 1)))
    c.mask(coat)


def sign(name):
    """20 points at scale 3."""
    surface, c = canvas(60)
    brushed(c, SIGNS[name], 10, 100)
    return surface


def toolkit_image(name):
    width, height, line, marks = TOOLKIT[name]
    surface, c = slab(width, height, 3)
    brushed(c, marks, line, height)
    return surface
