#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: check_log_lines_test.sh CHECK_LOG_LINES
#
# Puts one source and one page at a time into a tree of its own, and looks at what the check reports.
# shellcheck disable=SC2016 # Markdown has backquotes
check_log_lines=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
failures=0
cases=0

# expect REPORT SOURCE ROW: REPORT is what is expected, "" for nothing. ROW is what the page has, without its last cells.
expect() {
  cases=$((cases + 1))
  tree=$folder/$cases
  mkdir -p "$tree/daemon/app" "$tree/docs"
  printf '%s\n' "$2" >"$tree/daemon/app/a.cpp"
  printf '# Log lines\n\n| Text | Channel | When | What to do |\n|---|---|---|---|\n%s always | nothing |\n' "$3" \
    >"$tree/docs/log-lines.md"
  reported=$("$check_log_lines" "$tree" 2>&1)
  status=$?
  expected_status=1
  [ -n "$1" ] || expected_status=0
  if [ "$reported" != "$1" ] || [ "$status" -ne "$expected_status" ]; then
    echo "FAILED: for $2 and $3: status $status, reported '$reported' instead of '$1'"
    failures=$((failures + 1))
  fi
}

# Texts with a row, as sources have them.
expect '' 'debug_line() << "ready";' '| `ready ` | debug |'
expect '' 'debug_line() << "opcode = " << opcode << ", size = " << qint64{message.size()};' \
  '| `opcode =  <opcode> , size =  <bytes> ` | debug |'
expect '' 'critical_line() << "cannot be caught."
                 << " Not adding it." << line_feed;' '| `cannot be caught.  Not adding it. \n` | critical |'
expect '' 'if (fault) print("the level is %d of %5.2f %%, '"'%s'"'\n",
        level(1, "x"), 0.5, name);' "| \`the level is <level> of <most> %, '<name>'\\n\` | standard output |"
expect '' 'print("one " "text\n");' '| `one text\n` | standard output |'
expect '' 'print_line("ended by the call");' '| `ended by the call\n` | standard output |'
expect '' 'std::cerr << "Entry '"'"'" << name << "'"'"' of " << 5 << std::endl;' \
  "| \`Entry '<name>' of <count>\\n\` | standard error |"
expect '' 'std::snprintf(words, 1'"'"'000, "it begins with %d", 1);
print_text(words); std::snprintf(words, 2, ", and ends: \"%s\"", text);' \
  '| `it begins with <number>` `<text>` `, and ends: \"<text>\"` | standard output |'
expect '' 'const std::string gap = "\n" + lost + " texts\n";' '| `\n<number> texts\n` | standard error |'
expect '' '// debug_line() << "only written";
/* print("in a comment"); // and
   print("in it"); */
#define TEXT print("nowhere")
char slash = '"'/'"'; const char *url = "http://a/* b"; char quote = '"'\"'"'; debug_line() << "ready";' \
  '| `ready ` | debug |'
expect '' 'void print(const char *format, ...); print("%s", text); print(format, 1); debug_line() << name;' \
  '| no text | debug |'

# A text without a row; a row without a text is found in the same go.
expect 'daemon/app/a.cpp:2: no row in docs/log-lines.md (debug): `steady `
docs/log-lines.md:5: no text in the sources (debug): `ready `' '
debug_line() << "steady";' '| `ready ` | debug |'
expect 'docs/log-lines.md:5: no text in the sources (debug): `<n> pieces`' 'debug_line() << "ready";' \
  '| `ready ` `<n> pieces` | debug |'
expect 'daemon/app/a.cpp:1: no row in docs/log-lines.md (standard output): `no end`
docs/log-lines.md:5: no text in the sources (standard output): `no end\n`' 'print("no end");' \
  '| `no end\n` | standard output |'
expect 'daemon/app/a.cpp:1: no row in docs/log-lines.md (debug): `no blank `
docs/log-lines.md:5: no text in the sources (debug): `no blank`' 'debug_line() << "no blank";' '| `no blank` | debug |'
expect 'daemon/app/a.cpp:1: no row in docs/log-lines.md (critical): `ready `
docs/log-lines.md:5: no text in the sources (debug): `ready `' 'critical_line() << "ready";' '| `ready ` | debug |'

# What cannot be read is not passed over.
expect 'daemon/app/a.cpp:1: this text is more than literals' 'print(ok ? "ready\n" : "steady\n");' \
  '| `ready\nsteady\n` | standard output |'
expect 'daemon/app/a.cpp:1: raw literals are not understood here' 'const char *text = R"(raw)";' '| no text | debug |'

mkdir -p "$folder/empty/daemon"
"$check_log_lines" "$folder/empty" >/dev/null 2>&1
if [ $? -ne 2 ]; then
  echo "FAILED: a tree without sources is not reported as one"
  failures=$((failures + 1))
fi

echo "$cases trees tried, $failures failures"
[ "$failures" -eq 0 ]
