# SPDX-License-Identifier: Apache-2.0
"""Starts the simulator on free ports, and ends it."""

import os
import shutil
import signal
import subprocess
import tempfile
import time
import weakref
from pathlib import Path
from typing import IO, Dict, Optional, Sequence

from .errors import VirtualPanelError

_PROGRAM = "buttondriver-sim"
_PAUSE = 0.01  # between looks at the ports' file, in seconds
_PATIENCE = 10.0  # with a program that was asked to end, in seconds
_LAST_LINES = 20  # of its output, in an error


def find_simulator(program: Optional[str] = None) -> str:
    """The program: the argument, BUTTONDRIVER_SIM of the environment, or buttondriver-sim of the PATH."""
    wanted = program or os.environ.get("BUTTONDRIVER_SIM") or _PROGRAM
    found = shutil.which(wanted)
    if found is None:
        raise VirtualPanelError(f"{wanted} cannot be run; name it in BUTTONDRIVER_SIM, or install {_PROGRAM}")
    return found


class SimulatorProcess:
    """A simulator that runs until end(), at the latest until the object is gone or Python ends, however that ends.

    For the last of these, its standard input is a pipe from here. A fork of this process has no part in it.
    """

    def __init__(self, program: Optional[str], arguments: Sequence[str], timeout: float) -> None:
        found = find_simulator(program)
        # Without a name in any folder, so that nothing of it stays behind.
        self._is_of_a_fork = False
        self._output = tempfile.TemporaryFile(prefix="buttondriver-panel-")
        # This folder is needed until the ports are read.
        with tempfile.TemporaryDirectory(prefix="buttondriver-panel-") as folder:
            ports = Path(folder, "ports")
            options = ["--port", "0", "--http", "0", "--ports-file", str(ports), "--until-input-ends"]
            self._process = _start([found, *options, *arguments], self._output)
            self._end = weakref.finalize(self, _end, self._process, self._output)
            _processes.add(self)
            try:
                self.ports = self._read_ports(ports, timeout)
            except BaseException:
                self.end()
                raise

    @property
    def running(self) -> bool:
        """Whether it still does; in a fork, which cannot know, always."""
        return self._is_of_a_fork or self._process.poll() is None

    def ends_within(self, seconds: float) -> bool:
        """Whether it ends by then; returns as soon as it does."""
        if self._is_of_a_fork:
            return False
        try:
            self._process.wait(seconds)
        except subprocess.TimeoutExpired:
            return False
        return True

    def output(self) -> str:
        """What it has written to standard output and standard error."""
        size = os.fstat(self._output.fileno()).st_size
        # At a place, because it writes with the same one.
        return os.pread(self._output.fileno(), size, 0).decode(errors="replace")

    def how_it_ended(self) -> str:
        """Its exit status or signal, and the last lines of its output."""
        lines = self.output().splitlines()[-_LAST_LINES:]
        return "\n".join([f"the simulator {_ending(self._process.returncode)}; it wrote last:", *lines])

    def end(self) -> None:
        """Ends it, by force if it takes too long. May be called again."""
        self._end()

    def leave(self) -> None:
        """In a fork of the process that started it: lets go of it."""
        self._is_of_a_fork = True
        self._end.detach()
        assert self._process.stdin is not None
        self._process.stdin.close()

    def _read_ports(self, file: Path, timeout: float) -> Dict[str, int]:
        deadline = time.monotonic() + timeout
        while not file.exists():  # who finds it finds all of it
            if not self.running:
                raise VirtualPanelError(self._why_not_started())
            if time.monotonic() > deadline:
                raise VirtualPanelError(f"the simulator was not there after {timeout} s:\n{self.output()}")
            time.sleep(_PAUSE)
        lines = (line.split("=", 1) for line in file.read_text().splitlines())
        return {name: int(port) for name, port in lines}

    def _why_not_started(self) -> str:
        """The reason first, which is the last that it wrote: a line is all that some show of an error."""
        *lines, reason = self.output().splitlines() or ["no reason told"]
        reason = reason[len(_PROGRAM) + 2 :] if reason.startswith(f"{_PROGRAM}: ") else reason
        return "\n".join([f"{reason} (the simulator {_ending(self._process.returncode)})", *lines])


_processes: "weakref.WeakSet[SimulatorProcess]" = weakref.WeakSet()


def _leave_all() -> None:
    for process in list(_processes):
        process.leave()
    _processes.clear()


os.register_at_fork(after_in_child=_leave_all)


def _start(command: Sequence[str], output: IO[bytes]) -> "subprocess.Popen[bytes]":
    try:
        # A session of its own: Ctrl-C is for the program that uses it, and that may still look at the panel.
        return subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=output, stderr=subprocess.STDOUT, start_new_session=True
        )
    except BaseException as error:
        output.close()
        if isinstance(error, OSError):
            raise VirtualPanelError(f"{command[0]} cannot be run: {error.strerror}") from error
        raise


def _end(process: "subprocess.Popen[bytes]", output: IO[bytes]) -> None:
    process.terminate()
    try:
        process.wait(_PATIENCE)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
    finally:
        # Afterwards, so that it does not take both for two requests.
        assert process.stdin is not None
        process.stdin.close()
        output.close()


def _ending(status: int) -> str:
    if status >= 0:
        return f"ended with status {status}"
    try:
        return f"was ended by {signal.Signals(-status).name}"
    except ValueError:
        return f"was ended by signal {-status}"
