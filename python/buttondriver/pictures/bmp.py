# SPDX-License-Identifier: Apache-2.0
"""BMP files, of the kind that the panel takes."""

from .bitmap import Bitmap

_HEAD = 54
_PANELS_HEADER = 40  # bytes of the second header
_ONE_PLANE_24_BITS_UNCOMPRESSED = b"\1\0\x18\0\0\0\0\0"
_NO_BMP = "no uncompressed 24-bit BMP file"


def read_bmp(data: bytes) -> Bitmap:
    """An uncompressed 24-bit BMP file, either way up, with any header. ValueError when it is none."""
    if len(data) < _HEAD or data[:2] != b"BM":
        raise ValueError(_NO_BMP)
    header = int.from_bytes(data[14:18], "little")
    start = int.from_bytes(data[10:14], "little")
    width = int.from_bytes(data[18:22], "little", signed=True)
    signed_height = int.from_bytes(data[22:26], "little", signed=True)
    height = abs(signed_height)
    stride = (3 * width + 3) // 4 * 4
    is_plain = data[26:34] == _ONE_PLANE_24_BITS_UNCOMPRESSED and header >= _PANELS_HEADER and start >= 14 + header
    if not is_plain or width < 1 or height < 1 or len(data) < start + stride * height:
        raise ValueError(_NO_BMP)
    pixels = bytearray()
    for y in range(height):
        row = start + stride * (height - 1 - y if signed_height > 0 else y)
        pixels += _swapped(data[row : row + 3 * width])
    return Bitmap(width, height, bytes(pixels))


def is_for_the_panel(data: bytes) -> bool:
    """Whether the panel draws what read_bmp() reads from these bytes: it knows one header, and the bottom row first."""
    header, height = int.from_bytes(data[14:18], "little"), int.from_bytes(data[22:26], "little", signed=True)
    return header == _PANELS_HEADER and height > 0


def write_bmp(bitmap: Bitmap) -> bytes:
    """A BMP file, bottom row first, as the panel takes it."""
    stride = (3 * bitmap.width + 3) // 4 * 4
    rows = bytearray()
    for y in reversed(range(bitmap.height)):
        start = 3 * y * bitmap.width
        rows += _swapped(bitmap.pixels[start : start + 3 * bitmap.width]).ljust(stride, b"\0")
    numbers = (_PANELS_HEADER, bitmap.width, bitmap.height, 1 | 24 << 16, 0, len(rows), 2835, 2835, 0, 0)
    info = b"".join(number.to_bytes(4, "little") for number in numbers)
    head = b"BM" + (_HEAD + len(rows)).to_bytes(4, "little") + bytes(4) + _HEAD.to_bytes(4, "little")
    return head + info + bytes(rows)


def _swapped(row: bytes) -> bytes:
    """Red for blue and blue for red."""
    swapped = bytearray(row)
    swapped[0::3], swapped[2::3] = row[2::3], row[0::3]
    return bytes(swapped)
