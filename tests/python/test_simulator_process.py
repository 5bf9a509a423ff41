# SPDX-License-Identifier: Apache-2.0
"""That nothing of a simulator stays behind, however Python ends."""

import gc
import os
import select
import signal
import subprocess
import sys
import tempfile
import warnings
from pathlib import Path
from typing import Optional

import pytest

from buttondriver import VirtualPanel, VirtualPanelError

PATIENCE = 60_000  # milliseconds, far more than it takes

# Tells the process id of its simulator. "--font" lets that have a folder of its own.
STARTS = """
import os, signal, sys
from buttondriver import VirtualPanel
panel = VirtualPanel(arguments=["--font", "10x20"])
panel.connect().status(3)
print(panel._process._process.pid, flush=True)
"""
WAITS = "sys.stdin.read()"
# The fork goes on until its standard input ends.
FORKS = """
if os.fork() == 0:
    assert panel.status(3)
    print("looked", flush=True)
    sys.stdin.read()
    sys.exit()
"""


class Started:
    """A Python that has started a simulator, with a folder for what is temporary."""

    def __init__(self, folder: Path, code: str) -> None:
        environment = {**os.environ, "TMPDIR": str(folder)}
        self.python = subprocess.Popen(
            [sys.executable, "-c", STARTS + code], stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=environment
        )
        assert self.python.stdin is not None and self.python.stdout is not None
        self.input, self.output = self.python.stdin, self.python.stdout
        self.simulator = os.pidfd_open(int(self.output.readline()))

    def simulator_has_ended(self, patience: int = PATIENCE) -> bool:
        poll = select.poll()
        poll.register(self.simulator, select.POLLIN)
        return poll.poll(patience) != []

    def close(self) -> None:
        self.input.close()
        self.python.wait()
        self.output.close()
        os.close(self.simulator)


@pytest.mark.parametrize("how", [signal.SIGKILL, signal.SIGHUP, signal.SIGTERM, None], ids=str)
def test_a_simulator_and_its_folder_go_however_python_ends(tmp_path: Path, how: Optional[signal.Signals]) -> None:
    started = Started(tmp_path, WAITS if how else "sys.stdin.read(); os._exit(3)")
    if how:
        started.python.send_signal(how)
    else:
        started.input.close()
    assert started.simulator_has_ended()
    assert list(tmp_path.iterdir()) == []
    started.close()


def test_a_fork_does_not_keep_a_simulator(tmp_path: Path) -> None:
    started = Started(tmp_path, FORKS + "signal.pause()")
    assert started.output.readline() == b"looked\n"
    started.python.kill()
    assert started.simulator_has_ended()
    started.close()


def test_a_fork_does_not_end_a_simulator(tmp_path: Path) -> None:
    started = Started(tmp_path, FORKS + 'os.wait(); assert panel.status(3); print("still there", flush=True)')
    assert started.output.readline() == b"looked\n"
    started.input.close()
    assert started.output.readline() == b"still there\n"
    assert started.simulator_has_ended()
    started.close()


def fault_of(program: Path) -> str:
    with pytest.raises(VirtualPanelError) as fault:
        VirtualPanel(str(program))
    return str(fault.value)


@pytest.mark.parametrize(
    "content, reason",
    [
        (None, "simulator cannot be run; name it in BUTTONDRIVER_SIM"),
        ("\0no program", "simulator cannot be run: Exec format error"),
        ("#!/nowhere/interpreter\n", "simulator cannot be run: No such file or directory"),
        ("#!/bin/sh\necho no room\nexit 3\n", "no room (the simulator ended with status 3)"),
        ("#!/bin/sh\nexit 4\n", "no reason told (the simulator ended with status 4)"),
        ("#!/bin/sh\nkill -9 $$\n", "no reason told (the simulator was ended by SIGKILL)"),
    ],
)
def test_one_that_does_not_start_is_one_error_and_leaves_nothing(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch, content: Optional[str], reason: str
) -> None:
    program = tmp_path / "simulator"
    if content is not None:
        program.write_text(content)
        program.chmod(0o755)
    temporary = tmp_path / "temporary"
    temporary.mkdir()
    monkeypatch.setattr(tempfile, "tempdir", str(temporary))
    with warnings.catch_warnings(record=True) as told:
        warnings.simplefilter("always")
        assert reason in fault_of(program)
        gc.collect()
    assert [str(warning.message) for warning in told] == []
    assert list(temporary.iterdir()) == []
