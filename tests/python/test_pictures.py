# SPDX-License-Identifier: Apache-2.0
"""BMP and PNG files, and what fits on a screen."""

import struct
import zlib
from pathlib import Path
from typing import List

import pytest

from buttondriver import Bitmap, VirtualPanel
from buttondriver.pictures.bmp import read_bmp, write_bmp
from buttondriver.pictures.png import read_png, write_png
from buttondriver.pictures.sources import screen_picture

RED, GREEN, BLUE, WHITE = b"\xff\0\0", b"\0\xff\0", b"\0\0\xff", b"\xff\xff\xff"
FOUR = Bitmap(2, 2, RED + GREEN + BLUE + WHITE)
# Red and green above blue and white, as docs/protocol.md has it.
FOUR_BMP = bytes.fromhex(
    "424d460000000000000036000000280000000200000002000000010018000000000010000000130b0000130b00000000000000000000"
    "ff0000ffffff0000" "0000ff00ff000000"
)
UPSIDE_DOWN = bytearray(FOUR_BMP)
UPSIDE_DOWN[22:26] = (-2).to_bytes(4, "little", signed=True)


def png(rows: "List[bytes]", width: int, colour: int, palette: bytes = b"") -> bytes:
    """A PNG file by hand: each row begins with its filter."""
    head = struct.pack(">IIBBBBB", width, len(rows), 8, colour, 0, 0, 0)
    chunks = [(b"IHDR", head), (b"PLTE", palette), (b"IDAT", zlib.compress(b"".join(rows))), (b"IEND", b"")]
    return b"\x89PNG\r\n\x1a\n" + b"".join(struct.pack(">I", len(b)) + k + b + b"\0\0\0\0" for k, b in chunks)


def test_reads_and_writes_bmp() -> None:
    assert read_bmp(FOUR_BMP) == FOUR
    assert read_bmp(bytes(UPSIDE_DOWN)) == Bitmap(2, 2, BLUE + WHITE + RED + GREEN)
    assert write_bmp(FOUR) == FOUR_BMP


@pytest.mark.parametrize("place", [0, 28, 30])
def test_refuses_other_bmp(place: int) -> None:
    other = bytearray(FOUR_BMP)
    other[place] ^= 1
    with pytest.raises(ValueError):
        read_bmp(bytes(other))
    with pytest.raises(ValueError):
        read_bmp(FOUR_BMP[:-1])


@pytest.mark.parametrize(
    "rows, width, colour, pixels",
    [
        ([b"\0" + RED + GREEN, b"\0" + BLUE + WHITE], 2, 2, FOUR.pixels),
        ([b"\x01\x0a\x14\x1e\x01\x02\x03"], 2, 2, b"\x0a\x14\x1e\x0b\x16\x21"),
        ([b"\x00\x0a\x14\x1e", b"\x02\x01\x02\xff"], 1, 2, b"\x0a\x14\x1e\x0b\x16\x1d"),
        ([b"\x00\x0a\x14", b"\x03\x01\x02"], 2, 0, b"\x0a\x0a\x0a\x14\x14\x14\x06\x06\x06\x0f\x0f\x0f"),
        ([b"\x00\x0a\x14", b"\x04\x01\x02"], 2, 0, b"\x0a\x0a\x0a\x14\x14\x14\x0b\x0b\x0b\x16\x16\x16"),
        ([b"\x00\x0a\x80"], 1, 4, b"\x0a\x0a\x0a"),
        ([b"\x00\x0a\x14\x1e\x80"], 1, 6, b"\x0a\x14\x1e"),
        ([b"\x00\x01\x00"], 2, 3, GREEN + RED),
    ],
)
def test_reads_png(rows: "List[bytes]", width: int, colour: int, pixels: bytes) -> None:
    assert read_png(png(rows, width, colour, RED + GREEN)) == Bitmap(width, len(rows), pixels)


def test_reads_its_own_png_and_refuses_others() -> None:
    assert read_png(write_png(FOUR)) == FOUR
    for other in (b"GIF89a", png([b"\x05\0"], 1, 0), png([b"\0"], 1, 0), png([b"\0\0\0\0\0"], 1, 5)):
        with pytest.raises(ValueError):
            read_png(other)


def test_crops_and_shrinks() -> None:
    assert FOUR.crop(1, 5) == Bitmap(1, 2, RED + BLUE)
    assert FOUR.shrink(1, 5) == Bitmap(1, 1, RED)
    assert FOUR.shrink(5, 5) is FOUR
    wide = Bitmap(4, 2, (RED + RED + GREEN + GREEN) * 2)
    assert wide.shrink(2, 2) == Bitmap(2, 1, RED + GREEN)
    high = Bitmap(2, 4, RED * 4 + GREEN * 4)
    assert high.shrink(2, 2) == Bitmap(1, 2, RED + GREEN)


class OfPil:
    """As much of a picture of PIL as is asked for."""

    size = (2, 2)

    def convert(self, mode: str) -> "OfPil":
        assert mode == "RGB"
        return self

    def tobytes(self) -> bytes:
        return FOUR.pixels


def test_takes_bytes_paths_and_pictures(tmp_path: Path) -> None:
    path = tmp_path / "four.bmp"
    path.write_bytes(FOUR_BMP)
    for source in (FOUR_BMP, path, str(path), FOUR, OfPil()):
        assert screen_picture(source, 0, 0, None) == FOUR_BMP
    with pytest.raises(TypeError, match="list is neither"):
        screen_picture([], 0, 0, None)


@pytest.mark.parametrize("fit, size", [("crop", (28, 100)), ("shrink", (28, 18))])
def test_fits_into_what_is_left_of_the_screen(fit: str, size: "tuple[int, int]") -> None:
    fitted = read_bmp(screen_picture(Bitmap(300, 200, WHITE * 60000), 100, 28, fit))
    assert (fitted.width, fitted.height) == size


def test_a_picture_is_on_the_screen(panel: VirtualPanel) -> None:
    panel.connect().image(1, FOUR_BMP, 63, 64)
    bitmap = panel.screen(1).bitmap
    places = ((63, 64), (64, 64), (63, 65), (64, 65), (62, 64))
    assert [bytes(bitmap.pixel(x, y)) for x, y in places] == [RED, GREEN, BLUE, WHITE, bytes(3)]
    assert (bitmap.width, bitmap.height, len(panel.screen(1).pixels)) == (128, 128, 3 * 128 * 128)


def test_a_pixel_outside_is_told() -> None:
    for place in ((2, 0), (0, 2), (-1, 0)):
        with pytest.raises(IndexError):
            FOUR.pixel(*place)
