# SPDX-License-Identifier: Apache-2.0
"""Pictures as rows of red, green and blue bytes."""

from typing import NamedTuple

from ..checks import whole_number


class _Fields(NamedTuple):
    width: int
    height: int
    pixels: bytes


class Bitmap(_Fields):
    """A picture: three bytes a pixel, red first, row by row from the topmost.

    ValueError or TypeError when the pixels are not as many as width and height say, or when there are none.
    """

    __slots__ = ()

    def __new__(cls, width: int, height: int, pixels: bytes) -> "Bitmap":
        for name, size in (("width", width), ("height", height)):
            if whole_number(name, size) < 1:
                raise ValueError(f"{name}: {size} is out of its range, 1 and up")
        if not isinstance(pixels, (bytes, bytearray, memoryview)):
            raise TypeError(f"pixels: {type(pixels).__name__} is not bytes")
        pixels = bytes(pixels)
        if len(pixels) != 3 * width * height:
            why = f"red, green and blue of {width} x {height} pixels are {3 * width * height}"
            if len(pixels) == 4 * width * height:
                why += "; those of RGBA have an opacity that a Bitmap does not"
            raise ValueError(f"pixels: {len(pixels)} bytes, but {why}")
        return super().__new__(cls, width, height, pixels)

    def pixel(self, x: int, y: int) -> "tuple[int, int, int]":
        """Red, green and blue there; IndexError outside of the picture."""
        if not (0 <= x < self.width and 0 <= y < self.height):
            raise IndexError(f"pixel {x}, {y} of a picture of {self.width} x {self.height}")
        red, green, blue = _part(self.pixels, 3 * (y * self.width + x), 3)
        return red, green, blue

    def crop(self, width: int, height: int) -> "Bitmap":
        """The upper left part, at most that large."""
        return self.part(0, 0, min(width, self.width), min(height, self.height))

    def part(self, left: int, top: int, width: int, height: int) -> "Bitmap":
        """That rectangle, which lies in the picture."""
        rows = (_part(self.pixels, 3 * ((top + y) * self.width + left), 3 * width) for y in range(height))
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


def _part(data: bytes, start: int, size: int) -> bytes:
    return data[start : start + size]
