# SPDX-License-Identifier: Apache-2.0
"""What a message layout is made of; the layouts themselves are in catalogue.py."""

from typing import NamedTuple, Tuple


class Field(NamedTuple):
    """One field of a message's head."""

    offset: int  #: bytes from the start of the message
    width: int  #: bytes
    kind: str  #: "u8", "u32", "i32" (all big-endian) or "bytes"
    name: str
    meaning: str  #: with its range and its named values
    lowest: int
    highest: int
    named: Tuple[Tuple[int, int, str], ...]  #: first, last, name: values that stand for something of their own

    @property
    def parameter(self) -> str:
        """The name as a parameter of a method: some fields begin with an underscore."""
        return self.name.lstrip("_")

    def holds(self, value: int) -> bool:
        """Whether the value means something to the daemon."""
        return self.lowest <= value <= self.highest or any(first <= value <= last for first, last, _ in self.named)

    @property
    def range(self) -> str:
        """The values that mean something, in words: "0 to 23, or -1 (all buttons)"."""
        words = str(self.lowest) if self.lowest == self.highest else f"{self.lowest} to {self.highest}"
        for first, last, name in self.named:
            if not (self.lowest <= first and last <= self.highest):
                words += f", or {first} ({name})"
        return words


class Message(NamedTuple):
    """One kind of message."""

    opcode: int
    name: str
    head_size: int  #: bytes up to and including the last fixed field
    counted: str  #: what follows the head: "text", "image", "image_ids", or "" for nothing
    counted_meaning: str
    handler: str  #: who acts on it: "daemon", "client" or "nobody"
    meaning: str
    fields: Tuple[Field, ...]

    def field(self, parameter: str) -> Field:
        """The field of that name, with or without its underscore. KeyError when there is none."""
        for field in self.fields:
            if field.parameter == parameter.lstrip("_"):
                return field
        raise KeyError(parameter)
