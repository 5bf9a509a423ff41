# SPDX-License-Identifier: Apache-2.0
"""Where two pictures differ."""

from typing import List, Tuple

from ..pictures.bitmap import Bitmap

_DIFFERENT = b"\xff\x00\x00"


def difference_in_words(wanted: Bitmap, actual: Bitmap) -> str:
    """Where two pictures differ; empty when they do not."""
    if (wanted.width, wanted.height) != (actual.width, actual.height):
        return f"{wanted.width} x {wanted.height} pixels expected, {actual.width} x {actual.height} are there"
    places = _different(wanted, actual)
    if not places:
        return ""
    columns, rows = [x for x, _ in places], [y for _, y in places]
    x, y = places[0]
    return (
        f"{len(places)} pixels differ, "
        f"in columns {min(columns)} to {max(columns)} and rows {min(rows)} to {max(rows)}; "
        f"the first at {x}, {y}: {_colour(wanted, x, y)} expected, {_colour(actual, x, y)} is there"
    )


def difference_picture(wanted: Bitmap, actual: Bitmap) -> Bitmap:
    """The actual picture, darkened, and what differs from the expected one in red."""
    pixels = bytearray(value // 3 for value in actual.pixels)
    if (wanted.width, wanted.height) == (actual.width, actual.height):
        for x, y in _different(wanted, actual):
            start = 3 * (y * actual.width + x)
            pixels[start : start + 3] = _DIFFERENT
    return Bitmap(actual.width, actual.height, bytes(pixels))


def _different(wanted: Bitmap, actual: Bitmap) -> List[Tuple[int, int]]:
    width, height = actual.width, actual.height
    return [(x, y) for y in range(height) for x in range(width) if wanted.pixel(x, y) != actual.pixel(x, y)]


def _colour(bitmap: Bitmap, x: int, y: int) -> str:
    return f"#{bytes(bitmap.pixel(x, y)).hex()}"
