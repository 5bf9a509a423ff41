# SPDX-License-Identifier: Apache-2.0
"""Nothing stands on a page that nobody looks at: each block is run, or says why not.

    check_pages.py TREE BUILD PAGE...

PAGE: those of TREE that have a test in BUILD which runs them.
"""

import json
import re
import sys
from pathlib import Path
from typing import Iterator, List, Optional

from blocks import RUN, TOLD, Block, pages_of, read


class NamedTests:
    """Tests as reasons name them: `ButtonTest.is_set`, `package.installs`, `scripts/test NAME`."""

    def __init__(self, tree: Path, build: Path) -> None:
        self._sources = "".join(file.read_text(encoding="utf-8") for file in (tree / "tests").rglob("*_test.cpp"))
        lists = (build / "tests").rglob("CTestTestfile.cmake")
        # Those of builds for another machine are not in this one.
        rules = "".join(file.read_text(encoding="utf-8") for file in (tree / "tests").rglob("CMakeLists.txt"))
        self._added = set(re.findall(r"\bNAME ([\w.-]+)", rules))
        for file in lists:
            self._added |= set(re.findall(r"^add_test\(\[*=*\[?\"?([\w.-]+)", file.read_text(encoding="utf-8"), re.M))
        usage = (tree / "scripts" / "test").read_text(encoding="utf-8")
        self._parts = set(re.search(r"for name in .*?\n.*?\n *([\w |]+)\) ;;", usage)[1].split(" | "))  # type: ignore

    def has(self, name: str) -> bool:
        if name.startswith("scripts/test "):
            return name.split(" ", 1)[1] in self._parts
        suite, _, test = name.partition(".")
        return name in self._added or bool(re.search(rf"\bTEST(?:_F|_P)?\({suite},\s*{test}\)", self._sources))


def fault_of(block: Block, before: Optional[Block], tests: NamedTests) -> Iterator[str]:
    if block.language not in RUN | TOLD:
        yield f"unknown language: {block.language}"
    if block.mark == "not run":
        if not re.search(r"[a-z]{2}", re.sub(r"`.*?`", "", block.said)) and not re.search(r"`.*?`", block.said):
            yield "it is not run, and no reason is given"
        yield from (f"there is no test {name}" for name in re.findall(r"`(.*?)`", block.said) if not tests.has(name))
    elif block.mark == "file":
        if not re.match(r"[\w./-]+(;.+)?$", block.said):
            yield "it is a file without a name"
    elif block.mark == "printed":
        if not before or before.language != "sh" or before.mark:
            yield "what prints it does not stand before it"
    elif block.language in TOLD:
        yield "it is not run, and does not say why"
    elif block.language == "python" and not re.match(r"# \w+\.py\n", block.text):
        yield "it does not begin with the name of its file"
    elif block.language == "json":
        try:
            json.loads(block.text)
        except ValueError as fault:
            yield str(fault)


def faults(tree: Path, build: Path, tested: List[str]) -> Iterator[str]:
    tests = NamedTests(tree, build)
    for page in pages_of(tree):
        before = None
        blocks = read(tree, page)
        for block in blocks:
            yield from (f"{block.place}: {fault}" for fault in fault_of(block, before, tests))
            before = block
        if any(block.mark != "not run" for block in blocks) and page not in tested:
            yield f"{page}: no test runs it; configure again"


if __name__ == "__main__":
    found = list(faults(Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3:]))
    print("".join(f"FAILED: {fault}\n" for fault in found), end="")
    sys.exit(1 if found else 0)
