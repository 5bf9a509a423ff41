# SPDX-License-Identifier: Apache-2.0
"""Each test gets a panel as after its start; no panel and no window is needed."""

import thermometer


def test_shows_the_temperature(panel):
    thermometer.show(panel.connect(), 21.5)
    assert panel.screen(0).text == ["Temperature", "", "    21.5 \N{DEGREE SIGN}C"]


def test_warns_while_it_is_too_hot(panel):
    client = panel.connect()
    thermometer.show(client, 61.0)
    assert panel.status(3) and panel.blinking(5) == 200
    thermometer.show(client, 60.0)
    assert not panel.status(3) and panel.blinking(5) is None


def test_looks_as_it_should(panel, assert_screen):
    thermometer.show(panel.connect(), 21.5)
    assert_screen(panel, 0, "pictures/temperature.png")
