# SPDX-License-Identifier: Apache-2.0
"""Starts the simulator on free ports, and ends it."""

import os
import shutil
import subprocess
import tempfile
import time
import weakref
from pathlib import Path
from typing import Dict, Optional, Sequence

from .errors import VirtualPanelError

_PROGRAM = "buttondriver-sim"
_PAUSE = 0.01  # between looks at the ports' file, in seconds
_PATIENCE = 10.0  # with a program that was asked to end, in seconds


def find_simulator(program: Optional[str] = None) -> str:
    """The program: the argument, BUTTONDRIVER_SIM of the environment, or buttondriver-sim of the PATH."""
    wanted = program or os.environ.get("BUTTONDRIVER_SIM") or _PROGRAM
    found = shutil.which(wanted)
    if found is None:
        raise VirtualPanelError(f"{wanted} cannot be run; name it in BUTTONDRIVER_SIM, or install {_PROGRAM}")
    return found


class SimulatorProcess:
    """A simulator that runs until end(), at the latest until the object is gone or Python ends."""

    def __init__(self, program: Optional[str], arguments: Sequence[str], timeout: float) -> None:
        self._folder = tempfile.TemporaryDirectory(prefix="buttondriver-panel-")
        self._output = Path(self._folder.name, "output")
        ports = Path(self._folder.name, "ports")
        command = [find_simulator(program), "--port", "0", "--http", "0", "--ports-file", str(ports), *arguments]
        with open(self._output, "wb") as output:
            self._process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT, start_new_session=True
            )
        self._end = weakref.finalize(self, _end, self._process, self._folder)
        try:
            self.ports = self._read_ports(ports, timeout)
        except BaseException:
            self.end()
            raise

    @property
    def running(self) -> bool:
        """Whether it still does."""
        return self._process.poll() is None

    def output(self) -> str:
        """What it has written to standard output and standard error."""
        return self._output.read_text(errors="replace")

    def end(self) -> None:
        """Ends it, by force if it takes too long. May be called again."""
        self._end()

    def _read_ports(self, file: Path, timeout: float) -> Dict[str, int]:
        deadline = time.monotonic() + timeout
        while not file.exists():  # who finds it finds all of it
            if not self.running:
                raise VirtualPanelError(f"the simulator ended with {self._process.returncode}:\n{self.output()}")
            if time.monotonic() > deadline:
                raise VirtualPanelError(f"the simulator was not there after {timeout} s:\n{self.output()}")
            time.sleep(_PAUSE)
        lines = (line.split("=", 1) for line in file.read_text().splitlines())
        return {name: int(port) for name, port in lines}


def _end(process: "subprocess.Popen[bytes]", folder: "tempfile.TemporaryDirectory[str]") -> None:
    process.terminate()
    try:
        process.wait(_PATIENCE)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
    folder.cleanup()
