# SPDX-License-Identifier: Apache-2.0
"""Runs what stands on a page, from the top to the bottom, in one shell.

    run_page.py PAGE TREE BUILD PACKAGE

PAGE is relative to TREE; BUILD has the programs, PACKAGE is where they are installed.
"""

import os
import re
import shlex
import signal
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import List, Optional

import network
from blocks import Block, read
from scratch import Scratch
from shell import ports_of, script_of

HERE = Path(__file__).resolve().parent


def file_name(block: Block) -> Optional[str]:
    """Of a block that is a file. One of Python begins with its name."""
    if block.mark == "file":
        return block.said.partition(";")[0]
    name = re.match(r"# (\w+\.py)\n", block.text)
    return name[1] if block.language == "python" and name else None


class Script:
    """The page's blocks as one script of bash, and the files beside it."""

    def __init__(self, scratch: Scratch, page: str) -> None:
        self._scratch = scratch
        self._page = page
        self.lines = [f". {shlex.quote(str(HERE / 'session.sh'))}"]
        before = HERE / "before" / (page.replace("/", "-")[: -len(".md")] + ".sh")
        if before.exists():
            self.lines.append(f". {shlex.quote(str(before))} >$outputs/before 2>&1")
        self._printed = scratch.folder / "outputs" / "printed"

    def _step(self, block: Block, text: str) -> str:
        path = self._scratch.folder / "steps" / f"{block.line}-{len(self.lines)}"
        path.write_text(text, encoding="utf-8")
        return shlex.quote(str(path))

    def _check(self, block: Block, interpreter: str, program: str, *arguments: str) -> None:
        words = [interpreter, shlex.quote(str(HERE / program)), self._step(block, block.text), block.place, *arguments]
        self.lines.append(f"{' '.join(words)} >&3 || exit")

    def add(self, block: Block) -> None:
        text = self._scratch.with_places(block.text)
        name = file_name(block)
        if name:
            self.lines.append(f"mkdir -p {shlex.quote(os.path.dirname(name) or '.')}")
            self.lines.append(f"cp {self._step(block, text)} {shlex.quote(name)}")
            command = block.said.partition(";")[2]
            if command:
                step = self._step(block, "\n" * (block.line - 1) + command + "\n")
                self.lines.append(f". {step} >$outputs/printed 2>&1")
        elif block.mark == "printed":
            self._check(block, "python3", "printed.py", "$outputs/printed")
        elif block.language == "sh":
            if any(ports_of(line) for line in text.split("\n") if re.search(r"&(\s+#.*)?$", line)):
                self.lines.append("end_programs")
            self.lines.append(f". {self._step(block, script_of(text, block.line))} >$outputs/printed 2>&1")
        elif block.language == "ini":
            self._check(block, "sh", "ini.sh")
        elif block.language == "hex":
            self._check(block, "python3", "hex.py")

    def run(self) -> int:
        steps = self._scratch.folder / "steps"
        (steps / "all").write_text("\n".join([*self.lines, "end_programs", ""]), encoding="utf-8")
        environment = self._scratch.environment(self._page)
        command = ["bash", "-c", f". {shlex.quote(str(steps / 'all'))} 3>&1"]
        # The programs of a page that fails are ended with its group.
        shell = subprocess.Popen(
            command, cwd=self._scratch.home, env=environment, stdin=subprocess.DEVNULL, start_new_session=True
        )
        try:
            return shell.wait()
        finally:
            try:
                os.killpg(shell.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass


def main(arguments: List[str]) -> int:
    page, tree, build, package = arguments[0], *(Path(name).resolve() for name in arguments[1:4])
    blocks = [block for block in read(tree, page) if block.mark != "not run"]
    if not blocks:
        return 0
    if len(arguments) == 4:
        way_in = network.way_in()
        if not way_in:
            print("needs a network of its own, which unshare does not get here")
            return 0
        return subprocess.run([*way_in, sys.executable, __file__, *arguments, "inside"]).returncode
    network.set_up()
    with tempfile.TemporaryDirectory(prefix="page-") as folder:
        script = Script(Scratch(Path(folder).resolve(), tree, build, package), page)
        for block in blocks:
            script.add(block)
        return script.run()


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
