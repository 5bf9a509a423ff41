# SPDX-License-Identifier: Apache-2.0
"""PNG files with the standard library alone: up to 8 bits a sample, grey or coloured, not interlaced."""

import struct
import zlib
from typing import Iterator, Tuple

from .bitmap import Bitmap

_SIGNATURE = b"\x89PNG\r\n\x1a\n"
_SAMPLES = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}  # by the colour type; 3 has a palette
_DAMAGED = "a PNG file that is cut short or damaged"


def read_png(data: bytes) -> Bitmap:
    """The picture; what is transparent counts as opaque. ValueError, with the reason, when it is not read."""
    head, palette, packed = b"", b"", bytearray()
    for kind, body in _chunks(data):
        if kind == b"IHDR":
            head = body
        elif kind == b"PLTE":
            palette = body
        elif kind == b"IDAT":
            packed += body
    if len(head) != 13:
        raise ValueError("no PNG file")
    width, height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", head)
    _check(width, height, depth, colour, interlaced)
    samples = _SAMPLES[colour]
    try:
        plain = zlib.decompress(bytes(packed))
    except zlib.error as error:
        raise ValueError(f"{_DAMAGED}: {error}") from error
    rows = _unfiltered(plain, (width * samples * depth + 7) // 8, height, samples)
    if depth < 8:
        rows = _one_a_byte(rows, width, height, depth)
    if colour == 3:
        if 3 * max(rows) + 3 > len(palette):
            raise ValueError("a PNG file with a colour that its palette does not have")
        return Bitmap(width, height, b"".join(palette[3 * index : 3 * index + 3] for index in rows))
    if depth < 8:
        rows = bytes(value * 255 // ((1 << depth) - 1) for value in rows)
    red, green, blue = (0, 1, 2) if samples > 2 else (0, 0, 0)
    pixels = bytearray(3 * width * height)
    pixels[0::3], pixels[1::3], pixels[2::3] = rows[red::samples], rows[green::samples], rows[blue::samples]
    return Bitmap(width, height, bytes(pixels))


def write_png(bitmap: Bitmap) -> bytes:
    """A PNG file of it."""
    stride = 3 * bitmap.width
    rows = b"".join(b"\0" + bitmap.pixels[y * stride : (y + 1) * stride] for y in range(bitmap.height))
    head = struct.pack(">IIBBBBB", bitmap.width, bitmap.height, 8, 2, 0, 0, 0)
    chunks = ((b"IHDR", head), (b"IDAT", zlib.compress(rows)), (b"IEND", b""))
    return _SIGNATURE + b"".join(
        struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body)) for kind, body in chunks
    )


def _chunks(data: bytes) -> Iterator[Tuple[bytes, bytes]]:
    if not data.startswith(_SIGNATURE):
        raise ValueError("no PNG file")
    place, kind = len(_SIGNATURE), b""
    while kind != b"IEND":
        size = int.from_bytes(data[place : place + 4], "big")
        if place + 12 + size > len(data):
            raise ValueError(_DAMAGED)
        kind = data[place + 4 : place + 8]
        yield kind, data[place + 8 : place + 8 + size]
        place += size + 12


def _check(width: int, height: int, depth: int, colour: int, interlaced: int) -> None:
    if depth == 16:
        raise ValueError("a PNG file with 16 bits a sample; at most 8 are read")
    if depth != 8 and (colour not in (0, 3) or depth not in (1, 2, 4)) or colour not in _SAMPLES:
        raise ValueError(f"a PNG file of a kind that does not exist, {colour} with {depth} bits a sample")
    if interlaced:
        raise ValueError("an interlaced PNG file, which is not read")
    if width == 0 or height == 0:
        raise ValueError("a PNG file without pixels")


def _one_a_byte(rows: bytes, width: int, height: int, depth: int) -> bytes:
    """The samples of rows that have several in a byte, the leftmost in the highest bits."""
    shifts = range(8 - depth, -1, -depth)
    samples = bytes(byte >> shift & (1 << depth) - 1 for byte in rows for shift in shifts)
    stride = len(samples) // height
    return b"".join(samples[y * stride : y * stride + width] for y in range(height))


def _unfiltered(data: bytes, stride: int, height: int, step: int) -> bytes:
    """Each row says how its bytes were made smaller with those to the left and above; this takes it back."""
    if len(data) != (stride + 1) * height:
        raise ValueError(_DAMAGED)
    above = bytes(stride)
    rows = bytearray()
    for y in range(height):
        start = y * (stride + 1)
        how = data[start]
        row = bytearray(data[start + 1 : start + 1 + stride])
        for i in range(stride if how else 0):
            left = row[i - step] if i >= step else 0
            corner = above[i - step] if i >= step else 0
            row[i] = (row[i] + _expected(how, left, above[i], corner)) & 0xFF
        rows += row
        above = bytes(row)
    return bytes(rows)


def _expected(how: int, left: int, up: int, corner: int) -> int:
    if how == 1:
        return left
    if how == 2:
        return up
    if how == 3:
        return (left + up) // 2
    if how != 4:
        raise ValueError(f"a PNG file with a filter that does not exist, {how}")
    guess = left + up - corner
    distances = abs(guess - left), abs(guess - up), abs(guess - corner)
    return (left, up, corner)[distances.index(min(distances))]
