# SPDX-License-Identifier: Apache-2.0
"""What several of the tests use. CMakeLists.txt puts the package, and the simulator, where they are found."""

import asyncio
import socket
from typing import Any, Callable, Iterator

import pytest

from buttondriver import AsyncPanel, Panel

pytest_plugins = ["buttondriver.pytest_plugin", "pytester"]


class Awaited:
    """An AsyncPanel that is used like a Panel: each test is for both."""

    def __init__(self, *arguments: Any, **options: Any) -> None:
        self.panel = AsyncPanel(*arguments, **options)
        self._loop = asyncio.new_event_loop()
        try:
            self._loop.run_until_complete(self.panel.connect())
        except BaseException:
            self._loop.close()
            raise

    def __getattr__(self, name: str) -> Callable[..., Any]:
        method = getattr(self.panel, name)
        return lambda *arguments, **options: self._loop.run_until_complete(method(*arguments, **options))

    @property
    def connected(self) -> bool:
        self._loop.run_until_complete(asyncio.sleep(0))
        return self.panel.connected

    def end(self) -> None:
        if not self._loop.is_closed():
            self._loop.run_until_complete(self.panel.close())
            self._loop.close()


@pytest.fixture(params=[Panel, Awaited], ids=["waits", "awaited"])
def connect(request: pytest.FixtureRequest) -> Iterator[Callable[..., Any]]:
    """Makes panels of both kinds, and closes them."""
    made = []

    def make(*arguments: Any, **options: Any) -> Any:
        made.append(request.param(*arguments, **options))
        return made[-1]

    yield make
    for panel in made:
        panel.end() if isinstance(panel, Awaited) else panel.close()


class Daemon:
    """A listening socket in the place of a daemon, that does only what a test asks for."""

    def __init__(self) -> None:
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        self.accepted: "list[socket.socket]" = []

    def accept(self) -> socket.socket:
        self.accepted.append(self.listener.accept()[0])
        return self.accepted[-1]

    def close(self) -> None:
        for connection in [*self.accepted, self.listener]:
            connection.close()


@pytest.fixture
def daemon() -> Iterator[Daemon]:
    daemon = Daemon()
    yield daemon
    daemon.close()
