# SPDX-License-Identifier: Apache-2.0
"""Pictures as rows of red, green and blue bytes."""

from typing import NamedTuple


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


def _part(data: bytes, start: int, size: int) -> bytes:
    return data[start : start + size]
