// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/protocol_manual.h"

#include "tools/manual/marked_part.h"
#include "tools/manual/roff.h"
#include "tools/reference/contents/frame_form.h"
#include "tools/reference/contents/limit_rows.h"
#include "tools/reference/contents/manual_ends.h"
#include "tools/reference/contents/message_words.h"
#include "tools/reference/contents/odd_inputs.h"
#include "tools/reference/contents/variable_part.h"
#include "tools/reference/contents/worked_examples.h"

#include <cctype>
#include <sstream>

namespace buttondriver::documents {

namespace {

using manual::bold;
using manual::inline_text;
using manual::literal;
using manual::prose;
using manual::tagged;

/// Rows of a table, after its format for tbl(1). The last column takes what room there is. Without "nokeep", rows at
/// the end of one of tbl's pages, which a terminal does not have, are shown apart.
class Table {
public:
  Table(const char *format, const char *titles) { _text << ".TS\nnokeep;\n" << format << ".\n" << titles << "\n_\n"; }

  void add(const std::vector<std::string> &cells) {
    for (std::size_t i = 0; i + 1 < cells.size(); ++i)
      _text << cells[i] << '\t';
    _text << "T{\n" << manual::filled(cells.back()) << "T}\n";
  }
  std::string text() const { return _text.str() + ".TE\n"; }

private:
  std::ostringstream _text;
};

std::string capitalised(std::string text) {
  text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  return text;
}

void write_form(std::ostream &page) {
  page << prose("The daemon listens on port " + std::to_string(DEFAULT_PORT) +
                " unless its command line says otherwise. There are no passwords: who can reach the port can drive the "
                "panel. Any number of connections may be open, and each may send any message.")
       << ".SS Frames\n"
       << prose(frame_introduction) << manual::example(frame_drawing);
  for (const char *note : frame_notes)
    page << ".IP \\(bu 2\n" << prose(note);
}

void write_table(std::ostream &page, Handling handling) {
  Table table("l2 r2 l2 lx", "Name\tOpcode\tSize\tMeaning");
  for (const MessageType &type : catalogue)
    if (type.handling == handling)
      table.add({literal(type.name), std::to_string(type.opcode), inline_text(size_in_words(type)),
                 inline_text(type.meaning)});
  page << table.text();
}

void write_tables(std::ostream &page) {
  page << ".SS Messages that the daemon handles\n"
       << prose("Sizes are in bytes, without the length before the message.") << ".PP\n";
  write_table(page, Handling::server_handles);
  page << ".SS The message that the daemon sends\n";
  write_table(page, Handling::server_sends);
  page << ".SS Messages that the daemon does not handle\n"
       << prose("Clients can build them. The daemon reports them as unhandled, and does nothing else.") << ".PP\n";
  write_table(page, Handling::server_ignores);
  page << ".PP\nAll other opcodes do not exist.\n";
}

std::string limits() {
  std::ostringstream text;
  for (const LimitRow &row : limit_rows())
    text << tagged(inline_text(capitalised(row.what)),
                   prose(capitalised(row.how_much) + ". " + capitalised(row.beyond) + "."));
  text << ".PP\nWhat begins to wait, and when it goes on:\n";
  for (const WaitRow &row : wait_rows())
    text << tagged(inline_text(capitalised(row.when)), prose(capitalised(row.what_happens) + "."));
  return text.str();
}

void write_bad_input(std::ostream &page) {
  page << ".SH BAD INPUT\n" << prose(odd_inputs_introduction) << prose("When it gets such input, it does this:");
  for (const OddInput &row : odd_inputs)
    page << tagged(inline_text(capitalised(row.arrives)), prose(capitalised(row.happens) + "."));
}

void write_section(std::ostream &page, const MessageType &type) {
  page << ".SS " << type.opcode << ' ' << literal(type.name) << '\n' << prose(capitalised(type.meaning) + ".");
  if (type.handling == Handling::server_ignores)
    page << prose("The daemon reports it as unhandled and does nothing else.");
  page << ".PP\n";
  Table table("r2 l2 l2 lx", "Offset\tType\tField\tMeaning");
  for (std::size_t i = 0; i < type.fieldCount(); ++i) {
    const Field &field = type.fields[i];
    table.add(
        {std::to_string(field.offset), type_in_words(field), bold(field.name), inline_text(meaning_of(type, field))});
  }
  if (type.counted != Counted::nothing) {
    const VariablePart part = variable_part(type.counted);
    table.add({std::to_string(type.head_size), inline_text(variable_type_in_words(type)), bold(part.field),
               inline_text(part.meaning)});
  }
  page << table.text();
  if (const WorkedExample *example = find_worked_example(type.opcode)) {
    constexpr std::size_t bytes_a_line = 8;
    page << ".PP\n"
         << prose("Example: " + std::string(example->asks) + ".")
         << manual::example(example_lines(type, *example, bytes_a_line)) << ".PP\n"
         << prose(example->effect);
  }
}

} // namespace

std::string protocol_manual() {
  std::ostringstream page;
  page << manual_head;
  write_form(page);
  write_tables(page);
  page << ".SH MESSAGES\n"
       << prose("Colours are 0xRRGGBB; texts are in Latin-1. Screens, lines, columns, buttons and LEDs count from 0.");
  for (const MessageType &type : catalogue)
    write_section(page, type);
  page << ".SH LIMITS\n" << prose("Nothing of this is told to a client. Whoever waits loses nothing.") << limits();
  write_bad_input(page);
  page << manual_tail;
  return page.str();
}

std::optional<std::string> with_limits(const std::string &page) { return manual::with_part(page, "limits", limits()); }

} // namespace buttondriver::documents
