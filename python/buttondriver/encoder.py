# SPDX-License-Identifier: Apache-2.0
"""Turns messages into bytes. Nothing here sends anything."""

from typing import Union

from . import checks
from .catalogue import LARGEST_MESSAGE, MESSAGES
from .layout import Field, Message

Value = Union[int, bytes]

PING_REPLY = b"\x00\x00\x00\x04\x00\x00\x00\x01"  #: the one answer that the daemon gives, with its length


def encode(name: str, counted: bytes = b"", **values: Value) -> bytes:
    """A whole frame: the length, then the message `name` with these fields.

    `counted` is what follows the head; its length goes into the field that counts it. Fields whose value is fixed may
    be left out. ValueError when a value is out of its field's range, and names both.
    """
    message = MESSAGES[name]
    head = bytearray(message.head_size)
    given = dict(values)
    for field in message.fields:
        head[field.offset : field.offset + field.width] = _field_bytes(message, field, counted, given)
    if given:
        raise TypeError(f"{name} has no field {', '.join(sorted(given))}")
    if counted and not message.counted:
        raise TypeError(f"nothing follows the head of {name}")
    size = len(head) + len(counted)
    if size > LARGEST_MESSAGE:
        raise ValueError(f"{name}: {size} bytes, at most {LARGEST_MESSAGE}")
    return size.to_bytes(4, "big") + bytes(head) + counted


def text_bytes(text: str) -> bytes:
    """A text in Latin-1 with its terminating NUL.

    ValueError when it has a character that Latin-1 does not have, or a NUL, at which the daemon would end it; TypeError
    when it is no text.
    """
    checks.text("text", text)
    if "\0" in text:
        raise ValueError("text: has a NUL, at which it would end")
    try:
        return text.encode("latin-1") + b"\0"
    except UnicodeEncodeError as error:
        raise ValueError(f"text: {text[error.start]!r} is not in Latin-1") from error


def _field_bytes(message: Message, field: Field, counted: bytes, given: "dict[str, Value]") -> bytes:
    if field.name == "opcode":
        return message.opcode.to_bytes(4, "big")
    if message.counted and field is message.fields[-1]:
        return len(counted).to_bytes(4, "big")
    if field.parameter not in given and field.lowest == field.highest and field.kind != "bytes":
        return field.lowest.to_bytes(field.width, "big", signed=field.kind == "i32")
    if field.parameter not in given:
        raise TypeError(f"{message.name} needs {field.parameter}")
    value = given.pop(field.parameter)
    if field.kind == "bytes":
        if not isinstance(value, bytes) or len(value) != field.width:
            found = f"{len(value)} bytes" if isinstance(value, bytes) else repr(value)
            raise ValueError(f"{field.parameter}: {found}, but it must be {field.width} bytes")
        return value
    number = checks.whole_number(field.parameter, value)
    if not field.holds(number):
        raise ValueError(f"{field.parameter}: {number} is out of its range, {field.range}")
    return number.to_bytes(field.width, "big", signed=field.kind == "i32")
