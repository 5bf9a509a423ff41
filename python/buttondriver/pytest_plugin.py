# SPDX-License-Identifier: Apache-2.0
"""Fixtures of pytest: a virtual panel for each test, and a screen that must look like a picture."""

from pathlib import Path
from typing import Iterator

import pytest

from .comparison.output_folder import folder_of_test
from .comparison.screen_assertion import ScreenAssertion
from .errors import VirtualPanelError
from .virtual_panel import VirtualPanel

__all__ = ["ScreenAssertion"]


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


@pytest.fixture
def assert_screen(request: pytest.FixtureRequest, tmp_path_factory: pytest.TempPathFactory) -> ScreenAssertion:
    """assert_screen(panel, 0, "expected.png")"""
    config = request.config
    chosen = config.getoption("--panel-output")
    test = Path(str(request.node.path))
    if chosen:
        output = Path(chosen, folder_of_test(request.node.nodeid, test, config.rootpath)).absolute()
    else:
        output = tmp_path_factory.mktemp("screens")
    return ScreenAssertion(test.parent, output, bool(config.getoption("--panel-update")))
