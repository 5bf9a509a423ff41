# SPDX-License-Identifier: Apache-2.0
"""A program with types, as users write it. It is not run: mypy reads it, in the test python.types_are_right.

Where mypy must complain, there is an "ignore"; mypy --strict complains of one that is not needed.
"""

import asyncio
from pathlib import Path
from typing import Tuple

from buttondriver import AsyncPanel, Bitmap, Panel, VirtualPanel
from buttondriver.pytest_plugin import ScreenAssertion


class DoorPanel(Panel):
    def door(self) -> None:
        self.text(0, 0, "Door open")


class AsyncDoorPanel(AsyncPanel):
    async def door(self) -> None:
        self.text(0, 0, "Door open")  # type: ignore[unused-coroutine]
        await self.text(0, 0, "Door open")


class PictureOfPil:
    """What PIL says of its Image, in its own words."""

    @property
    def size(self) -> Tuple[int, int]:
        return 1, 1

    def convert(self, mode: "str | None" = None, matrix: "Tuple[float, ...] | None" = None) -> "PictureOfPil":
        return self

    def tobytes(self, encoder_name: str = "raw", *more: object) -> bytes:
        return b""


def drive() -> None:
    with DoorPanel() as panel:
        panel.door()
        panel.image(0, PictureOfPil())
        for source in (b"", bytearray(), Path("logo.bmp"), "logo.bmp", Bitmap(1, 1, bytes(3))):
            assert isinstance(source, (bytes, Path, str, Bitmap))
            panel.image(0, source, fit="crop")
        panel.image(0, 42)  # type: ignore[arg-type]
        panel.text(0, 0, b"bytes")  # type: ignore[arg-type]


async def drive_with_tasks() -> None:
    async with AsyncDoorPanel() as panel:
        await panel.door()
        await asyncio.create_task(panel.text(0, 0, "Hello"))
        await asyncio.gather(panel.status(3), panel.ping())
        seconds: float = await panel.ping()
        panel.led(int(seconds))  # type: ignore[unused-coroutine]
        panel.ping()  # type: ignore[unused-coroutine]


def drive_to_the_end() -> None:
    asyncio.run(AsyncPanel().status(3))


def test_door(panel: VirtualPanel, assert_screen: ScreenAssertion) -> None:
    assert_screen(panel, 0, "pictures/door.png")
    assert_screen(panel, 0, Path("pictures/door.png"))
