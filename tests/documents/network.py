# SPDX-License-Identifier: Apache-2.0
"""A network of the test's own, in which the ports and addresses that stand in the pages are free.

The pages use the defaults of the programs, which stand in no command: other ports could not be put in their place.
"""

import fcntl
import os
import socket
import struct
import subprocess
import sys
from typing import List

SET_ADDRESS, SET_FLAGS = 0x8916, 0x8914  # SIOCSIFADDR, SIOCSIFFLAGS
UP_AND_RUNNING = 0x41
# A panel's, in the pages.
ADDRESSES = {b"lo": "127.0.0.1", b"lo:1": "192.168.1.20"}


def way_in() -> List[str]:
    """What a command has to stand behind; empty where the system does not permit it."""
    for options in (["--net"], ["--user", "--map-root-user", "--net"]):
        command = ["unshare", *options]
        try:
            test = [*command, sys.executable, os.path.abspath(__file__)]
            if subprocess.run(test, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0:
                return command
        except FileNotFoundError:
            break
    return []


def set_up() -> None:
    """Only in a network of one's own."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as door:
        for name, address in ADDRESSES.items():
            request = struct.pack("16sHH4s8x", name, socket.AF_INET, 0, socket.inet_aton(address))
            fcntl.ioctl(door, SET_ADDRESS, request)
            fcntl.ioctl(door, SET_FLAGS, struct.pack("16sH14x", name, UP_AND_RUNNING))


if __name__ == "__main__":
    set_up()
