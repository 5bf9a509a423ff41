// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/command_help.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace buttondriver::buttonctl {

namespace {

using Row = std::pair<QString, QString>;

/// Two columns, the second aligned.
QString table(const std::vector<Row> &rows) {
  int width = 0;
  for (const Row &row : rows)
    width = std::max(width, static_cast<int>(row.first.size()));
  QString text;
  for (const Row &row : rows)
    text += QLatin1String("  ") + row.first.leftJustified(width + 2) + row.second + QLatin1Char('\n');
  return text;
}

QString option_table(const std::vector<CommandOption> &options) {
  std::vector<Row> rows;
  rows.reserve(options.size());
  for (const CommandOption &option : options)
    rows.emplace_back(spelled(option), QLatin1String(option.meaning));
  return table(rows);
}

QString indented(const char *lines) {
  QString text;
  for (const QString &line : QString::fromUtf8(lines).split(QLatin1Char('\n')))
    if (!line.isEmpty())
      text += QLatin1String("  ") + line + QLatin1Char('\n');
  return text;
}

} // namespace

// The numbers in the texts below.
static_assert(DEFAULT_PORT == 3003 && default_timeout_ms == 3000);

const std::vector<CommandOption> &general_options() {
  static const std::vector<CommandOption> options = {
      {"H,host", "HOST[:PORT]", "name or address of the daemon's machine (default BUTTONDRIVER_HOST, or 127.0.0.1)"},
      {"p,port", "PORT", "the daemon's TCP port (default BUTTONDRIVER_PORT, or 3003)"},
      {"t,timeout", "MS", "longest wait for the connection or an answer, in milliseconds (default 3000)"},
      {"panel", "URL", "where the virtual panel answers (default BUTTONDRIVER_PANEL, or http://127.0.0.1:8080)"},
      {"n,dry-run", nullptr, "send nothing; print the bytes in hexadecimal, a line for each message"},
      {"h,help", nullptr, "print this help"},
  };
  return options;
}

CommandOption version_option() { return {"V,version", nullptr, "print the version"}; }

QString spelled(const CommandOption &option) {
  QStringList names;
  for (const QString &name : QString::fromLatin1(option.names).split(QLatin1Char(',')))
    names += dashed(name);
  QString text = names.join(QLatin1String(", "));
  if (option.value)
    text += QLatin1Char(' ') + QLatin1String(option.value);
  return text;
}

QString general_help(const CommandTable &commands) {
  std::vector<Row> rows;
  for (const Command &command : commands)
    rows.emplace_back(QString::fromLatin1(command.name) + QLatin1Char(' ') + QLatin1String(command.arguments),
                      QLatin1String(command.summary));
  std::vector<CommandOption> options = general_options();
  options.push_back(version_option());
  return QLatin1String("Usage: buttonctl [OPTION]... COMMAND [ARGUMENT]...\n"
                       "Send messages to the panel's daemon.\n"
                       "\n"
                       "Commands:\n") +
         table(rows) + QLatin1String("\nOptions:\n") + option_table(options) +
         QLatin1String("\n"
                       "'buttonctl COMMAND --help' tells more about a command.\n"
                       "\n"
                       "Exit status: 0 sent (and answered, for ping), 1 the daemon cannot be reached, the\n"
                       "connection was lost or a ping stayed unanswered, 2 the command line, a file that it\n"
                       "names or a line of such a file is wrong; 'run' has further ones.\n");
}

QString command_help(const Command &command) {
  QString text = QStringLiteral("Usage: buttonctl [OPTION]... %1 %2")
                     .arg(QLatin1String(command.name), QLatin1String(command.arguments))
                     .trimmed();
  QString summary = QString::fromLatin1(command.summary);
  summary[0] = summary.at(0).toUpper();
  text += QLatin1Char('\n') + summary + QLatin1String(".\n");
  if (!command.details.isEmpty())
    text += QLatin1Char('\n') + command.details;
  if (!command.options.empty())
    text += QLatin1String("\nOptions of this command:\n") + option_table(command.options);
  text += QLatin1String("\nOptions of every command:\n") + option_table(general_options());
  text += QLatin1String("\nExamples:\n") + indented(command.examples);
  return text;
}

} // namespace buttondriver::buttonctl
