# SPDX-License-Identifier: Apache-2.0
"""The simulator's start and end, and what is read from it."""

import os
import signal
import stat
import subprocess
import sys
from pathlib import Path
from typing import Callable, List

import pytest

from buttondriver import Bitmap, Panel, PanelError, PanelTimeout, VirtualPanel, VirtualPanelError
from buttondriver.simulator_process import find_simulator


def program(folder: Path, script: str) -> str:
    """A program in the simulator's place."""
    path = folder / "simulator"
    path.write_text(f"#!/bin/sh\n{script}\n")
    path.chmod(path.stat().st_mode | stat.S_IXUSR)
    return str(path)


def test_finds_the_program(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    other = program(tmp_path, "")
    monkeypatch.setenv("PATH", str(tmp_path))
    monkeypatch.delenv("BUTTONDRIVER_SIM", raising=False)
    with pytest.raises(VirtualPanelError, match="buttondriver-sim cannot be run"):
        find_simulator()
    (tmp_path / "simulator").rename(tmp_path / "buttondriver-sim")
    assert find_simulator() == str(tmp_path / "buttondriver-sim")
    monkeypatch.setenv("BUTTONDRIVER_SIM", program(tmp_path, ""))
    assert find_simulator() == other
    assert find_simulator("buttondriver-sim") == str(tmp_path / "buttondriver-sim")


def test_tells_why_it_does_not_start(tmp_path: Path) -> None:
    with pytest.raises(VirtualPanelError, match=r"\Ano room \(the simulator ended with status 3\)\nthe walls$"):
        VirtualPanel(program(tmp_path, "echo the walls; echo no room; exit 3"))
    with pytest.raises(VirtualPanelError, match="was not there after 0.1 s"):
        VirtualPanel(program(tmp_path, "exec sleep 600"), timeout=0.1)


def test_the_reason_for_which_it_does_not_start_comes_first(panel: VirtualPanel) -> None:
    with pytest.raises(VirtualPanelError, match=rf"\Aport {panel.port} is taken by buttondriver-sim \(pid "):
        VirtualPanel(arguments=["--port", str(panel.port)])


def test_ends_with_its_block() -> None:
    with VirtualPanel() as panel:
        client = panel.connect()
        pid = panel._process._process.pid
        os.kill(pid, 0)
    with pytest.raises(ProcessLookupError):
        os.kill(pid, 0)
    assert client._socket is None
    panel.close()


def test_ends_with_its_object() -> None:
    panel = VirtualPanel()
    pid = panel._process._process.pid
    del panel
    with pytest.raises(ProcessLookupError):
        os.kill(pid, 0)


def test_ends_with_python() -> None:
    code = "import buttondriver; panel = buttondriver.VirtualPanel(); print(panel._process._process.pid); raise SystemExit"
    result = subprocess.run([sys.executable, "-c", code], stdout=subprocess.PIPE, check=True)
    with pytest.raises(ProcessLookupError):
        os.kill(int(result.stdout), 0)


def test_tells_that_the_program_has_ended() -> None:
    with VirtualPanel() as panel:
        panel.connect().status(3)
        os.kill(panel._process._process.pid, signal.SIGKILL)
        with pytest.raises(VirtualPanelError, match="(?s)was ended by SIGKILL; it wrote last:.*listening on port"):
            panel.state()
        panel.restart()
        os.kill(panel._process._process.pid, signal.SIGTERM)
        panel._process._process.wait()
        with pytest.raises(VirtualPanelError, match="ended with status 0"):
            panel.connect()


def test_a_closed_one_says_so() -> None:
    with VirtualPanel() as panel:
        pass
    looks: "List[Callable[[], object]]" = [
        panel.connect, panel.reset, panel.state, lambda: panel.screen(0), lambda: panel.log, lambda: panel.messages
    ]  # fmt: skip
    for look in looks:
        with pytest.raises(VirtualPanelError, match="has been closed"):
            look()
    assert panel.fault is None


def test_arguments_reach_the_program() -> None:
    with VirtualPanel(arguments=["--font", "10x20"]) as panel:
        assert panel.state()["font"]["height"] == 20


def test_reads_texts_from_the_pixels(panel: VirtualPanel) -> None:
    client = panel.connect()
    client.text(0, 0, "Hello, panel and world")
    client.sub_text(1, 1, 3, "12.5", text_colour=0xFF0000)
    assert panel.screen(0).text == ["Hello, panel and"]
    assert panel.screen(0).sent == ["Hello, panel and world"]
    assert panel.screen(1).text == ["", "   12.5"]
    client.blackout(1)
    assert panel.screen(1).text == []


def test_asks_once_whether_all_that_was_sent_is_accepted(panel: VirtualPanel) -> None:
    client = panel.connect()
    client.text(0, 0, "Hello")
    counts = [panel.state()["counters"]["messages"] for _ in range(2)]
    assert counts == [2, 2]  # the text and one ping


@pytest.mark.parametrize("end", [lambda panel, client: client.close(), lambda panel, client: panel.disconnect()])
def test_what_a_closed_connection_has_sent_is_accepted(panel: VirtualPanel, end: Callable[..., None]) -> None:
    client = panel.connect()
    for screen in range(3):
        client.image(screen, Bitmap(128, 128, bytes(3 * 128 * 128)))
    client.led(5)
    end(panel, client)
    state = panel.state()
    assert state["counters"]["messages"] == 5  # and one ping, before it was closed
    assert state["button_leds"][5]
    panel.reset()
    assert panel.messages == []


def test_a_connection_ends_also_when_its_simulator_has() -> None:
    with VirtualPanel() as panel:
        client = panel.connect()
        client.status(3)
        panel._process.end()
        client.close()
        assert not client.connected


def test_lists_messages_and_the_log(panel: VirtualPanel) -> None:
    client = panel.connect()
    client.ping()
    client.text(0, 1, "Hello")
    client.toggle(1)
    names = [message.name for message in panel.messages]
    assert names == ["BMS_TFTTextLine", "BMS_SetLEDToggleIndicator"]
    assert panel.messages[0].text == "Hello"
    assert panel.messages[0].fields["line_id"] == 1
    assert panel.messages[1].number == panel.messages[0].number + 1
    client.upload(23, bytes(120))
    assert any(line.startswith("buttondriver:image uploaded") for line in panel.log)


def test_resets(panel: VirtualPanel) -> None:
    client = panel.connect()
    client.text(0, 0, "Hello")
    client.status(31)
    client.led(5, blink_ms=20)
    panel.reset()
    assert (panel.screen(0).text, panel.status(31), panel.blinking(5), panel.messages) == ([], False, None, [])


def test_waits_for_other_connections(panel: VirtualPanel) -> None:
    with Panel(port=panel.port) as other:
        other.led(5, blink_ms=20)
    for lit in (True, False, True):
        panel.wait_until(lambda panel: panel.led(5) == lit)
    with pytest.raises(PanelTimeout, match='not true after 0.01 s; the panel shows {"blinking": .*"button": 5'):
        panel.wait_until(lambda panel: False, timeout=0.01)


def test_writes_a_picture_of_the_panel(panel: VirtualPanel, tmp_path: Path) -> None:
    panel.screenshot(tmp_path / "panel.png")
    picture = (tmp_path / "panel.png").read_bytes()
    assert picture.startswith(b"\x89PNG") and int.from_bytes(picture[16:20], "big") > 3 * 128


@pytest.mark.parametrize("name, beyond", [("screen", 3), ("led", 32), ("blinking", 32), ("status", 32), ("toggle", 2)])
def test_refuses_what_is_not_there(panel: VirtualPanel, name: str, beyond: int) -> None:
    getattr(panel, name)(beyond - 1)
    for number in (-1, beyond):
        with pytest.raises(ValueError, match=f": {number} is out of its range, 0 to {beyond - 1}"):
            getattr(panel, name)(number)


def test_tells_an_answer_that_is_no_success(panel: VirtualPanel) -> None:
    with pytest.raises(PanelError, match="GET /nothing: 404"):
        panel._get("nothing")
