# SPDX-License-Identifier: Apache-2.0
"""A panel, for programs with asyncio."""

import asyncio
import contextlib
import socket
import time
from types import TracebackType
from typing import Any, Awaitable, Coroutine, Iterator, Optional, Type, TypeVar

from .catalogue import DEFAULT_PORT
from .checks import check_address
from .commands import Commands, sends
from .encoder import PING_REPLY, encode
from .errors import PanelLost, PanelTimeout

Self = TypeVar("Self", bound="AsyncPanel")
Value = TypeVar("Value")


class AsyncPanel(Commands[Coroutine[Any, Any, None]]):
    """Panel with the same methods, each to be awaited. It connects in connect(), in "async with", or when first used.

    Calls of several tasks are served one after the other. The connection ends with its event loop: for another loop, for
    example in a second asyncio.run(), it is lost.
    """

    def __init__(
        self, host: str = "127.0.0.1", port: int = DEFAULT_PORT, *, timeout: float = 5.0, reconnect: bool = False
    ) -> None:
        check_address(host, port, timeout)
        self.host, self.port, self.timeout, self.reconnect = host, port, timeout, reconnect
        self._loop: Optional[asyncio.AbstractEventLoop] = None
        self._lock: Optional[asyncio.Lock] = None
        self._reader: Optional[asyncio.StreamReader] = None
        self._writer: Optional[asyncio.StreamWriter] = None
        self._used = self._closed = False

    async def connect(self) -> None:
        """Makes a new connection in place of the one there is. PanelLost or PanelTimeout when it cannot be had."""
        self._turn()
        self._drop()
        self._used, self._closed = True, False
        connecting = asyncio.open_connection(self.host, self.port)
        try:
            self._reader, self._writer = await asyncio.wait_for(connecting, self.timeout)
        except asyncio.TimeoutError as error:
            raise PanelTimeout(f"no connection to {self.host}:{self.port} in {self.timeout} s") from error
        except OSError as error:
            raise PanelLost(f"no connection to {self.host}:{self.port}: {error}") from error

    @property
    def connected(self) -> bool:
        """Whether the connection stands, as far as the event loop has heard."""
        if self._reader is None or self._loop is None or self._loop.is_closed():
            return False
        return not self._reader.at_eof() and self._reader.exception() is None

    @sends("BMS_Ping")
    async def ping(self) -> float:
        """Returns the seconds until the answer: all that was sent before has been accepted by then."""
        async with self._turn():
            start = time.perf_counter()
            with self._whole():
                await self._write(encode("BMS_Ping"))
                assert self._reader is not None
                answer = await self._in_time(self._reader.readexactly(len(PING_REPLY)))
            if answer != PING_REPLY:
                self._drop()
                raise PanelLost(f"unexpected answer {answer.hex(' ')} of {self.host}:{self.port}")
            return time.perf_counter() - start

    async def close(self) -> None:
        """Ends the connection once what was sent has been delivered. May be called again.

        Only connect() opens it anew.
        """
        self._turn()
        self._closed = True
        writer = self._writer
        self._drop()
        if writer is not None:
            await self._in_time(writer.wait_closed())

    async def __aenter__(self: Self) -> Self:
        await self.connect()
        return self

    async def __aexit__(
        self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        await self.close()

    async def _send(self, frame: bytes) -> None:
        async with self._turn():
            await self._write(frame)

    def _drop(self) -> None:
        writer, self._reader, self._writer = self._writer, None, None
        if writer is None:
            return
        if self._loop is not None and self._loop.is_running():
            writer.close()
            return
        # Its loop has ended and can close nothing any more, but the daemon shall hear of it.
        with contextlib.suppress(OSError):
            writer.get_extra_info("socket").shutdown(socket.SHUT_RDWR)

    def _turn(self) -> asyncio.Lock:
        """What a call waits for. A connection and a lock belong to a loop: in another one than before, there is none."""
        loop = asyncio.get_running_loop()
        if self._lock is None or self._loop is not loop:
            if self._loop is not None and self._loop.is_running():
                raise RuntimeError("this AsyncPanel is in use in another event loop")
            self._drop()
            self._loop, self._lock = loop, asyncio.Lock()
        return self._lock

    async def _write(self, frame: bytes) -> None:
        if self._closed:
            raise PanelLost(f"the connection to {self.host}:{self.port} has been closed")
        if not self.connected:
            if self._used and not self.reconnect:
                self._drop()
                raise PanelLost(f"the connection to {self.host}:{self.port} is lost")
            await self.connect()
        assert self._writer is not None
        with self._whole():
            self._writer.write(frame)
            await self._in_time(self._writer.drain())

    @contextlib.contextmanager
    def _whole(self) -> Iterator[None]:
        """What is broken off in here, also by Ctrl-C, leaves half a frame, or an answer that is still to come: then the
        connection is of no more use."""
        try:
            yield
        except BaseException:
            self._drop()
            raise

    async def _in_time(self, work: Awaitable[Value]) -> Value:
        try:
            return await asyncio.wait_for(work, self.timeout)
        except asyncio.TimeoutError as error:
            raise PanelTimeout(f"{self.host}:{self.port} did not answer in {self.timeout} s") from error
        except (OSError, EOFError) as error:
            raise PanelLost(f"the connection to {self.host}:{self.port} is lost: {error}") from error
