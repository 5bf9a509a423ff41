# SPDX-License-Identifier: Apache-2.0
"""BMP and PNG files, and what fits on a screen."""

import pickle
import re
from pathlib import Path
from typing import Any, List

import pytest

from buttondriver import Bitmap, VirtualPanel
from buttondriver.pictures.bmp import read_bmp, write_bmp
from buttondriver.pictures.sources import PictureSource, screen_picture

RED, GREEN, BLUE, WHITE = b"\xff\0\0", b"\0\xff\0", b"\0\0\xff", b"\xff\xff\xff"
FOUR = Bitmap(2, 2, RED + GREEN + BLUE + WHITE)
# Red and green above blue and white, as docs/protocol.md has it.
FOUR_BMP = bytes.fromhex(
    "424d460000000000000036000000280000000200000002000000010018000000000010000000130b0000130b00000000000000000000"
    "ff0000ffffff0000" "0000ff00ff000000"
)
# The same with a header of 124 bytes, which the panel does not read.
LONG_HEADER_BMP = FOUR_BMP[:10] + b"\x8a" + FOUR_BMP[11:14] + b"\x7c" + FOUR_BMP[15:54] + bytes(84) + FOUR_BMP[54:]
UPSIDE_DOWN = bytearray(FOUR_BMP)
UPSIDE_DOWN[22:26] = (-2).to_bytes(4, "little", signed=True)


def test_reads_and_writes_bmp() -> None:
    assert read_bmp(FOUR_BMP) == FOUR
    assert read_bmp(bytes(UPSIDE_DOWN)) == Bitmap(2, 2, BLUE + WHITE + RED + GREEN)
    assert write_bmp(FOUR) == FOUR_BMP


def test_sends_only_what_the_panel_reads(tmp_path: Path) -> None:
    path = tmp_path / "long.bmp"
    path.write_bytes(LONG_HEADER_BMP)
    sources: List[PictureSource] = [LONG_HEADER_BMP, bytearray(LONG_HEADER_BMP), path]
    for source in sources:
        assert screen_picture(source, 0, 0, None) == (FOUR_BMP, 0, 0)
    assert read_bmp(screen_picture(bytes(UPSIDE_DOWN), 0, 0, None)[0]) == Bitmap(2, 2, BLUE + WHITE + RED + GREEN)
    assert write_bmp(FOUR) == screen_picture(bytes(UPSIDE_DOWN[:54]) + FOUR_BMP[62:] + FOUR_BMP[54:62], 0, 0, None)[0]
    trailing = FOUR_BMP + b"more"
    assert screen_picture(trailing, 0, 0, None) == (trailing, 0, 0)  # as it is: the panel reads it


@pytest.mark.parametrize("place", [0, 10, 14, 26, 28, 30])
def test_refuses_other_bmp(place: int) -> None:
    other = bytearray(FOUR_BMP)
    other[place] ^= 1
    with pytest.raises(ValueError):
        read_bmp(bytes(other))
    with pytest.raises(ValueError):
        read_bmp(FOUR_BMP[:-1])
    with pytest.raises(ValueError):
        read_bmp(FOUR_BMP[:14] + b"\x0c" + FOUR_BMP[15:])  # the oldest header, with other fields


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
    sources: List[PictureSource] = [FOUR_BMP, path, str(path), FOUR, OfPil()]
    for source in sources:
        assert screen_picture(source, 0, 0, None) == (FOUR_BMP, 0, 0)
    with pytest.raises(TypeError, match="list is neither"):
        screen_picture([], 0, 0, None)  # type: ignore[arg-type]


@pytest.mark.parametrize("fit, size", [("crop", (28, 100)), ("shrink", (28, 18))])
def test_fits_into_what_is_left_of_the_screen(fit: str, size: "tuple[int, int]") -> None:
    bmp, x, y = screen_picture(Bitmap(300, 200, WHITE * 60000), 100, 28, fit)
    assert (x, y) == (100, 28)
    fitted = read_bmp(bmp)
    assert (fitted.width, fitted.height) == size


@pytest.mark.parametrize("x, y, pixels", [(-1, -1, WHITE), (127, -1, BLUE), (-1, 127, GREEN), (127, 127, RED)])
def test_crops_at_each_edge(x: int, y: int, pixels: bytes) -> None:
    picture, *place = screen_picture(FOUR_BMP, x, y, "crop")
    assert (read_bmp(picture), place) == (Bitmap(1, 1, pixels), [max(x, 0), max(y, 0)])


@pytest.mark.parametrize(
    "size, x, y", [((200, 100), 0, 0), ((1, 129), 0, 0), ((2, 2), 127, 0), ((2, 2), 0, 127), ((2, 2), -1, 0), ((2, 2), 0, -1)]
)
def test_refuses_what_sticks_out_unless_told_otherwise(size: "tuple[int, int]", x: int, y: int) -> None:
    picture = Bitmap(*size, bytes(3 * size[0] * size[1]))
    words = rf"a picture of {size[0]} x {size[1]} at {x}, {y} sticks out of the screen of 128 x 128; use fit='crop'"
    sources: List[PictureSource] = [picture, write_bmp(picture)]
    for source in sources:
        with pytest.raises(ValueError, match=words):
            screen_picture(source, x, y, None)
        assert screen_picture(source, x, y, "unchecked") == (write_bmp(picture), x, y)
    with pytest.raises(ValueError, match="no part of the picture lies on the screen"):
        screen_picture(FOUR, 128, 0, "crop")
    full = Bitmap(128, 128, bytes(3 * 128 * 128))
    assert screen_picture(full, 0, 0, None) == (write_bmp(full), 0, 0)


def test_sends_bytes_as_they_are_on_request(tmp_path: Path) -> None:
    (tmp_path / "junk").write_bytes(b"junk")
    sources: List[PictureSource] = [b"junk", tmp_path / "junk"]
    for source in sources:
        assert screen_picture(source, -5, 500, "unchecked") == (b"junk", -5, 500)


@pytest.mark.parametrize(
    "start, kind",
    [
        (b"\x89PNG\r\n\x1a\n", "a PNG file; hand over a picture of PIL: PIL.Image.open"),
        (b"\xff\xd8\xff", "a JPEG file; hand over a picture of PIL"),
        (b"GIF89a", "a GIF file; hand over a picture of PIL"),
        (b"BM" + bytes(80), "a BMP file of another kind; hand over a picture of PIL"),
        (b"some text", "no uncompressed 24-bit BMP file$"),
    ],
)
def test_says_what_a_file_is_instead(start: bytes, kind: str, tmp_path: Path) -> None:
    path = tmp_path / "picture"
    path.write_bytes(start)
    for fit in (None, "crop"):
        with pytest.raises(ValueError, match=f"^image: .*{kind}"):
            screen_picture(start, 0, 0, fit)
        with pytest.raises(ValueError, match=f"^image: {re.escape(str(path))}: .*{kind}"):
            screen_picture(path, 0, 0, fit)


@pytest.mark.parametrize(
    "width, height, pixels, why",
    [
        (10, 10, b"abc", "pixels: 3 bytes, but red, green and blue of 10 x 10 pixels are 300"),
        (2, 1, bytes(8), "pixels: 8 bytes, but .* are 6; those of RGBA have an opacity that a Bitmap does not"),
        (0, 0, b"", "width: 0 is out of its range, 1 and up"),
        (-4, 4, bytes(48), "width: -4 is out of its range, 1 and up"),
        (4, 0, b"", "height: 0 is out of its range, 1 and up"),
    ],
)
def test_refuses_a_bitmap_of_another_size(width: int, height: int, pixels: bytes, why: str) -> None:
    with pytest.raises(ValueError, match=f"^{why}"):
        Bitmap(width, height, pixels)


@pytest.mark.parametrize(
    "arguments, why",
    [
        ((1, 1, "abc"), "pixels: str is not bytes"),
        ((1.0, 1, b"abc"), "width: 1.0 is no whole number"),
        ((1, None, b"abc"), "height: None is no whole number"),
    ],
)
def test_refuses_a_bitmap_of_other_types(arguments: "tuple[Any, Any, Any]", why: str) -> None:
    with pytest.raises(TypeError, match=f"^{why}"):
        Bitmap(*arguments)


def test_a_bitmap_has_bytes_of_its_own() -> None:
    given = bytearray(RED)
    bitmap = Bitmap(1, 1, given)
    given[0] = 0
    assert bitmap == (1, 1, RED)
    assert repr(bitmap) == r"Bitmap(width=1, height=1, pixels=b'\xff\x00\x00')"
    with pytest.raises(AttributeError):
        setattr(bitmap, "colours", 3)
    assert pickle.loads(pickle.dumps(bitmap)) == bitmap


@pytest.mark.parametrize("picture", [FOUR_BMP, LONG_HEADER_BMP], ids=["short", "long"])
def test_a_picture_is_on_the_screen(panel: VirtualPanel, picture: bytes) -> None:
    panel.connect().image(1, picture, 63, 64)
    bitmap = panel.screen(1).bitmap
    places = ((63, 64), (64, 64), (63, 65), (64, 65), (62, 64))
    assert [bytes(bitmap.pixel(x, y)) for x, y in places] == [RED, GREEN, BLUE, WHITE, bytes(3)]
    assert (bitmap.width, bitmap.height, len(panel.screen(1).pixels)) == (128, 128, 3 * 128 * 128)


def test_a_pixel_outside_is_told() -> None:
    for place in ((2, 0), (0, 2), (-1, 0)):
        with pytest.raises(IndexError):
            FOUR.pixel(*place)
