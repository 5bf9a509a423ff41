# SPDX-License-Identifier: Apache-2.0
"""Are these lines of a page among those that were printed, one after the other?

    printed.py LINES PLACE PRINTED
"""

import sys
from pathlib import Path

expected, printed = (Path(name).read_text(encoding="utf-8") for name in (sys.argv[1], sys.argv[3]))
if "\n" + expected not in "\n" + printed:
    print(f"FAILED: {sys.argv[2]}: this is not what is printed:\n{expected}but:\n{printed}")
    sys.exit(1)
