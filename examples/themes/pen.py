"""Shapes that are written as text: paths, and the marks that the drawings in glyphs.py are made of."""
import math
import re


def path(c, text):
    numbers = iter(re.findall(r"[A-Z]|-?\d*\.?\d+", text))
    command, x, y = "", 0.0, 0.0
    for token in numbers:
        if token.isalpha():
            command = token
            if command == "Z":
                c.close_path()
                continue
            token = next(numbers)
        value = float(token)
        if command in "ML":
            x, y = value, float(next(numbers))
            (c.move_to if command == "M" else c.line_to)(x, y)
            command = "L"
        elif command == "H":
            x = value
            c.line_to(x, y)
        elif command == "V":
            y = value
            c.line_to(x, y)
        elif command == "Q":
            qx, qy = value, float(next(numbers))
            ex, ey = float(next(numbers)), float(next(numbers))
            c.curve_to(x + (qx - x) * 2 / 3, y + (qy - y) * 2 / 3, ex + (qx - ex) * 2 / 3, ey + (qy - ey) * 2 / 3, ex, ey)
            x, y = ex, ey
        elif command == "C":
            rest = [float(next(numbers)) for _ in range(5)]
            c.curve_to(value, *rest)
            x, y = rest[3], rest[4]


def round_rect(c, x, y, w, h, r):
    c.new_sub_path()
    for cx, cy, start in ((x + w - r, y + r, -90), (x + w - r, y + h - r, 0), (x + r, y + h - r, 90), (x + r, y + r, 180)):
        c.arc(cx, cy, r, math.radians(start), math.radians(start + 90))
    c.close_path()


def draw_marks(c, marks, width):
    c.save()
    c.set_line_width(width)
    for mark in marks:
        kind, rest = mark[0], mark[2:]
        if kind in "SF":
            path(c, rest)
            if kind == "S":
                c.stroke()
            else:
                c.fill_preserve()
                c.set_line_width(width * 0.45)
                c.stroke()
                c.set_line_width(width)
            continue
        v = [float(n) for n in rest.split()]
        if kind == "T":
            c.translate(50, 45)
            c.rotate(math.radians(v[0]))
            c.translate(-50, -45)
        elif kind in "CD":
            c.new_sub_path()
            c.arc(v[0], v[1], v[2], 0, 2 * math.pi)
            c.stroke() if kind == "C" else c.fill()
        elif kind == "E":
            c.save()
            c.translate(v[0], v[1])
            c.scale(v[2], v[3])
            c.new_sub_path()
            c.arc(0, 0, 1, 0, 2 * math.pi)
            c.restore()
            c.stroke()
        elif kind in "RB":
            round_rect(c, *v)
            c.stroke() if kind == "R" else c.fill()
        elif kind == "A":
            c.new_sub_path()
            c.arc(v[0], v[1], v[2], math.radians(v[3]), math.radians(v[4]))
            c.stroke()
    c.restore()
