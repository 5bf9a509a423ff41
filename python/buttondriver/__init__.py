# SPDX-License-Identifier: Apache-2.0
"""Drives a button panel, and tests programs that do. See docs/python.md."""

from .async_panel import AsyncPanel
from .errors import PanelError, PanelLost, PanelTimeout, VirtualPanelError
from .panel import Panel
from .pictures.bitmap import Bitmap
from .virtual_panel import Screen, Sent, VirtualPanel

__all__ = [
    "AsyncPanel",
    "Bitmap",
    "Panel",
    "PanelError",
    "PanelLost",
    "PanelTimeout",
    "Screen",
    "Sent",
    "VirtualPanel",
    "VirtualPanelError",
]
