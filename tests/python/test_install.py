# SPDX-License-Identifier: Apache-2.0
"""The package, installed by pip in an environment of its own, without a network."""

import importlib.util
import os
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]


def run(*command: str) -> str:
    ours = ("PYTHONPATH", "PYTEST_DISABLE_PLUGIN_AUTOLOAD")
    environment = {name: value for name, value in os.environ.items() if name not in ours}
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, env=environment)
    assert result.returncode == 0, result.stdout
    return result.stdout


@pytest.mark.parametrize("options", [[], ["--editable"]], ids=["copy", "editable"])
def test_pip_installs_it_without_a_network(tmp_path: Path, options: "list[str]") -> None:
    for module in ("pip", "venv"):
        if importlib.util.find_spec(module) is None:
            pytest.skip(f"needs python3-{module}")
    run(sys.executable, "-m", "venv", "--without-pip", "--system-site-packages", str(tmp_path / "environment"))
    python = str(tmp_path / "environment" / "bin" / "python3")
    sources = tmp_path / "python"
    shutil.copytree(ROOT / "python", sources, ignore=shutil.ignore_patterns("__pycache__"))
    before = sorted(sources.rglob("*"))
    run(python, "-m", "pip", "install", "--no-index", "--disable-pip-version-check", *options, str(sources))
    left = [path for path in sorted(sources.rglob("*")) if "__pycache__" not in path.parts]
    assert left == before

    (tmp_path / "test_it.py").write_text(
        "import buttondriver\n"
        "def test_it(panel):\n"
        f"    assert buttondriver.__file__.startswith({str(sources if options else tmp_path / 'environment')!r})\n"
        "    panel.connect().text(0, 0, 'Hello')\n"
        "    assert panel.screen(0).text == ['Hello']\n"
    )
    assert "1 passed" in run(python, "-m", "pytest", "-p", "no:cacheprovider", str(tmp_path / "test_it.py"))
    files = run(python, "-m", "pip", "show", "--files", "buttondriver")
    assert options or ("buttondriver/py.typed" in files and "buttondriver/catalogue.py" in files)
    run(python, "-m", "pip", "uninstall", "--yes", "buttondriver")
