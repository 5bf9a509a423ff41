# SPDX-License-Identifier: Apache-2.0
"""What a program may hand over as a picture, made into the BMP file that goes to the panel."""

import os
from typing import Any, Literal, Optional, Protocol, Tuple, Union

from ..catalogue import SCREEN_HEIGHT, SCREEN_WIDTH
from ..checks import whole_number
from .bitmap import Bitmap
from .bmp import is_for_the_panel, read_bmp, write_bmp


class PilPicture(Protocol):
    """As much of a picture of PIL as is asked for. PIL need not be there."""

    @property
    def size(self) -> Tuple[int, int]: ...

    def convert(self, mode: Literal["RGB"]) -> Any: ...

    def tobytes(self) -> bytes: ...


PictureSource = Union[bytes, "os.PathLike[str]", str, Bitmap, PilPicture]

_FITS = (None, "crop", "shrink", "unchecked")
_KINDS = {
    b"\x89PNG": "a PNG file",
    b"\xff\xd8\xff": "a JPEG file",
    b"GIF8": "a GIF file",
    b"BM": "a BMP file of another kind",
}


def screen_picture(source: PictureSource, xoffset: int, yoffset: int, fit: Optional[str]) -> Tuple[bytes, int, int]:
    """The BMP file to send, and the column and the row to send it to. Nothing of it sticks out of the screen.

    With `fit` "unchecked", the bytes are as they were given, whatever they are. Else ValueError when the picture is none
    that can be sent, when `fit` is unknown or missing where it is needed, or when an offset leaves no room.
    """
    if fit not in _FITS:
        raise ValueError(f"fit: {fit!r} is out of its range, {', '.join(map(repr, _FITS[:-1]))} or {_FITS[-1]!r}")
    whole_number("xoffset", xoffset)
    whole_number("yoffset", yoffset)
    given, name = _loaded(source)
    if fit == "unchecked":
        return given if isinstance(given, bytes) else write_bmp(given), xoffset, yoffset
    bitmap = _read(given, name) if isinstance(given, bytes) else given
    placed, x, y = _placed(bitmap, xoffset, yoffset, fit)
    if placed is bitmap and isinstance(given, bytes) and is_for_the_panel(given):
        return given, x, y
    return write_bmp(placed), x, y


def _placed(bitmap: Bitmap, x: int, y: int, fit: Optional[str]) -> Tuple[Bitmap, int, int]:
    """The same bitmap when nothing of it need be changed."""
    if fit == "shrink":
        for name, offset, size in (("xoffset", x, SCREEN_WIDTH), ("yoffset", y, SCREEN_HEIGHT)):
            if not 0 <= offset < size:
                raise ValueError(f"{name}: {offset} is out of its range with fit='shrink', 0 to {size - 1}")
        return bitmap.shrink(SCREEN_WIDTH - x, SCREEN_HEIGHT - y), x, y
    left, top = max(-x, 0), max(-y, 0)
    width, height = min(bitmap.width, SCREEN_WIDTH - x) - left, min(bitmap.height, SCREEN_HEIGHT - y) - top
    if (width, height) == (bitmap.width, bitmap.height):
        return bitmap, x, y
    if fit is None:
        raise ValueError(
            f"image: a picture of {bitmap.width} x {bitmap.height} at {x}, {y} sticks out of the screen "
            f"of {SCREEN_WIDTH} x {SCREEN_HEIGHT}; use fit='crop' or fit='shrink'"
        )
    if width < 1 or height < 1:
        raise ValueError(f"xoffset, yoffset: at {x}, {y}, no part of the picture lies on the screen")
    return bitmap.part(left, top, width, height), x + left, y + top


def _loaded(source: PictureSource) -> Tuple[Union[bytes, Bitmap], str]:
    """With its name for messages, if it has one."""
    if isinstance(source, Bitmap):
        return source, ""
    if isinstance(source, (bytes, bytearray, memoryview)):
        return bytes(source), ""
    if isinstance(source, (str, os.PathLike)):
        with open(source, "rb") as file:
            return file.read(), f"{os.fspath(source)}: "
    if hasattr(source, "convert") and hasattr(source, "tobytes"):
        width, height = source.size
        return Bitmap(width, height, source.convert("RGB").tobytes()), ""
    raise TypeError(f"image: {type(source).__name__} is neither bytes, a path, a Bitmap, nor a picture of PIL")


def _read(data: bytes, name: str) -> Bitmap:
    try:
        return read_bmp(data)
    except ValueError as error:
        kind = next((kind for start, kind in _KINDS.items() if data.startswith(start)), None)
        hint = f", but {kind}; hand over a picture of PIL: PIL.Image.open(...)" if kind else ""
        raise ValueError(f"image: {name}{error}{hint}") from None
