# SPDX-License-Identifier: Apache-2.0
"""Makes of a page's shell block what bash runs: the same lines, at the same numbers, with what a reader does beside.

    PROGRAM &                       waits until the program listens, as a reader does who reads what it prints;
                                    where it listens nowhere, it must not have failed in the end
    COMMAND    # prints TEXT        what is printed has TEXT
    COMMAND    # fails              the status is not 0
    COMMAND    # fails, prints TEXT
    buttonctl record, watch, and mosquitto_sub
                                    ends with ctrl-C, once it has printed something
"""

import re
from typing import List

COMMENT = re.compile(r"(?:^|\s)\s*#\s+(.*)$")
ENDLESS = re.compile(r"\s*(buttonctl (record\b|watch\b(?!.*--once))|mosquitto_sub\b(?!.* -C ))")


def split_comment(line: str) -> "tuple[str, str]":
    """A line without its comment, and the comment."""
    for match in re.finditer(r"(?:^|\s+)#\s+(.*)$", line):
        before = line[: match.start()]
        if before.count("'") % 2 == 0 and before.count('"') % 2 == 0:
            return before, match[1].strip()
    return line, ""


def ports_of(command: str) -> List[int]:
    """Where a program that is started in the background will listen."""
    port = re.search(r"(?:--port[= ]|map '' )(\d+)", command)
    page = re.search(r"--http[= ](\d+)", command)
    broker = re.match(r"mosquitto -p (\d+)", command)
    if broker:
        return [int(broker[1])]
    daemon = [int(port[1]) if port else 3003]
    if "buttondriver-sim" not in command:
        return daemon if re.search(r"\bbuttondriver map\b", command) else []
    return ([] if "--device" in command else daemon) + [int(page[1]) if page else 8080]


def statement(command: str, comment: str, line: int) -> str:
    """What bash runs for a command without the comment behind it; it has as many lines as the command."""
    told = re.match(r"(fails)?(?:, )?(?:prints (.*))?$", comment)
    fails, text = (told[1], told[2]) if comment and told else (None, None)
    if command.rstrip().endswith("&"):
        ports = " ".join(str(port) for port in ports_of(command))
        return f"{command} await_ports {ports}" if ports else f"{command} remember"
    if ENDLESS.match(command):
        return f"until_it_prints {command.strip()}"
    if text is None:
        return f"if {command}; then succeeded; fi" if fails else command
    output = f'>"$outputs/{line}" 2>&1'
    start = f"if {{ {command}; }} {output}; then succeeded; fi" if fails else f"{{ {command}; }} {output}"
    return f"{start}; has_printed {line} {quoted(text)}"


def quoted(text: str) -> str:
    return "'" + text.replace("'", "'\\''") + "'"


def script_of(text: str, first_line: int) -> str:
    """The block whose content begins at this line of its page."""
    statements = [""] * (first_line - 1)
    lines = text.split("\n")
    while lines:
        parts = [lines.pop(0)]
        while split_comment(parts[-1])[0].endswith("\\") and lines:
            parts.append(lines.pop(0))
        parts[-1], comment = split_comment(parts[-1])
        made = statement("\n".join(parts), comment, len(statements) + 1)
        statements += made.split("\n")
    return "\n".join(statements)
