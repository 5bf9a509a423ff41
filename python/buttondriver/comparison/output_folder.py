# SPDX-License-Identifier: Apache-2.0
"""Where the pictures of a test's failure are kept."""

import hashlib
import os
from pathlib import Path

_LONGEST = 200  # bytes of a name; file systems take 255


def folder_of_test(node_id: str, file: Path, root: Path) -> Path:
    """A relative path that no other test of a run has: the folders and the file of the test, then its name.

    `file` and `root`, the root of the run, are absolute. What a name of a file should not have is replaced; then a part
    of a hash follows, so that two tests never share a folder.
    """
    # Not the file that the node's identity has: pytest shortens those that lie outside of the root until they are alike.
    place = Path(os.path.relpath(file, root))
    name = node_id.partition("::")[2] or node_id
    is_inside = ".." not in place.parts
    folder = place.with_suffix("") if place.suffix == ".py" else place
    return Path(folder if is_inside else folder.name) / _file_name(name, f"{place.as_posix()}::{name}", is_inside)


def _file_name(name: str, identity: str, is_enough: bool) -> str:
    words = name.split("::")
    plain = ".".join("".join(letter if letter.isalnum() or letter in "-_" else "-" for letter in word) for word in words)
    short = plain.encode(errors="replace")[:_LONGEST].decode(errors="ignore")
    if is_enough and short.split(".") == words:
        return short
    return f"{short.rstrip('-.')}-{hashlib.sha256(identity.encode(errors='backslashreplace')).hexdigest()[:8]}"
