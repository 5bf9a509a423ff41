#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: log_lines.sh PAGE LOG_LINES
#
# Fails unless each text of the log in the section LOG of the page, where an italic word stands for any, is in the list.
# Blanks do not count: the page shows one where the log has two.
status=0
plain() { sed -e 's/\\f[BR]//g' -e 's/\\fI\([a-z]*\)/<\1>/g' -e 's/\\-/-/g' -e "s/\\\\(aq/'/g" -e 's/<[^>]*>/<>/g'; }
listed=$(sed -e 's/<[^>]*>/<>/g' -e 's/\\n//g' "$2" | tr -s ' ')
texts=$(sed -n '/^\.SH LOG/,/^\.SH LIMITS/p' "$1" | grep -A 1 -E '^\.T[PQ]' | sed -n 's/^\.B //p' | plain)
[ "$(echo "$texts" | wc -l)" -gt 10 ] || { echo 'FAILED: the page has hardly any texts'; exit 1; }
while IFS= read -r text; do
    case $listed in
        *"\`$text"*) ;;
        *) echo "FAILED: no such text: $text"; status=1 ;;
    esac
done <<END
$texts
END
exit $status
