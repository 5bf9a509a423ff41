# SPDX-License-Identifier: Apache-2.0
"""The table of docs/python.md, and the example. What stands in its blocks is run in tests/documents/."""

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


def test_names_every_method_of_a_panel() -> None:
    named = set(re.findall(r"^\| `(\w+)\(.*?\| \[`(\w+)`\]\(protocol\.md#", PAGE, re.M))
    methods = {name: getattr(getattr(Panel, name), "message", None) for name in dir(Panel)}
    assert named == {(name, message) for name, message in methods.items() if message}


def test_the_example_passes(tmp_path: Path) -> None:
    shutil.copytree(ROOT / "examples" / "11-pytest", tmp_path / "example")
    output = run("python3 -m pytest -q", tmp_path / "example")
    assert "3 passed" in output, output
