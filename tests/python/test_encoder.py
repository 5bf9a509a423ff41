# SPDX-License-Identifier: Apache-2.0
"""The bytes of each message, by hand; the ranges; the help."""

import re
from pathlib import Path
from typing import Any, Callable, List

import pytest

from buttondriver.catalogue import MESSAGES
from buttondriver.commands import Commands
from buttondriver.encoder import encode
from buttondriver.panel import Panel

ROOT = Path(__file__).resolve().parents[2]


class Kept(Commands[bytes]):
    """Gives back what would be sent."""

    def _send(self, frame: bytes) -> bytes:
        return frame


FRAME_IMAGE = bytes([0xFF] * 5 + [0x80, 0, 0, 0, 1] * 22 + [0xFF] * 5)
TINY_BMP = bytes.fromhex(
    "424d3a000000000000003600000028000000010000000100000001001800000000000400000000000000000000000000000000000000"
    "0000ff00"
)

# What is asked for, and the frame: its length, then the message, field by field.
FRAMES: "List[tuple[Callable[[Kept], bytes], str]]" = [
    (lambda panel: panel.null_message(), "00000004 00000000"),
    (lambda panel: panel.upload(23, FRAME_IMAGE), "00000084 00000006 00000017 00000078" + FRAME_IMAGE.hex()),
    (lambda panel: panel.reconfig(), "00000008 0000000a 00000000"),
    (lambda panel: panel.text(0, 2, "Ready"), "0000001a 0000000f 00000000 00000002 00000001 00000006 526561647900"),
    (lambda panel: panel.text(-1, -1, "", flag=0), "00000015 0000000f ffffffff ffffffff 00000000 00000001 00"),
    (lambda panel: panel.text(2, 0, "\xe4\xff"), "00000017 0000000f 00000002 00000000 00000001 00000003 e4ff00"),
    (lambda panel: panel.blackout(), "00000008 00000010 ffffffff"),
    (lambda panel: panel.blackout(2), "00000008 00000010 00000002"),
    (lambda panel: panel.led(23), "00000010 00000011 00000017 00000001 00000000"),
    (lambda panel: panel.led(-1, False), "00000010 00000011 ffffffff 00000000 00000000"),
    (lambda panel: panel.led(5, blink_ms=500), "00000010 00000011 00000005 ffffffff 000001f4"),
    (
        lambda panel: panel.sub_text(1, 0, 3, "12.5", text_colour=0xFF0000),
        "00000025 00000012 00000001 00000000 00000003 00000004 00ff0000 00000000 00000005 31322e3500",
    ),
    (
        lambda panel: panel.sub_text(2, 1, -3, "A", num_chars=9, back_colour=0x010203),
        "00000022 00000012 00000002 00000001 fffffffd 00000009 00ffffff 00010203 00000002 4100",
    ),
    (
        lambda panel: panel.image(2, TINY_BMP, 63, -1, fit="unchecked"),
        "0000004e 00000013 00000002 0000003f ffffffff 0000003a" + TINY_BMP.hex(),
    ),
    (lambda panel: panel.status(3), "0000000c 00000015 00000003 00000001"),
    (lambda panel: panel.status(31, False), "0000000c 00000015 0000001f 00000000"),
    (lambda panel: panel.toggle(1), "0000000c 00000016 00000001 00000001"),
    (lambda panel: panel.toggle(0, False), "0000000c 00000016 00000000 00000000"),
]


@pytest.mark.parametrize("ask, frame", FRAMES)
def test_sends_these_bytes(ask: Callable[[Kept], bytes], frame: str) -> None:
    assert ask(Kept()).hex() == frame.replace(" ", "")


REFUSED: "List[tuple[Callable[[Kept], Any], str]]" = [
    (lambda panel: panel.text(3, 0, ""), r"screen_id: 3 is out of its range, 0 to 2, or -1 \(all screens\)"),
    (lambda panel: panel.text(0, 2**31, ""), "line_id: 2147483648 is out of its range, -2147483648 to 2147483647"),
    (lambda panel: panel.text(0, 0, "", flag=2), "flag: 2 is out of its range, 0 to 1"),
    (lambda panel: panel.text(0, 0, "a\0b"), "text: has a NUL"),
    (lambda panel: panel.text(0, 0, "5 \u20ac"), "text: '\u20ac' is not in Latin-1"),
    (lambda panel: panel.sub_text(0, 0, 0, "", text_colour=0x1000000), "text_colour: 16777216 is out of its range"),
    (lambda panel: panel.blackout(-2), "screen_id: -2 is out"),
    (lambda panel: panel.led(24), r"button_id: 24 is out of its range, 0 to 23, or -1 \(all buttons\)"),
    (lambda panel: panel.led(5, blink_ms=0), "blink_ms: 0 is out of its range, 1 to 2147483647"),
    (lambda panel: panel.led(5, blink_ms=2**31), "blink_ms: 2147483648 is out of its range, 1 to 2147483647"),
    (lambda panel: panel.status(32), "button_id: 32 is out of its range, 0 to 31"),
    (lambda panel: panel.toggle(2), "button_id: 2 is out of its range, 0 to 1"),
    (lambda panel: panel.upload(-1, FRAME_IMAGE), "image_id: -1 is out of its range, 0 to 2147483647"),
    (lambda panel: panel.upload(23, bytes(119)), "image: 119 bytes, but it must be 120 bytes"),
    (lambda panel: panel.image(0, TINY_BMP, fit="stretch"), "fit: 'stretch' is out of its range"),
    (lambda panel: panel.image(0, TINY_BMP, 128, fit="shrink"), "xoffset: 128 is out of its range with fit='shrink', 0 to 127"),
    (lambda panel: panel.image(0, TINY_BMP, 128), "use fit='crop'"),
    (lambda panel: panel.image(0, b"no picture"), "image: no uncompressed 24-bit BMP file"),
    (lambda panel: panel.text(0, 0, "x" * 2**24), "BMS_TFTTextLine: 16777237 bytes, at most 16777216"),
]


@pytest.mark.parametrize("ask, why", REFUSED)
def test_refuses_what_is_out_of_its_range(ask: Callable[[Kept], Any], why: str) -> None:
    with pytest.raises(ValueError, match=why):
        ask(Kept())


WRONG_TYPES: "List[tuple[Callable[[Any], Any], str]]" = [
    (lambda panel: panel.text(0, 0, 12.5), "text: 12.5 is a float, not a str"),
    (lambda panel: panel.text(0, 0, b"a"), "text: b'a' is a bytes, not a str"),
    (lambda panel: panel.sub_text(0, 0, 0, None), "text: None is a NoneType, not a str"),
    (lambda panel: panel.text("0", 0, ""), "screen_id: '0' is no whole number"),
    (lambda panel: panel.led(5, blink_ms=500.0), "blink_ms: 500.0 is no whole number"),
    (lambda panel: panel.led(5, blink_ms="500"), "blink_ms: '500' is no whole number"),
    (lambda panel: panel.image(0, TINY_BMP, 1.0), "xoffset: 1.0 is no whole number"),
    (lambda panel: panel.image(0, TINY_BMP, 0, "1"), "yoffset: '1' is no whole number"),
    (lambda panel: panel.image(0, 42), "image: int is neither bytes, a path, a Bitmap, nor a picture of PIL"),
]


@pytest.mark.parametrize("ask, why", WRONG_TYPES)
def test_refuses_other_types(ask: Callable[[Any], Any], why: str) -> None:
    with pytest.raises(TypeError, match=f"^{why}"):
        ask(Kept())


@pytest.mark.parametrize(
    "name, fields, why",
    [
        ("BMS_BlackoutScreen", {}, "needs screen_id"),
        ("BMS_BlackoutScreen", {"screen_id": 0, "line_id": 1}, "has no field line_id"),
        ("BMS_BlackoutScreen", {"screen_id": "0"}, "'0' is no whole number"),
        ("BMS_BlackoutScreen", {"screen_id": 0, "counted": b"x"}, "nothing follows"),
    ],
)
def test_refuses_what_is_no_such_message(name: str, fields: "dict[str, Any]", why: str) -> None:
    with pytest.raises(TypeError, match=why):
        encode(name, **fields)


def test_a_method_for_each_message_that_the_daemon_handles() -> None:
    methods = {getattr(getattr(Panel, name), "message", None) for name in dir(Panel)} - {None}
    assert methods == {name for name, message in MESSAGES.items() if message.handler == "daemon"}


def test_help_has_the_words_of_the_catalogue() -> None:
    words = Panel.led.__doc__ or ""
    assert words.startswith("BMS_SetLEDState: sets a button LED steady or blinking.")
    assert "button_id: 0 to 23; -1: all buttons" in words


def test_has_the_version_of_the_tree() -> None:
    tree = re.search(r"VERSION (\d+\.\d+\.\d+)", (ROOT / "CMakeLists.txt").read_text())
    package = re.search(r'^version = "(.*)"', (ROOT / "python" / "pyproject.toml").read_text(), re.MULTILINE)
    assert tree and package and tree[1] == package[1]
