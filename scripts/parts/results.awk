# SPDX-License-Identifier: Apache-2.0
# Reads what ctest wrote with --output-junit, for scripts/test.
#
#   awk -v preset=PRESET -v notes=FOLDER -f scripts/parts/results.awk FILE
#
# Prints how many tests passed and how many failed. Appends the time of each test to FOLDER/times, and the names to
# FOLDER/failed and FOLDER/skipped. Why a test was skipped is what it printed: the lines after "Skipped" of a GoogleTest
# case, otherwise all.

function plain(text) {
    gsub(/&quot;/, "\"", text); gsub(/&lt;/, "<", text); gsub(/&gt;/, ">", text); gsub(/&apos;/, "'", text)
    gsub(/&amp;/, "\\&", text)
    return text
}
function attribute(name,    text) {
    text = $0
    if (!sub(".* " name "=\"", "", text)) return ""
    sub(/".*/, "", text)
    return plain(text)
}
/^\t<testcase / {
    name = attribute("name"); status = attribute("status"); reason = ""; is_reason = 0; is_skipped = 0
    print attribute("time"), preset, name >> (notes "/times")
}
# Also a test whose program or fixture is missing is "skipped" there: that one has failed.
/^\t\t<skipped message="SKIP_/ { is_skipped = 1 }
/^\t\t<system-out>/ { inside = 1; sub(/.*<system-out>/, "") }
inside {
    ended = sub(/<\/system-out>.*/, "")
    text = plain($0)
    if (text ~ /: Skipped$/) { is_reason = 1; reason = "" }
    else if (text ~ /^\[  SKIPPED \]/) is_reason = 0
    else if (text != "" && (is_reason || reason == "") && text !~ /^(\[|Note: |Running main|$)/)
        reason = reason (reason == "" ? "" : " ") text
    if (ended) inside = 0
}
/^\t<\/testcase>/ {
    if (status == "run") ++passed
    else if (is_skipped) print preset ": " name ": " reason >> (notes "/skipped")
    else if (status == "disabled") print preset ": " name ": is disabled" >> (notes "/skipped")
    else { ++failed; print preset ": " name >> (notes "/failed") }
}
END { print passed + 0, failed + 0 }
