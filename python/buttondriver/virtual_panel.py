# SPDX-License-Identifier: Apache-2.0
"""A panel that is a program: for tests, and for a desk without the device."""

import http.client
import json
import os
import time
from pathlib import Path
from types import TracebackType
from typing import Any, Callable, List, NamedTuple, Optional, Sequence, Type, Union

from .errors import PanelError, PanelTimeout, VirtualPanelError
from .panel import Panel
from .pictures.bitmap import Bitmap
from .pictures.png import read_png
from .simulator_process import SimulatorProcess

_PAUSE = 0.02  # between two looks of wait_until, in seconds
_ENDING = 1.0  # the longest that a program takes from its last connection to its end, in seconds


class Screen(NamedTuple):
    """What a screen shows."""

    text: Optional[List[str]]  #: the lines that can be read from its pixels; None when there is no font to read them
    sent: List[str]  #: the lines as clients have sent them
    bitmap: Bitmap

    @property
    def pixels(self) -> bytes:
        """Red, green and blue of each pixel, row by row from the topmost."""
        return self.bitmap.pixels


class Sent(NamedTuple):
    """A message as the daemon has accepted it."""

    number: int
    name: str
    fields: "dict[str, Union[int, str]]"
    text: Optional[str]


class _Client(Panel):
    """A connection of connect(). It does not end before what it has sent is accepted."""

    def close(self) -> None:
        with self._lock:
            try:
                self.settle()
            except PanelError:
                pass  # the next look at the panel tells what is wrong with it
            super().close()

    def settle(self) -> None:
        """Returns once all that was sent is accepted."""
        with self._lock:
            if self.pending and self.connected:
                self.ping()


class VirtualPanel:
    """Starts buttondriver-sim on free ports. Its daemon listens on `port`; its page is at `url`.

    What is read here shows the result of all that the connections of connect() have sent before; what another
    connection has sent is there once its ping is answered, or in wait_until().
    """

    def __init__(self, program: Optional[str] = None, *, arguments: Sequence[str] = (), timeout: float = 20.0) -> None:
        self.timeout = timeout
        self._program, self._arguments = program, arguments
        self._clients: List[_Client] = []
        self._start()

    def _start(self) -> None:
        self._process = SimulatorProcess(self._program, self._arguments, self.timeout)
        self._closed = False
        self.host, self.port = "127.0.0.1", self._process.ports["daemon"]
        self._http_port = self._process.ports.get("http", 0)
        self.url = f"http://{self.host}:{self._http_port}/"

    @property
    def fault(self) -> Optional[str]:
        """How its program has ended, if it has by itself, with its last lines; None as long as it runs, or was asked to
        end."""
        return None if self._closed or self._process.running else self._process.how_it_ended()

    def restart(self) -> None:
        """Closes it, and starts a new program in its place, on other ports."""
        self.close()
        self._start()

    def connect(self) -> Panel:
        """A new connection to its daemon; close() of this panel closes it, too. What it has sent is accepted when its
        close() returns."""
        self._check_running()
        self._clients.append(_Client(self.host, self.port, timeout=self.timeout))
        return self._clients[-1]

    def screen(self, number: int) -> Screen:
        """Screen 0, 1 or 2."""
        shown = _one_of(self.state()["screens"], "screen", number)
        return Screen(shown["drawn"], shown["text"], read_png(self._get(f"screen/{number}.png")))

    def led(self, button: int) -> bool:
        """Whether the LED of the button is lit; one that blinks counts as it is at that moment."""
        return bool(_one_of(self.state()["button_leds"], "button", button))

    def blinking(self, button: int) -> Optional[int]:
        """The milliseconds of a blink phase of the button's LED; None when it does not blink."""
        state = self.state()
        _one_of(state["button_leds"], "button", button)
        return next((row["time"] for row in state["blinking"] if row["button"] == button), None)

    def status(self, number: int) -> bool:
        """Whether the status LED is lit."""
        return bool(_one_of(self.state()["status_leds"], "status", number))

    def toggle(self, number: int) -> bool:
        """Whether the toggle indicator is lit."""
        return bool(_one_of(self.state()["toggles"], "toggle", number))

    @property
    def messages(self) -> List[Sent]:
        """The messages since the last reset, of the newest 500 those that are no pings."""
        rows = [row for row in self._json("messages.json")["messages"] if row["name"] != "BMS_Ping"]
        return [Sent(row["number"], row["name"], dict(row.get("fields", [])), row.get("text")) for row in rows]

    @property
    def log(self) -> List[str]:
        """The lines of the daemon's log since the last reset, the newest 500 of them."""
        return [row["text"] for row in self._json("log.json")["log"]]

    def state(self) -> Any:
        """All that the panel shows, as state.json has it."""
        return self._json("state.json")

    def screenshot(self, path: "Union[str, os.PathLike[str]]") -> None:
        """Writes a PNG file of the whole panel."""
        Path(path).write_bytes(self._get("panel.png"))

    def wait_until(self, predicate: "Callable[[VirtualPanel], object]", timeout: float = 5.0) -> None:
        """Returns once predicate(panel) is true. PanelTimeout, with what the panel shows, if it never is."""
        deadline = time.monotonic() + timeout
        while not predicate(self):
            if time.monotonic() > deadline:
                raise PanelTimeout(f"not true after {timeout} s; the panel shows {json.dumps(self.state())}")
            time.sleep(_PAUSE)

    def reset(self) -> None:
        """The panel as after the start, with empty lists. Button images that were uploaded stay."""
        self._ask("POST", "reset")

    def close(self) -> None:
        """Closes the connections of connect() and ends the program. May be called again."""
        try:
            self.disconnect()
        finally:
            self._closed = True
            self._process.end()

    def disconnect(self) -> None:
        """Closes the connections of connect(), once what they have sent is accepted."""
        while self._clients:
            self._clients.pop().close()

    def __enter__(self) -> "VirtualPanel":
        return self

    def __exit__(
        self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.close()

    def _json(self, resource: str) -> Any:
        return json.loads(self._get(resource))

    def _get(self, resource: str) -> bytes:
        return self._ask("GET", resource)

    def _ask(self, method: str, resource: str) -> bytes:
        """The body of the answer, once all that our connections have sent is accepted."""
        self._check_running()
        connection = http.client.HTTPConnection(self.host, self._http_port, timeout=self.timeout)
        try:
            for client in self._clients:
                client.settle()
            connection.request(method, f"/{resource}")
            answer = connection.getresponse()
            body = answer.read()
        except (OSError, http.client.HTTPException) as error:
            # A program that ends closes its connections a little earlier. Then its end is what there is to tell.
            if not isinstance(error, TimeoutError) and self._process.ends_within(_ENDING):
                self._check_running()
            if isinstance(error, PanelError):
                raise
            raise VirtualPanelError(f"the simulator does not answer: {error}") from error
        finally:
            connection.close()
        if answer.status not in (200, 204):
            raise PanelError(f"{method} /{resource}: {answer.status} {answer.reason}")
        return body

    def _check_running(self) -> None:
        if self._closed:
            raise VirtualPanelError("this virtual panel has been closed")
        if self.fault is not None:
            raise VirtualPanelError(self.fault)


def _one_of(rows: List[Any], name: str, number: int) -> Any:
    if not 0 <= number < len(rows):
        raise ValueError(f"{name}: {number} is out of its range, 0 to {len(rows) - 1}")
    return rows[number]
