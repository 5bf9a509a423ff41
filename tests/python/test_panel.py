# SPDX-License-Identifier: Apache-2.0
"""Panels of both kinds, in front of a socket that does what the test asks for, and of a virtual panel."""

import asyncio
import inspect
import os
import signal
import socket
import threading
from typing import Any, Callable, Iterator, Type

import pytest

from buttondriver import AsyncPanel, Bitmap, Panel, PanelLost, PanelTimeout, VirtualPanel
from buttondriver.pictures.bmp import write_bmp

PING = bytes.fromhex("000000040000000c")
REPLY = bytes.fromhex("0000000400000001")
SHORT = 0.05  # seconds: for what must time out


@pytest.fixture
def full() -> Iterator[int]:
    """The port of a listener that accepts no more connections."""
    with socket.socket() as listener, socket.socket() as first:
        listener.bind(("127.0.0.1", 0))
        listener.listen(0)
        first.connect(listener.getsockname())
        yield listener.getsockname()[1]


def wait_for_loss(panel: Any) -> None:
    while panel.connected:
        pass  # an end of the connection is on its way; ctest's own limit stands behind this


def big_bmp() -> bytes:
    return write_bmp(Bitmap(2000, 2000, bytes(3 * 2000 * 2000)))


def test_drives_the_panel(connect: Callable[..., Any], panel: VirtualPanel) -> None:
    client = connect(port=panel.port)
    client.text(0, 1, "Hello")
    client.led(5, blink_ms=500)
    client.led(6)
    client.status(3)
    client.toggle(1)
    assert client.ping() > 0
    assert panel.screen(0).text == ["", "Hello"]
    assert panel.blinking(5) == 500
    assert (panel.led(6), panel.led(7), panel.status(3), panel.status(4)) == (True, False, True, False)
    assert (panel.toggle(0), panel.toggle(1)) == (False, True)


def test_keeps_one_connection(connect: Callable[..., Any], daemon: Any) -> None:
    client = connect(port=daemon.port)
    connection = daemon.accept()
    client.status(3)
    client.reconfig()
    client.close()
    received = connection.makefile("rb").read()
    assert received.hex() == "0000000c000000150000000300000001" "000000080000000a00000000"


def test_a_reply_may_come_byte_by_byte(connect: Callable[..., Any], daemon: Any) -> None:
    client = connect(port=daemon.port)
    connection = daemon.accept()
    connection.setsockopt(6, 1, 1)  # TCP_NODELAY
    for byte in REPLY:
        connection.send(bytes([byte]))
    assert client.ping() >= 0
    assert connection.recv(len(PING)) == PING


def test_no_daemon_is_told(connect: Callable[..., Any], daemon: Any) -> None:
    daemon.close()
    with pytest.raises(PanelLost, match=f"^no connection to 127.0.0.1:{daemon.port}: "):
        connect(port=daemon.port)


@pytest.mark.parametrize(
    "address, kind, why",
    [
        ({"host": "a" * 70 + ".x"}, ValueError, "host: 'aaa.*' is no name of a host"),
        ({"host": None}, TypeError, "host: None is a NoneType, not a str"),
        ({"port": 0}, ValueError, "port: 0 is out of its range, 1 to 65535"),
        ({"port": 65536}, ValueError, "port: 65536 is out of its range, 1 to 65535"),
        ({"port": "3003"}, TypeError, "port: '3003' is no whole number"),
        ({"timeout": 0}, ValueError, "timeout: 0 is out of its range, more than 0 and at most 2000000 seconds"),
        ({"timeout": -1.5}, ValueError, "timeout: -1.5 is out of its range"),
        ({"timeout": float("nan")}, ValueError, "timeout: nan is out of its range"),
        ({"timeout": float("inf")}, ValueError, "timeout: inf is out of its range"),
        ({"timeout": None}, TypeError, "timeout: None is no number of seconds"),
    ],
)
def test_refuses_an_address_that_is_none(
    connect: Callable[..., Any], address: "dict[str, Any]", kind: Type[Exception], why: str
) -> None:
    with pytest.raises(kind, match=f"^{why}"):
        connect(**address)


def test_no_connection_in_time_is_told(connect: Callable[..., Any], full: int) -> None:
    with pytest.raises(PanelTimeout, match=f"^no connection to 127.0.0.1:{full} in {SHORT} s"):
        connect(port=full, timeout=SHORT)


def test_no_answer_is_a_time_out_and_ends_the_connection(connect: Callable[..., Any], daemon: Any) -> None:
    client = connect(port=daemon.port, timeout=SHORT)
    with pytest.raises(PanelTimeout):
        client.ping()
    assert not client.connected
    with pytest.raises(PanelLost):
        client.status(3)


def test_a_daemon_that_takes_nothing_is_a_time_out(connect: Callable[..., Any], daemon: Any) -> None:
    client = connect(port=daemon.port, timeout=SHORT)
    picture = big_bmp()
    with pytest.raises(PanelTimeout):
        for _ in range(20):  # more than the system keeps on the way
            client.image(0, picture, fit="unchecked")


def test_another_answer_is_told(connect: Callable[..., Any], daemon: Any) -> None:
    client = connect(port=daemon.port)
    daemon.accept().sendall(PING)
    with pytest.raises(PanelLost, match="unexpected answer"):
        client.ping()


def test_an_end_instead_of_an_answer_is_told(connect: Callable[..., Any], daemon: Any) -> None:
    client = connect(port=daemon.port)
    connection = daemon.accept()
    connection.sendall(REPLY[:5])
    connection.shutdown(1)
    with pytest.raises(PanelLost):
        client.ping()


def test_a_lost_connection_is_told(connect: Callable[..., Any], daemon: Any) -> None:
    client = connect(port=daemon.port)
    daemon.accept().close()
    wait_for_loss(client)
    with pytest.raises(PanelLost, match="is lost"):
        client.status(3)


def test_a_lost_connection_is_made_anew_on_request(connect: Callable[..., Any], daemon: Any) -> None:
    client = connect(port=daemon.port, reconnect=True)
    daemon.accept().close()
    wait_for_loss(client)
    client.status(3)
    assert daemon.accept().recv(16).hex() == "0000000c000000150000000300000001"


@pytest.mark.parametrize("reconnect", [False, True])
def test_a_closed_one_is_opened_by_connect_only(connect: Callable[..., Any], daemon: Any, reconnect: bool) -> None:
    client = connect(port=daemon.port, reconnect=reconnect)
    client.close()
    for call in (client.ping, lambda: client.status(3)):
        with pytest.raises(PanelLost, match="has been closed"):
            call()
    client.connect()
    client.status(3)
    assert daemon.accept().recv(1) == b""
    assert len(daemon.accept().recv(16)) == 16


@pytest.mark.parametrize("call", [lambda client: client.ping(), lambda client: client.image(0, big_bmp(), fit="unchecked")])
def test_what_is_broken_off_spoils_nothing_that_follows(daemon: Any, call: Callable[[Panel], object]) -> None:
    client = Panel(port=daemon.port, reconnect=True)
    connection = daemon.accept()

    def interrupt() -> None:
        connection.recv(len(PING))  # less than the picture, more of which than the system keeps is never read
        os.kill(os.getpid(), signal.SIGINT)

    thread = threading.Thread(target=interrupt)
    thread.start()
    with pytest.raises(KeyboardInterrupt):
        call(client)
    thread.join()
    assert not client.connected
    client.status(3)
    assert daemon.accept().recv(16).hex() == "0000000c000000150000000300000001"
    client.close()


def test_a_value_out_of_range_sends_nothing(connect: Callable[..., Any], daemon: Any) -> None:
    client = connect(port=daemon.port)
    with pytest.raises(ValueError):
        client.status(32)
    client.close()
    assert daemon.accept().recv(1) == b""


def test_closes_with_its_block(daemon: Any) -> None:
    with Panel(port=daemon.port) as client:
        assert client.connected
    assert not client.connected
    client.close()

    async def use() -> AsyncPanel:
        async with AsyncPanel(port=daemon.port) as awaited:
            assert awaited.connected
        return awaited

    assert not asyncio.run(use()).connected


def test_an_awaited_panel_connects_when_it_is_first_used(daemon: Any) -> None:
    async def use() -> None:
        client = AsyncPanel(port=daemon.port)
        await client.status(3)
        await client.close()

    asyncio.run(use())
    assert len(daemon.accept().makefile("rb").read()) == 16


def test_another_event_loop_finds_the_connection_lost(daemon: Any) -> None:
    client = AsyncPanel(port=daemon.port)
    asyncio.run(client.status(3))
    assert not client.connected
    connection = daemon.accept()
    for _ in range(2):
        with pytest.raises(PanelLost, match=f"the connection to 127.0.0.1:{daemon.port} is lost"):
            asyncio.run(client.status(3))
    assert len(connection.makefile("rb").read()) == 16  # and the daemon has seen the end
    asyncio.run(client.close())


@pytest.mark.parametrize("reconnect", [True, False])
def test_another_event_loop_makes_a_connection_of_its_own(daemon: Any, reconnect: bool) -> None:
    client = AsyncPanel(port=daemon.port, reconnect=reconnect)

    async def use(connects: bool) -> None:
        if connects:
            await client.connect()
        await asyncio.gather(*(client.status(3) for _ in range(3)))

    asyncio.run(use(connects=False))
    asyncio.run(use(connects=not reconnect))
    asyncio.run(client.close())
    assert [len(daemon.accept().makefile("rb").read()) for _ in range(2)] == [48, 48]


def test_an_event_loop_that_runs_keeps_its_panel(daemon: Any) -> None:
    async def use_in_another_thread() -> None:
        async with AsyncPanel(port=daemon.port) as client:
            with pytest.raises(RuntimeError, match="in use in another event loop"):
                await asyncio.get_running_loop().run_in_executor(None, lambda: asyncio.run(client.status(3)))
            await client.status(3)

    asyncio.run(use_in_another_thread())
    assert len(daemon.accept().makefile("rb").read()) == 16


def test_tasks_have_their_turns(daemon: Any) -> None:
    async def use() -> None:
        async with AsyncPanel(port=daemon.port) as client:
            pings = [asyncio.ensure_future(client.ping()) for _ in range(3)]
            connection = daemon.accept()
            connection.setblocking(False)
            for _ in pings:
                received = b""
                while len(received) < len(PING):
                    received += await asyncio.get_running_loop().sock_recv(connection, 1000)
                for _ in range(20):  # the others would have sent theirs meanwhile
                    await asyncio.sleep(0)
                with pytest.raises(BlockingIOError):
                    connection.recv(1)
                assert received == PING
                connection.sendall(REPLY)
            await asyncio.gather(*pings)

    asyncio.run(use())


def test_both_kinds_have_the_same_methods() -> None:
    def methods(kind: type) -> "dict[str, list[str]]":
        public = {name: value for name, value in inspect.getmembers(kind) if not name.startswith("_")}
        return {name: list(inspect.signature(value).parameters) for name, value in public.items() if callable(value)}

    assert methods(Panel) == methods(AsyncPanel)
