# SPDX-License-Identifier: Apache-2.0
"""The plug-in, in runs of pytest of its own."""

import os
import re
import textwrap
from pathlib import Path

import pytest

from buttondriver import Bitmap
from buttondriver.comparison.difference import difference_in_words, difference_picture
from buttondriver.comparison.output_folder import folder_of_test
from buttondriver.pictures.png import read_png, write_png

SHOWS = """
    def test_hello(panel, assert_screen):
        panel.connect().text(0, 0, "{}")
        assert_screen(panel, 0, "pictures/hello.png")
"""


@pytest.fixture(autouse=True)
def loaded(pytester: pytest.Pytester) -> None:
    pytester.makeconftest('pytest_plugins = ["buttondriver.pytest_plugin"]')


def run(pytester: pytest.Pytester, *arguments: str) -> pytest.RunResult:
    return pytester.runpytest_subprocess("-p", "no:cacheprovider", *arguments)


def test_a_picture_is_made_compared_and_renewed(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(SHOWS.format("Hello"))
    picture = pytester.path / "pictures" / "hello.png"
    missing = run(pytester, "--panel-output", "missing")
    missing.assert_outcomes(failed=1)
    missing.stdout.fnmatch_lines(["*screen 0: *hello.png is not there", "*--panel-update makes this the expected one"])
    assert [path.name for path in Path("missing").rglob("*.png")] == ["hello-actual.png"]

    run(pytester, "--panel-update").assert_outcomes(passed=1)
    hello = picture.read_bytes()
    run(pytester).assert_outcomes(passed=1)

    pytester.makepyfile(SHOWS.format("Hellx"))
    other = run(pytester, "--panel-output", "other")
    other.assert_outcomes(failed=1)
    # The fifth character of 8 x 16 pixels.
    other.stdout.re_match_lines([r".*screen 0: \d+ pixels differ, in columns 3[2-9] to 3[2-9] and rows \d+ to 1?\d; .*"])
    other.stdout.fnmatch_lines(["*expected:*hello-expected.png", "*actual:*hello-actual.png", "*difference:*"])
    folder = next(Path("other").rglob("*.png")).parent
    names = ["hello-actual.png", "hello-difference.png", "hello-expected.png"]
    assert sorted(path.name for path in folder.iterdir()) == names
    assert (folder / "hello-expected.png").read_bytes() == hello
    assert picture.read_bytes() == hello

    run(pytester, "--panel-update").assert_outcomes(passed=1)
    assert picture.read_bytes() == (folder / "hello-actual.png").read_bytes()


def test_each_test_has_a_fresh_panel_of_one_simulator(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(
        """
        seen = []

        def look(panel):
            assert panel.screen(0).text == [] and not panel.status(3) and panel.messages == []
            seen.append((panel.port, panel.connect()))
            seen[-1][1].text(0, 0, "Hello")
            seen[-1][1].status(3)

        def test_one(panel):
            look(panel)

        def test_two(panel):
            look(panel)
            assert seen[0][0] == seen[1][0]
            assert not seen[0][1].connected and seen[1][1].connected
        """
    )
    run(pytester).assert_outcomes(passed=2)


def test_a_simulator_that_a_test_has_ended_fails_that_test_only(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(
        """
        import os, signal

        def test_one(panel):
            os.kill(panel._process._process.pid, signal.SIGKILL)
            panel._process._process.wait()

        def test_two(panel):
            panel.connect().status(3)
            assert panel.status(3)
            panel.close()

        def test_three(panel):
            assert not panel.status(3)
        """
    )
    result = run(pytester)
    result.assert_outcomes(passed=3, errors=1)
    result.stdout.fnmatch_lines(["*ERROR at teardown of test_one*", "the simulator was ended by SIGKILL; it wrote last:"])


def test_each_failure_keeps_its_pictures(pytester: pytest.Pytester) -> None:
    body = """
        import pytest

        class TestOne:
            def test_s(self, panel, assert_screen):
                assert_screen(panel, 0, "hello.png")

        class TestTwo(TestOne):
            @pytest.mark.parametrize("word", ["a b", "a-b", "a/../b", "x" * 300, "x" * 300 + "y"])
            def test_t(self, panel, assert_screen, word):
                assert_screen(panel, 0, "hello.png")
    """
    for folder in ("a", "b"):
        pytester.mkpydir(folder)
        (pytester.path / folder / "test_x.py").write_text(textwrap.dedent(body))
    result = run(pytester, "--panel-output", "kept", "a", "b")
    result.assert_outcomes(failed=14)
    kept = {str(path.relative_to("kept")) for path in Path("kept").rglob("*.png")}
    assert len(kept) == 14
    assert "a/test_x/TestOne.test_s/hello-actual.png" in kept
    told = {line.split()[-1] for line in result.outlines if "actual: " in line}
    assert told == {str(pytester.path / "kept" / path) for path in kept}


@pytest.mark.parametrize(
    "content, why",
    [
        (b"some text", "no PNG file"),
        (write_png(Bitmap(128, 128, bytes(3 * 128 * 128)))[:60], "a PNG file that is cut short"),
        (None, "Is a directory"),
    ],
)
def test_an_expected_picture_that_cannot_be_read_is_told(pytester: pytest.Pytester, content: bytes, why: str) -> None:
    pytester.makepyfile(SHOWS.format("Hello"))
    picture = pytester.path / "pictures" / "hello.png"
    picture.parent.mkdir()
    picture.mkdir() if content is None else picture.write_bytes(content)
    result = run(pytester, "--panel-output", "kept")
    result.assert_outcomes(failed=1)
    result.stdout.re_match_lines([rf".*screen 0: {re.escape(str(picture))} cannot be read: .*{why}"])
    assert [read_png(path.read_bytes()).width for path in Path("kept").rglob("*.png")] == [128]
    assert [path.name for path in Path("kept").rglob("*.png")] == ["hello-actual.png"]


TESTS = [
    ("a/test_x.py::TestOne::test_s", "a/test_x.py", "a/test_x/TestOne.test_s"),
    ("a b/test_x.py::test_s", "a b/test_x.py", "a b/test_x/test_s"),
    ("test_x.py::test_s[a b]", "test_x.py", "test_x/test_s-a-b-9bdbd16c"),
    ("test_x.py::test_s[a-b]", "test_x.py", "test_x/test_s-a-b-430e3dfc"),
    ("test_x.txt::test_x.txt", "test_x.txt", "test_x.txt/test_x-txt-"),
    # A test that lies elsewhere: pytest lets such files share the name.
    ("::test_s", "../other/test_x.py", "test_x/test_s-"),
]


@pytest.mark.parametrize("node, file, folder", TESTS)
def test_folders_have_readable_names(node: str, file: str, folder: str) -> None:
    root = Path("/project")
    assert str(folder_of_test(node, Path(os.path.normpath(root / file)), root)).startswith(folder)


def test_folders_have_names_that_fit() -> None:
    folder = folder_of_test("test_x.py::test_" + "\u00e4" * 300, Path("/project/test_x.py"), Path("/project"))
    assert len(folder.name.encode()) <= 255
    elsewhere = [folder_of_test("::test_s", Path(f"/{name}/test_x.py"), Path("/project")) for name in "ab"]
    assert elsewhere[0] != elsewhere[1]


def test_says_where_pictures_differ() -> None:
    black = Bitmap(4, 3, bytes(36))
    pixels = bytearray(36)
    pixels[3 * 6] = 0xFF  # column 2, row 1
    pixels[3 * 9 + 2] = 0x30  # column 1, row 2
    other = Bitmap(4, 3, bytes(pixels))
    assert difference_in_words(black, black) == ""
    assert difference_in_words(black, other) == (
        "2 pixels differ, in columns 1 to 2 and rows 1 to 2; the first at 2, 1: #000000 expected, #ff0000 is there"
    )
    assert difference_in_words(Bitmap(1, 1, bytes(3)), other) == "1 x 1 pixels expected, 4 x 3 are there"
    difference = difference_picture(black, Bitmap(4, 3, b"\x30" * 36))
    assert difference.pixels == b"\xff\0\0" * 12
    assert difference_picture(other, other).pixel(2, 1) == (0x55, 0, 0)


def test_another_program_can_be_named(pytester: pytest.Pytester) -> None:
    pytester.makepyfile("def test_it(panel): pass")
    result = run(pytester, "--panel-simulator", "/nowhere/simulator")
    result.assert_outcomes(errors=1)
    result.stdout.fnmatch_lines(["*/nowhere/simulator cannot be run*"])


def test_pictures_of_a_failure_are_kept_without_a_folder_for_them(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(SHOWS.format("Hello"))
    (pytester.path / "pictures").mkdir()
    (pytester.path / "pictures" / "hello.png").write_bytes(write_png(Bitmap(1, 1, bytes(3))))
    result = run(pytester)
    result.assert_outcomes(failed=1)
    line = next(line for line in result.outlines if "actual:" in line)
    assert read_png(Path(line.split()[-1]).read_bytes()).width == 128
