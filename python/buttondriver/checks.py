# SPDX-License-Identifier: Apache-2.0
"""What several places ask of the values that they are given."""

_LAST_PORT = 65535
_LONGEST_TIMEOUT = 2000000  # seconds; the system counts milliseconds in 32 bits


def whole_number(name: str, value: object) -> int:
    """The value. TypeError, with the name, when it is no whole number."""
    if not isinstance(value, int):
        raise TypeError(f"{name}: {value!r} is no whole number")
    return value


def text(name: str, value: object) -> str:
    """The value. TypeError, with the name, when it is no text."""
    if not isinstance(value, str):
        raise TypeError(f"{name}: {value!r} is a {type(value).__name__}, not a str")
    return value


def check_address(host: object, port: object, timeout: object) -> None:
    """ValueError or TypeError, with the name, when one of them can be none of a connection."""
    try:
        text("host", host).encode("idna")
    except UnicodeError as error:
        raise ValueError(f"host: {host!r} is no name of a host: {error}") from None
    if not 0 < whole_number("port", port) <= _LAST_PORT:
        raise ValueError(f"port: {port} is out of its range, 1 to {_LAST_PORT}")
    if not isinstance(timeout, (int, float)):
        raise TypeError(f"timeout: {timeout!r} is no number of seconds")
    if not 0 < timeout <= _LONGEST_TIMEOUT:
        raise ValueError(f"timeout: {timeout} is out of its range, more than 0 and at most {_LONGEST_TIMEOUT} seconds")
