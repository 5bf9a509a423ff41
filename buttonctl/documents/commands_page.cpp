// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/documents/commands_page.h"

#include <QStringList>

namespace buttondriver::buttonctl {

namespace {

const QString first_mark = QStringLiteral("<!-- commands: from their rows, not written by hand;\n"
                                          "     cmake --build build/qt6 --target update_buttonctl_documents -->\n");
const QString last_mark = QStringLiteral("<!-- end of the commands -->\n");

/// What Markdown would take for markup.
QString escaped(QString text) {
  for (const char *character : {"\\", "*", "<"})
    text.replace(QLatin1String(character), QLatin1Char('\\') + QLatin1String(character));
  return text;
}

QString table_cell(const QString &text) { return escaped(text).replace(QLatin1Char('|'), QLatin1String("\\|")); }

/// "`--colour RRGGBB`, `--color RRGGBB`"
QString spelled_as_code(const CommandOption &option) {
  QStringList names;
  for (const QString &name : QString::fromLatin1(option.names).split(QLatin1Char(',')))
    names += QLatin1Char('`') + dashed(name) +
             (option.value ? QLatin1Char(' ') + QLatin1String(option.value) : QString()) + QLatin1Char('`');
  return names.join(QLatin1String(", "));
}

/// "buttonctl text SCREEN LINE TEXT [--white-on-black] [--black-on-white]"
QString usage(const Command &command) {
  const QString arguments = QString::fromLatin1(command.arguments);
  QString text = QStringLiteral("buttonctl ") + QLatin1String(command.name);
  if (!arguments.isEmpty())
    text += QLatin1Char(' ') + arguments;
  for (const CommandOption &option : command.options) {
    const QString name = dashed(QString::fromLatin1(option.names).section(QLatin1Char(','), 0, 0));
    // An option that must be given stands among the arguments.
    if (arguments.contains(name))
      continue;
    text += QLatin1String(" [") + name + (option.value ? QLatin1Char(' ') + QLatin1String(option.value) : QString()) +
            QLatin1Char(']');
  }
  return text;
}

/// Lines that start with two blanks become a block of their own.
QString prose(const QString &lines) {
  QString text;
  bool in_block = false;
  QStringList rest = lines.split(QLatin1Char('\n'));
  if (rest.last().isEmpty())
    rest.removeLast();
  for (const QString &line : rest) {
    const bool is_kept = line.startsWith(QLatin1String("  "));
    if (is_kept != in_block)
      text += QLatin1String(is_kept ? "<!-- not run: of the help -->\n```text\n" : "```\n");
    in_block = is_kept;
    text += (is_kept ? line.mid(2) : escaped(line)) + QLatin1Char('\n');
  }
  if (in_block)
    text += QLatin1String("```\n");
  return text;
}

QString option_table(const std::vector<CommandOption> &options) {
  QString text = QStringLiteral("\n| Option | Meaning |\n|---|---|\n");
  for (const CommandOption &option : options)
    text += QStringLiteral("| %1 | %2 |\n").arg(spelled_as_code(option), table_cell(QString::fromUtf8(option.meaning)));
  return text;
}

} // namespace

QString commands_section(const CommandTable &commands) {
  QString text;
  for (const Command &command : commands) {
    QString summary = QString::fromLatin1(command.summary);
    summary[0] = summary.at(0).toUpper();
    text += QStringLiteral("### %1\n\n    ").arg(QLatin1String(command.name)) + usage(command) + QLatin1String("\n\n") +
            escaped(summary) + QLatin1String(".\n");
    if (!command.details.isEmpty())
      text += QLatin1Char('\n') + prose(command.details);
    if (!command.options.empty())
      text += option_table(command.options);
    text += QLatin1String("\n```sh\n") + QString::fromUtf8(command.examples) + QLatin1String("```\n\n");
  }
  return text;
}

Outcome<QString> with_commands(const QString &page, const CommandTable &commands) {
  const auto begin = page.indexOf(first_mark);
  const auto end = page.indexOf(last_mark);
  if (begin < 0 || end < begin)
    return Failure{QStringLiteral("the page lacks a mark of the commands; both are\n%1%2").arg(first_mark, last_mark)};
  return page.left(begin) + first_mark + QLatin1Char('\n') + commands_section(commands) + page.mid(end);
}

} // namespace buttondriver::buttonctl
