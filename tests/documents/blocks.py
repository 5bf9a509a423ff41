# SPDX-License-Identifier: Apache-2.0
"""The fenced blocks of a page of Markdown, and what is said about them.

A comment directly above a block says how it is treated:

    <!-- not run: REASON -->    nothing is done with it; tests named in the reason must exist
    <!-- file: NAME -->         it is a file of this name, for the blocks after it; so with "; COMMAND" behind it, which
                                is run, and must not fail
    <!-- printed -->            the shell block before prints these lines, one after the other

Without one, a block is run as its language says.
"""

import re
from dataclasses import dataclass
from pathlib import Path
from typing import List, Optional

# What is done with a block that has no comment above it.
RUN = {"sh", "python", "json", "ini", "hex"}
# What takes a comment.
TOLD = {"", "text", "c", "cmake", "yaml", "mermaid", "markdown"}


@dataclass
class Block:
    page: str
    line: int  # of its first line of content, from 1 on
    language: str
    text: str
    mark: Optional[str]  # "not run", "file" or "printed"
    said: str  # what stands behind the mark

    @property
    def place(self) -> str:
        return f"{self.page}:{self.line}"


def mark_above(lines: List[str]) -> "tuple[Optional[str], str]":
    """The comment that ends the lines before a block, which may have several."""
    if not lines or not lines[-1].rstrip().endswith("-->"):
        return None, ""
    comment = re.search(r"<!--((?:(?!<!--|-->).)*)-->\s*$", "\n".join(lines), re.S)
    match = comment and re.match(r"\s*(not run|file|printed)\b:?\s*(.*?)\s*$", comment[1], re.S)
    return (match[1], " ".join(match[2].split())) if match else (None, "")


def blocks_of(page: str, text: str) -> List[Block]:
    blocks = []
    lines = text.split("\n")
    number = 0
    while number < len(lines):
        fence = re.match(r" *(`{3,}|~{3,})\s*(\S*)", lines[number])
        if not fence:
            number += 1
            continue
        mark, said = mark_above(lines[:number])
        first = number = number + 1
        while number < len(lines) and not lines[number].strip().startswith(fence[1]):
            number += 1
        content = "".join(line + "\n" for line in lines[first:number])
        blocks.append(Block(page, first + 1, fence[2], content, mark, said))
        number += 1
    return blocks


def pages_of(tree: Path) -> List[str]:
    """Names of all pages that are checked, relative to the tree."""
    found = [tree / "README.md", tree / "CONTRIBUTING.md"]
    for folder in ("docs", "examples", "bench", "fuzz"):
        found += sorted((tree / folder).rglob("*.md"))
    return [str(page.relative_to(tree)) for page in found]


def read(tree: Path, page: str) -> List[Block]:
    return blocks_of(page, (tree / page).read_text(encoding="utf-8"))
