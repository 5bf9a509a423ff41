# SPDX-License-Identifier: Apache-2.0
"""The folder in which the commands of a page are run: the tree as far as they need it, and the build's programs."""

import os
import re
import shutil
import sys
from pathlib import Path
from typing import Dict

COPIED = ("examples", "python")
# What a build leaves in the tree, and what runs of the examples leave.
LEFT_OVER = shutil.ignore_patterns("__pycache__", "failures", "results.xml", "*.egg-info", "build")


class Scratch:
    def __init__(self, folder: Path, tree: Path, build: Path, package: Path) -> None:
        self.folder = folder
        self.home = folder / "tree"
        for name in COPIED:
            shutil.copytree(tree / name, self.home / name, ignore=LEFT_OVER)
        for preset in ("qt6", "release"):
            (self.home / "build" / preset).mkdir(parents=True)
            for name in ("bin", "lib", "share"):
                (self.home / "build" / preset / name).symlink_to(build / name)
        for name in ("outputs", "steps", "tmp", "user"):
            (folder / name).mkdir()
        os.mkfifo(folder / "outputs" / "nothing")
        # Places of the machine, and where they are for the test.
        self._places = {
            "/usr/lib/x86_64-linux-gnu/buttondriver": f"{build}/lib/buttondriver",
            "/opt/buttondriver": str(package),
            "/tmp": f"{folder}/tmp",
        }
        self._tree, self._build = tree, build

    def with_places(self, text: str) -> str:
        # All at once: what stands in the place of one may lie in another.
        return re.sub(rf"(?<![\w./-])({'|'.join(self._places)})(?![\w.-])", lambda place: self._places[place[1]], text)

    def environment(self, page: str) -> Dict[str, str]:
        """That of a reader who has installed the programs; nothing else that the caller has set for them."""
        kept = {name: value for name, value in os.environ.items() if not name.startswith(("BUTTON", "PYTEST", "CTEST"))}
        # A broker is in /usr/sbin, which is not in everybody's PATH.
        path = f"{self._build}/bin:{Path(sys.executable).parent}:{os.environ['PATH']}:/usr/sbin"
        return dict(
            kept, PATH=path, HOME=str(self.folder / "user"), TMPDIR=str(self.folder / "tmp"), LC_ALL="C.UTF-8",
            outputs=str(self.folder / "outputs"),
            page=page, page_file=str(self._tree / page), PYTHONDONTWRITEBYTECODE="1",
        )
