# SPDX-License-Identifier: Apache-2.0
# What doxygen reads instead of a header: the same lines, with the meanings of messages and fields as docs/protocol.md has
# them from the catalogue. Left out are the lists that only the compiler needs.
#
#   awk -f cmake/reference/described_headers.awk docs/protocol.md HEADER
FNR == NR && /^## [0-9]+ / { message = $3; opcode[message] = $2; next }
FNR == NR && /^Meaning: / { meaning[message] = substr($0, 10); next }
FNR == NR && /^\| [0-9]+ \| / {
    split($0, cells, " [|] ")
    gsub(/`/, "", cells[3])
    sub(/ \|$/, "", cells[4])
    field[message "." cells[3]] = cells[4]
    next
}
FNR == NR { next }

# What is in no class and no namespace is looked at only in a file that is described.
FNR == 1 { $0 = "/** @file */ " $0 }

/^template <> struct FieldsOf</ { is_list = 1 }
is_list { is_list = !/^};/; print ""; next }

# On the line itself, so that doxygen counts lines as they are.
/^struct / && $2 in opcode {
    message = $2
    printf "/** The head of message %s: %s The variable part, where there is one, follows it. */ ", opcode[message], meaning[message]
}
/^};/ { message = "" }
message != "" && / code = / { $0 = $0 " ///< the opcode of this message" }
message != "" && /^  std::/ && !/\/\/\/</ && !/ code = / {
    name = $2
    sub(/[;\[].*/, "", name)
    # What doxygen would take for marks of its own stays as it is.
    text = field[message "." name]
    gsub(/[\\@<>#"%]/, "\\\\&", text)
    if (text != "") $0 = $0 " ///< " text
}
{ print }
