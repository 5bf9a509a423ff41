# SPDX-License-Identifier: Apache-2.0
"""What several places ask of the values that they are given."""


def whole_number(name: str, value: object) -> int:
    """The value. TypeError, with the name, when it is no whole number."""
    if not isinstance(value, int):
        raise TypeError(f"{name}: {value!r} is no whole number")
    return value
