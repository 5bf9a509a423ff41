# SPDX-License-Identifier: Apache-2.0
"""What can go wrong between a program and a panel. Values out of range are a ValueError."""


class PanelError(Exception):
    """Any of these."""


class PanelLost(PanelError, ConnectionError):
    """There is no connection to the daemon, or not any more. What was sent last may not have arrived."""


class PanelTimeout(PanelError, TimeoutError):
    """The daemon did not take a message, or answer a ping, in time. The connection has been closed."""


class VirtualPanelError(PanelError):
    """The simulator cannot be found, does not start, or has ended."""
