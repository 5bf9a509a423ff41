# SPDX-License-Identifier: Apache-2.0
"""What the pages name in their texts, and in blocks that are not run, is there: commands, options and scripts.

    check_commands.py TREE PROGRAMS

PROGRAMS: folder of buttonctl and buttondriver-sim.
"""

import os
import re
import subprocess
import sys
from functools import lru_cache
from pathlib import Path
from typing import Iterator, List

from blocks import blocks_of, pages_of
from shell import split_comment

TREE, PROGRAMS = (Path(name) for name in (sys.argv[1:3] if len(sys.argv) == 3 else ("", "")))


@lru_cache(maxsize=None)
def help_of(program: str, *words: str) -> str:
    command = [str(PROGRAMS / program), *words, "--help"]
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True).stdout


def options_missing_in(help_text: str, words: List[str]) -> Iterator[str]:
    # Whatever stands behind "=", and the brackets of a form, is not the option's name.
    names = (re.match(r"\[?(--?[a-z][a-z-]*)", word) for word in words)
    for name in (match[1] for match in names if match):
        if not re.search(rf"(?<![\w-]){name}(?![\w-])", help_text):
            yield f"there is no option {name}"


def faults_of_tool(words: List[str]) -> Iterator[str]:
    general = help_of("buttonctl")
    commands = re.findall(r"^  ([a-z]+)\b", general, re.M)
    # The value of a general option before the command is none.
    place = next((i for i, word in enumerate(words) if word in commands), None)
    first = next((word for word in words if not word.startswith(("-", "["))), "")
    if place is None:
        if re.match(r"[a-z]+$", first):
            yield f"there is no command {first}"
        yield from options_missing_in(general, words)
    else:
        yield from options_missing_in(general + help_of("buttonctl", words[place]), words)


def faults_of_script(script: str, words: List[str]) -> Iterator[str]:
    path = TREE / script
    if not path.is_file() or not os.access(path, os.X_OK):
        yield f"there is no script {script}"
        return
    text = path.read_text(encoding="utf-8")
    yield from options_missing_in(text, words)
    for word in words:
        is_known = not re.match(r"[a-z]+$", word) or re.search(rf"\b{word}\b", text)
        if not is_known and not list((TREE / "fuzz").rglob(f"{word}_fuzzer.cpp")):
            yield f"{script} knows no {word}"


def faults_of(command: str) -> Iterator[str]:
    words = re.sub(r"[;|&<>].*", "", command).split()
    name = words[0].split("/")[-1]
    if name == "buttonctl":
        yield from faults_of_tool(words[1:])
    elif name == "buttondriver-sim":
        yield from options_missing_in(help_of("buttondriver-sim"), words[1:])
    else:
        yield from faults_of_script(words[0], words[1:])


def commands_of(page: str, text: str) -> Iterator["tuple[int, str]"]:
    """Their lines, and the commands."""
    start = r"(?:(?:[\w./-]+/)?(?:buttonctl|buttondriver-sim)|scripts/[\w-]+)(?=\s|$)"
    for block in blocks_of(page, text):
        for number, line in enumerate(block.text.split("\n") if block.language == "sh" else []):
            if re.match(start, line) and block.mark == "not run":
                yield block.line + number, split_comment(line)[0]
    prose = re.sub(r"^( *)```.*?^\1```", lambda block: "\n" * block[0].count("\n"), text, flags=re.M | re.S)
    for code in re.finditer(r"`([^`]+)`", prose):
        if re.match(start, code[1]):
            yield prose[: code.start()].count("\n") + 1, code[1]


def main() -> int:
    count = found = 0
    for page in pages_of(TREE):
        for line, command in commands_of(page, (TREE / page).read_text(encoding="utf-8")):
            count += 1
            for fault in faults_of(command):
                print(f"FAILED: {page}:{line}: {command}: {fault}")
                found += 1
    print(f"{count} commands")
    return 1 if found or count < 50 else 0


if __name__ == "__main__":
    sys.exit(main())
