# SPDX-License-Identifier: Apache-2.0
"""Fixtures of pytest: a virtual panel for each test, and a screen that must look like a picture."""

from pathlib import Path
from typing import Iterator, List, Optional, Tuple

import pytest

from .bitmap import Bitmap
from .errors import VirtualPanelError
from .png import read_png, write_png
from .virtual_panel import VirtualPanel

_DIFFERENT = b"\xff\x00\x00"


def pytest_addoption(parser: pytest.Parser) -> None:
    group = parser.getgroup("panel", "virtual button panel")
    group.addoption("--panel-update", action="store_true", help="write the pictures that assert_screen expects")
    group.addoption("--panel-simulator", metavar="PROGRAM", help="instead of BUTTONDRIVER_SIM or buttondriver-sim")
    group.addoption("--panel-output", metavar="FOLDER", help="for assert_screen's pictures; default: a temporary one")


@pytest.fixture(scope="session")
def panel_of_session(request: pytest.FixtureRequest) -> Iterator[VirtualPanel]:
    """One simulator for all tests; with pytest-xdist, one for each worker."""
    with VirtualPanel(request.config.getoption("--panel-simulator")) as panel:
        yield panel


@pytest.fixture
def panel(panel_of_session: VirtualPanel) -> Iterator[VirtualPanel]:
    """A virtual panel as after its start. Connections of its connect() end with the test.

    Where a test has ended the simulator, that test fails, and the next one gets a new simulator.
    """
    try:
        panel_of_session.reset()
    except VirtualPanelError:
        panel_of_session.restart()
    yield panel_of_session
    panel_of_session.disconnect()
    fault = panel_of_session.fault
    if fault is not None:
        pytest.fail(fault, pytrace=False)


class ScreenAssertion:
    """What the fixture assert_screen gives: a function that knows the test."""

    def __init__(self, folder: Path, output: Path, update: bool) -> None:
        self._folder, self._output, self._update = folder, output, update

    def __call__(self, panel: VirtualPanel, screen: int, expected: str) -> None:
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
        wanted = read_png(path.read_bytes()) if path.exists() else None
        fault = f"{path} is not there" if wanted is None else difference_in_words(wanted, actual)
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


@pytest.fixture
def assert_screen(request: pytest.FixtureRequest, tmp_path_factory: pytest.TempPathFactory) -> ScreenAssertion:
    """assert_screen(panel, 0, "expected.png")"""
    config = request.config
    name = "".join(letter if letter.isalnum() or letter in "-_" else "-" for letter in request.node.name)
    chosen = config.getoption("--panel-output")
    test = Path(str(request.node.path))
    output = Path(chosen, test.stem, name).absolute() if chosen else tmp_path_factory.mktemp("screens")
    return ScreenAssertion(test.parent, output, bool(config.getoption("--panel-update")))


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
