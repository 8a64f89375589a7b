#!/usr/bin/env python3
"""Makes the sounds of the settings panel, as they are installed on a device.

    python3 make_sounds.py            # writes them where they belong, below this folder
    python3 make_sounds.py FOLDER     # writes them into FOLDER

Every sound is one channel of 16 bits at 44.1 kHz: five CAF files (linear PCM, little-endian) and
three AIFF files. The same bytes come out every time.

The panel plays each sound at a volume of its own, from 0.05 to 1, so what is heard is the recording
times that volume. The recordings are levelled for it: a click that is played at 0.05 is recorded near
full scale, a beep that is played at 1 is recorded some 25 dB lower, and in the end all are about as
loud. Only the two clicks, which come with every touch, stay a little behind the others. How loud a
sound is we measure by the loudest 50 ms in it.

Sounds begin and end with a sample of 0, in and out of a ramp of two milliseconds at least.
None of them has a constant part.
"""

import math
import pathlib
import struct
import sys

RATE = 44100
FULL_SCALE = 32767
RAMP = 0.002  # seconds, at both ends
WINDOW = 0.05  # seconds that loudness is measured over

# Heard level, as the effective value of the loudest window; 1 is a square wave at full scale.
CLICK = 0.0130  # -38 dB
SIGNAL = 0.0250  # -32 dB

SOUNDS_FOLDER = "var/mobile/Library/VelMoranth/Sounds"


def times(seconds):
    return [i / RATE for i in range(round(seconds * RATE))]


def fading(time, attack, decay):
    """An envelope that rises in `attack` seconds and then falls by e every `decay` seconds."""
    if time < 0:
        return 0.0
    rise = 0.5 - 0.5 * math.cos(math.pi * min(time / attack, 1))
    return rise * math.exp(-max(time - attack, 0) / decay)


def arch(time, seconds):
    """An envelope that rises and falls like half a wave."""
    return math.sin(math.pi * time / seconds) ** 2 if 0 <= time <= seconds else 0.0


def tone(time, frequency, partials):
    """A steady tone; `partials` are pairs of a multiple of the frequency and its strength."""
    return sum(strength * math.sin(2 * math.pi * frequency * multiple * time)
               for multiple, strength in partials)


def bell(time, start, frequency, decay):
    """A struck tone whose upper partials die away sooner."""
    since = time - start
    return sum(strength * fading(since, 0.006, decay / multiple)
               * math.sin(2 * math.pi * frequency * multiple * since)
               for multiple, strength in ((1, 1.0), (2, 0.35), (3, 0.12)))


def noise(count):
    """White noise from -1 to 1, the same always."""
    state = 1
    for _ in range(count):
        state = (state * 1664525 + 1013904223) % 2**32
        yield state / 2**31 - 1


def rush(seconds, low, high, sharpness):
    """Air: noise in a narrow band that climbs from `low` to `high` hertz, and an arch of loudness."""
    result = []
    held = passed = 0.0
    moments = times(seconds)
    for time, sample in zip(moments, noise(len(moments))):
        centre = low * (high / low) ** (time / seconds)
        step = 2 * math.sin(math.pi * centre / RATE)
        held += step * passed
        passed += step * (sample - held - passed / sharpness)
        result.append(passed * arch(time, seconds))
    return result


def glide(seconds, first, last):
    """A beep whose pitch moves smoothly from one frequency to the other."""
    result = []
    phase = 0.0
    for time in times(seconds):
        share = 0.5 - 0.5 * math.cos(math.pi * time / seconds)
        phase += 2 * math.pi * first * (last / first) ** share / RATE
        result.append((math.sin(phase) + 0.15 * math.sin(2 * phase)) * fading(time, 0.012, 0.09)
                      * (1 - (time / seconds) ** 4))
    return result


def click(time):
    return fading(time, 0.002, 0.022) * tone(time, 1250, ((1, 1.0), (1.62, 0.3)))


def button_click():
    return [click(time) for time in times(0.09)]


def cell_swoosh():
    return rush(0.3, 500, 2400, 2.5)


def slide_click():
    """The rush of a slide, and where it arrives the click of a button."""
    slide = rush(0.12, 900, 2800, 3)
    arrival = 0.09
    largest = max(abs(sample) for sample in slide)
    return [(slide[i] / largest * 0.45 if i < len(slide) else 0.0)
            + (click(time - arrival) if time >= arrival else 0.0)
            for i, time in enumerate(times(0.19))]


def error():
    """Two low knocks, the second a minor third below the first."""
    reed = ((1, 1.0), (3, 0.22), (5, 0.06))
    return [fading(time, 0.008, 0.07) * tone(time, 311.13, reed)
            + fading(time - 0.15, 0.008, 0.09) * tone(time, 261.63, reed) for time in times(0.5)]


def reboot():
    """Down an octave and up again: off and on."""
    return [bell(time, 0, 783.99, 0.09) + bell(time, 0.13, 392.00, 0.12) + bell(time, 0.29, 783.99, 0.11)
            for time in times(0.6)]


def success():
    """A major chord, upwards."""
    return [bell(time, 0, 523.25, 0.12) + bell(time, 0.08, 659.26, 0.12) + bell(time, 0.16, 783.99, 0.13)
            for time in times(0.6)]


def beep_short_on():
    return glide(0.14, 740, 1108)


def beep_short_off():
    return glide(0.14, 1108, 740)


# File, how it is made, the volume that the panel plays it at, and how loud it is to be then.
SOUNDS = [
    ("button_click.caf", button_click, 0.05, CLICK),
    ("cell_swoosh.caf", cell_swoosh, 0.8, SIGNAL),
    ("SlideClick.caf", slide_click, 0.05, CLICK),
    ("Error.caf", error, 0.5, SIGNAL),
    ("Reboot.caf", reboot, 0.5, SIGNAL),
    ("success.aif", success, 0.5, SIGNAL),
    ("beepShortOn.aif", beep_short_on, 1.0, SIGNAL),
    ("beepShortOff.aif", beep_short_off, 1.0, SIGNAL),
]


def without_constant_part(samples):
    """Takes the mean away where the sound is, so that its ends stay where they are."""
    count = len(samples)
    weights = [math.sin(math.pi * i / (count - 1)) ** 2 for i in range(count)]
    share = sum(samples) / sum(weights)
    return [sample - share * weight for sample, weight in zip(samples, weights)]


def with_silent_ends(samples):
    count = len(samples)
    ramp = round(RAMP * RATE)

    def gain(distance):
        return 0.5 - 0.5 * math.cos(math.pi * distance / ramp) if distance < ramp else 1.0

    return [sample * gain(i) * gain(count - 1 - i) for i, sample in enumerate(samples)]


def loudness(samples):
    """The effective value of the loudest window."""
    window = min(round(WINDOW * RATE), len(samples))
    energy = largest = sum(sample * sample for sample in samples[:window])
    for i in range(window, len(samples)):
        energy += samples[i] * samples[i] - samples[i - window] * samples[i - window]
        largest = max(largest, energy)
    return math.sqrt(largest / window)


def recorded(make, volume, heard):
    """The sound as whole numbers, levelled for its volume."""
    samples = without_constant_part(with_silent_ends(make()))
    gain = heard / volume / loudness(samples)
    numbers = [round(sample * gain * FULL_SCALE) for sample in samples]
    if max(map(abs, numbers)) > FULL_SCALE:
        raise ValueError(f"{make.__name__} does not fit in at this level")
    return numbers


def chunk(name, contents, size_format):
    return name + struct.pack(size_format, len(contents)) + contents


def caf(numbers):
    """Core Audio Format: a description of packets, then the packets."""
    little_endian_integers = 2
    description = struct.pack(">d4sIIIII", RATE, b"lpcm", little_endian_integers, 2, 1, 1, 16)
    edits = struct.pack(">I", 0)
    return (struct.pack(">4sHH", b"caff", 1, 0) + chunk(b"desc", description, ">q")
            + chunk(b"data", edits + struct.pack(f"<{len(numbers)}h", *numbers), ">q"))


def aiff(numbers):
    """Audio Interchange File Format; the rate is a float of 80 bits there."""
    exponent = RATE.bit_length() - 1
    rate = struct.pack(">HQ", 16383 + exponent, RATE << (63 - exponent))
    common = struct.pack(">hIh", 1, len(numbers), 16) + rate
    offset_and_block = struct.pack(">II", 0, 0)
    sound = offset_and_block + struct.pack(f">{len(numbers)}h", *numbers)
    return chunk(b"FORM", b"AIFF" + chunk(b"COMM", common, ">I") + chunk(b"SSND", sound, ">I"), ">I")


def main(arguments):
    if len(arguments) > 2:
        sys.exit(__doc__)
    folder = pathlib.Path(arguments[1] if len(arguments) == 2 else
                          pathlib.Path(__file__).resolve().parent / SOUNDS_FOLDER)
    folder.mkdir(parents=True, exist_ok=True)
    for name, make, volume, heard in SOUNDS:
        numbers = recorded(make, volume, heard)
        contents = caf(numbers) if name.endswith(".caf") else aiff(numbers)
        (folder / name).write_bytes(contents)


if __name__ == "__main__":
    main(sys.argv)
