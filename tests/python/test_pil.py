# SPDX-License-Identifier: Apache-2.0
"""Pictures of PIL, where that is installed. test_pictures.py does without."""

from typing import Any

import pytest

from buttondriver.pictures.bitmap import Bitmap
from buttondriver.pictures.bmp import write_bmp
from buttondriver.pictures.sources import screen_picture

PIXELS = b"\xff\0\0\0\xff\0\0\0\xff\xff\xff\xff"


def test_takes_pictures_of_pil() -> None:
    image: Any = pytest.importorskip("PIL.Image", reason="needs python3-pil")
    picture = image.frombytes("RGB", (2, 2), PIXELS).convert("RGBA")
    assert screen_picture(picture, 0, 0, None) == (write_bmp(Bitmap(2, 2, PIXELS)), 0, 0)
