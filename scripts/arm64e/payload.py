"""How a signed pointer gets from the compiler's assembly into the linked library, through an assembler
and a linker that know of none.

In the assembly a pointer is a sum: the symbol and a number whose upper half says how the loader has to
sign the pointer, in the bits of a fix-up. Both tools carry a sum through, and the addresses of a library
stay below 2^32, so the lower half is the pointer still. Bit 62 is a mark: the names of type infos use
bit 63 for themselves, so that one alone is no sign."""

import collections

KEYS = {"ia": 0, "ib": 1, "da": 2, "db": 3}

# How the loader signs: with a key of KEYS, with the pointer's own address or not, with a number besides.
Signature = collections.namedtuple("Signature", "key address discriminator")

AUTHENTICATED = 1 << 63
MARK = 1 << 62
KEY_SHIFT = 49
ADDRESS_SHIFT = 48
DISCRIMINATOR_SHIFT = 32
LOW = (1 << 32) - 1
# Of a fix-up these are the distance to the next one. A sum leaves them 0; a small negative number does not.
DISTANCE = 0x7FF << 51


def bits_of(signature):
    """The bits of a fix-up that say how it is signed."""
    key, address, discriminator = signature
    return (AUTHENTICATED | KEYS[key] << KEY_SHIFT | int(address) << ADDRESS_SHIFT
            | discriminator << DISCRIMINATOR_SHIFT)


def constant_for(signature):
    """What is added to the symbol, as a number with a sign, which the assembler takes."""
    return (bits_of(signature) | MARK) - (1 << 64)


def split(value):
    """(the pointer, its Signature), or (the value as it is, None) where it is no such sum."""
    value &= (1 << 64) - 1
    if value & (AUTHENTICATED | MARK) != AUTHENTICATED | MARK or value & DISTANCE:
        return value, None
    names = {number: name for name, number in KEYS.items()}
    return value & LOW, Signature(names[value >> KEY_SHIFT & 3], bool(value >> ADDRESS_SHIFT & 1),
                                  value >> DISCRIMINATOR_SHIFT & 0xFFFF)
