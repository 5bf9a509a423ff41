# SPDX-License-Identifier: Apache-2.0
"""Is this one message, and are its fields what stands beside the bytes?

    hex.py FILE PLACE

A line of FILE has bytes, blanks, and FIELD = NUMBER or the name of another part.
"""

import re
import subprocess
import sys
from pathlib import Path

page = Path(sys.argv[1]).read_text(encoding="utf-8")
digits = re.sub(r"   .*$", "", page, flags=re.M).split()
decoded = subprocess.run(["buttonctl", "decode", *digits], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
faults = [] if decoded.returncode == 0 and decoded.stdout.count("\n") == 1 else ["it is not one message"]
found = dict(re.findall(r" (\w+)=(-?\w+)", decoded.stdout))
told = dict(re.findall(r"   (\w+) = (-?\d+)", page))
if told.pop("length") != str(len(digits) - 4) or told.pop("opcode") != str(int("".join(digits[4:8]), 16)):
    faults.append("its length or its opcode is another one")
for field, number in told.items():
    if field not in found or int(found[field], 0) != int(number):
        faults.append(f"{field} is {found.get(field)}, not {number}")
for fault in faults:
    print(f"FAILED: {sys.argv[2]}: {fault}: {decoded.stdout}")
sys.exit(1 if faults else 0)
