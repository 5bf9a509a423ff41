# SPDX-License-Identifier: Apache-2.0
"""Pictures as rows of red, green and blue bytes; BMP files, of the kind that the panel takes."""

from typing import NamedTuple

_HEAD = 54
_NO_BMP = "image: no uncompressed 24-bit BMP file"


class Bitmap(NamedTuple):
    """A picture: three bytes a pixel, red first, row by row from the topmost."""

    width: int
    height: int
    pixels: bytes

    def pixel(self, x: int, y: int) -> "tuple[int, int, int]":
        """Red, green and blue there; IndexError outside of the picture."""
        if not (0 <= x < self.width and 0 <= y < self.height):
            raise IndexError(f"pixel {x}, {y} of a picture of {self.width} x {self.height}")
        red, green, blue = _part(self.pixels, 3 * (y * self.width + x), 3)
        return red, green, blue

    def crop(self, width: int, height: int) -> "Bitmap":
        """The upper left part, at most that large."""
        width, height = min(width, self.width), min(height, self.height)
        rows = (_part(self.pixels, 3 * y * self.width, 3 * width) for y in range(height))
        return Bitmap(width, height, b"".join(rows))

    def shrink(self, width: int, height: int) -> "Bitmap":
        """The whole picture in its proportions, made smaller if it is larger than that."""
        if self.width <= width and self.height <= height:
            return self
        if self.width * height > width * self.height:  # too wide rather than too high
            height = max(1, self.height * width // self.width)
        else:
            width = max(1, self.width * height // self.height)
        pixels = bytearray()
        for y in range(height):
            row = 3 * (y * self.height // height) * self.width
            for x in range(width):
                pixels += _part(self.pixels, row + 3 * (x * self.width // width), 3)
        return Bitmap(width, height, bytes(pixels))


def read_bmp(data: bytes) -> Bitmap:
    """An uncompressed 24-bit BMP file, either way up. ValueError when it is none."""
    if len(data) < _HEAD or data[:2] != b"BM":
        raise ValueError(_NO_BMP)
    start = int.from_bytes(data[10:14], "little")
    width = int.from_bytes(data[18:22], "little", signed=True)
    signed_height = int.from_bytes(data[22:26], "little", signed=True)
    height = abs(signed_height)
    stride = (3 * width + 3) // 4 * 4
    uncompressed = data[28:30] == b"\x18\x00" and data[30:34] == b"\0\0\0\0"
    if not uncompressed or width < 1 or height < 1 or len(data) < start + stride * height:
        raise ValueError(_NO_BMP)
    pixels = bytearray()
    for y in range(height):
        row = start + stride * (height - 1 - y if signed_height > 0 else y)
        pixels += _swapped(_part(data, row, 3 * width))
    return Bitmap(width, height, bytes(pixels))


def write_bmp(bitmap: Bitmap) -> bytes:
    """A BMP file, bottom row first, as the panel takes it."""
    stride = (3 * bitmap.width + 3) // 4 * 4
    rows = bytearray()
    for y in reversed(range(bitmap.height)):
        rows += _swapped(_part(bitmap.pixels, 3 * y * bitmap.width, 3 * bitmap.width)).ljust(stride, b"\0")
    numbers = (40, bitmap.width, bitmap.height, 1 | 24 << 16, 0, len(rows), 2835, 2835, 0, 0)
    info = b"".join(number.to_bytes(4, "little") for number in numbers)
    head = b"BM" + (_HEAD + len(rows)).to_bytes(4, "little") + bytes(4) + _HEAD.to_bytes(4, "little")
    return head + info + bytes(rows)


def _part(data: bytes, start: int, size: int) -> bytes:
    return data[start : start + size]


def _swapped(row: bytes) -> bytes:
    """Red for blue and blue for red."""
    swapped = bytearray(row)
    swapped[0::3], swapped[2::3] = row[2::3], row[0::3]
    return bytes(swapped)
