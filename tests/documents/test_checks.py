# SPDX-License-Identifier: Apache-2.0
"""The checks of the pages find what is wrong with a page, and say where.

    test_checks.py TREE BUILD
"""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import network
from blocks import blocks_of
from check_pages import NamedTests, fault_of
from shell import script_of

TREE, BUILD = Path(sys.argv[1]), Path(sys.argv[2])
HERE = Path(__file__).resolve().parent

# A page, and the fault that is found without running it.
PAGES = [
    ("```sh\ntrue\n```\n", None),
    ("```bat\ndir\n```\n", "unknown language: bat"),
    ("~~~\nout\n~~~\n", "it is not run, and does not say why"),
    ("```text\nout\n```\n", "it is not run, and does not say why"),
    ("<!-- not run: a form -->\n```text\nout\n```\n", None),
    ("<!-- not run: a form -->\n\n```text\nout\n```\n", "it is not run, and does not say why"),
    ("<!-- other -->\n<!-- not run: a\n form -->\n```text\nout\n```\n", None),
    ("<!-- not run -->\n```sh\ntrue\n```\n", "it is not run, and no reason is given"),
    ("<!-- not run: - -->\n```sh\ntrue\n```\n", "it is not run, and no reason is given"),
    ("<!-- not run: `package.installs` -->\n```sh\ntrue\n```\n", None),
    ("<!-- not run: `BatchLineTest.is_a_command` -->\n```sh\ntrue\n```\n", None),
    ("<!-- not run: `scripts/test armhf` -->\n```sh\ntrue\n```\n", None),
    ("<!-- not run: `package.does_nothing` -->\n```sh\ntrue\n```\n", "there is no test package.does_nothing"),
    ("<!-- not run: `NoTest.is_there` -->\n```sh\ntrue\n```\n", "there is no test NoTest.is_there"),
    ("<!-- not run: `scripts/test mips` -->\n```sh\ntrue\n```\n", "there is no test scripts/test mips"),
    ("<!-- file: a.c -->\n```c\nint a;\n```\n", None),
    ("<!-- file: -->\n```c\nint a;\n```\n", "it is a file without a name"),
    ("<!-- printed -->\n```text\nout\n```\n", "what prints it does not stand before it"),
    ("```python\nimport os\n```\n", "it does not begin with the name of its file"),
    ("```json\n{,}\n```\n", "Expecting property name enclosed in double quotes: line 1 column 2 (char 1)"),
]

# A page, and the end of its run: nothing, or what the test says.
RUNS = [
    ("Text\n\n```sh\nfalse; true\n```\n", "FAILED: page.md:4: status 1: false; true\n"),
    ("```sh\ntrue\nno-such-command 2>/dev/null\n```\n", "FAILED: page.md:3: status 127: no-such-command"),
    ("```sh\necho a \\\n  b     # prints a b\n```\n", ""),
    ("```sh\ntrue\necho a     # prints b\n```\n", "FAILED: page.md:3: does not print: b\na\n"),
    ("```sh\nfalse     # fails\n(echo a; exit 2)     # fails, prints a\n```\n", ""),
    ("```sh\ntrue\ntrue     # fails\n```\n", "FAILED: page.md:3: has not failed"),
    ("```sh\necho '  # fails'     # prints # fails\n```\n", ""),
    ("```sh\nexport X=1\n```\n\n```sh\necho $X     # prints 1\n```\n", ""),
    ("```sh\necho a\necho b\n```\n\n<!-- printed -->\n```text\nb\n```\n", ""),
    ("```sh\necho a\n```\n\n<!-- printed -->\n```text\nb\n```\n", "FAILED: page.md:7: this is not what is"),
    ("<!-- file: d/a -->\n```text\nhello\n```\n\n```sh\ncat d/a     # prints hello\n```\n", ""),
    ("<!-- file: a; grep b a -->\n```text\nhello\n```\n", "FAILED: page.md:3: status 1: hello\n"),
    ("```sh\nwrong() { true; false; }\ntrue\nwrong\n```\n", "FAILED: page.md:2: status 1: wrong() {"),
    ("```ini\n[font]\nwidth=10\nheight=20\n```\n", ""),
    ("```ini\n[font]\nwidth=10\nheight=21\n```\n", "FAILED: page.md:2: the font is not as the program wants it:"),
    ("```hex\n00 00 00 04   length = 4\n00 00 00 0c   opcode = 12\n```\n", ""),
    ("```hex\n00 00 00 04   length = 5\n00 00 00 0c   opcode = 12\n```\n", "FAILED: page.md:2: its length or its"),
    ("```hex\n00 00 00 0c   length = 12\n00 00 00 15   opcode = 21\n"
     "00 00 00 03   button_id = 4\n00 00 00 01   x\n```\n", "FAILED: page.md:2: button_id is 3, not 4"),
    ("```sh\nbuttondriver-sim &     # the panel\nbuttonctl ping     # prints 127.0.0.1 port 3003\n```\n", ""),
    ("```sh\nbuttondriver-sim --port 3004 &\n```\n\n```sh\nbuttondriver-sim --http 8081 --port 3004 &\n```\n", ""),
    ("```sh\nbuttondriver-sim --http 99999 &\n```\n", "FAILED: page.md:2: has ended"),
    ("```sh\ntrue &\nsleep 60 &\n```\n", ""),
    ("```sh\nfalse &\nuntil ! kill -0 $! 2>/dev/null; do read -t 0.01 <>$outputs/nothing || true; done\n```\n",
     "FAILED: page.md:2: has ended with status 1\n"),
    ("```sh\nbuttonctl record a --listen 3009\n```\n", ""),
    ("```sh\nbuttonctl record a --listen 3009 --to :x\n```\n", "FAILED: page.md:2: has ended"),
]


class ChecksTest(unittest.TestCase):
    def test_find_what_is_not_looked_at(self) -> None:
        tests = NamedTests(TREE, BUILD)
        for page, fault in PAGES:
            with self.subTest(page):
                (block,) = blocks_of("page.md", page)
                self.assertEqual(list(fault_of(block, None, tests)), [fault] if fault else [])

    def test_keep_the_numbers_of_lines(self) -> None:
        self.assertEqual(script_of("a \\\n  b\nc\n", 3), "\n\na \\\n  b\nc\n")

    def test_run_pages(self) -> None:
        if not network.way_in():
            self.skipTest("needs a network of its own, which unshare does not get here")
        for page, said in RUNS:
            with self.subTest(page), tempfile.TemporaryDirectory() as tree:
                for folder in ("examples", "python"):
                    (Path(tree) / folder).mkdir()
                (Path(tree) / "page.md").write_text(page)
                command = [sys.executable, str(HERE / "run_page.py"), "page.md", tree, str(BUILD), "/nowhere"]
                result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
                self.assertEqual(result.stdout[: len(said)] if said else result.stdout, said, result.stdout)
                self.assertEqual(result.returncode != 0, said != "", result.stdout)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
