# SPDX-License-Identifier: Apache-2.0
"""The plug-in where pytest-xdist runs tests in several processes."""

import importlib.util
import socket

import pytest

# Each worker runs both tests; nobody goes on before all have written their screen.
TESTS = """
    import os
    from pathlib import Path

    WORKER = os.environ["PYTEST_XDIST_WORKER"]

    def show_and_note(panel, name):
        assert panel.screen(0).text == []
        panel.connect().text(0, 0, WORKER)
        assert panel.screen(0).text == [WORKER]
        Path(f"{name}-{WORKER}.part").write_text(str(panel.port))
        Path(f"{name}-{WORKER}.part").rename(f"{name}-{WORKER}")
        panel.wait_until(lambda panel: all(Path(f"{name}-gw{n}").exists() for n in range(2)), timeout=60)
        assert panel.screen(0).text == [WORKER]

    def test_first(panel):
        show_and_note(panel, "first")

    def test_second(panel):
        show_and_note(panel, "second")
"""


def test_each_worker_has_a_simulator_of_its_own(pytester: pytest.Pytester) -> None:
    if importlib.util.find_spec("xdist") is None:
        pytest.skip("needs python3-pytest-xdist")
    pytester.makeconftest('pytest_plugins = ["buttondriver.pytest_plugin"]')
    pytester.makepyfile(TESTS)
    result = pytester.runpytest_subprocess("-p", "no:cacheprovider", "-p", "xdist.plugin", "-n", "2", "--dist", "each")
    result.assert_outcomes(passed=4)

    ports = {path.name: int(path.read_text()) for path in pytester.path.glob("*-gw?")}
    assert ports["first-gw0"] == ports["second-gw0"] != ports["first-gw1"] == ports["second-gw1"]
    for port in ports.values():
        with pytest.raises(ConnectionRefusedError):
            socket.create_connection(("127.0.0.1", port), timeout=20).close()
