# SPDX-License-Identifier: Apache-2.0
"""docs/python.md, done as it says, and the example.

A block of Python begins with the name of its file. A line of shell that ends with "# ..." is run, and its output has
what stands there.
"""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from buttondriver import Panel

ROOT = Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs" / "python.md").read_text()


def run(command: str, folder: Path) -> str:
    environment = dict(os.environ, PYTEST_PLUGINS="buttondriver.pytest_plugin", PYTEST_ADDOPTS="-p no:cacheprovider")
    environment["PATH"] = f"{Path(sys.executable).parent}:{os.environ['PATH']}"
    result = subprocess.run(
        ["sh", "-c", command], cwd=folder, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True
    )
    return result.stdout


def test_does_what_the_page_says(tmp_path: Path) -> None:
    commands = 0
    for language, block in re.findall(r"^```(\w+)\n(.*?)^```$", PAGE.partition("## A test that")[2], re.M | re.S):
        if language == "python":
            name = re.match(r"# (\w+\.py)\n", block)
            assert name, block
            (tmp_path / name[1]).write_text(block)
            continue
        for line in block.splitlines():
            command, _, expected = line.partition("     # ")
            output = run(command, tmp_path)
            assert expected.strip() and expected.strip() in output, f"{line}\n{output}"
            commands += 1
    assert commands == 8


def test_names_every_method_of_a_panel() -> None:
    named = set(re.findall(r"^\| `(\w+)\(.*?\| \[`(\w+)`\]\(protocol\.md#", PAGE, re.M))
    methods = {name: getattr(getattr(Panel, name), "message", None) for name in dir(Panel)}
    assert named == {(name, message) for name, message in methods.items() if message}


def test_the_example_passes(tmp_path: Path) -> None:
    shutil.copytree(ROOT / "examples" / "11-pytest", tmp_path / "example")
    output = run("python3 -m pytest -q", tmp_path / "example")
    assert "3 passed" in output, output
