# SPDX-License-Identifier: Apache-2.0
"""What the fixture assert_screen does."""

import os
from pathlib import Path
from typing import List, Optional, Tuple, Union

import pytest

from ..pictures.bitmap import Bitmap
from ..pictures.png import read_png, write_png
from ..virtual_panel import VirtualPanel
from .difference import difference_in_words, difference_picture


class ScreenAssertion:
    """What the fixture assert_screen gives: a function that knows the test."""

    def __init__(self, folder: Path, output: Path, update: bool) -> None:
        self._folder, self._output, self._update = folder, output, update

    def __call__(self, panel: VirtualPanel, screen: int, expected: "Union[str, os.PathLike[str]]") -> None:
        """Fails unless the screen shows the picture, a PNG file whose path counts from the folder of the test.

        The failure says where they differ, and where the pictures are: as expected, as it is, and the difference.
        With --panel-update, writes the file instead.
        """
        __tracebackhide__ = True
        actual = panel.screen(screen).bitmap
        path = self._folder / expected
        if self._update:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(write_png(actual))
            return
        wanted, fault = _read(path)
        if wanted is not None:
            fault = difference_in_words(wanted, actual)
        if fault:
            saved = "\n".join(f"  {name} {file}" for name, file in self._save(Path(expected).stem, wanted, actual))
            pytest.fail(f"screen {screen}: {fault}\n{saved}\n  --panel-update makes this the expected one")

    def _save(self, stem: str, wanted: Optional[Bitmap], actual: Bitmap) -> List[Tuple[str, Path]]:
        pictures = [("actual:    ", actual)]
        if wanted is not None:
            pictures = [("expected:  ", wanted), *pictures, ("difference:", difference_picture(wanted, actual))]
        self._output.mkdir(parents=True, exist_ok=True)
        files = []
        for name, picture in pictures:
            file = self._output / f"{stem}-{name.strip(' :')}.png"
            file.write_bytes(write_png(picture))
            files.append((name, file))
        return files


def _read(path: Path) -> Tuple[Optional[Bitmap], str]:
    """The picture, or why there is none."""
    try:
        return read_png(path.read_bytes()), ""
    except FileNotFoundError:
        return None, f"{path} is not there"
    except (OSError, ValueError) as error:
        return None, f"{path} cannot be read: {getattr(error, 'strerror', None) or error}"
