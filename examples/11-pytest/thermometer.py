# SPDX-License-Identifier: Apache-2.0
"""Shows a temperature on screen 0, and warns with lamp 3 and key 5 when it is too high."""

from buttondriver import Panel

TOO_HIGH = 60.0


def show(panel: Panel, celsius: float) -> None:
    """One line of text; lamp and key as the temperature asks for."""
    panel.text(0, 0, "Temperature")
    panel.text(0, 2, f"{celsius:8.1f} \N{DEGREE SIGN}C")
    panel.status(3, celsius > TOO_HIGH)
    if celsius > TOO_HIGH:
        panel.led(5, blink_ms=200)
    else:
        panel.led(5, False)
