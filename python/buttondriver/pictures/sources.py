# SPDX-License-Identifier: Apache-2.0
"""What a program may hand over as a picture, made into the BMP file that goes to the panel."""

import os
from typing import Any, Optional, Union

from ..catalogue import SCREEN_HEIGHT, SCREEN_WIDTH
from .bitmap import Bitmap
from .bmp import read_bmp, write_bmp

PictureSource = Union[bytes, "os.PathLike[str]", str, Bitmap, Any]  #: Any stands for a picture of PIL


def screen_picture(source: PictureSource, xoffset: int, yoffset: int, fit: Optional[str]) -> bytes:
    """The BMP file to send. With `fit`, nothing of it sticks out of the screen at these offsets.

    ValueError when the picture is none that can be sent, when `fit` is unknown, or when an offset leaves no room.
    """
    if fit not in (None, "crop", "shrink"):
        raise ValueError(f"fit: {fit!r} is out of its range, None, 'crop' or 'shrink'")
    given = _loaded(source)
    bitmap = read_bmp(given) if isinstance(given, bytes) else given
    if fit is None:
        return given if isinstance(given, bytes) else write_bmp(given)
    for name, offset, size in (("xoffset", xoffset, SCREEN_WIDTH), ("yoffset", yoffset, SCREEN_HEIGHT)):
        if not 0 <= offset < size:
            raise ValueError(f"{name}: {offset} is out of its range with fit, 0 to {size - 1}")
    room = SCREEN_WIDTH - xoffset, SCREEN_HEIGHT - yoffset
    return write_bmp(bitmap.crop(*room) if fit == "crop" else bitmap.shrink(*room))


def _loaded(source: PictureSource) -> Union[bytes, Bitmap]:
    if isinstance(source, (bytes, Bitmap)):
        return source
    if isinstance(source, (str, os.PathLike)):
        with open(source, "rb") as file:
            return file.read()
    if hasattr(source, "convert") and hasattr(source, "tobytes"):  # of PIL, which need not be there
        width, height = source.size
        return Bitmap(width, height, source.convert("RGB").tobytes())
    raise TypeError(f"image: {type(source).__name__} is neither bytes, a path, nor a picture of PIL")
