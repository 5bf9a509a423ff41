# SPDX-License-Identifier: Apache-2.0
"""PNG files: by hand, and as they are written here."""

import struct
import zlib
from typing import List

import pytest

from buttondriver import Bitmap
from buttondriver.pictures.png import read_png, write_png

RED, GREEN, BLUE, WHITE = b"\xff\0\0", b"\0\xff\0", b"\0\0\xff", b"\xff\xff\xff"
FOUR = Bitmap(2, 2, RED + GREEN + BLUE + WHITE)


def png(rows: "List[bytes]", width: int, colour: int, palette: bytes = b"", depth: int = 8) -> bytes:
    """A PNG file by hand: each row begins with its filter."""
    head = struct.pack(">IIBBBBB", width, len(rows), depth, colour, 0, 0, 0)
    chunks = [(b"IHDR", head), (b"PLTE", palette), (b"IDAT", zlib.compress(b"".join(rows))), (b"IEND", b"")]
    return b"\x89PNG\r\n\x1a\n" + b"".join(struct.pack(">I", len(b)) + k + b + b"\0\0\0\0" for k, b in chunks)


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


@pytest.mark.parametrize(
    "rows, width, colour, depth, greys",
    [
        ([b"\0\xa0", b"\0\x40"], 3, 0, 1, "ff00ff 00ff00"),
        ([b"\0\x80\x80"], 9, 0, 1, "ff00000000000000ff"),
        ([b"\0\x1b\xc0"], 5, 0, 2, "0055aaffff"),
        ([b"\0\x0f\x80", b"\2\x01\x10"], 3, 0, 4, "00ff88 110099"),
        ([b"\0\x12\x00", b"\1\x10\x00"], 3, 3, 4, "112200 110011"),
        ([b"\0\x60"], 2, 3, 2, "1122"),
        ([b"\0\x80"], 2, 3, 1, "1100"),
    ],
)
def test_reads_png_of_few_bits(rows: "List[bytes]", width: int, colour: int, depth: int, greys: str) -> None:
    palette = b"".join(bytes([value] * 3) for value in (0, 0x11, 0x22)) if colour == 3 else b""
    pixels = b"".join(bytes([value] * 3) for value in bytes.fromhex(greys))
    assert read_png(png(rows, width, colour, palette, depth)) == Bitmap(width, len(rows), pixels)


def test_reads_its_own_png() -> None:
    assert read_png(write_png(FOUR)) == FOUR


INTERLACED = bytearray(write_png(FOUR))
INTERLACED[28] = 1


@pytest.mark.parametrize(
    "data, why",
    [
        (b"", "no PNG file"),
        (b"GIF89a", "no PNG file"),
        (write_png(FOUR)[:8] + write_png(FOUR)[-12:], "no PNG file"),
        (write_png(FOUR)[:20], "a PNG file that is cut short"),
        (write_png(FOUR)[:50], "a PNG file that is cut short or damaged$"),
        (write_png(FOUR)[:-12], "a PNG file that is cut short"),
        (write_png(FOUR).replace(b"IDAT\x78", b"IDAT\x00"), "a PNG file that is cut short or damaged: Error -3"),
        (png([b"\x05\0"], 1, 0), "a PNG file with a filter that does not exist, 5"),
        (png([b"\0"], 1, 0), "a PNG file that is cut short"),
        (png([b"\0\0\0\0\0"], 1, 5), "a PNG file of a kind that does not exist, 5 with 8 bits a sample"),
        (png([b"\0\0\0\0\0"], 1, 2, depth=4), "a PNG file of a kind that does not exist, 2 with 4 bits a sample"),
        (png([b"\0\0\0"], 1, 0, depth=16), "a PNG file with 16 bits a sample; at most 8 are read"),
        (bytes(INTERLACED), "an interlaced PNG file, which is not read"),
        (png([b"\0\2"], 1, 3, RED + GREEN), "a PNG file with a colour that its palette does not have"),
        (png([], 1, 0), "a PNG file without pixels"),
    ],
)
def test_says_why_a_png_is_not_read(data: bytes, why: str) -> None:
    with pytest.raises(ValueError, match=f"^{why}"):
        read_png(data)
