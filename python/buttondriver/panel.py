# SPDX-License-Identifier: Apache-2.0
"""A panel, for programs that wait."""

import contextlib
import socket
import threading
import time
from types import TracebackType
from typing import Iterator, Optional, Type, TypeVar

from .catalogue import DEFAULT_PORT
from .checks import check_address
from .commands import Commands, sends
from .encoder import PING_REPLY, encode
from .errors import PanelError, PanelLost, PanelTimeout

Self = TypeVar("Self", bound="Panel")


class Panel(Commands[None]):
    """One connection to the daemon, kept until close(). Any thread may call; one after the other is served.

    `timeout`, in seconds, is for each call: to connect, to send one message, to be answered. With `reconnect`, a call
    that finds the connection lost makes a new one, once, and sends its message there; without it, that is PanelLost.
    """

    def __init__(
        self, host: str = "127.0.0.1", port: int = DEFAULT_PORT, *, timeout: float = 5.0, reconnect: bool = False
    ) -> None:
        check_address(host, port, timeout)
        self.host, self.port, self.timeout, self.reconnect = host, port, timeout, reconnect
        self._lock = threading.RLock()
        self._socket: Optional[socket.socket] = None
        self._closed = False
        self.pending = False  #: whether something has been sent since the last answer
        self.connect()

    def connect(self) -> None:
        """Makes a new connection in place of the one there is. PanelLost or PanelTimeout when it cannot be had."""
        with self._lock:
            self.close()
            self._closed = False
            self.pending = False
            try:
                self._socket = socket.create_connection((self.host, self.port), self.timeout)
            except socket.timeout as error:
                raise PanelTimeout(f"no connection to {self.host}:{self.port} in {self.timeout} s") from error
            except OSError as error:
                raise PanelLost(f"no connection to {self.host}:{self.port}: {error}") from error
            self._socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)

    @property
    def connected(self) -> bool:
        """Whether the connection stands, as far as this side has heard."""
        with self._lock:
            if self._socket is None:
                return False
            self._socket.setblocking(False)
            try:
                return self._socket.recv(1, socket.MSG_PEEK) != b""
            except BlockingIOError:
                return True
            except OSError:
                return False

    @sends("BMS_Ping")
    def ping(self) -> float:
        """Returns the seconds until the answer: all that was sent before has been accepted by then."""
        with self._lock:
            start = time.perf_counter()
            with self._whole():
                self._send(encode("BMS_Ping"))
                self._receive_reply(start + self.timeout)
            self.pending = False
            return time.perf_counter() - start

    def close(self) -> None:
        """Ends the connection; what was sent is still delivered. May be called again. Only connect() opens it anew."""
        with self._lock:
            self._closed = True
            self._drop()

    def __enter__(self: Self) -> Self:
        return self

    def __exit__(
        self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.close()

    def _send(self, frame: bytes) -> None:
        with self._lock:
            if self._closed:
                raise PanelLost(f"the connection to {self.host}:{self.port} has been closed")
            if not self.connected:
                self._drop()
                if not self.reconnect:
                    raise PanelLost(f"the connection to {self.host}:{self.port} is lost")
                self.connect()
            assert self._socket is not None
            with self._whole():
                self._socket.settimeout(self.timeout)
                self.pending = True
                self._socket.sendall(frame)

    def _receive_reply(self, deadline: float) -> None:
        assert self._socket is not None
        answer = b""
        while len(answer) < len(PING_REPLY):
            self._socket.settimeout(max(deadline - time.perf_counter(), 0.001))
            more = self._socket.recv(len(PING_REPLY) - len(answer))
            if not more:
                raise ConnectionResetError("closed by the daemon")
            answer += more
        if answer != PING_REPLY:
            raise ConnectionError(f"unexpected answer {answer.hex(' ')}")

    @contextlib.contextmanager
    def _whole(self) -> Iterator[None]:
        """What is broken off in here, also by Ctrl-C, leaves half a frame, or an answer that is still to come: then the
        connection is of no more use."""
        try:
            yield
        except BaseException as error:
            self._drop()
            if isinstance(error, PanelError) or not isinstance(error, OSError):
                raise
            if isinstance(error, socket.timeout):
                raise PanelTimeout(f"{self.host}:{self.port} did not answer in {self.timeout} s") from error
            raise PanelLost(f"the connection to {self.host}:{self.port} is lost: {error}") from error

    def _drop(self) -> None:
        if self._socket is not None:
            self._socket.close()
            self._socket = None
